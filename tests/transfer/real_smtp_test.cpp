// Sending through the check plan to a server that nobody here wrote.

#include <QSslConfiguration>
#include <QTcpServer>

#include "objects/settings.h"
#include "support/loopback_pop3_server.h"
#include "support/loopback_smtp_server.h"
#include "support/real_servers.h"
#include "support/traffic.h"

namespace vorn {
namespace {

using test::SmtpSink;
using test::TestCertificates;

class RealSmtpTest : public test::TrafficTest {
 protected:
  SerialId StoreWaiting(const QByteArray& fields, const QByteArray& body = "text\r\n") {
    return profile_.Store("From: me@example.com\r\n" + fields + "\r\n" + body + ".\r\n", 2);
  }
};

TEST_F(RealSmtpTest, SizeAndRefusedRecipientsLeaveTheMessageWaitingAndOthersGoOn) {
  SmtpSink sink({QStringLiteral("--size"), QStringLiteral("5000")});
  ASSERT_TRUE(sink.Start());
  AddSendAccount(sink.Port());
  StoreWaiting("To: a@example.com\r\nSubject: large\r\n", QByteArray(6000, 'x') + "\r\n");
  StoreWaiting("To: a@example.com, refused@example.com\r\nSubject: refused\r\n");
  StoreWaiting("To: a@example.com\r\nBcc: hidden@example.com\r\nSubject: fine\r\n",
               ".\r\n..two\r\nbare\nand\rback\r\n");
  EXPECT_EQ(Send().sent, 1);
  EXPECT_EQ(Subjects(2), (QStringList{QStringLiteral("large"), QStringLiteral("refused")}));
  EXPECT_EQ(Subjects(3), QStringList{QStringLiteral("fine")});
  // One event for each, at the refused message itself who was refused and why.
  EXPECT_EQ(host_.levels, (QList<int>{1, 1, 0}));
  EXPECT_EQ(host_.categories[1], QStringLiteral("mailup"));
  EXPECT_TRUE(host_.log[0].contains(QStringLiteral("5000"))) << host_.log[0].toStdString();
  const auto isTold = [](const QString& text) {
    return text.contains(QStringLiteral("refused@example.com")) &&
           text.contains(QStringLiteral("no such user here"));
  };
  EXPECT_TRUE(isTold(host_.log[1])) << host_.log[1].toStdString();
  // Unfolded, the session has one of its own beside it.
  Settings(profile_.Get()).Bag()->Let(QStringLiteral("EventsFolded"), false);
  Settings(profile_.Get()).Bag()->Let(QStringLiteral("Careful"), false);
  host_.levels.clear();
  host_.log.clear();
  Send();
  EXPECT_EQ(host_.levels, (QList<int>{1, 1, 1}));
  EXPECT_TRUE(isTold(host_.log[1]) && isTold(host_.log[2]));

  ASSERT_EQ(sink.Messages().size(), 1);
  const QByteArray kept = sink.Messages()[0];
  EXPECT_TRUE(kept.startsWith("me@example.com a@example.com hidden@example.com clear"));
  const QByteArray source = kept.sliced(kept.indexOf('\n') + 1);
  EXPECT_FALSE(source.toLower().contains("bcc"));
  EXPECT_TRUE(source.endsWith("\r\n\r\n.\r\n..two\r\nbare\r\nand\r\nback\r\n"))
      << source.toStdString();
  // The stored message keeps its secret recipient.
  EXPECT_EQ(profile_
                .Select(QStringLiteral("SELECT COUNT(0) AS V FROM mail WHERE STATUS = 3 AND "
                                       "FIELD_MAILADDRESS LIKE '*hidden@example.com*'"))
                .value(0)
                .toInt(),
            1);
}

TEST_F(RealSmtpTest, LogsInAndEncryptsAsTheAccountSays) {
  const TestCertificates certificates;
  const QSslConfiguration saved = QSslConfiguration::defaultConfiguration();
  QSslConfiguration configuration = saved;
  configuration.addCaCertificates(certificates.Authority());
  QSslConfiguration::setDefaultConfiguration(configuration);
  for (const Security security : {Security::None, Security::StartTls, Security::Tls}) {
    QStringList arguments{QStringLiteral("--auth"), QStringLiteral("--cert"),
                          certificates.Certificate(TestCertificates::Kind::Valid),
                          QStringLiteral("--key"), certificates.Key(TestCertificates::Kind::Valid)};
    if (security == Security::StartTls) arguments << QStringLiteral("--tls=starttls");
    if (security == Security::Tls) arguments << QStringLiteral("--tls=tls");
    SmtpSink sink(arguments);
    ASSERT_TRUE(sink.Start());
    const DiskPtr account = AddSendAccount(sink.Port());
    account->Let(QStringLiteral("OutMailServer"), QStringLiteral("localhost"));
    account->Let(QStringLiteral("OutMailServerSecurity"), static_cast<int>(security));
    account->Let(QStringLiteral("OutMailServerAuth"), true);
    account->Let(QStringLiteral("OutMailServerUser"), QStringLiteral("山田"));
    account->Let(QStringLiteral("OutMailServerPassword"), QStringLiteral("wrong"));
    StoreWaiting("To: a@example.com\r\nSubject: s\r\n");
    EXPECT_EQ(Send().sent, 0);
    EXPECT_TRUE(LastLog().contains(QStringLiteral("パスワードを確認"))) << LastLog().toStdString();
    account->Let(QStringLiteral("OutMailServerPassword"), QStringLiteral("secret"));
    EXPECT_EQ(Send().sent, 1) << LastLog().toStdString();
    const QByteArray envelope = sink.Messages().value(0).split('\r').value(0);
    EXPECT_TRUE(envelope.endsWith(security == Security::None ? "clear auth" : "tls auth"))
        << envelope.toStdString();
    account->Let(QStringLiteral("Enabled"), false);
  }
  QSslConfiguration::setDefaultConfiguration(saved);
}

// Who has one login for both and stores no password is asked once, and never logs in with none.
TEST_F(RealSmtpTest, AnAskedPasswordServesForSendingToo) {
  SmtpSink sink({QStringLiteral("--auth")});
  ASSERT_TRUE(sink.Start());
  const DiskPtr account = AddSendAccount(sink.Port());
  account->Let(QStringLiteral("OutMailServer"), QStringLiteral("localhost"));
  account->Let(QStringLiteral("InMailServerPasswordSave"), false);
  account->Let(QStringLiteral("InMailServerPassword"), QString());
  account->Let(QStringLiteral("OutMailServerAuth"), true);
  account->Let(QStringLiteral("OutMailServerUser"), account->Text(u"InMailServerUser"));
  for (const char* subject : {"one", "two"}) {
    StoreWaiting(QByteArray("To: a@example.com\r\nSubject: ") + subject + "\r\n");
  }
  EXPECT_EQ(Send().sent, 0);  // the user declines
  EXPECT_EQ(host_.passwordQuestions, 1);
  EXPECT_TRUE(LastLog().contains(QStringLiteral("入力されなかった"))) << LastLog().toStdString();
  host_.typedPassword = QStringLiteral("slip");
  EXPECT_EQ(Send().sent, 0);
  host_.typedPassword = QStringLiteral("secret");
  EXPECT_EQ(Send().sent, 2) << LastLog().toStdString();
  const int questions = host_.passwordQuestions;
  StoreWaiting("To: a@example.com\r\nSubject: three\r\n");
  EXPECT_EQ(Send().sent, 1);
  EXPECT_EQ(host_.passwordQuestions, questions);
}

TEST_F(RealSmtpTest, NothingInAMessageOrAnAccountBecomesACommand) {
  test::LoopbackSmtpServer server;
  ASSERT_TRUE(server.Listen());
  const DiskPtr account = AddSendAccount(server.Port());
  profile_.Store(
      "From: me@example.com\r\nTo: \"a\r\nRCPT TO:<evil@x.example>\" <a@example.com>\r\n"
      "Subject: =?UTF-8?B?YQ0KQmNjOiBldmlsQHguZXhhbXBsZQ==?=\r\n\r\n\r\n",
      2);
  Send();
  for (const test::SentMessage& message : server.Messages()) {
    for (const QByteArray& recipient : message.recipients) EXPECT_FALSE(recipient.contains("evil"));
    EXPECT_FALSE(message.source.contains("\r\nBcc: evil"));
  }
  test::LoopbackPop3Server incoming;
  ASSERT_TRUE(incoming.Listen());
  account->Let(QStringLiteral("InMailServer"), QStringLiteral("127.0.0.1"));
  account->Let(QStringLiteral("InMailServerPort"), incoming.Port());
  account->Let(QStringLiteral("InMailServerUser"), QStringLiteral("user\r\nDELE 1"));
  EXPECT_EQ(Receive().errors, 1);
  EXPECT_EQ(incoming.Count("DELE"), 0);
  EXPECT_EQ(incoming.Count("USER"), 0);
}

// A server with several addresses is reached at the one that answers.
TEST_F(RealSmtpTest, EveryAddressOfAServerIsTried) {
  Pop& control = traffic_.Control();
  control.Addresses = {QHostAddress(QStringLiteral("127.0.0.9")),
                       QHostAddress(QHostAddress::LocalHostIPv6),
                       QHostAddress(QHostAddress::LocalHost)};
  control.Patience.ReplyMs = 300;
  for (const QHostAddress& address : std::as_const(control.Addresses)) {
    QTcpServer server;
    const bool listens = server.listen(address);
    if (!listens && address == QHostAddress::LocalHostIPv6) continue;  // a machine without IPv6
    ASSERT_TRUE(listens);
    const DiskPtr account = profile_.AddAccount(server.serverPort());
    Receive();
    EXPECT_TRUE(test::WaitFor([&server] { return server.hasPendingConnections(); }))
        << address.toString().toStdString();
    account->Let(QStringLiteral("Enabled"), false);
  }
  control.Addresses.clear();
  const DiskPtr account = profile_.AddAccount(1);
  account->Let(QStringLiteral("InMailServer"), QStringLiteral("no-such-server.invalid"));
  EXPECT_EQ(Receive().errors, 1);
  EXPECT_TRUE(LastLog().contains(QStringLiteral("見つかりません"))) << LastLog().toStdString();
}

}  // namespace
}  // namespace vorn
