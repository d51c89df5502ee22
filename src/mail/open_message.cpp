#include "mail/open_message.h"

#include "mail/codec/mime/inline_images.h"
#include "mail/codec/mime/message_code.h"
#include "mail/codec/mime/message_index.h"
#include "mail/codec/mime/signature.h"
#include "mail/codec/mime/text_extraction.h"
#include "mail/mail_request_bag.h"
#include "mail/mailto.h"
#include "mail/message_id.h"
#include "mail/store/mail_row.h"
#include "mail/store/mail_store.h"
#include "mail/store/message_rows.h"
#include "objects/account.h"
#include "objects/object_types.h"
#include "objects/select_objects.h"
#include "objects/settings.h"
#include "storage/databases.h"
#include "storage/session/session_result.h"
#include "storage/ui.h"

namespace vorn {
namespace {

// Copies the row's columns and its folders into the request. Returns the message's source, nothing
// when there is no such row.
Result<std::optional<QByteArray>> ReadRow(DataSession& data, Disk& request) {
  const RecordsetPtr row = MessageRows(data).Of(request.Serial());
  if (row == nullptr || (row->Eof() && row->Failed())) return ReasonOf(data);
  if (row->Eof()) return std::optional<QByteArray>();
  const MailRow message(*row);
  MailRequestBag(request).TakeRow(message);
  const QByteArray source = message.Source().value_or(QByteArray());
  if (row->Failed()) return row->Error();
  const Result<SerialIds> folders = MessageRows(data).FoldersOf(request.Serial());
  MessageBag::SetFolders(request, folders.ValueOr({}));
  if (!folders) return folders.Error();
  return std::optional(source);
}

bool IsUnopened(const Disk& request) {
  return MessageBag(request).Flags().IsUnopened();
}

Sender DefaultSender(Context& context) {
  const auto accounts = [&context](SelectFlags which) {
    return SelectObjects(context.Objects, *context.Session, object_type::kAccount, which);
  };
  const DiskCollectionPtr enabled = accounts(kSelectEnabled);
  DiskCollectionPtr first = accounts(kSelectDefault);
  // Somebody who has accounts and made none of them the default one writes with the first.
  if (first->IsEmpty()) first = enabled;
  Sender sender;
  if (first->IsEmpty()) return sender;
  sender.address = Account(first->First()).Address();
  sender.display = Account(first->First()).Display();
  for (const Account account : *enabled) {
    sender.own.append(account.Address());
    sender.signatures.insert(account.Address().toLower(), account.Signature());
  }
  return sender;
}

bool AsksForReceipt(const QString& addressLines) {
  for (const QString& line : addressLines.split(kLineBreak, Qt::SkipEmptyParts)) {
    if (ParseAddressEntry(line).kind == u"NO") return true;
  }
  return false;
}

// Where a signature within the text is looked for; HTML that cannot have one is not made text.
QString SignedText(const OpenedMessage& opened) {
  const bool maySign = !opened.model.isTextOfHtml || opened.html.contains(u"-----BEGIN PGP");
  return maySign ? opened.model.text.Get() : QString();
}

// Reads the row of the message; what is opened says whether it was found and could be read.
OpenedMessage FindStored(Context& context, Disk& bag, bool marks) {
  OpenedMessage opened;
  MailRequestBag request(bag);
  const MessageBag stored(bag);
  const OpenedDatabase mail(context, stored.Database(), stored.File(context));
  const Result<std::optional<QByteArray>> read = mail ? ReadRow(context.Data, bag) : mail.Error();
  if (!read) {
    opened.unreadable = {bag.Serial(), request.Subject(), request.Timestamp()};
    opened.reason = read.Error();
    return opened;
  }
  opened.found = read->has_value();
  if (!opened.found) return opened;
  opened.source = **read;
  opened.first = IsUnopened(bag);
  // Who cannot write, as on a full disk, can read all the same.
  if (opened.first && marks) std::ignore = MarkOpened(context, bag);
  request.SetAsksForReceipt(opened.first && AsksForReceipt(request.AddressLines()));
  return opened;
}

// What a message that nobody has begun yet begins with.
MessageModel BegunNew(MessageModel opened, const QString& mailto, const Sender& sender,
                      const EditSettings& settings) {
  MessageModel model = WithMailto(std::move(opened), mailto);
  model.signature = sender.SignatureFor(sender.address);
  const QString begun = model.text.Get();
  model.text = FormText({}, {}, model.signature, settings.signaturePlace).prepend(begun);
  return model;
}

CharsetChoice ShownCharset(const StoredMessage& message, const FlagString& flags) {
  return message.isWritten
             ? WrittenCharset(message.source, message.contentIndex, message.charset.choice)
             : CharsetChoiceOf(flags.At(kFlagCode, QStringLiteral("*")));
}

OpenedMessage Open(Context& context, Disk& bag, bool marks, bool applyStoredCharset = true,
                   const ReadingCode& code = {}, const QByteArray& shown = {}) {
  const EditSettings settings = EditSettings::From(Settings(context));
  MailRequestBag request(bag);
  const MessageBag stored(bag);
  if (!stored.HasStatus()) {
    MessageBag::SetStatus(bag, kStatusEdit);
    MessageBag::SetFlags(bag, kWrittenFlags);
  }
  OpenedMessage opened = FindStored(context, bag, marks);
  if (opened.unreadable) return opened;
  StoredMessage message;
  message.source = opened.source;
  if (!opened.found) message.source = shown;
  message.contentIndex = request.ContentIndex();
  // Of one that was erased while its window is open nothing of the last reading is left.
  const bool isGone = !opened.found && shown.isEmpty() && !request.IsNew();
  if (!isGone) message.addressLines = request.AddressLines();
  message.timestamp = request.Timestamp();
  message.charset = applyStoredCharset ? ReadingCode(StoredCharset(stored.Flags())) : code;
  const OpenMode mode = request.Mode();
  message.isWritten = stored.Status() < kStatusReceived;
  if (message.charset.forced && !message.isWritten) {
    ReadingCode names = message.charset;
    names.body = MimeCodec::TextCharset(
        message.source, MimeCodec::ParseContentIndex(message.contentIndex, message.source));
    message.addressLines = ReadAddressLines(message.source, names, settings.standards.readsReplyTo);
  }
  const QString program = QStringLiteral(".VORN <") + context.VersionText + u'>';
  const Sender sender = DefaultSender(context);
  opened.model = OpenSource(message, mode, request.IsNew(), settings, sender, program);
  if (mode == OpenMode::Show && request.IsNew() && !opened.found) {
    opened.model = BegunNew(std::move(opened.model), request.Mailto(), sender, settings);
  }
  opened.html = GetMessageHtml(message.source, message.contentIndex, message.charset);
  opened.htmlParts = HtmlParts(message.source, message.contentIndex);
  opened.shownImages = ShownImages(message.source, message.contentIndex, message.charset);
  if (mode == OpenMode::Show && !message.isWritten) {
    opened.calendar = GetMessageCalendar(message.source, message.contentIndex, message.charset);
    opened.signature = SignatureWords(
        FindSignature(MimeCodec::ParseContentIndex(message.contentIndex), SignedText(opened)));
  }
  opened.source = message.source;
  opened.charset = code.choice;
  if (applyStoredCharset && mode == OpenMode::Show && opened.found) {
    opened.charset = ShownCharset(message, stored.Flags());
  }
  if (mode != OpenMode::Show) request.BecomeNew(NewMessageSerialID(context));
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

Result<bool> MarkOpened(Context& context, Disk& request) {
  if (!IsUnopened(request)) return false;
  const MessageBag stored(request);
  const OpenedDatabase mail(context, DatabaseKind::MailByPath, stored.File(context));
  if (!mail) return mail.Error();
  const FlagString before = stored.Flags();
  MessageBag::SetFlags(request, before.With(kFlagNew, QStringLiteral("0")));
  const Result<> marked = MailStore(context).UpdateMessageState(kStateFlag, request, false);
  if (marked) return true;
  MessageBag::SetFlags(request, before);
  return marked.Error();
}

bool OpensAsHtml(Context& context, const MessageModel& model) {
  return model.isTextOfHtml && Settings(context).IsHtmlFirst();
}

bool HasEnabledAccount(Context& context) {
  return !SelectObjects(context.Objects, *context.Session, object_type::kAccount, kSelectEnabled)
              ->IsEmpty();
}

QString SenderLine(Context& context) {
  const Sender sender = DefaultSender(context);
  if (sender.address.isEmpty()) return {};
  return QStringLiteral("FROM: ") + (sender.address + u' ' + sender.display).trimmed();
}

QString SignatureOf(Context& context, const QString& address) {
  return DefaultSender(context).SignatureFor(address);
}

QString OwnAddress(Context& context, const QStringList& addresses) {
  const Sender sender = DefaultSender(context);
  const auto own = std::find_if(addresses.begin(), addresses.end(),
                                [&](const QString& address) { return sender.IsOwn(address); });
  return own == addresses.end() ? QString() : *own;
}

}  // namespace vorn
