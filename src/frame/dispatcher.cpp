#include "frame/dispatcher.h"

#include <QScopedValueRollback>

#include "storage/bags/profile_bag.h"

namespace vorn {

void Dispatcher::Tick() {
  // The loop of a modal window goes on for a moment when it is closed.
  if (executing_ || queue_.IsEmpty() || !host_.IsEnabled()) return;
  const QScopedValueRollback<bool> inside(executing_, true);
  Execute(DiskPtr(queue_.Front()));
  queue_.RemoveFront();
}

void Dispatcher::Execute(const DiskPtr& request) {
  using Kind = WindowRequest::Kind;
  const WindowRequest wanted(*request);
  if (wanted.IsForNewMessages()) return host_.NotifyNewMessages(*request);
  const bool isWindow = wanted.Is(Kind::Window);
  if (!isWindow && !wanted.Is(Kind::Dialog)) return;
  if (isWindow && !wanted.OpensAnother() && ActivateOpenWindow(request->Serial())) return;
  RequestWindow* window = host_.CreateRequestWindow(*request);
  if (window == nullptr) return;
  if (!window->LoadDefaultProperty(request, wanted.Updates())) {
    window->Unload();
    return;
  }
  const RequestShow show = wanted.Show(window->IsChild() ? kShowModeless : kShowModal);
  if (show == kShowHidden || Show(*window, show)) RunAfter(*window, *request);
}

bool Dispatcher::ActivateOpenWindow(const SerialId& serialId) {
  for (RequestWindow* window : host_.OpenWindows()) {
    if (window->Tag() != serialId) continue;
    window->Activate();
    return true;
  }
  return false;
}

bool Dispatcher::Show(RequestWindow& window, RequestShow show) {
  const bool isChild = window.IsChild();  // asked before: a modal window is closed afterwards
  if (show == kShowModal) {
    window.ShowModal();
  } else {
    window.ShowModeless();
  }
  if (isChild) host_.ArrangeWindows();
  const bool cancelled = show == kShowModal && ProfileBag(*context_.Session).Answer().isEmpty();
  return !cancelled;
}

void Dispatcher::RunAfter(RequestWindow& window, const Disk& request) {
  switch (WindowRequest(request).After()) {
    case AfterStep::ApplySettings:
      return host_.ApplySettings();
    case AfterStep::DeleteObject:
      window.DeleteObject();
      break;
    case AfterStep::RenameObject:
      window.SetObjectText(host_.NodeText(request.Serial()));
      window.ConfirmObject();
      break;  // the node has the old name again when the new one was refused
    case AfterStep::None:
      break;
  }
  host_.RefreshNode(request.Serial());
}

}  // namespace vorn
