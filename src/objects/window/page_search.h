#pragma once

#include <QLineEdit>
#include <QList>

class QTabWidget;

namespace vorn {

/// A box that finds words among the entries of a window's pages: it brings the first one to the
/// front and marks all of them. Enter goes to it, or on to the next one.
class PageSearch : public QLineEdit {
  Q_OBJECT

 public:
  explicit PageSearch(QTabWidget& pages);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Find(const QString& text);
  void GoOn();
  void Show(QWidget& entry);
  static QWidget* FieldOf(QWidget& entry);

  QTabWidget& pages_;
  QList<QWidget*> found_;  // labels and buttons, in the order of the pages
  int at_ = -1;
};

}  // namespace vorn
