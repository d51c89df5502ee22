#include "present/window/folder/page_messages.h"

#include <QPointer>
#include <QTimer>
#include <utility>

#include "kit/window/plain_text.h"
#include "kit/window/second_click.h"
#include "mail/window/host/message_host.h"
#include "objects/object_types.h"
#include "present/link_command.h"
#include "present/shown_page.h"
#include "present/window/folder/page_split.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr qsizetype kManyWindows = 5;

bool AgreesToOpen(QWidget& window, qsizetype windows) {
  const auto answer =
      ShowBox(&window, QMessageBox::Question,
              Ui::tr("メッセージ%n通をそれぞれのウィンドウで開きます。よろしいですか？", nullptr,
                     static_cast<int>(windows)),
              QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel);
  return answer == QMessageBox::Ok;
}

}  // namespace

PageMessages::PageMessages(ShownPage& page, PageSplit& split, BrowserHost& host, QWidget& window)
    : page_(page), split_(split), host_(host), window_(window) {
  connect(&split_, &PageSplit::OpenWanted, this, [this](OpenMode mode, const SerialId& message) {
    host_.ShowMessage(MailRequest::Of(message, mode));
  });
}

// The user may be asked, which must not happen inside the engine's answer.
void PageMessages::WithCurrent(const std::function<void(const SerialId&)>& act) {
  page_.rows.Current([this, act](const SerialId& message) {
    QTimer::singleShot(0, this, [act, message] { act(message); });
  });
}

// What a key does not do without a word: the user would press it again.
bool PageMessages::HasAny(bool any) {
  if (!any) host_.Tell(Ui::tr("メッセージが選択されていません。"));
  return any;
}

// All chosen messages are read, one is answered.
void PageMessages::Open(OpenMode mode) {
  if (mode == OpenMode::Show) {
    page_.rows.ToOpen([this](const QString& link, const SerialIds& messages) {
      const auto request = ReadLinkCommand(link);
      QTimer::singleShot(0, this, [this, request, messages] {
        request ? host_.ShowMessage(*request) : OpenEach(messages);
      });
    });
    return;
  }
  WithCurrent([this, mode](const SerialId& message) {
    if (HasAny(!message.IsEmpty())) host_.ShowMessage(MailRequest::Of(message, mode));
  });
}

void PageMessages::OpenEach(const SerialIds& messages) {
  if (!HasAny(!messages.isEmpty())) return;
  if (messages.size() > kManyWindows && !AgreesToOpen(window_, messages.size())) return;
  for (const SerialId& message : messages) host_.ShowMessage(MailRequest::Of(message));
}

void PageMessages::OpenInWindow(const MailRequest& request) {
  host_.ShowMessage(request);
  new SecondClick;
}

// Where messages are read at the side, one click reads there, and a second one opens.
void PageMessages::Follow(const MailRequest& request) {
  if (request.mode != OpenMode::Show || !split_.HasPane()) OpenInWindow(request);
}

void PageMessages::Told(RowNews news, const QString& said) {
  const SerialId message(said);
  switch (news) {
    case RowNews::Current:
      page_.change.NoteRow(message, true);
      return split_.ShowRow(message);
    case RowNews::Kept:
      page_.change.NoteRow(message, false);
      return split_.RowKept(message);
    case RowNews::Left:
      page_.change.NoteRow({}, false);
      return split_.RowLeft();
    case RowNews::Twice:
      return OpenInWindow(MailRequest::Of(message));  // once, should the first click have done so
    case RowNews::Marks:
      return ToggleOpened(message);
    case RowNews::Chosen:
      return SetChosen(said.toInt());
  }
}

void PageMessages::SetChosen(int count) {
  if (std::exchange(chosen_, count) != count) Q_EMIT ChosenChanged();
}

void PageMessages::Leave() {
  split_.ShowNothing();
  SetChosen(0);
}

void PageMessages::AddToBook() {
  page_.rows.Chosen([this](const SerialIds& messages) {
    QTimer::singleShot(0, this, [this, messages] {
      if (HasAny(!messages.isEmpty())) host_.Messages().AddToBook(messages);
    });
  });
}

void PageMessages::Print() {
  WithCurrent([this](const SerialId& message) {
    if (HasAny(!message.IsEmpty())) split_.Print(message);
  });
}

void PageMessages::Ask(void (MessageHost::*command)(const SerialId&)) {
  WithCurrent([this, command](const SerialId& message) {
    if (HasAny(!message.IsEmpty())) (host_.Messages().*command)(message);
  });
}

// Not while the engine tells of it: a failure is told to the user.
void PageMessages::ToggleOpened(const SerialId& message) {
  if (message == split_.Row()) split_.StopMarking();
  QTimer::singleShot(0, this, [this, message, folder = page_.request.Folder()] {
    ActOn({message}, MessageAction::ToggleOpened, folder);
  });
}

// Whether the messages are gone from the folder without a question.
bool PageMessages::TakesAway(MessageAction action) const {
  return action == (page_.request.Folder() == fixed_serial::kDust ? MessageAction::OutOfDust
                                                                  : MessageAction::ToDust);
}

void PageMessages::Act(MessageAction action) {
  const auto act = [this, action, folder = page_.request.Folder()](const SerialIds& messages) {
    QTimer::singleShot(0, this, [this, messages, action, folder] {
      if (HasAny(!messages.isEmpty())) ActOn(messages, action, folder);
    });
  };
  split_.StopMarking();  // whatever is done, it is the user's word now
  TakesAway(action) ? page_.rows.Take(act) : page_.rows.Chosen(act);
}

// The window may close or show another folder while the user is asked.
void PageMessages::ActOn(const SerialIds& messages, MessageAction action, const SerialId& folder) {
  const QPointer<PageMessages> self(this);
  const bool isOfAll = page_.request.Search().isEverywhere;
  const SerialIds gone = host_.ActOnMessages(action, messages, isOfAll ? SerialId() : folder);
  if (self == nullptr || page_.request.Folder() != folder) return;
  Q_EMIT Gone(gone);
  SerialIds stayed = TakesAway(action) ? messages : SerialIds();
  stayed.removeIf([&gone](const SerialId& message) { return gone.contains(message); });
  page_.rows.GiveBack(stayed);
}

}  // namespace vorn
