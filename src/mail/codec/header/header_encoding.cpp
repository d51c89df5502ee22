#include "mail/codec/header/header_encoding.h"

#include <QStringList>
#include <algorithm>

#include "mail/codec/charset/character_kinds.h"
#include "mail/codec/header/address.h"
#include "mail/codec/header/without_controls.h"

namespace vorn::MimeCodec {
namespace {

constexpr qsizetype kLineLength = 76;
constexpr qsizetype kLongestName = 200;
constexpr qsizetype kMaxWord = 75;  // RFC 2047 section 2
constexpr char kFold[] = "\r\n\t";

bool IsPlain(QStringView word) {
  return !word.contains(u"=?") && std::all_of(word.begin(), word.end(), [](QChar c) {
    return c.unicode() >= 0x21 && c.unicode() < 0x7F;
  });
}

// A run of the value: text to be encoded, or words that stand as they are.
struct ValueRun {
  QString text;
  bool encoded;
};

void AppendWord(QList<ValueRun>& runs, const QString& word, bool encoded) {
  if (encoded && !runs.isEmpty() && runs.back().encoded) {
    runs.back().text += u' ' + word;
  } else {
    runs.append({word, encoded});
  }
}

// Blanks between two runs stand outside them; those inside an encoded run are encoded. Several
// blanks in a row, or one at an end, are kept by encoding the word beside them.
QList<ValueRun> SplitRuns(const QString& value) {
  QStringList words = value.split(u' ');
  const bool endsInBlank = words.size() > 1 && words.back().isEmpty();
  if (endsInBlank) {
    words.removeLast();
    words.back() += u' ';  // no plain word holds a blank
  }
  QList<ValueRun> runs;
  bool afterEmpty = false;
  for (const QString& word : std::as_const(words)) {
    AppendWord(runs, word, afterEmpty || word.isEmpty() || !IsPlain(word));
    afterEmpty = word.isEmpty();
  }
  return runs;
}

// Writes pieces on lines of limited length.
class Folder {
 public:
  explicit Folder(QByteArray start) : out_(std::move(start)), column_(out_.size()) {}

  qsizetype Room() const { return kLineLength - column_; }
  void Break() {
    out_ += kFold;
    column_ = 1;
  }
  // A piece after a blank, or on a new line when it does not fit.
  void AddWord(const QByteArray& word) {
    if (column_ > 1 && column_ + 1 + word.size() > kLineLength) {
      Break();
    } else if (!atStart_) {
      Put(" ");
    }
    Put(word);
    atStart_ = false;
  }
  void Put(const QByteArray& bytes) {
    out_ += bytes;
    column_ += bytes.size();
  }
  QByteArray Take() { return std::move(out_); }

