#pragma once

#include <QStatusBar>
#include <QTimer>
#include <functional>

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
  /// Says for a while what was done, with a button (Ctrl+Z) that takes it back.
  void OfferUndo(const QString& done, std::function<void()> undo);

 Q_SIGNALS:
  void CancelClicked();

 private:
  void BuildOffer();

  QLabel* icon_;
  QLabel* text_;
  QToolButton* cancel_;
  QWidget* offer_;
  QLabel* done_;
  std::function<void()> undo_;
  QTimer offered_;
};

}  // namespace vorn
