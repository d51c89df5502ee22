#pragma once

#include <QHash>
#include <QMetaType>
#include <QString>
#include <QVariant>
#include <memory>
#include <vector>

#include "storage/base/serial_id.h"

namespace vorn {

class DataSession;
class Disk;
class DiskCollection;

using DiskPtr = std::shared_ptr<Disk>;
using DiskCollectionPtr = std::shared_ptr<DiskCollection>;

/// One named value inside a bag. Only `Disk` creates items.
class DiskCash {
 public:
  explicit DiskCash(QString name) : name_(std::move(name)) {}
  virtual ~DiskCash() = default;

  virtual const QVariant& Cash() const { return value_; }
  virtual void LetCash(const QVariant& value) { value_ = value; }
  virtual void SetCash(const QVariant& reference) { value_ = reference; }
  /// The item's name as it was spelled when the item was created.
  virtual const QString& SerialID() const { return name_; }
  virtual void LetSerialID(const QString& name) { name_ = name; }

 private:
  QString name_;
  QVariant value_;
};

/// The property bag: named variant values under a serial identifier, the one record type of the
/// system. Keys are compared without regard to letter case; insertion order is kept.
///
/// A value is a string, boolean, integer, date or double, or a reference: a `DiskPtr`, a
/// `DiskCollectionPtr` or a `QObject*`; in a bag that is never stored also an enumerator. A bag
/// owns its items; a collection that is discarded with its item is emptied first.
///
/// Bags live on the user-interface thread. The persistence operations work on whatever database
/// `session` has open and report failure as false, without a message.
class Disk {
 public:
  explicit Disk(QString serialId = {}) : serialId_(std::move(serialId)) {}
  explicit Disk(const SerialId& id) : serialId_(id.Text()) {}
  virtual ~Disk();
  Disk(const Disk&) = delete;
  Disk& operator=(const Disk&) = delete;

  /// The value under `key`, or `fallback` when the stored value is empty (an absent key). A key
  /// that holds an empty string yields the empty string.
  virtual QVariant Check(QStringView key, const QVariant& fallback) const;
  /// Replaces the items with the rows stored under the serial identifier. False, with the items
  /// untouched, when the identifier is empty or the rows cannot be read.
  [[nodiscard]] virtual bool DatabaseToDisk(DataSession& session);
  /// Deletes the stored rows; the items in memory stay.
  [[nodiscard]] virtual bool Delete(DataSession& session);
  /// Replaces the stored rows with the items. Stored rows survive a failed save even when the
  /// caller runs no transaction.
  [[nodiscard]] virtual bool DiskToDatabase(DataSession& session);
  /// Stores a plain value. A new item keeps the spelling of `key`; an existing one its own.
  virtual void Let(const QString& key, const QVariant& value);
  /// The value under `key`; an absent key yields the invalid variant, never an error.
  virtual QVariant Get(QStringView key) const;
  /// Stores a reference to an object or a collection.
  virtual void Set(const QString& key, const QVariant& reference);
  virtual const QString& SerialID() const { return serialId_; }
  virtual void LetSerialID(const QString& serialId) { serialId_ = serialId; }
  /// The same as what it is.
  SerialId Serial() const { return SerialId(serialId_); }
  /// Removes all items; the serial identifier stays.
  virtual void Init();
  /// Removes one item; an absent key is no error.
  virtual void Remove(QStringView key);
  virtual qint32 Size() const { return static_cast<qint32>(items_.size()); }
  /// The name, as first spelled, at a 1-based position in insertion order.
  /// Throws std::out_of_range outside 1 to `Size`.
  virtual const QString& NameAt(qint32 position) const;

  // Typed readings of `Check`, for the keys whose type is fixed.
  QString Text(QStringView key, const QString& fallback = {}) const;
  bool Flag(QStringView key, bool fallback = false) const;
  qint32 Number(QStringView key, qint32 fallback = 0) const;
  /// The collection referred to under `key`, or null.
  DiskCollectionPtr Collection(QStringView key) const;

 private:
  DiskCash* Find(QStringView key) const;
  DiskCash& FindOrAppend(const QString& key);

  QString serialId_;
  std::vector<std::unique_ptr<DiskCash>> items_;
  QHash<QString, DiskCash*> byName_;
};

/// Bags keyed by serial identifier, in the order in which they were added.
class DiskCollection {
 public:
  /// False, changing nothing, when the identifier is taken.
  bool Add(const DiskPtr& disk);
  /// The bag with that identifier, or null.
  DiskPtr Find(const SerialId& id) const { return bySerial_.value(id); }
  bool Contains(const SerialId& id) const { return bySerial_.contains(id); }
  void Remove(const SerialId& id);
  bool IsEmpty() const { return order_.empty(); }
  qsizetype Count() const { return static_cast<qsizetype>(order_.size()); }
  const DiskPtr& First() const { return order_.front(); }

  auto begin() const { return order_.begin(); }
  auto end() const { return order_.end(); }

 private:
  std::vector<DiskPtr> order_;
  QHash<SerialId, DiskPtr> bySerial_;
};

}  // namespace vorn

Q_DECLARE_METATYPE(vorn::DiskPtr)
Q_DECLARE_METATYPE(vorn::DiskCollectionPtr)
