#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <optional>

namespace vorn {

/// The character sets a user can choose for a message, by the numbers that are stored. UTF-8 is
/// chosen for writing; a received message in it is stored as automatic.
enum class CharsetChoice { Automatic = -1, Jis = 0, Euc = 1, ShiftJis = 2, Utf8 = 3 };

/// The choice for the character at position 1 of a flag string; "*" and anything unknown mean
/// automatic.
CharsetChoice CharsetChoiceOf(const QString& flagCharacter);

/// A character set as text is decoded with: the Japanese codes have decoders of their own, which
/// share the table of Windows code page 932, so that machine-dependent characters (①, ㈱, ～)
/// survive in each; everything else is ICU's.
struct Charset {
  enum class Family { Unknown, Ascii, Jis, Euc, ShiftJis, Utf8, Other };

  Family family = Family::Unknown;
  QByteArray icuName;  ///< for `Other`; three names are of `iconv`

  /// The character set that a message declares, its common misspellings included.
  static Charset FromLabel(QByteArrayView label);
  static Charset FromChoice(CharsetChoice choice);
};

/// The code in which a message is to be read.
struct ReadingCode {
  ReadingCode(CharsetChoice code = CharsetChoice::Automatic, bool picked = false)
      : choice(code), isPicked(picked) {}

  CharsetChoice choice;
  bool isPicked;  ///< by the user just now, who wants to see what it gives, errors included, but
                  ///< not where it has errors and what the text declares has none
  Charset body;   ///< what the message's text declares, a hint for raw header fields
  /// What the user reads everything in for once, whatever is declared.
  std::optional<Charset> forced;
};

struct DecodedText {
  QString text;
  bool clean = true;  ///< false when some byte had no meaning and became U+FFFD
};

/// Decodes bytes with one character set; never fails. `Unknown` and `Ascii` read bytes over 0x7F as
/// undecodable. With `atCut`, a character that is cut off by the end is dropped without a mark.
/// The Japanese decoders follow the WHATWG Encoding Standard.
DecodedText Decode(const Charset& charset, QByteArrayView bytes, bool atCut = false);

/// Decodes with the declared character set when it is known and fits, else with the recognised one.
/// Bytes that are damaged in either are read in the code that gives the most usual text, the
/// declared one before others.
QString DecodeAutomatically(QByteArrayView bytes, const Charset& declared, bool atCut = false);

/// Decodes with a code that was chosen for the message or recognised when it was stored. A declared
/// character set that the bytes prove by fitting it goes before; where the chosen code does not
/// fit, it is as if none had been chosen.
QString DecodeWithChoice(QByteArrayView bytes, const Charset& declared, const ReadingCode& code,
                         bool atCut = false);

/// The Japanese code of bytes under a Western label, or none: programs that know of no other code
/// declare a Western one for whatever they are given.
Charset JapaneseUnderWesternLabel(const Charset& declared, QByteArrayView bytes);

/// Decodes what an encoded word in the header holds, for which the message's text is a hint where
/// the word is not what it declares. One that declares what the text does, or the only one that
/// declares anything, is read with the text in a code that is forced.
QString DecodeWord(QByteArrayView bytes, const Charset& declared, const ReadingCode& code);

/// Decodes the raw bytes of a header field. They are in the code of the message's text as a rule,
/// which counts where they do not read as Japanese: a code is often declared by habit.
QString DecodeRawHeader(QByteArrayView bytes, const ReadingCode& code);

}  // namespace vorn
