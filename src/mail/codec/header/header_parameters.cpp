#include "mail/codec/header/header_parameters.h"

#include <algorithm>

#include "mail/codec/charset/character_kinds.h"
#include "mail/codec/header/header_decoding.h"

namespace vorn::MimeCodec {
namespace {

constexpr int kMaxSections = 1000;

// Whether a raw value is in Shift_JIS, where a backslash may be the second half of a character.
bool MayBeShiftJis(QByteArrayView value) {
  return HasHighBytes(value) && !Decode({Charset::Family::Utf8, {}}, value).clean;
}

bool IsShiftJisLead(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

// How many bytes from there on are characters although they look like ASCII: what is shifted to
// double bytes in ISO-2022-JP, raw or in an encoded word, or a pair of Shift_JIS.
qsizetype ForeignLength(QByteArrayView text, qsizetype at, bool isShiftJis) {
  constexpr qsizetype kLongest = 1000;
  if (isShiftJis && IsShiftJisLead(text[at])) return at + 1 < text.size() ? 2 : 1;
  if (text[at] != '\x1B' && text[at] != '=') return 0;
  const QByteArrayView escape = text[at] == '=' ? "=1B" : "\x1B";
  const QByteArrayView rest = text.sliced(at).first(qMin(text.size() - at, kLongest));
  if (!rest.startsWith(escape)) return 0;
  const QByteArrayView shifted = rest.sliced(escape.size());
  if (!shifted.startsWith('$')) return shifted.startsWith('(') ? escape.size() + 1 : 0;
  const QByteArrayView back = text[at] == '=' ? "=1B(" : "\x1B(";
  const qsizetype end = rest.indexOf(back, escape.size());
  const bool isWhole = end > 0 && end + back.size() < rest.size();
  return isWhole && !rest.first(end).contains('\n') ? end + back.size() + 1 : 0;
}

// The offset of the next `mark` outside quotes and comments, or the end.
qsizetype FindOutsideQuotes(QByteArrayView text, char mark, qsizetype from, bool isShiftJis) {
  bool quoted = false;
  int comments = 0;
  for (qsizetype i = from; i < text.size(); ++i) {
    const char c = text[i];
    if (const qsizetype length = ForeignLength(text, i, isShiftJis); length > 0) {
      i += length - 1;
    } else if (c == '\\' && (quoted || comments > 0)) {
      ++i;
    } else if (c == '"' && comments == 0) {
      quoted = !quoted;
    } else if (!quoted && c == '(') {
      ++comments;
    } else if (!quoted && c == ')' && comments > 0) {
      --comments;
    } else if (!quoted && comments == 0 && c == mark) {
      return i;
    }
  }
  return text.size();
}

// A word of which comments and quotation marks are no part.
QByteArray BareWord(QByteArrayView text) {
  QByteArray word;
  int comments = 0;
  for (const char c : text) {
    comments += c == '(' ? 1 : 0;
    if (comments == 0 && c != '"') word += c;
    comments -= c == ')' && comments > 0 ? 1 : 0;
  }
  return word.trimmed();
}

// Some programs put a backslash before the bytes of a JIS character as if they were ASCII.
QByteArray WithoutEscapes(QByteArrayView text) {
  QByteArray plain;
  for (qsizetype i = 0; i < text.size(); ++i) {
    const bool escapes =
        text[i] == '\\' && i + 1 < text.size() && (text[i + 1] == '"' || text[i + 1] == '\\');
    plain += text[escapes ? ++i : i];
  }
  return plain;
}

// Characters that look like ASCII, as they are or without the escapes among them.
QByteArray ForeignBytes(QByteArrayView text) {
  const Charset jis{Charset::Family::Jis, {}};
  if (!text.startsWith('\x1B') || !text.contains('\\') || Decode(jis, text).clean) {
    return text.toByteArray();
  }
  const QByteArray plain = WithoutEscapes(text);
  return Decode(jis, plain).clean ? plain : text.toByteArray();
}

QByteArray Unquote(QByteArrayView value) {
  value = value.trimmed();
  if (!value.startsWith('"')) return value.toByteArray();
  const bool isShiftJis = MayBeShiftJis(value);
  QByteArray unquoted;
  for (qsizetype i = 1; i < value.size() && value[i] != '"'; ++i) {
    if (const qsizetype length = ForeignLength(value, i, isShiftJis); length > 0) {
      unquoted += ForeignBytes(value.sliced(i, length));
      i += length - 1;
      continue;
    }
    // In eight-bit text a backslash is half a character more often than an escape.
    const bool escapes =
        value[i] == '\\' && i + 1 < value.size() && (value[i + 1] == '"' || value[i + 1] == '\\');
    if (escapes) ++i;
    unquoted += value[i];
  }
  return unquoted;
}

// RFC 2231 section 4; a "%" without two digits after it is one.
QByteArray Unescaped(const QByteArray& value) {
  QByteArray bytes;
  for (qsizetype at = 0; at < value.size(); ++at) {
    bool isNumber = false;
    const int byte = value[at] == '%' && at + 2 < value.size()
                         ? value.sliced(at + 1, 2).toInt(&isNumber, 16)
                         : 0;
    bytes += isNumber ? static_cast<char>(byte) : value[at];
    if (isNumber) at += 2;
  }
  return bytes;
}

}  // namespace

HeaderParameters::HeaderParameters(QByteArrayView value) {
  const bool isShiftJis = MayBeShiftJis(value);
  qsizetype end = FindOutsideQuotes(value, ';', 0, isShiftJis);
  // "text/plain charset=..." lacks the semicolon.
  const qsizetype blank = value.first(end).trimmed().indexOf(' ');
  if (blank > 0 && value.first(end).indexOf('=') > blank) end = value.indexOf(' ');
  main_ = BareWord(value.first(end)).toLower();
  while (end < value.size()) {
    const qsizetype start = end + 1;
    end = FindOutsideQuotes(value, ';', start, isShiftJis);
    ReadParameter(value.sliced(start, end - start));
  }
}

void HeaderParameters::ReadParameter(QByteArrayView text) {
  const qsizetype equals = text.indexOf('=');
  if (equals <= 0) return;
  QByteArray name = text.first(equals).trimmed().toByteArray().toLower();
  Parameter parameter{QByteArray(), -1, name.endsWith('*'), Unquote(text.sliced(equals + 1))};
  if (parameter.extended) name.chop(1);
  if (const qsizetype star = name.indexOf('*'); star > 0) {
    bool isNumber = false;
    parameter.section = name.sliced(star + 1).toInt(&isNumber);
    if (!isNumber || parameter.section < 0 || parameter.section > kMaxSections) return;
    name.truncate(star);
  }
  parameter.name = name;
  parameters_.push_back(std::move(parameter));
}

HeaderParameters::Joined HeaderParameters::Join(QByteArrayView name, Form form) const {
  std::vector<const Parameter*> sections;
  for (const Parameter& parameter : parameters_) {
    const bool isMeant = form == Form::Best || (!parameter.extended && parameter.section < 0);
    if (isMeant && QByteArrayView(parameter.name) == name) sections.push_back(&parameter);
  }
  // An extended form is the better of two, a whole plain one the other (RFC 6266 advises the same).
  const bool anyExtended =
      std::any_of(sections.begin(), sections.end(), [](const Parameter* p) { return p->extended; });
  const bool anySection = std::any_of(sections.begin(), sections.end(),
                                      [](const Parameter* p) { return p->section >= 0; });
  if (anyExtended || anySection) {
    std::erase_if(sections, [](const Parameter* p) { return p->section < 0 && !p->extended; });
  }
  std::stable_sort(sections.begin(), sections.end(),
                   [](const Parameter* a, const Parameter* b) { return a->section < b->section; });
  if (!anySection && !sections.empty()) sections.erase(sections.begin() + 1, sections.end());

  Joined joined;
  joined.extended = anyExtended;
  for (const Parameter* section : sections) {
    QByteArray value = section->value;
    if (section->extended) {
      if (section == sections.front()) {
        const qsizetype charsetEnd = value.indexOf('\'');
        const qsizetype languageEnd = value.indexOf('\'', charsetEnd + 1);
        if (charsetEnd >= 0 && languageEnd >= 0) {
          joined.charset = value.first(charsetEnd);
          value = value.sliced(languageEnd + 1);
        }
      }
      value = Unescaped(value);
    }
    joined.bytes += value;
  }
  return joined;
}

QByteArray HeaderParameters::Bytes(QByteArrayView name) const {
  return Join(name, Form::Best).bytes;
}

namespace {

// "??" is what programs write for characters that they cannot.
bool IsReadable(const QString& text) {
  return !text.isEmpty() && !text.contains(QStringLiteral("??")) &&
         std::none_of(text.begin(), text.end(), [](QChar c) {
           return c == QChar::ReplacementCharacter || c.category() == QChar::Other_PrivateUse;
         });
}

}  // namespace

DecodedText HeaderParameters::ReadForm(QByteArrayView name, Form form) const {
  const auto [bytes, label, extended] = Join(name, form);
  const bool isWord = !extended || bytes.contains("=?");
  const Charset declared = Charset::FromLabel(label);
  const QString text = isWord ? DecodeHeader(bytes, 0) : DecodeAutomatically(bytes, declared);
  const bool fits =
      isWord || declared.family == Charset::Family::Unknown || Decode(declared, bytes).clean;
  return {text, fits && IsReadable(text)};
}

DecodedText HeaderParameters::Reading(QByteArrayView name) const {
  return MoreReadable(ReadForm(name, Form::Best), [&] { return ReadForm(name, Form::Plain); });
}

QString HeaderParameters::Text(QByteArrayView name) const {
  return Reading(name).text;
}

DecodedText MoreReadable(const DecodedText& preferred, const std::function<DecodedText()>& other) {
  if (preferred.clean) return preferred;
  DecodedText reading = other();
  return preferred.text.isEmpty() || reading.clean ? reading : preferred;
}

}  // namespace vorn::MimeCodec
