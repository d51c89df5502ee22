#include "objects/window/condition_editor.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>

#include "kit/window/plain_text.h"
#include "objects/any_object.h"
#include "objects/object_types.h"
#include "storage/ui.h"

namespace vorn {
namespace {

using Kind = ConditionLine::Kind;

// Dynamic properties: of a row's connector its stored line while nobody has changed it, of an
// editor the stored values that it cannot show, of a row's kind the text that was last written.
constexpr char kLine[] = "line";
constexpr char kOthers[] = "others";
constexpr char kText[] = "text";
constexpr int kMaxDays = 36500;
constexpr int kDefaultDays = 7;

struct Choice {
  int value;
  const char* text;
};

constexpr Choice kKinds[] = {
    {static_cast<int>(Kind::Subject), QT_TRANSLATE_NOOP("vorn::Ui", "件名に含む")},
    {static_cast<int>(Kind::MailAddress), QT_TRANSLATE_NOOP("vorn::Ui", "アドレスに含む")},
    {static_cast<int>(Kind::Folder), QT_TRANSLATE_NOOP("vorn::Ui", "フォルダにある")},
    {static_cast<int>(Kind::Status), QT_TRANSLATE_NOOP("vorn::Ui", "状態")},
    {static_cast<int>(Kind::TimeStamp), QT_TRANSLATE_NOOP("vorn::Ui", "日付")},
    {static_cast<int>(Kind::WholeAddress), QT_TRANSLATE_NOOP("vorn::Ui", "アドレスが")}};

// The states' names differ from the commands of the same word in other languages.
constexpr struct {
  int value;
  struct {
    const char* source;
    const char* comment;
  } text;
} kStatuses[] = {{1, QT_TRANSLATE_NOOP3("vorn::Ui", "編集", "state")},
                 {2, QT_TRANSLATE_NOOP3("vorn::Ui", "待ち", "state")},
                 {3, QT_TRANSLATE_NOOP3("vorn::Ui", "送信", "state")},
                 {4, QT_TRANSLATE_NOOP3("vorn::Ui", "受信", "state")}};

template <typename Editor>
Editor* CellEditor(const QTableWidget& table, int row, int column) {
  return qobject_cast<Editor*>(table.cellWidget(row, column));
}

}  // namespace

ConditionEditor::ConditionEditor(const Context& context, QWidget* parent)
    : QTableWidget(0, kColumns, parent), context_(context) {
  setObjectName(QStringLiteral("lvCondition"));
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
  for (const Choice& choice : kKinds) {
    kind->addItem(Ui::tr(choice.text), choice.value);
  }
  kind->setCurrentIndex(kind->findData(static_cast<int>(line.kind)));
  setCellWidget(row, kKind, kind);

  auto* negation = new QCheckBox(Ui::tr("でない"));
  negation->setObjectName(QStringLiteral("negation"));
  negation->setChecked(line.negated);
  setCellWidget(row, kNegation, negation);

  setCellWidget(row, kValue, MakeValueEditor(line.kind, line.values));
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
  const auto kind =
      static_cast<Kind>(CellEditor<QComboBox>(*this, row, kKind)->currentData().toInt());
  auto* kinds = CellEditor<QComboBox>(*this, row, kKind);
  // Who only passes another kind finds his text again.
  if (const auto* text = CellEditor<QLineEdit>(*this, row, kValue)) {
    kinds->setProperty(kText, text->text());
  }
  const bool isText =
      kind == Kind::Subject || kind == Kind::MailAddress || kind == Kind::WholeAddress;
  setCellWidget(row, kValue,
                MakeValueEditor(
                    kind, isText ? QStringList(kinds->property(kText).toString()) : QStringList()));
  Touch(cellWidget(row, kValue));
}

QWidget* ConditionEditor::MakeValueEditor(Kind kind, const QStringList& values) {
  switch (kind) {
    case Kind::Folder: {
      auto* folders = new QComboBox;
      for (const DiskPtr& object : context_.Objects) {
        if (AnyObject(*object).Is(object_type::kFolder)) {
          folders->addItem(AnyObject(*object).ShownName(), object->SerialID());
        }
      }
      if (!values.isEmpty() && folders->findData(values[0]) < 0) {
        folders->addItem(Ui::tr("（削除されたフォルダ）"), values[0]);
      }
      const int index = folders->findData(values.value(0));
      if (index >= 0) folders->setCurrentIndex(index);
      connect(folders, &QComboBox::currentIndexChanged, this, [this, folders] { Touch(folders); });
      return folders;
    }
    case Kind::Status: {
      auto* box = new QWidget;
      auto* layout = new QHBoxLayout(box);
      layout->setContentsMargins(4, 0, 4, 0);
      QStringList others = values;
      for (const auto& status : kStatuses) {
        auto* check = new QCheckBox(Ui::tr(status.text.source, status.text.comment));
        check->setProperty("value", status.value);
        check->setChecked(others.removeAll(QString::number(status.value)) > 0);
        connect(check, &QCheckBox::toggled, this, [this, check] { Touch(check); });
        layout->addWidget(check);
      }
      box->setProperty(kOthers, others);
      if (!others.isEmpty()) {
        layout->addWidget(PlainLabel(Ui::tr("（ほか: %1）").arg(others.join(u','))));
      }
      layout->addStretch();
      return box;
    }
    case Kind::TimeStamp: {
      // A stored number counts from today: -7 stands for the last seven days.
      auto* days = new QSpinBox;
      days->setRange(0, kMaxDays);
      days->setSuffix(Ui::tr(" 日前から"));
      days->setValue(values.isEmpty() ? kDefaultDays : -values[0].toInt());
      if (!values.isEmpty() && QString::number(-days->value()) != values[0]) {
        days->setPrefix(Ui::tr("（もとの値 %1）").arg(values[0]));
        days->setProperty(kOthers, values);
      }
      connect(days, &QSpinBox::valueChanged, this, [this, days] {
        days->setPrefix(QString());
        days->setProperty(kOthers, QVariant());
        Touch(days);
      });
      return days;
    }
    default: {
      auto* text = new QLineEdit(values.value(0));
      text->setPlaceholderText(Ui::tr("検索する文字列（* は任意の文字）"));
      connect(text, &QLineEdit::textChanged, this, [this, text] { Touch(text); });
      return text;
    }
  }
}

QStringList ConditionEditor::Values(int row) const {
  const QWidget* editor = cellWidget(row, kValue);
  if (const auto* text = qobject_cast<const QLineEdit*>(editor)) return {text->text()};
  if (const auto* folders = qobject_cast<const QComboBox*>(editor)) {
    return {folders->currentData().toString()};
  }
  const QStringList others = editor->property(kOthers).toStringList();
  if (const auto* days = qobject_cast<const QSpinBox*>(editor)) {
    if (!others.isEmpty()) return others;
    return {QString::number(-days->value())};
  }
  QStringList statuses;
  for (const auto* check : editor->findChildren<QCheckBox*>()) {
    if (check->isChecked()) statuses.append(check->property("value").toString());
  }
  return statuses + others;
}

ConditionLine ConditionEditor::Condition(int row) const {
  ConditionLine line;
  line.kind = static_cast<Kind>(CellEditor<QComboBox>(*this, row, kKind)->currentData().toInt());
  line.joinedByAnd = CellEditor<QComboBox>(*this, row, kConnector)->currentIndex() == 1;
  line.negated = CellEditor<QCheckBox>(*this, row, kNegation)->isChecked();
  line.values = Values(row);
  return line;
}

void ConditionEditor::AddRow() {
  AddCondition({Kind::Subject, true, false, {}});
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
