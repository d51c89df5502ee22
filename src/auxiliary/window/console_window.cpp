#include "auxiliary/window/console_window.h"

#include <QApplication>
#include <QHash>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QTimer>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QVBoxLayout>
#include <algorithm>
#include <functional>

#include "auxiliary/window/console_request.h"
#include "kit/window/icons.h"
#include "kit/window/ok_cancel.h"
#include "kit/window/plain_text.h"
#include "objects/any_object.h"
#include "objects/select_objects.h"
#include "objects/shown_object.h"
#include "storage/bags/profile_bag.h"
#include "storage/ui.h"
#include "storage/window/file_dialogs.h"

namespace vorn {
namespace {

using Mode = ConsoleRequest::Mode;

constexpr int kMinimumWidth = 360;
constexpr int kNamesRole = Qt::UserRole + 1;

// What Enter takes is seen as well while the keyboard is in the box of the name.
void ShowChoiceAlways(QWidget& list) {
  QPalette palette = list.palette();
  for (const QPalette::ColorRole role : {QPalette::Highlight, QPalette::HighlightedText}) {
    palette.setBrush(QPalette::Inactive, role, palette.brush(QPalette::Active, role));
  }
  list.setPalette(palette);
}

}  // namespace

ConsoleWindow::ConsoleWindow(Context& context, QWidget* parent)
    : QDialog(parent),
      context_(context),
      label_(PlainLabel()),
      text_(new QLineEdit),
      several_(PlainLabel()),
      sliderFrame_(new QWidget),
      slider_(new QSlider(Qt::Horizontal)),
      tree_(new QTreeWidget),
      list_(new QListWidget) {
  setObjectName(QStringLiteral("console"));
  setMinimumWidth(kMinimumWidth);
  label_->setObjectName(QStringLiteral("Label1"));
  label_->setWordWrap(true);
  text_->setObjectName(QStringLiteral("Text1"));
  several_->setObjectName(QStringLiteral("lbSeveral"));
  several_->setWordWrap(true);
  several_->hide();
  slider_->setObjectName(QStringLiteral("Slider1"));
  slider_->setTickPosition(QSlider::TicksBelow);
  tree_->setObjectName(QStringLiteral("TreeView1"));
  tree_->setHeaderHidden(true);
  ShowChoiceAlways(*tree_);
  list_->setObjectName(QStringLiteral("ListView1"));
  connect(tree_, &QTreeWidget::itemDoubleClicked, this, &ConsoleWindow::cmOk_Click);
  tree_->installEventFilter(this);
  text_->installEventFilter(this);
  connect(text_, &QLineEdit::textEdited, this, &ConsoleWindow::FindNode);

  // The position as a number, which can be typed as well.
  auto* number = new QSpinBox;
  connect(slider_, &QSlider::valueChanged, number, &QSpinBox::setValue);
  connect(number, &QSpinBox::valueChanged, slider_, &QSlider::setValue);
  connect(slider_, &QSlider::rangeChanged, number, &QSpinBox::setRange);
  auto* sliderLayout = new QHBoxLayout(sliderFrame_);
  sliderLayout->setContentsMargins(0, 0, 0, 0);
  sliderLayout->addWidget(slider_, 1);
  sliderLayout->addWidget(number);

  auto* buttons = OkCancelBox();
  another_ = buttons->addButton(QString(), QDialogButtonBox::ActionRole);
  another_->setObjectName(QStringLiteral("cmAnother"));
  connect(another_, &QPushButton::clicked, this,
          [this] { End(QString(kAnotherWanted + text_->text().trimmed())); });
  connect(buttons, &QDialogButtonBox::accepted, this, &ConsoleWindow::cmOk_Click);
  connect(buttons, &QDialogButtonBox::rejected, this, &ConsoleWindow::reject);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(label_);
  layout->addWidget(text_);
  layout->addWidget(several_);
  layout->addWidget(sliderFrame_);
  layout->addWidget(tree_);
  layout->addWidget(list_);
  layout->addWidget(buttons);
}

// The toolkit gives a tree that gets the keyboard a current entry, which looks chosen and is not.
// Without one the first key that moves chooses the first.
bool ConsoleWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == tree_ && event->type() == QEvent::FocusIn && tree_->selectedItems().isEmpty()) {
    QTimer::singleShot(0, tree_, [this] {
      if (tree_->selectedItems().isEmpty()) tree_->setCurrentItem(nullptr);
    });
  }
  const bool isKey = watched == text_ && event->type() == QEvent::KeyPress;
  return isKey && mode_ == Mode::Tree && PassOn(*static_cast<QKeyEvent*>(event));
}

// The keys that go from node to node do so while the name is typed.
bool ConsoleWindow::PassOn(QKeyEvent& key) {
  switch (key.key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
      return QApplication::sendEvent(tree_, &key);
    default:
      return false;
  }
}

