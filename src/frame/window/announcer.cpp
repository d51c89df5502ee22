#include "frame/window/announcer.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTimer>
#include <QWebEnginePage>
#include <QWebEngineScript>
#include <QWebEngineView>
#include <QWindow>
#include <cstdio>
#include <memory>
#include <utility>

#include "frame/window/parent_window.h"
#include "present/window/browser_window.h"

namespace vorn {
namespace {

constexpr int kExposureLookMs = 20;
constexpr int kForgottenMs = 1000;

// How often the engine has to begin a frame until all that came before the first one is on the
// screen: it runs at most two frames ahead of what is shown.
constexpr char kPaintScript[] = R"js((() => {
  const frames = window.vornFrames = window.vornFrames || {};
  if (!(%1 in frames)) {
    frames[%1] = 0;
    const begun = () => { if (++frames[%1] < 4) requestAnimationFrame(begun); };
    requestAnimationFrame(begun);
  }
  return frames[%1] >= 4;
})())js";

QString Name(const QObject& object) {
  const QString name = object.objectName();
  return name.isEmpty() ? QString::fromLatin1(object.metaObject()->className()) : name;
}

bool IsModifier(int key) {
  return key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt ||
         key == Qt::Key_Meta || key == Qt::Key_AltGr;
}

QWidget* TopLevelOf(const QWindow* window) {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (window != nullptr && widget->windowHandle() == window) return widget;
  }
  return nullptr;
}

// The named control around a widget: the engine, say, gives the keyboard to a child of its view.
const QObject* NamedControl(const QWidget* widget) {
  const QWidget* control = widget;
  while (control != nullptr && control->objectName().isEmpty()) control = control->parentWidget();
  return control != nullptr ? control : widget;
}

QList<QWidget*> VisibleWindows() {
  QList<QWidget*> windows = QApplication::topLevelWidgets();
  windows.removeIf(
      [](const QWidget* window) { return !window->isVisible() || window->isMinimized(); });
  return windows;
}

// There no page is painted, although the toolkit calls it visible.
bool IsBehindTab(const QWidget& view) {
  const QWidget* frame = &view;
  while (frame != nullptr && qobject_cast<const QMdiSubWindow*>(frame) == nullptr) {
    frame = frame->parentWidget();
  }
  const auto* child = qobject_cast<const QMdiSubWindow*>(frame);
  return child != nullptr && child->mdiArea()->viewMode() == QMdiArea::TabbedView &&
         child->mdiArea()->currentSubWindow() != child;
}

QList<QPointer<QWebEnginePage>> VisiblePages() {
  QList<QPointer<QWebEnginePage>> pages;
  for (const QWidget* window : VisibleWindows()) {
    for (const auto* view : window->findChildren<QWebEngineView*>()) {
      if (view->isVisible() && !IsBehindTab(*view)) pages.append(view->page());
    }
  }
  return pages;
}

}  // namespace

Announcer::Announcer(Say say) : say_(std::move(say)) {
  qApp->installEventFilter(this);
  connect(qApp, &QGuiApplication::focusWindowChanged, this, &Announcer::FocusMoved);
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, const QWidget* now) {
    if (now != nullptr) say_(QStringLiteral("focus ") + Name(*NamedControl(now)));
  });
}

void Announcer::ToStandardOutput(const QString& line) {
  std::fputs(qPrintable(line + u'\n'), stdout);
  std::fflush(stdout);
}

bool Announcer::eventFilter(QObject* watched, QEvent* event) {
  const QEvent::Type type = event->type();
  // Each key comes to a window of the window system first; a shortcut ends it there.
  if (watched->isWindowType() && event->spontaneous() &&
      (type == QEvent::ShortcutOverride || type == QEvent::KeyPress)) {
    const auto& key = *static_cast<QKeyEvent*>(event);
    if (key.key() == Qt::Key_Pause) {
      return type == QEvent::KeyPress && TakeProbe(key.modifiers() & Qt::ShiftModifier);
    }
    if (type == QEvent::ShortcutOverride && !IsModifier(key.key())) ++keys_;
  }
  if (watched->isWidgetType()) WindowEvent(*static_cast<QWidget*>(watched), type);
  return false;
}

void Announcer::WindowEvent(QWidget& window, int type) {
  if (type == QEvent::EnabledChange && window.isEnabled() && !window.objectName().isEmpty() &&
      qobject_cast<QAbstractButton*>(&window) != nullptr) {
    say_(QStringLiteral("enabled ") + Name(window));
  }
  if (type == QEvent::Polish) {
    if (auto* browser = qobject_cast<BrowserWindow*>(&window)) FollowBrowser(*browser);
    if (auto* view = qobject_cast<QWebEngineView*>(&window)) FollowView(*view);
    if (auto* parent = qobject_cast<ParentWindow*>(&window)) FollowParent(*parent);
  }
  if (!window.isWindow() || window.windowType() == Qt::ToolTip) return;
  if (type == QEvent::Show) say_(QStringLiteral("shown ") + Name(window));
  if (type == QEvent::Hide) say_(QStringLiteral("closed ") + Name(window));
}

