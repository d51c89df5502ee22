#include "mail/window/host/cancelled_sending.h"

#include <QMessageBox>

#include "kit/window/plain_text.h"
#include "mail/store/mail_store.h"
#include "storage/ui.h"

namespace vorn {

bool CancelSending(Context& context, QWidget& window, const Disk& message) {
  const Result<> cancelled = MailStore(context).CancelWaiting(message);
  if (cancelled.Error().kind == StorageError::Kind::NotFound) {
    ShowBox(&window, QMessageBox::Information,
            Ui::tr("このメッセージは、もう送信待ちではありません（送信中か、送信済みか、削除されて"
                   "います）。"));
  } else if (!cancelled) {
    ShowBox(&window, QMessageBox::Critical,
            Ui::tr("送信をキャンセルできませんでした。") + cancelled.Error().text);
  }
  return static_cast<bool>(cancelled);
}

}  // namespace vorn
