#include "mail/message_model.h"

#include <QRegularExpression>
#include <algorithm>

#include "mail/attachment_files.h"
#include "mail/codec/mime/attachments.h"
#include "mail/codec/mime/inline_images.h"
#include "mail/codec/mime/message_date.h"
#include "mail/codec/mime/mime_codec.h"
#include "mail/codec/mime/text_extraction.h"
#include "mail/compose_message.h"
#include "mail/shown_addresses.h"
#include "storage/base/shown_form.h"
#include "storage/base/shown_text.h"
#include "storage/base/time_text.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kModes = 7;

struct KindRow {
  QLatin1String stored;
  const char16_t* byMode[kModes];
};

// What an address of a stored kind becomes in each mode; an empty cell drops it.
constexpr KindRow kKinds[] = {
    {QLatin1String("from"), {u"FROM", u"TO", u"TO", u"", u"FROM", u"TO", u"FROM"}},
    {QLatin1String("to"), {u"TO", u"", u"", u"", u"TO", u"FROM", u"TO"}},
    {QLatin1String("cc"), {u"CC", u"", u"CC", u"", u"CC", u"", u"CC"}},
    {QLatin1String("bc"), {u"BC", u"", u"", u"", u"BC", u"", u"CC"}},
    {QLatin1String("re"), {u"RE", u"TO", u"TO", u"", u"RE", u"TO", u"RE"}},
    {QLatin1String("no"), {u"NO", u"", u"", u"", u"NO", u"", u"NO"}},
};

QString KindIn(OpenMode mode, const QString& stored) {
  for (const KindRow& row : kKinds) {
    if (stored.compare(row.stored, Qt::CaseInsensitive) == 0) {
      return QString::fromUtf16(row.byMode[static_cast<int>(mode)]);
    }
  }
  return {};
}

QString RawValue(const QByteArray& source, QByteArrayView name) {
  return QString::fromUtf8(
      MimeCodec::HeaderValue(MimeCodec::HeaderField(source, name), name.size()));
}

qsizetype CountIdentifiers(const QString& references) {
  qsizetype count = 0;
  for (const QString& identifier : MimeCodec::SplitList(references, u' ')) {
    if (!identifier.isEmpty()) ++count;
  }
  return count;
}

void FillReferences(const StoredMessage& message, OpenMode mode, const EditSettings& settings,
                    MessageModel& model) {
  const QString own = RawValue(message.source, "References:");
  const QString messageId = RawValue(message.source, "Message-ID:");
  model.references = IsReply(mode) ? (own + u' ' + messageId).trimmed() : own;
  model.inReplyTo = messageId;
  // The same message again answers what it answered before.
  const bool isSame = mode == OpenMode::Resend || (mode == OpenMode::Show && message.isWritten);
  if (!isSame || !settings.standards.keepsReferences) return;
  model.inReplyTo = RawValue(message.source, "In-Reply-To:");
  if (model.inReplyTo.isEmpty()) model.inReplyTo = RawValue(message.source, "In-Replay-To:");
}

// Without the marks that programs and people put before a subject, how many there are.
QString WithoutUsualMarks(const QString& subject, const QStringList& words) {
  QStringList patterns;
  for (const QString& word : words) {
    if (!word.isEmpty()) patterns.append(QRegularExpression::escape(word));
  }
  const QRegularExpression mark(
      QStringLiteral("^\\s*(?:%1)(?:\\[\\d+\\]|\\^\\d+)?\\s*[:：]\\s*").arg(patterns.join(u'|')),
      QRegularExpression::CaseInsensitiveOption);
  QString rest = subject;
  for (auto found = mark.match(rest); found.hasMatch(); found = mark.match(rest)) {
    rest.remove(0, found.capturedLength());
  }
  return rest;
}

// "Re: x" without its "Re: ", when the word before the first colon is one of the given kind.
QString WithoutPrefix(const QString& subject, const QString& usual, const QString& setting) {
  const qsizetype colon = subject.indexOf(u':');
  if (colon < 0) return subject;
  const QString word = subject.left(colon).toLower();
  const bool isPrefix =
      word.startsWith(usual) || (!setting.isEmpty() && word.startsWith(setting.toLower()));
  if (!isPrefix) return subject;
  QString rest = subject.mid(colon + 1);
  if (rest.startsWith(u' ')) rest.remove(0, 1);
  return rest;
}

