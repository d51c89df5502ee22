// Which account a waiting message goes with, and what becomes of it.

#include "mail/codec/mime/mime_codec.h"
#include "mail/store/mail_store.h"
#include "objects/settings.h"
#include "support/loopback_pop3_server.h"
#include "support/loopback_smtp_server.h"
#include "support/traffic.h"

namespace vorn {
namespace {

using test::LoopbackPop3Server;
using test::LoopbackSmtpServer;

class SendPlanTest : public test::TrafficTest {
 protected:
  void SetUp() override { ASSERT_TRUE(smtp_.Listen()); }
  SerialId StoreWaiting(const QByteArray& from, const QByteArray& subject) {
    return profile_.Store(
        "From: " + from + "\r\nTo: a@example.com\r\nSubject: " + subject + "\r\n\r\ntext\r\n.\r\n",
        2);
  }

  LoopbackSmtpServer smtp_;
};

TEST_F(SendPlanTest, TheDefaultOneOfTwoAccountsWithAnAddressSends) {
  LoopbackSmtpServer other;
  ASSERT_TRUE(other.Listen());
  AddSendAccount(other.Port());
  AddSendAccount(smtp_.Port())->Let(QStringLiteral("Default"), true);
  AddSendAccount(other.Port());
  StoreWaiting("me@example.com", "s");
  EXPECT_EQ(Send().sent, 1);
  EXPECT_EQ(smtp_.Messages().size(), 1);
  EXPECT_EQ(other.Messages().size(), 0);
  // Who writes under another name does so from that account.
  AddSendAccount(other.Port())->Let(QStringLiteral("Display"), QStringLiteral("Sales"));
  StoreWaiting("Sales <me@example.com>", "u");
  EXPECT_EQ(Send().sent, 1);
  EXPECT_EQ(other.Messages().size(), 1);
  // Letter case counts: this sender belongs to nobody, and nobody is chosen.
  StoreWaiting("ME@example.com", "t");
  EXPECT_EQ(Send().sent, 0);
  EXPECT_EQ(LastLog(), QStringLiteral("送信で使用するアカウントが不明です。"));
  EXPECT_EQ(host_.categories.last(), QStringLiteral("mailup"));
  EXPECT_EQ(Subjects(2), QStringList{QStringLiteral("t")});
}

TEST_F(SendPlanTest, TheChosenAccountAnswersForMessagesOfOthers) {
  const DiskPtr account = AddSendAccount(smtp_.Port());
  account->Let(QStringLiteral("Display"), QStringLiteral("山田"));
  host_.chosenAccount = account->Serial();
  StoreWaiting("Old Name <old@example.net>", "first");
  StoreWaiting("older@example.net", "second");
  EXPECT_EQ(Send().sent, 2);
  for (const test::SentMessage& message : smtp_.Messages()) {
    EXPECT_EQ(message.from, QByteArray("me@example.com"));
    EXPECT_EQ(message.source.count("\r\nFrom: ") + message.source.startsWith("From: "), 1);
    EXPECT_TRUE(message.source.contains("<me@example.com>"));
    EXPECT_TRUE(message.source.contains("@example.net"));  // the sender that it named
    EXPECT_TRUE(message.source.contains("\r\nMessage-ID: <"));
  }
}

// The address that the user did not put there is named as what it is (RFC 5322 section 3.6.2).
TEST_F(SendPlanTest, ShownSendersStayAndTheAccountIsTheSender) {
  Settings(profile_.Get()).Bag()->Let(QStringLiteral("StandardHeaders"), true);
  const DiskPtr account = AddSendAccount(smtp_.Port());
  host_.chosenAccount = account->Serial();
  StoreWaiting("Alias <alias@example.net>", "first");
  profile_.Store("To: a@example.com\r\nSubject: none\r\n\r\ntext\r\n.\r\n", 2);
  EXPECT_EQ(Send().sent, 2);
  for (const test::SentMessage& message : smtp_.Messages()) {
    const bool names = message.source.contains("Subject: first");
    EXPECT_EQ(MimeCodec::HeaderField(message.source, "From:"),
              names ? "From: Alias <alias@example.net>" : "From: me@example.com");
    EXPECT_EQ(MimeCodec::HeaderField(message.source, "Sender:"),
              names ? "Sender: me@example.com" : "");
  }
}

TEST_F(SendPlanTest, AutomaticCheckingAsksForNoAccount) {
  const DiskPtr settings = Settings(profile_.Get()).Bag();
  settings->Let(QStringLiteral("Careful"), true);
  settings->Let(QStringLiteral("MessageCheck"), true);
  AddSendAccount(smtp_.Port());
  StoreWaiting("other@example.net", "s");
  int asked = 0;
  host_.onQuestion = [&asked] { ++asked; };
  host_.onPeriodic = [this] { traffic_.Plan().CreateMessagePlan(kPlanSend); };
  for (int run = 1; run <= 2; ++run) {
    traffic_.Plan().CreateMessagePlan(kPlanPeriodic);
    traffic_.Tick();
    EXPECT_EQ(host_.periodic, run);
  }
  EXPECT_EQ(asked, 0);
  EXPECT_EQ(host_.log, QStringList{QStringLiteral("送信で使用するアカウントが不明です。")});
  traffic_.Plan().Clear();
  // Whoever asks for it is asked, and once, whatever happens meanwhile.
  host_.onQuestion = [&] {
    ++asked;
    traffic_.Plan().CreateMessagePlan(kPlanSend);
  };
  traffic_.Plan().CreateMessagePlan(kPlanSend);
  EXPECT_EQ(asked, 1);
}

TEST_F(SendPlanTest, PopBeforeSmtpLogsInFirst) {
  LoopbackPop3Server pop3;
  ASSERT_TRUE(pop3.Listen());
  pop3.AddMessage("1", "Subject: stays\r\n\r\n\r\n");
  const DiskPtr account = AddSendAccount(smtp_.Port());
  account->Let(QStringLiteral("InMailServerPort"), pop3.Port());
  account->Let(QStringLiteral("OutMailServerProtocol"), 1);
  StoreWaiting("me@example.com", "s");
  EXPECT_EQ(Send().sent, 1);
  EXPECT_EQ(pop3.Count("PASS"), 1);
  EXPECT_EQ(pop3.Count("RETR") + pop3.Count("LIST"), 0);
  EXPECT_EQ(pop3.Count("QUIT"), 1);
  // Automatic checking asks for no password for it, and does not try without.
  const DiskPtr settings = Settings(profile_.Get()).Bag();
  settings->Let(QStringLiteral("Careful"), true);
  settings->Let(QStringLiteral("MessageCheck"), true);
  account->Let(QStringLiteral("InMailServerPassword"), QString());
  account->Let(QStringLiteral("InMailServerPasswordSave"), false);
  StoreWaiting("me@example.com", "t");
  host_.typedPassword = QStringLiteral("secret");
  host_.onPeriodic = [this] { traffic_.Plan().CreateMessagePlan(kPlanSend); };
  traffic_.Plan().CreateMessagePlan(kPlanPeriodic);
  EXPECT_TRUE(test::WaitFor([this] {
    traffic_.Tick();
    return host_.log.join(u' ').contains(QStringLiteral("自動では送信しません"));
  }));
  EXPECT_EQ(host_.passwordQuestions, 0);
  EXPECT_EQ(Subjects(kStatusWaiting), QStringList{QStringLiteral("t")});
  traffic_.Plan().Clear();
  EXPECT_EQ(Send().sent, 1);
  EXPECT_EQ(host_.passwordQuestions, 1);
  EXPECT_TRUE(host_.lastQuestion.toSend);
  EXPECT_EQ(pop3.Count("PASS"), 2);
  // Nor after a login that fails: the refused message would be noted as refused.
  account->Let(QStringLiteral("InMailServerPassword"), QStringLiteral("wrong"));
  StoreWaiting("me@example.com", "u");
  const qsizetype told = host_.log.size();
  traffic_.Plan().CreateMessagePlan(kPlanPeriodic);
  EXPECT_TRUE(test::WaitFor([&] {
    traffic_.Tick();
    return host_.log.size() > told;
  }));
  EXPECT_EQ(pop3.Count("PASS"), 3);
  EXPECT_EQ(smtp_.Count("MAIL"), 2);
  EXPECT_EQ(Subjects(kStatusWaiting), QStringList{QStringLiteral("u")});
}

TEST_F(SendPlanTest, ASentMessageKeepsItsFoldersAndFlags) {
  AddSendAccount(smtp_.Port());
  Disk request(QStringLiteral("mail_own"));
  request.Let(QStringLiteral("process"), 2);
  request.Let(QStringLiteral("Flag"), QStringLiteral("010"));
  request.Let(QStringLiteral("folder"), QStringLiteral("one\r\ntwo"));
  ASSERT_TRUE(MailStore(profile_.Get())
                  .StoreMessage(request,
                                "From: me@example.com\r\nTo: a@example.com\r\n"
                                "X-Priority: 1\r\nSubject: s\r\n\r\ntext\r\n.\r\n"));
  EXPECT_EQ(Send().sent, 1);
  EXPECT_EQ(profile_.Select(QStringLiteral("SELECT FOLDERID AS V FROM folder ORDER BY FOLDERID")),
            (QList<QVariant>{QStringLiteral("one"), QStringLiteral("two")}));
  EXPECT_EQ(profile_.Select(QStringLiteral("SELECT FIELD_FLAG AS V FROM mail"))
                .value(0)
                .toString()
                .mid(1, 1),
            QStringLiteral("1"));
}

}  // namespace
}  // namespace vorn
