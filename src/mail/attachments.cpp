#include "mail/attachments.h"
#include "storage/ui.h"

namespace vorn {

std::vector<Attachment> ListAttachments(const std::vector<MimeCodec::ContentRecord>& records,
                                        const QStringList& textTypes) {
  std::vector<Attachment> attachments;
  int unnamed = 0;
  bool hasText = false;
  bool hasHtml = false;
  for (const MimeCodec::ContentRecord& record : records) {
    const bool isText = !record.hasName && textTypes.contains(record.type);
    hasText = hasText || isText;
    // The message's text once more, which is shown beside it.
    const bool isHalf = hasText && !hasHtml && !record.hasName && record.type == u"text/html";
    hasHtml = hasHtml || record.type == u"text/html";
    if (isText || isHalf) continue;
    const QString name =
        record.hasName ? record.name : Ui::tr("添付ファイル[%1].dat").arg(++unnamed);
    attachments.push_back({name, record});
  }
  return attachments;
}

}  // namespace vorn
