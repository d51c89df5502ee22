#include "mail/codec/mime/attachments.h"

#include <QMimeDatabase>

#include "mail/codec/mime/mime_codec.h"
#include "storage/ui.h"

namespace vorn {
namespace {

bool IsMessage(const QString& type) {
  return type == u"message/rfc822" || type == u"message/global";
}

// What a server says about a message that it gave up (RFC 3462, 3464, 6533), in words.
QString ReportName(const QString& type) {
  if (type == u"message/delivery-status" || type == u"message/global-delivery-status") {
    return Ui::tr("配送状況.txt");
  }
  if (type == u"message/disposition-notification") return Ui::tr("開封通知.txt");
  const bool isHeader = type == u"text/rfc822-headers" || type == u"message/global-headers";
  return isHeader ? Ui::tr("元のヘッダー.txt") : QString();
}

// The database of types prefers an older form of calendars, and knows no newer one of messages.
QString EndingOf(const QString& type) {
  if (type == u"text/calendar") return QStringLiteral("ics");
  if (IsMessage(type)) return QStringLiteral("eml");
  return QMimeDatabase().mimeTypeForName(type).preferredSuffix();
}

QString NameOf(const QString& type, int number, bool standard) {
  const QString report = standard ? ReportName(type) : QString();
  if (!report.isEmpty()) return report;
  const QString name = Ui::tr("添付ファイル[%1].dat").arg(number);
  const QString ending = standard ? EndingOf(type) : QString();
  return ending.isEmpty() ? name : name.left(name.lastIndexOf(u'.') + 1) + ending;
}

}  // namespace

std::vector<Attachment> ListAttachments(const std::vector<MimeCodec::ContentRecord>& records,
                                        const QStringList& textTypes, bool standardNames) {
  std::vector<Attachment> attachments;
  int unnamed = 0;
  bool hasText = false;
  bool hasHtml = false;
  for (const MimeCodec::ContentRecord& record : records) {
    const bool isText = !record.hasName && textTypes.contains(record.type);
    hasText = hasText || isText;
    // The message's text once more, which is shown beside it.
    const bool isHalf = record.IsAlternative() && hasText && !hasHtml && !record.hasName &&
                        record.type == u"text/html";
    hasHtml = hasHtml || record.type == u"text/html";
    if (isText || isHalf) continue;
    attachments.push_back(
        {record.hasName ? record.name : NameOf(record.type, ++unnamed, standardNames), record});
  }
  return attachments;
}

namespace {

QByteArray BytesOf(const Attachment& attachment, const QByteArray& source) {
  const MimeCodec::ContentRecord& record = attachment.record;
  return MimeCodec::DecodePart(source, MimeCodec::TransferEncodingOf(record.encoding.toLatin1()),
                               record.first, record.last);
}

}  // namespace

QString ShownName(const Attachment& attachment, const QByteArray& source) {
  const MimeCodec::ContentRecord& record = attachment.record;
  if (record.hasName || !IsMessage(record.type)) return attachment.name;
  const QByteArray inner = BytesOf(attachment, source);
  const QByteArrayView name = "SUBJECT:";
  const QString subject =
      MimeCodec::DecodeHeader(MimeCodec::HeaderField(inner, name), name.size()).trimmed();
  return subject.isEmpty() ? attachment.name : subject + QStringLiteral(".eml");
}

std::vector<InnerFile> InnerFiles(const Attachment& attachment, const QByteArray& source) {
  if (!IsTnef(attachment.record.type, attachment.name)) return {};
  return ReadTnef(BytesOf(attachment, source)).files;
}

}  // namespace vorn
