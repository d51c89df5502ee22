#pragma once

#include <QTabWidget>

#include "mail/message_document.h"

class QGridLayout;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QToolBar;

namespace vorn {

class AddressList;
class AttachmentList;
class HeaderList;
class MessageBody;
class MessageHost;

/// The pages of a message window, with a control for each part of the message.
class MessageForm : public QTabWidget {
  Q_OBJECT

 public:
  MessageForm(Context& context, MessageHost& host);

  /// Shows the document as it was opened.
  void Show(const OpenedMessage& opened, const MessageDocument& document);
  /// Puts the keyboard where the user begins with the document.
  void TakeFocus(const MessageDocument& document);
  /// Shows the text of a recorded event about the message on a page of its own; once.
  void ShowEvent(const QString& text);
  /// Takes over what is being typed: a row without Enter, what an input method composes.
  void FinishEditing();
  /// Adds the address line of a sender where there is none; not an empty one.
  void NameSender(const QString& line);
  /// The message as it stands in the controls; what has no control is that of `model`.
  MessageModel Take(MessageModel model) const;
  /// Asks when an attached file is no longer what was attached; `question` holds "%1" for names.
  bool MayTakeChangedFiles(const QString& question);
  /// Opens the line that finds in the text.
  void OpenFind();

  QLineEdit& Subject() const { return *txSubject_; }
  AddressList& Addresses() const { return *lvMailaddress_; }
  AttachmentList& Clips() const { return *lvClip_; }
  MessageBody& Body() const { return *body_; }
  HeaderList& Headers() const { return *lvHeader_; }

 Q_SIGNALS:
  void Edited();
  void AddressesEdited();
  void SubjectChanged();

 private:
  void BuildMail();
  void BuildAddresses(QGridLayout& grid);
  QWidget* BuildOptions();
  void ConnectControls();
  void FitClips();
  void FitHead(const QString& date, bool isEditable);
  void ChooseAddresses();

  Context& context_;
  MessageHost& host_;
  QLineEdit* txSubject_;
  AddressList* lvMailaddress_;
  QToolBar* tbMailaddress_;
  QLabel* lbDateName_;
  QLabel* lbDate_;
  QLabel* lbClip_;
  AttachmentList* lvClip_;
  MessageBody* body_;
  HeaderList* lvHeader_ = nullptr;
  QPlainTextEdit* txReference_ = nullptr;
  QLineEdit* txInReplayTo_ = nullptr;
};

}  // namespace vorn
