#include "mail/codec/inline_images.h"

#include <QHash>
#include <QRegularExpression>
#include <QUrl>

#include "mail/codec/mime_codec.h"

namespace vorn {
namespace {

constexpr qsizetype kMostCharacters = 48 << 20;

// The image parts by their Content-ID, without its brackets.
QHash<QString, MimeCodec::ContentRecord> ImagesById(const QByteArray& source,
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

}  // namespace

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
    const auto image = images.find(QUrl::fromPercentEncoding(found.captured(1).toUtf8()));
    if (image == images.end()) continue;
    // One image may be named in thousands of places.
    if (result.size() + image->Size() > kMostCharacters) continue;
    result += QStringView(html).mid(copied, found.capturedStart() - copied);
    const QByteArray data =
        MimeCodec::DecodePart(source, MimeCodec::TransferEncodingOf(image->encoding.toLatin1()),
                              image->first, image->last);
    result += QStringLiteral("data:") + image->type + QStringLiteral(";base64,") +
              QString::fromLatin1(data.toBase64());
    copied = found.capturedEnd();
  }
  result += QStringView(html).mid(copied);
  return result;
}

}  // namespace vorn
