#include "frame/other_programs.h"

#include <utility>

#include "mail/store/message_rows.h"
#include "storage/databases.h"
#include "storage/session/change_mark.h"

namespace vorn {

// Works of this program on connections of their own write as well, digests for instance, but bring
// no messages.
bool OtherPrograms::HaveStored() {
  if (!rest_.hasExpired()) return false;
  rest_.setRemainingTime(restMs_);
  const OpenedDatabase mail(context_, DatabaseKind::Mail);
  if (!mail) return false;
  const QString mark = OthersMark(context_.Data);
  const QString markBefore = std::exchange(mark_, mark);
  if (mark == markBefore) return false;
  const qint64 last = MessageRows(context_.Data).LastNumber();
  const qint64 lastBefore = std::exchange(last_, last);
  return !markBefore.isEmpty() && last != lastBefore;
}

}  // namespace vorn
