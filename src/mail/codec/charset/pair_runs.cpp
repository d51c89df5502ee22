#include "mail/codec/charset/pair_runs.h"

#include <vector>

#include "mail/codec/charset/iconv_decoder.h"
#include "mail/codec/charset/icu_converter.h"

namespace vorn {
namespace {

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
        const QString text = table.ToUnicode(QByteArrayView(bytes, 3));
        if (text.size() == 1 && text[0] != QChar::ReplacementCharacter) {
          characters_[(row - 1) * 94 + cell - 1] = text[0].unicode();
        }
      }
    }
  }

  std::vector<char16_t> characters_;
};

}  // namespace

char16_t FromThreeBytes(unsigned row, unsigned cell) {
  const char16_t character = JisX0212::Instance().At(row, cell);
  return character != 0 ? character : FromEucJpMs(row, cell);
}

}  // namespace vorn
