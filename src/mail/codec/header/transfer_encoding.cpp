#include "mail/codec/header/transfer_encoding.h"

#include <gmime/gmime.h>

#include <algorithm>
#include <array>

#include "mail/codec/header/uuencoding.h"
#include "mail/codec/header/yencoding.h"

namespace vorn::MimeCodec {
namespace {

QByteArray RunDecoder(QByteArrayView bytes, GMimeContentEncoding kind) {
  GMimeEncoding decoder;
  g_mime_encoding_init_decode(&decoder, kind);
  const auto size = static_cast<size_t>(bytes.size());
  QByteArray decoded(static_cast<qsizetype>(g_mime_encoding_outlen(&decoder, size)),
                     Qt::Uninitialized);
  const size_t length = g_mime_encoding_flush(&decoder, bytes.data(), size, decoded.data());
  decoded.truncate(static_cast<qsizetype>(length));
  return decoded;
}

}  // namespace

TransferEncoding TransferEncodingOf(QByteArrayView name) {
  if (name.compare("base64", Qt::CaseInsensitive) == 0) return TransferEncoding::Base64;
  if (name.compare("quoted-printable", Qt::CaseInsensitive) == 0) {
    return TransferEncoding::QuotedPrintable;
  }
  for (const QByteArrayView uu : {"uuencode", "x-uuencode", "x-uue", "uue"}) {
    if (name.compare(uu, Qt::CaseInsensitive) == 0) return TransferEncoding::Uuencode;
  }
  if (name.compare("x-yenc", Qt::CaseInsensitive) == 0) return TransferEncoding::Yenc;
  return TransferEncoding::None;
}

namespace {

bool IsBlankOrBreak(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

constexpr bool IsBase64Digit(char c) {
  return IsBase64Letter(c) || c == '=';
}

// Of the first line that is not blank, and how long that is.
qsizetype ForeignInLine(QByteArrayView bytes, qsizetype* length) {
  qsizetype begin = 0;
  while (begin < bytes.size() && IsBlankOrBreak(bytes[begin])) ++begin;
  const qsizetype found = bytes.indexOf('\n', begin);
  const QByteArrayView line =
      bytes.sliced(begin, (found < 0 ? bytes.size() : found) - begin).trimmed();
  *length = line.size();
  return std::count_if(line.begin(), line.end(), [](char c) { return !IsBase64Digit(c); });
}

// Whether text stands where base64 should begin: damage puts a byte in, words have many.
bool IsPlainText(QByteArrayView bytes) {
  constexpr qsizetype kShareOfText = 8;
  qsizetype length = 0;
  return ForeignInLine(bytes, &length) * kShareOfText > length;
}

// Whether each line was quoted as an answer quotes text.
bool IsQuoted(QByteArrayView bytes) {
  const QByteArrayView text = bytes.trimmed();
  if (!text.startsWith('>')) return false;
  for (qsizetype end = text.indexOf('\n'); end >= 0; end = text.indexOf('\n', end + 1)) {
    const QByteArrayView line = text.sliced(end + 1);
    if (!line.startsWith('>') && !line.startsWith('\r') && !line.startsWith('\n')) return false;
  }
  return true;
}

// Behind the padding any line that is no base64 is another's.
qsizetype PaddingEnd(QByteArrayView bytes, qsizetype from) {
  qsizetype end = bytes.indexOf('=', from);
  while (end >= 0 && end < bytes.size() && (bytes[end] == '=' || IsBlankOrBreak(bytes[end]))) ++end;
  return end < 0 ? bytes.size() : end;
}

// By a table, since whole attachments pass here.
qsizetype CountDigits(QByteArrayView bytes) {
  static constexpr auto isDigit = [] {
    std::array<quint8, 256> table{};
    for (int c = 0; c < 256; ++c) {
      table[static_cast<size_t>(c)] = IsBase64Digit(static_cast<char>(c)) ? 1 : 0;
    }
    return table;
  }();
  qsizetype digits = 0;
  for (const char c : bytes) digits += isDigit[static_cast<quint8>(c)];
  return digits;
}

// A text's last bytes are lost where the padding that completes them is missing.
QByteArray DecodeBase64Text(QByteArrayView bytes) {
  const qsizetype digits = bytes.contains('=') ? 0 : CountDigits(bytes);
  if (digits % 4 < 2) return RunDecoder(bytes, GMIME_CONTENT_ENCODING_BASE64);
  return RunDecoder(bytes.toByteArray().append(4 - digits % 4, '='), GMIME_CONTENT_ENCODING_BASE64);
}

// Several texts that were encoded one by one stand behind each other, each with its padding.
QByteArray DecodeBase64(QByteArrayView bytes) {
  if (IsQuoted(bytes)) return DecodeBase64(bytes.toByteArray().replace(">", ""));
  if (IsPlainText(bytes)) return bytes.toByteArray();
  bytes = bytes.first(Base64End(bytes));
  QByteArray decoded;
  while (!bytes.isEmpty()) {
    const qsizetype end = PaddingEnd(bytes, 0);
    const QByteArray text = DecodeBase64Text(bytes.first(end));
    decoded = decoded.isEmpty() ? text : decoded + text;
    bytes = bytes.sliced(end);
  }
  return decoded;
}

// A character that the end cut off.
QByteArrayView CutCharacter(QByteArrayView bytes) {
  return bytes.size() >= 2 && bytes[bytes.size() - 2] == '=' && bytes.back() != '\n'
             ? bytes.last(2)
             : QByteArrayView();
}

// Where a soft line break ends that begins with the "=" at `at`; -1 when it is none. Blanks that
// came to it on the way are no text (RFC 2045 section 6.7, rule 3), and line breaks may have become
// a lone CR or CR CR LF.
qsizetype SoftBreakEnd(QByteArrayView bytes, qsizetype at) {
  qsizetype end = at + 1;
  while (end < bytes.size() && (bytes[end] == ' ' || bytes[end] == '\t')) ++end;
  const qsizetype breakStart = end;
  while (end < bytes.size() && bytes[end] == '\r') ++end;
  if (end < bytes.size() && bytes[end] == '\n') return end + 1;
  return end > breakStart ? breakStart + 1 : -1;
}

// Whether any soft line break may have another form than is usual, by what stands around the line
// breaks: text in other letters has a "=" every third byte.
bool MayHaveOddBreaks(QByteArrayView bytes) {
  for (qsizetype at = bytes.indexOf('\n'); at >= 0; at = bytes.indexOf('\n', at + 1)) {
    const qsizetype end = at > 0 && bytes[at - 1] == '\r' ? at - 1 : at;
    if (end > 0 && IsBlankOrBreak(bytes[end - 1]) && bytes[end - 1] != '\n') return true;
  }
  for (qsizetype at = bytes.indexOf('\r'); at >= 0; at = bytes.indexOf('\r', at + 1)) {
    if (!bytes.sliced(at + 1).startsWith('\n')) return true;
  }
  return false;
}

QByteArray DecodeQuotedPrintable(QByteArrayView bytes) {
  const QByteArrayView rest = CutCharacter(bytes);
  bytes.chop(rest.size());
  QByteArray usual;
  qsizetype taken = 0;
  const qsizetype first = MayHaveOddBreaks(bytes) ? bytes.indexOf('=') : -1;
  for (qsizetype at = first; at >= 0; at = bytes.indexOf('=', at + 1)) {
    const QByteArrayView after = bytes.sliced(at + 1);
    if (after.startsWith("\r\n") || after.startsWith('\n')) continue;
    const qsizetype end = SoftBreakEnd(bytes, at);
    if (end < 0) continue;
    usual.append(bytes.sliced(taken, at - taken)).append("=\n");
    taken = end;
  }
  if (taken > 0) usual.append(bytes.sliced(taken));
  const QByteArrayView whole = taken > 0 ? QByteArrayView(usual) : bytes;
  return RunDecoder(whole, GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE).append(rest);
}

}  // namespace

namespace {

// Words with blanks between them, or a line drawn above some; damage looks otherwise.
bool IsWords(QByteArrayView line) {
  const QByteArrayView text = line.trimmed();
  const auto sameAsFirst = [&](char c) { return c == text.front(); };
  const bool isRule = text.size() > 1 && !IsBase64Digit(text.front()) &&
                      std::all_of(text.begin(), text.end(), sameAsFirst);
  return isRule || text.contains(' ');
}

// Where the words begin that stand at the end behind base64 without padding; the end when none do.
qsizetype FooterStart(QByteArrayView bytes) {
  constexpr qsizetype kLongestFooter = 2048;
  qsizetype at = bytes.lastIndexOf('\n', qMax(qsizetype{0}, bytes.size() - kLongestFooter)) + 1;
  while (at < bytes.size()) {
    const qsizetype found = bytes.indexOf('\n', at);
    const qsizetype next = found < 0 ? bytes.size() : found + 1;
    const QByteArrayView line = bytes.sliced(at, next - at);
    if (IsWords(line) && IsPlainText(line)) return at;
    at = next;
  }
  return bytes.size();
}

}  // namespace

qsizetype Base64End(QByteArrayView bytes) {
  if (IsQuoted(bytes)) return bytes.size();
  if (IsPlainText(bytes)) return 0;
  for (qsizetype end = PaddingEnd(bytes, 0); end < bytes.size(); end = PaddingEnd(bytes, end)) {
    qsizetype length = 0;
    if (ForeignInLine(bytes.sliced(end), &length) > 0) return end;
  }
  return FooterStart(bytes);
}

QByteArray DecodeTransfer(QByteArrayView bytes, TransferEncoding encoding) {
  switch (encoding) {
    case TransferEncoding::Base64:
      return DecodeBase64(bytes);
    case TransferEncoding::QuotedPrintable:
      return DecodeQuotedPrintable(bytes);
    case TransferEncoding::Uuencode:
      return UuDecode(bytes);
    case TransferEncoding::Yenc:
      return YencDecode(bytes);
    default:
      return bytes.toByteArray();
  }
}

namespace {

QByteArray EncodeBase64(const QByteArray& bytes) {
  constexpr qsizetype kBytesPerLine = 57;  // 76 characters
  QByteArray lines;
  lines.reserve(bytes.size() * 4 / 3 + bytes.size() / 28 + 8);
  for (qsizetype at = 0; at < bytes.size(); at += kBytesPerLine) {
    lines += bytes.sliced(at, qMin(kBytesPerLine, bytes.size() - at)).toBase64() + "\r\n";
  }
  return lines;
}

// RFC 2045 section 6.7. Line breaks of the text stay line breaks; a lone CR or LF is encoded.
QByteArray EncodeQuotedPrintable(const QByteArray& bytes) {
  constexpr qsizetype kEncodedLine = 76;
  constexpr char kHex[] = "0123456789ABCDEF";
  QByteArray lines;
  lines.reserve(bytes.size() * 2);
  qsizetype column = 0;
  for (qsizetype i = 0; i < bytes.size(); ++i) {
    const char c = bytes[i];
    if (c == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n') {
      lines += "\r\n";
      column = 0;
      ++i;
      continue;
    }
    const bool atLineEnd =
        i + 1 == bytes.size() || QByteArrayView(bytes).sliced(i + 1).startsWith("\r\n");
    const bool isPlain = (c >= '!' && c <= '~' && c != '=' && !(column == 0 && c == '.')) ||
                         ((c == ' ' || c == '\t') && !atLineEnd);
    const qsizetype width = isPlain ? 1 : 3;
    if (column + width > kEncodedLine - (atLineEnd ? 0 : 1)) {
      lines += "=\r\n";
      column = 0;
    }
    if (isPlain) {
      lines += c;
    } else {
      lines += '=';
      lines += kHex[static_cast<unsigned char>(c) >> 4];
      lines += kHex[static_cast<unsigned char>(c) & 0xF];
    }
    column += width;
  }
  return lines;
}

}  // namespace

QByteArray EncodeTransfer(const QByteArray& bytes, TransferEncoding encoding) {
  switch (encoding) {
    case TransferEncoding::Base64:
      return EncodeBase64(bytes);
    case TransferEncoding::QuotedPrintable:
      return EncodeQuotedPrintable(bytes);
    case TransferEncoding::Uuencode:
      return UuEncode(bytes);
    default:
      return bytes;
  }
}

QByteArrayView PartOf(QByteArrayView source, qsizetype first, qsizetype last) {
  first = std::clamp<qsizetype>(first, 0, source.size());
  last = std::clamp<qsizetype>(last, first - 1, source.size() - 1);
  return source.sliced(first, last - first + 1);
}

QByteArray DecodePart(QByteArrayView source, TransferEncoding encoding, qsizetype first,
                      qsizetype last) {
  return DecodeTransfer(PartOf(source, first, last), encoding);
}

QByteArray DecodeEncodedWord(QByteArrayView text, bool base64) {
  if (base64) return DecodeBase64(text);
  QByteArray quoted = text.toByteArray();
  std::replace(quoted.begin(), quoted.end(), '_', ' ');
  return RunDecoder(quoted, GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE);
}

}  // namespace vorn::MimeCodec
