#pragma once

#include <QString>

#include "storage/bags/disk.h"

namespace vorn {

/// The layouts of folders, by the name that their object's bag has for the one that is shared by
/// all folders without one of their own. A view: the bag outlives it.
class LayoutsObject {
 public:
  explicit LayoutsObject(const Disk& bag) : bag_(bag) {}

  /// Its name; empty for the default one.
  QString Shared() const { return bag_.Text(kShared); }
  static void SetShared(Disk& bag, const QString& id) { bag.Let(kShared, id); }

 private:
  // With no folder's name before it.
  static inline const QString kShared = QStringLiteral("_ready");

  const Disk& bag_;
};

}  // namespace vorn
