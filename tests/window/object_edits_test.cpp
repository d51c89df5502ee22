// Random edits in the windows of objects: after OK every key of a control is as the window showed
// it, and every other key as it was. After a refusal or Cancel nothing has changed.

#include <map>

#include "events/event_log.h"
#include "frame/request_queue.h"
#include "objects/object_types.h"
#include "objects/save_object.h"
#include "objects/window/objects_window.h"
#include "objects/window/settings_window.h"
#include "storage/databases.h"
#include "storage/ui.h"
#include "support/window_driving.h"

namespace vorn {
namespace {

using test::Child;
using Values = std::map<QString, QString>;

const QString kExtra = QStringLiteral("OfALaterVersion");

class NoEvents : public EventView {
 public:
  void ShowEvent(const SerialId&, const QString&, const QString&) override {}
};

class ObjectEdits : public testing::Test {
 protected:
  // An object of a type as an earlier window, or a later version, may have stored it.
  SerialId Make(const QString& type) {
    Context& context = profile_.Get();
    if (type == object_type::kAccount) {
      const DiskPtr account = profile_.AddAccount(110);
      account->Let(kExtra, QStringLiteral("kept"));
      EXPECT_TRUE(SaveObject(context, DatabaseKind::Profile, *account));
      return account->Serial();
    }
    auto object = std::make_shared<Disk>(context.Data.NewSerialID(QStringLiteral("_") + type));
    object->Let(QStringLiteral("FormName"), type);
    object->Let(QStringLiteral("Object"), object->SerialID());
    object->Let(QStringLiteral("Enabled"), true);
    object->Let(QStringLiteral("layout"), QStringLiteral("table"));
    object->Let(kExtra, QStringLiteral("kept"));
    if (type == object_type::kBook) {
      object->Let(QStringLiteral("Addressbook"), QStringLiteral("TO: a@x.jp  A  \r\nCC: b@x.jp B"));
    }
    if (type == object_type::kFolder) {
      object->Let(QStringLiteral("Condition"), QStringLiteral("subject\t含む\tx"));
    }
    EXPECT_TRUE(SaveObject(context, DatabaseKind::Profile, *object));
    context.Objects.Add(object);
    return object->Serial();
  }
  Values Stored(const SerialId& serialId) {
    Disk object(serialId);
    EXPECT_TRUE(OpenDatabase(profile_.Get(), DatabaseKind::Profile));
    EXPECT_TRUE(object.DatabaseToDisk(profile_.Get().Data));
    profile_.Get().Data.Close();
    Values values;
    for (qint32 i = 1; i <= object.Size(); ++i) {
      values[object.NameAt(i).toLower()] = object.Get(object.NameAt(i)).toString();
    }
    values.erase(QStringLiteral("daytime"));
    return values;
  }
  // The keys and values that the window's controls show, lists aside, which are not edited here.
  static Values Shown(const QWidget& window) {
    Values values;
    for (const QWidget* control : Controls(window)) {
      const QString key = control->objectName().mid(2).toLower();
      if (const auto* text = qobject_cast<const QLineEdit*>(control)) values[key] = text->text();
      if (const auto* memo = qobject_cast<const QPlainTextEdit*>(control)) {
        values[key] = memo->toPlainText().replace(u'\n', kLineBreak);
      }
      if (const auto* check = qobject_cast<const QCheckBox*>(control)) {
        values[key] = QVariant(check->isChecked()).toString();
      }
      if (const auto* box = qobject_cast<const QComboBox*>(control)) {
        const bool isText = box->property("tag").toString().contains(u"text");
        values[key] = isText ? box->currentText() : box->currentData().toString();
      }
      if (const auto* slider = qobject_cast<const QAbstractSlider*>(control)) {
        values[key] = QString::number(slider->value());
      }
      if (const auto* spin = qobject_cast<const QSpinBox*>(control)) {
        values[key] = QString::number(spin->value());
      }
    }
    return values;
  }
  static QList<QWidget*> Controls(const QWidget& window) {
    QList<QWidget*> controls;
    for (QWidget* control : window.findChildren<QWidget*>()) {
      const QString name = control->objectName();
      if (control->parentWidget()->objectName() == u"frPage" && name.size() > 2 &&
          name[2].isUpper() && !control->property("tag").toString().contains(u"nosave")) {
        controls.append(control);
      }
    }
    return controls;
  }