QString WithPrefix(const QString& prefix, qsizetype number, const QString& subject) {
  const QString count = number > 0 ? u'[' + QString::number(number) + u']' : QString();
  return prefix + count + QStringLiteral(": ") + subject;
}

// The words behind "Re: " are the sender's, who shall not turn round what the user writes before
// them.
QString SubjectIn(OpenMode mode, const QString& original, qsizetype identifiers,
                  const EditSettings& settings) {
  const bool goesOn = IsReply(mode) || IsForward(mode);
  const QString subject = goesOn ? WithoutDirectionMarks(original) : original;
  if (!settings.editMode) return subject;
  if (IsReply(mode)) {
    const QString bare =
        settings.usualReplies
            ? WithoutUsualMarks(subject, {QStringLiteral("re"), settings.subjectReplay})
            : WithoutPrefix(subject, QStringLiteral("re"), settings.subjectReplay);
    return WithPrefix(settings.subjectReplay, identifiers >= 2 ? identifiers : 0, bare);
  }
  if (IsForward(mode)) {
    const QString bare =
        settings.usualReplies
            ? WithoutUsualMarks(
                  subject, {QStringLiteral("fwd"), QStringLiteral("fw"), settings.subjectForward})
            : WithoutPrefix(subject, QStringLiteral("fw"), settings.subjectForward);
    return WithPrefix(settings.subjectForward, identifiers - 1, bare);
  }
  return mode == OpenMode::Receipt ? Ui::tr("開封通知： ") + subject : subject;
}

// Nothing else can be written to; earlier versions stored the names of groups as addresses.
bool IsWritable(const AddressEntry& entry) {
  return entry.address != kUnknownAddress && !entry.address.contains(u':') &&
         !entry.address.contains(u';');
}

QList<AddressEntry> StoredAddresses(const StoredMessage& message, bool keepsWhole) {
  QList<AddressEntry> stored;
  for (const QString& line : message.addressLines.split(kLineBreak, Qt::SkipEmptyParts)) {
    const AddressEntry entry = ParseAddressEntry(line, keepsWhole);
    stored.append(keepsWhole && !message.isWritten ? WithWholeAddress(entry) : entry);
  }
  return stored;
}

QList<AddressEntry> AddressesIn(OpenMode mode, const QList<AddressEntry>& stored) {
  const bool hasReplyAddress =
      std::any_of(stored.begin(), stored.end(), [](const AddressEntry& entry) {
        return entry.kind.compare(u"re", Qt::CaseInsensitive) == 0 && !entry.address.isEmpty() &&
               IsWritable(entry);
      });
  QList<AddressEntry> addresses;
  for (const AddressEntry& entry : stored) {
    const QString kind = KindIn(mode, entry.kind);
    const bool isFrom = entry.kind.compare(u"from", Qt::CaseInsensitive) == 0;
    // The reply address takes the sender's place.
    const bool isReplaced = isFrom && kind == u"TO" && hasReplyAddress;
    if (kind.isEmpty() || isReplaced || entry.address.isEmpty()) continue;
    if (mode != OpenMode::Show && !IsWritable(entry)) continue;
    addresses.append({kind, entry.address, entry.displayName});
  }
  return addresses;
}

// To everybody who got the message, but to nobody twice and not to the user.
QList<AddressEntry> ForAll(const QList<AddressEntry>& stored, const Sender& sender) {
  QList<AddressEntry> addresses = AddressesIn(OpenMode::Reply, stored);
  const auto isThere = [&addresses](const QString& address) {
    return std::any_of(addresses.begin(), addresses.end(), [&address](const AddressEntry& entry) {
      return entry.address.compare(address, Qt::CaseInsensitive) == 0;
    });
  };
  for (const AddressEntry& entry : stored) {
    const QString kind = entry.kind.toUpper();
    if ((kind != u"TO" && kind != u"CC") || entry.address.isEmpty() || !IsWritable(entry)) continue;
    if (isThere(entry.address) || sender.IsOwn(entry.address)) continue;
    addresses.append({kind, entry.address, entry.displayName});
  }
  return addresses;
}

