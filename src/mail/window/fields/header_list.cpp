#include "mail/window/fields/header_list.h"

#include <QKeyEvent>

#include "mail/codec/header/header_encoding.h"
#include "mail/codec/header/list_splitting.h"

namespace vorn {
namespace {

// A header is one line, and what a user adds is an extension.
QString Normalized(const QString& typed) {
  QString line = MimeCodec::OneLine(typed);
  if (line.isEmpty() || line.compare(u"X-Name:", Qt::CaseInsensitive) == 0) return {};
  if (!line.startsWith(u"x-", Qt::CaseInsensitive)) line.prepend(QStringLiteral("X-"));
  if (!line.contains(u':')) line += QStringLiteral(": ");
  const qsizetype colon = line.indexOf(u':');
  return QString::fromLatin1(MimeCodec::FieldName(line.left(colon))) + line.mid(colon);
}

}  // namespace

HeaderList::HeaderList(QWidget* parent) : RowList(1, 0, QStringLiteral("txHeader"), {}, parent) {
  setObjectName(QStringLiteral("lvHeader"));
  setShowGrid(false);
  connect(this, &QTableWidget::itemChanged, this, [this](QTableWidgetItem* item) {
    if (filling_) return;
    filling_ = true;
    item->setText(Normalized(item->text()));
    filling_ = false;
    KeepEmptyRow();
    Q_EMIT Edited();
  });
}

void HeaderList::Show(const QStringList& rows, bool editable) {
  editable_ = editable;
  setEditTriggers(editable ? kRowTriggers : QAbstractItemView::NoEditTriggers);
  setRowCount(0);
  for (const QString& line : rows) AddRow(line);
  KeepEmptyRow();
}

QStringList HeaderList::Rows() const {
  QStringList rows;
  for (int row = 0; row < rowCount(); ++row) {
    const QString shown = RowText(row);
    const QString line = editable_ ? Normalized(shown) : shown;
    if (!line.isEmpty()) rows.append(line);
  }
  return rows;
}

void HeaderList::SetHeader(const QString& name, const QString& value) {
  const QString line = name + u' ' + value;
  filling_ = true;
  for (int row = 0; row < rowCount(); ++row) {
    if (!item(row, 0)->text().startsWith(name, Qt::CaseInsensitive)) continue;
    item(row, 0)->setText(line);
    filling_ = false;
    return;
  }
  filling_ = false;
  AddRow(line);
  // The new line stands before the empty one.
  if (editable_ && rowCount() > 1) {
    filling_ = true;
    item(rowCount() - 2, 0)->setText(line);
    item(rowCount() - 1, 0)->setText(QString());
    filling_ = false;
  }
}

void HeaderList::AddRow(const QString& line) {
  filling_ = true;
  const int row = rowCount();
  insertRow(row);
  setItem(row, 0, new QTableWidgetItem(line));
  filling_ = false;
}

void HeaderList::KeepEmptyRow() {
  if (editable_ && !EndsEmpty()) AddRow({});
}

void HeaderList::keyPressEvent(QKeyEvent* event) {
  const int row = currentRow();
  if (event->key() == Qt::Key_Delete && editable_ && row >= 0 && row < rowCount() - 1) {
    RemoveCurrentRow();
    Q_EMIT Edited();
    return;
  }
  const bool begins = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (begins && editable_ && row >= 0 && !IsEditing()) {
    if (item(row, 0)->text().isEmpty()) {
      filling_ = true;
      item(row, 0)->setText(QStringLiteral("X-Name: "));
      filling_ = false;
    }
    editItem(item(row, 0));
    return;
  }
  RowList::keyPressEvent(event);
}

}  // namespace vorn
