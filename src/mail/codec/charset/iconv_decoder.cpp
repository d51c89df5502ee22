#include "mail/codec/charset/iconv_decoder.h"

#include <iconv.h>

#include <QStringDecoder>
#include <array>
#include <cerrno>
#include <vector>

namespace vorn {
namespace {

constexpr unsigned kCells = 94;
constexpr char kThreeBytes = '\x8F';

class Iconv {
 public:
  explicit Iconv(const char* code) : handle_(iconv_open("UTF-8", code)) {}
  ~Iconv() {
    if (IsValid()) iconv_close(handle_);
  }
  Iconv(const Iconv&) = delete;
  Iconv& operator=(const Iconv&) = delete;

  bool IsValid() const { return handle_ != reinterpret_cast<iconv_t>(-1); }

  // Converts what it can from the begin of `bytes`, of which it takes that off.
  QByteArray Convert(QByteArrayView& bytes) {
    iconv(handle_, nullptr, nullptr, nullptr, nullptr);
    QByteArray text(bytes.size() * 4 + 16, Qt::Uninitialized);
    auto* in = const_cast<char*>(bytes.data());  // which is not written to
    auto inLeft = static_cast<size_t>(bytes.size());
    char* out = text.data();
    auto outLeft = static_cast<size_t>(text.size());
    iconv(handle_, &in, &inLeft, &out, &outLeft);
    iconv(handle_, nullptr, nullptr, &out, &outLeft);  // a character that waits for a mark
    bytes = bytes.last(static_cast<qsizetype>(inLeft));
    text.truncate(out - text.constData());
    return text;
  }

 private:
  iconv_t handle_;
};

// One character of a code with two or three bytes.
QString DecodeOne(Iconv& table, bool threeBytes, unsigned row, unsigned cell) {
  const std::array<char, 3> bytes{kThreeBytes, static_cast<char>(row + 0xA0),
                                  static_cast<char>(cell + 0xA0)};
  QByteArrayView rest(bytes.data() + (threeBytes ? 0 : 1), threeBytes ? 3 : 2);
  const QByteArray text = table.Convert(rest);
  return rest.isEmpty() ? QString::fromUtf8(text) : QString();
}

size_t CellIndex(unsigned row, unsigned cell) {
  return (row - 1) * kCells + cell - 1;
}

// The dash of row 1, for which tables disagree, as the Japanese codes' own table has it.
QString WithUsualDash(QString text) {
  constexpr char16_t kEmDash = 0x2014;
  constexpr char16_t kBar = 0x2015;
  return text.replace(kEmDash, kBar);
}

std::vector<QString> ReadPlane(const char* code, bool threeBytes) {
  std::vector<QString> plane(size_t{kCells} * kCells);
  Iconv table(code);
  for (unsigned row = 1; table.IsValid() && row <= kCells; ++row) {
    for (unsigned cell = 1; cell <= kCells; ++cell) {
      plane[CellIndex(row, cell)] = WithUsualDash(DecodeOne(table, threeBytes, row, cell));
    }
  }
  return plane;
}

bool IsInPlane(unsigned row, unsigned cell) {
  return row - 1 < kCells && cell - 1 < kCells;
}

}  // namespace

QString DecodeByIconv(const char* code, QByteArrayView bytes) {
  Iconv converter(code);
  QString text;
  while (!bytes.isEmpty()) {
    if (converter.IsValid()) text += QString::fromUtf8(converter.Convert(bytes));
    if (bytes.isEmpty()) break;
    text += QChar(QChar::ReplacementCharacter);
    bytes = bytes.sliced(1);
  }
  return WithUsualDash(text);
}

JisX0213Character FromJisX0213(int plane, unsigned row, unsigned cell) {
  static const std::array<std::vector<QString>, 2> planes{ReadPlane("EUC-JISX0213", false),
                                                          ReadPlane("EUC-JISX0213", true)};
  if (!IsInPlane(row, cell)) return {};
  const QString& text = planes[plane == 2 ? 1 : 0][CellIndex(row, cell)];
  return {text.isEmpty() ? char16_t(0) : text[0].unicode(),
          text.size() == 2 ? text[1].unicode() : char16_t(0)};
}

char16_t FromEucJpMs(unsigned row, unsigned cell) {
  static const std::vector<QString> plane = ReadPlane("EUC-JP-MS", true);
  if (!IsInPlane(row, cell)) return 0;
  const QString& text = plane[CellIndex(row, cell)];
  return text.size() == 1 ? text[0].unicode() : char16_t(0);
}

}  // namespace vorn
