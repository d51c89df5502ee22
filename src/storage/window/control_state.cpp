#include "storage/window/control_state.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGuiApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScreen>
#include <QSlider>
#include <QSpinBox>
#include <QTableWidget>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <algorithm>

#include "objects/any_object.h"
#include "objects/object_loader.h"
#include "objects/placement.h"
#include "objects/save_object.h"
#include "storage/base/time_text.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kPrefixLength = 2;
constexpr QSize kLeastShare(800, 560);  // of a small screen it is all
constexpr QSize kDefaultSize(600, 400);
constexpr int kAroundWindow = 50;  // at most, of a window that is as large as its screen

QString TagOf(const QObject& object) {
  return object.property("tag").toString();
}

bool HasKey(const QWidget& control) {
  static const QStringList kPrefixes = {QStringLiteral("tx"), QStringLiteral("ck"),
                                        QStringLiteral("cb"), QStringLiteral("lv"),
                                        QStringLiteral("tv"), QStringLiteral("sl")};
  const QString name = control.objectName();
  return name.size() > kPrefixLength && kPrefixes.contains(name.left(kPrefixLength)) &&
         name[kPrefixLength].isUpper();
}

bool IsSaved(const QWidget& control, const QStringList& pages) {
  const QWidget* frame = control.parentWidget();
  return HasKey(control) && !TagOf(control).contains(u"nosave") && frame != nullptr &&
         frame->objectName() == u"frPage" && pages.contains(TagOf(*frame), Qt::CaseInsensitive);
}

QString ListText(const FormWindow& window, const QTableWidget& list) {
  QStringList lines;
  for (int row = 0; row < list.rowCount(); ++row) {
    const QString line = window.ListViewLine(list, row);
    if (!line.isEmpty()) lines.append(line);
  }
  return lines.join(kLineBreak);
}

QString RowKey(const QTableWidget& list, int row) {
  const QTableWidgetItem* item = list.item(row, 0);
  return item == nullptr ? QString() : item->data(Qt::UserRole).toString();
}

QString ListValue(const FormWindow& window, const QTableWidget& list) {
  const QString tag = TagOf(list);
  if (tag.contains(u"text")) return ListText(window, list);
  if (!tag.contains(u"key")) return RowKey(list, list.currentRow());
  QStringList keys;
  for (int row = 0; row < list.rowCount(); ++row) keys.append(RowKey(list, row));
  return keys.join(kLineBreak);
}

// The control's value; invalid for a control that has none.
QVariant ValueOf(const FormWindow& window, const QWidget& control) {
  if (const auto* text = qobject_cast<const QLineEdit*>(&control)) return text->text();
  if (const auto* memo = qobject_cast<const QPlainTextEdit*>(&control)) {
    return memo->toPlainText().replace(u'\n', kLineBreak);
  }
  if (const auto* check = qobject_cast<const QCheckBox*>(&control)) return check->isChecked();
  if (const auto* combo = qobject_cast<const QComboBox*>(&control)) {
    return TagOf(*combo).contains(u"text") ? QVariant(combo->currentText()) : combo->currentData();
  }
  if (const auto* slider = qobject_cast<const QSlider*>(&control)) return slider->value();
  if (const auto* spin = qobject_cast<const QSpinBox*>(&control)) return spin->value();
  if (const auto* tree = qobject_cast<const QTreeWidget*>(&control)) {
    const QTreeWidgetItem* item = tree->currentItem();
    return item == nullptr ? QVariant() : item->data(0, Qt::UserRole);
  }
  if (const auto* list = qobject_cast<const QTableWidget*>(&control)) {
    return ListValue(window, *list);
  }
  return {};
}

void SelectNode(QTreeWidget& tree, const QString& key) {
  for (QTreeWidgetItemIterator item(&tree); *item != nullptr; ++item) {
    if ((*item)->data(0, Qt::UserRole).toString() == key) tree.setCurrentItem(*item);
  }
}

void FillList(FormWindow& window, QTableWidget& list, const QString& text) {
  list.setRowCount(0);
  for (const QString& line : text.split(kLineBreak, Qt::SkipEmptyParts)) {
    window.ControlListViewItem(list, line);
  }
}

void SelectRow(QTableWidget& list, const QString& key) {
  for (int row = 0; row < list.rowCount(); ++row) {
    if (RowKey(list, row) == key) list.selectRow(row);
  }
}