void Announcer::FollowView(QWebEngineView& view) {
  connect(&view, &QWebEngineView::loadFinished, this, [this, &view](bool ok) {
    if (ok) say_(QStringLiteral("loaded ") + Name(view));
  });
}

void Announcer::FollowBrowser(BrowserWindow& browser) {
  connect(&browser, &BrowserWindow::Loaded, this, [this, &browser](bool ok) {
    if (ok && browser.IsLocal()) PageLoaded(browser);
  });
}

void Announcer::FollowParent(ParentWindow& parent) {
  connect(&parent.Traffic().Control(), &Pop::Idle, this, [this, &parent] {
    const ReceiveCounts& counts = parent.Traffic().Events().Counts();
    say_(QStringLiteral("session ended received %1 sent %2 errors %3")
             .arg(counts.stored)
             .arg(counts.sent)
             .arg(counts.errors));
  });
}

void Announcer::FocusMoved(const QWindow* window) {
  const QWidget* widget = TopLevelOf(window);
  say_(QStringLiteral("active ") + (widget == nullptr ? QStringLiteral("-") : Name(*widget)));
}

void Announcer::PageLoaded(BrowserWindow& browser) {
  auto* view = browser.findChild<QWebEngineView*>();
  if (view == nullptr) return;
  const QString folder = browser.Tag().Text();
  const QPointer<QWebEnginePage> page = view->page();
  WhenPainted(page, [this, page, folder] {
    if (page == nullptr) return;
    page->runJavaScript(QStringLiteral("window.vorn ? vorn.count() : 0"),
                        QWebEngineScript::ApplicationWorld,
                        [self = QPointer<Announcer>(this), folder](const QVariant& rows) {
                          if (self == nullptr) return;
                          self->say_(QStringLiteral("page %1 %2").arg(folder).arg(rows.toInt()));
                        });
  });
}

bool Announcer::TakeProbe(bool shift) {
  probes_.append(QStringLiteral("settled %1 %2").arg(shift ? 1 : 0).arg(keys_));
  if (answering_ == 0) Settle();
  return true;
}

// What the probes so far ask for, once everything that they have set off has come to rest.
void Announcer::Settle() {
  answering_ = probes_.size();
  QTimer::singleShot(0, this, &Announcer::AwaitExposure);
}

void Announcer::AwaitExposure() {
  for (const QWidget* window : VisibleWindows()) {
    const QWindow* handle = window->windowHandle();
    if (handle == nullptr || handle->isExposed()) continue;
    QTimer::singleShot(kExposureLookMs, this, &Announcer::AwaitExposure);
    return;
  }
  AwaitPages(VisiblePages());
}

void Announcer::AwaitPages(const QList<QPointer<QWebEnginePage>>& pages) {
  if (pages.isEmpty()) {
    Answer();
    return;
  }
  const QList<QPointer<QWebEnginePage>> others = pages.mid(1);
  WhenPainted(pages.first(), [this, others] { AwaitPages(others); });
}

void Announcer::Answer() {
  for (QWidget* window : VisibleWindows()) window->repaint();
  QGuiApplication::sync();
  for (; answering_ > 0; --answering_) say_(probes_.takeFirst());
  if (!probes_.isEmpty()) Settle();
}

void Announcer::WhenPainted(const QPointer<QWebEnginePage>& page,
                            const std::function<void()>& then) {
  Look(page, QString::fromLatin1(kPaintScript).arg(++paintings_), then);
}

// A page that goes, or is not shown any more, is not waited for; a new document in it is.
void Announcer::Look(const QPointer<QWebEnginePage>& page, const QString& script,
                     const std::function<void()>& then) {
  if (page == nullptr || !page->isVisible()) {
    then();
    return;
  }
  const auto isAnswered = std::make_shared<bool>(false);
  const auto goOn = [this, page, script, then, isAnswered](bool painted) {
    if (std::exchange(*isAnswered, true)) return;
    if (painted) {
      then();
    } else {
      QTimer::singleShot(kExposureLookMs, this,
                         [this, page, script, then] { Look(page, script, then); });
    }
  };
  page->runJavaScript(script, QWebEngineScript::ApplicationWorld,
                      [self = QPointer<Announcer>(this), goOn, page](const QVariant& painted) {
                        if (self == nullptr) return;
                        goOn(painted.toBool() && page != nullptr && !page->isLoading());
                      });
  // The engine forgets what it was asked when the document goes.
  QTimer::singleShot(kForgottenMs, this, [goOn] { goOn(false); });
}

}  // namespace vorn
