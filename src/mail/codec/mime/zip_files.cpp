#include "mail/codec/mime/zip_files.h"

#include <archive.h>
#include <archive_entry.h>

#include <QIODevice>
#include <QtEndian>
#include <memory>

#include "mail/codec/charset/charset.h"
#include "mail/codec/charset/utf8_locale.h"

namespace vorn {
namespace {

using Archive = std::unique_ptr<archive, decltype(&archive_read_free)>;

Archive Open(const QByteArray& bytes, const QString& password = {}) {
  Archive opened(archive_read_new(), &archive_read_free);
  if (!password.isEmpty()) {
    archive_read_add_passphrase(opened.get(), password.toUtf8().constData());
  }
  // The directory at the end is read, so that sizes and encryption are known before the contents.
  archive_read_support_format_zip_seekable(opened.get());
  const int result =
      archive_read_open_memory(opened.get(), bytes.constData(), static_cast<size_t>(bytes.size()));
  if (result != ARCHIVE_OK) opened.reset();
  return opened;
}

bool IsFile(archive_entry* entry) {
  return archive_entry_filetype(entry) == AE_IFREG;
}

QString NameOf(archive_entry* entry) {
  const char* name = archive_entry_pathname(entry);
  if (name == nullptr) name = archive_entry_pathname_utf8(entry);
  return DecodeAutomatically(QByteArrayView(name == nullptr ? "" : name), {});
}

ZipResult Copy(archive* opened, bool isEncrypted, QIODevice& target) {
  const void* piece = nullptr;
  size_t size = 0;
  la_int64_t offset = 0;
  for (;;) {
    const int result = archive_read_data_block(opened, &piece, &size, &offset);
    if (result == ARCHIVE_EOF) return ZipResult::Done;
    // A wrong password is told by what comes out of it.
    if (result != ARCHIVE_OK) return isEncrypted ? ZipResult::WrongPassword : ZipResult::Damaged;
    const auto length = static_cast<qint64>(size);
    if (target.write(static_cast<const char*>(piece), length) != length) {
      return ZipResult::NotWritten;
    }
  }
}

// Whether the directory at the end is the only one that a reader may find there, and describes what
// stands right before it: of two archives in one file another program may see the other one.
bool IsOneArchive(const QByteArray& bytes) {
  constexpr qsizetype kRecord = 22;
  constexpr qsizetype kLongestComment = 65535;
  constexpr quint32 kElsewhere = 0xFFFFFFFF;  // in a record for large archives
  const QByteArray mark = "PK\5\6";
  const qsizetype end = bytes.lastIndexOf(mark);
  if (end < 0 || bytes.size() - end < kRecord) return false;
  const qsizetype before = end > 0 ? bytes.lastIndexOf(mark, end - 1) : -1;
  if (before >= 0 && bytes.size() - before <= kRecord + kLongestComment) return false;
  const auto size = qFromLittleEndian<quint32>(bytes.constData() + end + 12);
  const auto place = qFromLittleEndian<quint32>(bytes.constData() + end + 16);
  const auto comment = qFromLittleEndian<quint16>(bytes.constData() + end + 20);
  if (end + kRecord + comment != bytes.size()) return false;
  return place == kElsewhere || qsizetype{place} + size == end;
}

}  // namespace

std::vector<ZipEntry> ListZip(const QByteArray& bytes) {
  std::vector<ZipEntry> files;
  const Utf8Locale locale;
  const Archive opened = Open(bytes);
  archive_entry* entry = nullptr;
  while (opened != nullptr && files.size() < kMostZipFiles) {
    const int result = archive_read_next_header(opened.get(), &entry);
    if (result == ARCHIVE_EOF || result < ARCHIVE_WARN) break;
    if (!IsFile(entry)) continue;
    files.push_back({NameOf(entry), archive_entry_is_data_encrypted(entry) != 0});
  }
  return files;
}

bool HasHiddenFiles(const QByteArray& bytes) {
  if (!IsOneArchive(bytes)) return true;
  const Utf8Locale locale;
  const Archive opened = Open(bytes);
  archive_entry* entry = nullptr;
  while (opened != nullptr) {
    const int result = archive_read_next_header(opened.get(), &entry);
    if (result == ARCHIVE_EOF || result < ARCHIVE_WARN) break;
    const bool isFolder =
        archive_entry_filetype(entry) == AE_IFDIR && archive_entry_size(entry) == 0;
    if (!IsFile(entry) && !isFolder) return true;
  }
  return false;
}

ZipResult UnpackZip(const QByteArray& bytes, const QString& password,
                    const std::function<QIODevice*(size_t index)>& target,
                    const std::function<bool()>& done) {
  const Utf8Locale locale;
  const Archive opened = Open(bytes, password);
  if (opened == nullptr) return ZipResult::Damaged;
  archive_entry* entry = nullptr;
  for (size_t index = 0; index < kMostZipFiles;) {
    const int result = archive_read_next_header(opened.get(), &entry);
    if (result == ARCHIVE_EOF) break;
    if (result < ARCHIVE_WARN) return ZipResult::Damaged;
    if (!IsFile(entry)) continue;
    QIODevice* device = target(index++);
    if (device == nullptr) continue;
    const bool isEncrypted = archive_entry_is_data_encrypted(entry) != 0;
    const ZipResult copied = Copy(opened.get(), isEncrypted, *device);
    if (copied != ZipResult::Done) return copied;
    if (!done()) return ZipResult::NotWritten;
  }
  return ZipResult::Done;
}

}  // namespace vorn
