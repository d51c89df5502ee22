// The windows that edit objects and settings, driven by keys and clicks.

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QSlider>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>
#include <QTreeWidget>

#include "auxiliary/window/console_window.h"
#include "frame/request_queue.h"
#include "objects/account.h"
#include "objects/object_types.h"
#include "objects/profile.h"
#include "objects/save_object.h"
#include "objects/select_objects.h"
#include "objects/settings.h"
#include "objects/window/condition_editor.h"
#include "objects/window/objects_window.h"
#include "objects/window/settings_window.h"
#include "storage/databases.h"
#include "support/loopback_pop3_server.h"
#include "support/loopback_smtp_server.h"
#include "support/real_servers.h"
#include "support/window_driving.h"

namespace vorn {
namespace {

using test::Child;
using test::InModal;
using test::NextMessageBox;
using test::Press;
using test::TestProfile;
using test::Type;
using test::WaitFor;

class NoView : public EventView {
 public:
  void ShowEvent(const QString&, const QString&, const QString&) override {}
};

class EditingTest : public testing::Test {
 protected:
  // A property window for a request, shown without blocking.
  ObjectsWindow& Open(const QString& type, const QString& serialId = {}) {
    RequestQueue queue(context());
    DialogRequest request;
    request.status = type;
    request.serialId = serialId;
    queue.PostDialogRequest(request);
    window_ = std::make_unique<ObjectsWindow>(context(), events_);
    window_->setAttribute(Qt::WA_DeleteOnClose, false);
    EXPECT_TRUE(window_->LoadDefaultProperty(queue.Front(), false));
    window_->show();
    return *window_;
  }
  void PressOk() { Press(Child<QPushButton>(*window_, u"cmOk")); }
  QString Error() const {
    const auto& label = Child<QLabel>(*window_, u"lbError");
    return label.isVisible() ? label.text() : QString();
  }
  // The object as it is stored, not as it is loaded.
  DiskPtr Stored(const QString& serialId, DatabaseKind kind = DatabaseKind::Profile) {
    auto object = std::make_shared<Disk>(serialId);
    EXPECT_TRUE(OpenDatabase(context(), kind));
    EXPECT_TRUE(object->DatabaseToDisk(context().Data));
    context().Data.Close();
    return object;
  }
  Context& context() { return profile_.Get(); }

  QString error_;

