#pragma once

#include <QMessageBox>
#include <QObject>
#include <QTimer>
#include <functional>

namespace vorn {

/// Waits until nobody has pressed a key for a moment, then calls `then`, once. Ends with its
/// `parent`.
class TypingPause : public QObject {
  Q_OBJECT

 public:
  TypingPause(QObject* parent, std::function<void()> then);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QTimer pause_;
};

/// `ShowBox` for a question that comes up by itself: whoever is just typing does not answer it. No
/// letter and no blank does, and Enter only after a moment.
QMessageBox::StandardButton ShowUnaskedBox(QWidget* parent, QMessageBox::Icon icon,
                                           const QString& text,
                                           QMessageBox::StandardButtons buttons,
                                           QMessageBox::StandardButton standard);

}  // namespace vorn
