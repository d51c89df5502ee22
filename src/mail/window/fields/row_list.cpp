#include "mail/window/fields/row_list.h"

#include <QCoreApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QSignalBlocker>

#include "mail/window/fields/named_editor_delegate.h"

namespace vorn {

RowList::RowList(int columns, int textColumn, const QString& editorName,
                 std::function<QStringList()> offers, QWidget* parent)
    : QTableWidget(0, columns, parent), textColumn_(textColumn) {
  horizontalHeader()->hide();
  horizontalHeader()->setStretchLastSection(true);
  verticalHeader()->hide();
  setTabKeyNavigation(false);
  auto* delegate = new NamedEditorDelegate(editorName, std::move(offers), this);
  setItemDelegateForColumn(textColumn, delegate);
  connect(delegate, &NamedEditorDelegate::Typed, this, &RowList::Edited);
}

// The view's own state is no help: a box that closes because another row opened one puts it back.
QLineEdit* RowList::Box(int row) const {
  return qobject_cast<QLineEdit*>(indexWidget(model()->index(row, textColumn_)));
}

bool RowList::EndsEmpty() const {
  const int last = rowCount() - 1;
  return last >= 0 && item(last, textColumn_)->text().trimmed().isEmpty();
}

bool RowList::IsEditing() const {
  for (int row = 0; row < rowCount(); ++row) {
    if (Box(row) != nullptr) return true;
  }
  return false;
}

void RowList::FinishEditing() {
  for (int row = 0; row < rowCount(); ++row) {
    QLineEdit* box = Box(row);
    if (box == nullptr) continue;
    commitData(box);
    closeEditor(box, QAbstractItemDelegate::NoHint);
  }
}

// A click opens its row at once: what is typed after it must not be lost. (The view would wait
// whether a second click follows.)
void RowList::mouseReleaseEvent(QMouseEvent* event) {
  QTableWidget::mouseReleaseEvent(event);
  const QTableWidgetItem* clicked = itemAt(event->position().toPoint());
  if (event->button() == Qt::LeftButton && editTriggers() != NoEditTriggers && clicked != nullptr &&
      clicked->column() == textColumn_ && !IsEditing()) {
    editItem(item(clicked->row(), textColumn_));
  }
}

// Only texts are edited; beside them the view would hand the keyboard to another control. The first
// letter adds to what stands there, rather than replacing it, however the row was opened.
bool RowList::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) {
  if (index.column() != textColumn_) return false;
  const bool wasOpen = Box(index.row()) != nullptr;
  const bool opens = QTableWidget::edit(index, trigger, event);
  if (QLineEdit* box = Box(index.row()); box != nullptr && !wasOpen) box->end(false);
  return opens;
}

// Who comes otherwise than by a click goes on with a new row, not with the first one, which would
// be written over.
void RowList::focusInEvent(QFocusEvent* event) {
  const bool byKey =
      event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
  const bool isFirst = !currentIndex().isValid() && event->reason() != Qt::MouseFocusReason;
  if ((byKey || isFirst) && !IsEditing() && rowCount() > 0 && editTriggers() != NoEditTriggers) {
    const QSignalBlocker quiet(this);
    setCurrentCell(rowCount() - 1, textColumn_);
  }
  QTableWidget::focusInEvent(event);
}

// The toolkit finds nothing behind the boxes of the rows and stays.
bool RowList::focusNextPrevChild(bool next) {
  if (!next) return QTableWidget::focusNextPrevChild(next);
  Q_EMIT TabbedOut();
  return true;
}

void RowList::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
  // Escape brings back what stood in the row; what was typed into an empty one would be lost.
  const bool isNew = currentItem() != nullptr && currentItem()->text().isEmpty();
  if (hint == QAbstractItemDelegate::RevertModelCache && isNew) commitData(editor);
  const int last = rowCount() - 1;
  const bool wasEmpty = RowText(currentRow()).trimmed().isEmpty();
  QTableWidget::closeEditor(editor, QAbstractItemDelegate::NoHint);
  const bool isTab = hint == QAbstractItemDelegate::EditNextItem;
  if (!isTab && hint != QAbstractItemDelegate::SubmitModelCache) return;
  if (wasEmpty) {
    if (isTab) focusNextChild();
    return;
  }
  setCurrentCell(last, textColumn_);
  editItem(item(last, textColumn_));
}

void RowList::keyPressEvent(QKeyEvent* event) {
  const bool isTyped = !event->text().isEmpty() && event->text().at(0).isPrint() &&
                       (event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == 0;
  const bool isText = isTyped || event->matches(QKeySequence::Paste);
  if (isText && !IsEditing() && editTriggers() != NoEditTriggers && rowCount() > 0) {
    setCurrentCell(rowCount() - 1, textColumn_, QItemSelectionModel::ClearAndSelect);
    const int last = rowCount() - 1;
    if (Box(last) == nullptr) editItem(item(last, textColumn_));  // it was the current one already
    if (QLineEdit* box = Box(last)) {
      QCoreApplication::sendEvent(box, event);
      return;
    }
  }
  // What is meant for a menu or a field is no text.
  if (event->modifiers().testFlag(Qt::AltModifier) && !event->text().isEmpty()) {
    return event->ignore();
  }
  QTableWidget::keyPressEvent(event);
}

void RowList::RemoveCurrentRow() {
  const EditTriggers triggers = editTriggers();
  setEditTriggers(NoEditTriggers);
  const int row = currentRow();
  removeRow(row);
  setCurrentCell(qMin(row, rowCount() - 1), textColumn_);  // the one that has come to its place
  setEditTriggers(triggers);
}

QString RowList::RowText(int row) const {
  const QLineEdit* box = Box(row);
  return box != nullptr ? box->text() : item(row, textColumn_)->text();
}

}  // namespace vorn
