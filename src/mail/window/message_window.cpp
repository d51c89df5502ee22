#include "mail/window/message_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QEventLoop>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QScreen>
#include <QVBoxLayout>

#include "events/event_log.h"
#include "events/event_record.h"
#include "kit/window/cascade.h"
#include "kit/window/icons.h"
#include "kit/window/screen_fit.h"
#include "kit/window/second_click.h"
#include "mail/codec/mime/flag_string.h"
#include "mail/open_message.h"
#include "mail/window/bars/calendar_bar.h"
#include "mail/window/bars/message_bars.h"
#include "mail/window/bars/reading_bar.h"
#include "mail/window/body/message_body.h"
#include "mail/window/body/text_font.h"
#include "mail/window/composing/draft_keeper.h"
#include "mail/window/composing/invitation_composer.h"
#include "mail/window/composing/message_form.h"
#include "mail/window/composing/message_sending.h"
#include "mail/window/composing/shown_signature.h"
#include "mail/window/fields/attachment_input.h"
#include "mail/window/fields/attachment_list.h"
#include "mail/window/fields/file_drop.h"
#include "mail/window/message_controls.h"
#include "objects/settings.h"
#include "objects/window_request.h"
#include "storage/ui.h"
#include "storage/window/control_state.h"

namespace vorn {
namespace {

constexpr QSize kMessageSize(760, 620);

// Where the last one was, or beside those that are there.
void TakePlace(Context& context, QWidget& window) {
  const bool isPlaced = HasPlacement(context, window.objectName());
  if (isPlaced) RestoreWindowPlacement(context, window, window.objectName());
  QList<QPoint> taken;
  for (const QWidget* other : QApplication::topLevelWidgets()) {
    if (other != &window && other->isVisible() && other->objectName() == window.objectName()) {
      taken.append(other->pos());
    }
  }
  const QRect screen = ScreenFit::Room(QGuiApplication::primaryScreen()->availableGeometry());
  const QRect centred(screen.center() - QPoint(window.width() / 2, window.height() / 2),
                      window.size());
  const QRect place =
      CascadedPlace(isPlaced ? QRect(window.pos(), window.size()) : centred, taken, screen);
  window.resize(place.size());
  window.move(place.topLeft());
}

}  // namespace

MessageWindow::MessageWindow(Context& context, MessageHost& host, const EventLog& events)
    : context_(context),
      host_(host),
      events_(events),
      document_(context),
      receipt_(context, host, *this),
      bars_(new MessageBars(context, host, document_)),
      form_(new MessageForm(context, host)),
      closing_(context, host, document_, *form_, receipt_, *this),
      sending_(new MessageSending(context, host, document_, *form_, closing_, *bars_, *this)),
      reply_(new InvitationComposer(context, document_, *form_, bars_->Calendar())),
      drafts_(new DraftKeeper(context, document_, *form_, *this)),
      output_(context, host, document_, *form_, *this),
      controls_(new MessageControls({.context = context,
                                     .host = host,
                                     .document = document_,
                                     .form = *form_,
                                     .bars = *bars_,
                                     .sending = *sending_,
                                     .closing = closing_,
                                     .output = output_,
                                     .window = *this})) {
  setObjectName(QStringLiteral("Mail"));
  setWindowIcon(Icon(QStringLiteral("mail")));
  setAttribute(Qt::WA_DeleteOnClose);
  resize(kMessageSize);
  Lay();
  ConnectParts();
}

void MessageWindow::Lay() {
  auto* whole = new QWidget;
  auto* layout = new QVBoxLayout(whole);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(bars_);
  layout->addWidget(form_, 1);
  setCentralWidget(whole);
  AttachmentInput& input = form_->Clips().Input();
  new FileDrop(
      *this, [&input](const QMimeData& given) { return given.hasUrls() && input.Takes(given); },
      [&input](const QMimeData& given) { input.Take(given); });
}

void MessageWindow::ConnectParts() {
  const auto edited = [this] { SetEdited(true); };
  connect(form_, &MessageForm::Edited, this, edited);
  connect(form_, &MessageForm::AddressesEdited, this,
          [this] { FollowSender(context_, document_, *form_); });
  connect(form_, &MessageForm::SubjectChanged, this, [this] {
    setWindowTitle(ShownText(GetMessageSubject(), kMostInTitle) + Ui::tr(" プロパティ"));
  });
  connect(controls_, &MessageControls::Opening, this, &MessageWindow::ShowState);
  connect(sending_, &MessageSending::AnewWanted, this, [this] { Open(); });
  connect(sending_, &MessageSending::StateChanged, this, &MessageWindow::ShowState);
  connect(&bars_->Mend(), &QPushButton::clicked, sending_, &MessageSending::Edit);
  connect(&bars_->Reading(), &ReadingBar::Edited, this, edited);
  // Opening reads the stored state again.
  connect(&bars_->Reading(), &ReadingBar::AnewWanted, this, [this](bool applyStoredCharset) {
    closing_.StoreState();
    Open(applyStoredCharset, document_.Source());
  });
  connect(reply_, &InvitationComposer::Edited, this, edited);
  drafts_->OnKept([this](const Result<>& kept) { bars_->ShowKept(kept); });
  connect(&bars_->Calendar(), &CalendarBar::Answered, this,
          [this](const Invitation& invitation, InvitationAnswer answer) {
            TurnInto(OpenMode::Reply);
            reply_->Write(invitation, answer);
          });
}

bool MessageWindow::LoadDefaultProperty(const DiskPtr& request, bool) {
  document_.Take(request);
  Open();
  if (const DiskPtr event = events_.Find(document_.Request().Event())) {
    form_->ShowEvent(EventRecord(*event).Text());
  }
  if (!document_.Request().SendsAtOnce()) return true;
  const bool isWhole = !document_.IsUnreadable() && sending_->Missing().isEmpty();
  if (isWhole && closing_.Close(MessageClosing::Intent::Send)) return false;
  WindowRequest::SetShow(*request, kShowModeless);  // for the user to see why
  SetEdited(true);                                  // it was to go out
  return true;
}

void MessageWindow::Open(bool applyStoredCharset, const QByteArray& shown) {
  const OpenedMessage opened = document_.Open(applyStoredCharset, shown);
  form_->Show(opened, document_);
  bars_->Show(opened);
  setWindowTitle(ShownText(GetMessageSubject(), kMostInTitle) + Ui::tr(" プロパティ"));
  ControlToolbarUpdate();
  form_->TakeFocus(document_);
  SetEdited(false);
  reply_->Forget();
  sending_->ShowDoubt();
  bars_->ShowStanding();
  ShowState();
  if (opened.first) host_.MessageStored();
}

void MessageWindow::SetEdited(bool isEdited) {
  closing_.SetEdited(isEdited);
  drafts_->SetDue(isEdited);
}

QString MessageWindow::GetMessageSubject() const {
  const QString subject = form_->Subject().text();
  if (!subject.isEmpty()) return subject;
  return document_.IsNew() ? Ui::tr("新しいメッセージ") : Ui::tr("（件名なし）");
}

void MessageWindow::SetActiveCharset(CharsetChoice charset) {
  bars_->Reading().Pick(charset);
}

void MessageWindow::ControlToolbarUpdate() {
  if (document_.Bag() == nullptr) return;
  controls_->ShowIconsAlone(Settings(context_).HasIconToolbar());
  form_->Body().UseFont(
      TextFont(context_, document_.IsEditable() ? FontUse::Written : FontUse::Read));
  ShowState();
}

void MessageWindow::ShowState() {
  controls_->Show();
}

void MessageWindow::TurnInto(OpenMode mode) {
  if (document_.IsUnreadable()) return;
  closing_.StoreState();
  document_.Request().Become(mode, true);
  // In the code in which it is read; a message that was erased meanwhile is answered as it is
  // shown.
  Open(false, document_.Source());
  new SecondClick(SecondClick::Lasts::UntilMoved);  // the button that sends stands there now
}

void MessageWindow::ShowNeighbour(int step) {
  if (document_.IsEditable()) return;
  const SerialId serialId = host_.NeighbourOf(document_.Tag(), step);
  if (serialId.IsEmpty()) return;
  closing_.StoreState();
  auto next = std::make_shared<Disk>(serialId);
  MessageBag(*document_.Bag()).CopyPlace(*next);
  LoadDefaultProperty(next, true);
  receipt_.AskSoon(document_.Bag());
}

void MessageWindow::closeEvent(QCloseEvent* event) {
  const bool isClosed = closing_.Close(MessageClosing::Intent::Leave);
  if (isClosed) drafts_->SetDue(false);
  if (isClosed && isVisible()) KeepWindowPlacement(context_, *this, objectName());
  event->setAccepted(isClosed);
}

void MessageWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() != QEvent::ActivationChange || !isActiveWindow()) return;
  if (document_.Bag() != nullptr) receipt_.AskSoon(document_.Bag());
}

void MessageWindow::KeepDraftNow() {
  form_->FinishEditing();
  drafts_->Keep();
}

void MessageWindow::ShowModeless() {
  if (!isVisible()) TakePlace(context_, *this);
  show();
  Activate();
}

void MessageWindow::ShowModal() {
  setWindowModality(Qt::ApplicationModal);
  TakePlace(context_, *this);
  show();
  QEventLoop loop;
  connect(this, &QObject::destroyed, &loop, &QEventLoop::quit);
  loop.exec();
}

// What waits may be sent while its window is open.
void MessageWindow::MessagesChanged() {
  if (document_.Bag() == nullptr || closing_.IsClosed()) return;
  if (sending_->HasGone()) return Open();
  const bool hasAccount = bars_->ShowStanding();
  if (hasAccount && document_.IsEditable()) form_->NameSender(SenderLine(context_));
  if (hasAccount && bars_->HasAskedForAccount()) Activate();
  ShowState();
}

void MessageWindow::Activate() {
  if (isMinimized()) showNormal();
  raise();
  activateWindow();
}

}  // namespace vorn
