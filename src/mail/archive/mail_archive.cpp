#include "mail/archive/mail_archive.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QRegularExpression>
#include <algorithm>
#include <cstring>
#include <filesystem>
#include <iterator>

#include "mail/archive/mbox.h"
#include "mail/attachment_files.h"
#include "mail/codec/header/address.h"
#include "mail/codec/mime/mime_codec.h"
#include "storage/files/whole_file.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr qint64 kLookedAt = 4096;

// Whether a file of one message was written by this program, told by its name.
bool IsOwnName(const QString& name) {
  static const QRegularExpression own(QStringLiteral("^\\d{7}(_.*\\.eml|\\.vorn.*)$"));
  return own.match(name).hasMatch();
}

const QString kPartsEnding = QStringLiteral(".vorn-part");
const QString kOldEnding = QStringLiteral(".vorn-old");
constexpr const char16_t* kMaildirParts[] = {u"cur", u"new", u"tmp"};

void RemoveTree(const QString& path) {
  if (QFileInfo(path).isDir() && !QFileInfo(path).isSymLink()) {
    QDir(path).removeRecursively();
  } else {
    QFile::remove(path);
  }
}

// Whether there is nothing in a folder but messages that were written by this program.
bool IsOwnArchive(const QString& path) {
  if (!QFileInfo(path).isDir() || QFileInfo(path).isSymLink()) return false;
  QDirIterator entries(path, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
  while (entries.hasNext()) {
    const QFileInfo entry(entries.next());
    const QString place = QDir(path).relativeFilePath(entry.filePath());
    const bool isPart = entry.isDir() && !entry.isSymLink() &&
                        std::any_of(std::begin(kMaildirParts), std::end(kMaildirParts),
                                    [&](const char16_t* part) { return place == part; });
    if (!isPart && !(entry.isFile() && IsOwnName(entry.fileName()))) return false;
  }
  return true;
}

// Nothing but an archive is replaced by one; what was named by a slip may be a database.
bool IsMbox(const QString& path) {
  QFile file(path);
  return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) &&
         (file.size() == 0 || file.peek(5) == "From ");
}

// A sentence about a file, which stands in it as "%1".
StorageError Failure(const QString& sentence, const QString& path) {
  return {StorageError::Kind::Other, sentence.arg(QDir::toNativeSeparators(path))};
}

StorageError CannotRead(const QString& path) {
  return Failure(Ui::tr("「%1」を読み込めません。"), path);
}

StorageError CannotWrite(const QString& path) {
  return Failure(Ui::tr("「%1」に書き込めません。ディスクの空き容量を確認してください。"), path);
}

Result<> WriteFile(const QString& path, const QByteArray& bytes) {
  return WriteWhole(path, bytes) ? Result<>() : CannotWrite(path);
}

// What begins with no header field may still be an old or broken message, but not one with bytes
// that no text has.
bool LooksLikeMessage(const QByteArray& start) {
  if (BeginsWithHeaderField(start)) return true;
  return std::none_of(start.begin(), start.end(), [](char c) {
    return c >= 0 && c < ' ' && std::strchr("\t\n\f\r\x1B", c) == nullptr;
  });
}

// A byte order mark and empty lines before the first separator are no message.
bool BeginsAsMbox(QByteArrayView start) {
  if (start.startsWith("\xEF\xBB\xBF")) start = start.sliced(3);
  while (start.startsWith('\r') || start.startsWith('\n')) start = start.sliced(1);
  return start.startsWith("From ");
}

Result<> ReadFile(const QString& path, const std::function<bool(const QByteArray&)>& take) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return CannotRead(path);
  const QByteArray start = file.peek(kLookedAt);
  if (BeginsAsMbox(start)) return ReadMbox(file, take) ? Result<>() : CannotRead(path);
  if (!start.isEmpty() && !LooksLikeMessage(start)) {
    return Failure(Ui::tr("「%1」はメッセージのファイルではありません。"), path);
  }
  QByteArray source = file.readAll();
  if (file.error() != QFileDevice::NoError) return CannotRead(path);
  if (!IsOwnName(QFileInfo(path).fileName())) source = WithCrLf(source);
  if (!source.isEmpty()) take(source);
  return {};
}

