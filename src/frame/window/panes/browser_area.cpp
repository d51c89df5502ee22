#include "frame/window/panes/browser_area.h"

#include <QApplication>
#include <QMdiSubWindow>
#include <QPainter>
#include <QTabBar>
#include <QTimer>
#include <utility>

#include "kit/window/icons.h"
#include "present/window/browser_window.h"
#include "present/window/folder/shown_folder.h"
#include "present/window/page/page_rest.h"
#include "present/window/web_navigation.h"
#include "storage/ui.h"
#include "storage/window/control_state.h"

namespace vorn {
namespace {

constexpr qsizetype kAwakePages = 2;

BrowserWindow* In(const QMdiSubWindow* frame) {
  return frame == nullptr ? nullptr : qobject_cast<BrowserWindow*>(frame->widget());
}

}  // namespace

BrowserArea::BrowserArea(Context& context) : context_(context), unseen_(new QWidget(this)) {
  setObjectName(QStringLiteral("mdiArea"));
  setTabsClosable(true);
  setTabsMovable(true);
  setDocumentMode(true);
  setActivationOrder(ActivationHistoryOrder);  // who closes a tab is back where he came from
  unseen_->hide();
  connect(this, &QMdiArea::subWindowActivated, this, [this] {
    RestHidden();
    Q_EMIT ActiveChanged();
    GiveKeysToPage();
  });
  // A click into the page that is active already activates nothing.
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
    if (now != nullptr && isAncestorOf(now)) Q_EMIT ActiveChanged();
    // A menu that was given up leaves the keyboard to the window, where nothing takes it.
    if (now == window()) QTimer::singleShot(0, this, &BrowserArea::TakeIdleKeys);
  });
}

BrowserArea::~BrowserArea() {
  ends_ = true;
  for (QMdiSubWindow* child : subWindowList()) delete child;
  delete unseen_;
}

void BrowserArea::Add(BrowserWindow* window) {
  // Not at each reload: what the user has selected in the tree meanwhile stays selected.
  connect(window, &BrowserWindow::Loaded, this, [this, window, shown = QString()]() mutable {
    const QString now = window->Tag().Text() + u' ' + window->Folder().Search().text;
    if (std::exchange(shown, now) != now) Q_EMIT ActiveChanged();
  });
  // Its tab may have been left before its page came.
  connect(window, &BrowserWindow::Loaded, this, &BrowserArea::RestHidden);
  connect(&window->Folder(), &ShownFolder::ChosenChanged, this, &BrowserArea::ChosenChanged);
  connect(window, &BrowserWindow::StepWanted, this, &BrowserArea::StepWanted);
  QMdiSubWindow* frame = addSubWindow(window);
  frame->setAttribute(Qt::WA_DeleteOnClose);
  // A web page calls itself what it likes, also by the name of a folder.
  const auto showKind = [window, frame] {
    frame->setWindowIcon(
        Icon(window->IsLocal() ? QStringLiteral("folder") : QStringLiteral("bookmark")));
  };
  showKind();
  connect(window, &BrowserWindow::Begun, frame, showKind);
  connect(window, &BrowserWindow::Loaded, frame, showKind);
}

void BrowserArea::AddUnseen(BrowserWindow* window) const {
  window->setParent(unseen_);
}

QList<BrowserWindow*> BrowserArea::Browsers() const {
  QList<BrowserWindow*> browsers;
  for (const QMdiSubWindow* frame : subWindowList()) {
    if (BrowserWindow* browser = In(frame)) browsers.append(browser);
  }
  return browsers;
}

BrowserWindow* BrowserArea::Active() const {
  if (ends_) return nullptr;
  const QMdiSubWindow* frame = currentSubWindow();  // also while another window is in front
  if (frame == nullptr && !subWindowList().isEmpty()) {
    frame = subWindowList(ActivationHistoryOrder).last();  // the oldest comes first
  }
  BrowserWindow* browser = In(frame);
  return browser != nullptr && browser->IsLocal() ? browser : nullptr;
}

