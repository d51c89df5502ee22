#pragma once

#include <QStatusBar>

#include "transfer/transfer_events.h"

class QLabel;
class QToolButton;

namespace vorn {

/// The main window's status bar "sbStatus": its first panel shows the session that runs, with a
/// button that ends it.
class MainStatusBar : public QStatusBar, public StatusPanel {
  Q_OBJECT

 public:
  explicit MainStatusBar(QWidget* parent = nullptr);

  void ShowStatus(const QString& text, const QString& icon) override;

 Q_SIGNALS:
  void CancelClicked();

 private:
  QLabel* icon_;
  QLabel* text_;
  QToolButton* cancel_;
};

}  // namespace vorn
