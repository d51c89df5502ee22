#pragma once

#include <QByteArray>
#include <QChar>
#include <QString>
#include <QStringView>
#include <vector>

namespace vorn {

/// Windows code page 932: Shift_JIS with the NEC and IBM extensions, in both directions.
class CodePage932 {
 public:
  static const CodePage932& Instance();

  /// The character of a double-byte code, 0 when there is none.
  char16_t FromPair(unsigned lead, unsigned trail) const;
  /// The plane that JIS and EUC share: 94 rows of 94 cells, 0 where there is no character.
  const char16_t* Plane() const { return byRowCell_.data(); }
  /// The code of a character, one or two bytes as a number; 0 when the page lacks it. The wave
  /// dash and its kin, which differ between Unicode tables, are taken in either form.
  unsigned ToCode(char16_t character) const { return codes_[character]; }

 private:
  CodePage932();

  std::vector<char16_t> characters_;  // by lead and trail byte
  std::vector<char16_t> byRowCell_;
  std::vector<quint16> codes_;  // by character
};

/// `text` as bytes of code page 932; a character it lacks becomes a numeric character reference
/// ("&#128512;").
QByteArray ToCodePage932(QStringView text);

/// The number of bytes that `ToCodePage932` gives.
qsizetype CodePage932Length(QStringView text);

}  // namespace vorn
