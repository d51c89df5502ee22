#include "mail/compose_message.h"

#include <QMimeDatabase>

#include "mail/mime_codec.h"

namespace vorn {
namespace {

using MimeCodec::OutputCharset;
using MimeCodec::TransferEncoding;

constexpr char kFold[] = "\r\n\t";
constexpr qsizetype kMaxLine = 998;

struct AddressField {
  QStringView kind;
  const char* name;
};

constexpr AddressField kAddressFields[] = {
    {u"TO", "To:"},     {u"CC", "Cc:"},        {u"BC", "Bcc:"},
    {u"FROM", "From:"}, {u"RE", "Replay-To:"}, {u"NO", "Disposition-Notification-To:"}};

bool HasLongLine(const QByteArray& bytes) {
  for (qsizetype at = 0; at < bytes.size();) {
    const qsizetype found = bytes.indexOf("\r\n", at);
    const qsizetype end = found < 0 ? bytes.size() : found;
    if (end - at > kMaxLine) return true;
    at = end + 2;
  }
  return false;
}

bool IsEightBit(const QByteArray& bytes) {
  return std::any_of(bytes.begin(), bytes.end(), [](char c) { return (c & 0x80) != 0; });
}

QByteArray EncodingName(TransferEncoding encoding) {
  switch (encoding) {
    case TransferEncoding::Base64:
      return "base64";
    case TransferEncoding::QuotedPrintable:
      return "quoted-printable";
    default:
      return {};
  }
}

TransferEncoding AttachmentEncoding(int mimeEncode) {
  switch (mimeEncode) {
    case 1:
      return TransferEncoding::QuotedPrintable;
    case 2:
      return TransferEncoding::Uuencode;
    default:
      return TransferEncoding::Base64;
  }
}

class Composer {
 public:
  Composer(const MessageModel& model, const ComposeOptions& options)
      : model_(model), options_(options), choice_(options.charset), charset_(Choose()) {}

  QByteArray Run() {
    WriteHeader();
    PrepareBody();
    if (model_.attachments.empty()) {
      WritePlain();
    } else {
      WriteMultipart();
    }
    out_ += ".\r\n";
    return std::move(out_);
  }

 private:
  // One code for the whole message, so that no part of it loses a character.
  OutputCharset Choose() const {
    QString all = model_.subject + model_.text;
    for (const AddressEntry& entry : model_.addresses) all += entry.displayName;
    for (const QString& row : model_.headerRows) all += row;
    for (const ModelAttachment& attachment : model_.attachments) all += attachment.name;
    return MimeCodec::ChooseOutput(all, options_.charset);
  }

  void Line(const QByteArray& line) { out_ += line + "\r\n"; }

  void WriteHeader() {
    Line(MimeCodec::EncodeField("Subject:", model_.subject, charset_));
    for (const AddressField& field : kAddressFields) {
      WriteAddresses(field.kind, field.name);
      const bool isReply = field.kind == u"RE" && options_.settings.standardHeaders;
      if (isReply) WriteAddresses(field.kind, "Reply-To:");
    }
    QByteArrayList identifiers;
    for (const QString& identifier : model_.references.split(u' ', Qt::SkipEmptyParts)) {
      identifiers.append(identifier.simplified().toUtf8());
    }
    if (!identifiers.isEmpty()) Line("References: " + QByteArray(kFold) + identifiers.join(kFold));
    const QByteArray inReplyTo = model_.inReplyTo.simplified().toUtf8();
    if (!inReplyTo.isEmpty()) {
      Line("In-Replay-To: " + inReplyTo);
      if (options_.settings.standardHeaders) Line("In-Reply-To: " + inReplyTo);
    }
    for (const QString& row : model_.headerRows) {
      const qsizetype colon = row.indexOf(u':');
      if (colon <= 0) continue;
      Line(MimeCodec::EncodeField(row.left(colon + 1).toLatin1(), row.mid(colon + 1).trimmed(),
                                  charset_));
    }
  }

  void WriteAddresses(QStringView kind, const QByteArray& name) {
    QList<MimeCodec::Mailbox> mailboxes;
    for (const AddressEntry& entry : model_.addresses) {
      if (kind.compare(entry.kind, Qt::CaseInsensitive) != 0 || entry.address.isEmpty()) continue;
      mailboxes.append({entry.address, entry.displayName});
    }
    if (mailboxes.isEmpty()) return;
    Line(MimeCodec::EncodeAddressField(name, mailboxes, charset_));
  }

