#include "objects/window_request.h"

namespace vorn {
namespace {

const QString kNewMessages = QStringLiteral("newmessage");

QString KindWord(WindowRequest::Kind kind) {
  switch (kind) {
    case WindowRequest::Kind::Dialog:
      return QStringLiteral("dialog");
    case WindowRequest::Kind::Window:
      return QStringLiteral("window");
    case WindowRequest::Kind::MessageBox:
      return QStringLiteral("messagebox");
  }
  return {};
}

}  // namespace

void WindowRequest::Begin(Disk& bag, Kind kind, const QString& status) {
  bag.Let(kMode, KindWord(kind));
  bag.Let(kStatus, status);
}

DiskPtr WindowRequest::NewMessages(const QString& serial, const QString& serials) {
  auto request = std::make_shared<Disk>(serial);
  Begin(*request, Kind::MessageBox, kNewMessages);
  request->Let(kMessage, serials);
  return request;
}

bool WindowRequest::Is(Kind kind) const {
  return bag_.Text(kMode) == KindWord(kind);
}

bool WindowRequest::IsForNewMessages() const {
  return Is(Kind::MessageBox) && Status() == kNewMessages;
}

RequestShow WindowRequest::Show(RequestShow byDefault) const {
  return static_cast<RequestShow>(bag_.Number(kShow, byDefault));
}

}  // namespace vorn
