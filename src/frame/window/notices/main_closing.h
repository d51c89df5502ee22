#pragma once

class QWidget;

namespace vorn {

class MailTraffic;
class MainStatusBar;

/// Whether the main window may close: what is being sent goes first if the user wants it, and every
/// other window has to close.
class MainClosing {
 public:
  /// Questions stand before `window`.
  MainClosing(QWidget& window, MailTraffic& traffic, MainStatusBar& status)
      : window_(window), traffic_(traffic), status_(status) {}

  /// Asks of messages that are being sent. False when the window stays, at least until `MayFollow`.
  bool MayEndSending();
  /// Whether the user has closed the window while messages were being sent, and now they are.
  bool MayFollow() const;
  /// The window stays, whatever the user wanted while messages were being sent.
  void Stay() { endsAfterSending_ = false; }
  /// The user ends what is under way, and sees what came of it: the window stays.
  void CancelTraffic();
  /// Closes the other windows; what is being written is stored. False when one of them stays.
  bool CloseOthers();

  /// Nothing is asked from here on.
  void Begin() { closing_ = true; }
  bool IsClosing() const { return closing_; }

 private:
  QWidget& window_;
  MailTraffic& traffic_;
  MainStatusBar& status_;
  bool closing_ = false;
  bool endsAfterSending_ = false;  // the user has closed the program meanwhile
};

/// Keeps what is being written as drafts, without a question.
void KeepOpenDrafts();

}  // namespace vorn
