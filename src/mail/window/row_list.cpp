#include "mail/window/row_list.h"

#include <QHeaderView>
#include <QLineEdit>

#include "mail/window/named_editor_delegate.h"

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

QLineEdit* RowList::Box() const {
  return state() == EditingState ? qobject_cast<QLineEdit*>(indexWidget(currentIndex())) : nullptr;
}

void RowList::FinishEditing() {
  QLineEdit* box = Box();
  if (box == nullptr) return;
  commitData(box);
  closeEditor(box, QAbstractItemDelegate::NoHint);
}

QString RowList::RowText(int row) const {
  const QLineEdit* box = row == currentRow() ? Box() : nullptr;
  return box != nullptr ? box->text() : item(row, textColumn_)->text();
}

}  // namespace vorn
