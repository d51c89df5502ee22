#pragma once

#include <QString>

namespace vorn {

/// Whether a program that shows the HTML as it stands loads something from elsewhere by itself:
/// pictures, style sheets, frames, another page. Pictures inside it or beside it ("data:", "cid:")
/// are none.
bool LoadsByItself(const QString& html);

/// Whether an address names something outside: by a scheme, or as a server's name behind two
/// slashes, however they lean.
bool IsAddressOutside(const QString& address);

}  // namespace vorn
