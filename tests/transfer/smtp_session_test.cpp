// SMTP conversations played as text.

#include <gtest/gtest.h>

#include "support/session_playing.h"
#include "transfer/protocol/wire_message.h"

namespace vorn {
namespace {

class SmtpSessionTest : public testing::Test {
 protected:
  SmtpSessionTest() {
    job_.from = QStringLiteral("f@x");
    job_.recipients = {QStringLiteral("a@x"), QStringLiteral("b@x")};
    job_.source = "Subject: s\r\nBcc: b@x\r\n\r\n.dot\r\n.\r\n";
  }
  QString Play(const QByteArray& server) { return test::Play(job_, events_, server); }

  test::SessionRecorder events_;
  SmtpJob job_;
};

TEST_F(SmtpSessionTest, OneMessageGoesToAllItsRecipients) {
  // One mailbox, once; who writes it may be one of them.
  job_.recipients += {QStringLiteral("a@x"), QStringLiteral("a@X"), QStringLiteral("f@x")};
  EXPECT_EQ(Play("220 hi\r\n250 x\r\n250\r\n250\r\n250\r\n250\r\n354\r\n250\r\n221\r\n"),
            QStringLiteral(
                "EHLO [127.0.0.1]|MAIL FROM:<f@x>|RCPT TO:<a@x>|RCPT TO:<b@x>|RCPT TO:<f@x>|DATA|"
                "Subject: s||..dot|.|QUIT"));
  EXPECT_EQ(events_.sent, QByteArrayList{job_.source});
  for (const QByteArray limit : {"SIZE", "SIZE 0", "SIZE many"}) {  // none (RFC 1870, section 4)
    Play("220\r\n250-x\r\n250 " + limit + "\r\n250\r\n250\r\n250\r\n250\r\n354\r\n250\r\n221\r\n");
  }
  EXPECT_EQ(events_.sent.size(), 4);
  EXPECT_TRUE(events_.errors.isEmpty());
}

TEST_F(SmtpSessionTest, ARefusedRecipientStopsBeforeTheMessage) {
  const QString said = Play(
      "220\r\n250-x\r\n250-PIPELINING\r\n250 SIZE 1000\r\n250\r\n250\r\n550 no such "
      "user\r\n221\r\n");
  EXPECT_TRUE(said.contains(QStringLiteral("MAIL FROM:<f@x> SIZE=")));
  EXPECT_FALSE(said.contains(QStringLiteral("DATA")));
  EXPECT_TRUE(events_.sent.isEmpty());
  ASSERT_EQ(events_.errors.size(), 1);
  EXPECT_TRUE(events_.errors[0].contains(QStringLiteral("no such user")));

  // The one who was refused is named, also where all were named at once, and behind one who stands
  // in two rows.
  events_.refused.clear();
  Play("220\r\n250-x\r\n250 PIPELINING\r\n250\r\n550 who?\r\n250\r\n221\r\n");
  EXPECT_EQ(events_.refused, QStringList{QStringLiteral("a@x")});
  EXPECT_TRUE(events_.errors.last().contains(QStringLiteral("550 who?")));
  EXPECT_FALSE(events_.errors.last().contains(QStringLiteral("b@x")));
  EXPECT_TRUE(events_.told.isEmpty());
  events_.errors.clear();
  job_.recipients = {QStringLiteral("a@x"), QStringLiteral("a@X"), QStringLiteral("c@x")};
  Play("220\r\n250 x\r\n250\r\n250\r\n550 no such user\r\n221\r\n");
  ASSERT_EQ(events_.errors.size(), 1);
  EXPECT_TRUE(events_.errors[0].contains(QStringLiteral("c@x"))) << events_.errors[0].toStdString();
}

TEST_F(SmtpSessionTest, LogsInWithWhatTheServerOffers) {
  job_.authenticate = true;
  job_.server.who.user = QStringLiteral("tim");
  job_.server.who.password = QStringLiteral("tanstaaftanstaaf");
  // The example of RFC 2195.
  EXPECT_TRUE(Play("220\r\n250-x\r\n250 AUTH PLAIN CRAM-MD5\r\n"
                   "334 PDE4OTYuNjk3MTcwOTUyQHBvc3RvZmZpY2UucmVzdG9uLm1jaS5uZXQ+\r\n235\r\n")
                  .contains(QStringLiteral(
                      "AUTH CRAM-MD5|dGltIGI5MTNhNjAyYzdlZGE3YTQ5NWI0ZTZlNzMzNGQzODkw|MAIL")));
  EXPECT_TRUE(Play("220\r\n250 AUTH LOGIN\r\n334 VXNlcm5hbWU6\r\n334 UGFzc3dvcmQ6\r\n235\r\n")
                  .contains(QStringLiteral("AUTH LOGIN|dGlt|dGFuc3RhYWZ0YW5zdGFhZg==|MAIL")));
  job_.server.who.password = QStringLiteral("pässword");
  EXPECT_TRUE(Play("220\r\n250 AUTH LOGIN\r\n334\r\n334\r\n235\r\n")
                  .contains(QStringLiteral("|cMOkc3N3b3Jk|MAIL")));
  events_.errors.clear();
  Play("220\r\n250 AUTH PLAIN\r\n535 bad\r\n221\r\n");
  EXPECT_TRUE(events_.errors.value(0).contains(QStringLiteral("パスワードを確認")));
  EXPECT_FALSE(events_.errors.value(0).contains(job_.server.who.password));
}

TEST_F(SmtpSessionTest, AMechanismThatIsRefusedIsFollowedByTheNext) {
  job_.authenticate = true;
  job_.server.who.user = QStringLiteral("tim");
  job_.server.who.password = QStringLiteral("pass");
  const auto commands = [this](const QByteArray& server) {
    events_.errors.clear();
    QStringList said;
    for (const QString& line : Play("220\r\n250-x\r\n250 " + server).split(u'|')) {
      if (line.startsWith(QStringLiteral("AUTH"))) said += line.section(u' ', 1, 1);
    }
    return said.join(u' ');
  };
  for (const QByteArray code : {"501", "504", "534", "538"}) {
    // Never by one that shows the password where the server has one that does not.
    EXPECT_EQ(commands("AUTH PLAIN LOGIN CRAM-MD5\r\n" + code + "\r\n235\r\n"),
              QStringLiteral("CRAM-MD5"))
        << code.toStdString();
    EXPECT_EQ(events_.codes.last(), PopError::Login);
  }
  EXPECT_EQ(commands("AUTH PLAIN LOGIN\r\n504\r\n334\r\n334\r\n235\r\n"),
            QStringLiteral("PLAIN LOGIN"));
  // What is not to go in clear does not go in clear in another form; a wrong password goes once.
  EXPECT_EQ(commands("AUTH PLAIN LOGIN\r\n538\r\n221\r\n"), QStringLiteral("PLAIN"));
  EXPECT_EQ(commands("AUTH PLAIN LOGIN\r\n535\r\n221\r\n"), QStringLiteral("PLAIN"));
  EXPECT_EQ(commands("AUTH PLAIN LOGIN\r\n504\r\n504\r\n221\r\n"), QStringLiteral("PLAIN LOGIN"));
}

TEST_F(SmtpSessionTest, FailuresLeaveTheMessageWaiting) {
  const auto fails = [this](const QByteArray& server, const QString& words) {
    events_.errors.clear();
    Play(server);
    EXPECT_EQ(events_.errors.size(), 1) << server.toStdString();
    EXPECT_TRUE(events_.errors.value(0).contains(words)) << events_.errors.value(0).toStdString();
  };
  fails("", QStringLiteral("接続を切りました"));
  fails("SSH-2.0-x\r\n", QStringLiteral("応答を理解できません"));
  fails("554 go away\r\n221\r\n", QStringLiteral("go away"));
  fails("220\r\n250\r\n530 5.7.0 no\r\n221\r\n", QStringLiteral("ログインか暗号化"));
  EXPECT_EQ(events_.codes.last(), PopError::Login) << "the message is none that is refused";
  fails("220\r\n250 SIZE 10\r\n", QStringLiteral("大きすぎます"));
  fails("220\r\n250\r\n250\r\n250\r\n250\r\n354\r\n", QStringLiteral("届いている可能性"));
  fails("220\r\n250\r\n250\r\n250\r\n250\r\n354\r\n552 full\r\n221\r\n", QStringLiteral("full"));
  job_.server.security = Security::StartTls;
  fails("220\r\n250 x\r\n", QStringLiteral("STARTTLS"));
  EXPECT_TRUE(events_.sent.isEmpty());
  job_.server.security = Security::None;
  job_.recipients = {QStringLiteral("a@x>\r\nDATA")};
  fails("220\r\n250 x\r\n", QStringLiteral("送信できないアドレス"));
}

TEST(WireMessageTest, IsCleanAndStuffed) {
  EXPECT_EQ(WireMessage("A: 1\nbcc: x\n\r\n..\r.b\r\n\r\n.\r\n"),
            QByteArray("A: 1\r\n\r\n...\r\n..b\r\n\r\n"));
  EXPECT_EQ(WireMessage("x"), QByteArray("x\r\n"));
  EXPECT_EQ(WireMessage("a\r\n.\r\n.\r\n"), QByteArray("a\r\n..\r\n"));
}

}  // namespace
}  // namespace vorn
