#pragma once

#include <QLineEdit>
#include <QWidget>

class QLabel;

namespace vorn {

/// The line at the bottom that finds text in a message. Enter finds the next place, Shift+Enter the
/// one before, Escape closes it.
class FindBar : public QWidget {
  Q_OBJECT

 public:
  explicit FindBar(QWidget* parent = nullptr);
  void Open();
  /// Tells whether the text was found.
  void ShowFound(bool found);

 Q_SIGNALS:
  void FindWanted(const QString& text, bool backward);
  void Closed();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Find(bool backward);

  QLineEdit* box_;
  QLabel* result_;
};

}  // namespace vorn
