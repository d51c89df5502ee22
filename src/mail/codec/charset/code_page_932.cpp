#include "mail/codec/charset/code_page_932.h"

#include "mail/codec/charset/icu_converter.h"

namespace vorn {
namespace {

constexpr unsigned kFirstLead = 0x81;
constexpr unsigned kLastLead = 0xFC;
constexpr unsigned kTrails = 256;
// ICU's name for the table of the Windows code page.
constexpr char kIcuTable[] = "ibm-943_P15A-2003";

bool IsLead(unsigned byte) {
  return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}
bool IsTrail(unsigned byte) {
  return byte >= 0x40 && byte <= 0xFC && byte != 0x7F;
}

size_t Index(unsigned lead, unsigned trail) {
  return (lead - kFirstLead) * kTrails + trail;
}

struct Pair {
  char16_t character;
  unsigned code;
};

// Where Unicode tables disagree, the code page's own reading and the other form that text uses.
constexpr Pair kReadings[] = {{0xFF5E, 0x8160}, {0x2225, 0x8161}, {0xFF0D, 0x817C},
                              {0xFFE0, 0x8191}, {0xFFE1, 0x8192}, {0xFFE2, 0x81CA},
                              {0x2015, 0x815C}};
constexpr Pair kOtherForms[] = {{0x301C, 0x8160}, {0x2016, 0x8161}, {0x2212, 0x817C},
                                {0x00A2, 0x8191}, {0x00A3, 0x8192}, {0x00AC, 0x81CA},
                                {0x2014, 0x815C}, {0x00A5, 0x5C},   {0x203E, 0x7E}};

bool IsNecDuplicate(unsigned lead) {
  return lead == 0xED || lead == 0xEE;
}

}  // namespace

const CodePage932& CodePage932::Instance() {
  static const CodePage932 instance;
  return instance;
}

CodePage932::CodePage932()
    : characters_((kLastLead - kFirstLead + 1) * kTrails, 0),
      byRowCell_(94UL * 94UL, 0),
      codes_(0x10000, 0) {
  IcuConverter table(kIcuTable);
  for (unsigned lead = kFirstLead; lead <= kLastLead; ++lead) {
    for (unsigned trail = 0x40; IsLead(lead) && trail <= 0xFC; ++trail) {
      if (!IsTrail(trail)) continue;
      const char bytes[] = {static_cast<char>(lead), static_cast<char>(trail)};
      const QString text = table.ToUnicode(QByteArrayView(bytes, 2));
      if (text.size() != 1 || text[0] == QChar::ReplacementCharacter) continue;
      characters_[Index(lead, trail)] = text[0].unicode();
    }
  }
  for (const Pair& reading : kReadings) {
    characters_[Index(reading.code >> 8, reading.code & 0xFF)] = reading.character;
  }
  for (unsigned row = 1; row <= 94; ++row) {
    for (unsigned cell = 1; cell <= 94; ++cell) {
      const unsigned lead = (row - 1) / 2 + (row <= 62 ? 0x81 : 0xC1);
      const unsigned trail = row % 2 == 1 ? cell + (cell <= 63 ? 0x3F : 0x40) : cell + 0x9E;
      byRowCell_[(row - 1) * 94UL + cell - 1] = FromPair(lead, trail);
    }
  }

  for (unsigned code = 1; code < 0x80; ++code) codes_[code] = static_cast<quint16>(code);
  for (unsigned code = 0xA1; code <= 0xDF; ++code) {
    codes_[0xFF61 + code - 0xA1] = static_cast<quint16>(code);
  }
  // Of several codes for one character the first in the page counts, but those selected from IBM's
  // set by NEC come last.
  for (const bool nec : {false, true}) {
    for (unsigned lead = kFirstLead; lead <= kLastLead; ++lead) {
      if (IsNecDuplicate(lead) != nec) continue;
      for (unsigned trail = 0x40; trail <= 0xFC; ++trail) {
        const char16_t character = characters_[Index(lead, trail)];
        if (character != 0 && codes_[character] == 0) {
          codes_[character] = static_cast<quint16>(lead << 8 | trail);
        }
      }
    }
  }
  for (const Pair& form : kOtherForms) {
    if (codes_[form.character] == 0) codes_[form.character] = static_cast<quint16>(form.code);
  }
}

char16_t CodePage932::FromPair(unsigned lead, unsigned trail) const {
  return IsLead(lead) && IsTrail(trail) ? characters_[Index(lead, trail)] : char16_t(0);
}

QByteArray ToCodePage932(QStringView text) {
  const CodePage932& page = CodePage932::Instance();
  QByteArray bytes;
  bytes.reserve(text.size() * 2);
  for (qsizetype i = 0; i < text.size(); ++i) {
    const unsigned code = page.ToCode(text[i].unicode());
    if (code == 0 && !text[i].isNull()) {
      char32_t character = text[i].unicode();
      if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
        character = QChar::surrogateToUcs4(text[i], text[i + 1]);
        ++i;
      }
      bytes += "&#" + QByteArray::number(static_cast<uint>(character)) + ';';
      continue;
    }
    if (code > 0xFF) bytes += static_cast<char>(code >> 8);
    bytes += static_cast<char>(code & 0xFF);
  }
  return bytes;
}

qsizetype CodePage932Length(QStringView text) {
  return ToCodePage932(text).size();
}

}  // namespace vorn
