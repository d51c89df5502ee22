#include "frame/window/request_windows.h"

#include <algorithm>

#include "events/event_log.h"
#include "frame/window/browser_area.h"
#include "mail/window/message_window.h"
#include "objects/object_types.h"
#include "objects/window/objects_window.h"
#include "objects/window/settings_window.h"
#include "objects/window_request.h"
#include "present/page_request.h"
#include "present/window/browser_window.h"
#include "transfer/window/rule_window.h"

namespace vorn {

RequestWindows::RequestWindows(Context& context, QWidget& window, BrowserArea& area,
                               EventLog& events, BrowserHost& pagesHost, MessageHost& messagesHost)
    : context_(context),
      window_(window),
      area_(area),
      events_(events),
      pagesHost_(pagesHost),
      messagesHost_(messagesHost),
      pages_(context),
      profiles_(context.AppFolder + QStringLiteral("web")) {}

RequestWindow* RequestWindows::Create(const Disk& request) {
  const QString status = WindowRequest(request).Status();
  if (status == u"browser") {
    // A page that is only printed is none of those that the user arranges and acts on.
    if (PageRequest::IsForPrinting(request)) return NewUnseenBrowser();
    BrowserWindow* window = NewBrowser();
    area_.Opened(request.SerialID(), window);
    return window;
  }
  if (status == u"mail") {
    auto* window = new MessageWindow(context_, messagesHost_, events_);
    Track(window, window);
    return window;
  }
  EditingWindow* window = nullptr;
  if (status == fixed_serial::kSettings) {
    window = new SettingsWindow(context_, &window_);
  } else if (status == fixed_serial::kRules) {
    window = new RuleWindow(context_, &window_);
  } else {
    window = new ObjectsWindow(context_, events_, &window_);
  }
  Track(window, window);
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

bool RequestWindows::HasOpen(const QString& tag) const {
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
