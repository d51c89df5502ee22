#include "mail/codec/attachments.h"

#include <QMimeDatabase>

#include "mail/codec/mime_codec.h"
#include "storage/ui.h"

namespace vorn {
namespace {

QString NameOf(const QString& type, int number, bool standard) {
  const QString name = Ui::tr("添付ファイル[%1].dat").arg(number);
  const bool isCalendar = type == u"text/calendar";  // whose older form the database prefers
  const QString ending = !standard    ? QString()
                         : isCalendar ? QStringLiteral("ics")
                                      : QMimeDatabase().mimeTypeForName(type).preferredSuffix();
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
    const bool isHalf = record.isAlternative && hasText && !hasHtml && !record.hasName &&
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
  if (record.hasName || record.type != u"message/rfc822") return attachment.name;
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
