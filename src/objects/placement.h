#pragma once

#include <QRect>
#include <QString>

#include "storage/bags/disk.h"

namespace vorn {

/// How the main window shows its pages.
enum class Arrangement { Cascaded = 0, Tiled = 2, Tabs = 3 };

/// The bag of a window's place and of its arrangement. A view: the bag outlives it.
class Placement {
 public:
  explicit Placement(const Disk& bag) : bag_(bag) {}

  /// Where the window was when it was last closed, with its frame, and how large when it was not
  /// maximised.
  bool HasPlace() const { return bag_.Get(kWidth).isValid(); }
  QPoint Position(QPoint byDefault) const {
    return {bag_.Number(kLeft, byDefault.x()), bag_.Number(kTop, byDefault.y())};
  }
  QSize Size(QSize byDefault) const {
    return {bag_.Number(kWidth, byDefault.width()), bag_.Number(kHeight, byDefault.height())};
  }
  static void SetPlace(Disk& bag, const QRect& place);
  bool IsMaximized() const { return bag_.Flag(kMaximized); }
  static void SetMaximized(Disk& bag, bool isMaximized) { bag.Let(kMaximized, isMaximized); }
  /// How much of the screen a window without a place takes, in percent; 0 for its own size.
  int Share() const { return bag_.Number(kShare); }
  static void SetShare(Disk& bag, int percent) { bag.Let(kShare, percent); }
  /// Of the main window; tiled by default.
  Arrangement Arranged() const;
  static void SetArrangement(Disk& bag, Arrangement arrangement) {
    bag.Let(kArrangement, static_cast<int>(arrangement));
  }
  /// The width of its tree, in pixels.
  int TreeWidth(int byDefault) const { return bag_.Number(kTreeWidth, byDefault); }
  static void SetTreeWidth(Disk& bag, int pixels) { bag.Let(kTreeWidth, pixels); }
  /// The share of a folder's page that is the list, in percent, above the message or beside it.
  int PageShare(Qt::Orientation split, int byDefault) const {
    return bag_.Number(PageShareKey(split), byDefault);
  }
  static void SetPageShare(Disk& bag, Qt::Orientation split, int percent) {
    bag.Let(PageShareKey(split), percent);
  }
  /// Of the window of addresses: the width of its tree, in fifteenths of a pixel.
  int AddressSplit(int byDefault) const { return bag_.Number(kAddressSplit, byDefault); }
  static void SetAddressSplit(Disk& bag, int units) { bag.Let(kAddressSplit, units); }

 private:
  static QString PageShareKey(Qt::Orientation split) {
    return split == Qt::Vertical ? QStringLiteral("pageheight") : QStringLiteral("pagewidth");
  }

  static inline const QString kLeft = QStringLiteral("left");
  static inline const QString kTop = QStringLiteral("top");
  static inline const QString kWidth = QStringLiteral("width");
  static inline const QString kHeight = QStringLiteral("height");
  static inline const QString kMaximized = QStringLiteral("maximized");
  static inline const QString kTreeWidth = QStringLiteral("tree");
  static inline const QString kAddressSplit = QStringLiteral("disp");
  static inline const QString kShare = QStringLiteral("share");
  static inline const QString kArrangement = QStringLiteral("arrange");

  const Disk& bag_;
};

inline void Placement::SetPlace(Disk& bag, const QRect& place) {
  bag.Let(kLeft, place.x());
  bag.Let(kTop, place.y());
  bag.Let(kWidth, place.width());
  bag.Let(kHeight, place.height());
}

inline Arrangement Placement::Arranged() const {
  return static_cast<Arrangement>(bag_.Number(kArrangement, static_cast<int>(Arrangement::Tiled)));
}

}  // namespace vorn
