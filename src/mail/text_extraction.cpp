#include "mail/text_extraction.h"

#include "mail/code_page_932.h"
#include "mail/mime_codec.h"

namespace vorn {
namespace {

using MimeCodec::ContentRecord;
using MimeCodec::TransferEncoding;

// Each of CR LF, CR and LF is one line break.
QString WithLineBreaks(const QString& text, const QString& lineBreak) {
  QString result;
  result.reserve(text.size() + text.size() / 16);
  for (qsizetype i = 0; i < text.size(); ++i) {
    const QChar c = text[i];
    if (c == u'\r' || c == u'\n') {
      result += lineBreak;
      if (c == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n') ++i;
    } else {
      result += c;
    }
  }
  return result;
}

// The number of a part's bytes that can give `room` bytes of text.
qsizetype EncodedRoom(qsizetype room, TransferEncoding encoding) {
  return encoding == TransferEncoding::None ? room : room / 3 * 4;
}

}  // namespace

MessageText GetMessageText(QByteArrayView source, const QString& contentIndex,
                           const TextRequest& request) {
  MessageText result;
  bool truncated = false;
  qsizetype length = 0;  // of the text so far, in bytes of code page 932
  const QString lineBreak = QStringLiteral("\r\n") + request.linePrefix;
  for (const ContentRecord& record : MimeCodec::ParseContentIndex(contentIndex)) {
    if (record.hasName || record.first > record.last || !request.textTypes.contains(record.type)) {
      continue;
    }
    const TransferEncoding encoding = MimeCodec::TransferEncodingOf(record.encoding.toLatin1());
    qsizetype last = record.last;
    bool cut = false;
    if (request.maximum > 0) {
      const qsizetype room = EncodedRoom(qMax<qsizetype>(request.maximum - length, 0), encoding);
      cut = record.Size() > room;
      if (cut) last = record.first + room - 1;
      truncated = truncated || cut;
    }
    const QByteArray bytes = MimeCodec::DecodePart(source, encoding, record.first, last);
    const QString text =
        request.charset == CharsetChoice::Automatic
            ? DecodeAutomatically(bytes, MimeCodec::DeclaredCharset(source, record), cut)
            : Decode(Charset::FromChoice(request.charset), bytes, cut).text;
    result.text += WithLineBreaks(text, lineBreak);
    if (request.maximum > 0) {
      length = CodePage932Length(result.text);
      if (length > request.maximum) break;
    }
  }
  if (truncated) result.text += QStringLiteral("...");
  result.produced = !result.text.isEmpty();
  return result;
}

}  // namespace vorn
