#include "mail/message_model.h"

#include "mail/attachments.h"
#include "mail/mime_codec.h"
#include "mail/text_extraction.h"
#include "objects/object_types.h"
#include "objects/settings.h"
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

bool IsReply(OpenMode mode) {
  return mode == OpenMode::Reply || mode == OpenMode::ReplyAll;
}
bool IsForward(OpenMode mode) {
  return mode == OpenMode::Forward || mode == OpenMode::ForwardKeepFrom;
}

qsizetype CountIdentifiers(const QString& references) {
  qsizetype count = 0;
  for (const QString& identifier : MimeCodec::SplitList(references, u' ')) {
    if (!identifier.isEmpty()) ++count;
  }
  return count;
}

void FillReferences(const QByteArray& source, OpenMode mode, MessageModel& model) {
  const QString own = RawValue(source, "References:");
  const QString messageId = RawValue(source, "Message-ID:");
  model.references = IsReply(mode) ? (own + u' ' + messageId).trimmed() : own;
  model.inReplyTo = messageId;
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

QString SubjectIn(OpenMode mode, const QString& subject, qsizetype identifiers,
                  const EditSettings& settings) {
  if (!settings.editMode) return subject;
  if (IsReply(mode)) {
    return WithPrefix(settings.subjectReplay, identifiers >= 2 ? identifiers : 0,
                      WithoutPrefix(subject, QStringLiteral("re"), settings.subjectReplay));
  }
  if (IsForward(mode)) {
    return WithPrefix(settings.subjectForward, identifiers - 1,
                      WithoutPrefix(subject, QStringLiteral("fw"), settings.subjectForward));
  }
  return mode == OpenMode::Receipt ? Ui::tr("開封通知： ") + subject : subject;
}

AddressEntry MakeEntry(const QString& kind, const QString& address, const QString& name) {
  const QString suffix = name.isEmpty() ? QString() : u' ' + name;
  return {kind, address, name, kind + QStringLiteral(": ") + address + suffix,
          name.isEmpty() ? address : name + QStringLiteral(" <") + address + u'>'};
}

QList<AddressEntry> AddressesIn(OpenMode mode, const QString& lines) {
  QList<AddressEntry> stored;
  bool hasReplyAddress = false;
  for (const QString& line : lines.split(kLineBreak, Qt::SkipEmptyParts)) {
    stored.append(ParseAddressEntry(line));
    if (line.startsWith(u"re", Qt::CaseInsensitive)) hasReplyAddress = true;
  }
  QList<AddressEntry> addresses;
  for (const AddressEntry& entry : stored) {
    const QString kind = KindIn(mode, entry.kind);
    const bool isFrom = entry.kind.compare(u"from", Qt::CaseInsensitive) == 0;
    // The reply address takes the sender's place.
    const bool isReplaced = isFrom && kind == u"TO" && hasReplyAddress;
    if (kind.isEmpty() || isReplaced || entry.address.isEmpty()) continue;
    addresses.append(MakeEntry(kind, entry.address, entry.displayName));
  }
  return addresses;
}

QString TextIn(const StoredMessage& message, OpenMode mode, const QString& subject,
               const EditSettings& settings) {
  if (mode == OpenMode::Receipt) {
    return Ui::tr("下記内容のメールを受信したことをお知らせいたします。\r\n\r\n件名： ") + subject +
           Ui::tr("\r\n日時： ") + message.timestamp;
  }
  TextRequest request;
  request.charset = message.charset;
  request.textTypes = settings.textTypes;
  const bool quotes = (IsReply(mode) || IsForward(mode)) && settings.editMode;
  if (quotes) request.linePrefix = settings.memoIndent;
  return GetMessageText(message.source, message.contentIndex, request).text;
}

QStringList ExtensionHeaders(const QByteArray& source) {
  QStringList rows;
  for (const QByteArray& field : MimeCodec::AllHeaders(source)) {
    if (field.startsWith("x-") || field.startsWith("X-")) {
      rows.append(MimeCodec::DecodeHeader(field, 0));
    }
  }
  return rows;
}

void AddRowWhenMissing(QStringList& rows, const QString& name, const QString& value) {
  for (const QString& row : rows) {
    if (row.startsWith(name, Qt::CaseInsensitive)) return;
  }
  rows.append(name + u' ' + value);
}

bool HasKind(const QList<AddressEntry>& addresses, QStringView kind) {
  return std::any_of(addresses.begin(), addresses.end(),
                     [kind](const AddressEntry& entry) { return entry.kind == kind; });
}

}  // namespace

EditSettings EditSettings::From(const Disk& settings) {
  EditSettings edit;
  edit.editMode = settings.Flag(u"EditMode");
  edit.subjectReplay = settings.Text(u"SubjectReplay");
  edit.subjectForward = settings.Text(u"SubjectForward");
  edit.memoIndent = settings.Text(u"MemoIndent");
  edit.textTypes =
      settings.Text(u"TextMime", DefaultTextTypes().join(kLineBreak)).split(kLineBreak);
  edit.standardHeaders = settings.Flag(u"StandardHeaders");
  edit.mimeEncode = settings.Number(u"MimeEncode");
  edit.mimeText = settings.Flag(u"MimeText");
  return edit;
}

EditSettings EditSettings::Defaults() {
  EditSettings edit;
  edit.editMode = true;
  edit.subjectReplay = QStringLiteral("Re");
  edit.subjectForward = QStringLiteral("Fw");
  edit.memoIndent = QStringLiteral("> ");
  edit.textTypes = DefaultTextTypes();
  edit.standardHeaders = true;
  return edit;
}

MessageModel OpenSource(const StoredMessage& message, OpenMode mode, bool isNew,
                        const EditSettings& settings, const Sender& sender,
                        const QString& programLine) {
  MessageModel model;
  const QByteArrayView subjectName = "SUBJECT:";
  const QString subject = MimeCodec::DecodeHeader(
      MimeCodec::HeaderField(message.source, subjectName), subjectName.size(), message.charset);
  FillReferences(message.source, mode, model);
  model.subject = SubjectIn(mode, subject, CountIdentifiers(model.references), settings);
  model.addresses = AddressesIn(mode, message.addressLines);
  model.text = TextIn(message, mode, subject, settings);
  if (!isNew) model.headerRows = ExtensionHeaders(message.source);
  const bool carriesAttachments =
      mode == OpenMode::Show || mode == OpenMode::Resend || IsForward(mode);
  if (carriesAttachments) {
    const auto records = MimeCodec::ParseContentIndex(message.contentIndex);
    for (const Attachment& attachment : ListAttachments(records, settings.textTypes)) {
      model.attachments.push_back(
          {attachment.name, attachment.record.type, false, {}, attachment.record});
    }
  }
  if (isNew || mode != OpenMode::Show) {
    AddRowWhenMissing(model.headerRows, QStringLiteral("X-Mailer:"), programLine);
    AddRowWhenMissing(model.headerRows, QStringLiteral("X-Priority:"), QStringLiteral("3"));
    if (!sender.address.isEmpty() && !HasKind(model.addresses, u"FROM")) {
      model.addresses.append(MakeEntry(QStringLiteral("FROM"), sender.address, sender.display));
    }
  }
  return model;
}

}  // namespace vorn
