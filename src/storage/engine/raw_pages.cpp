#include "storage/engine/raw_pages.h"

#include <QMessageAuthenticationCode>
#include <QtEndian>

#include "storage/engine/engine_locks.h"
#include "storage/keys/file_key.h"

namespace vorn {
namespace {

// The engine's file format, version 3.
constexpr int kMarkKeyRounds = 2;
constexpr char kMarkSaltMask = 0x3A;
constexpr qsizetype kMarkAt = 4064;  // behind the text and its initial vector
constexpr qsizetype kMarkBytes = 20;
constexpr quint32 kPagesTried = 16;

QByteArray Read(sqlite3* handle, qint64 offset, qsizetype length) {
  sqlite3_file* file = EngineFile(handle);
  QByteArray bytes(length, Qt::Uninitialized);
  const bool read =
      file != nullptr &&
      file->pMethods->xRead(file, bytes.data(), static_cast<int>(length), offset) == SQLITE_OK;
  return read ? bytes : QByteArray();
}

QByteArray MarkKey(const QByteArray& salt, const QString& password) {
  QByteArray markSalt = salt;
  for (char& byte : markSalt) byte = static_cast<char>(byte ^ kMarkSaltMask);
  return FileKey::Pbkdf2(FileKey::Raw(password, salt), markSalt, kMarkKeyRounds);
}

}  // namespace

sqlite3_file* EngineFile(sqlite3* handle) {
  sqlite3_file* file = nullptr;
  sqlite3_file_control(handle, "main", SQLITE_FCNTL_FILE_POINTER, &file);
  return file != nullptr && file->pMethods != nullptr ? file : nullptr;
}

QByteArray FileStart(const QString& path, qsizetype length) {
  UseOwnLocks();
  sqlite3* handle = nullptr;
  sqlite3_open_v2(path.toUtf8().constData(), &handle, SQLITE_OPEN_READONLY, nullptr);
  const QByteArray bytes = Read(handle, 0, length);
  sqlite3_close_v2(handle);
  return bytes;
}

QByteArray FileSalt(sqlite3* handle) {
  return Read(handle, 0, FileKey::kSaltBytes);
}

PageMarks::PageMarks(sqlite3* handle, const QString& password) : handle_(handle) {
  const QByteArray salt = FileSalt(handle);
  if (!salt.isEmpty()) key_ = MarkKey(salt, password);
}

bool PageMarks::IsMarked(quint32 number, const QByteArray& page) const {
  if (key_.isEmpty() || page.size() != kPageBytes) return false;
  QMessageAuthenticationCode mark(QCryptographicHash::Sha1, key_);
  mark.addData(page.constData(), kMarkAt);
  const quint32 end = qToLittleEndian(number);
  mark.addData(reinterpret_cast<const char*>(&end), sizeof end);
  return mark.result() == page.mid(kMarkAt, kMarkBytes);
}

bool PageMarks::FitFile() const {
  for (quint32 number = 2; number < 2 + kPagesTried; ++number) {
    const QByteArray page = Read(handle_, (number - 1) * kPageBytes, kPageBytes);
    if (page.isEmpty()) return false;
    if (IsMarked(number, page)) return true;
  }
  return false;
}

}  // namespace vorn
