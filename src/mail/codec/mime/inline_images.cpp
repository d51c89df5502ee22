#include "mail/codec/mime/inline_images.h"

#include <QHash>
#include <QRegularExpression>
#include <QUrl>
#include <cctype>
#include <vector>

#include "mail/codec/html/html_tree.h"
#include "mail/codec/html/picture_head.h"
#include "mail/codec/mime/mime_codec.h"
#include "mail/codec/mime/text_extraction.h"

namespace vorn {
namespace {

constexpr qsizetype kMostCharacters = 48 << 20;

// The image parts by their Content-ID, without its brackets.
QHash<QString, MimeCodec::ContentRecord> ImagesById(QByteArrayView source,
                                                    const QString& contentIndex) {
  const QByteArrayView name = "Content-ID:";
  QHash<QString, MimeCodec::ContentRecord> images;
  for (const MimeCodec::ContentRecord& record : MimeCodec::ParseContentIndex(contentIndex)) {
    // A drawing in SVG is a document with links of its own.
    const bool isImage = record.type.startsWith(u"image/") && !record.type.contains(u"svg");
    if (!isImage && record.type != u"application/octet-stream")
      continue;  // a label of those in doubt
    const QByteArray id = MimeCodec::HeaderValue(
        MimeCodec::HeaderField(source, name, record.headerFirst, record.headerLast), name.size());
    if (id.startsWith('<') && id.endsWith('>')) {
      images.insert(QString::fromUtf8(id.sliced(1, id.size() - 2)), record);
    }
  }
  return images;
}

QString IdIn(QStringView address) {
  return QUrl::fromPercentEncoding(address.toUtf8());
}

QByteArray ValueOf(const GumboElement& element, const char* name) {
  const GumboAttribute* attribute = gumbo_get_attribute(&element.attributes, name);
  return attribute == nullptr ? QByteArray() : QByteArray(attribute->value).trimmed().toLower();
}

// Less than two dots, or nothing of any other unit; what is calculated is in doubt.
bool IsNothing(const QByteArray& length) {
  if (length.contains('(')) return true;
  QByteArray number = length;
  while (!number.isEmpty() && (number.back() == '%' || std::isalpha(number.back()) != 0)) {
    number.chop(1);
  }
  bool isNumber = false;
  const double value = number.toDouble(&isNumber);
  const bool isDots = number == length || length.endsWith("px");
  return isNumber && value < (isDots ? 2 : 0.1);
}

// Whether that much space beside an element may move it away.
bool IsFar(const QByteArray& space) {
  static const QRegularExpression far(QStringLiteral("-\\.?[0-9]|[0-9]{4}|\\("));
  return far.match(QString::fromLatin1(space)).hasMatch();
}

// Whether the element's content is not what is shown of it.
bool IsInstead(const GumboElement& element) {
  switch (element.tag) {
    case GUMBO_TAG_TEMPLATE:
    case GUMBO_TAG_NOSCRIPT:
    case GUMBO_TAG_VIDEO:
    case GUMBO_TAG_AUDIO:
    case GUMBO_TAG_OBJECT:
    case GUMBO_TAG_CANVAS:
    case GUMBO_TAG_METER:
    case GUMBO_TAG_PROGRESS:
      return true;
    case GUMBO_TAG_DETAILS:
      return gumbo_get_attribute(&element.attributes, "open") == nullptr;
    default:
      return false;
  }
}

// Whether what is in the element may not be seen; a picture in doubt counts as a file.
bool IsOutOfSight(const GumboElement& element) {
  if (IsInstead(element)) return true;
  if (gumbo_get_attribute(&element.attributes, "hidden") != nullptr) return true;
  if (IsNothing(ValueOf(element, "width")) || IsNothing(ValueOf(element, "height"))) return true;
  for (const QByteArray& declaration : ValueOf(element, "style").split(';')) {
    const qsizetype colon = declaration.indexOf(':');
    const QByteArray name = declaration.left(colon).trimmed();
    const QByteArray value = declaration.mid(colon + 1).trimmed();
    const bool isSize = name.endsWith("width") || name.endsWith("height");
    if (isSize && !name.startsWith("border") && !name.startsWith("line") &&
        !name.startsWith("min") && IsNothing(value)) {
      return true;
    }
    if (name == "display" && value.startsWith("none")) return true;
    if (name == "position" && value != "relative" && value != "static") return true;
    for (const char* moving : {"margin", "padding", "text-indent"}) {
      if (name.startsWith(moving) && IsFar(value)) return true;
    }
    for (const char* hiding : {"visibility", "opacity", "clip", "transform", "filter", "object-",
                               "mask", "zoom", "scale", "translate", "offset", "content"}) {
      if (name.startsWith(hiding)) return true;
    }
  }
  return false;
}

// The Content-IDs by which elements in sight name pictures.
QSet<QString> NamedInSight(const GumboElement& root) {
  QSet<QString> names;
  std::vector<const GumboElement*> left = {&root};
  while (!left.empty()) {
    const GumboElement& element = *left.back();
    left.pop_back();
    if (IsOutOfSight(element)) continue;
    const GumboAttribute* address = gumbo_get_attribute(&element.attributes, "src");
    if (element.tag == GUMBO_TAG_IMG && address != nullptr) {
      const QString name = QString::fromUtf8(address->value).trimmed();
      if (name.startsWith(u"cid:", Qt::CaseInsensitive)) names.insert(IdIn(name.sliced(4)));
    }
    for (const GumboNode& child : ChildNodes(element)) {
      if (child.type == GUMBO_NODE_ELEMENT) left.push_back(&child.v.element);
    }
  }
  return names;
}

QByteArray PictureBytes(const MimeCodec::ContentRecord& image, QByteArrayView source) {
  return MimeCodec::DecodePart(source, MimeCodec::TransferEncodingOf(image.encoding.toLatin1()),
                               image.first, image.last);
}

}  // namespace

QSet<qsizetype> ShownImages(QByteArrayView source, const QString& contentIndex,
                            const ReadingCode& code) {
  const auto images = ImagesById(source, contentIndex);
  if (images.isEmpty()) return {};
  const QByteArray html = GetMessageHtml(source, contentIndex, code).toUtf8();
  const auto tree = HtmlTree::Parse(html);
  if (tree == nullptr) return {};
  QSet<qsizetype> shown;
  qsizetype room = kMostCharacters;
  for (const QString& name : NamedInSight(tree->Root())) {
    const auto image = images.find(name);
    if (image == images.end() || (room -= 2 * image->Size()) < 0) continue;
    const auto head = ReadPictureHead(PictureBytes(*image, source));
    if (head && head->pixels <= kMostPicturePixels) shown.insert(image->first);
  }
  return shown;
}

QString WithInlineImages(const QString& html, const QByteArray& source,
                         const QString& contentIndex) {
  static const QRegularExpression reference(QStringLiteral("cid:([^\"'\\s)>]+)"),
                                            QRegularExpression::CaseInsensitiveOption);
  const auto images = ImagesById(source, contentIndex);
  if (images.isEmpty()) return html;
  QString result;
  qsizetype copied = 0;
  for (auto match = reference.globalMatch(html); match.hasNext();) {
    const QRegularExpressionMatch found = match.next();
    const auto image = images.find(IdIn(found.captured(1)));
    if (image == images.end()) continue;
    // One image may be named in thousands of places.
    if (result.size() + image->Size() > kMostCharacters) continue;
    result += QStringView(html).mid(copied, found.capturedStart() - copied);
    result += QStringLiteral("data:") + image->type + QStringLiteral(";base64,") +
              QString::fromLatin1(PictureBytes(*image, source).toBase64());
    copied = found.capturedEnd();
  }
  result += QStringView(html).mid(copied);
  return result;
}

}  // namespace vorn
