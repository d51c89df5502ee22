#pragma once

#include <QSplitter>
#include <optional>

#include "mail/open_message.h"
#include "mail/store/message_rows.h"
#include "objects/settings.h"
#include "storage/base/serial_id.h"

class QWebEngineView;

namespace vorn {

class MessageHost;
class ReadingPane;

/// A folder's page and, where the setting "ReadingPane" says so (1 below it, 2 at its side), the
/// message that is current on it. There is no pane while both would have no room.
class PageSplit : public QSplitter {
  Q_OBJECT

 public:
  PageSplit(Context& context, QWebEngineView* page, MessageHost& host);

  /// Another view takes the place of the page's, which has gone.
  void SetPage(QWebEngineView* page);
  /// Brings the pane in line with the setting; only a folder has one.
  void Arrange(bool isFolder);
  bool HasPane() const;
  /// The user has made a message the current one.
  void ShowRow(const SerialId& serialId);
  /// The page was made anew, and this message, or none, is the current one of it.
  void RowKept(const SerialId& serialId);
  /// The page was made anew without the current message, which the user did not take away on it. He
  /// goes on reading what only has other marks now; of one that was sent, deleted or filed
  /// meanwhile nothing stays.
  void RowLeft();
  /// The message of the current row; empty for none.
  SerialId Row() const { return row_; }
  /// What is shown is not marked by and by, because the user marks it himself.
  void StopMarking();
  /// See `ReadingPane::Cover`.
  void Cover(bool covered);
  /// Prints a message of the page, as the pane has it where it shows that.
  void Print(const SerialId& serialId);
  /// Another page comes.
  void ShowNothing() { ShowRow(SerialId()); }

 Q_SIGNALS:
  void OpenWanted(vorn::OpenMode mode, const SerialId& serialId);
  /// The current message is no longer on the page, and where it was in the store.
  void RowElsewhere(const SerialId& serialId);
  /// There is a pane for the first time.
  void PaneMade(QWidget* pane);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void NotePlace();
  void Lay();
  bool HasRoom(Qt::Orientation orientation) const;
  void MakePane();
  void KeepShare();
  int KeptShare() const;
  void TakeShare();

  Context& context_;
  MessageHost& host_;
  ReadingPane* pane_ = nullptr;
  PanePlace place_ = PanePlace::Nowhere;
  SerialId row_;  // the current message, whether the pane has room to show it or not
  std::optional<MessagePlace> rowPlace_;  // where that was when it became the current one
  bool isCovered_ = false;
};

}  // namespace vorn