// The one with that name, or else those whose names begin so, in whichever language.
QList<QTreeWidgetItem*> ConsoleWindow::NodesNamed(const QString& typed) const {
  const QString wanted = typed.trimmed();
  QList<QTreeWidgetItem*> exact;
  QList<QTreeWidgetItem*> begun;
  if (wanted.isEmpty()) return {};
  for (QTreeWidgetItemIterator item(tree_); *item != nullptr; ++item) {
    const QStringList names = (*item)->data(0, kNamesRole).toStringList();
    const auto begins = [&wanted](const QString& name) {
      return name.startsWith(wanted, Qt::CaseInsensitive);
    };
    if (names.contains(wanted, Qt::CaseInsensitive)) exact.append(*item);
    if (std::any_of(names.begin(), names.end(), begins)) begun.append(*item);
  }
  return exact.isEmpty() ? begun : exact;
}

// What is none of the names, or may be several, chooses nothing, so that Enter does not take what
// was chosen before.
void ConsoleWindow::FindNode(const QString& typed) {
  if (mode_ != Mode::Tree) return;
  const QList<QTreeWidgetItem*> named = NodesNamed(typed);
  tree_->setCurrentItem(named.size() == 1 ? named.first() : nullptr);
  if (named.size() > 1) tree_->scrollToItem(named.first());
  several_->setVisible(named.size() > 1);
  several_->setText(
      Ui::tr("「%1」で始まるものが%2個あります。続きを入力するか、↑ ↓ で選んでください。")
          .arg(ShownText(typed.trimmed()))
          .arg(named.size()));
}

void ConsoleWindow::LoadDefaultProperty(const DiskPtr& bag) {
  request_ = bag;
  const ConsoleRequest request(*bag);
  mode_ = request.Asked();
  setWindowTitle(request.Title());
  label_->setText(request.Caption(Ui::tr("設定値を入力してください。")));
  text_->setAccessibleName(label_->text());
  sliderFrame_->setVisible(mode_ == Mode::Slider);
  tree_->setVisible(mode_ == Mode::Tree);
  list_->setVisible(mode_ == Mode::List);
  another_->setText(request.Another());
  const bool takesAnother = !another_->text().isEmpty();
  another_->setVisible(takesAnother);
  text_->setVisible(mode_ == Mode::Text || takesAnother);
  const QString initial = request.Initial().toString();
  if (mode_ == Mode::Text) {
    const QString mask = request.Mask();
    text_->setEchoMode(mask.isEmpty() ? QLineEdit::Normal : QLineEdit::Password);
    if (!mask.isEmpty()) {
      text_->setStyleSheet(
          QStringLiteral("lineedit-password-character: %1").arg(mask.at(0).unicode()));
    }
    text_->setText(initial);
    text_->selectAll();
    request.TakesKeys() ? text_->setFocus() : setFocus();
  } else if (mode_ == Mode::Slider) {
    slider_->setRange(request.Minimum(), request.Maximum());
    slider_->setTickInterval(request.Step());
    slider_->setValue(request.Initial().toInt());
    slider_->setFocus();
  } else if (mode_ == Mode::Tree) {
    FillTree(request.Objects(), SerialId(initial));
    text_->setPlaceholderText(Ui::tr("名前を入力して選びます。"));
    takesAnother ? text_->setFocus() : tree_->setFocus();
  } else if (mode_ == Mode::List) {
    list_->setSelectionMode(request.TakesSeveral() ? QAbstractItemView::ExtendedSelection
                                                   : QAbstractItemView::SingleSelection);
    FillList(request.Entries(), initial);
    list_->setFocus();
  }
}

void ConsoleWindow::FillTree(const QString& draw, const SerialId& key) {
  const DiskCollectionPtr objects = SelectObjects(context_.Objects, *context_.Session, draw);
  QHash<SerialId, QTreeWidgetItem*> items;
  for (const DiskPtr& object : *objects) {
    auto* item = new QTreeWidgetItem(QStringList{ShownObject(*object).Name()});
    item->setIcon(0, Icon(AnyObject(*object).Draw()));
    item->setData(0, Qt::UserRole, object->SerialID());
    item->setData(0, kNamesRole, ShownObject(*object).Names());
    items.insert(object->Serial(), item);
  }
  // Under its parent where that is shown too, as in the main window.
  for (const DiskPtr& object : *objects) {
    QTreeWidgetItem* item = items.value(object->Serial());
    QTreeWidgetItem* parent = items.value(AnyObject(*object).Parent());
    const QTreeWidgetItem* above = parent;
    while (above != nullptr && above != item) above = above->parent();
    if (parent != nullptr && above == nullptr) {
      parent->addChild(item);
    } else {
      tree_->addTopLevelItem(item);
    }
  }
  tree_->expandAll();
  if (QTreeWidgetItem* item = items.value(key)) tree_->setCurrentItem(item);
}

