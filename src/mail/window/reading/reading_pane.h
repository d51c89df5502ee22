#pragma once

#include <QWidget>

#include "mail/open_message.h"
#include "mail/window/host/message_host.h"
#include "mail/window/reading/sight_timer.h"
#include "storage/base/serial_id.h"

class QLabel;

namespace vorn {

class ClipRow;
class MessageBody;
class NoticeBar;
class PaneHead;

/// Shows the message that is current on a folder's page, to be read without a window of its own. It
/// stands in the same locked view as there.
class ReadingPane : public QWidget {
  Q_OBJECT

 public:
  ReadingPane(Context& context, MessageHost& host);

  /// Shows a message, or none for an empty identifier. With `marks` it counts as opened once it has
  /// been in sight for two seconds, unless its sender asks for a receipt: that is asked of the user
  /// in the message's window.
  void Show(const SerialId& serialId, bool marks);
  /// Reads what is shown once more if the user writes it himself, who may have gone on meanwhile.
  void FollowEdits();
  /// The pane is out of sight, behind another window of its area, or no longer.
  void Cover(bool covered) { inSight_.Cover(covered); }
  /// Prints the message that is shown, with what is in front.
  void Print();
  /// The message that is shown; empty when none is.
  SerialId ShownMessage() const { return serialId_; }

 Q_SIGNALS:
  /// The shown message is to be opened in a window.
  void OpenWanted(OpenMode mode);
  /// The user goes back to the list.
  void Left();
  /// It has been marked as opened.
  void Marked();

 private:
  void Lay();
  NoticeBar* BuildAppointment();
  NoticeBar* BuildRefusal();
  DiskPtr NewRequest() const;
  void Fill();
  void ShowRefusal();
  void Mend();
  void Mark();

  Context& context_;
  MessageHost& host_;
  SerialId serialId_;
  DiskPtr request_;
  OpenedMessage opened_;
  SightTimer inSight_{this};
  QLabel* nothing_;
  QWidget* message_;
  PaneHead* head_;
  NoticeBar* refused_;
  NoticeBar* receipt_;
  NoticeBar* appointment_;
  NoticeBar* signed_;
  ClipRow* clips_;
  MessageBody* body_;
};

}  // namespace vorn
