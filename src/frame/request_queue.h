#pragma once

#include <QString>
#include <deque>
#include <functional>

#include "mail/mail_request.h"
#include "objects/window_request.h"
#include "storage/context.h"

namespace vorn {

struct DialogRequest {
  SerialId serialId;
  QString status;
  RequestShow show = kShowModal;
  bool isNew = false;
  AfterStep after = AfterStep::None;
  SerialId parent;
  SerialId event;
  QString name;       ///< of a new object
  QString condition;  ///< a line that the window's list begins with
};

struct BrowserRequest {
  SerialId serialId;
  QString url;
  bool local = false;
  RequestShow show = kShowModeless;
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
