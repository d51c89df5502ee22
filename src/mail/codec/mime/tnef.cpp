#include "mail/codec/mime/tnef.h"

#include <QtEndian>
#include <array>
#include <optional>

#include "mail/codec/charset/charset.h"
#include "mail/codec/html/html_text.h"
#include "mail/codec/text/rtf_text.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr quint32 kSignature = 0x223E9F78;
constexpr size_t kMostFiles = 1000;
constexpr quint32 kMostValues = 4096;  // of one property

// Attributes of the outer layer: the kind of value in the upper half, the number in the lower one.
constexpr quint32 kCodePage = 0x00069007;
constexpr quint32 kBody = 0x0002800C;
constexpr quint32 kProperties = 0x00069003;
constexpr quint32 kFileBegins = 0x00069002;
constexpr quint32 kFileName = 0x00018010;
constexpr quint32 kFileBytes = 0x0006800F;
constexpr quint32 kFileProperties = 0x00069005;

// Properties of the inner layer.
constexpr quint16 kBodyText = 0x1000;
constexpr quint16 kRichText = 0x1009;
constexpr quint16 kBodyHtml = 0x1013;
constexpr quint16 kShortName = 0x3704;
constexpr quint16 kLongName = 0x3707;
constexpr quint16 kContents = 0x3701;
constexpr quint16 kInternetCodePage = 0x3FDE;
constexpr quint16 kMessageCodePage = 0x3FFD;

// Kinds of values; other texts are bytes in a code page.
constexpr quint16 kObject = 0x000D;
constexpr quint16 kWideText = 0x001F;
constexpr quint16 kSeveral = 0x1000;  // set in the kind of a property with several values

// Reads little-endian numbers and runs of bytes; past the end it is used up and gives nothing.
class Reader {
 public:
  explicit Reader(QByteArrayView bytes) : rest_(bytes) {}

  bool AtEnd() const { return rest_.isEmpty(); }

  template <typename Number>
  Number Take() {
    const QByteArrayView bytes = Bytes(sizeof(Number));
    return bytes.size() < qsizetype(sizeof(Number)) ? Number(0)
                                                    : qFromLittleEndian<Number>(bytes.data());
  }

  /// As many as there are, when there are fewer.
  QByteArrayView Bytes(quint64 count) {
    const auto length = static_cast<qsizetype>(qMin(count, quint64(rest_.size())));
    const QByteArrayView taken = rest_.first(length);
    rest_ = rest_.sliced(length);
    return taken;
  }

 private:
  QByteArrayView rest_;
};

struct Property {
  quint16 number = 0;
  quint16 kind = 0;
  QByteArrayView value;  // the first one
};

// The size of a value whose kind gives it.
std::optional<quint32> FixedSize(quint16 kind) {
  switch (kind) {
    case 0x0002:  // a number of two bytes, which are followed by two more
    case 0x000B:
    case 0x0003:
    case 0x0004:
    case 0x000A:
      return 4;
    case 0x0005:
    case 0x0006:
    case 0x0007:
    case 0x0014:
    case 0x0040:
      return 8;
    case 0x0048:
      return 16;
    default:
      return std::nullopt;
  }
}

// What a named property has between its number and its values.
void SkipName(Reader& reader) {
  reader.Bytes(16);
  const auto isText = reader.Take<quint32>() != 0;
  const auto length = reader.Take<quint32>();
  if (isText) reader.Bytes((quint64(length) + 3) / 4 * 4);
}

std::vector<Property> ReadProperties(QByteArrayView bytes) {
  Reader reader(bytes);
  std::vector<Property> properties;
  for (auto left = reader.Take<quint32>(); left > 0 && !reader.AtEnd(); --left) {
    Property property;
    property.kind = reader.Take<quint16>();
    property.number = reader.Take<quint16>();
    if (property.number >= 0x8000) SkipName(reader);
    const quint16 kind = property.kind & ~kSeveral;
    const bool isCounted = (property.kind & kSeveral) != 0 || !FixedSize(kind);
    const quint32 values = isCounted ? qMin(reader.Take<quint32>(), kMostValues) : 1;
    for (quint32 i = 0; i < values && !reader.AtEnd(); ++i) {
      const quint32 size = FixedSize(kind) ? *FixedSize(kind) : reader.Take<quint32>();
      const QByteArrayView value = reader.Bytes(size);
      reader.Bytes((4 - size % 4) % 4);
      if (i == 0) property.value = value;
    }
    property.kind = kind;
    properties.push_back(property);
  }
  return properties;
}

QString WithoutEnd(QString text) {
  const qsizetype end = text.indexOf(QChar(u'\0'));
  if (end >= 0) text.truncate(end);
  return text;
}

QString WideText(QByteArrayView bytes) {
  QString text;
  for (Reader reader(bytes); !reader.AtEnd();) text += QChar(reader.Take<quint16>());
  return WithoutEnd(text);
}

