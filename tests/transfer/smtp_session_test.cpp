// SMTP conversations played as text, and messages sent to a server on loopback.

#include "transfer/smtp_session.h"

#include <gtest/gtest.h>

#include "support/loopback_smtp_server.h"
#include "support/recording_events.h"
#include "support/test_profile.h"
#include "transfer/pop.h"
#include "transfer/wire_message.h"

namespace vorn {
namespace {

using Recorder = test::RecordingEvents;

class SmtpSessionTest : public testing::Test {
 protected:
  SmtpSessionTest() {
    job_.from = QStringLiteral("f@x");
    job_.recipients = {QStringLiteral("a@x"), QStringLiteral("b@x")};
    job_.source = "Subject: s\r\nBcc: b@x\r\n\r\n.dot\r\n.\r\n";
  }
  enum class End { Lost, Abandoned };

  // Plays the server's bytes one by one; the client's words by line.
  QString Play(const QByteArray& server, End end = End::Lost) {
    QByteArray said;
    SmtpSession session(job_, events_, [&said](const QByteArray& bytes) { said += bytes; });
    for (const char byte : server) {
      if (!session.Finished()) session.Receive(QByteArrayView(&byte, 1));
    }
    if (end == End::Lost) session.ConnectionLost();
    session.Abandon();
    EXPECT_TRUE(session.Finished());
    return QString::fromLatin1(said).trimmed().replace(QStringLiteral("\r\n"), QStringLiteral("|"));
  }

