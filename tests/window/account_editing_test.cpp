// The window that edits an account, driven by keys and clicks.

#include <gtest/gtest.h>

#include "objects/object_loader.h"
#include "objects/object_types.h"
#include "support/loopback_pop3_server.h"
#include "support/loopback_smtp_server.h"
#include "support/real_servers.h"
#include "transfer/servers/server_lookup.h"
#include "window/editing_fixture.h"

namespace vorn {
namespace {

using test::Child;
using test::Press;
using test::Type;
using test::WaitFor;

TEST_F(EditingTest, AnAccountIsMadeWithExactlyItsKeys) {
  ObjectsWindow& window = Open(object_type::kAccount);
  Type(Child<QLineEdit>(window, u"txObject"), QStringLiteral("仕事"));
  // With the input method on, and blanks from where it was copied.
  Type(Child<QLineEdit>(window, u"txMailaddress"), QStringLiteral("ａ＠example.org"));
  Type(Child<QLineEdit>(window, u"txInMailServer"), QStringLiteral(" pop.example.org "));
  Type(Child<QLineEdit>(window, u"txInMailServerPort"), QStringLiteral("１１０"));
  Type(Child<QLineEdit>(window, u"txInMailServerUser"), QStringLiteral("a"));
  Type(Child<QLineEdit>(window, u"txInMailServerPassword"), QStringLiteral("pw"));
  PressOk();
  EXPECT_FALSE(window.isVisible()) << Error().toStdString();
  EXPECT_EQ(context().Session->Text(u"status"), window.Tag().Text());

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
                           "OutMailServerUser Parent Signature System ToolTipText"));
  EXPECT_EQ(account->Get(u"InMailServerPort"), QVariant(QStringLiteral("110")));
  EXPECT_EQ(account->Text(u"Mailaddress"), QStringLiteral("a@example.org"));
  EXPECT_EQ(account->Text(u"InMailServer"), QStringLiteral("pop.example.org"));
  EXPECT_EQ(account->Get(u"InMailServerProtocol"), QVariant(0));
  EXPECT_EQ(account->Get(u"Enabled"), QVariant(true));
  EXPECT_EQ(account->Text(u"Draw"), QStringLiteral("account"));
}