// To whoever asked for the receipt, from the address that got the message (RFC 8098 section 2.1).
QList<AddressEntry> ForReceipt(const QList<AddressEntry>& stored, const Sender& sender) {
  if (!HasKind(stored, u"NO")) return AddressesIn(OpenMode::Receipt, stored);
  QList<AddressEntry> addresses;
  for (const AddressEntry& entry : stored) {
    const QString kind = entry.kind.toUpper();
    const bool isOwn = (kind == u"TO" || kind == u"CC") && sender.IsOwn(entry.address);
    if (kind == u"NO" && IsWritable(entry)) {
      addresses.append({QStringLiteral("TO"), entry.address, entry.displayName});
    } else if (isOwn && !HasKind(addresses, u"FROM")) {
      addresses.append({QStringLiteral("FROM"), entry.address, entry.displayName});
    }
  }
  return addresses;
}

QList<AddressEntry> Recipients(const StoredMessage& message, OpenMode mode,
                               const EditSettings& settings, const Sender& sender) {
  const QList<AddressEntry> stored = StoredAddresses(message, settings.standards.keepsAddresses);
  if (mode == OpenMode::ReplyAll && settings.usualReplies) return ForAll(stored, sender);
  if (mode == OpenMode::Receipt && settings.standards.writesReports) {
    return ForReceipt(stored, sender);
  }
  return AddressesIn(mode, stored);
}

// Whom an answer goes to is read before it is sent.
void DropForgedNames(QList<AddressEntry>& recipients) {
  for (AddressEntry& entry : recipients) {
    if (NamesAnother(entry)) entry.displayName.clear();
  }
}

// The line breaks that composing puts behind the text. Of a text in base64 they are no part.
void RemoveComposedEnd(const StoredMessage& message, QString& text) {
  const auto records = MimeCodec::ParseContentIndex(message.contentIndex);
  if (records.empty() || records.front().encoding == u"base64") return;
  const QString end = records.size() == 1 ? QStringLiteral("\r\n\r\n") : QStringLiteral("\r\n");
  if (text.endsWith(end)) text.chop(end.size());
}

// What is quoted ends with words, and not in marks alone.
void DropBlankEnd(QString& text, const QString& mark) {
  while (!text.isEmpty()) {
    const qsizetype at = text.lastIndexOf(kLineBreak);
    QString last = at < 0 ? text : text.mid(at + kLineBreak.size());
    if (at >= 0 && last.startsWith(mark)) last.remove(0, mark.size());
    if (!last.trimmed().isEmpty()) return;
    text.truncate(qMax(at, qsizetype(0)));
  }
}

struct OpenedText {
  LazyText text;
  bool isOfHtml = false;  // made from a page
};

OpenedText TextIn(const StoredMessage& message, OpenMode mode, const QString& subject,
                  const EditSettings& settings) {
  if (mode == OpenMode::Receipt) {
    return {Ui::tr("下記内容のメールを受信したことをお知らせいたします。\r\n\r\n件名： ") +
            subject + Ui::tr("\r\n日時： ") + ShownTimeText(message.timestamp)};
  }
  TextRequest request;
  request.charset = message.charset;
  request.textTypes = settings.textTypes;
  request.withReports = !message.isWritten && mode != OpenMode::Resend;
  request.withHtml = request.withReports && settings.standards.readsHtml;
  const bool quotes = (IsReply(mode) || IsForward(mode)) && settings.editMode;
  if (quotes) request.linePrefix = settings.memoIndent;
  const bool isOfHtml = IsTextOfHtml(message.source, message.contentIndex, request);
  // Whoever reads looks at the page.
  if (isOfHtml && mode == OpenMode::Show && !message.isWritten) {
    const auto read = [source = message.source, index = message.contentIndex, request] {
      return GetMessageText(source, index, request).text;
    };
    return {LazyText(read), isOfHtml};
  }
  QString text = GetMessageText(message.source, message.contentIndex, request).text;
  const bool isSame = mode == OpenMode::Show || mode == OpenMode::Resend;
  if (message.isWritten && isSame && settings.standards.dropsOwnEnd)
    RemoveComposedEnd(message, text);
  if (quotes && settings.usualReplies) DropBlankEnd(text, settings.memoIndent);
  if (quotes && settings.usualReplies && !text.isEmpty()) text.prepend(settings.memoIndent);
  return {text, isOfHtml};
}

QStringList ExtensionHeaders(const QByteArray& source, const ReadingCode& code) {
  QStringList rows;
  for (const QByteArray& field : MimeCodec::AllHeaders(source)) {
    if (field.startsWith("x-") || field.startsWith("X-")) {
      rows.append(MimeCodec::DecodeHeader(field, 0, code));
    }
  }
  return rows;
}

