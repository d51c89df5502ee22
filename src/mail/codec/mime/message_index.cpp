#include "mail/codec/mime/message_index.h"

#include <algorithm>
#include <utility>

#include "mail/codec/header/address.h"
#include "mail/codec/mime/attachments.h"
#include "mail/codec/mime/inline_images.h"
#include "mail/codec/mime/message_code.h"
#include "mail/codec/mime/mime_codec.h"
#include "storage/ui.h"

namespace vorn {
namespace {

// The headers of the address lines, in their order. "Replay-To:" is written so in the messages
// that this program makes.
constexpr QByteArrayView kAddressHeaders[] = {
    "FROM:", "TO:", "CC:", "BCC:", "Replay-To:", "Disposition-Notification-To:"};

// The standard field under the name by which reply addresses are stored.
QByteArray StandardReplyTo(QByteArrayView source) {
  const QByteArrayView name = "Reply-To:";
  const QByteArray field = MimeCodec::HeaderField(source, name);
  if (MimeCodec::HeaderValue(field, name.size()).trimmed().isEmpty()) return {};
  return field.isNull() ? field : "Replay-To:" + field.sliced(name.size());
}

// A number with a comment behind it is no number here and gives normal priority.
Priority PriorityOf(QByteArrayView source) {
  const QByteArrayView name = "X-Priority:";
  bool isNumber = false;
  const int number =
      MimeCodec::HeaderValue(MimeCodec::HeaderField(source, name), name.size()).toInt(&isNumber);
  if (!isNumber || number == 3) return Priority::Usual;
  return number >= 4 ? Priority::Low : Priority::High;
}

QString CodeCharacter(int code) {
  return code < 0 ? QStringLiteral("*") : QString::number(code);
}

// HTML with no text beside it is the message, not a file; nor are the pictures that it shows.
bool HasFiles(const std::vector<MimeCodec::ContentRecord>& records, const QStringList& textTypes,
              bool hasText, const QSet<qsizetype>& shown) {
  const std::vector<Attachment> attachments = ListAttachments(records, textTypes);
  const bool isHtmlAlone =
      !hasText &&
      std::any_of(attachments.begin(), attachments.end(), [](const Attachment& attachment) {
        return !attachment.record.hasName && attachment.record.type == u"text/html";
      });
  const auto files = std::count_if(
      attachments.begin(), attachments.end(),
      [&shown](const Attachment& file) { return !shown.contains(file.record.first); });
  return files > (isHtmlAlone ? 1 : 0);
}

}  // namespace

QString ReadAddressLines(QByteArrayView source, const ReadingCode& code, bool readsReplyTo) {
  QStringList pieces;
  for (const QByteArrayView name : kAddressHeaders) {
    QByteArrayList fields = MimeCodec::HeaderFields(source, name);
    if (fields.isEmpty() && readsReplyTo && name == QByteArrayView("Replay-To:")) {
      fields = {StandardReplyTo(source)};
    }
    // The first one says who wrote it; what else is repeated, as programs do, names more of them.
    if (name == QByteArrayView("FROM:")) fields = fields.first(qMin(fields.size(), qsizetype{1}));
    for (const QByteArray& field : std::as_const(fields)) {
      if (field.isNull()) continue;
      const QString lines = ParseAddressList(
          MimeCodec::DecodeHeader(field, 0, code, MimeCodec::HeaderUse::AddressList));
      if (!lines.isEmpty()) pieces.append(lines);
    }
  }
  return pieces.join(kLineBreak);
}

MessageIndex IndexMessage(QByteArrayView source, const FlagString& flags,
                          const IndexOptions& options) {
  const bool marked = options.hasEndMark && source.endsWith("\r\n.\r\n");
  const std::vector<MimeCodec::ContentRecord> records = MimeCodec::ReadContent(
      marked ? source.first(source.size() - MimeCodec::kEndMarkLength) : source);
  MessageIndex index;
  index.content = MimeCodec::FormatContentIndex(records);
  const QByteArrayView subject = "SUBJECT:";
  const auto texts = std::count_if(records.begin(), records.end(),
                                   [&options](const MimeCodec::ContentRecord& record) {
                                     return options.textTypes.contains(record.type);
                                   });
  const int number = texts > 0 ? RecognizeCode(source, records, options.textTypes) : -1;
  ReadingCode code(static_cast<CharsetChoice>(number));
  code.body = MimeCodec::TextCharset(source, records);
  index.subject =
      MimeCodec::DecodeHeader(MimeCodec::HeaderField(source, subject), subject.size(), code);
  index.addressLines = ReadAddressLines(source, code, options.readsReplyTo);

  const bool hasAttachments = options.countsShown
                                  ? HasFiles(records, options.textTypes, texts > 0,
                                             ShownImages(source, index.content, code))
                                  : texts != static_cast<qsizetype>(records.size());
  index.flags = flags.With(kFlagAttachment, QString(hasAttachments ? u'1' : u'0'));
  if (texts > 0) index.flags = index.flags.With(kFlagCode, CodeCharacter(number));
  index.flags = index.flags.WithPriority(PriorityOf(source));
  return index;
}

}  // namespace vorn
