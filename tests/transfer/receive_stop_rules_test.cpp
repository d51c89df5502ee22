#include "transfer/rules/receive_stop_rules.h"

#include "objects/object_types.h"
#include "support/loopback_pop3_server.h"
#include "support/traffic.h"

namespace vorn {
namespace {

bool Stops(const char16_t* rules, const QByteArray& header) {
  return ReceiveStopRules(QString::fromUtf16(rules)).FirstMatch(header).has_value();
}

TEST(ReceiveStopRulesTest, MailersMatchWithoutRegardToCaseAndSendersExactly) {
  EXPECT_TRUE(Stops(u"x-mailer: *Bulk*", "X-Mailer: BULK Sender 2.0\r\n\r\n"));
  EXPECT_TRUE(Stops(u"X-Mailer:bulk sender #.#", "x-mailer: BULK Sender 2.0\r\n\r\n"));
  EXPECT_TRUE(Stops(u"from: Bob*", "From: Bob Smith <b@x.example>\r\n\r\n"));
  EXPECT_FALSE(Stops(u"from: bob*", "From: Bob Smith <b@x.example>\r\n\r\n"));
  EXPECT_TRUE(Stops(u"from: *Sales*", "From: Sales Team <t@x.example>\r\n\r\n"));
  EXPECT_TRUE(Stops(u"from: *[!0-9]@spam.example", "From: a@x.example, bx@spam.example\r\n\r\n"));
  EXPECT_FALSE(Stops(u"from: *[!0-9]@spam.example", "From: b7@spam.example\r\n\r\n"));
  EXPECT_TRUE(
      Stops(u"from: *広告*", "From: =?ISO-2022-JP?B?GyRCOS05cBsoQg==?= <k@x.example>\r\n\r\n"));
}

TEST(ReceiveStopRulesTest, LinesWithoutMeaningStopNothing) {
  const QByteArray header = "From: a@x.example\r\nX-Mailer: m\r\nSubject: s\r\n\r\nFrom: z\r\n";
  for (const char16_t* line :
       {u"", u"no colon *", u"subject: *", u"from:", u"x-mailer:   ", u":*"}) {
    EXPECT_FALSE(Stops(line, header));
    EXPECT_TRUE(ReceiveStopRules(QString::fromUtf16(line)).IsEmpty());
  }
  EXPECT_FALSE(Stops(u"x-mailer: *", "From: a@x.example\r\n\r\n"));
  EXPECT_FALSE(Stops(u"from: *", "Subject: no sender\r\n\r\n"));
  const auto match =
      ReceiveStopRules(QStringLiteral("subject: *\r\nx-mailer: n\r\nfrom: a*")).FirstMatch(header);
  EXPECT_EQ(match.value_or(QString()), QStringLiteral("from: a*"));
}

class StoppedReceivingTest : public test::TrafficTest {
 protected:
  void SetRules(const QString& lines, bool deletes) {
    DiskPtr rules = profile_.Get().Objects.Find(fixed_serial::kRules);
    if (rules == nullptr) {
      rules = std::make_shared<Disk>(fixed_serial::kRules);
      profile_.Get().Objects.Add(rules);
    }
    rules->Let(QStringLiteral("ReceiveStop"), lines);
    rules->Let(QStringLiteral("ReceiveStopDelete"), deletes);
  }
};

TEST_F(StoppedReceivingTest, AStoppedMessageIsOfferedAgainUntilItIsDeleted) {
  test::LoopbackPop3Server server;
  ASSERT_TRUE(server.Listen());
  server.AddMessage("1", "From: sales@x.example\r\nSubject: 0\r\n\r\nbuy\r\n");
  server.AddMessage("2", "From: friend@x.example\r\nSubject: 1\r\n\r\nhi\r\n");
  profile_.AddAccount(server.Port());
  SetRules(QStringLiteral("from: sales@*"), false);
  EXPECT_EQ(Receive().stopped, 1);
  EXPECT_EQ(Subjects(4), QStringList{QStringLiteral("1")});
  EXPECT_TRUE(LastLog().contains(QStringLiteral("1通を受信しませんでした")));
  EXPECT_EQ(Receive().stopped, 1);
  EXPECT_FALSE(LastLog().contains(QStringLiteral("受信しませんでした"))) << "it is told of once";
  EXPECT_EQ(server.Messages.size(), 2);
  EXPECT_EQ(server.Count("TOP"), 3);

  SetRules(QStringLiteral("from: sales@*"), true);
  EXPECT_EQ(Receive().stopped, 1);
  EXPECT_EQ(server.Messages.size(), 1);  // the account itself deletes nothing

  server.ForgetReceived();
  SetRules(QString(), true);
  Receive();
  EXPECT_EQ(server.Count("TOP"), 0);
}

TEST(ReceiveStopRulesTest, WildcardsAloneStopEverything) {
  for (const char16_t* all : {u"from:*", u"from: **", u"x-mailer:?*", u"from:*?*"}) {
    EXPECT_TRUE(StopsEverything(QString::fromUtf16(all))) << QString::fromUtf16(all).toStdString();
  }
  for (const char16_t* some : {u"from:*a*", u"from:?", u"from:", u"x-mailer: #*"}) {
    EXPECT_FALSE(StopsEverything(QString::fromUtf16(some)));
  }
}

}  // namespace
}  // namespace vorn
