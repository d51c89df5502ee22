#pragma once

#include <QString>

namespace vorn {

/// The installation key, which is also the navigator database's password: at most 14 characters,
/// kept in the user's settings and made once when it is missing. It is never shown. Empty when it
/// can be neither read nor kept.
QString SecurityKey();

}  // namespace vorn
