#pragma once

#include <QWidget>

#include "mail/open_message.h"

namespace vorn {

class ElidingLabel;

/// The head of the message in the reading pane: its subject, correspondents and date, and the
/// buttons that answer it.
class PaneHead : public QWidget {
  Q_OBJECT

 public:
  PaneHead();
  /// `storedTime` stands for a date that the source does not tell.
  void Show(const MessageModel& model, const QByteArray& source, const QString& storedTime);

 Q_SIGNALS:
  /// The message is to be opened in a window.
  void OpenWanted(OpenMode mode);

 private:
  QWidget* BuildToolbar();

  ElidingLabel* subject_;
  ElidingLabel* from_;
  ElidingLabel* to_;
  ElidingLabel* date_;
};

}  // namespace vorn
