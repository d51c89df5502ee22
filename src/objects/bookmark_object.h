#pragma once

#include <QString>
#include <QStringList>

#include "storage/bags/disk.h"
#include "storage/ui.h"

namespace vorn {

/// A list of bookmarks, by the name that its object's bag has for it. A view: the bag outlives it.
class BookmarkObject {
 public:
  explicit BookmarkObject(const Disk& bag) : bag_(bag) {}

  /// An address each, and its title behind a blank.
  QStringList Lines() const { return bag_.Text(kLines).split(kLineBreak, Qt::SkipEmptyParts); }
  static void SetLines(Disk& bag, const QStringList& lines) {
    bag.Let(kLines, lines.join(kLineBreak));
  }

  // The keys. A prefix before one makes the name of the control that edits it.
  static inline const QString kLines = QStringLiteral("Url");

 private:
  const Disk& bag_;
};

}  // namespace vorn
