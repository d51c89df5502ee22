#include "frame/request_queue.h"

#include "mail/message_id.h"
#include "objects/object_types.h"
#include "storage/databases.h"

namespace vorn {

namespace {

using Values = std::initializer_list<std::pair<const char16_t*, QVariant>>;

DiskPtr MakeRequest(const QString& serialId, Values values) {
  auto request = std::make_shared<Disk>(serialId);
  for (const auto& [key, value] : values) request->Let(QString::fromUtf16(key), value);
  return request;
}

}  // namespace

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
  Post(MakeRequest(serialId, {{u"mode", QStringLiteral("dialog")},
                              {u"status", request.status},
                              {u"db", static_cast<int>(db)},
                              {u"show", request.show},
                              {u"after", request.after},
                              {u"parent", request.parent},
                              {u"new", request.isNew},
                              {u"event", request.event},
                              {u"name", request.name},
                              {u"condition", request.condition}}));
  return true;
}

void RequestQueue::PostBrowserRequest(const BrowserRequest& request) {
  Post(MakeRequest(request.serialId, {{u"mode", QStringLiteral("window")},
                                      {u"after", QStringLiteral("dummy")},
                                      {u"status", QStringLiteral("browser")},
                                      {u"url", request.url},
                                      {u"local", request.local},
                                      {u"show", request.show},
                                      {u"exec", request.exec}}));
}

bool RequestQueue::PostMailRequest(const MailRequest& request) {
  const QString serialId =
      request.serialId.isEmpty() ? NewMessageSerialID(context_) : request.serialId;
  const DiskPtr bag = MakeRequest(serialId, {{u"mode", QStringLiteral("window")},
                                             {u"status", QStringLiteral("mail")},
                                             {u"db", request.db},
                                             {u"file", request.file},
                                             {u"open", request.open},
                                             {u"password", request.password},
                                             {u"show", request.show},
                                             {u"new", request.isNew},
                                             {u"direct", request.open != 0},
                                             {u"update", true},
                                             {u"AutoSend", request.autoSend},
                                             {u"event", request.event}});
  if (!request.mailto.isEmpty()) bag->Let(QStringLiteral("mailto"), request.mailto);
  Post(bag);
  return true;
}

void RequestQueue::RemoveFront() {
  if (!requests_.empty()) requests_.pop_front();
}

}  // namespace vorn
