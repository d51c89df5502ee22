#include "mail/refusal_notice.h"

#include <QStringList>

#include "mail/store/outbox.h"
#include "mail/store/send_refusals.h"
#include "storage/base/time_text.h"
#include "storage/databases.h"
#include "storage/ui.h"

namespace vorn {

QString RefusalNotice(Context& context, const QString& file, const SerialId& serialId) {
  const auto refusals = SendRefusals(context, file).All();
  if (!refusals) return {};  // what is not known is not claimed
  const auto refusal = refusals->constFind(serialId);
  if (refusal == refusals->cend()) return {};
  QStringList lines{
      Ui::tr("サーバーに断られたので、送信していません。編集して、もう一度送信してください。")};
  const QString tried = GeneralTimeText(refusal->tried);
  if (!tried.isEmpty()) lines.append(Ui::tr("いつ送信を試みたか: %1").arg(tried));
  if (!refusal->reply.isEmpty()) lines.append(Ui::tr("サーバーの応答: %1").arg(refusal->reply));
  return lines.join(u'\n');
}

Result<qsizetype> CountUnsent(Context& context) {
  const QString file = MailDatabasePath(context);
  const auto refusals = SendRefusals(context, file).All();
  if (!refusals) return refusals.Error();
  const auto doubtful = Outbox(context, file).Doubtful();
  if (!doubtful) return doubtful.Error();
  return refusals->size() + doubtful->size();
}

}  // namespace vorn
