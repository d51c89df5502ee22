#include "present/window/engine/engine_view.h"

#include <QChildEvent>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QPointer>
#include <QWebEngineDownloadRequest>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineView>
#include <utility>

#include "kit/window/key_frame.h"
#include "present/window/engine/browser_profiles.h"
#include "present/window/engine/link_page.h"
#include "present/window/engine/script_bar.h"

namespace vorn {

namespace {

// The key, or what the window system makes of it besides.
bool IsMenuKey(const QEvent& event) {
  if (event.type() == QEvent::KeyPress) {
    return static_cast<const QKeyEvent&>(event).key() == Qt::Key_Menu;
  }
  return event.type() == QEvent::ContextMenu &&
         static_cast<const QContextMenuEvent&>(event).reason() == QContextMenuEvent::Keyboard;
}

}  // namespace

EngineView::EngineView(Context& context, const BrowserProfiles& profiles, QWidget& window)
    : profiles_(profiles), window_(window), scripts_(new ScriptBar(context, profiles.Sites())) {
  MakeView();
  connect(profiles.Web(), &QWebEngineProfile::downloadRequested, this,
          [this](const QWebEngineDownloadRequest* request) {
            if (request->page() == page_) Q_EMIT links_.DownloadRefused();
          });
}

void EngineView::MakeView() {
  view_ = new QWebEngineView(&window_);
  view_->setObjectName(QStringLiteral("wbUrl"));
  view_->setContextMenuPolicy(Qt::CustomContextMenu);
  view_->installEventFilter(this);
  for (QObject* child : view_->children()) child->installEventFilter(this);
  new KeyFrame(*view_);
  connect(view_, &QWebEngineView::loadStarted, this, &EngineView::LoadBegan);
  connect(view_, &QWebEngineView::printFinished, this, &EngineView::PrintEnded);
  connect(view_, &QWebEngineView::loadFinished, this, &EngineView::LoadEnded);
  connect(view_, &QWebEngineView::urlChanged, this, &EngineView::PlaceChanged);
  connect(view_, &QWebEngineView::titleChanged, this, &EngineView::PlaceChanged);
  connect(view_, &QWidget::customContextMenuRequested, this,
          [this](const QPoint& at) { Q_EMIT MenuWanted(view_->mapToGlobal(at)); });
}

// The engine takes the menu's key for a click in its corner; what it is for is the current row.
//
// Who comes to a folder's page by Tab is in its current row. The engine would give the keyboard to
// the first link and scroll there.
bool EngineView::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::ChildAdded && watched == view_) {
    // What the engine draws on, which has the view's keys.
    static_cast<QChildEvent*>(event)->child()->installEventFilter(this);
  }
  if (isLocal_ && IsMenuKey(*event)) {
    if (event->type() == QEvent::KeyPress) Q_EMIT KeyMenuWanted();
    return true;
  }
  if (event->type() != QEvent::FocusIn || page_ == nullptr || !isLocal_) return false;
  const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
  if (reason != Qt::TabFocusReason && reason != Qt::BacktabFocusReason) return false;
  QFocusEvent plain(QEvent::FocusIn, Qt::OtherFocusReason);
  QCoreApplication::sendEvent(watched, &plain);
  return true;
}

// A page belongs to one engine profile for life, so a window that changes between a folder and the
// web changes its page.
void EngineView::Use(bool local) {
  if (view_ == nullptr) {
    MakeView();
    Q_EMIT Remade();
  }
  isLocal_ = local;
  QWebEngineProfile* profile = local ? profiles_.Local() : profiles_.Web();
  if (page_ != nullptr && page_->profile() == profile) return;
  delete page_;
  page_ = new LinkPage(profile, view_);
  if (local) {
    StandOn(true);
    scripts_->hide();
  } else {
    scripts_->Attach(*page_);
  }
  view_->setPage(page_);
  links_.Follow(*page_);
  connect(page_, &QWebEnginePage::renderProcessTerminated, this, &EngineView::Crashed);
}

void EngineView::StandOn(bool offersDark) {
  page_->setBackgroundColor(offersDark ? view_->palette().color(QPalette::Base)
                                       : QColor(Qt::white));
}

void EngineView::LetGo() {
  if (view_ == nullptr) return;
  view_->disconnect(this);
  if (page_ != nullptr) {
    page_->disconnect(this);
    page_->disconnect(&links_);
  }
  delete std::exchange(view_, nullptr);
  page_ = nullptr;
}

// The engine may report the end of its page as the end of a loading, and answer what it was asked.
void EngineView::Close() {
  closed_ = true;
  LetGo();
}

bool EngineView::ShowsFolder() const {
  return page_ != nullptr && page_->HasLocalPage() && fontStyle_ == profiles_.FontStyle();
}

void EngineView::Load(const QUrl& url, bool local, const QString& first) {
  page_->SetLocalPage(local ? url : QUrl());
  page_->SetOwnText(false);
  fontStyle_ = profiles_.FontStyle();
  page_->scripts().clear();
  if (!first.isEmpty()) {
    QWebEngineScript script;
    script.setSourceCode(first);
    script.setWorldId(QWebEngineScript::ApplicationWorld);
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    page_->scripts().insert(script);
  }
  view_->load(url);
}

void EngineView::ShowHtml(const QString& html) {
  page_->SetLocalPage(QUrl());
  page_->SetOwnText(true);
  StandOn(true);
  view_->setHtml(QStringLiteral("<meta charset=\"utf-8\"><meta name=\"color-scheme\" "
                                "content=\"light dark\"><body style=\"font-family:sans-serif;"
                                "margin:2em;line-height:1.7\">") +
                 html);
}

void EngineView::Ask(const QString& script, const std::function<void(const QVariant&)>& then) {
  if (page_ == nullptr) return then({});
  page_->runJavaScript(script, QWebEngineScript::ApplicationWorld,
                       [self = QPointer<EngineView>(this), then](const QVariant& answer) {
                         if (self != nullptr && !self->closed_) then(answer);
                       });
}

}  // namespace vorn
