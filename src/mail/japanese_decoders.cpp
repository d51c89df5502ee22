#include "mail/japanese_decoders.h"

#include "mail/code_page_932.h"
#include "mail/icu_converter.h"

namespace vorn {
namespace {

constexpr char16_t kHalfKanaBase = 0xFF61 - 0xA1;  // by the eight-bit byte of the kana

// The characters of JIS X 0212 by row and cell.
class JisX0212 {
 public:
  static const JisX0212& Instance() {
    static const JisX0212 instance;
    return instance;
  }

  char16_t At(unsigned row, unsigned cell) const {
    if (row < 1 || row > 94 || cell < 1 || cell > 94) return 0;
    return characters_[(row - 1) * 94 + cell - 1];
  }

 private:
  JisX0212() : characters_(94 * 94, 0) {
    IcuConverter table("EUC-JP");
    for (unsigned row = 1; row <= 94; ++row) {
      for (unsigned cell = 1; cell <= 94; ++cell) {
        const char bytes[] = {'\x8F', static_cast<char>(row + 0xA0),
                              static_cast<char>(cell + 0xA0)};
        const QString text = table.Decode(QByteArrayView(bytes, 3));
        if (text.size() == 1 && text[0] != QChar::ReplacementCharacter) {
          characters_[(row - 1) * 94 + cell - 1] = text[0].unicode();
        }
      }
    }
  }

  std::vector<char16_t> characters_;
};

// Reads bytes one by one and collects the text.
class Reader {
 public:
  // No byte gives more than one character, so the text is written into room for all of them.
  Reader(QByteArrayView bytes, bool atCut)
      : bytes_(bytes), atCut_(atCut), text_(bytes.size(), Qt::Uninitialized), out_(text_.data()) {}

  bool AtEnd() const { return at_ >= bytes_.size(); }
  unsigned Take() { return static_cast<unsigned char>(bytes_[at_++]); }
  // The byte `ahead` of the next one, or -1 beyond the end.
  int Peek(qsizetype ahead = 0) const {
    return at_ + ahead < bytes_.size() ? static_cast<unsigned char>(bytes_[at_ + ahead]) : -1;
  }
  void Skip(qsizetype count) { at_ += count; }
  bool StartsWith(QByteArrayView text) const { return bytes_.sliced(at_).startsWith(text); }

  void Put(char16_t character) { *out_++ = QChar(character); }
  void PutError() {
    Put(QChar::ReplacementCharacter);
    clean_ = false;
  }
  // A character of which the end of the bytes cut something off.
  void PutCutOff() {
    if (!atCut_) PutError();
  }
  void PutOrError(char16_t character) { character == 0 ? PutError() : Put(character); }

  DecodedText Finish() {
    text_.truncate(out_ - text_.constData());
    return {std::move(text_), clean_};
  }