TEST_F(EditingTest, ServersAreProposedFromTheAddressAndNeverOverWhatWasTyped) {
  ObjectsWindow& window = Open(object_type::kAccount);
  const auto text = [&](const char16_t* name) { return Child<QLineEdit>(window, name).text(); };
  auto& address = Child<QLineEdit>(window, u"txMailaddress");
  auto& pages = Child<QTabWidget>(window, u"tsPage");
  window.activateWindow();
  ASSERT_TRUE(WaitFor([&] { return window.isActiveWindow(); }));
  const auto type = [&](const char* typed) {
    pages.setCurrentIndex(1);
    address.setFocus();
    address.clear();
    Type(address, QString::fromLatin1(typed));
    QTest::keyClick(&address, Qt::Key_Tab);
  };
  type("me@gmail.com");
  EXPECT_EQ(text(u"txInMailServer"), QStringLiteral("pop.gmail.com"));
  EXPECT_EQ(text(u"txInMailServerPort"), QStringLiteral("995"));
  EXPECT_EQ(Child<QComboBox>(window, u"cbOutMailServerSecurity").currentIndex(), 2);
  EXPECT_TRUE(Child<QCheckBox>(window, u"ckOutMailServerAuth").isChecked());
  type("me@yahoo.co.jp");
  EXPECT_EQ(text(u"txInMailServerUser"), QStringLiteral("me"));
  type("me@example.org");  // of whose servers nothing is known
  EXPECT_EQ(text(u"txInMailServer"), QString());
  EXPECT_EQ(text(u"txInMailServerPort"), QStringLiteral("995"));
  EXPECT_EQ(text(u"txInMailServerUser"), QStringLiteral("me@example.org"));
  EXPECT_TRUE(Child<QCheckBox>(window, u"ckOutMailServerAuth").isChecked());
  EXPECT_EQ(text(u"txObject"), QStringLiteral("me@example.org"));

  // The login of sending is the one of receiving, until it is another.
  type("me@ocn.ne.jp");
  auto& password = Child<QLineEdit>(window, u"txInMailServerPassword");
  const auto look = [&] {
    pages.setCurrentIndex(2);
    pages.setCurrentIndex(3);
  };
  Type(password, QStringLiteral("first"));
  look();
  EXPECT_EQ(text(u"txOutMailServerUser"), QStringLiteral("me@ocn.ne.jp"));
  EXPECT_EQ(text(u"txOutMailServerPassword"), QStringLiteral("first"));
  password.setText(QStringLiteral("second"));
  look();
  EXPECT_EQ(text(u"txOutMailServerPassword"), QStringLiteral("second"));
  Child<QLineEdit>(window, u"txOutMailServerPassword").setText(QStringLiteral("own"));
  look();
  EXPECT_EQ(text(u"txOutMailServerPassword"), QStringLiteral("own"));
  EXPECT_EQ(text(u"txObject"), QStringLiteral("me@ocn.ne.jp"));
  Child<QLineEdit>(window, u"txObject").setText(QStringLiteral("mine"));

  pages.setCurrentIndex(2);
  auto& server = Child<QLineEdit>(window, u"txInMailServer");
  server.clear();
  Type(server, QStringLiteral("mine.example"));
  type("me@gmail.com");
  EXPECT_EQ(text(u"txInMailServer"), QStringLiteral("mine.example"));
  EXPECT_EQ(text(u"txOutMailServer"), QStringLiteral("smtp.ocn.ne.jp"));
  EXPECT_EQ(text(u"txObject"), QStringLiteral("mine"));

  // A stored account is left as it is.
  Child<QLineEdit>(window, u"txObject").setText(QStringLiteral("a"));
  PressOk();
  ASSERT_EQ(Error(), QString());
  const SerialId serialId = window.Tag();
  for (const QString& key :
       {QStringLiteral("InMailServer"), QStringLiteral("InMailServerUser"),
        QStringLiteral("OutMailServer"), QStringLiteral("OutMailServerUser")}) {
    LoadObject(context(), serialId)->Let(key, QString());
  }
  ObjectsWindow& again = Open(object_type::kAccount, serialId);
  Child<QTabWidget>(again, u"tsPage").setCurrentIndex(1);
  again.activateWindow();
  ASSERT_TRUE(WaitFor([&] { return again.isActiveWindow(); }));
  Child<QLineEdit>(again, u"txMailaddress").setFocus();
  QTest::keyClick(&Child<QLineEdit>(again, u"txMailaddress"), Qt::Key_Tab);
  EXPECT_EQ(Child<QLineEdit>(again, u"txInMailServer").text(), QString());
}

TEST_F(EditingTest, ServersAreAskedForByTheButtonAloneWhichCancelsToo) {
  QTcpServer web;
  ASSERT_TRUE(web.listen(QHostAddress::LocalHost));
  int asked = 0;
  QByteArray answer = "HTTP/1.0 404 No\r\n\r\n";
  QObject::connect(&web, &QTcpServer::newConnection, &web, [&] {
    QTcpSocket* socket = web.nextPendingConnection();
    QObject::connect(socket, &QTcpSocket::readyRead, socket, [&asked, &answer, socket] {
      ++asked;
      socket->write(answer);
      if (!answer.isEmpty()) socket->disconnectFromHost();
    });
  });
  ObjectsWindow& window = Open(object_type::kAccount);
  Child<QTabWidget>(window, u"tsPage").setCurrentIndex(1);
  window.findChild<ServerLookup*>()->AskOnly(
      {QUrl(QStringLiteral("http://127.0.0.1:%1/").arg(web.serverPort()))});
  Child<QLineEdit>(window, u"txMailaddress").setText(QStringLiteral("me@example.org"));
  auto& find = Child<QPushButton>(window, u"cmFindServers");
  const auto& result = Child<QLabel>(window, u"lbFindServers");
  const QString caption = find.text();
  Press(find);
  EXPECT_NE(find.text(), caption);
  ASSERT_TRUE(WaitFor([&] { return find.text() == caption; }));
  EXPECT_EQ(asked, 1) << "nobody is asked before it is wanted";
  EXPECT_TRUE(result.text().contains(QStringLiteral("見つかりません")));

  answer.clear();  // it says nothing
  Press(find);
  ASSERT_TRUE(WaitFor([&] { return asked == 2; }));
  Press(find);
  EXPECT_EQ(find.text(), caption);
  EXPECT_EQ(result.text(), QString());

  answer =
      "HTTP/1.0 200 OK\r\n\r\n<c><incomingServer type=\"pop3\"><hostname>p.example.org</hostname>"
      "<port>995</port><socketType>SSL</socketType><username>%EMAILADDRESS%</username>"
      "<authentication>plain</authentication></incomingServer></c>";
  Press(find);
  ASSERT_TRUE(WaitFor([&] { return find.text() == caption; }));
  // Leaving the address leaves what was found.
  const QString found = result.text();
  Child<QLineEdit>(window, u"txMailaddress").setFocus();
  QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
  EXPECT_EQ(result.text(), found);
  EXPECT_EQ(Child<QLineEdit>(window, u"txInMailServer").text(), QStringLiteral("p.example.org"));
  EXPECT_EQ(Child<QLineEdit>(window, u"txInMailServerUser").text(),
            QStringLiteral("me@example.org"));
}

