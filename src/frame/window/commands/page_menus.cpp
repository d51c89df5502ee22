#include "frame/window/commands/page_menus.h"

#include <QFile>
#include <QMdiSubWindow>
#include <QShortcut>
#include <QTextDocument>
#include <utility>

#include "frame/window/panes/browser_area.h"
#include "frame/window/panes/console_tree.h"
#include "frame/window/panes/folder_panes.h"
#include "frame/window/panes/request_windows.h"
#include "kit/window/plain_text.h"
#include "mail/window/message_window.h"
#include "present/window/browser_window.h"
#include "present/window/folder/shown_folder.h"
#include "present/window/page/first_use.h"
#include "storage/ui.h"

namespace vorn {
namespace {

// Pages have no scripts; the engine shows what it gives the focus to.
QString OpenedAt(QString html, const QString& heading) {
  const qsizetype text = heading.isEmpty() ? -1 : html.indexOf(u'>' + heading + u'<');
  const qsizetype at = text < 0 ? -1 : html.lastIndexOf(QStringLiteral("<h"), text);
  if (at < 0) return html;
  return html.insert(at + 3, QStringLiteral(" tabindex=\"-1\" autofocus"));
}

}  // namespace

PageMessageMenu::PageMessageMenu(BrowserArea& area, QWidget* parent)
    : QMenu(Ui::tr("メッセージ(&M)"), parent) {
  setObjectName(QStringLiteral("menuPageMessages"));
  connect(this, &QMenu::aboutToShow, this, [this, &area] {
    clear();
    if (BrowserWindow* browser = area.Active()) return browser->Folder().Commands().ListIn(*this);
    addAction(Ui::tr("フォルダが開いていません。左の一覧から選んでください。"))->setEnabled(false);
  });
}

WindowMenu::WindowMenu(FolderPanes& panes, const RequestWindows& windows, QWidget* parent)
    : QMenu(Ui::tr("ウィンドウ(&W)"), parent) {
  setObjectName(QStringLiteral("menuWindows"));
  BrowserArea* area = &panes.Area();
  const auto arrange = [this, area](const QString& text, Arrangement arrangement) {
    addAction(text, area, [area, arrangement] { area->Arrange(arrangement); });
  };
  arrange(Ui::tr("重ねて表示(&C)"), Arrangement::Cascaded);
  arrange(Ui::tr("並べて表示(&T)"), Arrangement::Tiled);
  arrange(Ui::tr("タブで表示(&B)"), Arrangement::Tabs);
  addAction(Ui::tr("次のウィンドウ(&N)"), area, &QMdiArea::activateNextSubWindow)
      ->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Tab));
  // Windows in the area have this key themselves.
  addAction(Ui::tr("ウィンドウを閉じる(&L)") + QStringLiteral("\tCtrl+W"), area,
            &QMdiArea::closeActiveSubWindow);
  new QShortcut(QKeySequence::Close, &panes.Tree(), area, &QMdiArea::closeActiveSubWindow,
                Qt::WidgetShortcut);
  addSeparator();
  AddWays(panes);
  connect(this, &QMenu::aboutToShow, this, [this, area, &windows] { List(*area, windows); });
}

void WindowMenu::AddWindow(const QString& title, bool isCurrent,
                           const std::function<void()>& activate) {
  QString text = ShownText(title, kMostInTitle).replace(u'&', QStringLiteral("&&"));
  const qsizetype number = listed_.size();  // behind the separator
  if (number < 10) text.prepend(QStringLiteral("&%1 ").arg(number));
  QAction* entry = addAction(text, this, activate);
  entry->setCheckable(true);
  entry->setChecked(isCurrent);
  listed_.append(entry);
}

void WindowMenu::List(BrowserArea& area, const RequestWindows& windows) {
  qDeleteAll(std::exchange(listed_, {}));
  listed_.append(addSeparator());
  for (QMdiSubWindow* page : area.subWindowList()) {
    const QPointer<QMdiSubWindow> kept(page);
    AddWindow(page->windowTitle(), page == area.activeSubWindow(), [&area, kept] {
      if (kept != nullptr) area.setActiveSubWindow(kept);
    });
  }
  for (RequestWindow* open : windows.Open()) {
    const QPointer<MessageWindow> message(dynamic_cast<MessageWindow*>(open));
    if (message == nullptr || !message->isVisible()) continue;
    AddWindow(message->windowTitle(), false, [message] {
      if (message != nullptr) message->Activate();
    });
  }
}

void WindowMenu::AddWays(FolderPanes& panes) {
  // Pressed in the tree, the key leads back.
  addAction(Ui::tr("ツリーに移動(&F)"), &panes, [&panes] {
    panes.Tree().hasFocus() ? panes.GoToPage() : panes.GoToTree();
  })->setShortcut(QKeySequence(Qt::Key_F6));
  addAction(Ui::tr("ページに移動(&P)"), &panes, &FolderPanes::GoToPage)
      ->setShortcut(QKeySequence(Qt::SHIFT | Qt::Key_F6));
}

HelpMenu::HelpMenu(RequestWindows& windows, BrowserArea& area, QAction* version, QWidget* parent)
    : QMenu(Ui::tr("ヘルプ(&H)"), parent), windows_(windows), area_(area) {
  setObjectName(QStringLiteral("menuHelps"));
  QAction* guide = addAction(Ui::tr("使い方(&G)"), this, [this] { ShowGuide({}); });
  guide->setShortcut(QKeySequence::HelpContents);
  guide->setObjectName(first_step::kGuide);
  addAction(Ui::tr("キーの一覧(&K)"), this, [this] {
    ShowGuide(Ui::tr("ページのキー"));
  })->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Slash));
  addSeparator();
  addAction(version);
}

void HelpMenu::ShowGuide(const QString& heading) {
  QFile guide(Ui::tr(":/guide/index.md"));
  if (!guide.open(QIODevice::ReadOnly)) return;
  QTextDocument text;
  text.setMarkdown(QString::fromUtf8(guide.readAll()));
  // One that was closed may still be there for a moment.
  const bool isOpen = area_.Browsers().contains(guide_) && !guide_->Dust() && guide_->IsLocal();
  if (!isOpen) guide_ = windows_.NewBrowser();
  guide_->ShowOwnPage(Ui::tr("使い方"), OpenedAt(text.toHtml(), heading));
  guide_->ShowModeless();
  area_.ArrangeAsKept();
}

}  // namespace vorn