// A folder with all that lies in it.
class FolderReader {
 public:
  explicit FolderReader(const std::function<bool(const QByteArray&)>& take)
      : take_([this, &take](const QByteArray& source) { return goesOn_ = take(source); }) {}
  FolderReader(const FolderReader&) = delete;
  FolderReader& operator=(const FolderReader&) = delete;

  void Read(const QDir& folder) {
    const bool isMaildir =
        folder.exists(QStringLiteral("cur")) && folder.exists(QStringLiteral("new"));
    if (isMaildir) {
      ReadFiles(folder.filePath(QStringLiteral("cur")), {});
      ReadFiles(folder.filePath(QStringLiteral("new")), {});
    } else {
      ReadFiles(folder, {QStringLiteral("*.eml"), QStringLiteral("*.mbox")});
    }
    for (const QString& name : folder.entryList(
             QDir::Dirs | QDir::Hidden | QDir::NoSymLinks | QDir::NoDotAndDotDot, QDir::Name)) {
      const bool isRead = isMaildir && (name == u"cur" || name == u"new" || name == u"tmp");
      if (goesOn_ && !isRead) Read(QDir(folder.filePath(name)));
    }
  }
  const Result<>& Complete() const { return complete_; }
  int PassedOver() const { return goesOn_ ? passedOver_ : 0; }

 private:
  void ReadFiles(const QDir& folder, const QStringList& filters) {
    const QStringList names = folder.entryList(filters, QDir::Files, QDir::Name);
    for (const QString& name : names) {
      if (!goesOn_) return;
      const Result<> read = ReadFile(folder.filePath(name), take_);
      if (!read) complete_ = read;
    }
    passedOver_ += static_cast<int>(folder.entryList(QDir::Files).size() - names.size());
  }

  std::function<bool(const QByteArray&)> take_;
  bool goesOn_ = true;  // what was said of the last message
  Result<> complete_;
  int passedOver_ = 0;
};

// The address of the first author; empty when there is none.
QByteArray SenderOf(const QByteArray& source) {
  const QByteArray field = MimeCodec::HeaderField(source, "FROM:");
  if (field.isNull()) return {};
  const QString lines =
      ParseAddressList(MimeCodec::DecodeHeader(field, 0, {}, MimeCodec::HeaderUse::AddressList));
  const AddressEntry first = WithWholeAddress(ParseAddressEntry(lines.section(kLineBreak, 0, 0)));
  return IsMailAddress(first.address) ? first.address.toUtf8() : QByteArray();
}

}  // namespace

Result<QString> ReadArchive(const QString& path,
                            const std::function<bool(const QByteArray&)>& take) {
  if (!QFileInfo(path).isDir()) {
    const Result<> read = ReadFile(path, take);
    if (!read) return read.Error();
    return QString();
  }
  FolderReader reader(take);
  reader.Read(QDir(path));
  if (!reader.Complete()) return reader.Complete().Error();
  if (reader.PassedOver() == 0) return QString();
  return Ui::tr("メッセージのファイル（.emlか.mbox）でない%n個のファイルは取り込みませんでした。",
                nullptr, reader.PassedOver());
}

