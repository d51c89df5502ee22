#pragma once

#include <QString>

namespace vorn {

/// The page template that folders without a layout of their own use: 46 lines joined with CR LF.
QString DefaultPageTemplate();

}  // namespace vorn
