#pragma once

#include <QString>

#include "storage/context.h"

namespace vorn {

/// A new message's serial identifier, which is a Message-ID's content as well (RFC 5322 section
/// 3.6.4).
SerialId NewMessageSerialID(Context& context);

}  // namespace vorn