  void PrepareBody() {
    QString text = model_.text;
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"))
        .replace(u'\r', u'\n')
        .replace(QStringLiteral("\n"), QStringLiteral("\r\n"));
    body_ = MimeCodec::EncodeText(text, charset_).value_or(text.toUtf8());
    const int mimeEncode = options_.settings.mimeEncode;
    if (options_.settings.mimeText && mimeEncode != 2) {
      bodyEncoding_ =
          mimeEncode == 1 ? TransferEncoding::QuotedPrintable : TransferEncoding::Base64;
    } else if (mimeEncode == 2 && !model_.attachments.empty()) {
      bodyEncoding_ = TransferEncoding::None;  // there is no place to name one
    } else if (HasLongLine(body_) || (charset_ == OutputCharset::Utf8 && IsEightBit(body_))) {
      // A broken line, or eight-bit text on a server of seven, would not arrive as it was written.
      bodyEncoding_ = TransferEncoding::Base64;
    }
    if (bodyEncoding_ != TransferEncoding::None) {
      body_ = MimeCodec::EncodeTransfer(body_, bodyEncoding_);
    }
  }

  QByteArray BodyEncodingName() const {
    if (bodyEncoding_ != TransferEncoding::None) return EncodingName(bodyEncoding_);
    const bool isEightBit = charset_ == OutputCharset::ShiftJis || charset_ == OutputCharset::Euc;
    return choice_ == CharsetChoice::ShiftJis || (isEightBit && IsEightBit(body_)) ? "8bit"
                                                                                   : "7bit";
  }

  void WriteTextHeader() {
    Line("Content-Type: text/plain;" + QByteArray(kFold) + "charset=\"" +
         MimeCodec::CharsetName(DeclaredCharset()) + '"');
    Line("Content-Transfer-Encoding: " + BodyEncodingName());
  }

  // A text of ASCII alone keeps the code that the user chose.
  OutputCharset DeclaredCharset() const {
    if (charset_ != OutputCharset::Ascii) return charset_;
    switch (choice_) {
      case CharsetChoice::Jis:
        return OutputCharset::Jis;
      case CharsetChoice::Euc:
        return OutputCharset::Euc;
      case CharsetChoice::ShiftJis:
        return OutputCharset::ShiftJis;
      default:
        return OutputCharset::Ascii;
    }
  }

  void WritePlain() {
    WriteTextHeader();
    const bool writesVersion = choice_ == CharsetChoice::Jis || choice_ == CharsetChoice::Euc ||
                               charset_ == OutputCharset::Utf8;
    if (writesVersion) Line("Mime-Version: 1.0");
    Line("");
    out_ += body_ + "\r\n\r\n";
  }

  void WriteMultipart() {
    const QByteArray boundary = "--CLIP_" + options_.boundaryToken.toLatin1();
    const TransferEncoding encoding = AttachmentEncoding(options_.settings.mimeEncode);
    const bool isUu = encoding == TransferEncoding::Uuencode;
    Line("Content-Type: multipart/mixed;" + QByteArray(kFold) + "boundary=\"" + boundary + '"');
    Line("Mime-Version: 1.0");
    Line("");
    Line("");
    if (!model_.text.isEmpty()) {
      if (!isUu) {
        Line("--" + boundary);
        WriteTextHeader();
        Line("");
      }
      out_ += body_ + "\r\n\r\n";
    }
    for (const ModelAttachment& attachment : model_.attachments) {
      const QByteArray data = options_.read ? options_.read(attachment) : QByteArray();
      if (isUu) {
        WriteUuBlock(attachment, data);
      } else {
        WritePart(attachment, MimeCodec::EncodeTransfer(data, encoding), encoding, boundary);
      }
    }
    if (!isUu) Line("--" + boundary + "--");
  }

  // A file name as it stands between quotes: one encoded word, however long, since there are
  // readers that take the first of several for the whole name.
  QByteArray EncodedName(const QString& name) const {
    QString plain = name;
    plain.replace(u'"', u'\'').replace(u'\\', u'_');
    return MimeCodec::EncodeWord(plain, charset_);
  }

  void WritePart(const ModelAttachment& attachment, const QByteArray& data,
                 TransferEncoding encoding, const QByteArray& boundary) {
    Line("--" + boundary);
    Line("Content-Type: " + attachment.type.toLatin1() + ';' + kFold + "name=\"" +
         EncodedName(attachment.name) + '"');
    Line("Content-Transfer-Encoding: " + EncodingName(encoding));
    Line("Content-Disposition: attachment; " + QByteArray(kFold) + "filename=\"" +
         EncodedName(attachment.name) + '"');
    Line("");
    out_ += data + "\r\n";
  }

  void WriteUuBlock(const ModelAttachment& attachment, const QByteArray& data) {
    Line("begin 666 " + EncodedName(attachment.name));
    out_ += MimeCodec::EncodeTransfer(data, TransferEncoding::Uuencode);
    Line("`");
    Line("end");
  }

  const MessageModel& model_;
  const ComposeOptions& options_;
  CharsetChoice choice_;
  OutputCharset charset_;
  TransferEncoding bodyEncoding_ = TransferEncoding::None;
  QByteArray body_;
  QByteArray out_;
};

}  // namespace

QByteArray ComposeMessage(const MessageModel& model, const ComposeOptions& options) {
  return Composer(model, options).Run();
}

QString ContentTypeOf(const QString& fileName) {
  return QMimeDatabase().mimeTypeForFile(fileName, QMimeDatabase::MatchExtension).name();
}

}  // namespace vorn
