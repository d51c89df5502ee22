#include "mail/attachment_files.h"

#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QSet>

#include "mail/mime_codec.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr qsizetype kMaxName = 200;

// Endings of files that run, or make something run, when they are opened.
const QSet<QString>& ExecutableEndings() {
  static const QSet<QString> endings = {
      QStringLiteral("app"),     QStringLiteral("bat"),  QStringLiteral("chm"),
      QStringLiteral("cmd"),     QStringLiteral("com"),  QStringLiteral("cpl"),
      QStringLiteral("desktop"), QStringLiteral("dll"),  QStringLiteral("docm"),
      QStringLiteral("exe"),     QStringLiteral("hta"),  QStringLiteral("html"),
      QStringLiteral("htm"),     QStringLiteral("img"),  QStringLiteral("iso"),
      QStringLiteral("jar"),     QStringLiteral("js"),   QStringLiteral("jse"),
      QStringLiteral("lnk"),     QStringLiteral("msi"),  QStringLiteral("msc"),
      QStringLiteral("pif"),     QStringLiteral("pptm"), QStringLiteral("ps1"),
      QStringLiteral("py"),      QStringLiteral("reg"),  QStringLiteral("run"),
      QStringLiteral("scr"),     QStringLiteral("sh"),   QStringLiteral("svg"),
      QStringLiteral("url"),     QStringLiteral("vb"),   QStringLiteral("vbe"),
      QStringLiteral("vbs"),     QStringLiteral("wsf"),  QStringLiteral("xlsm")};
  return endings;
}

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

}  // namespace

QByteArray ReadAttachment(const ModelAttachment& attachment, const QByteArray& source,
                          QString* error) {
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
  if (safe.size() > kMaxName) {
    const QString ending = QFileInfo(safe).suffix().left(16);
    safe = safe.left(kMaxName) + (ending.isEmpty() ? QString() : u'.' + ending);
  }
  if (safe.isEmpty() || ReservedNames().contains(safe.section(u'.', 0, 0).toLower())) {
    safe.prepend(QStringLiteral("file_"));
  }
  return safe;
}

bool IsExecutableName(const QString& name) {
  return ExecutableEndings().contains(QFileInfo(SafeFileName(name)).suffix().toLower());
}

QString SizeText(qint64 bytes) {
  return QLocale(QLocale::Japanese).formattedDataSize(bytes, 1, QLocale::DataSizeTraditionalFormat);
}

}  // namespace vorn
