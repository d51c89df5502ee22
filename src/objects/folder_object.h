#pragma once

#include <QString>

#include "storage/bags/disk.h"

namespace vorn {

/// What a folder is filled with, by the names that its object's bag has for it. A view: the bag
/// outlives it.
class FolderObject {
 public:
  explicit FolderObject(const Disk& bag) : bag_(bag) {}

  /// Whether its messages are those that `Sql` selects, and not what `Conditions` says.
  bool UsesSql() const { return bag_.Flag(kSqlUse); }
  QString Sql() const { return bag_.Text(kSql); }
  /// One a line (`ParseConditionLine`). Without any the folder is filled by hand.
  QString Conditions() const { return bag_.Text(kConditions); }
  static void SetConditions(Disk& bag, bool usesSql, const QString& sql, const QString& conditions);

  /// Whether it is a folder at all, and one that is filled by hand.
  bool IsFilledByHand() const;
  /// Whether it shows what is put into it: one that was given conditions later shows by these.
  bool ShowsWhatIsFiled() const;
  /// Settles for good how it is filled, which its picture tells.
  static void SetFilledByHand(Disk& bag, bool isByHand);

  // The keys. A prefix before one makes the name of the control that edits it.
  static inline const QString kSqlUse = QStringLiteral("SqlUse");
  static inline const QString kSql = QStringLiteral("Sql");
  static inline const QString kConditions = QStringLiteral("Condition");

 private:
  const Disk& bag_;
};

}  // namespace vorn