QString FirstOf(const QList<AddressEntry>& addresses, QStringView kind) {
  for (const AddressEntry& entry : addresses) {
    if (entry.kind == kind) return entry.address;
  }
  return {};
}

void AddRowWhenMissing(QStringList& rows, const QString& name, const QString& value) {
  for (const QString& row : rows) {
    if (row.startsWith(name, Qt::CaseInsensitive)) return;
  }
  rows.append(name + u' ' + value);
}

// A receipt that was kept as a draft, or called back, goes out as the report that it is: its second
// part (RFC 8098) is no file of the user's.
void TakeReport(const StoredMessage& message, MessageModel& model) {
  const auto part = std::find_if(
      model.attachments.begin(), model.attachments.end(), [](const ModelAttachment& attachment) {
        return attachment.type.startsWith(u"message/disposition-notification", Qt::CaseInsensitive);
      });
  if (part == model.attachments.end()) return;
  ReceiptReport report;
  for (const QByteArray& field : ReadAttachment(*part, message.source).ValueOr({}).split('\n')) {
    const QString value = QString::fromUtf8(field.mid(field.indexOf(':') + 1)).trimmed();
    const QByteArray name = field.toLower();
    if (name.startsWith("final-recipient:")) report.recipient = value.section(u';', 1).trimmed();
    if (name.startsWith("original-message-id:")) report.messageId = value;
  }
  model.report = report;
  model.attachments.erase(part);
}

// An answer to an invitation is one still when it is edited or sent again.
void TakeCalendarReply(const StoredMessage& message, MessageModel& model) {
  const auto part = std::find_if(
      model.attachments.begin(), model.attachments.end(), [&](const ModelAttachment& attachment) {
        const auto type = MimeCodec::ContentType(message.source, attachment.record);
        return attachment.type == u"text/calendar" && !attachment.record.hasName &&
               type.Bytes("method").compare("REPLY", Qt::CaseInsensitive) == 0;
      });
  if (part == model.attachments.end()) return;
  model.calendarReply = ReadAttachment(*part, message.source).ValueOr({});
  model.attachments.erase(part);
}

// Behind a package what is in it.
void AddInnerFiles(const QByteArray& source, const Attachment& package,
                   std::vector<ModelAttachment>& attachments) {
  for (InnerFile& file : InnerFiles(package, source)) {
    ModelAttachment inner;
    inner.name = std::move(file.name);
    inner.type = ContentTypeOf(inner.name);
    inner.record = package.record;
    inner.inner = std::move(file.bytes);
    attachments.push_back(std::move(inner));
  }
}

AddressEntry FirstFrom(const QList<AddressEntry>& addresses) {
  const auto found = std::find_if(addresses.begin(), addresses.end(), [](const auto& entry) {
    return entry.kind.compare(u"FROM", Qt::CaseInsensitive) == 0;
  });
  return found == addresses.end() ? AddressEntry() : *found;
}

// The line above the quotation, or the head of what is handed on, and the sender's signature.
void TakeForm(const StoredMessage& message, OpenMode mode, const QString& subject,
              const EditSettings& settings, const Sender& sender, MessageModel& model) {
  QList<AddressEntry> written;
  for (const QString& text : message.addressLines.split(QStringLiteral("\r\n"))) {
    written.append(ParseAddressEntry(text));
  }
  const QDateTime sent = SentDate(message.source);
  // By the clock of whoever answers, as lists and windows show it.
  const QDateTime here = sent.isValid() ? sent.toLocalTime() : StoredTime(message.timestamp);
  const QString date = here.isValid() ? Shown(here, QStringLiteral("yyyy/MM/dd H:mm")) : QString();
  QString line;
  if (IsReply(mode) && settings.editMode && !model.text.Get().isEmpty()) {
    line = AttributionLine(settings.replyLine, FirstFrom(written), date);
  } else if (IsForward(mode) && settings.editMode && settings.usualReplies) {
    line = ForwardHead(subject, written, date);
  }
  model.signature = sender.SignatureFor(FirstFrom(model.addresses).address);
  model.text = FormText(line, model.text.Get(), model.signature, settings.signaturePlace);
}