  Recorder events_;
  SmtpJob job_;
};

TEST_F(SmtpSessionTest, OneMessageGoesToAllItsRecipients) {
  EXPECT_EQ(Play("220 hi\r\n250 x\r\n250\r\n250\r\n250\r\n354\r\n250\r\n221\r\n"),
            QStringLiteral("EHLO [127.0.0.1]|MAIL FROM:<f@x>|RCPT TO:<a@x>|RCPT TO:<b@x>|DATA|"
                           "Subject: s||..dot|.|QUIT"));
  EXPECT_EQ(events_.sent, QByteArrayList{job_.source});
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
}

TEST_F(SmtpSessionTest, LogsInWithWhatTheServerOffers) {
  job_.authenticate = true;
  job_.user = QStringLiteral("tim");
  job_.password = QStringLiteral("tanstaaftanstaaf");
  // The example of RFC 2195.
  EXPECT_TRUE(Play("220\r\n250-x\r\n250 AUTH PLAIN CRAM-MD5\r\n"
                   "334 PDE4OTYuNjk3MTcwOTUyQHBvc3RvZmZpY2UucmVzdG9uLm1jaS5uZXQ+\r\n235\r\n")
                  .contains(QStringLiteral(
                      "AUTH CRAM-MD5|dGltIGI5MTNhNjAyYzdlZGE3YTQ5NWI0ZTZlNzMzNGQzODkw|MAIL")));
  EXPECT_TRUE(Play("220\r\n250 AUTH LOGIN\r\n334 VXNlcm5hbWU6\r\n334 UGFzc3dvcmQ6\r\n235\r\n")
                  .contains(QStringLiteral("AUTH LOGIN|dGlt|dGFuc3RhYWZ0YW5zdGFhZg==|MAIL")));
  events_.errors.clear();
  Play("220\r\n250 AUTH PLAIN\r\n535 bad\r\n221\r\n");
  EXPECT_TRUE(events_.errors.value(0).contains(QStringLiteral("パスワードを確認")));
  EXPECT_FALSE(events_.errors.value(0).contains(job_.password));
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
  fails("220\r\n250 SIZE 10\r\n", QStringLiteral("大きすぎます"));
  fails("220\r\n250\r\n250\r\n250\r\n250\r\n354\r\n", QStringLiteral("届いている可能性"));
  fails("220\r\n250\r\n250\r\n250\r\n250\r\n354\r\n552 full\r\n221\r\n", QStringLiteral("full"));
  job_.security = Security::StartTls;
  fails("220\r\n250 x\r\n", QStringLiteral("STARTTLS"));
  EXPECT_TRUE(events_.sent.isEmpty());
  job_.security = Security::None;
  job_.recipients = {QStringLiteral("a@x>\r\nDATA")};
  fails("220\r\n250 x\r\n", QStringLiteral("送信できないアドレス"));
}

const QByteArray kUpToData = "220 hi\r\n250 x\r\n250\r\n250\r\n250\r\n";

// Cut or abandoned after any byte, a message that was begun has one outcome, and the doubtful one
// exactly from its end mark to the answer.
TEST_F(SmtpSessionTest, AHandoverHasOneOutcomeWhereverItEnds) {
  const QByteArray whole = kUpToData + "354\r\n250 kept\r\n221\r\n";
  for (const End end : {End::Lost, End::Abandoned}) {
    for (qsizetype length = 0; length <= whole.size(); ++length) {
      const QString said = Play(whole.first(length), end);
      QString expected;
      if (said.contains(u"|DATA")) expected = QStringLiteral("begin refused");
      if (said.contains(u"..dot|.")) expected = QStringLiteral("begin unknown");
      if (length >= whole.size() - 5) expected = QStringLiteral("begin sent");
      EXPECT_EQ(events_.TakeHandover(), expected) << length;
    }
  }
}

TEST_F(SmtpSessionTest, OnlyAClearAnswerToTheEndOfTheMessageCounts) {
  const auto ends = [this](const QByteArray& answers, const char* outcome) {
    events_.errors.clear();
    Play(kUpToData + answers);
    EXPECT_EQ(events_.TakeHandover(), QString::fromLatin1(outcome)) << answers.toStdString();
    EXPECT_EQ(events_.errors.size(), 1) << answers.toStdString();
  };
  ends("550 no\r\n221\r\n", "begin refused");
  ends("what?\r\n", "begin refused");
  ends("250 fine\r\n", "begin refused");
  ends("354\r\n552 full\r\n221\r\n", "begin refused");
  ends("354\r\n421 closing\r\n", "begin refused");
  ends("354\r\n354 go on\r\n", "begin unknown");
  ends("354\r\nwhat?\r\n", "begin unknown");
  ends("354\r\n250-kept\r\n550 not\r\n", "begin unknown");
  // Answers to what has not been said.
  job_.recipients = {QStringLiteral("a@x")};
  events_.errors.clear();
  QByteArray said;
  SmtpSession session(job_, events_, [&said](const QByteArray& bytes) { said += bytes; });
  for (const char* reply : {"220\r\n", "250\r\n", "250\r\n", "250\r\n", "354\r\n250 kept\r\n"}) {
    session.Receive(reply);
  }
  EXPECT_EQ(events_.TakeHandover(), QStringLiteral("begin refused"));
  EXPECT_FALSE(said.contains("Subject"));
  EXPECT_TRUE(events_.sent.isEmpty());
}

TEST_F(SmtpSessionTest, AnAnswerBeforeTheEndOfALargeMessageRefusesIt) {
  job_.source = "Subject: s\r\n\r\n" + QByteArray(1000000, 'x') + "\r\n";
  EXPECT_FALSE(Play(kUpToData + "354\r\n250 kept\r\n").contains(u"QUIT"));
  EXPECT_EQ(events_.TakeHandover(), QStringLiteral("begin refused"));
}

TEST_F(SmtpSessionTest, NothingIsHandedOverAgainstTheAnswerOfTheStore) {
  events_.mayBegin = false;
  EXPECT_TRUE(Play(kUpToData + "221\r\n").endsWith(QStringLiteral("RCPT TO:<b@x>|QUIT")));
  EXPECT_EQ(events_.TakeHandover(), QStringLiteral("begin"));
  EXPECT_TRUE(events_.errors.isEmpty());
}

TEST_F(SmtpSessionTest, EveryRefusedAddressIsNamedWithItsOwnReason) {
  job_.recipients = {QStringLiteral("a@x"), QStringLiteral("b@x"), QStringLiteral("c@x")};
  for (const QByteArray extension : {"x", "PIPELINING"}) {
    events_.refused.clear();
    events_.errors.clear();
    const QByteArray greeting = "220\r\n250 " + extension + "\r\n";
    EXPECT_FALSE(
        Play(greeting + "250\r\n550 who?\r\n250\r\n452 full\r\n221\r\n").contains(u"DATA"));
    EXPECT_EQ(events_.refused,
              (QStringList{QStringLiteral("a@x=550 who?"), QStringLiteral("c@x=452 full")}));
    ASSERT_EQ(events_.errors.size(), 1);
    for (const char* words : {"a@x", "who?", "c@x", "full"}) {
      EXPECT_TRUE(events_.errors[0].contains(QLatin1String(words))) << words;
    }
    EXPECT_FALSE(events_.errors[0].contains(u"b@x"));
    events_.errors.clear();
    Play(greeting + "553 not you\r\n503\r\n503\r\n503\r\n221\r\n");
    EXPECT_EQ(events_.refused.size(), 2) << "the sender's refusal is no recipient's";
    EXPECT_TRUE(events_.errors.value(0).contains(QStringLiteral("差出人のアドレス「f@x」")));
  }
  EXPECT_TRUE(events_.handover.isEmpty());
}

TEST_F(SmtpSessionTest, AddressesOfOtherScriptsGoOutAsTheServerTakesThem) {
  const QByteArray rest = "250\r\n250\r\n354\r\n250\r\n221\r\n";
  job_.from = QStringLiteral("f@例え.jp");
  job_.recipients = {QStringLiteral("a@Bücher。example")};
  EXPECT_TRUE(
      Play("220\r\n250 x\r\n" + rest)
          .contains(u"MAIL FROM:<f@xn--r8jz45g.jp>|RCPT TO:<a@xn--bcher-kva.example>|DATA"));
  job_.recipients = {QStringLiteral("山田@例え.jp")};
  QByteArray said;
  SmtpSession session(job_, events_, [&said](const QByteArray& bytes) { said += bytes; });
  for (const QByteArray reply :
       {"220\r\n", "250-x\r\n250-SMTPUTF8\r\n250 8BITMIME\r\n", "250\r\n"}) {
    session.Receive(reply);
  }
  EXPECT_TRUE(
      said.contains("MAIL FROM:<f@xn--r8jz45g.jp> SMTPUTF8\r\n"
                    "RCPT TO:<\xE5\xB1\xB1\xE7\x94\xB0@xn--r8jz45g.jp>"))
      << said.toStdString();
  session.Abandon();
  events_.errors.clear();
  EXPECT_FALSE(Play("220\r\n250 x\r\n" + rest).contains(u"MAIL"));
  EXPECT_TRUE(events_.errors.value(0).contains(QStringLiteral("山田@例え.jp")));
  for (const QString& bad :
       {QStringLiteral("a b@x"), QStringLiteral("a@x\r\nDATA"), QStringLiteral("a@例\u3000え.jp"),
        QStringLiteral("a\u200B@x"), QStringLiteral("a@例_え..jp"), QStringLiteral("a\u0085@x")}) {
    job_.recipients = {bad};
    EXPECT_FALSE(Play("220\r\n250 SMTPUTF8\r\n" + rest).contains(u"MAIL")) << bad.toStdString();
  }
}

TEST_F(SmtpSessionTest, WhatWasSaidInClearDoesNotCountAfterwards) {
  job_.security = Security::StartTls;
  QByteArray said;
  bool handshake = false;
  SmtpSession session(
      job_, events_, [&said](const QByteArray& bytes) { said += bytes; },
      [&handshake] { handshake = true; });
  session.Receive("220\r\n");
  session.Receive("250-SIZE 1\r\n250-SMTPUTF8\r\n250-PIPELINING\r\n250 STARTTLS\r\n");
  session.Receive("220 go\r\n");
  ASSERT_TRUE(handshake);
  session.TlsEstablished();
  session.Receive("250 x\r\n");
  EXPECT_TRUE(said.endsWith("STARTTLS\r\nEHLO [127.0.0.1]\r\nMAIL FROM:<f@x>\r\n"))
      << said.toStdString();
  session.Abandon();
  handshake = false;
  SmtpSession injected(
      job_, events_, [](const QByteArray&) {}, [&handshake] { handshake = true; });
  for (const char* reply : {"220\r\n", "250 STARTTLS\r\n", "220 go\r\n250 AUTH PLAIN\r\n"}) {
    injected.Receive(reply);
  }
  EXPECT_FALSE(handshake);
  EXPECT_TRUE(events_.errors.last().contains(QStringLiteral("改ざん")));
}

TEST_F(SmtpSessionTest, AnEmptyChallengeIsOneAndRepliesBeforeTheLoginAreFew) {
  job_.authenticate = true;
  job_.user = QStringLiteral("tim");
  job_.password = QStringLiteral("secret");
  EXPECT_TRUE(Play("220\r\n250 AUTH LOGIN\r\n334\r\n334\r\n235\r\n")
                  .contains(u"AUTH LOGIN|dGlt|c2VjcmV0|MAIL"));
  events_.errors.clear();
  QByteArray many = "220\r\n";
  for (int i = 0; i < 1000; ++i) many += "250-" + QByteArray(40, 'x') + "\r\n";
  Play(many + "250 AUTH LOGIN\r\n334 " + QByteArray(30000, 'x') + "\r\n334\r\n");
  EXPECT_TRUE(events_.errors.value(0).contains(QStringLiteral("応答を理解できません")));
}

TEST(WireMessageTest, IsCleanAndStuffed) {
  EXPECT_EQ(WireMessage("A: 1\nbcc: x\n\r\n..\r.b\r\n\r\n.\r\n"),
            QByteArray("A: 1\r\n\r\n...\r\n..b\r\n\r\n"));
  EXPECT_EQ(WireMessage("x"), QByteArray("x\r\n"));
  EXPECT_EQ(WireMessage("a\r\n.\r\n.\r\n"), QByteArray("a\r\n..\r\n"));
}

TEST(PopSending, AMessageArrivesAsItWasWritten) {
  test::LoopbackSmtpServer server;
  ASSERT_TRUE(server.Listen());
  Recorder events;
  Pop pop;
  pop.SetEvents(&events);
  pop.Server = QStringLiteral("127.0.0.1");
  pop.ServerPort = server.Port();
  pop.Mode = kPopSend;
  pop.MailFrom = QStringLiteral("f@x");
  pop.MailTo = QStringLiteral("a@x\r\nb@x");
  pop.SetMessage("Subject: s\r\nBcc: b@x\r\n\r\n.\r\nline\r\n.\r\n\r\n.\r\n");
  pop.Start();
  ASSERT_TRUE(test::WaitFor([&events] { return events.ended == 1; }));
  ASSERT_EQ(server.Messages().size(), 1);
  EXPECT_EQ(server.Messages()[0].source, QByteArray("Subject: s\r\n\r\n.\r\nline\r\n.\r\n\r\n"));
  EXPECT_EQ(server.Messages()[0].recipients, (QList<QByteArray>{"a@x", "b@x"}));
}

}  // namespace
}  // namespace vorn
