// The windows that edit profiles, tables and settings, and ask for one value, driven by keys and
// clicks.

#include <gtest/gtest.h>

#include "auxiliary/window/console_window.h"
#include "objects/object_types.h"
#include "objects/profile/profile_password.h"
#include "objects/select_objects.h"
#include "objects/settings.h"
#include "objects/window/recovery_code_window.h"
#include "objects/window/settings_window.h"
#include "storage/base/time_text.h"
#include "window/editing_fixture.h"

namespace vorn {
namespace {

using test::Child;
using test::InModal;
using test::NextMessageBox;
using test::Press;
using test::Type;

TEST_F(EditingTest, TablesOfAddressesAndPlacesAreEditedInPlace) {
  ObjectsWindow& window = Open(object_type::kBook);
  Type(Child<QLineEdit>(window, u"txObject"), QStringLiteral("友人"));
  auto* list = &Child<QTableWidget>(window, u"lvAddressbook");
  ASSERT_EQ(list->rowCount(), 1);
  list->item(0, 0)->setText(QStringLiteral("nobody"));
  list->item(0, 1)->setText(QStringLiteral("山田 太郎"));
  EXPECT_EQ(list->rowCount(), 2);
  PressOk();
  EXPECT_FALSE(Error().isEmpty());
  // Enter leads to the begin of the next row.
  list->setCurrentCell(0, 1);
  list->editItem(list->item(0, 1));
  QTest::keyClick(list->viewport()->findChild<QLineEdit*>(), Qt::Key_Return);
  QCoreApplication::processEvents();  // the editor is closed later
  EXPECT_EQ(list->currentIndex(), list->model()->index(1, 0));
  // Alt and a button's letter leave the keyboard in the cell; what is typed there is kept.
  list->item(0, 0)->setText(QStringLiteral("y@example.org"));
  list->item(1, 0)->setText(QStringLiteral("second@example.org"));
  list->setCurrentCell(1, 0);
  list->editItem(list->item(1, 0));
  auto* cell = qobject_cast<QLineEdit*>(list->indexWidget(list->currentIndex()));
  ASSERT_NE(cell, nullptr);
  cell->selectAll();
  test::TypeText(*cell, QStringLiteral("typed@example.org"));
  Child<QPushButton>(window, u"cmUp").click();  // as its letter does
  QCoreApplication::processEvents();
  EXPECT_EQ(list->item(0, 0)->text(), QStringLiteral("typed@example.org"));
  EXPECT_EQ(list->currentRow(), 0);
  Press(Child<QPushButton>(window, u"cmDown"));
  list->item(1, 0)->setText(QStringLiteral("z@example.org"));
  PressOk();
  EXPECT_EQ(Stored(window.Tag())->Text(u"Addressbook"),
            QStringLiteral("TO: y@example.org 山田 太郎\r\nTO: z@example.org"));
  Open(object_type::kBook, window.Tag());
  // Rows from elsewhere, and an entry that was never an address.
  list = &Child<QTableWidget>(*window_, u"lvAddressbook");
  EXPECT_EQ(Child<QTabWidget>(*window_, u"tsPage").currentIndex(), 1) << "where its entries are";
  ASSERT_EQ(list->rowCount(), 3);
  QGuiApplication::clipboard()->setText(
      QStringLiteral("\"Suzuki, Jiro\" <s@example.org>\nmailto:t@example.org\t\"Tanaka, Ken\"\n"));
  list->setCurrentCell(2, 0);
  QTest::keySequence(list, QKeySequence::Paste);
  list->item(0, 0)->setText(QStringLiteral("k1,k2@example.org"));
  PressOk();
  EXPECT_FALSE(Error().isEmpty());
  list->setCurrentCell(0, 0);
  QTest::keyClick(list, Qt::Key_Down, Qt::ShiftModifier);
  Press(Child<QPushButton>(*window_, u"cmRemove"));
  PressOk();
  EXPECT_EQ(Stored(window_->Tag())->Text(u"Addressbook"),
            QStringLiteral("TO: s@example.org Suzuki, Jiro\r\nTO: t@example.org Tanaka, Ken"));

  const DiskCollectionPtr bookmarks =
      SelectObjects(context().Objects, *context().Session, object_type::kBookmark);
  const DiskPtr bookmark = bookmarks->First();
  const QString before = bookmark->Text(u"Url");
  Open(object_type::kBookmark, bookmark->Serial());
  PressOk();
  EXPECT_EQ(Stored(bookmark->Serial())->Text(u"Url"), before);
  Open(object_type::kBookmark, bookmark->Serial());
  Child<QTableWidget>(*window_, u"lvUrl")
      .item(0, 0)
      ->setText(QStringLiteral("https://x.example/two words"));
  PressOk();
  EXPECT_TRUE(Stored(bookmark->Serial())
                  ->Text(u"Url")
                  .startsWith(QStringLiteral("https://x.example/two%20words")));
}

TEST_F(EditingTest, WhatWasChangedIsNotDroppedByEscape) {
  ObjectsWindow* window = &Open(object_type::kAccount);
  Child<QTabWidget>(*window, u"tsPage").setCurrentIndex(1);
  // Nothing was, however long the window has been there.
  const QString opened = GeneralTimeText(CurrentTimeText());
  ASSERT_TRUE(test::WaitFor([&opened] { return GeneralTimeText(CurrentTimeText()) != opened; }));
  QTest::keyClick(window, Qt::Key_Escape);
  EXPECT_FALSE(window->isVisible());
  window = &Open(object_type::kProfile, profile_.Get().Session->Serial());
  Type(Child<QLineEdit>(*window, u"txPassword"), QStringLiteral("secret"));  // in no bag
  const QString question = QStringLiteral("変更を保存しますか？");
  const auto escape = [&window] { QTest::keyClick(window, Qt::Key_Escape); };
  EXPECT_EQ(NextMessageBox(escape, Qt::Key_Escape), question);
  EXPECT_TRUE(window->isVisible());
  EXPECT_EQ(NextMessageBox([&window] { window->close(); }, Qt::Key_N), question);
  EXPECT_FALSE(window->isVisible());
  window = &Open(object_type::kBook);
  Type(Child<QLineEdit>(*window, u"txObject"), QStringLiteral("友人"));
  EXPECT_EQ(NextMessageBox(escape, Qt::Key_Y), question);
  EXPECT_FALSE(window->isVisible());
  const SerialId stored = window->Tag();
  EXPECT_EQ(Stored(stored)->Text(u"Object"), QStringLiteral("友人"));
  window = &Open(object_type::kBook, stored);
  Type(Child<QLineEdit>(*window, u"txObject"), QStringLiteral("他人"));
  Press(Child<QPushButton>(*window, u"cmCancel"));
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(Stored(stored)->Text(u"Object"), QStringLiteral("友人"));
}

TEST_F(EditingTest, AProfileGetsItsDatabasesAndChangesItsPassword) {
  {
    ObjectsWindow& window = Open(object_type::kProfile);
    Type(Child<QLineEdit>(window, u"txObject"), QStringLiteral("第二"));
    PressOk();
    const DiskPtr stored = Stored(window.Tag(), DatabaseKind::Navigator);
    EXPECT_EQ(stored->Text(u"Profile"),
              QStringLiteral("/current/%1\\profile.mbx").arg(window.Tag().Text()));
    EXPECT_EQ(stored->Text(u"Mail"), stored->Text(u"History"));
    EXPECT_FALSE(stored->Get(u"Password").isValid());
    // Who is not logged in to a profile that has files takes none from it.
    const QString folder =
        PlatformPath(context(), QStringLiteral("/current/") + window.Tag().Text());
    ASSERT_TRUE(QDir().mkpath(folder));
    test::WriteFile(folder + QStringLiteral("/profile.mbx"), {});
    ObjectsWindow& other = Open(object_type::kProfile, window.Tag());
    for (const char16_t* button : {u"cmNewDatabase", u"cmUseDatabase", u"cmDeleteDatabase"}) {
      EXPECT_FALSE(Child<QPushButton>(other, button).isEnabled());
    }
    other.close();
  }
  ObjectsWindow& window = Open(object_type::kProfile, context().Session->Serial());
  auto& history = Child<QTableWidget>(window, u"lvHistory");
  ASSERT_EQ(history.rowCount(), 1);
  Press(Child<QPushButton>(window, u"cmNewDatabase"));
  ASSERT_EQ(history.rowCount(), 2);
  EXPECT_EQ(
      NextMessageBox([&] { Press(Child<QPushButton>(window, u"cmDeleteDatabase")); },
                     Qt::Key_Escape),
      QStringLiteral("データーベースに保存されているメッセージも削除されます。よろしいですか？"));
  EXPECT_EQ(history.rowCount(), 2);
  // A file that is there can be kept or deleted, and goes with OK.
  history.setCurrentCell(1, 0);
  const QString path = PlatformPath(context(), history.item(1, 0)->data(Qt::UserRole).toString());
  test::WriteFile(path, {});
  EXPECT_TRUE(InModal<QMessageBox>(
      [&] { Press(Child<QPushButton>(window, u"cmDeleteDatabase")); },
      [](QMessageBox& question) { test::PressNamed(question, QStringLiteral("削除する")); }));
  EXPECT_EQ(history.rowCount(), 1);
  EXPECT_TRUE(QFile::exists(path));
  // What is taken back from the list of those is not among them.
  const QString kept = QFileInfo(path).path() + QStringLiteral("/kept.mbx");
  ASSERT_TRUE(QFile::copy(
      PlatformPath(context(), history.item(0, 0)->data(Qt::UserRole).toString()), kept));
  const auto takeIn = [&] {
    EXPECT_TRUE(InModal<QFileDialog>([&] { Press(Child<QPushButton>(window, u"cmFoundDatabase")); },
                                     [&kept](QFileDialog& dialog) {
                                       Child<QLineEdit>(dialog, u"fileNameEdit").setText(kept);
                                       QMetaObject::invokeMethod(&dialog, "accept");
                                     }));
    EXPECT_EQ(history.rowCount(), 2);
  };
  for (const QString& answer : {QStringLiteral("削除する"), QStringLiteral("ファイルを残す")}) {
    takeIn();
    EXPECT_TRUE(InModal<QMessageBox>(
        [&] { Press(Child<QPushButton>(window, u"cmDeleteDatabase")); },
        [&answer](QMessageBox& question) { test::PressNamed(question, answer); }));
  }
  EXPECT_TRUE(Child<QLabel>(window, u"lbProtection").text().contains(u"profile.key"));
  const QString code = CodeFileOf(context(), *context().Session).Code();
  EXPECT_FALSE(code.isEmpty());
  EXPECT_TRUE(
      InModal<RecoveryCodeWindow>([&] { Press(Child<QPushButton>(window, u"cmRecoveryCode")); },
                                  [&code](RecoveryCodeWindow& shown) {
                                    EXPECT_EQ(Child<QLabel>(shown, u"lbCode").text(), code);
                                    shown.reject();
                                  }));
  Type(Child<QLineEdit>(window, u"txPassword"), QStringLiteral("new"));
  PressOk();
  EXPECT_EQ(Error(), QStringLiteral("二つのパスワードが一致しません。"));
  Type(Child<QLineEdit>(window, u"txPasswordAgain"), QStringLiteral("new"));
  PressOk();
  EXPECT_FALSE(window.isVisible()) << Error().toStdString();
  EXPECT_EQ(context().Session->Text(u"password"), QStringLiteral("new"));
  EXPECT_FALSE(QFile::exists(path));
  EXPECT_TRUE(QFile::exists(kept));
  profile_.Restart(QStringLiteral("new"));
  // From now on only who knows it changes it, or takes it away.
  ObjectsWindow& again = Open(object_type::kProfile, context().Session->Serial());
  Child<QLineEdit>(again, u"txPassword").setText(QStringLiteral("newer"));
  Child<QLineEdit>(again, u"txPasswordAgain").setText(QStringLiteral("newer"));
  for (const char16_t* now : {u"", u"wrong"}) {
    Child<QLineEdit>(again, u"txPasswordNow").setText(QString::fromUtf16(now));
    PressOk();
    EXPECT_EQ(Error(), QStringLiteral("いまのパスワードが違います。"));
    EXPECT_TRUE(again.isVisible());
  }
  EXPECT_EQ(context().Session->Text(u"password"), QStringLiteral("new"));
  Child<QLineEdit>(again, u"txPasswordNow").setText(QStringLiteral("new"));
  PressOk();
  EXPECT_EQ(context().Session->Text(u"password"), QStringLiteral("newer"));
  profile_.Restart(QStringLiteral("newer"));
}

// With a password every change of the profile was refused, and the boxes showed the password.
TEST_F(EditingTest, AProfileWithAPasswordIsEditedAndCanLoseIt) {
  const SerialId serialId = context().Session->Serial();
  ASSERT_TRUE(
      ChangeProfilePassword(context(), *context().Session, QString(), QStringLiteral("secret")));
  profile_.Restart(QStringLiteral("secret"));
  {
    ObjectsWindow& window = Open(object_type::kProfile, context().Session->Serial());
    EXPECT_EQ(Child<QLineEdit>(window, u"txPassword").text(), QString());
    EXPECT_TRUE(Child<QLabel>(window, u"lbProtection").text().contains(QStringLiteral("暗号化")));
    Type(Child<QLineEdit>(window, u"txObject"), QStringLiteral("新しい名前"));
    context().Session->Let(QStringLiteral("cancel"), true);
    PressOk();
    EXPECT_EQ(Error(), QString());
  }
  const DiskPtr stored = Stored(serialId, DatabaseKind::Navigator);
  EXPECT_EQ(stored->Text(u"Object"), QStringLiteral("新しい名前"));
  EXPECT_TRUE(stored->Get(u"FileNotes").isValid()) << "what the window does not show stays";
  EXPECT_FALSE(stored->Get(u"Password").isValid());
  EXPECT_FALSE(stored->Get(u"cancel").isValid()) << "what a box has answered is the session's";
  profile_.Restart(QStringLiteral("secret"));
  ObjectsWindow& window = Open(object_type::kProfile, serialId);
  auto& none = Child<QCheckBox>(window, u"ckNoPassword");
  const auto answer = [&none](QMessageBox::StandardButton button) {
    return InModal<QMessageBox>([&none] { none.setChecked(true); },
                                [button](QMessageBox& box) { box.button(button)->click(); });
  };
  EXPECT_TRUE(answer(QMessageBox::No));
  EXPECT_FALSE(none.isChecked());
  EXPECT_TRUE(answer(QMessageBox::Yes));
  PressOk();
  EXPECT_EQ(Error(), QStringLiteral("いまのパスワードが違います。"));
  Child<QLineEdit>(window, u"txPasswordNow").setText(QStringLiteral("secret"));
  PressOk();
  EXPECT_FALSE(window.isVisible()) << Error().toStdString();
  profile_.Restart();
}

TEST_F(EditingTest, SettingsAreSavedWithTheirTypes) {
  auto request = std::make_shared<Disk>(fixed_serial::kSettings);
  SettingsWindow window(context());
  window.setAttribute(Qt::WA_DeleteOnClose, false);
  ASSERT_TRUE(window.LoadDefaultProperty(request, false));
  window.show();
  // What depends on a choice that is not made cannot be used, and says which one; it hinders no OK.
  const auto& alone = Child<QCheckBox>(window, u"ckMessageNoticeSoundAlone");
  EXPECT_TRUE(!alone.isEnabled() && alone.toolTip().contains(QStringLiteral("音を鳴らす")));
  Child<QCheckBox>(window, u"ckMessageNoticeSound").setChecked(true);
  EXPECT_TRUE(alone.isEnabled() && alone.toolTip().isEmpty());
  Child<QCheckBox>(window, u"ckMessageNotice").setChecked(false);
  EXPECT_TRUE(!alone.isEnabled() && alone.toolTip().contains(QStringLiteral("新着")));
  Child<QCheckBox>(window, u"ckMessageCheck").setChecked(true);
  Child<QSpinBox>(window, u"slMessageCheckInterval").setValue(5);
  Type(Child<QLineEdit>(window, u"txMemoIndent"), QStringLiteral("| "));
  Child<QPlainTextEdit>(window, u"txTextMime").setPlainText(QStringLiteral("text/plain\ntext/x"));
  Press(Child<QPushButton>(window, u"cmOk"));
  EXPECT_FALSE(window.isVisible());
  const DiskPtr stored = Stored(fixed_serial::kSettings);
  EXPECT_EQ(stored->Get(u"MessageCheckInterval"), QVariant(5));
  EXPECT_EQ(stored->Get(u"MessagesEdit"), QVariant(true));
  EXPECT_EQ(stored->Text(u"MemoIndent"), QStringLiteral("| "));
  EXPECT_EQ(stored->Text(u"TextMime"), QStringLiteral("text/plain\r\ntext/x"));
  EXPECT_EQ(stored->Text(u"Install"), context().VersionText);
  EXPECT_EQ(Settings(context()).Bag()->Number(u"MessageCheckInterval"), 5);
}

TEST_F(EditingTest, OneValueIsAskedInFourWays) {
  std::optional<QString> answer;
  EXPECT_TRUE(InModal<ConsoleWindow>(
      [&] {
        answer = InputText(context(), nullptr, QStringLiteral("題"), {}, QStringLiteral("x"),
                           QStringLiteral("*"));
      },
      [](ConsoleWindow& window) {
        EXPECT_EQ(Child<QLabel>(window, u"Label1").text(),
                  QStringLiteral("設定値を入力してください。"));
        EXPECT_EQ(Child<QLineEdit>(window, u"Text1").echoMode(), QLineEdit::Password);
        QTest::keyClicks(&Child<QLineEdit>(window, u"Text1"), QStringLiteral("typed"));
        QTest::keyClick(&window, Qt::Key_Return);
      }));
  EXPECT_EQ(answer, QStringLiteral("typed"));
  EXPECT_TRUE(
      InModal<ConsoleWindow>([&] { answer = InputSlider(context(), nullptr, {}, {}, 3, 1, 0, 10); },
                             [](ConsoleWindow& window) {
                               QTest::keyClick(&Child<QSlider>(window, u"Slider1"), Qt::Key_Right);
                               QTest::keyClick(&window, Qt::Key_Return);
                             }));
  EXPECT_EQ(answer, QStringLiteral("4"));
  EXPECT_TRUE(InModal<ConsoleWindow>(
      [&] {
        answer = InputTree(context(), nullptr, {}, {}, object_type::kFolder, fixed_serial::kOutbox);
      },
      [](ConsoleWindow& window) { QTest::keyClick(&window, Qt::Key_Return); }));
  EXPECT_EQ(answer, fixed_serial::kOutbox.Text());
  // A key that is not there chooses nothing, and neither does the focus.
  EXPECT_TRUE(InModal<ConsoleWindow>(
      [&] { answer = InputTree(context(), nullptr, {}, {}, object_type::kFolder, {}); },
      [](ConsoleWindow& window) {
        window.activateWindow();
        auto& tree = Child<QTreeWidget>(window, u"TreeView1");
        tree.setFocus();
        EXPECT_TRUE(test::WaitFor([&] { return tree.hasFocus() && tree.currentItem() == nullptr; }))
            << "it would look chosen";
        QTest::keyClick(&window, Qt::Key_Return);
      }));
  EXPECT_EQ(answer, QString());
  const QString entries = QStringLiteral("10@受信@activedown\r\n20@送信\r\nplain");
  EXPECT_TRUE(InModal<ConsoleWindow>(
      [&] {
        answer =
            InputList(context(), nullptr, {}, {}, QStringLiteral("10\r\nplain"), entries, true);
      },
      [](ConsoleWindow& window) {
        EXPECT_EQ(Child<QListWidget>(window, u"ListView1").item(0)->text(), QStringLiteral("受信"));
        QTest::keyClick(&window, Qt::Key_Return);
      }));
  EXPECT_EQ(answer, QStringLiteral("10\r\nplain"));
  EXPECT_TRUE(InModal<ConsoleWindow>(
      [&] { answer = InputText(context(), nullptr, {}, {}, QStringLiteral("kept")); },
      [](ConsoleWindow& window) { QTest::keyClick(&window, Qt::Key_Escape); }));
  EXPECT_FALSE(answer);
}

}  // namespace
}  // namespace vorn
