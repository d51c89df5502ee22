// What a user does with the messages on a folder's page, by keys and by its menu.

#include <QAction>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QWebEngineView>

#include "kit/window/plain_text.h"
#include "mail/message_model.h"
#include "mail/window/message_host.h"
#include "objects/object_types.h"
#include "present/neighbour_message.h"
#include "present/window/browser_window.h"
#include "present/window/folder_toolbar.h"
#include "present/window/page_split.h"
#include "storage/condition_limit.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr qsizetype kManyWindows = 5;
constexpr int kSearchMs = 2000;  // the window stands still meanwhile

}  // namespace

// The keys act while the page has the focus; in the boxes of the toolbar they type.
QAction* BrowserWindow::AddKeys(const QList<QKeySequence>& keys, const std::function<void()>& run) {
  auto* action = new QAction(this);
  action->setShortcuts(keys);
  action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  connect(action, &QAction::triggered, this, run);
  wbUrl_->addAction(action);
  commands_.append(action);
  return action;
}

QAction* BrowserWindow::AddCommand(const QString& name, const QString& text,
                                   const QList<QKeySequence>& keys,
                                   const std::function<void()>& run) {
  QAction* action = AddKeys(keys, run);
  action->setObjectName(QStringLiteral("cmd_") + name);
  action->setText(text);
  messageMenu_->addAction(action);
  return action;
}

// Without messages the keys are the page's own.
void BrowserWindow::EnableMessageCommands() {
  for (QAction* action : commands_) action->setEnabled(rows_.HasRows());
}

void BrowserWindow::BuildMessageCommands() {
  messageMenu_ = new QMenu(this);
  messageMenu_->setObjectName(QStringLiteral("menuMessages"));
  AddCommand(QStringLiteral("open"), Ui::tr("開く(&O)"), {Qt::Key_Return, Qt::Key_Enter},
             [this] { OpenChosen(OpenMode::Show); });
  AddCommand(QStringLiteral("replay"), Ui::tr("返信(&R)"), {Qt::Key_R, Qt::CTRL | Qt::Key_R},
             [this] { OpenChosen(OpenMode::Reply); });
  AddCommand(QStringLiteral("replayall"), Ui::tr("全員に返信(&A)"),
             {Qt::SHIFT | Qt::Key_R, Qt::CTRL | Qt::SHIFT | Qt::Key_R},
             [this] { OpenChosen(OpenMode::ReplyAll); });
  AddCommand(QStringLiteral("forward"), Ui::tr("転送(&F)"), {Qt::Key_F},
             [this] { OpenChosen(OpenMode::Forward); });
  messageMenu_->addSeparator();
  AddCommand(QStringLiteral("file"), Ui::tr("フォルダに入れる(&M).."), {Qt::Key_M},
             [this] { Act(MessageAction::File); });
  AddCommand(QStringLiteral("dust"), Ui::tr("くずかごに入れる(&D)"), {Qt::Key_Delete},
             [this] { Act(MessageAction::ToDust); });
  outOfDust_ = AddCommand(QStringLiteral("outofdust"), Ui::tr("くずかごから出す(&U)"),
                          {Qt::CTRL | Qt::Key_Delete}, [this] { Act(MessageAction::OutOfDust); });
  messageMenu_->addSeparator();
  AddCommand(QStringLiteral("nextunopened"), Ui::tr("次の未開封へ(&N)"), {Qt::Key_N},
             [this] { OnCurrent([this](const QString& from) { GoToUnopened(from); }); });
  AddCommand(QStringLiteral("unopened"), Ui::tr("未開封に戻す(&T)"), {Qt::Key_U},
             [this] { Act(MessageAction::MarkUnopened); });
  AddCommand(QStringLiteral("opened"), Ui::tr("開封済みにする(&E)"), {Qt::SHIFT | Qt::Key_U},
             [this] { Act(MessageAction::MarkOpened); });
  AddCommand(QStringLiteral("star"), Ui::tr("スターを付ける、外す(&S)"), {Qt::Key_S},
             [this] { Act(MessageAction::ToggleStar); });
  messageMenu_->addSeparator();
  const auto ofCurrent = [this](void (MessageHost::*command)(const QString&)) {
    return [this, command] {
      OnCurrent([this, command](const QString& message) {
        if (!message.isEmpty()) (host_.Messages().*command)(message);
      });
    };
  };
  AddCommand(QStringLiteral("gather"), Ui::tr("このようなメールをフォルダに集める(&G).."), {},
             ofCurrent(&MessageHost::GatherAlike));
  AddCommand(QStringLiteral("stop"), Ui::tr("このようなメールを受信しない(&X).."), {},
             ofCurrent(&MessageHost::StopAlike));
  AddCommand(QStringLiteral("book"), Ui::tr("アドレスブックに登録(&B)"), {Qt::Key_B}, [this] {
    rows_.Chosen([this](const QStringList& messages) {
      if (messages.isEmpty()) return;
      QTimer::singleShot(0, this, [this, messages] { host_.Messages().AddToBook(messages); });
    });
  });
  messageMenu_->addSeparator();
  QAction* print =
      AddCommand(QStringLiteral("print"), Ui::tr("印刷(&P).."), {QKeySequence::Print}, [this] {
        OnCurrent([this](const QString& message) {
          if (!message.isEmpty()) split_->Print(message);
        });
      });
  addAction(print);  // also while the pane or a box has the keyboard: it types nothing there
  messageMenu_->addSeparator();
  AddCommand(QStringLiteral("all"), Ui::tr("すべて選択(&L)"), {QKeySequence::SelectAll},
             [this] { rows_.ChooseAll(); });
  connect(messageMenu_, &QMenu::aboutToShow, this,
          [this] { outOfDust_->setEnabled(request_.Folder() == fixed_serial::kDust); });
  connect(messageMenu_, &QMenu::aboutToHide, this, &BrowserWindow::EnableMessageCommands);

  for (const int shift : {0, static_cast<int>(Qt::SHIFT)}) {
    const auto key = [shift](Qt::Key code) { return QKeySequence(shift | code); };
    const bool extend = shift != 0;
    AddKeys({key(Qt::Key_Down), key(Qt::Key_J)}, [this, extend] { rows_.Step(1, extend); });
    AddKeys({key(Qt::Key_Up), key(Qt::Key_K)}, [this, extend] { rows_.Step(-1, extend); });
    AddKeys({key(Qt::Key_Home)}, [this, extend] { rows_.GoTo(0, extend); });
    AddKeys({key(Qt::Key_End)}, [this, extend] { rows_.GoTo(-1, extend); });
  }
  AddKeys({Qt::Key_Space}, [this] { rows_.Toggle(); });
  AddKeys({Qt::Key_Escape}, [this] { GiveUpChoice(); });
  rows_.OnRows([this] { EnableMessageCommands(); });
  EnableMessageCommands();
}

