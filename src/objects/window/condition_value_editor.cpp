#include "objects/window/condition_value_editor.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>

#include "kit/window/plain_text.h"
#include "objects/any_object.h"
#include "objects/object_types.h"
#include "objects/shown_object.h"
#include "storage/message_state.h"
#include "storage/ui.h"

namespace vorn {
namespace {

using Touched = std::function<void(const QWidget*)>;

// Dynamic property of an editor: the stored values that it cannot show.
constexpr char kOthers[] = "others";
constexpr int kMaxDays = 36500;
constexpr int kDefaultDays = 7;

// The states' names differ from the commands of the same word in other languages.
constexpr struct {
  MessageStatus value;
  struct {
    const char* source;
    const char* comment;
  } text;
} kStatuses[] = {{kStatusEdit, QT_TRANSLATE_NOOP3("vorn::Ui", "編集", "state")},
                 {kStatusWaiting, QT_TRANSLATE_NOOP3("vorn::Ui", "待ち", "state")},
                 {kStatusSent, QT_TRANSLATE_NOOP3("vorn::Ui", "送信", "state")},
                 {kStatusReceived, QT_TRANSLATE_NOOP3("vorn::Ui", "受信", "state")}};

template <typename Editor>
const Editor& As(const QWidget& editor) {
  return *qobject_cast<const Editor*>(&editor);
}

QWidget* MakeText(const Context&, const QStringList& values, const Touched& touched) {
  auto* text = new QLineEdit(values.value(0));
  text->setPlaceholderText(Ui::tr("検索する文字列（* は任意の文字）"));
  QObject::connect(text, &QLineEdit::textChanged, text, [text, touched] { touched(text); });
  return text;
}

QStringList TextOf(const QWidget& editor) {
  return {As<QLineEdit>(editor).text()};
}

QWidget* MakeFolders(const Context& context, const QStringList& values, const Touched& touched) {
  auto* folders = new QComboBox;
  for (const DiskPtr& object : context.Objects) {
    if (AnyObject(*object).Is(object_type::kFolder)) {
      folders->addItem(ShownObject(*object).Name(), object->Serial().Text());
    }
  }
  if (!values.isEmpty() && folders->findData(values[0]) < 0) {
    folders->addItem(Ui::tr("（削除されたフォルダ）"), values[0]);
  }
  const int index = folders->findData(values.value(0));
  if (index >= 0) folders->setCurrentIndex(index);
  QObject::connect(folders, &QComboBox::currentIndexChanged, folders,
                   [folders, touched] { touched(folders); });
  return folders;
}

QStringList FolderOf(const QWidget& editor) {
  return {As<QComboBox>(editor).currentData().toString()};
}

QWidget* MakeStates(const Context&, const QStringList& values, const Touched& touched) {
  auto* box = new QWidget;
  auto* layout = new QHBoxLayout(box);
  layout->setContentsMargins(4, 0, 4, 0);
  QStringList others = values;
  for (const auto& status : kStatuses) {
    auto* check = new QCheckBox(Ui::tr(status.text.source, status.text.comment));
    check->setProperty("value", status.value);
    check->setChecked(others.removeAll(QString::number(status.value)) > 0);
    QObject::connect(check, &QCheckBox::toggled, check, [check, touched] { touched(check); });
    layout->addWidget(check);
  }
  box->setProperty(kOthers, others);
  if (!others.isEmpty()) {
    layout->addWidget(PlainLabel(Ui::tr("（ほか: %1）").arg(others.join(u','))));
  }
  layout->addStretch();
  return box;
}

QStringList StatesOf(const QWidget& editor) {
  QStringList states;
  for (const auto* check : editor.findChildren<QCheckBox*>()) {
    if (check->isChecked()) states.append(check->property("value").toString());
  }
  return states + editor.property(kOthers).toStringList();
}

// A stored number counts from today: -7 stands for the last seven days.
QWidget* MakeDays(const Context&, const QStringList& values, const Touched& touched) {
  auto* days = new QSpinBox;
  days->setRange(0, kMaxDays);
  days->setSuffix(Ui::tr(" 日前から"));
  days->setValue(values.isEmpty() ? kDefaultDays : -values[0].toInt());
  if (!values.isEmpty() && QString::number(-days->value()) != values[0]) {
    days->setPrefix(Ui::tr("（もとの値 %1）").arg(values[0]));
    days->setProperty(kOthers, values);
  }
  QObject::connect(days, &QSpinBox::valueChanged, days, [days, touched] {
    days->setPrefix(QString());
    days->setProperty(kOthers, QVariant());
    touched(days);
  });
  return days;
}

QStringList DaysOf(const QWidget& editor) {
  const QStringList others = editor.property(kOthers).toStringList();
  return others.isEmpty() ? QStringList{QString::number(-As<QSpinBox>(editor).value())} : others;
}

// A cell without an editor.
QWidget* MakeNothing(const Context&, const QStringList&, const Touched&) {
  return new QWidget;
}

QStringList Nothing(const QWidget&) {
  return {};
}

}  // namespace

ConditionValueEditor EditorOf(ConditionValue value) {
  switch (value) {
    case ConditionValue::Text:
      return {MakeText, TextOf};
    case ConditionValue::Folder:
      return {MakeFolders, FolderOf};
    case ConditionValue::States:
      return {MakeStates, StatesOf};
    case ConditionValue::Days:
      return {MakeDays, DaysOf};
    case ConditionValue::None:
      return {MakeNothing, Nothing};
  }
  return {};
}

}  // namespace vorn