  TestProfile profile_;
  NoView view_;
  EventLog events_{profile_.Get(), view_};
  std::unique_ptr<ObjectsWindow> window_;
};

TEST_F(EditingTest, AnAccountIsMadeWithExactlyItsKeys) {
  ObjectsWindow& window = Open(object_type::kAccount);
  Type(Child<QLineEdit>(window, u"txObject"), QStringLiteral("仕事"));
  Type(Child<QLineEdit>(window, u"txMailaddress"), QStringLiteral("a@example.org"));
  Type(Child<QLineEdit>(window, u"txInMailServer"), QStringLiteral("pop.example.org"));
  Type(Child<QLineEdit>(window, u"txInMailServerUser"), QStringLiteral("a"));
  Type(Child<QLineEdit>(window, u"txInMailServerPassword"), QStringLiteral("pw"));
  PressOk();
  EXPECT_FALSE(window.isVisible()) << Error().toStdString();
  EXPECT_EQ(context().Session->Text(u"status"), window.Tag());

  const DiskPtr account = Stored(window.Tag());
  QStringList keys;
  for (qint32 i = 1; i <= account->Size(); ++i) keys.append(account->NameAt(i));
  keys.sort();
  EXPECT_EQ(keys.join(u' '),
            QStringLiteral("DayTime Default Display Draw Enabled EventLog FormName InMailServer "
                           "InMailServerCertificates InMailServerDelete InMailServerPassword "
                           "InMailServerPasswordSave InMailServerPort InMailServerProtocol "
                           "InMailServerSecurity InMailServerUser Mailaddress Object OutMailServer "
                           "OutMailServerAuth OutMailServerCertificates OutMailServerPassword "
                           "OutMailServerPort OutMailServerProtocol OutMailServerSecurity "
                           "OutMailServerUser Parent System ToolTipText"));
  EXPECT_EQ(account->Get(u"InMailServerPort"), QVariant(QStringLiteral("110")));
  EXPECT_EQ(account->Get(u"InMailServerProtocol"), QVariant(0));
  EXPECT_EQ(account->Get(u"Enabled"), QVariant(true));
  EXPECT_EQ(account->Text(u"Draw"), QStringLiteral("account"));
}

TEST_F(EditingTest, AnAccountMayOnlySend) {
  ObjectsWindow& window = Open(object_type::kAccount);
  Type(Child<QLineEdit>(window, u"txObject"), QStringLiteral("送信だけ"));
  Type(Child<QLineEdit>(window, u"txMailaddress"), QStringLiteral("a@example.jp"));
  PressOk();
  EXPECT_TRUE(Error().contains(QStringLiteral("受信サーバー")));
  Type(Child<QLineEdit>(window, u"txOutMailServer"), QStringLiteral("127.0.0.1"));
  PressOk();
  EXPECT_EQ(Error(), QString());
  EXPECT_EQ(Stored(window.Tag())->Text(u"InMailServer"), QString());
}

TEST_F(EditingTest, FaultsAreToldAtTheirFieldsAndNothingIsSaved) {
  ObjectsWindow& window = Open(object_type::kAccount);
  const auto fault = [&](const char16_t* field, const QString& text) {
    PressOk();
    EXPECT_EQ(Error(), text);
    EXPECT_EQ(window.focusWidget(), &Child<QWidget>(window, field));
    EXPECT_TRUE(window.isVisible());
  };
  fault(u"txObject", QStringLiteral("オブジェクト名が設定されていません。"));
  Type(Child<QLineEdit>(window, u"txObject"), QStringLiteral("受信"));
  fault(u"txMailaddress",
        QStringLiteral("メールアドレスは「名前@ドメイン」の形で入力してください。"));
  EXPECT_EQ(Child<QTabWidget>(window, u"tsPage").currentIndex(), 1);
  Type(Child<QLineEdit>(window, u"txMailaddress"), QStringLiteral("a@b"));
  fault(u"txInMailServer", QStringLiteral("受信サーバーが設定されていません。"));
  Type(Child<QLineEdit>(window, u"txInMailServer"), QStringLiteral("h"));
  Type(Child<QLineEdit>(window, u"txInMailServerUser"), QStringLiteral("u"));
  Type(Child<QLineEdit>(window, u"txInMailServerPort"), QStringLiteral("70000"));
  fault(u"txInMailServerPort", QStringLiteral("ポート番号は1から65535までの数です。"));
  Type(Child<QLineEdit>(window, u"txInMailServerPort"), QStringLiteral("110"));
  fault(u"txObject", QStringLiteral("同じオブジェクト名を持つオブジェクトが存在します。"));
  EXPECT_EQ(context().Objects.Find(window.Tag()), nullptr);
  QTest::keyClick(&window, Qt::Key_Escape);
  EXPECT_FALSE(window.isVisible());
  EXPECT_EQ(context().Session->Text(u"status", QStringLiteral("x")), QString());
}

TEST_F(EditingTest, PortsFollowTheSecurityUnlessGiven) {
  ObjectsWindow& window = Open(object_type::kAccount);
  auto& port = Child<QLineEdit>(window, u"txInMailServerPort");
  auto& security = Child<QComboBox>(window, u"cbInMailServerSecurity");
  security.setCurrentIndex(2);
  EXPECT_EQ(port.text(), QStringLiteral("995"));
  security.setCurrentIndex(1);
  EXPECT_EQ(port.text(), QStringLiteral("110"));
  port.setText(QStringLiteral("2110"));
  security.setCurrentIndex(2);
  EXPECT_EQ(port.text(), QStringLiteral("2110"));
  Child<QComboBox>(window, u"cbOutMailServerSecurity").setCurrentIndex(1);
  EXPECT_EQ(Child<QLineEdit>(window, u"txOutMailServerPort").text(), QStringLiteral("587"));
}

TEST_F(EditingTest, TheConnectionIsReallyTried) {
  test::LoopbackPop3Server pop3;
  test::LoopbackSmtpServer smtp;
  ASSERT_TRUE(pop3.Listen() && smtp.Listen());
  ObjectsWindow& window = Open(object_type::kAccount);
  Child<QTabWidget>(window, u"tsPage").setCurrentIndex(2);
  Type(Child<QLineEdit>(window, u"txInMailServer"), QStringLiteral("127.0.0.1"));
  Type(Child<QLineEdit>(window, u"txInMailServerPort"), QString::number(pop3.Port()));
  Type(Child<QLineEdit>(window, u"txInMailServerUser"), QStringLiteral("user"));
  Type(Child<QLineEdit>(window, u"txInMailServerPassword"), QStringLiteral("wrong"));
  auto& button = Child<QPushButton>(window, u"cmCheckInMailServer");
  auto& result = Child<QLabel>(window, u"lbCheckInMailServer");
  const auto tryIt = [&] {
    Press(button);
    EXPECT_TRUE(WaitFor([&button] { return button.isEnabled(); }));
    return result.text();
  };
  EXPECT_TRUE(tryIt().contains(QStringLiteral("パスワードを確認してください")));
  Type(Child<QLineEdit>(window, u"txInMailServerPassword"), QStringLiteral("secret"));
  EXPECT_EQ(tryIt(), QStringLiteral("接続できました。"));
  EXPECT_EQ(pop3.Count("LIST"), 0);
  Child<QComboBox>(window, u"cbInMailServerSecurity").setCurrentIndex(1);
  EXPECT_TRUE(tryIt().contains(QStringLiteral("STARTTLSに対応していません")));
  Type(Child<QLineEdit>(window, u"txInMailServerPort"), QStringLiteral("1"));
  EXPECT_TRUE(tryIt().contains(QStringLiteral("接続できません")));

  Child<QTabWidget>(window, u"tsPage").setCurrentIndex(3);
  Type(Child<QLineEdit>(window, u"txOutMailServer"), QStringLiteral("127.0.0.1"));
  Type(Child<QLineEdit>(window, u"txOutMailServerPort"), QString::number(smtp.Port()));
  auto& sendButton = Child<QPushButton>(window, u"cmCheckOutMailServer");
  Press(sendButton);
  EXPECT_TRUE(WaitFor([&sendButton] { return sendButton.isEnabled(); }));
  EXPECT_EQ(Child<QLabel>(window, u"lbCheckOutMailServer").text(),
            QStringLiteral("接続できました。"));
}

TEST_F(EditingTest, ACertificateIsTrustedAndTheTrustTakenBack) {
  const test::TestCertificates certificates;
  const auto kind = test::TestCertificates::Kind::SelfSigned;
  test::Dovecot dovecot(certificates.Certificate(kind), certificates.Key(kind));
  ASSERT_TRUE(dovecot.Start());
  ObjectsWindow& window = Open(object_type::kAccount);
  Child<QTabWidget>(window, u"tsPage").setCurrentIndex(2);
  Type(Child<QLineEdit>(window, u"txInMailServer"), QStringLiteral("localhost"));
  Child<QComboBox>(window, u"cbInMailServerSecurity").setCurrentIndex(2);
  Type(Child<QLineEdit>(window, u"txInMailServerPort"), QString::number(dovecot.TlsPort()));
  Type(Child<QLineEdit>(window, u"txInMailServerUser"), QStringLiteral("user"));
  Type(Child<QLineEdit>(window, u"txInMailServerPassword"), QStringLiteral("secret"));
  auto& button = Child<QPushButton>(window, u"cmCheckInMailServer");
  auto& result = Child<QLabel>(window, u"lbCheckInMailServer");
  auto& trust = Child<QPushButton>(window, u"cmTrustInMailServer");
  auto& exception = Child<QLabel>(window, u"lbTrustInMailServer");
  const auto finished = [&button] { return WaitFor([&button] { return button.isEnabled(); }); };
  Press(button);
  ASSERT_TRUE(finished());
  EXPECT_TRUE(result.text().contains(QStringLiteral("サーバー自身が署名した")));
  EXPECT_FALSE(exception.isVisible());
  ASSERT_TRUE(trust.isVisible());
  Press(trust);
  ASSERT_TRUE(finished());
  EXPECT_EQ(result.text(), QStringLiteral("接続できました。"));
  EXPECT_TRUE(exception.isVisible());
  EXPECT_TRUE(Child<QLineEdit>(window, u"txInMailServerCertificates")
                  .text()
                  .startsWith(QStringLiteral("localhost=")));
  Q_EMIT exception.linkActivated(QStringLiteral("#"));
  EXPECT_FALSE(exception.isVisible());
  Press(button);
  ASSERT_TRUE(finished());
  EXPECT_FALSE(result.text().contains(QStringLiteral("接続できました")));
}

TEST_F(EditingTest, APasswordThatIsNotToBeSavedIsKnownOnlyWhileRunning) {
  const DiskPtr account = profile_.AddAccount(110);
  ObjectsWindow& window = Open(object_type::kAccount, account->SerialID());
  EXPECT_EQ(Child<QLineEdit>(window, u"txInMailServerPassword").echoMode(), QLineEdit::Password);
  Child<QCheckBox>(window, u"ckInMailServerPasswordSave").setChecked(false);
  PressOk();
  EXPECT_EQ(Stored(account->SerialID())->Text(u"InMailServerPassword"), QString());
  EXPECT_EQ(account->Text(u"InMailServerPassword"), QStringLiteral("secret"));
}

TEST_F(EditingTest, AFolderIsMadeFromConditionsWithAPreview) {
  profile_.Store("Subject: the plan\r\n\r\n");
  profile_.Store("Subject: other\r\n\r\n");
  ObjectsWindow& window = Open(object_type::kFolder);
  Type(Child<QLineEdit>(window, u"txObject"), QStringLiteral("計画"));
  Child<QTabWidget>(window, u"tsPage").setCurrentIndex(1);
  auto& matches = Child<QLabel>(window, u"lbMatches");
  Press(Child<QPushButton>(window, u"cmAddCondition"));
  auto& list = Child<ConditionEditor>(window, u"lvCondition");
  auto* text = qobject_cast<QLineEdit*>(list.cellWidget(0, 3));
  ASSERT_NE(text, nullptr);
  QTest::keyClicks(text, QStringLiteral("plan"));
  EXPECT_TRUE(WaitFor([&] { return matches.text().contains(QStringLiteral("1通")); }));
  // Who only passes other kinds finds his text again.
  auto* kind = qobject_cast<QComboBox*>(list.cellWidget(0, 1));
  for (const int passed : {2, 3, 0}) kind->setCurrentIndex(passed);
  EXPECT_EQ(qobject_cast<QLineEdit*>(list.cellWidget(0, 3))->text(), QStringLiteral("plan"));
  Press(Child<QPushButton>(window, u"cmAddCondition"));
  qobject_cast<QComboBox*>(list.cellWidget(1, 1))->setCurrentIndex(3);  // 状態
  EXPECT_TRUE(WaitFor([&] { return matches.text().contains(QStringLiteral("1通")); }));
  list.cellWidget(1, 3)->findChildren<QCheckBox*>()[3]->setChecked(true);
  EXPECT_TRUE(WaitFor([&] { return matches.text().contains(QStringLiteral("1通")); }));
  PressOk();
  const DiskPtr folder = Stored(window.Tag());
  EXPECT_EQ(folder->Text(u"Draw"), QStringLiteral("active"));
  EXPECT_EQ(FolderSqlBuilder(context()).CreateFolderSql(window.Tag()),
            QStringLiteral("SELECT * FROM mail WHERE mail.FIELD_SUBJECT LIKE '*plan*' AND "
                           "mail.STATUS IN (4)"));
  // And back: the rows are there again.
  const QString serialId = window.Tag();
  Open(object_type::kFolder, serialId);
  EXPECT_EQ(Child<ConditionEditor>(*window_, u"lvCondition").rowCount(), 2);
}

TEST_F(EditingTest, AFolderThatLeadsBackToItselfIsNotSaved) {
  const auto make = [this](const QString& name) {
    ObjectsWindow& window = Open(object_type::kFolder);
    Type(Child<QLineEdit>(window, u"txObject"), name);
    PressOk();
    return window.Tag();
  };
  const QString first = make(QStringLiteral("甲"));
  const QString second = make(QStringLiteral("乙"));
  // A condition "in the folder with that name".
  const auto refer = [this](const QString& folder, const QString& other) {
    ObjectsWindow& window = Open(object_type::kFolder, folder);
    Child<QTabWidget>(window, u"tsPage").setCurrentIndex(1);
    Press(Child<QPushButton>(window, u"cmAddCondition"));
    auto& list = Child<ConditionEditor>(window, u"lvCondition");
    qobject_cast<QComboBox*>(list.cellWidget(0, 1))->setCurrentIndex(2);
    auto* folders = qobject_cast<QComboBox*>(list.cellWidget(0, 3));
    folders->setCurrentIndex(folders->findData(other));
    PressOk();
    return Error();
  };
  EXPECT_TRUE(refer(first, first).contains(QStringLiteral("自身に戻ります")));
  EXPECT_TRUE(window_->isVisible());
  EXPECT_EQ(Stored(first)->Text(u"Condition"), QString());
  EXPECT_EQ(refer(first, second), QString());
  EXPECT_TRUE(refer(second, first).contains(QStringLiteral("自身に戻ります")));
  EXPECT_EQ(Stored(second)->Text(u"Condition"), QString());
}

// Renaming a folder made "in the first folder" of "in a folder that is gone", and lost the rest.
TEST_F(EditingTest, ConditionsThatCannotBeShownStayAsTheyAre) {
  const auto line = [](const QStringList& fields) { return fields.join(QChar(u'\0')); };
  const QStringList lines{
      line({QStringLiteral("folder"), QStringLiteral("label"), {}, {}, QStringLiteral("gone")}),
      line({QStringLiteral("status"), {}, {}, {}, QStringLiteral("4"), QStringLiteral("9")}),
      line({QStringLiteral("timestamp"), {}, {}, {}, QStringLiteral("3")}),
      line({QStringLiteral("later"), QStringLiteral("x"), {}, {}, QStringLiteral("y")}),
      line({QStringLiteral("subject"), {}, {}, {}, QStringLiteral("a")})};
  auto folder = std::make_shared<Disk>(QStringLiteral("folder_1"));
  folder->Let(QStringLiteral("FormName"), object_type::kFolder);
  folder->Let(QStringLiteral("Object"), QStringLiteral("丙"));
  folder->Let(QStringLiteral("Condition"), lines.join(kLineBreak));
  folder->Let(QStringLiteral("OfALaterVersion"), QStringLiteral("kept"));
  ASSERT_TRUE(SaveObject(context(), DatabaseKind::Profile, *folder));
  {
    ObjectsWindow& window = Open(object_type::kFolder, folder->SerialID());
    auto& list = Child<ConditionEditor>(window, u"lvCondition");
    ASSERT_EQ(list.rowCount(), 5);
    EXPECT_EQ(qobject_cast<QComboBox*>(list.cellWidget(0, 3))->currentText(),
              QStringLiteral("（削除されたフォルダ）"));
    Type(Child<QLineEdit>(window, u"txObject"), QStringLiteral("丁"));
    PressOk();
    EXPECT_EQ(Error(), QString());
  }
  EXPECT_EQ(Stored(folder->SerialID())->Text(u"Condition"), lines.join(kLineBreak));
  EXPECT_EQ(Stored(folder->SerialID())->Text(u"OfALaterVersion"), QStringLiteral("kept"));
  EXPECT_EQ(Stored(folder->SerialID())->Text(u"Object"), QStringLiteral("丁"));
  // A change is that of its row, and keeps there what the editor cannot show.
  ObjectsWindow& window = Open(object_type::kFolder, folder->SerialID());
  auto& list = Child<ConditionEditor>(window, u"lvCondition");
  list.cellWidget(1, 3)->findChildren<QCheckBox*>()[1]->setChecked(true);
  PressOk();
  const QStringList changed = Stored(folder->SerialID())->Text(u"Condition").split(kLineBreak);
  EXPECT_EQ(ParseConditionLine(changed.value(1))->values.join(u','), QStringLiteral("2,4,9"));
  EXPECT_EQ(changed.mid(2), lines.mid(2));
}

TEST_F(EditingTest, ASqlConditionShowsTheEnginesErrorBeforeItIsSaved) {
  ObjectsWindow& window = Open(object_type::kFolder);
  Type(Child<QLineEdit>(window, u"txObject"), QStringLiteral("SQL"));
  Child<QTabWidget>(window, u"tsPage").setCurrentIndex(1);
  Child<QCheckBox>(window, u"ckSqlUse").setChecked(true);
  auto& sql = Child<QPlainTextEdit>(window, u"txSql");
  PressOk();
  EXPECT_EQ(Error(), QStringLiteral("SQLの条件が書かれていません。"));
  sql.setPlainText(QStringLiteral("NO_SUCH_COLUMN = 1"));
  EXPECT_TRUE(WaitFor([&] {
    return Child<QLabel>(window, u"lbMatches").text().contains(QStringLiteral("NO_SUCH_COLUMN"));
  }));
  PressOk();
  EXPECT_TRUE(Error().contains(QStringLiteral("NO_SUCH_COLUMN")));
  sql.setPlainText(QStringLiteral("1 = 1; DELETE FROM mail"));
  PressOk();
  EXPECT_FALSE(Error().isEmpty());
  sql.setPlainText(QStringLiteral("mail.STATUS = 4"));
  PressOk();
  EXPECT_FALSE(window.isVisible());
}

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
  EXPECT_EQ(Child<QTableWidget>(*window_, u"lvAddressbook").rowCount(), 3);

