#pragma once

#include <QString>
#include <vector>

#include "frame/request_queue.h"
#include "objects/request_window.h"
#include "storage/context.h"

namespace vorn {

/// What the dispatcher asks of the main window.
class DispatchHost {
 public:
  virtual ~DispatchHost() = default;
  /// False while a modal window is open.
  virtual bool IsEnabled() const = 0;
  /// The open windows in their order.
  virtual std::vector<RequestWindow*> OpenWindows() const = 0;
  /// A new window for a request, the one that it wants. Null when there is no such window.
  virtual RequestWindow* CreateRequestWindow(const Disk& request) = 0;
  /// Arranges the child windows as the main window's saved state says.
  virtual void ArrangeWindows() = 0;
  virtual void NotifyNewMessages(const Disk& request) = 0;
  /// Rebuilds the periodic check and applies the settings to the open windows.
  virtual void ApplySettings() = 0;
  /// The text of the console tree's node with that key.
  virtual QString NodeText(const SerialId& serialId) const = 0;
  virtual void RefreshNode(const SerialId& serialId) = 0;
};

/// Executes the queue's requests, one per tick. A request stays at the front while it is executed,
/// so that one posted meanwhile waits behind it.
class Dispatcher {
 public:
  Dispatcher(Context& context, RequestQueue& queue, DispatchHost& host)
      : context_(context), queue_(queue), host_(host) {}

  void Tick();

 private:
  void Execute(const DiskPtr& request);
  bool ActivateOpenWindow(const SerialId& serialId);
  /// Whether the step afterwards is to follow.
  bool Show(RequestWindow& window, RequestShow show);
  void RunAfter(RequestWindow& window, const Disk& request);

  Context& context_;
  RequestQueue& queue_;
  DispatchHost& host_;
  bool executing_ = false;
};

}  // namespace vorn
