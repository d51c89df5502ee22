#include "mail/attached_pictures.h"

#include <QRegularExpression>

#include "mail/attachment_files.h"
#include "mail/codec/html/picture_head.h"
#include "storage/base/shown_text.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr qint64 kMostBytes = 16 << 20;  // of a page's pictures

// By type or, where that says nothing, by name; what it is in truth shows when it is read. A
// drawing in SVG is a document with links of its own.
bool IsCalledPicture(const ModelAttachment& attachment) {
  static const QRegularExpression kind(
      QStringLiteral("^image/(png|p?jpe?g|gif|webp|bmp|x-ms-bmp)$"));
  static const QRegularExpression ending(QStringLiteral("\\.(png|jpe?g|gif|webp|bmp)$"),
                                         QRegularExpression::CaseInsensitiveOption);
  if (kind.match(attachment.type.toLower()).hasMatch()) return true;
  return attachment.type == u"application/octet-stream" && ending.match(attachment.name).hasMatch();
}

}  // namespace

AttachedPictures::AttachedPictures(const OpenedMessage& opened) : source_(opened.source) {
  for (const ModelAttachment& attachment : opened.model.attachments) {
    if (attachment.isNew || attachment.inner || !IsCalledPicture(attachment)) continue;
    if (!opened.shownImages.contains(attachment.record.first)) pictures_.push_back(attachment);
  }
}

QString AttachedPictures::Below(const QString& html) const {
  QString page = html;
  qint64 room = kMostBytes;
  for (const ModelAttachment& picture : pictures_) {
    page += (page.isEmpty() ? QStringLiteral("<p>") : QStringLiteral("<hr><p>")) +
            ShownInLine(picture.name).toHtmlEscaped() + QStringLiteral("<br>");
    room -= AttachmentSize(picture, source_);
    const QByteArray bytes = room < 0 ? QByteArray() : ReadAttachment(picture, source_).ValueOr({});
    if (room < 0) {
      page += Ui::tr("大きいのでここには表示しません。添付ファイルを開いてください。");
    } else if (const auto head = ReadPictureHead(bytes)) {
      page += QStringLiteral("<img style=\"max-width:100%\" src=\"data:") +
              QLatin1String(head->type) + QStringLiteral(";base64,") +
              QString::fromLatin1(bytes.toBase64()) + QStringLiteral("\">");
    } else {
      page += Ui::tr("画像として読めません。");
    }
    page += QStringLiteral("</p>");
  }
  return page;
}

std::vector<ModelAttachment> WithoutHtmlPart(const OpenedMessage& opened) {
  std::vector<ModelAttachment> rest = opened.model.attachments;
  std::erase_if(rest, [&opened](const ModelAttachment& file) {
    return !opened.html.isEmpty() && !file.isNew && !file.inner &&
           opened.htmlParts.contains(file.record.first);
  });
  return rest;
}

}  // namespace vorn
