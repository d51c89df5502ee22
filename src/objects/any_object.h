#pragma once

#include <QDateTime>
#include <QString>

#include "storage/bags/disk.h"

namespace vorn {

/// A type of objects (`object_type`) in words; empty for one that has none.
QString TypeCaption(const QString& type);

/// What objects of every type have, by the names that their bags have for it; how the user sees it
/// says `ShownObject`. A view: the bag outlives it.
class AnyObject {
 public:
  explicit AnyObject(const Disk& bag) : bag_(bag) {}
  /// Makes the bag a new object of a type (`object_type`), with the picture of that type where it
  /// gets no other one, and disabled.
  static void Begin(Disk& bag, const QString& type, const QString& name, const QString& draw = {});
  static void SetType(Disk& bag, const QString& type) { bag.Let(kType, type); }
  static void SetName(Disk& bag, const QString& name) { bag.Let(kName, name); }
  static void SetToolTip(Disk& bag, const QString& text) { bag.Let(kToolTip, text); }
  static void SetDraw(Disk& bag, const QString& draw) { bag.Let(kDraw, draw); }
  static void SetDefault(Disk& bag, bool isDefault) { bag.Let(kDefault, isDefault); }
  static void SetEnabled(Disk& bag, bool isEnabled) { bag.Let(kEnabled, isEnabled); }
  static void SetMarked(Disk& bag) { bag.Let(kMarked, true); }
  static void SetSystem(Disk& bag, bool isSystem) { bag.Let(kSystem, isSystem); }
  /// When it was last changed, in the general form.
  static void SetChanged(Disk& bag, const QString& time) { bag.Let(kChanged, time); }
  static inline const QString kChanged = QStringLiteral("DayTime");

  QString Type() const { return bag_.Text(kType); }
  bool Is(const QString& type) const { return Type() == type; }
  QString Name() const { return bag_.Text(kName); }
  QString ToolTip() const { return bag_.Text(kToolTip); }
  /// The key of its picture (`Icon`); of a folder also how it is filled.
  QString Draw() const { return bag_.Text(kDraw); }
  /// The object below which it stands in the tree; empty for none.
  SerialId Parent() const { return SerialId(bag_.Text(kParent)); }
  bool IsDefault() const { return bag_.Flag(kDefault); }
  bool IsEnabled() const { return bag_.Flag(kEnabled); }
  /// When it was saved last, to the second; invalid for one that has not been.
  QDateTime Saved() const;
  /// One of those that come with a profile, which cannot be deleted.
  bool IsSystem() const { return bag_.Flag(kSystem); }
  /// It is saved with the others that are (`MarkForSaving`).
  bool IsMarked() const { return bag_.Flag(kMarked); }

  // The keys. A prefix before one makes the name of the control that edits it.
  static inline const QString kType = QStringLiteral("FormName");
  static inline const QString kName = QStringLiteral("Object");
  static inline const QString kToolTip = QStringLiteral("ToolTipText");
  static inline const QString kDraw = QStringLiteral("Draw");
  static inline const QString kParent = QStringLiteral("Parent");
  static inline const QString kDefault = QStringLiteral("Default");
  static inline const QString kEnabled = QStringLiteral("Enabled");
  static inline const QString kSystem = QStringLiteral("System");
  static inline const QString kMarked = QStringLiteral("save");

 private:
  const Disk& bag_;
};

}  // namespace vorn
