#pragma once

#include <QFrame>

class QLabel;

namespace vorn {

struct DoubtfulMessage;

/// The line above a message of which nobody knows whether it was sent: what is known, and the two
/// ways to go on.
class DoubtBar : public QFrame {
  Q_OBJECT

 public:
  explicit DoubtBar(QWidget* parent = nullptr);
  void Show(const DoubtfulMessage& message);

 Q_SIGNALS:
  void SendAgainWanted();
  void KeepAsSentWanted();

 private:
  QLabel* label_;
};

}  // namespace vorn
