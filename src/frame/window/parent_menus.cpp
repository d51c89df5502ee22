// The main window's menus.

#include <QAction>
#include <QActionGroup>
#include <QDesktopServices>
#include <QFile>
#include <QMenuBar>
#include <QMessageBox>
#include <QShortcut>
#include <QTextDocument>
#include <QToolBar>
#include <QUrl>

#include "frame/window/browser_area.h"
#include "frame/window/node_commands.h"
#include "frame/window/parent_window.h"
#include "kit/window/access_names.h"
#include "kit/window/icons.h"
#include "kit/window/plain_text.h"
#include "kit/window/second_click.h"
#include "objects/any_object.h"
#include "objects/object_types.h"
#include "objects/save_object.h"
#include "objects/settings.h"
#include "present/folder_layout.h"
#include "present/ready_layouts.h"
#include "present/window/browser_window.h"
#include "present/window/shown_folder.h"
#include "storage/ui.h"

namespace vorn {

void ParentWindow::BuildMenus() {
  const auto tools = [this](QMenu* menu, int index, const QString& text) {
    return menu->addAction(text, this, [this, index] { menuTools_Click(index); });
  };
  BuildFileMenu();
  BuildDisplayMenu();
  BuildMessageMenu();
  QMenu* tool = menuBar()->addMenu(Ui::tr("ツール(&T)"));
  tool->setObjectName(QStringLiteral("menuTools"));
  tools(tool, kToolsReceive, Ui::tr("メッセージ送受信(&M)"))
      ->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_M));
  QAction* cancel = tools(tool, kToolsCancel, Ui::tr("送受信の中止(&C)"));
  tools(tool, kToolsRules, Ui::tr("メッセージ条件(&R).."));
  tool->addSeparator();
  tools(tool, kToolsSettings, Ui::tr("設定(&O).."));
  tool->addSeparator();
  version_ = tools(tool, kToolsVersion, Ui::tr("バージョン情報(&V).."));
  connect(tool, &QMenu::aboutToShow, this,
          [this, cancel] { cancel->setEnabled(traffic_.Plan().HasWork()); });

  BuildBookmarkMenu();
  QMenu* window = menuBar()->addMenu(Ui::tr("ウィンドウ(&W)"));
  window->setObjectName(QStringLiteral("menuWindows"));
  const auto arrange = [this, window](const QString& text, Arrangement arrangement) {
    window->addAction(text, this, [this, arrangement] { area_->Arrange(arrangement); });
  };
  arrange(Ui::tr("重ねて表示(&C)"), Arrangement::Cascaded);
  arrange(Ui::tr("並べて表示(&T)"), Arrangement::Tiled);
  arrange(Ui::tr("タブで表示(&B)"), Arrangement::Tabs);
  window->addAction(Ui::tr("次のウィンドウ(&N)"), area_, &QMdiArea::activateNextSubWindow)
      ->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Tab));
  // Windows in the area have this key themselves.
  window->addAction(Ui::tr("ウィンドウを閉じる(&L)") + QStringLiteral("\tCtrl+W"), area_,
                    &QMdiArea::closeActiveSubWindow);
  new QShortcut(QKeySequence::Close, tvConsole_, area_, &QMdiArea::closeActiveSubWindow,
                Qt::WidgetShortcut);
  window->addSeparator();
  window->addAction(Ui::tr("ツリーに移動(&F)"), tvConsole_, [this] { tvConsole_->setFocus(); })
      ->setShortcut(QKeySequence(Qt::Key_F6));
  window
      ->addAction(Ui::tr("ページに移動(&P)"), this,
                  [this] {
                    if (BrowserWindow* browser = area_->Active()) browser->setFocus();
                  })
      ->setShortcut(QKeySequence(Qt::SHIFT | Qt::Key_F6));
  BuildHelpMenu();
}

void ParentWindow::BuildHelpMenu() {
  QMenu* help = menuBar()->addMenu(Ui::tr("ヘルプ(&H)"));
  help->setObjectName(QStringLiteral("menuHelps"));
  help->addAction(Ui::tr("使い方(&G)"), this, &ParentWindow::ShowGuide)
      ->setShortcut(QKeySequence::HelpContents);
  QAction* keys = help->addAction(Ui::tr("キーの一覧(&K)"), this, &ParentWindow::ShowGuide);
  keys->setData(Ui::tr("ページのキー"));
  keys->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Slash));
  help->addSeparator();
  help->addAction(version_);
}