// Handed on, pictures that the HTML part shows are in it, as one file: beside it they would be
// files that nobody asked for, and missing in it.
void GatherHtml(const StoredMessage& message, std::vector<ModelAttachment>& attachments) {
  const auto shown = ShownImages(message.source, message.contentIndex, message.charset);
  const auto isShown = [&shown](const ModelAttachment& attachment) {
    return !attachment.made && shown.contains(attachment.record.first);
  };
  const auto parts = HtmlParts(message.source, message.contentIndex);
  const auto isPart = [&parts](const ModelAttachment& attachment) {
    return !attachment.made && parts.contains(attachment.record.first);
  };
  auto file = std::find_if(attachments.begin(), attachments.end(), isPart);
  if (file == attachments.end()) {
    file = std::find_if(attachments.begin(), attachments.end(), isShown);
  }
  if (file == attachments.end()) return;
  const QString html = GetMessageHtml(message.source, message.contentIndex, message.charset);
  const QByteArray mark("\xEF\xBB\xBF");  // holds for browsers whatever code the page names
  file->made = mark + WithInlineImages(html, message.source, message.contentIndex).toUtf8();
  file->name = Ui::tr("元のメール.html");
  file->type = QStringLiteral("text/html");
  file->charset = "utf-8";
  std::erase_if(attachments, isShown);
  std::erase_if(attachments, isPart);
}

}  // namespace

MessageModel OpenSource(const StoredMessage& message, OpenMode mode, bool isNew,
                        const EditSettings& settings, const Sender& sender,
                        const QString& programLine) {
  MessageModel model;
  const QByteArrayView subjectName = "SUBJECT:";
  const auto records = MimeCodec::ParseContentIndex(message.contentIndex, message.source);
  ReadingCode code = message.charset;
  code.body = MimeCodec::TextCharset(message.source, records);
  const QString subject = MimeCodec::DecodeHeader(
      MimeCodec::HeaderField(message.source, subjectName), subjectName.size(), code);
  FillReferences(message, mode, settings, model);
  model.subject = SubjectIn(mode, subject, CountIdentifiers(model.references), settings);
  model.addresses = Recipients(message, mode, settings, sender);
  if (IsReply(mode)) DropForgedNames(model.addresses);
  const OpenedText opened = TextIn(message, mode, subject, settings);
  model.text = opened.text;
  model.isTextOfHtml = opened.isOfHtml;
  if (!isNew) model.headerRows = ExtensionHeaders(message.source, code);
  const bool carriesAttachments =
      mode == OpenMode::Show || mode == OpenMode::Resend || IsForward(mode);
  if (carriesAttachments) {
    const bool showsInner = mode == OpenMode::Show && !message.isWritten;
    for (const Attachment& attachment :
         ListAttachments(records, settings.textTypes, settings.standards.namesParts)) {
      model.attachments.push_back(
          {settings.standards.namesParts ? ShownName(attachment, message.source) : attachment.name,
           attachment.record.type,
           false,
           {},
           attachment.record,
           MimeCodec::ContentType(message.source, attachment.record).Bytes("charset")});
      if (showsInner) AddInnerFiles(message.source, attachment, model.attachments);
    }
    if (IsForward(mode) && settings.standards.gathersHtml) GatherHtml(message, model.attachments);
  }
  if (isNew || mode != OpenMode::Show) {
    AddRowWhenMissing(model.headerRows, QStringLiteral("X-Mailer:"), programLine);
    AddRowWhenMissing(model.headerRows, QStringLiteral("X-Priority:"), QStringLiteral("3"));
    if (!sender.address.isEmpty() && !HasKind(model.addresses, u"FROM")) {
      model.addresses.append({QStringLiteral("FROM"), sender.address, sender.display});
    }
  }
  if (IsReply(mode) || mode == OpenMode::Forward)
    TakeForm(message, mode, subject, settings, sender, model);
  const bool isSame = mode == OpenMode::Show || mode == OpenMode::Resend;
  if (message.isWritten && isSame && settings.standards.writesReports) {
    TakeReport(message, model);
  }
  if (message.isWritten && isSame) TakeCalendarReply(message, model);
  if (mode == OpenMode::Receipt && settings.standards.writesReports) {
    model.report = ReceiptReport{FirstOf(model.addresses, u"FROM"), model.inReplyTo};
  }
  return model;
}

}  // namespace vorn
