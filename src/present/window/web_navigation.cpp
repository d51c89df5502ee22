#include "present/window/web_navigation.h"

#include <QTimer>
#include <QWebEngineHistory>
#include <QWebEngineView>

#include "kit/window/plain_text.h"
#include "present/page_request.h"
#include "present/window/browser_window.h"
#include "present/window/engine/engine_view.h"
#include "present/window/engine/link_page.h"
#include "present/window/page/page_loader.h"
#include "present/window/toolbar/folder_toolbar.h"
#include "present/window/toolbar/location_box.h"
#include "present/window/web_host.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kHoldMs = 1000;

}  // namespace

WebNavigation::WebNavigation(PageRequest& request, EngineView& engine, PageLoader& loader,
                             FolderToolbar& toolbar, WebHost& host, BrowserWindow& window)
    : request_(request),
      engine_(engine),
      loader_(loader),
      toolbar_(toolbar),
      host_(host),
      window_(window) {
  connect(&toolbar_, &FolderToolbar::BeforeWanted, this, [this] { Turn(-1); });
  connect(&toolbar_, &FolderToolbar::NextWanted, this, [this] { Turn(1); });
  connect(&toolbar_.Location(), &LocationBox::Typed, this,
          [this](const QString& address) { GoTo(QUrl::fromUserInput(address).toString()); });
  connect(&loader_, &PageLoader::Loaded, this, &WebNavigation::ShowPlace);
  ConnectEngine();
}

void WebNavigation::ConnectEngine() {
  connect(&engine_, &EngineView::PlaceChanged, this, &WebNavigation::ShowPlace);
  connect(&engine_.Links(), &PageLinks::DownloadRefused, this, [this] {
    host_.Tell(Ui::tr(
        "このウィンドウではファイルを保存できません。システムのブラウザーで開いてください。"));
  });
  connect(&engine_.Links(), &PageLinks::MailtoFollowed, this, [this](const QString& url) {
    host_.WriteTo(url);
    if (request_.State().IsNew()) request_.State().BeDust();
  });
  // The window is told its target's name by the engine, and only by asking.
  connect(&engine_.Links(), &PageLinks::FirstNavigation, this, [this](const QUrl& url) {
    engine_.Ask(QStringLiteral("window.name"),
                [this, url](const QVariant& name) { TakeName(name.toString(), url); });
  });
  engine_.Links().OnNewWindow([this] { return host_.NewBrowserWindow()->Web().BecomeNewWindow(); });
}

void WebNavigation::GoTo(const QString& address) {
  if (request_.IsLocal()) return;
  request_.SetUrl(address);
  loader_.Load();
}

void WebNavigation::Turn(int step) {
  if (request_.IsLocal()) return;
  engine_.View()->triggerPageAction(step < 0 ? QWebEnginePage::Back : QWebEnginePage::Forward);
}

QString WebNavigation::WindowName() const {
  return request_.State().WindowName();
}

LinkPage* WebNavigation::BecomeNewWindow() {
  request_.State().SetNew(true);
  engine_.Use(false);
  engine_.Page()->HoldFirstNavigation();
  // One that is filled without going anywhere is shown as well.
  QTimer::singleShot(kHoldMs, this, [this] {
    if (request_.State().IsNew() && !request_.State().IsDust()) TakeName(QString(), QUrl());
  });
  return engine_.Page();
}

// What belongs to a window that is there already goes to it; else this one keeps the name.
void WebNavigation::TakeName(const QString& name, const QUrl& url) {
  if (!name.isEmpty() && request_.State().IsNew() && !url.isEmpty()) {
    if (BrowserWindow* named = host_.NamedWindow(name, &window_)) {
      named->Web().GoTo(url.toString());
      named->Activate();
      request_.State().BeDust();
      return;
    }
  }
  if (!name.isEmpty()) request_.State().SetWindowName(name);
  request_.State().SetNew(false);
  if (!url.isEmpty()) GoTo(url.toString());
  window_.ShowModeless();
  host_.BrowserOpened();
}

// It may go on without being loaded anew.
void WebNavigation::ShowPlace() {
  if (request_.IsLocal()) return;
  const QWebEngineView* view = engine_.View();
  toolbar_.Location().Follow(view->url().toString());
  window_.setWindowTitle(ShownText(view->title(), kMostInTitle));
  request_.State().SetNeighbours(view->history()->canGoBack(), view->history()->canGoForward());
  window_.ControlToolbarUpdate();
}

}  // namespace vorn
