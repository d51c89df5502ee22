#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cstdio>
#include <optional>

#include "ctl/command.h"
#include "mail/codec/header/address.h"
#include "mail/codec/mime/attachments.h"
#include "mail/codec/mime/message_index.h"
#include "mail/codec/mime/mime_codec.h"
#include "mail/codec/mime/text_extraction.h"
#include "mail/compose_message.h"
#include "objects/object_types.h"
#include "objects/settings.h"
#include "storage/ui.h"

namespace vorn::ctl {
namespace {

QJsonArray Addresses(const QString& lines) {
  QJsonArray array;
  for (const QString& line : lines.split(kLineBreak, Qt::SkipEmptyParts)) {
    const AddressEntry entry = WithWholeAddress(ParseAddressEntry(line));
    array.append(QJsonObject{{QStringLiteral("kind"), entry.kind},
                             {QStringLiteral("address"), entry.address},
                             {QStringLiteral("name"), entry.displayName}});
  }
  return array;
}

QJsonArray Parts(const std::vector<MimeCodec::ContentRecord>& records) {
  QJsonArray array;
  for (const MimeCodec::ContentRecord& record : records) {
    array.append(
        QJsonObject{{QStringLiteral("type"), record.type},
                    {QStringLiteral("first"), record.first},
                    {QStringLiteral("last"), record.last},
                    {QStringLiteral("encoding"), record.encoding},
                    {QStringLiteral("name"),
                     record.hasName ? QJsonValue(record.name) : QJsonValue(QJsonValue::Null)}});
  }
  return array;
}

QJsonArray Attachments(const QByteArray& source,
                       const std::vector<MimeCodec::ContentRecord>& records) {
  QJsonArray array;
  for (const Attachment& attachment : ListAttachments(records, DefaultTextTypes(), true)) {
    const QByteArray bytes = MimeCodec::DecodePart(
        source, MimeCodec::TransferEncodingOf(attachment.record.encoding.toLatin1()),
        attachment.record.first, attachment.record.last);
    array.append(QJsonObject{{QStringLiteral("name"), ShownName(attachment, source)},
                             {QStringLiteral("type"), attachment.record.type},
                             {QStringLiteral("size"), bytes.size()},
                             {QStringLiteral("sha256"), MimeCodec::Digest(bytes)}});
    for (const InnerFile& inner : InnerFiles(attachment, source)) {
      array.append(QJsonObject{{QStringLiteral("name"), inner.name},
                               {QStringLiteral("type"), ContentTypeOf(inner.name)},
                               {QStringLiteral("within"), attachment.name},
                               {QStringLiteral("size"), inner.bytes.size()},
                               {QStringLiteral("sha256"), MimeCodec::Digest(inner.bytes)}});
    }
  }
  return array;
}

QJsonArray Headers(const QByteArray& source, const std::vector<MimeCodec::ContentRecord>& records) {
  ReadingCode code;
  code.body = MimeCodec::TextCharset(source, records);
  QJsonArray array;
  for (const QByteArray& field : MimeCodec::AllHeaders(source)) {
    array.append(MimeCodec::DecodeHeader(field, 0, code));
  }
  return array;
}

QJsonValue Html(const QByteArray& source, const QString& contentIndex) {
  const QString html = GetMessageHtml(source, contentIndex, CharsetChoice::Automatic);
  return html.isNull() ? QJsonValue(QJsonValue::Null) : QJsonValue(html);
}

MessageIndex Index(const QByteArray& source) {
  return IndexMessage(source, FlagString(), {DefaultTextTypes(), MimeCodec::HasEndMark(source)});
}

QString Text(const QByteArray& source, const MessageIndex& index) {
  TextRequest request;
  request.textTypes = DefaultTextTypes();
  request.withReports = true;
  request.withHtml = true;
  return GetMessageText(source, index.content, request).text;
}

QJsonObject Describe(const QByteArray& source) {
  const MessageIndex index = Index(source);
  const auto records = MimeCodec::ParseContentIndex(index.content, source);
  const QByteArrayView idName = "MESSAGE-ID:";
  return {{QStringLiteral("subject"), index.subject},
          {QStringLiteral("addressLines"), index.addressLines},
          {QStringLiteral("addresses"), Addresses(index.addressLines)},
          {QStringLiteral("flag"), index.flags.Text()},
          {QStringLiteral("fieldId"), QString::fromLatin1(MimeCodec::HeaderValue(
                                          MimeCodec::HeaderField(source, idName), idName.size()))},
          {QStringLiteral("parts"), Parts(records)},
          {QStringLiteral("text"), Text(source, index)},
          {QStringLiteral("headers"), Headers(source, records)},
          {QStringLiteral("html"), Html(source, index.content)},
          {QStringLiteral("attachments"), Attachments(source, records)}};
}

void PrintText(const QByteArray& source) {
  const MessageIndex index = Index(source);
  Print(Ui::tr("件名: ") + index.subject);
  Print(index.addressLines);
  Print(QString());
  Print(Text(source, index));
  const auto records = MimeCodec::ParseContentIndex(index.content, source);
  for (const auto& value : Attachments(source, records)) {
    const QJsonObject attachment = value.toObject();
    Print(Ui::tr("添付: %1（%2、%3バイト）")
              .arg(attachment[QStringLiteral("name")].toString(),
                   attachment[QStringLiteral("type")].toString())
              .arg(attachment[QStringLiteral("size")].toInteger()));
  }
}

}  // namespace

int Inspect(const Arguments& arguments) {
  const QString name = arguments.Words().value(1);
  const QStringList unknown = arguments.Unknown({QStringLiteral("json"), QStringLiteral("data")});
  if (name.isEmpty() || !unknown.isEmpty()) {
    return Complain(Ui::tr("使い方: vornctl inspect ファイル|- [--json]"), kExitUsage);
  }
  const Result<QByteArray> source = ReadFile(name);
  if (!source) return Complain(source.Error().text, kExitFailure);
  if (arguments.Has(QStringLiteral("json"))) {
    Print(QString::fromUtf8(QJsonDocument(Describe(*source)).toJson(QJsonDocument::Compact)));
  } else {
    PrintText(*source);
  }
  return kExitOk;
}

}  // namespace vorn::ctl
