#include "mail/mail_archive.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>

#include "mail/attachment_files.h"
#include "storage/ui.h"

namespace vorn {
namespace {

// The separator of the files this program writes: what follows is exactly as it was stored.
constexpr char kOwnSeparator[] = "From VORN Thu Jan  1 00:00:00 1970\n";
constexpr qint64 kMaxLine = 64 * 1024 * 1024;

bool HasBareLineFeeds(const QByteArray& source) {
  const qsizetype first = source.indexOf('\n');
  return first >= 0 && (first == 0 || source[first - 1] != '\r');
}

QByteArray WithCrLf(QByteArray source) {
  source.replace("\r\n", "\n");
  return source.replace('\n', "\r\n");
}

// Whether a file of one message was written by this program, told by its name.
bool IsOwnName(const QString& name) {
  static const QRegularExpression own(QStringLiteral("^\\d{7}(_.*\\.eml|\\.vorn.*)$"));
  return own.match(name).hasMatch();
}

// ">From " with any number of ">" before it (mboxrd).
bool IsQuotedFrom(const QByteArray& line) {
  qsizetype at = 0;
  while (at < line.size() && line[at] == '>') ++at;
  return QByteArrayView(line).sliced(at).startsWith("From ");
}

class MboxReader {
 public:
  MboxReader(QFile& file, const std::function<bool(const QByteArray&)>& take)
      : file_(file), take_(take) {}

  // Whether everything was read or `take` had enough.
  bool Run() {
    bool lineBegins = true;
    while (!file_.atEnd()) {
      QByteArray line = file_.readLine(kMaxLine);
      if (line.isEmpty() && file_.error() != QFileDevice::NoError) return false;
      if (lineBegins && line.startsWith("From ")) {
        if (!HandOver()) return true;
        isOwn_ = line == kOwnSeparator;
      } else {
        if (lineBegins && line.startsWith('>') && IsQuotedFrom(line)) line.remove(0, 1);
        message_ += line;
      }
      lineBegins = line.endsWith('\n');
    }
    HandOver();
    return file_.error() == QFileDevice::NoError;
  }

 private:
  bool HandOver() {
    QByteArray source = std::exchange(message_, {});
    if (source.isEmpty()) return true;
    // The line break or the empty line before a separator is the separator's.
    if (isOwn_ || source.endsWith("\n\n")) {
      source.chop(1);
    } else if (source.endsWith("\r\n\r\n")) {
      source.chop(2);
    }
    if (!isOwn_ && HasBareLineFeeds(source)) source = WithCrLf(source);
    return take_(source);
  }

  QFile& file_;
  const std::function<bool(const QByteArray&)>& take_;
  QByteArray message_;
  bool isOwn_ = false;
};

bool CannotRead(const QString& path, QString* error) {
  *error = Ui::tr("「%1」を読み込めません。").arg(QDir::toNativeSeparators(path));
  return false;
}

bool ReadFile(const QString& path, const std::function<bool(const QByteArray&)>& take, bool* goesOn,
              QString* error) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return CannotRead(path, error);
  if (file.peek(5) == "From ") {
    return MboxReader(file, take).Run() || CannotRead(path, error);
  }
  QByteArray source = file.readAll();
  if (file.error() != QFileDevice::NoError) return CannotRead(path, error);
  if (HasBareLineFeeds(source) && !IsOwnName(QFileInfo(path).fileName())) source = WithCrLf(source);
  if (!source.isEmpty()) *goesOn = take(source);
  return true;
}

}  // namespace

bool ReadArchive(const QString& path, const std::function<bool(const QByteArray&)>& take,
                 QString* error) {
  bool goesOn = true;
  const QFileInfo info(path);
  if (!info.isDir()) return ReadFile(path, take, &goesOn, error);
  const QDir folder(path);
  const bool isMaildir =
      folder.exists(QStringLiteral("cur")) && folder.exists(QStringLiteral("new"));
  const QStringList parts = isMaildir ? QStringList{QStringLiteral("cur"), QStringLiteral("new")}
                                      : QStringList{QStringLiteral(".")};
  const QStringList filters = isMaildir ? QStringList() : QStringList{QStringLiteral("*.eml")};
  for (const QString& part : parts) {
    const QDir messages(folder.filePath(part));
    for (const QString& name : messages.entryList(filters, QDir::Files, QDir::Name)) {
      if (!ReadFile(messages.filePath(name), take, &goesOn, error)) return false;
      if (!goesOn) return true;
    }
  }
  return true;
}

bool ArchiveWriter::Fail(const QString& error) {
  error_ = error;
  return false;
}

bool ArchiveWriter::Open() {
  if (QFileInfo::exists(path_)) {
    return Fail(Ui::tr("「%1」はもうあります。").arg(QDir::toNativeSeparators(path_)));
  }
  const QString cannot = Ui::tr("「%1」に書き込めません。").arg(QDir::toNativeSeparators(path_));
  if (format_ == ArchiveFormat::Mbox) {
    mbox_.setFileName(path_);
    return mbox_.open(QIODevice::WriteOnly) || Fail(cannot);
  }
  const QDir folder(path_);
  bool made = folder.mkpath(QStringLiteral("."));
  if (format_ == ArchiveFormat::Maildir) {
    for (const char16_t* part : {u"cur", u"new", u"tmp"}) {
      made = made && folder.mkpath(QString::fromUtf16(part));
    }
  }
  return made || Fail(cannot);
}

bool ArchiveWriter::WriteFile(const QString& path, const QByteArray& bytes) {
  QSaveFile file(path);
  if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit()) {
    return true;
  }
  return Fail(Ui::tr("「%1」に書き込めません。ディスクの空き容量を確認してください。")
                  .arg(QDir::toNativeSeparators(path)));
}

bool ArchiveWriter::Write(const QByteArray& source, const QString& name, bool opened) {
  ++count_;
  const QString number = QStringLiteral("%1").arg(count_, 7, 10, QLatin1Char('0'));
  const QDir folder(path_);
  if (format_ == ArchiveFormat::Eml) {
    return WriteFile(
        folder.filePath(number + u'_' + SafeFileName(name).left(60) + QStringLiteral(".eml")),
        source);
  }
  if (format_ == ArchiveFormat::Maildir) {
    return WriteFile(
        folder.filePath((opened ? QStringLiteral("cur/") : QStringLiteral("new/")) + number +
                        QStringLiteral(".vorn") + (opened ? QStringLiteral(":2,S") : QString())),
        source);
  }
  QByteArray bytes = kOwnSeparator;
  for (qsizetype at = 0; at < source.size();) {
    const qsizetype lineFeed = source.indexOf('\n', at);
    const qsizetype end = lineFeed < 0 ? source.size() : lineFeed + 1;
    const QByteArray line = source.sliced(at, end - at);
    if (IsQuotedFrom(line)) bytes += '>';
    bytes += line;
    at = end;
  }
  bytes += '\n';
  return mbox_.write(bytes) == bytes.size() ||
         Fail(Ui::tr("「%1」に書き込めません。ディスクの空き容量を確認してください。")
                  .arg(QDir::toNativeSeparators(path_)));
}

bool ArchiveWriter::Close() {
  if (format_ != ArchiveFormat::Mbox) return true;
  const bool written = mbox_.flush();
  mbox_.close();
  return (written && mbox_.error() == QFileDevice::NoError) ||
         Fail(Ui::tr("「%1」に書き込めません。ディスクの空き容量を確認してください。")
                  .arg(QDir::toNativeSeparators(path_)));
}

}  // namespace vorn
