#include "objects/window/condition_editor.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>

#include "objects/folder_object.h"
#include "objects/window/condition_value_editor.h"
#include "objects/window/control_names.h"
#include "storage/ui.h"

namespace vorn {
namespace {

// Dynamic properties: of a row's connector its stored line while nobody has changed it, of a row's
// kind the text that was last written.
constexpr char kLine[] = "line";
constexpr char kText[] = "text";

template <typename Editor>
Editor* CellEditor(const QTableWidget& table, int row, int column) {
  return qobject_cast<Editor*>(table.cellWidget(row, column));
}

}  // namespace

ConditionEditor::ConditionEditor(const Context& context, QWidget* parent)
    : QTableWidget(0, kColumns, parent), context_(context) {
  setObjectName(control::kList + FolderObject::kConditions);
  setAccessibleName(Ui::tr("条件"));
  setProperty("tag", QStringLiteral("text"));
  setHorizontalHeaderLabels({Ui::tr("結合"), Ui::tr("種類"), Ui::tr("否定"), Ui::tr("値")});
  horizontalHeader()->setStretchLastSection(true);
  setColumnWidth(kConnector, 90);
  setColumnWidth(kKind, 150);
  setColumnWidth(kNegation, 70);
  verticalHeader()->hide();
  setSelectionMode(QAbstractItemView::NoSelection);
  setFocusPolicy(Qt::NoFocus);  // the editors take it
}

void ConditionEditor::AddLine(const QString& line) {
  const auto condition = ParseConditionLine(line);
  AddCondition(condition.value_or(ConditionLine{}));
  const int row = rowCount() - 1;
  cellWidget(row, kConnector)->setProperty(kLine, line);
  Q_EMIT Changed();
  if (condition) return;
  // One of another version; it can be taken away, and otherwise stays.
  for (const int column : {kConnector, kKind, kNegation}) {
    cellWidget(row, column)->setEnabled(false);
  }
  if (auto* text = CellEditor<QLineEdit>(*this, row, kValue)) {
    text->setReadOnly(true);
    text->setPlaceholderText(Ui::tr("（この版で編集できない条件）"));
  }
}

QString ConditionEditor::Line(int row) const {
  const QString untouched = cellWidget(row, kConnector)->property(kLine).toString();
  return untouched.isEmpty() ? FormatConditionLine(Condition(row)) : untouched;
}

// From now on the row is what its editors say.
void ConditionEditor::Touch(const QWidget* editor) {
  const int row = RowOf(editor);
  if (row >= 0) cellWidget(row, kConnector)->setProperty(kLine, QVariant());
  Q_EMIT Changed();
}

void ConditionEditor::AddCondition(const ConditionLine& line) {
  const int row = rowCount();
  insertRow(row);
  auto* connector = new QComboBox;
  connector->setObjectName(QStringLiteral("connector"));
  connector->setAccessibleName(Ui::tr("結合"));
  connector->addItems({Ui::tr("または"), Ui::tr("かつ")});
  connector->setCurrentIndex(line.joinedByAnd ? 1 : 0);
  setCellWidget(row, kConnector, connector);

  auto* kind = new QComboBox;
  kind->setObjectName(QStringLiteral("kind"));
  kind->setAccessibleName(Ui::tr("種類"));
  for (const ConditionKind& offered : ConditionKinds()) {
    kind->addItem(Ui::tr(offered.label));
    if (&offered == line.kind) kind->setCurrentIndex(kind->count() - 1);
  }
  setCellWidget(row, kKind, kind);

  auto* negation = new QCheckBox(Ui::tr("でない"));
  negation->setObjectName(QStringLiteral("negation"));
  negation->setChecked(line.negated);
  setCellWidget(row, kNegation, negation);

  setCellWidget(row, kValue, MakeValueEditor(*line.kind, line.values));
  connect(connector, &QComboBox::currentIndexChanged, this,
          [this, connector] { Touch(connector); });
  connect(negation, &QCheckBox::toggled, this, [this, negation] { Touch(negation); });
  connect(kind, &QComboBox::currentIndexChanged, this, [this, kind] { KindChosen(RowOf(kind)); });
  ShowConnectors();
}

int ConditionEditor::RowOf(const QWidget* editor) const {
  for (int row = 0; row < rowCount(); ++row) {
    for (int column = 0; column < kColumns; ++column) {
      const QWidget* cell = cellWidget(row, column);
      if (cell == editor || (cell != nullptr && cell->isAncestorOf(editor))) return row;
    }
  }
  return -1;
}

// The first line has nothing to be joined to.
void ConditionEditor::ShowConnectors() {
  for (int row = 0; row < rowCount(); ++row) {
    cellWidget(row, kConnector)->setEnabled(row > 0 && cellWidget(row, kKind)->isEnabled());
  }
}

void ConditionEditor::KindChosen(int row) {
  if (row < 0) return;
  const ConditionKind& kind = KindOf(row);
  auto* kinds = CellEditor<QComboBox>(*this, row, kKind);
  // Who only passes another kind finds his text again.
  if (const auto* text = CellEditor<QLineEdit>(*this, row, kValue)) {
    kinds->setProperty(kText, text->text());
  }
  const bool isText = kind.value == ConditionValue::Text;
  setCellWidget(row, kValue,
                MakeValueEditor(
                    kind, isText ? QStringList(kinds->property(kText).toString()) : QStringList()));
  Touch(cellWidget(row, kValue));
}

QWidget* ConditionEditor::MakeValueEditor(const ConditionKind& kind, const QStringList& values) {
  return EditorOf(kind.value).make(context_, values, [this](const QWidget* editor) {
    Touch(editor);
  });
}

// The kinds are offered in their order.
const ConditionKind& ConditionEditor::KindOf(int row) const {
  const int chosen = CellEditor<QComboBox>(*this, row, kKind)->currentIndex();
  return ConditionKinds()[static_cast<size_t>(chosen)];
}

ConditionLine ConditionEditor::Condition(int row) const {
  ConditionLine line;
  line.kind = &KindOf(row);
  line.joinedByAnd = CellEditor<QComboBox>(*this, row, kConnector)->currentIndex() == 1;
  line.negated = CellEditor<QCheckBox>(*this, row, kNegation)->isChecked();
  line.values = EditorOf(line.kind->value).values(*cellWidget(row, kValue));
  return line;
}

void ConditionEditor::AddRow() {
  ConditionLine line;
  line.joinedByAnd = true;
  AddCondition(line);
  cellWidget(rowCount() - 1, kKind)->setFocus();
  Q_EMIT Changed();
}

void ConditionEditor::RemoveRow() {
  const QWidget* focused = focusWidget();
  const int row = focused == nullptr ? -1 : RowOf(focused);
  if (rowCount() == 0) return;
  removeRow(row >= 0 ? row : rowCount() - 1);
  ShowConnectors();
  Q_EMIT Changed();
}

}  // namespace vorn
