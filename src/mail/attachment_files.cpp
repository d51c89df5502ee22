#include "mail/attachment_files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QRegularExpression>

#include "mail/codec/mime/mime_codec.h"
#include "storage/base/shown_text.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr qsizetype kMaxNameBytes = 240;  // of the 255 that file systems take
constexpr qsizetype kMaxEndingBytes = 48;

// Whether Windows takes the name for a device's, whatever its ending.
bool IsReserved(const QString& name) {
  static const QRegularExpression device(
      QStringLiteral("^(con|prn|aux|nul|conin\\$|conout\\$|(com|lpt)[0-9¹²³])$"),
      QRegularExpression::CaseInsensitiveOption);
  return device.match(name.section(u'.', 0, 0).trimmed()).hasMatch();
}

bool IsUnsafe(char32_t c) {
  switch (QChar::category(c)) {
    case QChar::Other_Control:
    case QChar::Other_Format:  // direction marks make "gpj.exe" read as "exe.jpg"
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
      return true;
    default:
      return c < 0x80 && QStringView(u"/\\:*?\"<>|").contains(QChar(char16_t(c)));
  }
}

// A blank or a dot at its beginning hides a name, at its end it is lost on some platforms.
QString WithoutHiddenEnds(QStringView name) {
  const auto hides = [](QChar c) { return c == u'.' || c.isSpace(); };
  while (!name.isEmpty() && hides(name.front())) name = name.sliced(1);
  while (!name.isEmpty() && hides(name.back())) name.chop(1);
  return name.toString();
}

// As many whole characters from the beginning as fit into so many bytes of UTF-8.
QString CutToBytes(const QString& text, qsizetype bytes) {
  QByteArray cut = text.toUtf8().left(qMax(bytes, qsizetype(0)));
  const auto isContinuation = [](char c) { return (c & 0xC0) == 0x80; };
  if (cut.size() == bytes) {
    qsizetype first = cut.size() - 1;
    while (first > 0 && isContinuation(cut[first])) --first;
    if (first >= 0 && QString::fromUtf8(cut.sliced(first)).contains(QChar::ReplacementCharacter)) {
      cut.truncate(first);
    }
  }
  return QString::fromUtf8(cut);
}

}  // namespace

Result<QByteArray> ReadAttachment(const ModelAttachment& attachment, const QByteArray& source) {
  if (attachment.inner) return *attachment.inner;
  if (attachment.made) return *attachment.made;
  if (!attachment.isNew) {
    const MimeCodec::ContentRecord& record = attachment.record;
    return MimeCodec::DecodePart(source, MimeCodec::TransferEncodingOf(record.encoding.toLatin1()),
                                 record.first, record.last);
  }
  QFile file(attachment.path);
  if (file.open(QIODevice::ReadOnly)) {
    QByteArray data = file.readAll();
    if (file.error() == QFileDevice::NoError) return data.isNull() ? QByteArrayLiteral("") : data;
  }
  return StorageError{StorageError::Kind::Other,
                      Ui::tr("添付ファイル「%1」を読み込めません。").arg(attachment.path)};
}

qint64 AttachmentSize(const ModelAttachment& attachment, const QByteArray& source) {
  using MimeCodec::TransferEncoding;
  if (attachment.isNew) return QFileInfo(attachment.path).size();
  const MimeCodec::ContentRecord& record = attachment.record;
  const TransferEncoding encoding = MimeCodec::TransferEncodingOf(record.encoding.toLatin1());
  const QByteArrayView bytes = MimeCodec::PartOf(source, record.first, record.last);
  const bool isPlain = !attachment.inner && !attachment.made &&
                       encoding == TransferEncoding::Base64 &&
                       MimeCodec::Base64End(bytes) == bytes.size();
  if (!isPlain) return ReadAttachment(attachment, source).ValueOr({}).size();
  return std::count_if(bytes.begin(), bytes.end(), MimeCodec::IsBase64Letter) * 3 / 4;
}

bool IsNamedArchive(const ModelAttachment& attachment) {
  return attachment.name.endsWith(u".zip", Qt::CaseInsensitive) ||
         attachment.type.contains(u"zip", Qt::CaseInsensitive);
}

QString SafeFileName(const QString& name) {
  QString safe;
  for (const char32_t c : name.toUcs4()) safe += QChar::fromUcs4(IsUnsafe(c) ? U'_' : c);
  static const QRegularExpression gap(
      QStringLiteral("\\s{3,}"));  // would push the ending out of sight
  safe = WithoutHiddenEnds(WithoutHidden(safe.replace(gap, QStringLiteral(" "))));
  // Commands take the one for an option, file dialogs the other for somebody's home.
  if (safe.startsWith(u'-') || safe.startsWith(u'~')) safe[0] = u'_';
  if (safe.toUtf8().size() > kMaxNameBytes) {
    const QString ending = CutToBytes(QFileInfo(safe).suffix(), kMaxEndingBytes);
    safe = CutToBytes(safe, kMaxNameBytes - ending.toUtf8().size() - 1);
    if (!ending.isEmpty()) safe += u'.' + ending;
    safe = WithoutHiddenEnds(safe);
  }
  if (safe.isEmpty() || IsReserved(safe)) {
    safe.prepend(QStringLiteral("file_"));
  }
  return safe;
}

QString FreePath(const QString& folder, const QString& name) {
  const QFileInfo wanted(QDir(folder), SafeFileName(name));
  QString path = wanted.filePath();
  // A link that leads nowhere would be followed to where the file is not wanted.
  const auto isTaken = [](const QFileInfo& file) { return file.exists() || file.isSymLink(); };
  for (int number = 2; isTaken(QFileInfo(path)); ++number) {
    const QString ending = wanted.suffix().isEmpty() ? QString() : u'.' + wanted.suffix();
    path = QDir(folder).filePath(wanted.completeBaseName() + QStringLiteral(" (%1)").arg(number) +
                                 ending);
  }
  return path;
}

QString SizeText(qint64 bytes) {
  if (bytes < 1024) return Ui::tr("%n バイト", nullptr, static_cast<int>(bytes));
  return QLocale().formattedDataSize(bytes, 1, QLocale::DataSizeTraditionalFormat);
}

}  // namespace vorn
