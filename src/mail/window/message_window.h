#pragma once

#include <QMainWindow>

#include "frame/request_window.h"
#include "mail/open_message.h"
#include "mail/window/message_host.h"
#include "storage/context.h"

class QLabel;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QToolBar;

namespace vorn {

class AddressList;

/// The message window "Mail": shows one message, and edits a new or unsent one. It turns itself
/// into a reply or a forward of the message that it shows. Closing stores what is to be kept.
class MessageWindow : public QMainWindow, public RequestWindow {
  Q_OBJECT

 public:
  MessageWindow(Context& context, MessageHost& host);

  bool LoadDefaultProperty(const DiskPtr& request, bool update) override;
  QString Tag() const override { return tag_; }
  bool IsChild() const override { return false; }
  void ShowModeless() override;
  void ShowModal() override;
  void Activate() override;
  void Unload() override { deleteLater(); }

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void BuildControls();
  void BuildCommands();
  /// Opens the request's message and fills the window.
  void Open();
  void Fill(const OpenedMessage& opened);
  void ControlToolbarUpdate();
  bool IsEditable() const;
  bool IsWaiting() const;
  /// Opens the message again in another mode.
  void TurnInto(int openMode);
  void SendClicked();
  void CancelSending();
  /// The sentence that keeps the message from being sent; empty when nothing does.
  QString MissingForSending() const;
  bool AskToSave(bool* cancelled);
  /// Composes and stores the message as it stands; false, with the reason told, when it cannot be.
  bool Store();

  Context& context_;
  MessageHost& host_;
  DiskPtr request_;
  QString tag_;
  MessageModel model_;
  QByteArray source_;
  bool edited_ = false;
  bool sending_ = false;

  QToolBar* tbMenu_ = nullptr;
  QLineEdit* txSubject_ = nullptr;
  AddressList* lvMailaddress_ = nullptr;
  QLabel* lbClip_ = nullptr;
  QListWidget* lvClip_ = nullptr;
  QPlainTextEdit* txMemo_ = nullptr;
  QAction* send_ = nullptr;
  QList<QAction*> answers_;
};

}  // namespace vorn
