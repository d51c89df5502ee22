#pragma once

#include <QWidget>

class QAction;
class QBoxLayout;
class QLabel;
class QLineEdit;

namespace vorn {

/// Goes about the pages of a long folder: to the first page (the oldest unless the newest come
/// first), to a page by its number, to the last page.
class PageBox : public QWidget {
  Q_OBJECT

 public:
  /// The keys of its buttons act in all of `window`.
  explicit PageBox(QWidget* window);

  /// Shows the page's number, unless the user is typing another one, and which ways there are.
  void Show(int page, bool hasBefore, bool hasNext);
  /// What the two ends are called.
  void NameEnds(bool newestFirst);
  /// How many pages there are; 0 when that is not known.
  void ShowCount(int pages);
  /// What the user has typed; 0 when it is no number.
  int Typed() const;
  /// The user goes elsewhere: what he has typed gives way to the page's number.
  void ForgetTyped();

 Q_SIGNALS:
  void FirstWanted();
  void LastWanted();
  /// The typed page is wanted.
  void TypedWanted();

 private:
  QAction* AddButton(const QString& name, Qt::Key key, void (PageBox::*wanted)());
  void AddNumber();

  QWidget* window_;
  QBoxLayout* box_;
  QAction* first_;
  QAction* last_;
  QLineEdit* txPage_ = nullptr;
  QLabel* lbPages_ = nullptr;
};

}  // namespace vorn
