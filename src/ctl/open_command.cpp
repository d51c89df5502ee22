#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <optional>

#include "ctl/command.h"
#include "mail/codec/mime/message_code.h"
#include "mail/codec/mime/message_index.h"
#include "mail/mail_request_bag.h"
#include "mail/message_model.h"
#include "mail/open_message.h"
#include "storage/base/time_text.h"
#include "storage/ui.h"

namespace vorn::ctl {
namespace {

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
          {QStringLiteral("text"), model.text.Get()},
          {QStringLiteral("attachments"), attachments},
          {QStringLiteral("headerRows"), QJsonArray::fromStringList(model.headerRows)}};
}

// The mode in the arguments, or nothing after a complaint.
std::optional<OpenMode> ModeIn(const Arguments& arguments) {
  bool isNumber = false;
  const int mode = arguments.Words().value(1).toInt(&isNumber);
  if (isNumber && mode >= 0 && mode <= static_cast<int>(OpenMode::ForwardKeepFrom) &&
      !arguments.Words().value(2).isEmpty()) {
    return static_cast<OpenMode>(mode);
  }
  Complain(Ui::tr("使い方: vornctl open 0-6 ファイル|メッセージ [--json]"), 0);
  return std::nullopt;
}

// The links of a page open replies and forwards as new messages.
bool IsNew(OpenMode mode) {
  return mode == OpenMode::Reply || mode == OpenMode::ReplyAll || mode == OpenMode::Forward;
}

int PrintModel(const Arguments& arguments, const MessageModel& model) {
  Print(arguments.Has(QStringLiteral("json"))
            ? QString::fromUtf8(QJsonDocument(Describe(model)).toJson(QJsonDocument::Compact))
            : model.subject + QStringLiteral("\n\n") + model.text.Get());
  return kExitOk;
}

}  // namespace

int OpenFile(const Arguments& arguments) {
  const std::optional<OpenMode> mode = ModeIn(arguments);
  if (!mode) return kExitUsage;
  const QString name = arguments.Words().value(2);
  const Result<QByteArray> source = ReadFile(name);
  if (!source) return Complain(source.Error().text, kExitFailure);

  const EditSettings settings = EditSettings::Defaults();
  StoredMessage message;
  message.source = *source;
  const MessageIndex index = IndexMessage(message.source, FlagString(),
                                          {.textTypes = settings.textTypes,
                                           .hasEndMark = false,
                                           .readsReplyTo = settings.standards.readsReplyTo,
                                           .countsShown = settings.standards.countsShown});
  message.contentIndex = index.content;
  message.addressLines = index.addressLines;
  message.charset = StoredCharset(index.flags);
  message.timestamp = CurrentTimeText();
  return PrintModel(arguments, OpenSource(message, *mode, IsNew(*mode), settings, {},
                                          QStringLiteral(".VORN <" VORN_VERSION ">")));
}

bool IsStoredMessage(const Arguments& arguments) {
  const QString name = arguments.Words().value(2);
  // Those of messages that were written here are coded, with the computer's name behind them.
  const bool isIdentifier = name.startsWith(u"mail_") || name.contains(u'@');
  return isIdentifier && !name.contains(u'/') && !QFileInfo::exists(name);
}

int OpenStored(Context& context, const Arguments& arguments) {
  const std::optional<OpenMode> mode = ModeIn(arguments);
  if (!mode) return kExitUsage;
  Disk bag(arguments.Words().value(2));
  MailRequestBag(bag).Become(*mode, IsNew(*mode));
  const OpenedMessage opened = OpenMessage(context, bag);
  if (opened.unreadable || !opened.found) {
    return Complain(Ui::tr("メッセージ「%1」を読み込めません。").arg(arguments.Words().value(2)),
                    kExitFailure);
  }
  return PrintModel(arguments, opened.model);
}

}  // namespace vorn::ctl
