#include "storage/engine/long_binary_table.h"

#include "storage/engine/connection.h"
#include "storage/engine/engine.h"
#include "storage/engine/source_digest.h"
#include "storage/files/found_damage.h"
#include "storage/ui.h"

namespace vorn {
namespace {

// The engine gives zeros for a page that it cannot decrypt and for one that was overwritten with
// zeros. Where such a page is the last one of a source, nothing else shows it; no mail ends so.
bool IsAsWritten(const QByteArray& bytes, const QByteArray& digest) {
  return digest.isEmpty() ? !bytes.endsWith('\0') : digest == SourceDigest(bytes);
}

}  // namespace

Result<QByteArray> LongBinaryTable::Read(qint64 id) {
  const bool wasBroken = connection_.Damage().contains(kDamagedFile);
  Result<Entry> entry = ReadWithDigest(id);
  if (entry && IsAsWritten(entry->bytes, entry->digest)) return std::move(entry->bytes);
  if (!entry && entry.Error().kind == StorageError::Kind::Busy) return entry.Error();
  // One that cannot be found or read is damaged, whatever the engine calls it, and it alone: as the
  // whole file it would take back what the user decided on this source.
  if (!wasBroken) connection_.Damage().remove(kDamagedFile);
  connection_.FailWith({StorageError::Kind::Damaged, Ui::tr("メッセージのデータが壊れています。")},
                       kDamagedSource + QString::number(id));
  return connection_.LastError();
}

// One statement is faster than the engine's handle on a single value, which spares large data a
// copy.
Result<LongBinaryTable::Entry> LongBinaryTable::ReadWithDigest(qint64 id) {
  const auto large = [this, id](const QByteArray& digest) -> Result<Entry> {
    Result<QByteArray> bytes = ReadLarge(id);
    if (!bytes) return bytes.Error();
    return Entry{*std::move(bytes), digest};
  };
  const auto row = connection_.Prepare(
      "SELECT DIGEST, CASE WHEN LENGTH(DATA) <= 1000000 THEN DATA END FROM long_binary WHERE ID = "
      "?");
  if (row == nullptr) {
    // The tables of an earlier version have no digests.
    if (connection_.LastError().kind == StorageError::Kind::BadStatement) return large({});
    return connection_.LastError();
  }
  row->Bind({id});
  const Statement::Step step = row->Next();
  if (step == Statement::Step::Failed) return connection_.LastError();
  if (step == Statement::Step::Done) return StorageError::Wordless();
  QByteArray digest = row->Value(0).toByteArray();
  const QVariant data = row->Value(1);
  if (digest.isEmpty()) {
    const Result<QByteArray> late = ReadLateDigest(id);
    if (!late) return late.Error();
    digest = *late;
  }
  if (!data.isValid()) return large(digest);
  return Entry{data.toByteArray(), digest};
}

Result<QByteArray> LongBinaryTable::ReadLarge(qint64 id) {
  sqlite3_blob* blob = nullptr;
  QByteArray bytes;
  bool isRead = sqlite3_blob_open(connection_.Handle(), "main", "long_binary", "DATA", id, 0,
                                  &blob) == SQLITE_OK;
  if (isRead) {
    bytes = QByteArray(sqlite3_blob_bytes(blob), Qt::Uninitialized);
    const int size = static_cast<int>(bytes.size());
    isRead = sqlite3_blob_read(blob, bytes.data(), size, 0) == SQLITE_OK;
  }
  if (!isRead) connection_.Fail();
  sqlite3_blob_close(blob);
  if (!isRead) return connection_.LastError();
  return bytes;
}

// Empty when there is none; fails when that cannot be known.
Result<QByteArray> LongBinaryTable::ReadLateDigest(qint64 id) {
  const auto row = connection_.Prepare("SELECT DIGEST FROM late_digest WHERE ID = ?");
  if (row == nullptr) {
    if (connection_.LastError().kind == StorageError::Kind::BadStatement) return QByteArray();
    return connection_.LastError();
  }
  row->Bind({id});
  const Statement::Step step = row->Next();
  if (step == Statement::Step::Failed) return connection_.LastError();
  return step == Statement::Step::Row ? row->Value(0).toByteArray() : QByteArray();
}

qint64 LongBinaryTable::Size(qint64 id) {
  sqlite3_blob* blob = nullptr;
  qint64 size = -1;
  if (sqlite3_blob_open(connection_.Handle(), "main", "long_binary", "DATA", id, 0, &blob) ==
      SQLITE_OK) {
    size = sqlite3_blob_bytes(blob);
  } else {
    connection_.Fail();
  }
  sqlite3_blob_close(blob);
  return size;
}

qint64 LongBinaryTable::Write(const QByteArray& data) {
  // A number that was given once is not given again, whatever is seen of the entries.
  const bool written =
      connection_.Run(
          "UPDATE long_binary_last SET ID = MAX(ID, COALESCE((SELECT MAX(ID) FROM long_binary), "
          "0)) + 1") &&
      connection_.Run(
          "INSERT INTO long_binary (ID, DIGEST, DATA) VALUES ((SELECT ID FROM "
          "long_binary_last), ?, ?)",
          {SourceDigest(data), data});
  return written ? sqlite3_last_insert_rowid(connection_.Handle()) : 0;
}

}  // namespace vorn
