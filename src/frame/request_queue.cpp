#include "frame/request_queue.h"

#include "mail/message_bag.h"
#include "mail/message_id.h"
#include "mail/message_request.h"
#include "objects/object_request.h"
#include "objects/object_types.h"
#include "storage/databases.h"

namespace vorn {

MailRequest MailRequest::New(const QString& mailto) {
  MailRequest request;
  request.isNew = true;
  request.db = static_cast<int>(DatabaseKind::Mail);
  request.mailto = mailto;
  return request;
}

bool RequestQueue::PostDialogRequest(const DialogRequest& request) {
  if (request.status.isEmpty()) return false;
  const QString serialId = request.serialId.isEmpty()
                               ? context_.Data.NewSerialID(request.status + u'_')
                               : request.serialId;
  const DatabaseKind db =
      request.status == object_type::kProfile ? DatabaseKind::Navigator : DatabaseKind::Profile;
  const auto bag = std::make_shared<Disk>(serialId);
  WindowRequest::Begin(*bag, WindowRequest::Kind::Dialog, request.status);
  WindowRequest::SetShow(*bag, request.show);
  WindowRequest::SetAfter(*bag, request.after);
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
  WindowRequest::Begin(*bag, WindowRequest::Kind::Window, QStringLiteral("browser"));
  WindowRequest::SetShow(*bag, request.show);
  WindowRequest::SetAfter(*bag, QStringLiteral("dummy"));
  bag->Let(QStringLiteral("url"), request.url);
  bag->Let(QStringLiteral("local"), request.local);
  bag->Let(QStringLiteral("exec"), request.exec);
  if (!request.title.isEmpty()) bag->Let(QStringLiteral("title"), request.title);
  Post(bag);
}

bool RequestQueue::PostMailRequest(const MailRequest& request) {
  const QString serialId =
      request.serialId.isEmpty() ? NewMessageSerialID(context_) : request.serialId;
  const auto bag = std::make_shared<Disk>(serialId);
  WindowRequest::Begin(*bag, WindowRequest::Kind::Window, QStringLiteral("mail"));
  WindowRequest::SetShow(*bag, request.show);
  WindowRequest::SetOpensAnother(*bag, request.open != 0);
  WindowRequest::SetUpdates(*bag, true);
  MessageBag::SetDatabase(*bag, static_cast<DatabaseKind>(request.db));
  MessageBag::SetFile(*bag, request.file);
  MessageBag::SetPassword(*bag, request.password);
  MessageRequest message(*bag);
  message.SetMode(static_cast<OpenMode>(request.open));
  message.SetNew(request.isNew);
  message.SetSendsAtOnce(request.autoSend);
  message.SetEvent(request.event);
  message.SetMailto(request.mailto);
  Post(bag);
  return true;
}

void RequestQueue::RemoveFront() {
  if (!requests_.empty()) requests_.pop_front();
}

}  // namespace vorn
