#pragma once

#include <QString>

#include "storage/databases.h"

namespace vorn {

/// A request to edit an object, by the names that its bag has for what it says beside
/// `WindowRequest`, whose status is the object's type. A view: the bag outlives it.
class ObjectRequest {
 public:
  explicit ObjectRequest(const Disk& bag) : bag_(bag) {}

  /// Where the object is stored.
  DatabaseKind Database() const;
  static void SetDatabase(Disk& bag, DatabaseKind kind);
  static void SetNew(Disk& bag, bool isNew) { bag.Let(kNew, isNew); }
  /// The event about the object that is shown with it; empty for none, as the following.
  SerialId Event() const { return SerialId(bag_.Text(kEvent)); }
  static void SetEvent(Disk& bag, const SerialId& serialId) { bag.Let(kEvent, serialId.Text()); }
  /// The object below which a new one stands.
  SerialId Parent() const { return SerialId(bag_.Text(kParent)); }
  static void SetParent(Disk& bag, const SerialId& serialId) { bag.Let(kParent, serialId.Text()); }
  /// The name of a new object.
  QString Name() const { return bag_.Text(kName); }
  static void SetName(Disk& bag, const QString& name) { bag.Let(kName, name); }
  /// A line that the window's list begins with.
  QString Condition() const { return bag_.Text(kCondition); }
  static void SetCondition(Disk& bag, const QString& line) { bag.Let(kCondition, line); }

 private:
  static inline const QString kNew = QStringLiteral("new");
  static inline const QString kEvent = QStringLiteral("event");
  static inline const QString kParent = QStringLiteral("parent");
  static inline const QString kName = QStringLiteral("name");
  static inline const QString kCondition = QStringLiteral("condition");

  const Disk& bag_;
};

inline DatabaseKind ObjectRequest::Database() const {
  return static_cast<DatabaseKind>(
      bag_.Number(kDatabaseKey, static_cast<qint32>(DatabaseKind::Profile)));
}

inline void ObjectRequest::SetDatabase(Disk& bag, DatabaseKind kind) {
  bag.Let(kDatabaseKey, static_cast<qint32>(kind));
}

}  // namespace vorn
