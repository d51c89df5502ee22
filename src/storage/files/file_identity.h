#pragma once

#include <QString>

namespace vorn {

/// A text that names the file itself rather than its path: two paths, or one path at two times,
/// give the same text exactly when they lead to the same file. Empty when there is no such file.
QString FileIdentity(const QString& path);

}  // namespace vorn