qint64 ArchiveBytes(const QString& path) {
  if (!QFileInfo(path).isDir()) return QFileInfo(path).size();
  qint64 bytes = 0;
  QDirIterator files(path, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
  while (files.hasNext()) bytes += QFileInfo(files.next()).size();
  return bytes;
}

ArchiveWriter::ArchiveWriter(ArchiveFormat format, const QString& path, bool overwrite)
    : format_(format),
      path_(QDir::cleanPath(path)),
      parts_(path_ + kPartsEnding),
      overwrite_(overwrite),
      lock_(path_ + kPartsEnding + QStringLiteral(".lock")) {
  lock_.setStaleLockTime(0);  // a lock is over when its program is, however long that works
}

ArchiveWriter::~ArchiveWriter() {
  if (isOpen_) RemoveParts();
}

Result<> ArchiveWriter::MayReplace() const {
  const QFileInfo target(path_);
  if (!target.exists() && !target.isSymLink()) return {};
  if (!overwrite_) return Failure(Ui::tr("「%1」はもうあります。"), path_);
  if (format_ == ArchiveFormat::Mbox ? IsMbox(path_) : IsOwnArchive(path_)) return {};
  return Failure(Ui::tr("「%1」には書き出したメッセージのほかのものがあるので、置き換えません。"),
                 path_);
}

Result<> ArchiveWriter::Open() {
  if (const Result<> may = MayReplace(); !may) return may;
  const StorageError cannot = Failure(Ui::tr("「%1」に書き込めません。"), path_);
  if (!QDir().mkpath(QFileInfo(path_).path())) return cannot;
  if (!lock_.tryLock()) {
    return lock_.error() == QLockFile::LockFailedError
               ? Failure(Ui::tr("「%1」には別の書き出しが書き込んでいます。"), path_)
               : cannot;
  }
  isOpen_ = true;
  RemoveLeftOvers();
  return MakeParts() ? Result<>() : cannot;
}

// Of a writer that was killed: what it gathered, and what it was about to replace.
void ArchiveWriter::RemoveLeftOvers() {
  RemoveTree(parts_);
  const QString old = path_ + kOldEnding;
  if (!QFileInfo::exists(old)) return;
  if (QFileInfo::exists(path_)) {
    RemoveTree(old);
  } else {
    QDir().rename(old, path_);
  }
}

bool ArchiveWriter::MakeParts() {
  if (format_ == ArchiveFormat::Mbox) {
    mbox_.setFileName(parts_);
    return mbox_.open(QIODevice::WriteOnly);
  }
  const QDir folder(parts_);
  bool made = folder.mkpath(QStringLiteral("."));
  if (format_ == ArchiveFormat::Maildir) {
    for (const char16_t* part : kMaildirParts) {
      made = made && folder.mkpath(QString::fromUtf16(part));
    }
  }
  return made;
}

void ArchiveWriter::RemoveParts() {
  mbox_.close();
  RemoveTree(parts_);
  lock_.unlock();
  isOpen_ = false;
}

Result<> ArchiveWriter::Write(const QByteArray& source, const ArchiveNote& note) {
  ++count_;
  const QString number = QStringLiteral("%1").arg(count_, 7, 10, QLatin1Char('0'));
  const QDir folder(parts_);
  if (format_ == ArchiveFormat::Eml) {
    return WriteFile(
        folder.filePath(number + u'_' + SafeFileName(note.name).left(60) + QStringLiteral(".eml")),
        source);
  }
  if (format_ == ArchiveFormat::Maildir) {
    return WriteFile(
        folder.filePath((note.opened ? QStringLiteral("cur/") : QStringLiteral("new/")) + number +
                        QStringLiteral(".vorn") +
                        (note.opened ? QStringLiteral(":2,S") : QString())),
        source);
  }
  const QByteArray bytes = MboxEntry(source, SenderOf(source), note.time);
  return mbox_.write(bytes) == bytes.size() ? Result<>() : CannotWrite(path_);
}

Result<> ArchiveWriter::Close() {
  if (!isOpen_) return CannotWrite(path_);
  bool written = true;
  if (format_ == ArchiveFormat::Mbox) {
    written = mbox_.flush();
    mbox_.close();
    written = written && mbox_.error() == QFileDevice::NoError;
  }
  // Another program may have made the target meanwhile.
  Result<> closed = written ? MayReplace() : CannotWrite(path_);
  if (closed && !Replace()) closed = CannotWrite(path_);
  RemoveParts();
  return closed;
}

bool ArchiveWriter::Replace() {
  std::error_code error;
  const auto rename = [&error](const QString& from, const QString& to) {
    std::filesystem::rename(from.toStdU16String(), to.toStdU16String(), error);
    return !error;
  };
  if (format_ == ArchiveFormat::Mbox || !QFileInfo::exists(path_)) return rename(parts_, path_);
  const QString old = path_ + kOldEnding;
  if (!rename(path_, old)) return false;
  if (!rename(parts_, path_)) {
    rename(old, path_);
    return false;
  }
  RemoveTree(old);
  return true;
}

}  // namespace vorn
