#include "mail/window/composing/message_form.h"

#include <QGridLayout>
#include <QGuiApplication>
#include <QInputMethod>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QToolBar>

#include "auxiliary/window/address_window.h"
#include "kit/window/access_names.h"
#include "kit/window/page_area.h"
#include "kit/window/plain_text.h"
#include "kit/window/text_box.h"
#include "kit/window/tool_letter.h"
#include "mail/attached_pictures.h"
#include "mail/codec/calendar/invitation.h"
#include "mail/date_line.h"
#include "mail/store/send_refusals.h"
#include "mail/window/body/message_body.h"
#include "mail/window/fields/address_list.h"
#include "mail/window/fields/attachment_input.h"
#include "mail/window/fields/attachment_list.h"
#include "mail/window/fields/header_list.h"
#include "mail/window/host/message_host.h"
#include "objects/object_types.h"
#include "objects/settings.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kAddressRows = 4;
constexpr int kLeastAddressRows = 2;  // in a low window
constexpr int kReadRows = 3;
constexpr int kClipRows = 2;
constexpr int kClipsInRow = 3;  // as far as one row may do
constexpr int kReferenceRows = 3;

QWidget* NewPage(const QString& key) {
  auto* page = new QWidget;
  page->setObjectName(QStringLiteral("frPage"));
  page->setProperty("tag", key);
  return page;
}

void AddRow(QGridLayout* grid, int row, QLabel* label, QWidget* control) {
  label->setBuddy(control);
  grid->addWidget(label, row, 0, Qt::AlignTop);
  grid->addWidget(control, row, 1);
}

// What stands in the place of a text that there is not.
LazyText TextOf(const OpenedMessage& opened, bool isNew) {
  if (opened.unreadable) {
    return Ui::tr("メッセージ%1を読み込めません。").arg(opened.unreadable->Name()) +
           opened.reason.text;
  }
  // One that was erased may still be known.
  const bool isKnown = opened.found || isNew || !opened.source.isEmpty();
  return isKnown ? opened.model.text : LazyText(Ui::tr("メッセージがありません。"));
}

// Who sends the answer to an invitation is the one who answers.
void AnswerAsSender(MessageModel& model) {
  const auto reply = ReadInvitationReply(*model.calendarReply);
  for (const AddressEntry& entry : model.addresses) {
    if (!reply || entry.kind.compare(u"FROM", Qt::CaseInsensitive) != 0) continue;
    if (entry.address.compare(reply->address, Qt::CaseInsensitive) == 0) return;
    model.calendarReply = ChangeReply(*model.calendarReply, entry.address, reply->answer);
    return;
  }
}

}  // namespace

MessageForm::MessageForm(Context& context, MessageHost& host)
    : context_(context),
      host_(host),
      txSubject_(new QLineEdit),
      lvMailaddress_(new AddressList([&host] { return host.OfferedAddresses(); })),
      tbMailaddress_(new QToolBar),
      lbDateName_(PlainLabel(Ui::tr("日時", "heading"))),
      lbDate_(PlainLabel(QString())),
      lbClip_(PlainLabel(Ui::tr("添付(&T)"))),
      lvClip_(new AttachmentList(context)),
      body_(new MessageBody(
          [this](const QMimeData& given) { return lvClip_->Input().Take(given); })) {
  setObjectName(QStringLiteral("tsPage"));
  setDocumentMode(true);
  BuildMail();
  addTab(new PageArea(BuildOptions()), Ui::tr("オプション"));
  ConnectControls();
}

void MessageForm::BuildMail() {
  QWidget* page = NewPage(QStringLiteral("mail"));
  auto* grid = new QGridLayout(page);
  txSubject_->setObjectName(QStringLiteral("txSubject"));
  AddRow(grid, 0, PlainLabel(Ui::tr("件名(&J)")), txSubject_);
  BuildAddresses(*grid);
  lbDate_->setObjectName(QStringLiteral("lbDate"));
  lbDate_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  lbDate_->setWordWrap(true);  // no date makes the window wider
  grid->addWidget(lbDateName_, 2, 0, Qt::AlignTop);
  grid->addWidget(lbDate_, 2, 1);
  const int line = lvClip_->fontMetrics().lineSpacing();
  lvClip_->setMinimumHeight(line + 2 * lvClip_->frameWidth());
  AddRow(grid, 3, lbClip_, lvClip_);
  body_->Text()->setMinimumHeight(2 * line);
  grid->addWidget(body_, 4, 0, 1, 2);
  // In a low window the addresses give way first, down to their least height.
  lvMailaddress_->setSizePolicy(lvMailaddress_->sizePolicy().horizontalPolicy(),
                                QSizePolicy::Ignored);
  grid->setRowStretch(1, 1);
  grid->setRowStretch(4, 2);
  addTab(page, Ui::tr("メール"));
}