 private:
  QByteArrayView bytes_;
  bool atCut_;
  qsizetype at_ = 0;
  QString text_;
  QChar* out_;
  bool clean_ = true;
};

bool InRange(int byte, int first, int last) {
  return byte >= first && byte <= last;
}

}  // namespace

DecodedText DecodeShiftJis(QByteArrayView bytes, bool atCut) {
  const CodePage932& page = CodePage932::Instance();
  Reader reader(bytes, atCut);
  while (!reader.AtEnd()) {
    const unsigned lead = reader.Take();
    if (lead <= 0x80) {
      reader.Put(static_cast<char16_t>(lead));
    } else if (InRange(static_cast<int>(lead), 0xA1, 0xDF)) {
      reader.Put(static_cast<char16_t>(kHalfKanaBase + lead));
    } else if (lead == 0xA0 || lead > 0xFC) {
      reader.PutError();
    } else if (reader.AtEnd()) {
      reader.PutCutOff();
    } else {
      const auto trail = static_cast<unsigned>(reader.Peek());
      const char16_t character = page.FromPair(lead, trail);
      // An ASCII byte after a stray lead byte is itself again.
      if (character != 0 || trail >= 0x80) reader.Skip(1);
      reader.PutOrError(character);
    }
  }
  return reader.Finish();
}

DecodedText DecodeEucJp(QByteArrayView bytes, bool atCut) {
  const CodePage932& page = CodePage932::Instance();
  Reader reader(bytes, atCut);
  while (!reader.AtEnd()) {
    const unsigned lead = reader.Take();
    if (lead < 0x80) {
      reader.Put(static_cast<char16_t>(lead));
      continue;
    }
    const bool threeBytes = lead == 0x8F;
    if (lead != 0x8E && !threeBytes && !InRange(static_cast<int>(lead), 0xA1, 0xFE)) {
      reader.PutError();
      continue;
    }
    const int second = reader.Peek();
    const int third = threeBytes ? reader.Peek(1) : 0;
    if (second < 0 || (third < 0 && InRange(second, 0xA1, 0xFE))) {
      reader.Skip(second < 0 ? 0 : 1);
      reader.PutCutOff();
      continue;
    }
    char16_t character = 0;
    if (threeBytes) {
      character = JisX0212::Instance().At(static_cast<unsigned>(second - 0xA0),
                                          static_cast<unsigned>(third - 0xA0));
    } else if (lead == 0x8E) {
      if (InRange(second, 0xA1, 0xDF)) {
        character = static_cast<char16_t>(kHalfKanaBase + static_cast<unsigned>(second));
      }
    } else if (InRange(second, 0xA1, 0xFE)) {
      character = page.FromRowCell(lead - 0xA0, static_cast<unsigned>(second) - 0xA0);
    }
    if (second >= 0x80) reader.Skip(threeBytes && third >= 0x80 ? 2 : 1);
    reader.PutOrError(character);
  }
  return reader.Finish();
}

namespace {

enum class JisSet { Ascii, Roman, Kana, X0208, X0212 };

struct Escape {
  QByteArrayView sequence;
  JisSet set;
};

constexpr Escape kEscapes[] = {
    {"\x1B(B", JisSet::Ascii},  {"\x1B(J", JisSet::Roman},  {"\x1B(H", JisSet::Roman},
    {"\x1B(I", JisSet::Kana},   {"\x1B$@", JisSet::X0208},  {"\x1B$B", JisSet::X0208},
    {"\x1B$(@", JisSet::X0208}, {"\x1B$(B", JisSet::X0208}, {"\x1B$(D", JisSet::X0212},
    {"\x1B&@", JisSet::X0208},  // announces the 1990 revision, followed by ESC $ B
};

bool TakeEscape(Reader& reader, JisSet& set) {
  for (const Escape& escape : kEscapes) {
    if (!reader.StartsWith(escape.sequence)) continue;
    set = escape.set;
    reader.Skip(escape.sequence.size());
    return true;
  }
  return false;
}

void TakeDoubleByte(Reader& reader, unsigned lead, JisSet set);

// Runs of kanji and kana, which are most of such a text, without going back to the caller.
void TakeKanjiRun(Reader& reader, unsigned lead) {
  const CodePage932& page = CodePage932::Instance();
  for (;;) {
    const int trail = reader.Peek();
    const char16_t character =
        InRange(trail, 0x21, 0x7E)
            ? page.FromRowCell(lead - 0x20, static_cast<unsigned>(trail) - 0x20)
            : char16_t(0);
    if (character == 0) break;
    reader.Put(character);
    reader.Skip(1);
    const int next = reader.Peek();
    if (!InRange(next, 0x21, 0x7E)) return;
    lead = static_cast<unsigned>(next);
    reader.Skip(1);
  }
  TakeDoubleByte(reader, lead, JisSet::X0208);
}

void TakeDoubleByte(Reader& reader, unsigned lead, JisSet set) {
  const int trail = reader.Peek();
  if (trail < 0) {
    reader.PutCutOff();
    return;
  }
  if (!InRange(trail, 0x21, 0x7E)) {
    reader.PutError();  // and the odd byte is read for itself
    return;
  }
  reader.Skip(1);
  const unsigned row = lead - 0x20;
  const unsigned cell = static_cast<unsigned>(trail) - 0x20;
  reader.PutOrError(set == JisSet::X0212 ? JisX0212::Instance().At(row, cell)
                                         : CodePage932::Instance().FromRowCell(row, cell));
}

}  // namespace

DecodedText DecodeIso2022Jp(QByteArrayView bytes, bool atCut) {
  Reader reader(bytes, atCut);
  JisSet set = JisSet::Ascii;
  bool shiftedOut = false;
  while (!reader.AtEnd()) {
    if (reader.Peek() == 0x1B) {
      if (TakeEscape(reader, set)) {
        shiftedOut = false;
      } else {
        reader.Skip(1);
        if (!reader.AtEnd() || !atCut) reader.PutError();
      }
      continue;
    }
    const unsigned byte = reader.Take();
    if (byte == 0x0E || byte == 0x0F) {
      shiftedOut = byte == 0x0E;
    } else if (byte == '\n' || byte == '\r') {
      set = JisSet::Ascii;  // a line that forgot to return does not spoil the next
      shiftedOut = false;
      reader.Put(static_cast<char16_t>(byte));
    } else if (InRange(static_cast<int>(byte), 0xA1, 0xDF)) {
      reader.Put(static_cast<char16_t>(kHalfKanaBase + byte));
    } else if (byte >= 0x80) {
      reader.PutError();
    } else if (byte <= 0x20 || byte == 0x7F) {
      reader.Put(static_cast<char16_t>(byte));
    } else if (shiftedOut || set == JisSet::Kana) {
      byte <= 0x5F ? reader.Put(static_cast<char16_t>(kHalfKanaBase + byte + 0x80))
                   : reader.PutError();
    } else if (set == JisSet::X0208 || set == JisSet::X0212) {
      set == JisSet::X0208 ? TakeKanjiRun(reader, byte) : TakeDoubleByte(reader, byte, set);
    } else {
      reader.Put(static_cast<char16_t>(byte));
    }
  }
  return reader.Finish();
}

}  // namespace vorn
