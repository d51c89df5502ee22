#include "frame/request_queue.h"

#include "mail/mail_request_bag.h"
#include "mail/message_id.h"
#include "objects/object_request.h"
#include "objects/object_types.h"
#include "present/page_request.h"

namespace vorn {

bool RequestQueue::PostDialogRequest(const DialogRequest& request) {
  if (request.status.isEmpty()) return false;
  const SerialId serialId = request.serialId.IsEmpty()
                                ? context_.Data.NewSerialID(request.status + u'_')
                                : request.serialId;
  const DatabaseKind db =
      request.status == object_type::kProfile ? DatabaseKind::Navigator : DatabaseKind::Profile;
  const auto bag = std::make_shared<Disk>(serialId);
  WindowRequest::BeginDialog(*bag, request.status);
  WindowRequest::SetShow(*bag, request.show);
  if (request.after != AfterStep::None) WindowRequest::SetAfter(*bag, request.after);
  ObjectRequest::SetDatabase(*bag, db);
  ObjectRequest::SetParent(*bag, request.parent);
  ObjectRequest::SetNew(*bag, request.isNew);
  ObjectRequest::SetEvent(*bag, request.event);
  ObjectRequest::SetName(*bag, request.name);
  ObjectRequest::SetCondition(*bag, request.condition);
  Post(bag);
  return true;
}

void RequestQueue::PostBrowserRequest(const BrowserRequest& request) {
  const auto bag = std::make_shared<Disk>(request.serialId);
  WindowRequest::BeginWindow(*bag, WantedWindow::Pages);
  WindowRequest::SetShow(*bag, request.show);
  WindowRequest::SetAfter(*bag, AfterStep::None);
  PageRequest::Begin(*bag, request.url, request.local, request.exec);
  if (!request.title.isEmpty()) PageRequest::SetTitle(*bag, request.title);
  Post(bag);
}

bool RequestQueue::PostMailRequest(const MailRequest& request) {
  const SerialId serialId =
      request.serialId.IsEmpty() ? NewMessageSerialID(context_) : request.serialId;
  const auto bag = std::make_shared<Disk>(serialId);
  MailRequestBag::Begin(*bag, request);
  Post(bag);
  return true;
}

void RequestQueue::RemoveFront() {
  if (!requests_.empty()) requests_.pop_front();
}

}  // namespace vorn
