#include "objects/reply_line.h"

#include "storage/ui.h"

namespace vorn {

QString UsualReplyLine() {
  return Ui::tr("%d、%n さんは書きました：");
}

QString ShownReplyLine(const QString& stored) {
  const bool isUsual = stored == u"%d、%n さんは書きました：" || stored == u"On %d, %n wrote:";
  return isUsual ? UsualReplyLine() : stored;
}

}  // namespace vorn
