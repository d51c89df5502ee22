#pragma once

#include <QByteArrayView>
#include <QString>

namespace vorn {

/// Decodes bytes by the system's `iconv`, for the codes that ICU has no table of. What has no
/// meaning becomes U+FFFD, a byte at a time; all of it where the system lacks the code.
QString DecodeByIconv(const char* code, QByteArrayView bytes);

/// The characters that JIS X 0213:2004 has at a row and a cell, 1 to 94 each, of its plane 1 or 2:
/// one or two UTF-16 units, the second 0 when there is none; both 0 when there is no character.
struct JisX0213Character {
  char16_t first = 0;
  char16_t second = 0;
};
JisX0213Character FromJisX0213(int plane, unsigned row, unsigned cell);

/// The characters that eucJP-ms adds to the three-byte codes of EUC-JP (IBM's and the user's own);
/// 0 when there is none.
char16_t FromEucJpMs(unsigned row, unsigned cell);

}  // namespace vorn
