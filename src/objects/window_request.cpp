#include "objects/window_request.h"

#include "objects/object_types.h"

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

// What stands in "status".
struct WindowWord {
  WantedWindow window;
  QString word;
};

const WindowWord kWindowWords[] = {{WantedWindow::Pages, QStringLiteral("browser")},
                                   {WantedWindow::Message, QStringLiteral("mail")},
                                   {WantedWindow::Settings, fixed_serial::kSettings.Text()},
                                   {WantedWindow::Rules, fixed_serial::kRules.Text()}};

// What stands in "after"; any other word means none as well.
struct StepWord {
  AfterStep step;
  QString word;
};

const StepWord kStepWords[] = {{AfterStep::None, QStringLiteral("dummy")},
                               {AfterStep::ApplySettings, QStringLiteral("public")},
                               {AfterStep::DeleteObject, QStringLiteral("delete")},
                               {AfterStep::RenameObject, QStringLiteral("rename")}};

}  // namespace

void WindowRequest::BeginDialog(Disk& bag, const QString& type) {
  Begin(bag, Kind::Dialog, type);
}

void WindowRequest::BeginWindow(Disk& bag, WantedWindow window) {
  for (const WindowWord& known : kWindowWords) {
    if (known.window == window) Begin(bag, Kind::Window, known.word);
  }
}

void WindowRequest::Begin(Disk& bag, Kind kind, const QString& status) {
  bag.Let(kMode, KindWord(kind));
  bag.Let(kStatus, status);
}

DiskPtr WindowRequest::NewMessages(const SerialId& serial, const SerialIds& messages) {
  auto request = std::make_shared<Disk>(serial);
  Begin(*request, Kind::MessageBox, kNewMessages);
  request->Let(kMessage, LinesOf(messages));
  return request;
}

bool WindowRequest::Is(Kind kind) const {
  return bag_.Text(kMode) == KindWord(kind);
}

bool WindowRequest::IsForNewMessages() const {
  return Is(Kind::MessageBox) && bag_.Text(kStatus) == kNewMessages;
}

WantedWindow WindowRequest::Wanted() const {
  const QString status = bag_.Text(kStatus);
  for (const WindowWord& known : kWindowWords) {
    if (known.word == status) return known.window;
  }
  return WantedWindow::Object;
}

AfterStep WindowRequest::After() const {
  const QString after = bag_.Text(kAfter);
  for (const StepWord& known : kStepWords) {
    if (known.word == after) return known.step;
  }
  return AfterStep::None;
}

void WindowRequest::SetAfter(Disk& bag, AfterStep after) {
  for (const StepWord& known : kStepWords) {
    if (known.step == after) bag.Let(kAfter, known.word);
  }
}

RequestShow WindowRequest::Show(RequestShow byDefault) const {
  return static_cast<RequestShow>(bag_.Number(kShow, byDefault));
}

}  // namespace vorn