namespace {

// Pages have no scripts; the engine shows what it gives the focus to.
QString OpenedAt(QString html, const QString& heading) {
  const qsizetype text = heading.isEmpty() ? -1 : html.indexOf(u'>' + heading + u'<');
  const qsizetype at = text < 0 ? -1 : html.lastIndexOf(QStringLiteral("<h"), text);
  if (at < 0) return html;
  return html.insert(at + 3, QStringLiteral(" tabindex=\"-1\" autofocus"));
}

}  // namespace

// At the section that the menu's entry names.
void ParentWindow::ShowGuide() {
  const auto* entry = qobject_cast<const QAction*>(sender());
  const QString heading = entry == nullptr ? QString() : entry->data().toString();
  QFile guide(Ui::tr(":/guide/index.md"));
  if (!guide.open(QIODevice::ReadOnly)) return;
  QTextDocument text;
  text.setMarkdown(QString::fromUtf8(guide.readAll()));
  BrowserWindow* window = NewBrowserWindow();
  window->ShowOwnPage(Ui::tr("使い方"), OpenedAt(text.toHtml(), heading));
  window->ShowModeless();
  area_->ArrangeAsKept();
}

// The commands of the page that was used last.
QAction* ParentWindow::AddMessageButton(QToolBar& bar, const QString& text,
                                        const QString& command) {
  QAction* action = bar.addAction(text, this, [this, command] {
    BrowserWindow* browser = area_->Active();
    if (browser != nullptr) return browser->Folder().RunCommand(command);
    Tell(Ui::tr("フォルダが開いていません。左の一覧から選んでください。"));
  });
  action->setObjectName(QStringLiteral("tb_") + command);
  action->setIcon(Icon(command));
  return action;
}

void ParentWindow::BuildToolbar() {
  tbMain_ = addToolBar(Ui::tr("ツールバー"));
  NameMoreButton(*tbMain_);
  tbMain_->setObjectName(QStringLiteral("tbMain"));
  tbMain_->setMovable(false);
  connect(tbMain_, &QToolBar::actionTriggered, this, [] { new SecondClick; });
  tbMain_->setIconSize(QSize(20, 20));
  tbMain_
      ->addAction(Icon(QStringLiteral("maildown")), Ui::tr("送受信"), this,
                  [this] { menuTools_Click(kToolsReceive); })
      ->setToolTip(Ui::tr("メッセージ送受信 Ctrl+M"));
  tbMain_->addAction(Icon(QStringLiteral("mail")), Ui::tr("新規"), this, &ParentWindow::NewMessage)
      ->setToolTip(Ui::tr("新しいメッセージ Ctrl+N"));
  tbMain_->addSeparator();
  AddMessageButton(*tbMain_, Ui::tr("返信"), QStringLiteral("replay"));
  AddMessageButton(*tbMain_, Ui::tr("全員に返信"), QStringLiteral("replayall"));
  AddMessageButton(*tbMain_, Ui::tr("転送"), QStringLiteral("forward"));
  tbMain_->addSeparator();
  AddMessageButton(*tbMain_, Ui::tr("フォルダに入れる"), QStringLiteral("file"));
  AddMessageButton(*tbMain_, Ui::tr("くずかご"), QStringLiteral("dust"));
}

