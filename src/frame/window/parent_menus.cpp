// The main window's menus.

#include <QAction>
#include <QMdiArea>
#include <QMenuBar>
#include <QMessageBox>

#include "frame/start_up.h"
#include "frame/window/parent_window.h"
#include "mail/message_filing.h"
#include "objects/object_types.h"

namespace vorn {

void ParentWindow::BuildMenus() {
  const auto tools = [this](QMenu* menu, int index, const QString& text) {
    return menu->addAction(text, this, [this, index] { menuTools_Click(index); });
  };
  BuildFileMenu();
  BuildDisplayMenu();
  QMenu* tool = menuBar()->addMenu(QStringLiteral("ツール(&T)"));
  tool->setObjectName(QStringLiteral("menuTools"));
  tools(tool, kToolsReceive, QStringLiteral("メッセージ送受信(&M)"))
      ->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_M));
  QAction* cancel = tools(tool, kToolsCancel, QStringLiteral("送受信の中止(&C)"));
  tools(tool, kToolsRules, QStringLiteral("メッセージ条件(&R).."));
  tool->addSeparator();
  tools(tool, kToolsSettings, QStringLiteral("設定(&O).."));
  tool->addSeparator();
  version_ = tools(tool, kToolsVersion, QStringLiteral("バージョン情報(&V).."));
  connect(tool, &QMenu::aboutToShow, this,
          [this, cancel] { cancel->setEnabled(traffic_.Control().Busy()); });

  BuildBookmarkMenu();
  QMenu* window = menuBar()->addMenu(QStringLiteral("ウィンドウ(&W)"));
  window->setObjectName(QStringLiteral("menuWindows"));
  window->addAction(QStringLiteral("重ねて表示(&C)"), area_, &QMdiArea::cascadeSubWindows);
  window->addAction(QStringLiteral("並べて表示(&T)"), area_, &QMdiArea::tileSubWindows);
  window->addAction(QStringLiteral("次のウィンドウ(&N)"), area_, &QMdiArea::activateNextSubWindow)
      ->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Tab));
}

void ParentWindow::BuildFileMenu() {
  QMenu* file = menuBar()->addMenu(QStringLiteral("ファイル(&F)"));
  file->setObjectName(QStringLiteral("menuFiles"));
  QMenu* create = file->addMenu(QStringLiteral("新規作成(&N)"));
  create->setObjectName(QStringLiteral("menuFilesNew"));
  const auto entry = [this, create](const QString& text, const QString& type) {
    create->addAction(text, this, [this, type] { tvConsole_->NewObject(type); });
  };
  create->addAction(QStringLiteral("メッセージ(&M).."), this, &ParentWindow::NewMessage)
      ->setShortcut(QKeySequence::New);
  create->addSeparator();
  entry(QStringLiteral("アカウント(&A).."), object_type::kAccount);
  entry(QStringLiteral("フォルダ(&F).."), object_type::kFolder);
  entry(QStringLiteral("アドレスブック(&D).."), object_type::kBook);
  entry(QStringLiteral("ブックマーク(&B).."), object_type::kBookmark);
  entry(QStringLiteral("プロファイル(&P).."), object_type::kProfile);
  file->addSeparator();
  const QList<QAction*> onNode = {
      file->addAction(QStringLiteral("名前の変更(&M)"), tvConsole_, &ConsoleTree::RenameNode),
      file->addAction(QStringLiteral("削除(&D)"), tvConsole_, &ConsoleTree::DeleteNode),
      file->addAction(QStringLiteral("プロパティ(&R).."), tvConsole_,
                      &ConsoleTree::ShowProperties)};
  connect(file, &QMenu::aboutToShow, this, [this, onNode] {
    for (QAction* action : onNode) action->setEnabled(tvConsole_->HasObject());
  });
  file->addSeparator();
  file->addAction(QStringLiteral("くずかごを空にする(&E).."), this, &ParentWindow::EmptyDust);
  file->addSeparator();
  exit_ = file->addAction(QStringLiteral("終了(&X)"), this, &QWidget::close);
  exit_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
}

void ParentWindow::BuildDisplayMenu() {
  QMenu* display = menuBar()->addMenu(QStringLiteral("表示(&V)"));
  display->setObjectName(QStringLiteral("menuDisplays"));
  QAction* clear = display->addAction(QStringLiteral("イベントのクリア(&C).."), this,
                                      &ParentWindow::ClearEvents);
  QAction* layout = display->addAction(QStringLiteral("フォルダのレイアウト(&L).."), this,
                                       &ParentWindow::EditLayout);
  connect(display, &QMenu::aboutToShow, this, [this, clear, layout] {
    clear->setEnabled(tvConsole_->HasEvents());
    layout->setEnabled(!CurrentFolder().isEmpty());
  });
}

// The bookmarks' places, read anew whenever the menu opens.
void ParentWindow::BuildBookmarkMenu() {
  QMenu* menu = menuBar()->addMenu(QStringLiteral("お気に入り(&A)"));
  menu->setObjectName(QStringLiteral("menuBookmarks"));
  connect(menu, &QMenu::aboutToShow, this, [this, menu] { FillBookmarkMenu(menu); });
  FillBookmarkMenu(menu);
}

void ParentWindow::FillBookmarkMenu(QMenu* menu) {
  menu->clear();
  for (const DiskPtr& object : context_.Objects) {
    if (object->Text(u"FormName") != object_type::kBookmark) continue;
    menu->addSection(object->Text(u"Object"));
    for (const QString& line : object->Text(u"Url").split(kLineBreak, Qt::SkipEmptyParts)) {
      const QString url = line.section(u' ', 0, 0);
      QString title = line.section(u' ', 1);
      if (title.isEmpty()) title = url;
      menu->addAction(title.replace(u'&', QStringLiteral("&&")), this,
                      [this, url] { OpenWebPage(url); })
          ->setToolTip(url);
    }
  }
  if (menu->isEmpty()) menu->addAction(QStringLiteral("（なし）"))->setEnabled(false);
}

void ParentWindow::OpenWebPage(const QString& url) {
  BrowserRequest request;
  request.serialId = context_.Data.NewSerialID();
  request.url = url;
  queue_.PostBrowserRequest(request);
}

void ParentWindow::EmptyDust() {
  const auto answer = QMessageBox::question(
      this, kApplicationTitle,
      QStringLiteral("くずかごのメッセージをすべて削除します。元には戻せません。よろしいですか？"),
      QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel);
  if (answer != QMessageBox::Ok) return;
  if (!vorn::EmptyDust(context_)) {
    QMessageBox::critical(
        this, kApplicationTitle,
        QStringLiteral("削除できませんでした。") + context_.Data.LastError().text);
  }
  MessageStored();
}

void ParentWindow::ClearEvents() {
  const auto answer = QMessageBox::question(
      this, kApplicationTitle, QStringLiteral("記録イベントをクリアします？よろしいですか？"),
      QMessageBox::Ok | QMessageBox::Cancel);
  if (answer != QMessageBox::Ok) return;
  tvConsole_->RemoveEvents();
  events_.Clear();
}

}  // namespace vorn
