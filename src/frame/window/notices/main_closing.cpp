#include "frame/window/notices/main_closing.h"

#include <QApplication>
#include <QMessageBox>
#include <QPointer>

#include "frame/window/notices/status_bar.h"
#include "kit/window/plain_text.h"
#include "mail/window/message_window.h"
#include "storage/ui.h"
#include "transfer/mail_traffic.h"

namespace vorn {

// What was sent a moment ago may only be planned yet; and cutting off a message that is being
// handed over would leave it in doubt whether it arrived.
bool MainClosing::MayEndSending() {
  if (!traffic_.Plan().IsSending()) return true;
  const auto answer = ShowBox(
      &window_, QMessageBox::Question,
      Ui::tr(
          "送信し終えていないメッセージがあります。送信してから終了しますか？\n\n"
          "「いいえ」を選ぶと、送信を中止して終了します。送信中のものは、届いたかどうか分からなく"
          "なることがあります。残りは送信待ちのままになります。"),
      QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::Yes);
  endsAfterSending_ = answer == QMessageBox::Yes;
  if (endsAfterSending_) status_.showMessage(Ui::tr("送信が済むと終了します。"));
  return answer == QMessageBox::No;
}

bool MainClosing::MayFollow() const {
  return endsAfterSending_ && !traffic_.Plan().IsSending();
}

void MainClosing::CancelTraffic() {
  Stay();
  traffic_.Plan().Cancel();
}

// A window that cannot store what is being written keeps the program open.
bool MainClosing::CloseOthers() {
  closing_ = true;
  // A question of one of them runs the event loop, in which others may end.
  QList<QPointer<QWidget>> windows;
  for (QWidget* window : QApplication::topLevelWidgets()) windows.append(window);
  for (const QPointer<QWidget>& window : windows) {
    if (window == nullptr || window == &window_ || !window->isVisible() || window->close()) {
      continue;
    }
    closing_ = false;
    return false;
  }
  return true;
}

void KeepOpenDrafts() {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (auto* message = qobject_cast<MessageWindow*>(window)) message->KeepDraftNow();
  }
}

}  // namespace vorn