void BrowserWindow::RunCommand(const QString& command) {
  auto* action = findChild<QAction*>(QStringLiteral("cmd_") + command);
  if (action == nullptr) return;
  rows_.Chosen([this, action](const QStringList& chosen) {
    QTimer::singleShot(0, this, [this, action, any = !chosen.isEmpty()] {
      if (any) return action->trigger();
      ShowBox(this, QMessageBox::Information, Ui::tr("メッセージが選択されていません。"));
    });
  });
}

// All chosen messages are read, one is answered.
void BrowserWindow::OpenChosen(OpenMode mode) {
  if (mode != OpenMode::Show) {
    OnCurrent([this, mode](const QString& message) {
      if (!message.isEmpty()) host_.OpenMessage(static_cast<int>(mode), message, true);
    });
    return;
  }
  rows_.Chosen([this](const QStringList& messages) {
    QTimer::singleShot(0, this, [this, messages] {
      if (messages.size() > kManyWindows && !AgreesToOpen(messages.size())) return;
      for (const QString& serialId : messages) {
        host_.OpenMessage(static_cast<int>(OpenMode::Show), serialId, false);
      }
    });
  });
}

// The user may be asked, which must not happen inside the engine's answer.
void BrowserWindow::OnCurrent(const std::function<void(const QString&)>& act) {
  rows_.Current([this, act](const QString& message) {
    QTimer::singleShot(0, this, [act, message] { act(message); });
  });
}

// First the choice, then what the folder is searched for.
void BrowserWindow::GiveUpChoice() {
  rows_.Unchoose([this](bool had) {
    if (had || Search().isEmpty()) return;
    QTimer::singleShot(0, this, [this] {
      toolbar_->ClearSearch();
      SearchFolder();
    });
  });
}

void BrowserWindow::GoToUnopened(const QString& from) {
  const ConditionLimit brief(kSearchMs);
  const QString next = NextUnopened(context_, request_.Folder(), Search(), from);
  if (next.isEmpty()) {
    host_.Tell(brief.IsReached() ? context_.Data.LastError().text
                                 : Ui::tr("ほかに未開封のメッセージはありません。"));
    return;
  }
  rows_.GoToMessage(next, [this, next] {
    QTimer::singleShot(0, this, [this, next] { ShowMessageOfAnotherPage(next); });
  });
}

void BrowserWindow::ShowMessageOfAnotherPage(const QString& message) {
  const ConditionLimit brief(kSearchMs);
  const qint64 before = RowsBefore(context_, request_.Folder(), Search(), message);
  if (before < 0) return host_.Tell(context_.Data.LastError().text);
  GoToPage(pages_.PageOf(before));
  rows_.BeginAtMessage(message);
}

bool BrowserWindow::AgreesToOpen(qsizetype windows) {
  const auto answer = ShowBox(
      this, QMessageBox::Question,
      Ui::tr("メッセージ%1通をそれぞれのウィンドウで開きます。よろしいですか？").arg(windows),
      QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel);
  return answer == QMessageBox::Ok;
}

// Whether the messages are gone from the folder without a question.
bool BrowserWindow::TakesAway(MessageAction action) const {
  return action == (request_.Folder() == fixed_serial::kDust ? MessageAction::OutOfDust
                                                             : MessageAction::ToDust);
}

void BrowserWindow::Act(MessageAction action) {
  const QString folder = request_.Folder();
  const bool takes = TakesAway(action);
  const auto act = [this, action, folder, takes](const QStringList& messages) {
    if (messages.isEmpty()) return;
    QTimer::singleShot(
        0, this, [self = QPointer<BrowserWindow>(this), action, folder, takes, messages] {
          const QStringList gone = self->host_.ActOnMessages(action, messages, folder);
          if (self == nullptr || self->request_.Folder() != folder) return;
          self->MessagesGone(gone);
          QStringList stayed = takes ? messages : QStringList();
          stayed.removeIf([&gone](const QString& message) { return gone.contains(message); });
          self->rows_.GiveBack(stayed);
        });
  };
  split_->StopMarking();  // whatever is done, it is the user's word now
  takes ? rows_.Take(act) : rows_.Chosen(act);
}

void BrowserWindow::MessagesGone(const QStringList& messages) {
  gone_ += messages;
  rows_.LeaveFolder(messages);
}

}  // namespace vorn
