#pragma once

#include <QWidget>

#include "mail/open_message.h"

class QGridLayout;
class QLabel;
class QToolBar;

namespace vorn {

class ElidingLabel;

/// The head of the message in the reading pane: its subject, correspondents and date, and the
/// buttons that answer it. It has two lines where it is wide, else four, and one more where the
/// date needs a note. The date is never cut.
class PaneHead : public QWidget {
  Q_OBJECT

 public:
  PaneHead();
  /// `storedTime` is when the message was stored.
  void Show(const MessageModel& model, const QByteArray& source, const QString& storedTime);

 Q_SIGNALS:
  /// The message is to be opened in a window.
  void OpenWanted(OpenMode mode);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  QToolBar* BuildToolbar();
  void Lay(bool isWide);
  void Fit();

  ElidingLabel* subject_;
  ElidingLabel* from_;
  ElidingLabel* to_;
  QLabel* date_;
  QLabel* note_;
  QToolBar* toolbar_;
  QGridLayout* grid_;
  bool isWide_ = true;
};

}  // namespace vorn
