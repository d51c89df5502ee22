#pragma once

#include <QMainWindow>
#include <QTimer>

#include "frame/request_window.h"
#include "mail/codec/code_offers.h"
#include "mail/codec/invitation.h"
#include "mail/mail_store.h"
#include "mail/open_message.h"
#include "mail/window/message_host.h"
#include "mail/window/receipt_question.h"
#include "storage/context.h"

class QActionGroup;
class QLabel;
class QLineEdit;
class QMenu;
class QPlainTextEdit;
class QTabWidget;
class QToolBar;

namespace vorn {

class AddressList;
class AttachmentList;
class CalendarBar;
class DoubtBar;
class EventLog;
class HeaderList;
class MessageBody;
class NoticeBar;

/// The message window "Mail": shows one message, and edits a new or unsent one. It turns itself
/// into a reply or a forward of the message that it shows. Closing stores what is to be kept.
class MessageWindow : public QMainWindow, public RequestWindow {
  Q_OBJECT

 public:
  MessageWindow(Context& context, MessageHost& host, const EventLog& events);

  bool LoadDefaultProperty(const DiskPtr& request, bool update) override;
  QString Tag() const override { return tag_; }
  bool IsChild() const override { return false; }
  void ShowModeless() override;
  void ShowModal() override;
  void Activate() override;
  bool Dust() const override { return false; }
  void MessagesChanged() override;
  void Unload() override { deleteLater(); }

  /// Brings the buttons and menus in line with the message's status and the settings.
  void ControlToolbarUpdate();
  /// The code that the message is written in, or was chosen to be read in.
  CharsetChoice GetActiveCharset() const { return charset_; }
  void SetActiveCharset(CharsetChoice charset);
  QString GetMessageSubject() const;
  /// Keeps what is being written as a draft, rows that are open included.
  void KeepDraftNow();

 protected:
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  // Building, in message_pages.cpp.
  void BuildControls();
  QWidget* BuildMailPage();
  QWidget* BuildOptionPage();
  void FitHead(bool editable);
  void ShowEventPage();

  // Menus and toolbar, in message_menus.cpp.
  void BuildMenus();
  QMenu* BuildFileMenu();
  QMenu* BuildMessagesMenu();
  QMenu* BuildEditMenu();
  void BuildViewMenu();
  void BuildCharsetMenu(QMenu* menu);
  void BuildPriorityMenu(QMenu* menu);
  void BuildToolbar(QMenu* file, QMenu* edit);
  void BuildReadingToolbar();
  void CheckMenus();
  void InFocusedBox(const char* slot);

  // Commands, in message_commands.cpp.
  void ToolbarSend();
  void SendClicked();
  void Send();
  /// Asks when an attached file is no longer what was attached; `question` holds "%1" for names.
  bool MayTakeChangedFiles(const QString& question);
  bool MaySendOnceMore();
  void CancelSending();
  void ShowDoubt();
  void SendAgain();
  void KeepAsSent();
  void TurnInto(OpenMode mode);
  void StoreState();
  void ToggleDust();
  void DeleteClicked();
  void ChooseFolders();
  bool TellUnreadable();
  void SaveToFile();
  void PrintClicked();
  void ShowSource();
  void ReadAs();
  void ReadAsDeclared();
  void ShowReading();
  void ChoosePriority(int priority);
  void ChooseAddresses();
  void AnswerInvitation(const Invitation& invitation, InvitationAnswer answer);
  void ChangeAnswer(InvitationAnswer answer);
  void CheckAnswerWords();
  void ShowNeighbour(int step);
  void InsertRows(const QString& addressLines);

  /// Opens the request's message and fills the window.
  void Open(bool applyStoredCharset = true, const QByteArray& shown = {});
  void Fill(const OpenedMessage& opened);
  LazyText TextOf(const OpenedMessage& opened) const;
  void ShowCaption();
  void TakePlace();
  bool IsEditable() const { return AbsoluteStatus() == kStatusEdit && !unreadable_; }
  /// The HTML part with the message's own pictures in it.
  QString ShownHtml() const;
  bool IsWaiting() const { return AbsoluteStatus() == kStatusWaiting; }
  int AbsoluteStatus() const;
  /// The sentence that keeps the message from being sent; empty when nothing does.
  QString MissingForSending() const;
  /// Takes over what is being typed: a row without Enter, what an input method composes.
  void FinishEditing();
  /// The message as it stands in the window.
  MessageModel CurrentModel() const;
  /// Its source; null, with the reason in `error`, when an attachment cannot be read.
  Result<QByteArray> Compose() const { return Compose(CurrentModel()); }
  Result<QByteArray> Compose(const MessageModel& model) const;
  bool HasSender();
  /// Stores what closing keeps; false when the window has to stay open.
  bool IsBlank() const;
  bool StoreForClosing();
  void NoteAnswer();
  void FollowSender();
  bool AskToSave(bool* cancelled);
  /// Composes and stores the message as it stands; false, with the reason told, when it cannot be.
  bool StoreEdited();
  void KeepDraft();
  void MarkEdited() { edited_ = draftDue_ = true; }

  Context& context_;
  MessageHost& host_;
  const EventLog& events_;
  DiskPtr request_;
  QString tag_;
  MessageModel model_;
  QByteArray source_;
  QString html_;
  CharsetChoice charset_ = CharsetChoice::Automatic;
  std::optional<CodeOffer> readAs_;  // for this view only
  bool isPicked_ = false;            // by the user in the menu, for the message that is shown
  bool answerChanged_ = false;       // to an invitation, in this window
  bool edited_ = false;
  int changedState_ = 0;  // what of the stored state, a mask of `StateMask`
  bool draftDue_ = false;
  bool closed_ = false;
  bool unreadable_ = false;  // nothing of it may be stored, sent or answered
  QTimer drafts_;
  ReceiptQuestion receipt_;

  QToolBar* tbMenu_ = nullptr;
  QToolBar* tbReading_ = nullptr;
  DoubtBar* doubt_ = nullptr;
  CalendarBar* calendar_ = nullptr;
  NoticeBar* signed_ = nullptr;
  NoticeBar* reading_ = nullptr;
  QTabWidget* tsPage_ = nullptr;
  QLineEdit* txSubject_ = nullptr;
  AddressList* lvMailaddress_ = nullptr;
  QToolBar* tbMailaddress_ = nullptr;
  QLabel* lbDateName_ = nullptr;
  QLabel* lbDate_ = nullptr;
  QLabel* lbClip_ = nullptr;
  AttachmentList* lvClip_ = nullptr;
  MessageBody* body_ = nullptr;
  HeaderList* lvHeader_ = nullptr;
  QPlainTextEdit* txReference_ = nullptr;
  QLineEdit* txInReplayTo_ = nullptr;

  QList<QAction*> toolbarSend_;  // "mailup", "mailupdelete"
  QAction* toolbarReply_ = nullptr;
  QAction* toolbarClip_ = nullptr;
  QAction* toolbarEdit_ = nullptr;
  QAction* menuSend_ = nullptr;
  QList<QAction*> menuAnswers_;
  QList<QAction*> menuRules_;
  QList<QAction*> menuStored_;  // what needs a message that is in the store
  QAction* menuDust_ = nullptr;
  QActionGroup* charsets_ = nullptr;
  QAction* readAsAction_ = nullptr;
  QActionGroup* priorities_ = nullptr;
  QMenu* attachments_ = nullptr;
};

}  // namespace vorn
