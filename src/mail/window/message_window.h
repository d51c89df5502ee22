#pragma once

#include <QMainWindow>

#include "mail/message_document.h"
#include "mail/window/composing/message_closing.h"
#include "mail/window/composing/message_output.h"
#include "mail/window/composing/receipt_question.h"
#include "mail/window/host/message_host.h"
#include "mail/window/message_commands.h"
#include "objects/request_window.h"
#include "storage/base/serial_id.h"

namespace vorn {

class DraftKeeper;
class EventLog;
class InvitationComposer;
class MessageBars;
class MessageControls;
class MessageForm;
class MessageSending;

/// The message window "Mail": shows one message, and edits a new or unsent one. It turns itself
/// into a reply or a forward of the message that it shows. Closing stores what is to be kept.
class MessageWindow : public QMainWindow, public RequestWindow {
  Q_OBJECT

 public:
  MessageWindow(Context& context, MessageHost& host, const EventLog& events);

  bool LoadDefaultProperty(const DiskPtr& request, bool update) override;
  SerialId Tag() const override { return document_.Tag(); }
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
  CharsetChoice GetActiveCharset() const { return document_.Code().charset; }
  void SetActiveCharset(CharsetChoice charset);
  QString GetMessageSubject() const;
  /// Keeps what is being written as a draft, rows that are open included.
  void KeepDraftNow();

  // What the commands need of the window.
  void ShowState();
  void SetEdited(bool isEdited);
  void TurnInto(OpenMode mode);
  void ShowNeighbour(int step);

 protected:
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void Lay();
  void ConnectParts();
  void Open(bool applyStoredCharset = true, const QByteArray& shown = {});

  Context& context_;
  MessageHost& host_;
  const EventLog& events_;
  MessageDocument document_;
  ReceiptQuestion receipt_;
  MessageBars* bars_;
  MessageForm* form_;
  MessageClosing closing_;
  MessageSending* sending_;
  InvitationComposer* reply_;
  DraftKeeper* drafts_;
  MessageOutput output_;
  MessageControls* controls_;
};

}  // namespace vorn
