// Conversations played to a session as plain text.

#include <gtest/gtest.h>

#include <QStringList>

#include "support/session_playing.h"

namespace vorn {
namespace {

class Pop3SessionTest : public testing::Test {
 protected:
  Pop3SessionTest() { events_.deletes = false; }
  QString Play(const QByteArray& server, qsizetype chunk = 1, bool apop = false) {
    const Pop3Login job{
        {.host = QStringLiteral("Mail.example"), .who = {QStringLiteral("us er"), password_}},
        apop};
    return test::Play(job, events_, server, chunk, &deleted_);
  }

  test::SessionRecorder events_;
  QString password_ = QStringLiteral("s3cret");
  int deleted_ = 0;
};

const QByteArray kLogin = "+OK hi <1.2@x>\r\n-ERR\r\n+OK\r\n+OK\r\n";
const QString kSaidLogin = QStringLiteral("CAPA|USER us er|PASS s3cret|LIST|UIDL");

TEST_F(Pop3SessionTest, ReceivesWhatIsNewAndQuits) {
  const QByteArray server = kLogin +
                            "+OK\r\n1 10\r\n2 20\r\n.\r\n+OK\r\n1 a\r\n2 b\r\n.\r\n"
                            "+OK\r\nSubject: x\r\n\r\n..dot\r\n.\r\n+OK bye\r\n";
  events_.known = QStringList{QStringLiteral("us%20er@mail.example/a")};
  for (const qsizetype chunk : {1, 2, 5}) {
    events_.ids.clear();
    events_.arrived.clear();
    EXPECT_EQ(Play(server, chunk), kSaidLogin + QStringLiteral("|RETR 2|QUIT"));
    EXPECT_EQ(events_.ids, QStringList{QStringLiteral("us%20er@mail.example/b")});
    EXPECT_EQ(events_.arrived, QList<QByteArray>{"Subject: x\r\n\r\n.dot\r\n"});
    EXPECT_TRUE(events_.errors.isEmpty());
  }
}

TEST_F(Pop3SessionTest, DeletesOnlyWhatIsDurable) {
  const QByteArray server = kLogin +
                            "+OK\r\n1 10\r\n2 10\r\n.\r\n+OK\r\n1 a\r\n2 b\r\n.\r\n"
                            "+OK\r\nx\r\n.\r\n+OK\r\n+OK\r\n+OK bye\r\n";
  events_.deletes = true;
  events_.known = QStringList{QStringLiteral("us%20er@mail.example/a")};
  EXPECT_EQ(Play(server), kSaidLogin + QStringLiteral("|RETR 2|DELE 1|DELE 2|QUIT"));
  EXPECT_EQ(deleted_, 2);
  events_.durable = false;
  EXPECT_EQ(Play(server), kSaidLogin + QStringLiteral("|RETR 2"));
  EXPECT_EQ(deleted_, 0);
}

TEST_F(Pop3SessionTest, StopsAtAMessageThatCannotBeStored) {
  events_.deletes = true;
  events_.canStore = false;
  EXPECT_EQ(Play(kLogin +
                 "+OK\r\n1 10\r\n2 10\r\n.\r\n+OK\r\n1 a\r\n2 b\r\n.\r\n+OK\r\nx\r\n.\r\n+OK\r\n"),
            kSaidLogin + QStringLiteral("|RETR 1|QUIT"));
}

TEST_F(Pop3SessionTest, AsksForHeadersOnlyWhenARuleCouldMatch) {
  events_.wantsHeaders = true;
  events_.deletes = true;
  const QByteArray listed = kLogin + "+OK\r\n1 10\r\n2 10\r\n.\r\n+OK\r\n1 a\r\n2 b\r\n.\r\n";
  const QByteArray stop = "+OK\r\nSubject: stop\r\n\r\n.\r\n";
  const QByteArray go = "+OK\r\nSubject: go\r\n\r\n.\r\n";
  const QByteArray rest = go + "+OK\r\ngo\r\nthere\r\n.\r\n+OK\r\n+OK\r\n+OK\r\n";
  const QString asked = kSaidLogin + QStringLiteral("|TOP 1 0|TOP 1 0|TOP 2 0|RETR 2");
  EXPECT_EQ(Play(listed + stop + stop + rest), asked + QStringLiteral("|DELE 1|DELE 2|QUIT"));
  EXPECT_EQ(events_.arrived, QList<QByteArray>{"go\r\nthere\r\n"});
  // What one answer says is not deleted unseen.
  for (const QByteArray& second : {go, QByteArray("-ERR\r\n")}) {
    events_.told.clear();
    EXPECT_EQ(Play(listed + stop + second + rest), asked + QStringLiteral("|DELE 2|QUIT"));
    EXPECT_EQ(events_.told, QStringList{QStringLiteral("taken back")});
  }
}

// With the example of RFC 1939 section 7.
TEST_F(Pop3SessionTest, LogsInWithApopWhenToldAndPossible) {
  password_ = QStringLiteral("tanstaaf");
  EXPECT_EQ(Play("+OK <1896.697170952@dbc.mtview.ca.us>\r\n-ERR\r\n-ERR no\r\n", 1, true),
            QStringLiteral("CAPA|APOP us er c4c9334bac560ecc979e58001b3e22fb"));
  EXPECT_EQ(events_.errors.size(), 1);
  EXPECT_EQ(Play("+OK no stamp\r\n-ERR\r\n", 1, true), QStringLiteral("CAPA"));
  EXPECT_TRUE(events_.errors.last().contains(u"APOP"));
}

TEST_F(Pop3SessionTest, RepeatedOrMissingIdentifiersHideNoMail) {
  const QByteArray twice = kLogin +
                           "+OK\r\n1 5\r\n2 5\r\n.\r\n+OK\r\n1 same\r\n2 same\r\n.\r\n"
                           "+OK\r\none\r\n.\r\n+OK\r\ntwo\r\n.\r\n+OK\r\n";
  Play(twice);
  ASSERT_EQ(events_.ids.size(), 2);
  EXPECT_NE(events_.ids[0], events_.ids[1]);
  EXPECT_TRUE(events_.ids[0].contains(u"sha256:"));
  // The same again: both are known by their contents.
  events_.known = events_.ids;
  events_.ids.clear();
  Play(twice);
  EXPECT_TRUE(events_.ids.isEmpty());
}

TEST_F(Pop3SessionTest, EveryFailureEndsTheSessionWithASentence) {
  const QByteArray hostile[] = {
      "",
      "HTTP/1.0 400 Bad Request\r\n",
      "-ERR busy\r\n",
      "+OK\r\n-ERR\r\n+OK\r\n-ERR wrong password\r\n",
      kLogin + "-ERR no list\r\n",
      kLogin + "+OK\r\n1 10\r\n.\r\n+OK\r\n1 a\r\n.\r\n+OK\r\nhalf a mess",
      kLogin + "+OK\r\n1 10\r\n.\r\n+OK\r\n1 a\r\n.\r\n-ERR gone\r\n+OK\r\n",
      QByteArray("+OK\r\n") + QByteArray(200000, 'x'),
      QByteArray("\0\xFF\xFE\r\n", 5),
  };
  for (const QByteArray& server : hostile) {
    events_.errors.clear();
    Play(server, 5);
    EXPECT_EQ(events_.errors.size(), 1) << server.left(60).toStdString();
    EXPECT_FALSE(events_.errors.value(0).contains(u"s3cret")) << "a password in the log";
    EXPECT_TRUE(events_.arrived.isEmpty());
  }
}

// However much of it comes: what is kept of a server is bounded.
TEST_F(Pop3SessionTest, ALineOfAListThatDoesNotEndEndsTheSession) {
  const QByteArray line(200000, 'x');
  const QByteArray list = kLogin + "+OK\r\n1 10\r\n";
  for (const QByteArray& server : {list + line, list + ".\r\n+OK\r\n1 " + line}) {
    events_.errors.clear();
    Play(server);
    ASSERT_EQ(events_.errors.size(), 1);
    EXPECT_TRUE(events_.errors[0].startsWith(QStringLiteral("サーバーの応答を理解できません")));
  }
}

TEST_F(Pop3SessionTest, MailboxListsAreReadWithCare) {
  const auto messages = ReadMailbox("1\t100\r\nx\r\n2\r\n3 -5\r\n1 7\r\n99999999999 1\r\n4 8 extra",
                                    "1 it's\r\n3 dup\r\n4 dup\r\n");
  ASSERT_EQ(messages.size(), 4U) << "one without a size is there";
  EXPECT_EQ(messages[0].uidl, QByteArray("it's"));
  EXPECT_EQ(messages[0].size, 100);
  EXPECT_EQ(messages[1].size, 0);
  EXPECT_TRUE(messages[1].uidl.isEmpty() && messages[2].uidl.isEmpty());
}

}  // namespace
}  // namespace vorn
