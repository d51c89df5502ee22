#include "frame/window/panes/request_windows.h"

#include <QApplication>
#include <algorithm>

#include "events/event_log.h"
#include "frame/window/panes/browser_area.h"
#include "mail/window/message_window.h"
#include "objects/object_types.h"
#include "objects/window/objects_window.h"
#include "objects/window/settings_window.h"
#include "objects/window_request.h"
#include "present/page_request.h"
#include "present/window/browser_window.h"
#include "present/window/web_host.h"
#include "transfer/window/rule_window.h"

namespace vorn {

RequestWindows::RequestWindows(Context& context, QWidget& window, BrowserArea& area,
                               EventLog& events, WebHost& pagesHost, MessageHost& messagesHost)
    : context_(context),
      window_(window),
      area_(area),
      events_(events),
      pagesHost_(pagesHost),
      messagesHost_(messagesHost),
      pages_(context),
      profiles_(context.AppFolder + QStringLiteral("web")) {}

RequestWindow* RequestWindows::Create(const Disk& request) {
  switch (WindowRequest(request).Wanted()) {
    case WantedWindow::Pages:
      return CreateBrowser(request);
    case WantedWindow::Message:
      return Tracked(new MessageWindow(context_, messagesHost_, events_));
    case WantedWindow::Settings:
      return Tracked(new SettingsWindow(context_, &window_));
    case WantedWindow::Rules:
      return Tracked(new RuleWindow(context_, &window_));
    case WantedWindow::Object:
      break;
  }
  // Over the message for which an account is made, which otherwise would lie behind.
  auto* message = qobject_cast<MessageWindow*>(QApplication::activeWindow());
  return Tracked(new ObjectsWindow(context_, events_, message == nullptr ? &window_ : message));
}

// A page that is only printed is none of those that the user arranges and acts on.
BrowserWindow* RequestWindows::CreateBrowser(const Disk& request) {
  if (PageRequest::IsForPrinting(request)) return NewUnseenBrowser();
  BrowserWindow* window = NewBrowser();
  area_.Opened(request.Serial(), window);
  return window;
}

BrowserWindow* RequestWindows::NewBrowser() {
  auto* window = new BrowserWindow(context_, pages_, profiles_, pagesHost_);
  Track(window, window);
  area_.Add(window);
  return window;
}

BrowserWindow* RequestWindows::NewUnseenBrowser() {
  auto* window = new BrowserWindow(context_, pages_, profiles_, pagesHost_);
  area_.AddUnseen(window);
  Track(window, window);
  return window;
}

void RequestWindows::Track(QObject* object, RequestWindow* window) {
  open_.push_back(window);
  QObject::connect(object, &QObject::destroyed, &tracker_,
                   [this, window] { std::erase(open_, window); });
}

bool RequestWindows::HasOpen(const SerialId& tag) const {
  return std::any_of(open_.begin(), open_.end(),
                     [&](const RequestWindow* window) { return window->Tag() == tag; });
}

void RequestWindows::UnloadDust() const {
  const std::vector<RequestWindow*> open = open_;
  for (RequestWindow* window : open) {
    if (window->Dust()) window->Unload();
  }
}

}  // namespace vorn
