#pragma once

#include <QStringList>
#include <QTableWidget>
#include <functional>

class QLineEdit;

namespace vorn {

/// What opens a row beside a click.
inline constexpr QAbstractItemView::EditTriggers kRowTriggers = QAbstractItemView::CurrentChanged |
                                                                QAbstractItemView::EditKeyPressed |
                                                                QAbstractItemView::AnyKeyPressed;

/// A list whose rows are edited in place, each in a text box. What stands in an open box counts as
/// the row's text: a user sees no difference between what was typed and what was taken over.
class RowList : public QTableWidget {
  Q_OBJECT

 public:
  /// The texts stand in the column `textColumn`; the boxes are named `editorName`, `offers` gives
  /// what they offer while the user types (nothing when it is empty).
  RowList(int columns, int textColumn, const QString& editorName,
          std::function<QStringList()> offers, QWidget* parent);

  /// Takes over what stands in the open box, as Enter does, and closes it.
  void FinishEditing();

 Q_SIGNALS:
  /// The user changed something, in an open box as well.
  void Edited();
  /// Tab leaves the list forwards.
  void TabbedOut();

 protected:
  /// Enter and Tab go on to the empty row at the end, Tab in an empty row out of the list.
  void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  /// What is typed while a row that holds something is only selected begins a new one.
  void keyPressEvent(QKeyEvent* event) override;
  /// Takes the current row away, and edits none of the others.
  void RemoveCurrentRow();
  /// A row's text as it is shown.
  QString RowText(int row) const;
  bool IsEditing() const;
  /// The box in which a row is edited; null when it is not open.
  QLineEdit* Box(int row) const;
  /// Whether the last row is one that takes the next text.
  bool EndsEmpty() const;

 private:
  int textColumn_;
};

}  // namespace vorn