  QString Words(const QString& name) {
    static const QStringList words{QStringLiteral("社内"), QStringLiteral("it's \"x\""),
                                   QStringLiteral(" blank "), QString(), QStringLiteral("#2026#")};
    if (name.contains(u"Port")) return QString::number(chance_.bounded(1, 65536));
    if (name.contains(u"Mailaddress")) return QStringLiteral("n%1@example.jp").arg(chance_());
    if (name == u"txObject") return QStringLiteral("名前 %1").arg(chance_());
    return words[chance_.bounded(words.size())];
  }
  // One control, by keys or the mouse, with nothing pressed afterwards that would take it over.
  void Edit(QWidget& window) {
    auto& tabs = Child<QTabWidget>(window, u"tsPage");
    tabs.setCurrentIndex(static_cast<int>(chance_.bounded(tabs.count())));
    QList<QWidget*> controls = Controls(window);
    controls.removeIf([](const QWidget* c) { return !c->isVisible() || !c->isEnabled(); });
    if (controls.isEmpty()) return;
    QWidget* control = controls[chance_.bounded(controls.size())];
    if (auto* entries = qobject_cast<QTableWidget*>(control);
        entries != nullptr && entries->objectName() == u"lvAddressbook") {
      EditEntry(window, *entries);
    } else if (auto* text = qobject_cast<QLineEdit*>(control)) {
      test::Type(*text, Words(control->objectName()));
    } else if (auto* memo = qobject_cast<QPlainTextEdit*>(control)) {
      test::Type(*memo, QStringLiteral("一行\n二行"));
    } else if (qobject_cast<QCheckBox*>(control) != nullptr) {
      QTest::keyClick(control, Qt::Key_Space);
    } else if (qobject_cast<QTreeWidget*>(control) == nullptr) {
      QTest::keyClick(control, chance_.bounded(2) == 0 ? Qt::Key_Down : Qt::Key_Up);
    }
  }

  // A cell that is left open, or a button for a row.
  void EditEntry(const QWidget& window, QTableWidget& entries) {
    const int row = static_cast<int>(chance_.bounded(entries.rowCount()));
    const int column = static_cast<int>(chance_.bounded(2));
    test::ClickRow(entries, entries.item(row, column));
    if (chance_.bounded(4) == 0) {
      static const QList<const char16_t*> buttons{u"cmUp", u"cmDown", u"cmRemove"};
      test::Press(Child<QPushButton>(window, buttons[chance_.bounded(buttons.size())]));
      return;
    }
    entries.editItem(entries.item(row, column));
    auto* cell = qobject_cast<QLineEdit*>(entries.indexWidget(entries.model()->index(row, column)));
    if (cell == nullptr) return;
    test::Type(*cell,
               column == 0 ? QStringLiteral("n%1@example.jp").arg(chance_()) : Words(QString()));
  }
  // A book's entries, each with its address and name.
  static QStringList ShownEntries(const QWidget& window) {
    QStringList shown;
    const auto* entries = window.findChild<QTableWidget*>(QStringLiteral("lvAddressbook"));
    for (int row = 0; entries != nullptr && row < entries->rowCount(); ++row) {
      QStringList cells;
      for (int column = 0; column < 2; ++column) {
        const auto* box = qobject_cast<const QLineEdit*>(
            entries->indexWidget(entries->model()->index(row, column)));
        cells.append(
            (box != nullptr ? box->text() : entries->item(row, column)->text()).simplified());
      }
      if (!cells.join(QString()).isEmpty()) shown.append(cells.join(u' ').trimmed());
    }
    return shown;
  }
  static QStringList StoredEntries(const Values& stored) {
    QStringList entries;
    const auto lines = stored.find(QStringLiteral("addressbook"));
    if (lines == stored.end()) return entries;
    for (const QString& line : lines->second.split(kLineBreak, Qt::SkipEmptyParts)) {
      entries.append(line.section(u' ', 1).simplified());  // behind the kind
    }
    return entries;
  }

