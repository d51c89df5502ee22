// What the main window does with messages on the folders' pages.

#include <QElapsedTimer>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>

#include "auxiliary/window/console_window.h"
#include "frame/start_up.h"
#include "frame/window/parent_window.h"
#include "kit/window/plain_text.h"
#include "mail/message_filing.h"
#include "objects/object_types.h"
#include "objects/select_objects.h"
#include "present/neighbour_message.h"
#include "present/unread_count.h"
#include "present/window/browser_window.h"
#include "present/window/layout_window.h"
#include "storage/ui.h"

namespace vorn {
namespace {

// Between two folders' counts, so that clicks and keys come in between.
constexpr int kCountPauseMs = 30;
constexpr int kCountLaterMs = 1000;
// A folder whose counting is slow is left alone for so many times as long.
constexpr qint64 kCountShare = 50;

bool IsFilledByHand(const Context& context, const QString& folder) {
  const DiskPtr object = context.Objects.Find(folder);
  return object != nullptr && IsFilledByHand(*object);
}

}  // namespace

// The end of a change to messages, of which a failure is told.
void ParentWindow::EndChange(bool done, const QStringList& underWay) {
  if (!done) {
    ShowBox(this, QMessageBox::Critical,
            Ui::tr("変更を保存できませんでした。") + context_.Data.LastError().text);
  } else if (!underWay.isEmpty()) {
    ShowBox(this, QMessageBox::Information,
            Ui::tr("送信中なので、そのままにしました: %1")
                .arg(QStringLiteral("「") + underWay.join(QStringLiteral("」「")) +
                     QStringLiteral("」")));
  }
  MessageStored();
}

void ParentWindow::ChangeDust(const QStringList& messages, bool dust) {
  QStringList underWay;
  const bool done = SetDust(context_, messages, dust, &underWay);
  EndChange(done, underWay);
}

void ParentWindow::ActOnMessages(MessageAction action, const QStringList& messages,
                                 const QString& folder) {
  if (action == MessageAction::OutOfDust) {
    ChangeDust(messages, false);
    return;
  }
  if (action == MessageAction::File) {
    if (SelectObjects(context_.Objects, *context_.Session, QStringLiteral("static"))->IsEmpty()) {
      ShowBox(this, QMessageBox::Information, NoFolderWords());
      return;
    }
    const QString into = InputTree(context_, this, Ui::tr("フォルダに入れる"),
                                   Ui::tr("メッセージを入れるフォルダを選択してください。"),
                                   QStringLiteral("static"));
    if (into.isEmpty() && !context_.Session->Flag(u"cancel")) {
      ShowBox(this, QMessageBox::Information, Ui::tr("フォルダが選択されていません。"));
    }
    if (into.isEmpty() || !IsFilledByHand(context_, into)) return;
    const QString from = IsFilledByHand(context_, folder) && into != folder ? folder : QString();
    EndChange(FileMessages(context_, messages, into, from));
    return;
  }
  if (folder != fixed_serial::kDust) {
    ChangeDust(messages, true);
    return;
  }
  const auto answer = ShowBox(
      this, QMessageBox::Question,
      Ui::tr("メッセージ%1通を削除します。元には戻せません。よろしいですか？").arg(messages.size()),
      QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel);
  if (answer != QMessageBox::Ok) return;
  QStringList underWay;
  const bool done = DeleteMessages(context_, messages, &underWay);
  EndChange(done, underWay);
}

// A message that belongs to a choice of several brings the others along.
void ParentWindow::DropMessage(const QString& message, const QString& folder) {
  BrowserWindow* browser = ActiveBrowser();
  if (browser == nullptr) return;
  const QString from = browser->Tag();
  browser->ChosenMessages([this, message, folder, from](const QStringList& chosen) {
    const QStringList messages = chosen.contains(message) ? chosen : QStringList{message};
    // A failure is told to the user, which must not happen inside the engine's answer.
    QTimer::singleShot(0, this, [this, messages, folder, from] {
      if (folder == fixed_serial::kDust || folder == fixed_serial::kInbox) {
        ChangeDust(messages, folder == fixed_serial::kDust);
      } else {
        const bool moves = from != folder && IsFilledByHand(context_, from);
        EndChange(FileMessages(context_, messages, folder, moves ? from : QString()));
      }
    });
  });
}

// The one that was used last.
BrowserWindow* ParentWindow::ActiveBrowser() const {
  const QMdiSubWindow* frame = area_->currentSubWindow();  // also while another window is in front
  if (frame == nullptr) frame = area_->subWindowList(QMdiArea::ActivationHistoryOrder).value(0);
  auto* browser = frame == nullptr ? nullptr : qobject_cast<BrowserWindow*>(frame->widget());
  return browser != nullptr && browser->IsLocal() ? browser : nullptr;
}

// The folder whose node is chosen in the tree, or else the one whose page was used last.
QString ParentWindow::CurrentFolder() const {
  if (tvConsole_->hasFocus() && tvConsole_->CurrentTag() == object_type::kFolder) {
    return tvConsole_->CurrentKey();
  }
  const BrowserWindow* browser = ActiveBrowser();
  return browser == nullptr ? QString() : browser->Tag();
}

void ParentWindow::EditLayout() {
  const QString folder = CurrentFolder();
  if (folder.isEmpty()) return;
  LayoutWindow window(context_, pages_, profiles_, folder, this);
  if (window.exec() == QDialog::Accepted) MessageStored();
}

QString ParentWindow::NeighbourMessage(const QString& serialId, int step) {
  BrowserWindow* browser = ActiveBrowser();
  if (browser == nullptr) return {};
  const QString neighbour =
      vorn::NeighbourMessage(context_, browser->Tag(), browser->Search(), serialId, step);
  // The page goes along: its keys act on the message that was read last.
  if (!neighbour.isEmpty()) browser->GoToMessage(neighbour);
  return neighbour;
}

BrowserWindow* ParentWindow::NamedWindow(const QString& name, const BrowserWindow* asking) {
  for (auto* browser : area_->findChildren<BrowserWindow*>()) {
    if (browser != asking && !browser->Dust() && browser->WindowName() == name) return browser;
  }
  return nullptr;
}

void ParentWindow::CountUnreadSoon() {
  toCount_ = tvConsole_->Folders();
  counting_.start(kCountPauseMs);
}

void ParentWindow::CountNextUnread() {
  if (traffic_.Control().Busy()) return;  // what arrives is counted once, at the end
  if (toCount_.isEmpty()) {
    counting_.stop();
    return;
  }
  const QString folder = toCount_.takeFirst();
  // What was thrown away does not wait to be read.
  if (folder == fixed_serial::kDust) return;
  if (!uncounted_[folder].hasExpired()) {
    toCount_.append(folder);
    counting_.start(kCountLaterMs);
    return;
  }
  QElapsedTimer clock;
  clock.start();
  tvConsole_->SetUnread(folder, CountUnread(context_, folder));
  uncounted_[folder].setRemainingTime(kCountShare * clock.elapsed());
}

}  // namespace vorn