void SetValue(FormWindow& window, QWidget& control, const QVariant& value) {
  if (auto* text = qobject_cast<QLineEdit*>(&control)) {
    text->setText(value.toString());
  } else if (auto* memo = qobject_cast<QPlainTextEdit*>(&control)) {
    memo->setPlainText(value.toString());
  } else if (auto* check = qobject_cast<QCheckBox*>(&control)) {
    check->setChecked(value.toBool());
  } else if (auto* combo = qobject_cast<QComboBox*>(&control)) {
    const bool isText = TagOf(*combo).contains(u"text");
    const int index = isText ? combo->findText(value.toString()) : combo->findData(value);
    if (index >= 0) combo->setCurrentIndex(index);
    if (isText && combo->isEditable()) combo->setEditText(value.toString());
  } else if (auto* slider = qobject_cast<QSlider*>(&control)) {
    slider->setValue(value.toInt());
  } else if (auto* spin = qobject_cast<QSpinBox*>(&control)) {
    spin->setValue(value.toInt());
  } else if (auto* tree = qobject_cast<QTreeWidget*>(&control)) {
    SelectNode(*tree, value.toString());
  } else if (auto* list = qobject_cast<QTableWidget*>(&control)) {
    TagOf(*list).contains(u"select") ? SelectRow(*list, value.toString())
                                     : FillList(window, *list, value.toString());
  }
}

// As it was last, or as a window that is opened for the first time is meant to be, whether the
// screen has room for that or not.
QSize WantedSize(const Placement& kept, QSize screen) {
  const int share = kept.Share();
  return kept.Size(share > 0 ? (screen * share / 100).expandedTo(kLeastShare) : kDefaultSize);
}

// What a small screen cuts off a window is no wish of the user's.
QSize SizeToKeep(const Placement& kept, const QWidget& window) {
  const QSize screen = window.screen()->availableSize();
  const QSize wanted = WantedSize(kept, screen);
  const auto side = [](int now, int most, int wish) {
    return now + kAroundWindow >= most ? qMax(now, wish) : now;
  };
  return {side(window.width(), screen.width(), wanted.width()),
          side(window.height(), screen.height(), wanted.height())};
}

}  // namespace

DiskPtr FormToDisk(FormWindow& window, const SerialId& serialId) {
  auto bag = std::make_shared<Disk>(serialId);
  const QStringList pages = window.ShownPages();
  for (const QWidget* control : window.Form().findChildren<QWidget*>()) {
    if (!IsSaved(*control, pages)) continue;
    const QVariant value = ValueOf(window, *control);
    if (value.isValid()) bag->Let(control->objectName().mid(kPrefixLength), value);
  }
  AnyObject::SetChanged(*bag, GeneralTimeText(CurrentTimeText()));
  return bag;
}

void DiskToForm(FormWindow& window, const Disk& object) {
  for (QWidget* control : window.Form().findChildren<QWidget*>()) {
    if (!HasKey(*control)) continue;
    const QVariant value = object.Get(control->objectName().mid(kPrefixLength));
    if (value.isValid()) SetValue(window, *control, value);
  }
  window.CallBackFormData(object);
}

bool HasControlFor(FormWindow& window, const QString& key) {
  const auto controls = window.Form().findChildren<QWidget*>();
  return std::any_of(controls.begin(), controls.end(), [&key](const QWidget* control) {
    return HasKey(*control) &&
           control->objectName().mid(kPrefixLength).compare(key, Qt::CaseInsensitive) == 0;
  });
}

DiskPtr PlacementBag(Context& context, const QString& name) {
  const SerialId serialId(QStringLiteral("DATA_") + name);
  DiskPtr bag = LoadObject(context, serialId);
  if (bag == nullptr) {
    bag = std::make_shared<Disk>(serialId);
    context.Objects.Add(bag);
  }
  MarkForSaving(*bag);
  return bag;
}

void RestoreWindowPlacement(Context& context, QWidget& window, const QString& name) {
  const DiskPtr bag = PlacementBag(context, name);
  const Placement kept(*bag);
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  // The screen may have shrunk, or be scaled.
  const QSize size = WantedSize(kept, screen.size()).boundedTo(screen.size());
  const QPoint centred = screen.center() - QPoint(size.width() / 2, size.height() / 2);
  const QRect place(kept.Position(centred), size);
  window.resize(size);
  // A place on a screen that is gone would hide the window, one over the edge its buttons.
  if (!screen.intersects(place)) return window.move(centred);
  window.move(qMax(screen.left(), qMin(place.left(), screen.right() + 1 - size.width())),
              qMax(screen.top(), qMin(place.top(), screen.bottom() + 1 - size.height())));
}

bool HasPlacement(Context& context, const QString& name) {
  return Placement(*PlacementBag(context, name)).HasPlace();
}

bool WasMaximized(Context& context, const QString& name) {
  return Placement(*PlacementBag(context, name)).IsMaximized();
}

void KeepWindowPlacement(Context& context, const QWidget& window, const QString& name) {
  const DiskPtr bag = PlacementBag(context, name);
  Placement::SetMaximized(*bag, window.isMaximized());
  QRect place(window.pos(), SizeToKeep(Placement(*bag), window));
  if (window.isMaximized()) {
    place = window.normalGeometry();
    const Placement kept(*bag);
    if (place == QRect(kept.Position({0, 0}), kept.Size({0, 0})))
      return;  // it has been maximised from the start
    // Windows are placed by their frame, which that geometry leaves out.
    place.translate(window.pos() - window.geometry().topLeft());
  }
  Placement::SetPlace(*bag, place);
}

}  // namespace vorn
