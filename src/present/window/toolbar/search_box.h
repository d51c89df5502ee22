#pragma once

#include <QLineEdit>

class QLabel;
class QToolButton;

namespace vorn {

/// The box in which the user types what a folder is searched for, and the label that tells how many
/// messages that finds.
class SearchBox : public QLineEdit {
  Q_OBJECT

 public:
  /// Its key acts in all of `window`; `parent` gets the label and the button.
  SearchBox(QWidget* window, QWidget* parent);

  /// What is typed.
  QString Typed() const { return text().trimmed(); }
  /// How many messages the search has found, or more; -1 when there is none, or that is not known.
  void ShowFound(qint64 messages, bool orMore = false);
  QLabel* Found() const { return lbFound_; }
  /// The button that widens the search to all folders. It is there while something is typed.
  QToolButton* Everywhere() const { return cmEverywhere_; }
  bool IsEverywhere() const;
  void SearchEverywhere();
  /// The one that searches what messages say as well.
  QToolButton* Texts() const { return cmTexts_; }
  bool IsInTexts() const;
  void SearchTexts();

 Q_SIGNALS:
  /// What is typed is to be searched for.
  void Wanted();
  /// The box has been emptied.
  void Emptied();
  /// The user goes from the box to the page.
  void Left();
  /// From there he goes down to what was found.
  void RowWanted();

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QToolButton* AddChoice(const QString& name, const QString& text, const QString& toolTip);

  QLabel* lbFound_;
  QToolButton* cmEverywhere_;
  QToolButton* cmTexts_;
};

}  // namespace vorn