TEST_F(EditingTest, AnAccountMayOnlySend) {
  ObjectsWindow& window = Open(object_type::kAccount);
  Type(Child<QLineEdit>(window, u"txObject"), QStringLiteral("送信だけ"));
  auto& address = Child<QLineEdit>(window, u"txMailaddress");
  Type(address, QStringLiteral("a@example.jp"));
  QTest::keyClick(&address, Qt::Key_Return);
  EXPECT_TRUE(Error().contains(QStringLiteral("受信サーバー")));
  Type(Child<QLineEdit>(window, u"txOutMailServer"), QStringLiteral("127.0.0.1"));
  PressOk();
  EXPECT_EQ(Error(), QString());
  EXPECT_EQ(Stored(window.Tag())->Text(u"InMailServer"), QString());
  EXPECT_EQ(Stored(window.Tag())->Text(u"InMailServerUser"), QString());
}

TEST_F(EditingTest, FaultsAreToldAtTheirFieldsAndNothingIsSaved) {
  ObjectsWindow& window = Open(object_type::kAccount);
  const auto fault = [&](const char16_t* field, const QString& text) {
    PressOk();
    EXPECT_TRUE(Error().startsWith(text)) << Error().toStdString();
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
  Press(Child<QPushButton>(window, u"cmCancel"));
  EXPECT_FALSE(window.isVisible());
  EXPECT_EQ(context().Session->Text(u"status", QStringLiteral("x")), QString());
}

TEST_F(EditingTest, ANewAccountBeginsEncryptedAndPortsFollowTheSecurityUnlessGiven) {
  ObjectsWindow& window = Open(object_type::kAccount);
  auto& port = Child<QLineEdit>(window, u"txInMailServerPort");
  auto& security = Child<QComboBox>(window, u"cbInMailServerSecurity");
  EXPECT_EQ(security.currentText(), QStringLiteral("TLS"));
  EXPECT_EQ(port.text(), QStringLiteral("995"));
  security.setCurrentIndex(1);
  EXPECT_EQ(port.text(), QStringLiteral("110"));
  port.setText(QStringLiteral("2110"));
  security.setCurrentIndex(2);
  EXPECT_EQ(port.text(), QStringLiteral("2110"));
  auto& sendSecurity = Child<QComboBox>(window, u"cbOutMailServerSecurity");
  EXPECT_EQ(sendSecurity.currentText(), QStringLiteral("TLS"));
  EXPECT_EQ(Child<QLineEdit>(window, u"txOutMailServerPort").text(), QStringLiteral("465"));
  sendSecurity.setCurrentIndex(1);
  EXPECT_EQ(Child<QLineEdit>(window, u"txOutMailServerPort").text(), QStringLiteral("587"));
}

TEST_F(EditingTest, TheConnectionIsReallyTried) {
  test::LoopbackPop3Server pop3;
  test::LoopbackSmtpServer smtp;
  ASSERT_TRUE(pop3.Listen() && smtp.Listen());
  ObjectsWindow& window = Open(object_type::kAccount);
  Child<QTabWidget>(window, u"tsPage").setCurrentIndex(2);
  Child<QComboBox>(window, u"cbInMailServerSecurity").setCurrentIndex(0);
  Child<QComboBox>(window, u"cbOutMailServerSecurity").setCurrentIndex(0);
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
  const auto trySending = [&] {
    Press(sendButton);
    EXPECT_TRUE(WaitFor([&sendButton] { return sendButton.isEnabled(); }));
    return Child<QLabel>(window, u"lbCheckOutMailServer").text();
  };
  EXPECT_EQ(trySending(), QStringLiteral("接続できました。"));
  Child<QCheckBox>(window, u"ckOutMailServerAuth").setChecked(true);
  Type(Child<QLineEdit>(window, u"txOutMailServerUser"), QStringLiteral("user"));
  Type(Child<QLineEdit>(window, u"txOutMailServerPassword"), QStringLiteral("wrong"));
  smtp.Replies = {{"EHLO", "250-localhost\r\n250 AUTH PLAIN\r\n"}, {"AUTH", "535 no\r\n"}};
  EXPECT_TRUE(trySending().contains(QStringLiteral("パスワードを確認してください")));
  smtp.Replies["AUTH"] = "235 yes\r\n";
  EXPECT_EQ(trySending(), QStringLiteral("接続できました。"));
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
  ObjectsWindow& window = Open(object_type::kAccount, account->Serial());
  EXPECT_EQ(Child<QLineEdit>(window, u"txInMailServerPassword").echoMode(), QLineEdit::Password);
  Child<QCheckBox>(window, u"ckInMailServerPasswordSave").setChecked(false);
  PressOk();
  EXPECT_EQ(Stored(account->Serial())->Text(u"InMailServerPassword"), QString());
  EXPECT_EQ(account->Text(u"InMailServerPassword"), QStringLiteral("secret"));
}

// Also what the page of the sending server has taken over from it.
TEST_F(EditingTest, APasswordThatIsNotToBeSavedIsNotSavedForSendingEither) {
  ObjectsWindow& window = Open(object_type::kAccount);
  for (const auto& [box, text] : {std::pair{u"txObject", u"a"},
                                  {u"txMailaddress", u"a@x.example"},
                                  {u"txInMailServer", u"127.0.0.1"},
                                  {u"txInMailServerUser", u"me"},
                                  {u"txInMailServerPassword", u"sEcReT"},
                                  {u"txOutMailServer", u"127.0.0.1"}}) {
    Type(Child<QLineEdit>(window, box), QString::fromUtf16(text));
  }
  Child<QCheckBox>(window, u"ckOutMailServerAuth").click();
  ASSERT_EQ(Child<QLineEdit>(window, u"txOutMailServerPassword").text(), QStringLiteral("sEcReT"));
  Child<QCheckBox>(window, u"ckInMailServerPasswordSave").click();
  PressOk();
  ASSERT_FALSE(window.isVisible()) << Error().toStdString();
  EXPECT_EQ(Stored(window.Tag())->Text(u"OutMailServerPassword"), QString());
  EXPECT_EQ(Stored(window.Tag())->Text(u"OutMailServerUser"), QStringLiteral("me"));
}

// Nor does one stay that was stored before, or that a page which is not used any more took over.
TEST_F(EditingTest, AStoredPasswordGoesFromBothPages) {
  const DiskPtr account = profile_.AddAccount(110);
  account->Let(QStringLiteral("OutMailServerUser"), QStringLiteral("user"));
  account->Let(QStringLiteral("OutMailServerPassword"), QStringLiteral("secret"));
  ASSERT_TRUE(SaveObject(profile_.Get(), DatabaseKind::Profile, *account));
  ObjectsWindow& window = Open(object_type::kAccount, account->Serial());
  ASSERT_FALSE(Child<QCheckBox>(window, u"ckOutMailServerAuth").isChecked());
  Child<QCheckBox>(window, u"ckInMailServerPasswordSave").click();
  PressOk();
  for (const auto* key : {u"InMailServerPassword", u"OutMailServerPassword"}) {
    EXPECT_EQ(Stored(account->Serial())->Text(key), QString());
  }
  // That of sending does not stay in memory either, where it would be used in place of the one that
  // is asked for.
  EXPECT_EQ(account->Text(u"OutMailServerPassword"), QString());
}

}  // namespace
}  // namespace vorn