  using Opener = std::function<std::unique_ptr<EditingWindow>(const DiskPtr& request)>;

  void EditAtRandom(const QString& type, const SerialId& serialId, const Opener& open) {
    const Values before = Stored(serialId);
    RequestQueue queue(profile_.Get());
    DialogRequest request;
    request.status = type;
    request.serialId = serialId;
    queue.PostDialogRequest(request);
    const std::unique_ptr<EditingWindow> window = open(queue.Front());
    window->setAttribute(Qt::WA_DeleteOnClose, false);
    ASSERT_TRUE(window->LoadDefaultProperty(queue.Front(), false));
    window->show();
    for (int edit = static_cast<int>(chance_.bounded(1, 10)); edit > 0; --edit) Edit(*window);
    const Values shown = Shown(*window);
    const QStringList entries = ShownEntries(*window);
    const bool cancels = chance_.bounded(5) == 0;
    test::Press(Child<QPushButton>(*window, cancels ? u"cmCancel" : u"cmOk"));
    const Values after = Stored(serialId);
    if (cancels || window->isVisible()) {
      EXPECT_EQ(after, before) << "nothing was confirmed";
      return;
    }
    EXPECT_EQ(StoredEntries(after), entries);
    for (const auto& [key, value] : after) {
      const auto control = shown.find(key);
      const auto kept = before.find(key);
      if (control != shown.end()) {
        EXPECT_EQ(value, Expected(key, control->second, shown)) << qPrintable(key);
      } else if (kept != before.end() && key != u"addressbook") {
        EXPECT_EQ(value, kept->second) << qPrintable(key);
      }
    }
    for (const auto& [key, value] : before) {
      EXPECT_TRUE(after.contains(key)) << qPrintable(key) << " was lost";
    }
    for (const auto& [key, value] : shown) {
      EXPECT_TRUE(after.contains(key)) << qPrintable(key) << " was not stored";
    }
  }
  // A password that is not to be saved is not, whatever its box shows; a new folder gets its kind;
  // blanks around the name of a server or its user are no characters of it.
  static QString Expected(const QString& key, const QString& value, const Values& shown) {
    const auto save = shown.find(QStringLiteral("inmailserverpasswordsave"));
    const bool isUnsaved = save != shown.end() && save->second == u"false";
    if (key == u"inmailserverpassword" && isUnsaved) return {};
    if (key.endsWith(u"mailserver") || key.endsWith(u"mailserveruser")) return value.trimmed();
    if (key == u"draw" && value.isEmpty()) return QStringLiteral("active");
    return value;
  }

  test::TestProfile profile_;
  NoEvents view_;
  EventLog events_{profile_.Get(), view_};
  QRandomGenerator chance_;
};

TEST_F(ObjectEdits, EveryKeyIsAsShownAndEveryOtherAsBefore) {
  const quint32 seed = test::Seed("VORN_EDITS_SEED");
  const QStringList types{object_type::kAccount, object_type::kFolder, object_type::kBook,
                          object_type::kBookmark};
  const Opener objects = [this](const DiskPtr&) {
    return std::make_unique<ObjectsWindow>(profile_.Get(), events_);
  };
  const Opener settings = [this](const DiskPtr&) {
    return std::make_unique<SettingsWindow>(profile_.Get());
  };
  const int rounds = test::Rounds(10, 200);
  for (int round = 0; round < rounds && !HasFailure(); ++round) {
    chance_.seed(seed + static_cast<quint32>(round));
    for (const QString& type : types) {
      SCOPED_TRACE("VORN_EDITS_SEED=" + std::to_string(seed) + " round " + std::to_string(round) +
                   " " + type.toStdString());
      EditAtRandom(type, Make(type), objects);
    }
    SCOPED_TRACE("VORN_EDITS_SEED=" + std::to_string(seed) + " settings");
    EditAtRandom(QStringLiteral("logo"), fixed_serial::kSettings, settings);
  }
}

}  // namespace
}  // namespace vorn
