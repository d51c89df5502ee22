#pragma once

#include <QObject>
#include <vector>

#include "objects/request_window.h"
#include "present/message_list_page.h"
#include "present/window/engine/browser_profiles.h"
#include "storage/context.h"

class QWidget;

namespace vorn {

class BrowserArea;
class BrowserWindow;
class EventLog;
class MessageHost;
class WebHost;

/// The windows that requests open: makes them and knows those that are open. What pages are made
/// of and what they are shown with is shared by all of them.
class RequestWindows {
 public:
  /// Pages stand in `area`, property windows before `window`. `pagesHost` and `messagesHost` have
  /// to outlive the windows.
  RequestWindows(Context& context, QWidget& window, BrowserArea& area, EventLog& events,
                 WebHost& pagesHost, MessageHost& messagesHost);

  /// The window that a request wants.
  RequestWindow* Create(const Disk& request);
  BrowserWindow* NewBrowser();
  /// Those that are open, in their order.
  const std::vector<RequestWindow*>& Open() const { return open_; }
  /// Whether there is one with that tag.
  bool HasOpen(const SerialId& tag) const;
  /// Unloads those that are done with.
  void UnloadDust() const;

  MessageListPages& Pages() { return pages_; }
  BrowserProfiles& Profiles() { return profiles_; }

 private:
  BrowserWindow* CreateBrowser(const Disk& request);
  BrowserWindow* NewUnseenBrowser();
  template <class Window>
  Window* Tracked(Window* window) {
    Track(window, window);
    return window;
  }
  void Track(QObject* object, RequestWindow* window);

  Context& context_;
  QWidget& window_;
  BrowserArea& area_;
  EventLog& events_;
  WebHost& pagesHost_;
  MessageHost& messagesHost_;
  MessageListPages pages_;
  BrowserProfiles profiles_;
  std::vector<RequestWindow*> open_;
  QObject tracker_;  // hears of their ends as long as there is a list of them
};

}  // namespace vorn