void ConsoleWindow::FillList(const QString& entries, const QString& chosen) {
  const QStringList selected = chosen.split(kLineBreak, Qt::SkipEmptyParts);
  for (const QString& line : entries.split(kLineBreak, Qt::SkipEmptyParts)) {
    const QStringList fields = line.split(u'@');
    auto* item = new QListWidgetItem(ShownText(fields.value(1, fields[0])), list_);
    item->setData(Qt::UserRole, fields[0]);
    if (fields.size() == 3) item->setIcon(Icon(fields[2]));
    item->setSelected(selected.contains(fields[0]));
  }
}

QVariant ConsoleWindow::Answer() const {
  if (mode_ == Mode::Text) return text_->text();
  if (mode_ == Mode::Slider) return slider_->value();
  if (mode_ == Mode::Tree) {
    // The focus alone chooses nothing.
    const QList<QTreeWidgetItem*> chosen = tree_->selectedItems();
    if (!chosen.isEmpty()) return chosen.first()->data(0, Qt::UserRole);
    const QString name = text_->text().trimmed();
    return name.isEmpty() ? QString() : kAnotherWanted + name;
  }
  QStringList keys;
  for (int row = 0; row < list_->count(); ++row) {
    const QListWidgetItem* item = list_->item(row);
    if (item->isSelected()) keys.append(item->data(Qt::UserRole).toString());
  }
  return keys.join(kLineBreak);
}

void ConsoleWindow::cmOk_Click() {
  if (!several_->isHidden() && tree_->selectedItems().isEmpty()) return;
  QVariant answer = Answer();
  if (ConsoleRequest(*request_).AsksForFolder() && !answer.toString().isEmpty()) {
    const QString folder = AskFolder(
        context_, this, FileTask::SaveAttachment,
        Ui::tr("フォルダの選択") + QStringLiteral(" - ") + Ui::tr("フォルダを選択してください。"));
    if (!folder.isEmpty()) answer = QString(answer.toString() + kLineBreak + folder);
  }
  End(answer);
}

void ConsoleWindow::End(const QVariant& answer) {
  ProfileBag::SetAnswer(*context_.Session, answer);
  ProfileBag::SetCancelled(*context_.Session, false);
  accept();
}

void ConsoleWindow::reject() {
  ProfileBag::SetAnswer(*context_.Session, QString());
  ProfileBag::SetCancelled(*context_.Session, true);
  QDialog::reject();
}

namespace {

// `fill` says what is asked in that mode.
std::optional<QString> Ask(Context& context, QWidget* parent, Mode mode, const QString& title,
                           const QString& caption,
                           const std::function<void(ConsoleRequest&)>& fill) {
  const auto bag = std::make_shared<Disk>(context.Data.NewSerialID());
  ConsoleRequest request(*bag);
  request.Begin(mode, title, caption);
  fill(request);
  ConsoleWindow window(context, parent);
  window.LoadDefaultProperty(bag);
  window.exec();
  const ProfileBag session(*context.Session);
  if (session.IsCancelled()) return std::nullopt;
  return session.Answer();
}

}  // namespace

std::optional<QString> InputText(Context& context, QWidget* parent, const QString& title,
                                 const QString& caption, const QString& text,
                                 const QString& passwordCharacter) {
  return Ask(context, parent, Mode::Text, title, caption, [&](ConsoleRequest& request) {
    request.SetInitial(text);
    request.SetMask(passwordCharacter);
  });
}

std::optional<QString> InputPassword(Context& context, QWidget* parent, const QString& title,
                                     const QString& caption, bool takesKeys) {
  return Ask(context, parent, Mode::Text, title, caption, [&](ConsoleRequest& request) {
    request.SetMask(QStringLiteral("*"));
    request.SetTakesKeys(takesKeys);
  });
}

std::optional<QString> InputSlider(Context& context, QWidget* parent, const QString& title,
                                   const QString& caption, qint32 position, qint32 step,
                                   qint32 minimum, qint32 maximum) {
  return Ask(context, parent, Mode::Slider, title, caption, [&](ConsoleRequest& request) {
    request.SetInitial(position);
    request.SetRange(minimum, maximum, step);
  });
}

std::optional<QString> InputTree(Context& context, QWidget* parent, const QString& title,
                                 const QString& caption, const QString& draw, const SerialId& key,
                                 const QString& another) {
  return Ask(context, parent, Mode::Tree, title, caption, [&](ConsoleRequest& request) {
    request.SetObjects(draw);
    request.SetInitial(key.Text());
    request.SetAnother(another);
  });
}

std::optional<QString> InputList(Context& context, QWidget* parent, const QString& title,
                                 const QString& caption, const QString& chosen,
                                 const QString& entries, bool several, const QString& folder) {
  return Ask(context, parent, Mode::List, title, caption, [&](ConsoleRequest& request) {
    request.SetInitial(chosen);
    request.SetEntries(entries, several);
    request.SetFolder(folder);
  });
}

}  // namespace vorn