// Rich text as it is packed: runs of 8 items, each a byte or a place in the last 4,096 bytes and a
// length, before which a dictionary of usual words stands. Empty when it is none.
QByteArray UnpackRichText(QByteArrayView packed) {
  constexpr quint32 kPacked = 0x75465A4C;
  constexpr quint32 kPlain = 0x414C454D;
  constexpr qsizetype kMost = 64 * 1024 * 1024;
  constexpr unsigned kWindow = 4096;
  static const QByteArray usual =
      "{\\rtf1\\ansi\\mac\\deff0\\deftab720{\\fonttbl;}{\\f0\\fnil \\froman \\fswiss \\fmodern "
      "\\fscript \\fdecor MS Sans SerifSymbolArialTimes New RomanCourier{\\colortbl\\red0\\green0"
      "\\blue0\r\n\\par \\pard\\plain\\f0\\fs20\\b\\i\\u\\tab\\tx";
  Reader reader(packed);
  reader.Take<quint32>();  // the size of what follows
  const auto size = reader.Take<quint32>();
  const auto form = reader.Take<quint32>();
  reader.Take<quint32>();  // a check sum
  if (form == kPlain) return reader.Bytes(size).toByteArray();
  if (form != kPacked) return {};
  std::array<char, kWindow> window{};
  std::copy(usual.begin(), usual.end(), window.begin());
  auto at = static_cast<unsigned>(usual.size());
  QByteArray text;
  const auto put = [&](char c) {
    text += c;
    window[at] = c;
    at = (at + 1) % kWindow;
  };
  while (!reader.AtEnd() && text.size() < qMin(qsizetype(size), kMost)) {
    const auto items = reader.Take<quint8>();
    for (int item = 0; item < 8 && !reader.AtEnd(); ++item) {
      if ((items & (1 << item)) == 0) {
        put(static_cast<char>(reader.Take<quint8>()));
        continue;
      }
      const quint16 place = qbswap(reader.Take<quint16>());
      unsigned from = place >> 4U;
      if (from == at) return text;
      for (int left = (place & 0xF) + 2; left > 0; --left, from = (from + 1) % kWindow) {
        put(window[from]);
      }
    }
  }
  return text;
}

class Package {
 public:
  TnefContents Read(Reader reader) {
    while (!reader.AtEnd()) {
      const auto level = reader.Take<quint8>();
      const auto attribute = reader.Take<quint32>();
      const auto size = reader.Take<quint32>();
      const QByteArrayView bytes = reader.Bytes(size);
      reader.Take<quint16>();  // a check sum; what is damaged is shown as far as it goes
      if (level == 1) OfMessage(attribute, bytes);
      if (level == 2) OfFile(attribute, bytes);
    }
    if (contents_.text.isEmpty()) contents_.text = HtmlToText(html_);
    if (contents_.text.trimmed().isEmpty() && !richText_.isEmpty()) {
      contents_.text = RtfToText(richText_, codePage_);
      contents_.files.push_back({Ui::tr("本文.rtf"), richText_});
    }
    NameFiles();
    return std::move(contents_);
  }

 private:
  QString Text(QByteArrayView bytes, quint32 codePage) const {
    return WithoutEnd(DecodeAutomatically(bytes, Charset::FromLabel(CodePageLabel(codePage))));
  }

  QString Text(const Property& property, quint32 codePage) const {
    return property.kind == kWideText ? WideText(property.value) : Text(property.value, codePage);
  }

  // A name is too short to tell by itself.
  quint32 NamePage() const { return codePage_ != 0 ? codePage_ : 932; }

  void OfMessage(quint32 attribute, QByteArrayView bytes) {
    if (attribute == kCodePage) codePage_ = Reader(bytes).Take<quint32>();
    if (attribute == kBody) contents_.text = Text(bytes, codePage_);
    if (attribute != kProperties) return;
    const std::vector<Property> properties = ReadProperties(bytes);
    quint32 htmlPage = 0;  // without one the text is recognised
    for (const Property& property : properties) {
      if (property.number == kInternetCodePage) htmlPage = Reader(property.value).Take<quint32>();
      if (property.number == kMessageCodePage && codePage_ == 0) {
        codePage_ = Reader(property.value).Take<quint32>();
      }
    }
    for (const Property& property : properties) {
      if (property.number == kBodyText) contents_.text = Text(property, codePage_);
      if (property.number == kRichText) richText_ = UnpackRichText(property.value);
      if (property.number != kBodyHtml) continue;
      html_ = Text(property, htmlPage);
    }
  }

  void OfFile(quint32 attribute, QByteArrayView bytes) {
    if (attribute == kFileBegins && contents_.files.size() < kMostFiles) {
      contents_.files.emplace_back();
    }
    if (contents_.files.empty()) return;
    InnerFile& file = contents_.files.back();
    if (attribute == kFileName && file.name.isEmpty()) file.name = Text(bytes, NamePage());
    if (attribute == kFileBytes) file.bytes = bytes.toByteArray();
    if (attribute != kFileProperties) return;
    QString name;
    for (const Property& property : ReadProperties(bytes)) {
      if (property.number == kLongName) name = Text(property, NamePage());
      if (property.number == kShortName && name.isEmpty()) name = Text(property, NamePage());
      if (property.number == kContents && file.bytes.isEmpty()) Embedded(property, file);
    }
    if (!name.isEmpty()) file.name = name;
  }

  // A file that is an object begins with an identifier of 16 bytes.
  static void Embedded(const Property& property, InnerFile& file) {
    const bool isObject = property.kind == kObject && property.value.size() >= 16;
    file.bytes = property.value.sliced(isObject ? 16 : 0).toByteArray();
  }

  void NameFiles() {
    int unnamed = 0;
    for (InnerFile& file : contents_.files) {
      if (file.name.trimmed().isEmpty()) file.name = Ui::tr("添付ファイル[%1].dat").arg(++unnamed);
    }
  }

  TnefContents contents_;
  quint32 codePage_ = 0;  // of a package that names none: its texts are recognised
  QString html_;
  QByteArray richText_;
};

}  // namespace

bool IsTnef(const QString& type, const QString& name) {
  return type == u"application/ms-tnef" || type == u"application/vnd.ms-tnef" ||
         name.compare(u"winmail.dat", Qt::CaseInsensitive) == 0;
}

TnefContents ReadTnef(QByteArrayView package) {
  Reader reader(package);
  if (reader.Take<quint32>() != kSignature) return {};
  reader.Take<quint16>();  // a key that nothing needs
  return Package().Read(reader);
}

}  // namespace vorn