  const DiskCollectionPtr bookmarks =
      SelectObjects(context().Objects, *context().Session, object_type::kBookmark);
  const DiskPtr bookmark = bookmarks->First();
  const QString before = bookmark->Text(u"Url");
  Open(object_type::kBookmark, bookmark->SerialID());
  PressOk();
  EXPECT_EQ(Stored(bookmark->SerialID())->Text(u"Url"), before);
}

TEST_F(EditingTest, AProfileGetsItsDatabasesAndChangesItsPassword) {
  {
    ObjectsWindow& window = Open(object_type::kProfile);
    Type(Child<QLineEdit>(window, u"txObject"), QStringLiteral("第二"));
    PressOk();
    const DiskPtr stored = Stored(window.Tag(), DatabaseKind::Navigator);
    EXPECT_EQ(stored->Text(u"Profile"),
              QStringLiteral("/current/%1\\profile.mbx").arg(window.Tag()));
    EXPECT_EQ(stored->Text(u"Mail"), stored->Text(u"History"));
    EXPECT_FALSE(stored->Get(u"Password").isValid());
    // Who is not logged in to a profile that has files takes none from it.
    const QString folder = PlatformPath(context(), QStringLiteral("/current/") + window.Tag());
    ASSERT_TRUE(QDir().mkpath(folder));
    QFile own(folder + QStringLiteral("/profile.mbx"));
    ASSERT_TRUE(own.open(QIODevice::WriteOnly));
    ObjectsWindow& other = Open(object_type::kProfile, window.Tag());
    for (const char16_t* button : {u"cmNewDatabase", u"cmUseDatabase", u"cmDeleteDatabase"}) {
      EXPECT_FALSE(Child<QPushButton>(other, button).isEnabled());
    }
    other.close();
  }
  ObjectsWindow& window = Open(object_type::kProfile, context().Session->SerialID());
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
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.close();
  EXPECT_TRUE(InModal<QMessageBox>(
      [&] { Press(Child<QPushButton>(window, u"cmDeleteDatabase")); },
      [](QMessageBox& question) { test::PressNamed(question, QStringLiteral("削除する")); }));
  EXPECT_EQ(history.rowCount(), 1);
  EXPECT_TRUE(QFile::exists(path));
  Type(Child<QLineEdit>(window, u"txPassword"), QStringLiteral("new"));
  PressOk();
  EXPECT_EQ(Error(), QStringLiteral("二つのパスワードが一致しません。"));
  Type(Child<QLineEdit>(window, u"txPasswordAgain"), QStringLiteral("new"));
  PressOk();
  EXPECT_FALSE(window.isVisible()) << Error().toStdString();
  EXPECT_EQ(context().Session->Text(u"password"), QStringLiteral("new"));
  EXPECT_FALSE(QFile::exists(path));
  profile_.Restart(QStringLiteral("new"));
}

// With a password every change of the profile was refused, and the boxes showed the password.
TEST_F(EditingTest, AProfileWithAPasswordIsEditedAndCanLoseIt) {
  const QString serialId = context().Session->SerialID();
  ASSERT_TRUE(ChangeProfilePassword(context(), *context().Session, QString(),
                                    QStringLiteral("secret"), &error_));
  profile_.Restart(QStringLiteral("secret"));
  {
    ObjectsWindow& window = Open(object_type::kProfile, context().Session->SerialID());
    EXPECT_EQ(Child<QLineEdit>(window, u"txPassword").text(), QString());
    Type(Child<QLineEdit>(window, u"txObject"), QStringLiteral("新しい名前"));
    PressOk();
    EXPECT_EQ(Error(), QString());
  }
  const DiskPtr stored = Stored(serialId, DatabaseKind::Navigator);
  EXPECT_EQ(stored->Text(u"Object"), QStringLiteral("新しい名前"));
  EXPECT_TRUE(stored->Get(u"FileNotes").isValid()) << "what the window does not show stays";
  EXPECT_FALSE(stored->Get(u"Password").isValid());
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
  EXPECT_FALSE(window.isVisible()) << Error().toStdString();
  profile_.Restart();
}

// Of two entries with one letter the key chooses neither.
TEST_F(EditingTest, EveryLetterOfAPageIsItsOwn) {
  const auto check = [](QWidget& window) {
    static const QRegularExpression kLetter(QStringLiteral("&([A-Z])"));
    auto& tabs = Child<QTabWidget>(window, u"tsPage");
    QStringList titles;
    for (int i = 0; i < tabs.count(); ++i) titles.append(tabs.tabText(i));
    for (int i = 0; i < tabs.count(); ++i) {
      QStringList texts = titles;
      for (const auto* label : tabs.widget(i)->findChildren<QLabel*>()) {
        if (label->buddy() != nullptr) texts.append(label->text());
      }
      for (const auto* button : tabs.widget(i)->findChildren<QAbstractButton*>()) {
        texts.append(button->text());
      }
      QStringList letters;
      for (const QString& text : texts) letters += kLetter.match(text).captured(1);
      letters.removeAll(QString());
      EXPECT_EQ(letters.removeDuplicates(), 0)
          << window.objectName().toStdString() << ", " << titles[i].toStdString();
    }
  };
  SettingsWindow settings(context());
  check(settings);
  for (const QString& type : {object_type::kProfile, object_type::kAccount, object_type::kFolder,
                              object_type::kBookmark, object_type::kBook}) {
    check(Open(type));
  }
}

TEST_F(EditingTest, SettingsAreSavedWithTheirTypes) {
  auto request = std::make_shared<Disk>(fixed_serial::kSettings);
  SettingsWindow window(context());
  window.setAttribute(Qt::WA_DeleteOnClose, false);
  ASSERT_TRUE(window.LoadDefaultProperty(request, false));
  window.show();
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
  EXPECT_EQ(Settings(context())->Number(u"MessageCheckInterval"), 5);
}

TEST_F(EditingTest, OneValueIsAskedInFourWays) {
  QString answer;
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
  EXPECT_EQ(answer, fixed_serial::kOutbox);
  // A key that is not there chooses nothing, and neither does the focus.
  EXPECT_TRUE(InModal<ConsoleWindow>(
      [&] { answer = InputTree(context(), nullptr, {}, {}, object_type::kFolder, {}); },
      [](ConsoleWindow& window) {
        window.activateWindow();
        Child<QTreeWidget>(window, u"TreeView1").setFocus();
        QTest::keyClick(&window, Qt::Key_Return);
      }));
  EXPECT_EQ(answer, QString());
  EXPECT_FALSE(context().Session->Flag(u"cancel"));
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
  EXPECT_EQ(answer, QString());
  EXPECT_TRUE(context().Session->Flag(u"cancel"));
}

}  // namespace
}  // namespace vorn
