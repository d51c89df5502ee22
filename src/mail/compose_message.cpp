#include "mail/compose_message.h"

#include <QMimeDatabase>
#include <algorithm>
#include <cctype>
#include <cstring>

#include "mail/codec/charset/character_kinds.h"
#include "mail/codec/charset/charset_recognition.h"
#include "mail/codec/header/envelope_address.h"
#include "mail/codec/mime/mime_codec.h"

namespace vorn {
namespace {

using MimeCodec::OutputCharset;
using MimeCodec::TransferEncoding;

constexpr char kFold[] = "\r\n\t";
// A line has at most 998 bytes (RFC 5322 section 2.1.1), and an identifier cannot be folded.
constexpr qsizetype kMaxIdentifier = 900;
constexpr qsizetype kMostIdentifiers = 100;
// Of a line, which may have 998 characters (RFC 5322 section 2.1.1).
constexpr qsizetype kLongestName = 700;
constexpr qsizetype kLongestWord = 900;
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

// Whether a server takes an identifier from elsewhere in a header field.
bool MayStand(const QByteArray& identifier) {
  return identifier.size() <= kMaxIdentifier &&
         std::all_of(identifier.begin(), identifier.end(),
                     [](char c) { return c >= ' ' && c <= '~'; });
}

TransferEncoding AttachmentEncoding(MimeEncode mimeEncode) {
  switch (mimeEncode) {
    case MimeEncode::QuotedPrintable:
      return TransferEncoding::QuotedPrintable;
    case MimeEncode::Uuencode:
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
    if (model_.report && options_.settings.standards.writesReports) {
      WriteReport();
    } else if (model_.attachments.empty() && !model_.calendarReply) {
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
    QString all = model_.subject + model_.text.Get();
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
      const bool isReply = field.kind == u"RE" && options_.settings.standards.usesFields;
      if (isReply) WriteAddresses(field.kind, "Reply-To:");
    }
    QByteArrayList identifiers;
    for (const QString& identifier : model_.references.split(u' ', Qt::SkipEmptyParts)) {
      const QByteArray bytes = identifier.simplified().toUtf8();
      if (MayStand(bytes)) identifiers.append(bytes);
    }
    // The first one names the conversation, the last ones what is answered.
    if (identifiers.size() > kMostIdentifiers) {
      identifiers.remove(1, identifiers.size() - kMostIdentifiers);
    }
    if (!identifiers.isEmpty()) Line("References: " + QByteArray(kFold) + identifiers.join(kFold));
    const QByteArray inReplyTo = model_.inReplyTo.simplified().toUtf8();
    if (!inReplyTo.isEmpty() && MayStand(inReplyTo)) {
      Line("In-Replay-To: " + inReplyTo);
      if (options_.settings.standards.usesFields) Line("In-Reply-To: " + inReplyTo);
    }
    for (const QString& row : model_.headerRows) {
      const qsizetype colon = row.indexOf(u':');
      if (colon <= 0) continue;
      Line(MimeCodec::EncodeField(MimeCodec::FieldName(row.left(colon)) + ':',
                                  row.mid(colon + 1).trimmed(), charset_));
    }
  }

  void WriteAddresses(QStringView kind, const QByteArray& name) {
    QList<MimeCodec::Mailbox> mailboxes;
    for (const AddressEntry& entry : model_.addresses) {
      if (kind.compare(entry.kind, Qt::CaseInsensitive) != 0 || entry.address.isEmpty()) continue;
      mailboxes.append({ToHeaderAddress(entry.address), entry.displayName});
    }
    if (mailboxes.isEmpty()) return;
    Line(MimeCodec::EncodeAddressField(name, mailboxes, charset_));
  }

  void PrepareBody() {
    QString text = model_.text.Get();
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"))
        .replace(u'\r', u'\n')
        .replace(QStringLiteral("\n"), QStringLiteral("\r\n"));
    body_ = MimeCodec::EncodeText(text, charset_).value_or(text.toUtf8());
    const MimeEncode encoding = Encoding();
    if (options_.settings.mimeText && encoding != MimeEncode::Uuencode) {
      bodyEncoding_ = AttachmentEncoding(encoding);
    } else if (encoding == MimeEncode::Uuencode && !model_.attachments.empty()) {
      bodyEncoding_ = TransferEncoding::None;  // there is no place to name one
    } else if (HasLongLine(body_) || (charset_ == OutputCharset::Utf8 && HasHighBytes(body_))) {
      // A broken line, or eight-bit text on a server of seven, would not arrive as it was written.
      bodyEncoding_ = TransferEncoding::Base64;
    }
    if (bodyEncoding_ != TransferEncoding::None) {
      body_ = MimeCodec::EncodeTransfer(body_, bodyEncoding_);
    }
  }

  // Uuencoding knows no parts, of which an answer to an invitation is made.
  MimeEncode Encoding() const {
    return model_.calendarReply ? MimeEncode::Base64 : options_.settings.mimeEncode;
  }

  QByteArray BodyEncodingName() const {
    if (bodyEncoding_ != TransferEncoding::None) return EncodingName(bodyEncoding_);
    const bool isEightBit = charset_ == OutputCharset::ShiftJis || charset_ == OutputCharset::Euc;
    return choice_ == CharsetChoice::ShiftJis || (isEightBit && HasHighBytes(body_)) ? "8bit"
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
                               charset_ == OutputCharset::Utf8 ||
                               options_.settings.standards.usesFields;
    if (writesVersion) Line("Mime-Version: 1.0");
    Line("");
    out_ += body_ + "\r\n\r\n";
  }

  QByteArray Boundary() const { return "--CLIP_" + options_.boundaryToken.toLatin1(); }

  // A read receipt: for people and for programs (RFC 8098 section 3).
  void WriteReport() {
    const QByteArray boundary = Boundary();
    Line("Content-Type: multipart/report;" + QByteArray(kFold) +
         "report-type=disposition-notification;" + kFold + "boundary=\"" + boundary + '"');
    Line("Mime-Version: 1.0");
    Line("");
    Line("--" + boundary);
    WriteTextHeader();
    Line("");
    out_ += body_ + "\r\n\r\n";
    Line("--" + boundary);
    Line("Content-Type: message/disposition-notification");
    Line("");
    const auto field = [this](const QByteArray& name, const QString& value) {
      if (!value.isEmpty()) Line(name + value.simplified().toUtf8());
    };
    field("Final-Recipient: rfc822;", model_.report->recipient);
    field("Original-Message-ID: ", model_.report->messageId);
    Line("Disposition: manual-action/MDN-sent-manually; displayed");
    Line("");
    Line("--" + boundary + "--");
  }

  void WriteMultipart() {
    const QByteArray boundary = Boundary();
    const TransferEncoding encoding = AttachmentEncoding(Encoding());
    const bool isUu = encoding == TransferEncoding::Uuencode;
    Line("Content-Type: multipart/mixed;" + QByteArray(kFold) + "boundary=\"" + boundary + '"');
    Line("Mime-Version: 1.0");
    Line("");
    Line("");
    if (!model_.text.Get().isEmpty()) {
      if (!isUu) {
        Line("--" + boundary);
        WriteTextHeader();
        Line("");
      }
      out_ += body_ + "\r\n\r\n";
    }
    if (model_.calendarReply) WriteCalendarReply(boundary);
    for (const ModelAttachment& attachment : model_.attachments) {
      const QByteArray data = options_.read ? options_.read(attachment) : QByteArray();
      if (isUu) {
        WriteUuBlock(attachment, data);
      } else if (attachment.type.startsWith(u"message/") &&
                 options_.settings.standards.attachesMessages) {
        WriteMessagePart(attachment, data, boundary);
      } else {
        WritePart(attachment, data, encoding, boundary);
      }
    }
    if (!isUu) Line("--" + boundary + "--");
  }

  // RFC 6047 section 2.4.
  void WriteCalendarReply(const QByteArray& boundary) {
    Line("--" + boundary);
    Line("Content-Type: text/calendar; charset=\"utf-8\"; method=REPLY");
    Line("Content-Transfer-Encoding: base64");
    Line("");
    out_ += MimeCodec::EncodeTransfer(*model_.calendarReply, TransferEncoding::Base64) + "\r\n";
  }

  // A file name as it stands between quotes: one encoded word, however long, since there are
  // readers that take the first of several for the whole name.
  QByteArray EncodedName(const QString& name) const {
    QString plain = name;
    plain.replace(u'"', u'\'').replace(u'\\', u'_');
    QByteArray word = MimeCodec::EncodeWord(plain, charset_);
    // A name so long that servers refuse its line keeps its begin and its ending.
    const QString ending = plain.mid(qMax(plain.lastIndexOf(u'.'), plain.size() - 8));
    while (word.size() > kLongestWord && plain.size() > 2 * ending.size()) {
      plain = plain.left(plain.size() * 3 / 4 - ending.size()) + ending;
      word = MimeCodec::EncodeWord(plain, charset_);
    }
    return word;
  }

  void WritePartHeader(const ModelAttachment& attachment, const QByteArray& type,
                       const QByteArray& encoding, const QByteArray& boundary) {
    Line("--" + boundary);
    Line("Content-Type: " + type + ';' + kFold + "name=\"" + EncodedName(attachment.name) + '"');
    Line("Content-Transfer-Encoding: " + encoding);
    QByteArray disposition = "Content-Disposition: attachment; " + QByteArray(kFold) +
                             "filename=\"" + EncodedName(attachment.name) + '"';
    if (options_.settings.standards.usesFields) disposition += ExtendedName(attachment.name);
    Line(disposition);
    Line("");
  }

  void WritePart(const ModelAttachment& attachment, const QByteArray& data,
                 TransferEncoding encoding, const QByteArray& boundary) {
    QByteArray type = attachment.type.toLatin1();
    if (options_.settings.standards.usesFields && type.startsWith("text/")) {
      type +=
          IsToken(attachment.charset) ? "; charset=\"" + attachment.charset + '"' : CharsetOf(data);
    }
    WritePartHeader(attachment, type, EncodingName(encoding), boundary);
    out_ += MimeCodec::EncodeTransfer(data, encoding) + "\r\n";
  }

  // A message, or the machine's half of a report, is not encoded (RFC 2046 section 5.2.1, RFC 3464
  // section 2.1); what cannot stand as it is, is but a file.
  void WriteMessagePart(const ModelAttachment& attachment, const QByteArray& data,
                        const QByteArray& boundary) {
    const bool isLines = !data.contains('\0') && !HasLongLine(data) &&
                         data.count('\n') == data.count("\r\n") &&
                         data.count('\r') == data.count("\r\n");
    if (!isLines || data.isEmpty()) {
      ModelAttachment file = attachment;
      file.type = QStringLiteral("application/octet-stream");
      WritePart(file, data, TransferEncoding::Base64, boundary);
      return;
    }
    WritePartHeader(attachment, attachment.type.toLatin1(), HasHighBytes(data) ? "8bit" : "7bit",
                    boundary);
    out_ += data + "\r\n";
  }

  static bool IsToken(const QByteArray& label) {
    return !label.isEmpty() && label.size() <= 40 &&
           std::all_of(label.begin(), label.end(), [](char c) {
             return std::isalnum(static_cast<unsigned char>(c)) ||
                    std::strchr("-_.:+", c) != nullptr;
           });
  }

  // What tells a reader the code of a text file; nothing for one in no code that is known.
  static QByteArray CharsetOf(const QByteArray& data) {
    const auto parameter = [](OutputCharset charset) {
      return "; charset=\"" + MimeCodec::CharsetName(charset) + '"';
    };
    switch (RecognizeCharset(data).family) {
      case Charset::Family::Jis:
        return parameter(OutputCharset::Jis);
      case Charset::Family::Euc:
        return parameter(OutputCharset::Euc);
      case Charset::Family::ShiftJis:
        return parameter(OutputCharset::ShiftJis);
      case Charset::Family::Utf8:
        return parameter(OutputCharset::Utf8);
      case Charset::Family::Ascii:
        return parameter(OutputCharset::Ascii);
      default:
        return {};
    }
  }

  // The name once more in the form of RFC 2231, for the readers that know no encoded word there.
  static QByteArray ExtendedName(const QString& name) {
    const QByteArray utf8 = name.toUtf8();
    if (!HasHighBytes(utf8)) return {};
    const QByteArray encoded = utf8.toPercentEncoding("!#$&+^`{}|");
    if (encoded.size() <= kLongestName) {
      return ";" + QByteArray(kFold) + "filename*=UTF-8''" + encoded;
    }
    // In pieces (RFC 2231 section 3), so that no line is longer than servers take.
    QByteArray pieces;
    for (qsizetype at = 0, number = 0; at < encoded.size(); ++number) {
      qsizetype end = qMin(at + kLongestName, encoded.size());
      if (const qsizetype sign = encoded.lastIndexOf('%', end - 1); end - sign < 3 && sign > at) {
        end = end == encoded.size() ? end : sign;
      }
      pieces += ";" + QByteArray(kFold) + "filename*" + QByteArray::number(number) +
                "*=" + (number == 0 ? "UTF-8''" : "") + encoded.mid(at, end - at);
      at = end;
    }
    return pieces;
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
