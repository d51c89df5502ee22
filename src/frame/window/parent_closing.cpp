// The end of the main window, and with it of the program.

#include <QApplication>
#include <QCloseEvent>
#include <QMessageBox>
#include <QPointer>
#include <tuple>

#include "frame/window/parent_window.h"
#include "kit/window/plain_text.h"
#include "mail/window/message_window.h"
#include "objects/save_object.h"
#include "storage/ui.h"
#include "transfer/window/task_tray.h"

namespace vorn {

// What was sent a moment ago may only be planned yet; and cutting off a message that is being
// handed over would leave it in doubt whether it arrived.
bool ParentWindow::MayEndSending() {
  if (!traffic_.Plan().IsSending()) return true;
  const auto answer = ShowBox(
      this, QMessageBox::Question,
      Ui::tr(
          "送信し終えていないメッセージがあります。送信してから終了しますか？\n\n"
          "「いいえ」を選ぶと、送信を中止して終了します。送信中のものは、届いたかどうか分からなく"
          "なることがあります。残りは送信待ちのままになります。"),
      QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::Yes);
  endsAfterSending_ = answer == QMessageBox::Yes;
  if (endsAfterSending_) sbStatus_->showMessage(Ui::tr("送信が済むと終了します。"));
  return answer == QMessageBox::No;
}

void ParentWindow::EndAfterSending() {
  if (!endsAfterSending_ || traffic_.Plan().IsSending() || !IsEnabled()) return;
  endsAfterSending_ = false;
  close();
}

void ParentWindow::KeepEverything() {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (auto* message = qobject_cast<MessageWindow*>(window)) message->KeepDraftNow();
  }
  traffic_.Plan().Cancel();
  KeepPlacement();
  std::ignore = SaveMarkedObjects(context_);  // nobody could be asked any more
}

void ParentWindow::closeEvent(QCloseEvent* event) {
  if (!qApp->isSavingSession() && !MayEndSending()) {
    event->ignore();
    return;
  }
  // What is being written is stored first; a window that cannot store it keeps the program open.
  closing_ = true;
  // A question of one of them runs the event loop, in which others may end.
  QList<QPointer<QWidget>> windows;
  for (QWidget* window : QApplication::topLevelWidgets()) windows.append(window);
  for (const QPointer<QWidget>& window : windows) {
    if (window == nullptr || window == this || !window->isVisible() || window->close()) continue;
    closing_ = false;
    event->ignore();
    return;
  }
  tmDialog_.stop();
  tmPlan_.stop();
  unread_.Stop();
  // It may be its own menu that closes the program.
  if (TaskTray* tray = tasktray_.release()) {
    tray->Hide();
    tray->deleteLater();
  }
  KeepPlacement();
  std::ignore = SaveMarkedObjects(context_);  // nobody could be asked any more
  queue_.Clear();
  traffic_.Plan().Cancel();
  traffic_.Plan().Clear();
  QMainWindow::closeEvent(event);
}

}  // namespace vorn
