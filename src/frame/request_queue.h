#pragma once

#include <QString>
#include <deque>
#include <functional>

#include "objects/window_request.h"
#include "storage/context.h"

namespace vorn {

/// What a mail request says besides the message: how it is opened and where it is stored.
struct MailRequest {
  int open = 0;  ///< the open mode
  QString serialId;
  bool isNew = false;
  int db = 3;
  QString file;
  QString password;
  int show = kShowModeless;
  bool autoSend = false;
  QString event;
  QString mailto;  ///< for a new message: a "mailto:" address that it begins with

  /// A new message to be written.
  static MailRequest New(const QString& mailto = {});
};

struct DialogRequest {
  QString serialId;
  QString status;
  int show = kShowModal;
  bool isNew = false;
  QString after;
  QString parent;
  QString event;
  QString name;       ///< of a new object
  QString condition;  ///< a line that the window's list begins with
};

struct BrowserRequest {
  QString serialId;
  QString url;
  bool local = false;
  int show = kShowModeless;
  QString exec;
  QString title;
};

/// The requests that wait to be executed, first in, first out. Nobody opens a window by himself:
/// everybody posts a request, and the dispatcher executes one per tick.
class RequestQueue {
 public:
  explicit RequestQueue(Context& context) : context_(context) {}

  /// Posts nothing and returns false when the status is empty.
  bool PostDialogRequest(const DialogRequest& request);
  void PostBrowserRequest(const BrowserRequest& request);
  bool PostMailRequest(const MailRequest& request);
  /// Posts a request that was built elsewhere.
  void Post(const DiskPtr& request) {
    requests_.push_back(request);
    if (posted_) posted_();
  }
  /// Called whenever something was posted.
  void OnPosted(std::function<void()> posted) { posted_ = std::move(posted); }

  bool IsEmpty() const { return requests_.empty(); }
  const DiskPtr& Front() const { return requests_.front(); }
  void RemoveFront();
  void Clear() { requests_.clear(); }

 private:
  Context& context_;
  std::deque<DiskPtr> requests_;
  std::function<void()> posted_;
};

}  // namespace vorn