 private:
  QByteArray out_;
  qsizetype column_;
  bool atStart_ = true;
};

QByteArray MakeEncodedWord(QStringView text, OutputCharset charset) {
  const auto bytes = EncodeText(text, charset);
  return "=?" + CharsetName(charset) + "?B?" + bytes.value_or(QByteArray()).toBase64() + "?=";
}

// In the "Q" encoding (RFC 2047 section 4.2), everything but letters and digits escaped.
QByteArray QuotedWord(QStringView text, OutputCharset charset) {
  constexpr char kHex[] = "0123456789ABCDEF";
  QByteArray word = "=?" + CharsetName(charset) + "?Q?";
  for (const char c : EncodeText(text, charset).value_or(QByteArray())) {
    if ((c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z')) {
      word += c;
    } else {
      word += '=';
      word += kHex[static_cast<unsigned char>(c) >> 4];
      word += kHex[static_cast<unsigned char>(c) & 0xF];
    }
  }
  return word + "?=";
}

struct EncodedPiece {
  qsizetype length = 0;  // of the text
  QByteArray word;
};

// The longest piece from `at` on whose word fits into `room`. Never ends inside a surrogate pair.
// Readers that join the bytes of adjacent words stop at the first base64 padding, so a word that
// another one follows has none; where no length gives such a word, it is quoted instead.
EncodedPiece LongestPiece(const QString& text, qsizetype at, OutputCharset charset,
                          qsizetype room) {
  EncodedPiece unpadded;
  EncodedPiece quoted;
  for (qsizetype next = at; next < text.size();) {
    next += text[next].isHighSurrogate() && next + 1 < text.size() ? 2 : 1;
    const QStringView piece = QStringView(text).sliced(at, next - at);
    const QByteArray word = MakeEncodedWord(piece, charset);
    if (word.size() > room) break;
    if (!word.endsWith("=?=") || next == text.size()) unpadded = {next - at, word};
    const QByteArray inQ = QuotedWord(piece, charset);
    if (inQ.size() <= room) quoted = {next - at, inQ};
  }
  return unpadded.length > 0 ? unpadded : quoted;
}

void AddEncoded(Folder& folder, const QString& text, OutputCharset charset) {
  for (qsizetype at = 0; at < text.size();) {
    EncodedPiece piece = LongestPiece(text, at, charset, std::min(folder.Room() - 1, kMaxWord));
    if (piece.length > 0) {
      folder.AddWord(piece.word);
    } else {
      folder.Break();
      piece = LongestPiece(text, at, charset, kMaxWord - 1);
      folder.Put(piece.word);
    }
    at += piece.length;
  }
}

QByteArray EncodeRuns(const QByteArray& name, const QList<ValueRun>& runs, OutputCharset charset) {
  Folder folder(name + ' ');
  for (const ValueRun& run : runs) {
    if (run.encoded) {
      AddEncoded(folder, run.text, charset);
    } else {
      folder.AddWord(run.text.toUtf8());
    }
  }
  return folder.Take();
}

// An ASCII name as it may stand before an address.
QString Phrase(const QString& name) {
  const bool hasSpecials = std::any_of(name.begin(), name.end(), [](QChar c) {
    return QStringView(u",;:<>()@[]\"\\.").contains(c);
  });
  return hasSpecials ? QuotedString(name) : name;
}

}  // namespace

QByteArray EncodeField(const QByteArray& name, const QString& value, OutputCharset charset) {
  if (charset == OutputCharset::Ascii) charset = OutputCharset::Utf8;  // for what is not plain
  const QString text = WithoutControls(value);
  const QList<ValueRun> runs = SplitRuns(text);
  const QByteArray field = EncodeRuns(name, runs, charset);
  const bool hasPlainRun =
      std::any_of(runs.begin(), runs.end(), [](const ValueRun& run) { return !run.encoded; });
  return hasPlainRun && field.contains(kFold) ? EncodeRuns(name, {{text, true}}, charset) : field;
}

QByteArray EncodeWord(const QString& text, OutputCharset charset) {
  const QString clean = WithoutControls(text);
  const bool isPlain = IsAscii(clean) && !clean.contains(QStringLiteral("=?"));
  if (isPlain) return clean.toLatin1();
  return MakeEncodedWord(clean, charset == OutputCharset::Ascii ? OutputCharset::Utf8 : charset);
}

QByteArray EncodeAddressField(const QByteArray& name, const QList<Mailbox>& mailboxes,
                              OutputCharset charset) {
  if (charset == OutputCharset::Ascii) charset = OutputCharset::Utf8;
  QList<ValueRun> runs;
  for (qsizetype i = 0; i < mailboxes.size(); ++i) {
    const QString display = WithoutControls(mailboxes[i].name);
    const QString comma = i + 1 < mailboxes.size() ? QStringLiteral(",") : QString();
    const QString address = WithoutControls(mailboxes[i].address);
    if (display.isEmpty()) {
      runs.append({address + comma, false});
      continue;
    }
    // What has no room on a line is encoded, since a word cannot be folded.
    const bool isPlain = IsAscii(display) && !display.contains(QStringLiteral("=?")) &&
                         display.size() <= kLongestName;
    runs.append({isPlain ? Phrase(display) : display, !isPlain});
    runs.append({u'<' + address + u'>' + comma, false});
  }
  return EncodeRuns(name, runs, charset);
}

QByteArray FieldName(const QString& text) {
  QByteArray name = text.trimmed().toLatin1();
  for (char& c : name) {
    if (c <= ' ' || c > '~' || c == ':') c = '-';
  }
  return name;
}

}  // namespace vorn::MimeCodec
