#include "mail/open_message.h"

#include "mail/codec/flag_string.h"
#include "mail/codec/message_code.h"
#include "mail/codec/message_index.h"
#include "mail/codec/signature.h"
#include "mail/codec/text_extraction.h"
#include "mail/mail_store.h"
#include "mail/mailto.h"
#include "mail/message_id.h"
#include "mail/message_rows.h"
#include "objects/object_types.h"
#include "objects/select_objects.h"
#include "objects/settings.h"
#include "storage/databases.h"
#include "storage/session_result.h"
#include "storage/time_text.h"
#include "storage/ui.h"

namespace vorn {
namespace {

struct CopiedColumn {
  const char16_t* column;
  const char16_t* key;
};

constexpr CopiedColumn kCopiedColumns[] = {
    {u"FIELD_CONTENT", u"content"},          {u"FIELD_SUBJECT", u"work_subject"},
    {u"FIELD_TIMESTAMP", u"work_timestamp"}, {u"STATUS", u"process"},
    {u"FIELD_MAILADDRESS", u"mailaddress"},  {u"FIELD_FLAG", u"flag"},
};

// Copies the row's columns and its folders into the request. False when there is no such row.
Result<bool> ReadRow(DataSession& data, Disk& request, QByteArray& source) {
  const RecordsetPtr row = MessageRows(data).Of(request.SerialID());
  if (row == nullptr || (row->Eof() && row->Failed())) return ReasonOf(data);
  if (row->Eof()) return false;
  for (const CopiedColumn& copied : kCopiedColumns) {
    request.Let(QString::fromUtf16(copied.key), row->Fields(QStringView(copied.column)));
  }
  source = row->Fields(u"MAIL").toByteArray();
  if (row->Failed()) return row->Error();
  const Result<QString> folders = MessageRows(data).FoldersOf(request.SerialID());
  request.Let(QStringLiteral("folder"), folders.ValueOr({}));
  if (!folders) return folders.Error();
  return true;
}

bool IsUnopened(const Disk& request) {
  return GetFlagChar(request.Text(u"flag"), kFlagNew, QStringLiteral("0")) != u"0";
}

Sender DefaultSender(Context& context) {
  const auto accounts = [&context](int which) {
    return SelectObjects(context.Objects, *context.Session, object_type::kAccount, which);
  };
  const DiskCollectionPtr enabled = accounts(kSelectEnabled);
  DiskCollectionPtr first = accounts(kSelectDefault);
  // Somebody who has accounts and made none of them the default one writes with the first.
  if (first->IsEmpty()) first = enabled;
  Sender sender;
  if (first->IsEmpty()) return sender;
  sender.address = first->First()->Text(u"Mailaddress");
  sender.display = first->First()->Text(u"Display");
  for (const DiskPtr& account : *enabled) {
    const QString address = account->Text(u"Mailaddress");
    sender.own.append(address);
    sender.signatures.insert(address.toLower(), account->Text(u"Signature"));
  }
  return sender;
}

bool AsksForReceipt(const QString& addressLines) {
  for (const QString& line : addressLines.split(kLineBreak, Qt::SkipEmptyParts)) {
    if (ParseAddressEntry(line).kind == u"NO") return true;
  }
  return false;
}

void BecomeNew(Context& context, Disk& request) {
  request.Let(QStringLiteral("process"), static_cast<int>(kStatusEdit));
  request.Let(QStringLiteral("original"), request.SerialID());
  request.LetSerialID(NewMessageSerialID(context));
}

// Where a signature within the text is looked for; HTML that cannot have one is not made text.
QString SignedText(const OpenedMessage& opened) {
  const bool maySign = !opened.model.isTextOfHtml || opened.html.contains(u"-----BEGIN PGP");
  return maySign ? opened.model.text.Get() : QString();
}

OpenedMessage Open(Context& context, Disk& request, bool marks, bool applyStoredCharset = true,
                   const ReadingCode& code = {}, const QByteArray& shown = {}) {
  OpenedMessage opened;
  const EditSettings settings = EditSettings::From(*Settings(context));
  if (!request.Get(u"process").isValid()) {
    request.Let(QStringLiteral("process"), static_cast<int>(kStatusEdit));
    request.Let(QStringLiteral("flag"), QStringLiteral("02"));
  }
  StoredMessage message;
  const auto kind =
      static_cast<DatabaseKind>(request.Number(u"db", static_cast<int>(DatabaseKind::MailByPath)));
  {
    const OpenedDatabase mail(context, kind, request.Text(u"file", MailDatabasePath(context)));
    const Result<bool> read = mail ? ReadRow(context.Data, request, message.source) : mail.Error();
    if (!read) {
      opened.unreadable = {request.SerialID(), request.Text(u"work_subject"),
                           request.Text(u"work_timestamp")};
      opened.reason = read.Error();
      return opened;
    }
    opened.found = *read;
    if (opened.found) {
      opened.first = IsUnopened(request);
      if (opened.first && marks) MarkOpened(context, request);
      request.Let(QStringLiteral("notice"),
                  opened.first && AsksForReceipt(request.Text(u"mailaddress")));
    }
  }
  if (!opened.found) message.source = shown;
  message.contentIndex = request.Text(u"content");
  // Of one that was erased while its window is open nothing of the last reading is left.
  const bool isGone = !opened.found && shown.isEmpty() && !request.Flag(u"new");
  if (!isGone) message.addressLines = request.Text(u"mailaddress");
  message.timestamp = GeneralTimeText(request.Text(u"work_timestamp"));
  message.charset = applyStoredCharset ? ReadingCode(StoredCharset(request.Text(u"flag"))) : code;
  const auto mode = static_cast<OpenMode>(qBound(0, request.Number(u"open"), 6));
  message.isWritten = qAbs(request.Number(u"process")) < kStatusReceived;
  if (message.charset.forced && !message.isWritten) {
    ReadingCode names = message.charset;
    names.body = MimeCodec::TextCharset(
        message.source, MimeCodec::ParseContentIndex(message.contentIndex, message.source));
    message.addressLines = AddressLines(message.source, names, settings.standardHeaders);
  }
  const QString program = QStringLiteral(".VORN <") + context.VersionText + u'>';
  const Sender sender = DefaultSender(context);
  opened.model = OpenSource(message, mode, request.Flag(u"new"), settings, sender, program);
  if (mode == OpenMode::Show && request.Flag(u"new") && !opened.found) {
    MessageModel& model = opened.model;
    ApplyMailto(request.Text(u"mailto"), model);
    model.signature = sender.SignatureOf(sender.address);
    const QString begun = model.text.Get();
    model.text = FormText({}, {}, model.signature, settings.signaturePlace).prepend(begun);
  }
  opened.html = GetMessageHtml(message.source, message.contentIndex, message.charset);
  if (mode == OpenMode::Show && !message.isWritten) {
    opened.calendar = GetMessageCalendar(message.source, message.contentIndex, message.charset);
    opened.signature = SignatureWords(
        FindSignature(MimeCodec::ParseContentIndex(message.contentIndex), SignedText(opened)));
  }
  opened.source = message.source;
  opened.charset = code.choice;
  if (applyStoredCharset && mode == OpenMode::Show && opened.found) {
    opened.charset =
        message.isWritten
            ? WrittenCharset(message.source, message.contentIndex, message.charset.choice)
            : CharsetChoiceOf(GetFlagChar(request.Text(u"flag"), kFlagCode, QStringLiteral("*")));
  }
  if (mode != OpenMode::Show) BecomeNew(context, request);
  return opened;
}

}  // namespace

OpenedMessage OpenMessage(Context& context, Disk& request, bool applyStoredCharset,
                          const ReadingCode& code, const QByteArray& shown) {
  return Open(context, request, true, applyStoredCharset, code, shown);
}

OpenedMessage LookAtMessage(Context& context, Disk& request) {
  return Open(context, request, false);
}

bool MarkOpened(Context& context, Disk& request) {
  if (!IsUnopened(request)) return false;
  const OpenedDatabase mail(context, DatabaseKind::MailByPath,
                            request.Text(u"file", MailDatabasePath(context)));
  const QString opened = SetFlagChar(request.Text(u"flag"), kFlagNew, QStringLiteral("0"));
  request.Let(QStringLiteral("flag"), opened);
  return mail &&
         static_cast<bool>(MailStore(context).UpdateMessageState(kStateFlag, request, false));
}

bool IsHtmlFirst(Context& context, const MessageModel& model) {
  return model.isTextOfHtml && Settings(context)->Flag(u"HtmlFirst");
}

QString SignatureOf(Context& context, const QString& address) {
  return DefaultSender(context).SignatureOf(address);
}

QString OwnAddress(Context& context, const QStringList& addresses) {
  const Sender sender = DefaultSender(context);
  const auto own = std::find_if(addresses.begin(), addresses.end(),
                                [&](const QString& address) { return sender.IsOwn(address); });
  return own == addresses.end() ? QString() : *own;
}

}  // namespace vorn