void MessageForm::BuildAddresses(QGridLayout& grid) {
  tbMailaddress_->setObjectName(QStringLiteral("tbMailaddress"));
  NameMoreButton(*tbMailaddress_);
  ObeyLetter(tbMailaddress_->addAction(Ui::tr("選択(&L).."), this, &MessageForm::ChooseAddresses))
      ->setToolTip(Ui::tr("アドレスブックから選びます。"));
  auto* place = new QWidget;
  auto* beside = new QVBoxLayout(place);
  beside->setContentsMargins({});
  auto* label = PlainLabel(Ui::tr("アドレス(&D)"));
  label->setBuddy(lvMailaddress_);
  lvMailaddress_->setAccessibleName(Ui::tr("アドレス"));
  beside->addWidget(label);
  beside->addWidget(tbMailaddress_);
  beside->addStretch();
  grid.addWidget(place, 1, 0);
  grid.addWidget(lvMailaddress_, 1, 1);
}

QWidget* MessageForm::BuildOptions() {
  QWidget* page = NewPage(QStringLiteral("option"));
  auto* grid = new QGridLayout(page);
  lvHeader_ = new HeaderList;
  AddRow(grid, 0, PlainLabel(Ui::tr("ヘッダ(&H)")), lvHeader_);
  txReference_ = new TextBox;
  txReference_->setObjectName(QStringLiteral("txReference"));
  txReference_->setTabChangesFocus(true);
  txReference_->setFixedHeight(txReference_->fontMetrics().lineSpacing() * (kReferenceRows + 1));
  AddRow(grid, 1, PlainLabel(Ui::tr("参照(&R)")), txReference_);
  txInReplayTo_ = new QLineEdit;
  txInReplayTo_->setObjectName(QStringLiteral("txInReplayTo"));
  AddRow(grid, 2, PlainLabel(Ui::tr("返信元(&Y)")), txInReplayTo_);
  grid->setRowStretch(0, 1);
  return page;
}

void MessageForm::ConnectControls() {
  connect(txSubject_, &QLineEdit::textEdited, this, &MessageForm::Edited);
  connect(txSubject_, &QLineEdit::textChanged, this, &MessageForm::SubjectChanged);
  connect(lvMailaddress_, &AddressList::Edited, this, [this] {
    Q_EMIT Edited();
    Q_EMIT AddressesEdited();
  });
  connect(lvClip_, &AttachmentList::Edited, this, [this] {
    Q_EMIT Edited();
    FitClips();
    lvClip_->setVisible(true);
    lbClip_->setVisible(true);
  });
  connect(lvClip_, &AttachmentList::MessageOpened, this,
          [this](const QString& path) { host_.OpenMessageFile(path); });
  connect(body_, &MessageBody::FrontChanged, lvClip_, &AttachmentList::FoldShown);
  connect(body_, &MessageBody::MessageWanted, this,
          [this](const QString& mailto) { host_.PostMail(MailRequest::New(mailto)); });
  connect(lvHeader_, &HeaderList::Edited, this, &MessageForm::Edited);
  connect(lvMailaddress_, &AddressList::TabbedOut, this, [this] {
    QWidget* next = lvClip_->isVisible() ? lvClip_ : body_->InFront();
    next->setFocus(Qt::TabFocusReason);
  });
  connect(lvHeader_, &HeaderList::TabbedOut, this,
          [this] { txReference_->setFocus(Qt::TabFocusReason); });
  connect(body_, &MessageBody::TextEdited, this, &MessageForm::Edited);
  connect(txReference_, &QPlainTextEdit::textChanged, this, &MessageForm::Edited);
  connect(txInReplayTo_, &QLineEdit::textEdited, this, &MessageForm::Edited);
}

void MessageForm::Show(const OpenedMessage& opened, const MessageDocument& document) {
  const MessageModel& model = opened.model;
  const bool isEditable = document.IsEditable();
  const QString subject = opened.unreadable ? opened.unreadable->subject : model.subject;
  txSubject_->setText(isEditable ? subject : ShownInLine(subject));
  txSubject_->setCursorPosition(0);
  txSubject_->setReadOnly(!isEditable);
  lvMailaddress_->Show(model.addresses, isEditable);
  tbMailaddress_->setVisible(isEditable);
  const QString note = ArrivalNote(opened.source, document.Request().Timestamp());
  const QString date = DateLine(opened.source) + (note.isEmpty() ? note : u' ' + note);
  FitHead(isEditable ? QString() : date, isEditable);
  const bool withHtml = isEditable || !Settings(context_).Standards().readsHtml;
  const auto files = withHtml ? model.attachments : WithoutHtmlPart(opened);
  lvClip_->Show(files, opened.source, isEditable,
                isEditable ? QSet<qsizetype>() : opened.shownImages);
  FitClips();
  lvClip_->setVisible(!files.empty());
  lbClip_->setVisible(!files.empty());
  body_->Show(TextOf(opened, document.IsNew()), isEditable,
              isEditable ? HtmlPart() : PartToRead(context_, opened, [&document] {
                return document.ShownHtml();
              }));
  lvHeader_->Show(model.headerRows, isEditable);
  txReference_->setPlainText(model.references);
  txReference_->setReadOnly(!isEditable);
  txInReplayTo_->setText(model.inReplyTo);
  txInReplayTo_->setReadOnly(!isEditable);
}