BrowserWindow* BrowserArea::Named(const QString& name, const BrowserWindow* asking) const {
  for (BrowserWindow* browser : Browsers()) {
    if (browser != asking && !browser->Dust() && browser->Web().WindowName() == name)
      return browser;
  }
  return nullptr;
}

Arrangement BrowserArea::Current() const {
  return Placement(*PlacementBag(context_, kMainPlacement)).Arranged();
}

void BrowserArea::Arrange(Arrangement arrangement) {
  Placement::SetArrangement(*PlacementBag(context_, kMainPlacement), arrangement);
  ArrangeAsKept();
}

void BrowserArea::ArrangeAsKept() {
  const Arrangement arrangement = Current();
  const auto mode = arrangement == Arrangement::Tabs ? TabbedView : SubWindowView;
  if (viewMode() != mode) setViewMode(mode);
  if (auto* tabs = findChild<QTabBar*>()) {
    tabs->setExpanding(false);
    tabs->setElideMode(Qt::ElideRight);
  }
  if (arrangement == Arrangement::Cascaded) cascadeSubWindows();
  if (arrangement == Arrangement::Tiled) tileSubWindows();
  RestHidden();
}

// Without a page it says what to do.
void BrowserArea::paintEvent(QPaintEvent* event) {
  QMdiArea::paintEvent(event);
  if (!subWindowList().isEmpty()) return;
  QPainter painter(viewport());
  painter.fillRect(viewport()->rect(), palette().window());
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawText(viewport()->rect(), Qt::AlignCenter | Qt::TextWordWrap,
                   Ui::tr("左の一覧からフォルダを選ぶと、ここに表示します。"));
}

void BrowserArea::RestHidden() {
  if (ends_) return;
  const QList<QMdiSubWindow*> frames = subWindowList(ActivationHistoryOrder);
  const qsizetype resting = HasTabs() ? frames.size() - kAwakePages : 0;
  for (qsizetype i = 0; i < frames.size(); ++i) {
    BrowserWindow* browser = In(frames[i]);
    if (browser == nullptr) continue;
    i < resting ? browser->Resting().Begin() : browser->Resting().Wake();
    browser->Folder().Cover(HasTabs() && i + 1 < frames.size());
  }
}

// Who goes to another tab goes on in its page. Who comes back from another program goes on where he
// was, which may be a text box.
void BrowserArea::GiveKeysToPage() {
  const QMdiSubWindow* frame = activeSubWindow();
  if (ends_ || frame == nullptr || !HasTabs()) return;
  const QPointer<BrowserWindow> browser = In(frame);
  if (std::exchange(front_, browser) == browser || browser == nullptr) return;
  // Once the area has given the keyboard to whichever control comes first.
  QTimer::singleShot(0, this, [browser] {
    if (browser != nullptr) browser->Resting().TakeKeys();
  });
}

void BrowserArea::TakeIdleKeys() {
  BrowserWindow* browser = Active();
  if (!ends_ && browser != nullptr && QApplication::focusWidget() == window())
    browser->Resting().TakeKeys();
}

void BrowserArea::Opened(const SerialId& folder, BrowserWindow* window) {
  if (std::exchange(expected_, {}) == folder) preview_ = window;
}

bool BrowserArea::ShowInPreview(const SerialId& folder) {
  if (preview_ == nullptr || preview_->Dust()) return false;
  preview_->ShowFolder(folder);
  preview_->Activate();
  return true;
}

void BrowserArea::RefreshFolders() {
  for (BrowserWindow* browser : Browsers()) {
    if (browser->IsLocal()) browser->Refresh();
  }
}

bool BrowserArea::RefreshFolder(const SerialId& folder, bool isGone) {
  bool anyStays = false;
  bool anyCloses = false;
  for (BrowserWindow* browser : Browsers()) {
    const bool isItsPage = browser->IsLocal() && browser->Tag() == folder;
    anyStays = anyStays || !isItsPage || !isGone;
    anyCloses = anyCloses || (isItsPage && isGone);
    if (isItsPage)
      isGone ? static_cast<void>(browser->parentWidget()->close()) : browser->Refresh();
  }
  return anyStays || !anyCloses;
}

}  // namespace vorn