void ParentWindow::BuildFileMenu() {
  QMenu* file = menuBar()->addMenu(Ui::tr("ファイル(&F)"));
  file->setObjectName(QStringLiteral("menuFiles"));
  QMenu* create = file->addMenu(Ui::tr("新規作成(&N)"));
  create->setObjectName(QStringLiteral("menuFilesNew"));
  const auto entry = [this, create](const QString& text, const QString& type) {
    create->addAction(text, this, [this, type] { tvConsole_->Commands().NewObject(type); });
  };
  create->addAction(Ui::tr("メッセージ(&M).."), this, &ParentWindow::NewMessage)
      ->setShortcut(QKeySequence::New);
  create->addSeparator();
  entry(Ui::tr("アカウント(&A).."), object_type::kAccount);
  entry(Ui::tr("フォルダ(&F).."), object_type::kFolder);
  entry(Ui::tr("アドレスブック(&D).."), object_type::kBook);
  entry(Ui::tr("ブックマーク(&B).."), object_type::kBookmark);
  entry(Ui::tr("プロファイル(&P).."), object_type::kProfile);
  file->addSeparator();
  const QList<QAction*> onNode = {
      file->addAction(Ui::tr("名前の変更(&M)"), &tvConsole_->Commands(), &NodeCommands::Rename),
      file->addAction(Ui::tr("削除(&D)"), &tvConsole_->Commands(), &NodeCommands::Delete),
      file->addAction(Ui::tr("プロパティ(&R).."), &tvConsole_->Commands(),
                      &NodeCommands::ShowProperties)};
  connect(file, &QMenu::aboutToShow, this, [this, onNode] {
    for (QAction* action : onNode) action->setEnabled(tvConsole_->HasObject());
  });
  // Opening a folder leaves the keys with its page, also for the name of what was just clicked.
  onNode.front()->setShortcut(Qt::Key_F2);
  connect(file, &QMenu::aboutToHide, this, [onNode] { onNode.front()->setEnabled(true); });
  file->addSeparator();
  file->addAction(Ui::tr("くずかごを空にする(&E).."), this, [this] { actions_.EmptyDust(); });
  file->addSeparator();
  file->addAction(Ui::tr("ファイルから取り込む(&I).."), this, [this] { archive_.ImportFiles(); });
  file->addAction(Ui::tr("フォルダから取り込む(&O).."), this, [this] { archive_.ImportFolder(); });
  QAction* write = file->addAction(Ui::tr("フォルダの書き出し(&W).."), this, [this] {
    const QString folder = CurrentFolder();
    archive_.Export(folder, NodeText(folder));
  });
  connect(file, &QMenu::aboutToShow, this,
          [this, write] { write->setEnabled(!CurrentFolder().isEmpty()); });
  file->addSeparator();
  exit_ = file->addAction(Ui::tr("終了(&X)"), this, &QWidget::close);
  exit_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
}

void ParentWindow::BuildDisplayMenu() {
  QMenu* display = menuBar()->addMenu(Ui::tr("表示(&V)"));
  display->setObjectName(QStringLiteral("menuDisplays"));
  QAction* clear =
      display->addAction(Ui::tr("イベントのクリア(&C).."), this, &ParentWindow::ClearEvents);
  QAction* layout =
      display->addAction(Ui::tr("フォルダのレイアウト(&L).."), this, &ParentWindow::EditLayout);
  BuildLayoutMenu(*display);
  BuildPaneMenu(*display);
  connect(display, &QMenu::aboutToShow, this, [this, clear, layout] {
    clear->setEnabled(tvConsole_->HasEvents());
    layout->setEnabled(!CurrentFolder().isEmpty());
  });
}

// What can be done with the messages of the page that was used last.
void ParentWindow::BuildMessageMenu() {
  QMenu* menu = menuBar()->addMenu(Ui::tr("メッセージ(&M)"));
  menu->setObjectName(QStringLiteral("menuPageMessages"));
  connect(menu, &QMenu::aboutToShow, this, [this, menu] {
    menu->clear();
    if (BrowserWindow* browser = area_->Active()) return browser->Folder().ListCommands(*menu);
    menu->addAction(Ui::tr("フォルダが開いていません。左の一覧から選んでください。"))
        ->setEnabled(false);
  });
}

// What all folders look like that have no layout of their own.
void ParentWindow::BuildLayoutMenu(QMenu& display) {
  QMenu* menu = display.addMenu(Ui::tr("すべてのフォルダの表示形式(&A)"));
  auto* group = new QActionGroup(menu);
  for (const ReadyLayout& layout : ReadyLayouts({})) {
    QAction* action =
        menu->addAction(layout.name, this, [this, id = layout.id] { ChooseLayout(id); });
    action->setCheckable(true);
    action->setData(layout.id);
    group->addAction(action);
  }
  connect(menu, &QMenu::aboutToShow, this, [this, group] {
    const QString shared = SharedLayout(context_);
    for (QAction* action : group->actions()) {
      action->setChecked(action->data().toString() == shared);
    }
    if (group->checkedAction() == nullptr) group->actions().first()->setChecked(true);
  });
}

