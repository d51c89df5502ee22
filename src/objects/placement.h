#pragma once

#include <QString>

#include "storage/disk.h"

namespace vorn {

/// How the main window shows its pages.
enum class Arrangement { Cascaded = 0, Tiled = 2, Tabs = 3 };

/// What the bag of a window's place has beside the place itself. A view: the bag outlives it.
class Placement {
 public:
  explicit Placement(const Disk& bag) : bag_(bag) {}

  /// How much of the screen a window without a place takes, in percent; 0 for its own size.
  int Share() const { return bag_.Number(kShare); }
  static void SetShare(Disk& bag, int percent) { bag.Let(kShare, percent); }
  /// Of the main window; tiled by default.
  Arrangement Arranged() const;
  static void SetArrangement(Disk& bag, Arrangement arrangement) {
    bag.Let(kArrangement, static_cast<int>(arrangement));
  }

 private:
  static inline const QString kShare = QStringLiteral("share");
  static inline const QString kArrangement = QStringLiteral("arrange");

  const Disk& bag_;
};

inline Arrangement Placement::Arranged() const {
  return static_cast<Arrangement>(bag_.Number(kArrangement, static_cast<int>(Arrangement::Tiled)));
}

}  // namespace vorn
