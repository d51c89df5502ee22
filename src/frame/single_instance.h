#pragma once

#include <QLockFile>
#include <QString>

namespace vorn {

/// Keeps a second program off a data folder. The lock of a program that was killed does not count.
class SingleInstance {
 public:
  explicit SingleInstance(const QString& appFolder);

  /// Whether this program is the only one; held until the object dies.
  bool Acquire();

 private:
  QString folder_;
  QLockFile lock_;
};

}  // namespace vorn
