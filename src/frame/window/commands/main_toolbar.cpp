#include "frame/window/commands/main_toolbar.h"

#include <QAction>
#include <QToolButton>

#include "frame/window/panes/browser_area.h"
#include "frame/window/panes/opener.h"
#include "kit/window/access_names.h"
#include "kit/window/icons.h"
#include "kit/window/plain_text.h"
#include "kit/window/second_click.h"
#include "present/window/browser_window.h"
#include "present/window/folder/shown_folder.h"
#include "present/window/page/browser_host.h"
#include "storage/ui.h"

namespace vorn {

MainToolbar::MainToolbar(BrowserArea& area, Opener& opener, BrowserHost& host, QWidget* parent)
    : QToolBar(Ui::tr("ツールバー"), parent), area_(area), host_(host) {
  NameMoreButton(*this);
  setObjectName(QStringLiteral("tbMain"));
  setMovable(false);
  connect(this, &QToolBar::actionTriggered, this, [] { new SecondClick; });
  setIconSize(QSize(20, 20));
  tree_ = addAction(Icon(QStringLiteral("folder")), Ui::tr("一覧"), this, &MainToolbar::TreeWanted);
  tree_->setObjectName(QStringLiteral("tb_tree"));
  tree_->setToolTip(Ui::tr("フォルダの一覧とページを切り替え F6"));
  tree_->setVisible(false);
  addAction(Icon(QStringLiteral("maildown")), Ui::tr("送受信"), this, &MainToolbar::TrafficWanted)
      ->setToolTip(Ui::tr("メッセージ送受信 Ctrl+M"));
  addAction(Icon(QStringLiteral("mail")), Ui::tr("新規"), this, [&opener] {
    opener.WriteMessage();
  })->setToolTip(Ui::tr("新しいメッセージ Ctrl+N"));
  addSeparator();
  AddPageCommand(Ui::tr("返信"), PageCommand::Reply, Qt::Key_R);
  AddPageCommand(Ui::tr("全員に返信"), PageCommand::ReplyAll,
                 QKeySequence(QStringLiteral("Shift+R")));
  AddPageCommand(Ui::tr("転送"), PageCommand::Forward, Qt::Key_F);
  addSeparator();
  AddPageCommand(Ui::tr("フォルダに入れる"), PageCommand::File, Qt::Key_M);
  AddPageCommand(Ui::tr("くずかご"), PageCommand::ToDust, Qt::Key_Delete);
  addSeparator();
  AddPageCommand(Ui::tr("次の未開封"), PageCommand::NextUnopened, Qt::Key_N);
  AddPageCommand(Ui::tr("印刷"), PageCommand::Print, QKeySequence::Print);
}

void MainToolbar::ShowWords(bool shows) {
  showsWords_ = shows;
  Fit();
}

void MainToolbar::OfferTree(bool offers) {
  tree_->setVisible(offers);
  Fit();
}

void MainToolbar::resizeEvent(QResizeEvent* event) {
  QToolBar::resizeEvent(event);
  Fit();
}

// A button behind the edge would be found by nobody, and its picture has room for long.
void MainToolbar::Fit() {
  QList<QToolButton*> buttons;
  for (QAction* action : actions()) {
    auto* button = qobject_cast<QToolButton*>(widgetForAction(action));
    if (button != nullptr && action->isVisible()) buttons.append(button);
  }
  for (QToolButton* button : buttons) button->setToolButtonStyle(Qt::ToolButtonIconOnly);
  int room = showsWords_ ? width() - sizeHint().width() : -1;
  for (QToolButton* button : buttons) {
    const int bare = button->sizeHint().width();
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    room -= button->sizeHint().width() - bare;
    if (room >= 0) continue;
    button->setToolButtonStyle(Qt::ToolButtonIconOnly);
    break;
  }
}

void MainToolbar::AddPageCommand(const QString& text, PageCommand command,
                                 const QKeySequence& key) {
  QAction* action = addAction(text, this, [this, command] {
    if (BrowserWindow* browser = area_.Active()) return browser->Folder().Commands().Run(command);
    host_.Tell(Ui::tr("フォルダが開いていません。左の一覧から選んでください。"));
  });
  action->setObjectName(QStringLiteral("tb_") + WordOf(command));
  action->setIcon(Icon(WordOf(command)));
  action->setToolTip(ShownToolTip(text + u' ' + key.toString(QKeySequence::NativeText)));
}

}  // namespace vorn
