#include "mail/attachment_files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QSet>

#include "mail/codec/mime_codec.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr qsizetype kMaxNameBytes = 240;  // of the 255 that file systems take
constexpr qsizetype kMaxEnding = 16;

const QSet<QString>& ReservedNames() {
  static const QSet<QString> names = {QStringLiteral("con"),  QStringLiteral("prn"),
                                      QStringLiteral("aux"),  QStringLiteral("nul"),
                                      QStringLiteral("com1"), QStringLiteral("lpt1")};
  return names;
}

bool IsUnsafe(QChar c) {
  // Direction marks make "gpj.exe" read as "exe.jpg".
  return c.category() == QChar::Other_Control || c.category() == QChar::Other_Format ||
         QStringView(u"/\\:*?\"<>|").contains(c);
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

QByteArray ReadAttachment(const ModelAttachment& attachment, const QByteArray& source,
                          QString* error) {
  if (attachment.inner) return *attachment.inner;
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
  if (error != nullptr) {
    *error = Ui::tr("添付ファイル「%1」を読み込めません。").arg(attachment.path);
  }
  return {};
}

QString SafeFileName(const QString& name) {
  QString safe;
  for (const QChar c : name) safe += IsUnsafe(c) ? QChar(u'_') : c;
  safe = safe.trimmed();
  while (safe.startsWith(u'.')) safe.remove(0, 1);
  while (safe.endsWith(u'.') || safe.endsWith(u' ')) safe.chop(1);
  if (safe.toUtf8().size() > kMaxNameBytes) {
    const QString ending = QFileInfo(safe).suffix().left(kMaxEnding);
    safe = CutToBytes(safe, kMaxNameBytes - ending.toUtf8().size() - 1);
    if (!ending.isEmpty()) safe += u'.' + ending;
  }
  if (safe.isEmpty() || ReservedNames().contains(safe.section(u'.', 0, 0).toLower())) {
    safe.prepend(QStringLiteral("file_"));
  }
  return safe;
}

QString FreePath(const QString& folder, const QString& name) {
  const QFileInfo wanted(QDir(folder), SafeFileName(name));
  QString path = wanted.filePath();
  for (int number = 2; QFileInfo::exists(path); ++number) {
    const QString ending = wanted.suffix().isEmpty() ? QString() : u'.' + wanted.suffix();
    path = QDir(folder).filePath(wanted.completeBaseName() + QStringLiteral(" (%1)").arg(number) +
                                 ending);
  }
  return path;
}

QString SizeText(qint64 bytes) {
  return QLocale(QLocale::Japanese).formattedDataSize(bytes, 1, QLocale::DataSizeTraditionalFormat);
}

}  // namespace vorn
