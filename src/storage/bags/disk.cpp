#include "storage/bags/disk.h"

#include <algorithm>
#include <stdexcept>

#include "storage/engine/recordset.h"
#include "storage/session/data_session.h"
#include "storage/sql/sql_text.h"

namespace vorn {
namespace {

const QString kTrueMark = QStringLiteral("○");
const QString kFalseMark = QStringLiteral("×");

struct StoredValue {
  QString typeWord;
  QString text;
};

// The row form of a value, or a null type word for a value that has no text form.
StoredValue Encode(const QVariant& value) {
  switch (value.typeId()) {
    case QMetaType::QString:
      return {QStringLiteral("string"), value.toString()};
    case QMetaType::Bool:
      return {QStringLiteral("boolean"), value.toBool() ? kTrueMark : kFalseMark};
    default:
      if (!value.canConvert<QString>()) return {};
      return {QStringLiteral("long"), value.toString()};
  }
}

QVariant Decode(QStringView typeWord, const QString& text) {
  if (typeWord == u"string") return text;
  if (typeWord == u"boolean" || typeWord == u"bool") return text == kTrueMark;
  bool isNumber = false;
  const qint32 number = text.toInt(&isNumber);
  // A damaged number keeps its text, so that nothing is lost and the other values load.
  return isNumber ? QVariant(number) : QVariant(text);
}

// A collection that dies with its item is emptied from the front, so that its members are
// released in order even when somebody else still holds the collection itself.
void Discard(const DiskCash& item) {
  if (auto collection = item.Cash().value<DiskCollectionPtr>()) {
    while (!collection->IsEmpty()) collection->Remove(DiskPtr(collection->First())->Serial());
  }
}

// Replaces the rows of the bag's serial identifier; of a failure some may have gone.
bool WriteItems(DataSession& session, const Disk& bag) {
  const QString& serialId = bag.SerialID();
  if (!session.OpenRecordset(
          QStringLiteral("SELECT * FROM object WHERE SERIALID = ") + QuoteSql(serialId),
          CursorKind::Updatable)) {
    return false;
  }
  const RecordsetPtr rows = session.Recordset();
  for (; !rows->Eof(); rows->MoveNext()) {
    if (rows->Fields(u"SERIALID").toString() == serialId && !rows->Delete()) return false;
  }
  for (qint32 position = 1; position <= bag.Size(); ++position) {
    const QString& name = bag.NameAt(position);
    const StoredValue stored = Encode(bag.Get(name));
    if (stored.typeWord.isNull()) return false;
    rows->AddNew();
    rows->SetField(QStringLiteral("SERIALID"), serialId);
    rows->SetField(QStringLiteral("NAME"), name + u'@' + stored.typeWord);
    rows->SetField(QStringLiteral("PROPERTY"), stored.text);
    if (!rows->Update()) return false;
  }
  return true;
}

}  // namespace

Disk::~Disk() {
  Disk::Init();
}

DiskCash* Disk::Find(QStringView key) const {
  return byName_.value(key.toString().toLower());
}

DiskCash& Disk::FindOrAppend(const QString& key) {
  DiskCash*& slot = byName_[key.toLower()];
  if (slot == nullptr) {
    items_.push_back(std::make_unique<DiskCash>(key));
    slot = items_.back().get();
  }
  return *slot;
}

QVariant Disk::Get(QStringView key) const {
  const DiskCash* item = Find(key);
  return item == nullptr ? QVariant() : item->Cash();
}

QVariant Disk::Check(QStringView key, const QVariant& fallback) const {
  QVariant value = Get(key);
  return value.isValid() ? value : fallback;
}

void Disk::Let(const QString& key, const QVariant& value) {
  FindOrAppend(key).LetCash(value);
}

void Disk::Set(const QString& key, const QVariant& reference) {
  FindOrAppend(key).SetCash(reference);
}

QString Disk::Text(QStringView key, const QString& fallback) const {
  return Check(key, fallback).toString();
}

bool Disk::Flag(QStringView key, bool fallback) const {
  return Check(key, fallback).toBool();
}

qint32 Disk::Number(QStringView key, qint32 fallback) const {
  bool isNumber = false;
  const qint32 number = Check(key, fallback).toInt(&isNumber);
  return isNumber ? number : fallback;
}

DiskCollectionPtr Disk::Collection(QStringView key) const {
  return Get(key).value<DiskCollectionPtr>();
}

const QString& Disk::NameAt(qint32 position) const {
  if (position < 1 || position > Size()) throw std::out_of_range("Disk::NameAt");
  return items_[static_cast<size_t>(position - 1)]->SerialID();
}

void Disk::Remove(QStringView key) {
  const QString name = key.toString().toLower();
  DiskCash* item = byName_.take(name);
  if (item == nullptr) return;
  Discard(*item);
  std::erase_if(items_, [item](const auto& owned) { return owned.get() == item; });
}

void Disk::Init() {
  for (const auto& item : items_) Discard(*item);
  byName_.clear();
  items_.clear();
}

bool Disk::DatabaseToDisk(DataSession& session) {
  if (serialId_.isEmpty()) return false;
  if (!session.OpenRecordset(
          QStringLiteral("SELECT * FROM object WHERE SERIALID = ") + QuoteSql(serialId_),
          CursorKind::ForwardOnly)) {
    return false;
  }
  const RecordsetPtr rows = session.Recordset();
  QList<std::pair<QString, QVariant>> read;
  for (; !rows->Eof(); rows->MoveNext()) {
    const QStringList name = rows->Fields(u"NAME").toString().split(u'@');
    if (name.size() != 2) continue;
    read.append({name[0], Decode(name[1], rows->Fields(u"PROPERTY").toString())});
  }
  if (rows->Failed()) return false;
  Init();
  for (const auto& [key, value] : read) Let(key, value);
  return true;
}

bool Disk::DiskToDatabase(DataSession& session) {
  if (serialId_.isEmpty()) return false;
  // Transactions nest, so the rows are replaced all or none whoever the caller is.
  if (!session.Begin()) return false;
  if (WriteItems(session, *this)) return session.Commit();
  session.Rollback();
  return false;
}

bool Disk::Delete(DataSession& session) {
  return session.Execute(QStringLiteral("DELETE FROM object WHERE SERIALID = ") +
                         QuoteSql(serialId_));
}

bool DiskCollection::Add(const DiskPtr& disk) {
  if (bySerial_.contains(disk->Serial())) return false;
  bySerial_.insert(disk->Serial(), disk);
  order_.push_back(disk);
  return true;
}

void DiskCollection::Remove(const SerialId& id) {
  if (bySerial_.remove(id) == 0) return;
  std::erase_if(order_, [&](const DiskPtr& disk) { return disk->Serial() == id; });
}

}  // namespace vorn