// Where the message that is current on a page is read.
void ParentWindow::BuildPaneMenu(QMenu& display) {
  QMenu* menu = display.addMenu(Ui::tr("選んだメッセージの表示(&P)"));
  menu->setObjectName(QStringLiteral("menuPane"));
  auto* group = new QActionGroup(menu);
  int place = 0;
  for (const QString& text :
       {Ui::tr("しない(&N)"), Ui::tr("一覧の下(&B)"), Ui::tr("一覧の右(&R)")}) {
    QAction* action = menu->addAction(text, this, [this, place] { PlacePane(place); });
    action->setCheckable(true);
    group->addAction(action);
    ++place;
  }
  connect(menu, &QMenu::aboutToShow, this, [this, group] {
    const PanePlace shown = Settings(context_).ReadingPane();
    group->actions()[static_cast<int>(shown)]->setChecked(true);
  });
}

void ParentWindow::PlacePane(int place) {
  Settings settings(context_);
  settings.SetReadingPane(static_cast<PanePlace>(place));
  const Result<> saved = SaveObject(context_, DatabaseKind::Profile, *settings.Bag());
  if (!saved) {
    ShowBox(this, QMessageBox::Critical, Ui::tr("設定を保存できません。") + saved.Error().text);
  }
  ApplySettings();
}

void ParentWindow::ChooseLayout(const QString& id) {
  OwnLayouts own = OwnLayouts::Kept;
  if (const qsizetype count = CountOwnLayouts(context_); count > 0) {
    const auto answer = ShowBox(
        this, QMessageBox::Question,
        Ui::tr("自分で作ったレイアウトのフォルダが%1個あります。それも変えますか？").arg(count),
        QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::No);
    if (answer == QMessageBox::Cancel) return;
    if (answer == QMessageBox::Yes) own = OwnLayouts::Removed;
  }
  const Result<> shared = ShareLayout(context_, id, own);
  if (shared) {
    MessageStored();
  } else {
    ShowBox(this, QMessageBox::Critical, Ui::tr("保存できませんでした。") + shared.Error().text);
  }
}

// The bookmarks' places, read anew whenever the menu opens.
void ParentWindow::BuildBookmarkMenu() {
  QMenu* menu = menuBar()->addMenu(Ui::tr("お気に入り(&A)"));
  menu->setObjectName(QStringLiteral("menuBookmarks"));
  connect(menu, &QMenu::aboutToShow, this, [this, menu] { FillBookmarkMenu(menu); });
  FillBookmarkMenu(menu);
}

void ParentWindow::FillBookmarkMenu(QMenu* menu) {
  menu->clear();
  for (const DiskPtr& object : context_.Objects) {
    if (!AnyObject(*object).Is(object_type::kBookmark)) continue;
    menu->addSection(AnyObject(*object).Name());
    for (const QString& line : object->Text(u"Url").split(kLineBreak, Qt::SkipEmptyParts)) {
      const QString url = line.section(u' ', 0, 0);
      QString title = line.section(u' ', 1);
      if (title.isEmpty()) title = url;
      menu->addAction(title.replace(u'&', QStringLiteral("&&")), this,
                      [this, url] { OpenWebPage(url); })
          ->setToolTip(ShownToolTip(url));
    }
  }
  if (menu->isEmpty()) menu->addAction(Ui::tr("（なし）"))->setEnabled(false);
}

void ParentWindow::OpenWebPage(const QString& url) {
  const QUrl place = QUrl::fromUserInput(url);
  const bool isWeb = place.scheme() == u"http" || place.scheme() == u"https";
  // The user's own browser gets its corrections from its makers.
  if (isWeb && Settings(context_).OpensWebOutside()) {
    if (!QDesktopServices::openUrl(place)) {
      ShowBox(this, QMessageBox::Information, Ui::tr("標準のブラウザーを起動できません。"));
    }
    return;
  }
  BrowserRequest request;
  request.serialId = context_.Data.NewSerialID();
  request.url = url;
  queue_.PostBrowserRequest(request);
}

void ParentWindow::ClearEvents() {
  const auto answer =
      ShowBox(this, QMessageBox::Question, Ui::tr("記録イベントをクリアします？よろしいですか？"),
              QMessageBox::Ok | QMessageBox::Cancel);
  if (answer != QMessageBox::Ok) return;
  tvConsole_->RemoveEvents();
  events_.Clear();
}

}  // namespace vorn
