#pragma once

#include <QTemporaryDir>
#include <memory>

#include "storage/context.h"

namespace vorn {

/// A folder for files that are needed as long as their owner is there. It is made for the first
/// one.
class WorkingFolder {
 public:
  explicit WorkingFolder(Context& context) : context_(context) {}

  /// A path for a file with that name, or with a similar one.
  QString PathFor(const QString& name);

 private:
  Context& context_;
  std::unique_ptr<QTemporaryDir> folder_;
};

}  // namespace vorn
