#include "mail/codec/charset/text_encoding.h"

#include <QString>

#include "mail/codec/charset/code_page_932.h"

namespace vorn::MimeCodec {
namespace {

struct RowCell {
  unsigned row;
  unsigned cell;
};

// The row and cell of a double-byte code, each from 1.
RowCell ToRowCell(unsigned code) {
  const unsigned lead = code >> 8;
  const unsigned trail = code & 0xFF;
  unsigned row = (lead - (lead < 0xE0 ? 0x81 : 0xC1)) * 2 + 1;
  if (trail >= 0x9F) return {row + 1, trail - 0x9E};
  return {row, trail - 0x3F - (trail >= 0x80 ? 1 : 0)};
}

// Rows 9 to 15 and those after 84 are machine-dependent.
bool IsJisX0208(RowCell place) {
  return place.row <= 8 || (place.row >= 16 && place.row <= 84);
}

// What one character becomes; the code of JIS X 0208 is given with both bytes from 0x21.
enum class Set { Ascii, HalfKana, Kanji, None };
struct OutputPiece {
  Set set = Set::None;
  unsigned char first = 0;
  unsigned char second = 0;
};

OutputPiece PieceOf(QChar c) {
  if (c.unicode() < 0x80) return {Set::Ascii, static_cast<unsigned char>(c.unicode()), 0};
  const unsigned code = CodePage932::Instance().ToCode(c.unicode());
  // A backslash or tilde that stands for another sign would come back as itself.
  if (code == 0 || code < 0x80) return {};
  if (code <= 0xFF) return {Set::HalfKana, static_cast<unsigned char>(code), 0};
  const RowCell place = ToRowCell(code);
  if (!IsJisX0208(place)) return {};
  return {Set::Kanji, static_cast<unsigned char>(place.row + 0x20),
          static_cast<unsigned char>(place.cell + 0x20)};
}

bool AppendJis(QStringView text, QByteArray& bytes) {
  Set set = Set::Ascii;
  const auto use = [&](Set wanted, const char* escape) {
    if (set != wanted) bytes += escape;
    set = wanted;
  };
  for (const QChar c : text) {
    const OutputPiece piece = PieceOf(c);
    if (piece.set == Set::Ascii) {
      use(Set::Ascii, "\x1B(B");
      bytes += static_cast<char>(piece.first);
    } else if (piece.set == Set::Kanji) {
      use(Set::Kanji, "\x1B$B");
      bytes += static_cast<char>(piece.first);
      bytes += static_cast<char>(piece.second);
    } else {
      return false;
    }
  }
  use(Set::Ascii, "\x1B(B");
  return true;
}

bool AppendEuc(QStringView text, QByteArray& bytes) {
  for (const QChar c : text) {
    const OutputPiece piece = PieceOf(c);
    switch (piece.set) {
      case Set::Ascii:
        bytes += static_cast<char>(piece.first);
        break;
      case Set::HalfKana:
        bytes += '\x8E';
        bytes += static_cast<char>(piece.first);
        break;
      case Set::Kanji:
        bytes += static_cast<char>(piece.first | 0x80);
        bytes += static_cast<char>(piece.second | 0x80);
        break;
      default:
        return false;
    }
  }
  return true;
}

bool AppendShiftJis(QStringView text, QByteArray& bytes) {
  for (const QChar c : text) {
    if (PieceOf(c).set == Set::None) return false;
  }
  bytes += ToCodePage932(text);
  return true;
}

bool AppendAscii(QStringView text, QByteArray& bytes) {
  for (const QChar c : text) {
    if (c.unicode() >= 0x80) return false;
    bytes += static_cast<char>(c.unicode());
  }
  return true;
}

}  // namespace

QByteArray CharsetName(OutputCharset charset) {
  switch (charset) {
    case OutputCharset::Jis:
      return "ISO-2022-JP";
    case OutputCharset::Euc:
      return "EUC-JP";
    case OutputCharset::ShiftJis:
      return "Shift_JIS";
    case OutputCharset::Utf8:
      return "UTF-8";
    default:
      return "US-ASCII";
  }
}

std::optional<QByteArray> EncodeText(QStringView text, OutputCharset charset) {
  QByteArray bytes;
  bytes.reserve(text.size() * 2);
  bool fits = true;
  switch (charset) {
    case OutputCharset::Jis:
      fits = AppendJis(text, bytes);
      break;
    case OutputCharset::Euc:
      fits = AppendEuc(text, bytes);
      break;
    case OutputCharset::ShiftJis:
      fits = AppendShiftJis(text, bytes);
      break;
    case OutputCharset::Utf8:
      bytes = text.toUtf8();
      break;
    default:
      fits = AppendAscii(text, bytes);
  }
  return fits ? std::optional(bytes) : std::nullopt;
}

OutputCharset ChooseOutput(QStringView text, CharsetChoice choice) {
  const auto orUtf8 = [&text](OutputCharset charset) {
    return EncodeText(text, charset) ? charset : OutputCharset::Utf8;
  };
  switch (choice) {
    case CharsetChoice::Jis:
      return orUtf8(OutputCharset::Jis);
    case CharsetChoice::Euc:
      return orUtf8(OutputCharset::Euc);
    case CharsetChoice::ShiftJis:
      return orUtf8(OutputCharset::ShiftJis);
    case CharsetChoice::Utf8:
      return OutputCharset::Utf8;
    default:
      return EncodeText(text, OutputCharset::Ascii) ? OutputCharset::Ascii
                                                    : orUtf8(OutputCharset::Jis);
  }
}

}  // namespace vorn::MimeCodec