// Whole rows, so that none is cut.
void MessageForm::FitClips() {
  const int row = lvClip_->sizeHintForRow(0) + 2 * lvClip_->spacing();
  const int rows = lvClip_->count() > kClipsInRow ? kClipRows : 1;
  lvClip_->setMinimumHeight(qMax(1, row) + 2 * lvClip_->frameWidth());
  lvClip_->setMaximumHeight(rows * qMax(1, row) + 2 * lvClip_->frameWidth());
}

// Who reads needs room for the text; more addresses than a few are scrolled to.
void MessageForm::FitHead(const QString& date, bool isEditable) {
  const int line = lvMailaddress_->fontMetrics().lineSpacing();
  int height = isEditable ? 2 * line * kAddressRows : 2 * lvMailaddress_->frameWidth();
  const int shown = isEditable ? 0 : qMin(lvMailaddress_->rowCount(), kReadRows);
  for (int row = 0; row < shown; ++row) height += lvMailaddress_->rowHeight(row);
  height = qMax(height, 2 * line);
  lvMailaddress_->setMinimumHeight(isEditable ? 2 * line * kLeastAddressRows : height);
  lvMailaddress_->setMaximumHeight(height);
  // Else the room that the addresses do not take would stand empty around them.
  QWidget* beside = tbMailaddress_->parentWidget();
  beside->setMaximumHeight(qMax(height, beside->minimumSizeHint().height()));
  lbDate_->setText(date);
  lbDate_->setVisible(!date.isEmpty());
  lbDateName_->setVisible(!date.isEmpty());
}

// A new message begins with what it lacks.
void MessageForm::TakeFocus(const MessageDocument& document) {
  // Whom the server refused is what has to be mended.
  QHash<SerialId, SendRefusal> refusals;
  if (document.IsEditable()) refusals = SendRefusals(context_, document.File()).All().ValueOr({});
  if (lvMailaddress_->GoToNamed(refusals.value(document.Tag()).reply)) return;
  if (document.IsEditable() && !lvMailaddress_->HasRecipient()) {
    lvMailaddress_->setCurrentCell(lvMailaddress_->rowCount() - 1, 1);
    lvMailaddress_->setFocus();
  } else {
    body_->InFront()->setFocus();
  }
}

void MessageForm::ShowEvent(const QString& text) {
  if (findChild<QPlainTextEdit*>(QStringLiteral("txEventLog")) != nullptr) return;
  QWidget* page = NewPage(QStringLiteral("event"));
  auto* box = new QPlainTextEdit(text);
  box->setObjectName(QStringLiteral("txEventLog"));
  box->setAccessibleName(Ui::tr("イベント"));
  box->setReadOnly(true);
  auto* layout = new QVBoxLayout(page);
  layout->addWidget(box);
  addTab(page, Ui::tr("イベント"));
  lvMailaddress_->MarkNamed(text);
}

void MessageForm::FinishEditing() {
  QGuiApplication::inputMethod()->commit();
  lvMailaddress_->FinishEditing();
  lvHeader_->FinishEditing();
}

void MessageForm::NameSender(const QString& line) {
  if (line.isEmpty() || HasKind(lvMailaddress_->Addresses(), u"FROM")) return;
  lvMailaddress_->Add(ParseAddressEntry(line));
}

MessageModel MessageForm::Take(MessageModel model) const {
  model.subject = txSubject_->text();
  model.addresses = lvMailaddress_->Addresses();
  model.text = body_->Text()->toPlainText();
  model.attachments = lvClip_->Attachments();
  model.headerRows = lvHeader_->Rows();
  model.references = txReference_->toPlainText().simplified();
  model.inReplyTo = txInReplayTo_->text().simplified();
  if (model.calendarReply) AnswerAsSender(model);
  return model;
}

bool MessageForm::MayTakeChangedFiles(const QString& question) {
  const QStringList changed = lvClip_->ChangedFiles();
  if (changed.isEmpty()) return true;
  const auto answer =
      ShowBox(this, QMessageBox::Question, question.arg(changed.join(Ui::tr("」「"))),
              QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
  if (answer == QMessageBox::Yes) lvClip_->AcceptChanges();
  return answer == QMessageBox::Yes;
}

void MessageForm::OpenFind() {
  setCurrentIndex(0);  // where the text is
  body_->OpenFind();
}

void MessageForm::ChooseAddresses() {
  const QString chosen =
      SelectAddresses(context_, this, object_filter::kOwner + kLineBreak + object_type::kBook);
  for (const QString& line : chosen.split(kLineBreak, Qt::SkipEmptyParts)) {
    lvMailaddress_->Add(ParseAddressEntry(line));
  }
}

}  // namespace vorn
