#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "ctl/command.h"
#include "mail/message_code.h"
#include "mail/message_index.h"
#include "mail/message_model.h"
#include "storage/time_text.h"

namespace vorn::ctl {
namespace {

constexpr int kLastMode = 6;

QJsonObject Describe(const MessageModel& model) {
  QJsonArray addresses;
  for (const AddressEntry& entry : model.addresses) {
    addresses.append(QJsonObject{{QStringLiteral("kind"), entry.kind},
                                 {QStringLiteral("address"), entry.address},
                                 {QStringLiteral("name"), entry.displayName}});
  }
  QJsonArray attachments;
  for (const ModelAttachment& attachment : model.attachments) {
    attachments.append(QJsonObject{{QStringLiteral("name"), attachment.name},
                                   {QStringLiteral("type"), attachment.type}});
  }
  return {{QStringLiteral("subject"), model.subject},
          {QStringLiteral("addresses"), addresses},
          {QStringLiteral("references"), model.references},
          {QStringLiteral("inReplyTo"), model.inReplyTo},
          {QStringLiteral("text"), model.text},
          {QStringLiteral("attachments"), attachments},
          {QStringLiteral("headerRows"), QJsonArray::fromStringList(model.headerRows)}};
}

}  // namespace

int OpenFile(const Arguments& arguments) {
  bool isNumber = false;
  const int mode = arguments.Words().value(1).toInt(&isNumber);
  const QString name = arguments.Words().value(2);
  if (!isNumber || mode < 0 || mode > kLastMode || name.isEmpty()) {
    return Complain(QStringLiteral("使い方: vornctl open 0-6 ファイル [--json]"), kExitUsage);
  }
  const auto source = ReadFile(name);
  if (!source) {
    return Complain(QStringLiteral("「%1」を読み込めません。").arg(name), kExitFailure);
  }

  const EditSettings settings = EditSettings::Defaults();
  StoredMessage message;
  message.source = *source;
  const MessageIndex index = IndexMessage(message.source, QString(),
                                          {settings.textTypes, false, settings.standardHeaders});
  message.contentIndex = index.content;
  message.addressLines = index.addressLines;
  message.charset = StoredCharset(index.flags);
  message.timestamp = GeneralTimeText(CurrentTimeText());
  // The links of a page open replies and forwards as new messages.
  const bool isNew = mode >= 1 && mode <= 3;
  const MessageModel model = OpenSource(message, static_cast<OpenMode>(mode), isNew, settings, {},
                                        QStringLiteral(".VORN <" VORN_VERSION ">"));
  const QJsonObject object = Describe(model);
  Print(arguments.Has(QStringLiteral("json"))
            ? QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact))
            : model.subject + QStringLiteral("\n\n") + model.text);
  return kExitOk;
}

}  // namespace vorn::ctl
