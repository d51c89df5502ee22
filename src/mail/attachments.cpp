#include "mail/attachments.h"
#include "storage/ui.h"

namespace vorn {

std::vector<Attachment> ListAttachments(const std::vector<MimeCodec::ContentRecord>& records,
                                        const QStringList& textTypes) {
  std::vector<Attachment> attachments;
  int unnamed = 0;
  for (const MimeCodec::ContentRecord& record : records) {
    if (!record.hasName && textTypes.contains(record.type)) continue;
    const QString name =
        record.hasName ? record.name : Ui::tr("添付ファイル[%1].dat").arg(++unnamed);
    attachments.push_back({name, record});
  }
  return attachments;
}

}  // namespace vorn
