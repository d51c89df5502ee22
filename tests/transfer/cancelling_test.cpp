// Cancelling what runs or waits, and questions that hold nobody up.

#include "objects/account.h"
#include "objects/settings.h"
#include "storage/work_lock.h"
#include "support/loopback_pop3_server.h"
#include "transfer/once_fixture.h"

namespace vorn {
namespace {

using test::Fault;
using test::LoopbackPop3Server;
using test::WaitFor;

TEST_F(OnceTest, CancellingEndsTheSessionAndNotTheChecking) {
  Settings(profile_.Get()).Bag()->Let(QStringLiteral("MessageCheck"), true);
  Settings(profile_.Get()).Bag()->Let(QStringLiteral("MessageNotice"), true);
  Settings(profile_.Get()).Bag()->Let(QStringLiteral("MessageNoticeDialog"), true);
  LoopbackPop3Server pop3;
  ASSERT_TRUE(pop3.Listen());
  for (int i = 0; i < 3; ++i) pop3.AddMessage(QByteArray::number(i), "Subject: x\r\n\r\n\r\n");
  pop3.Pipelining = false;
  pop3.Faults = {{Fault::Kind::Stall, "RETR", 3, 10, {}}};
  const DiskPtr account = profile_.AddAccount(pop3.Port());
  account->Let(QStringLiteral("EventLog"), true);
  DiskCollection accounts;
  accounts.Add(account);
  traffic_.Plan().CreateMessagePlan(kPlanPeriodic);
  traffic_.Plan().AddReceiveJob(accounts);
  ASSERT_TRUE(WaitFor([&] {
    traffic_.Tick();
    return pop3.Count("RETR") == 3;
  }));
  traffic_.Plan().CreateMessagePlan(kPlanSend);
  traffic_.Plan().Cancel();
  EXPECT_FALSE(traffic_.Control().Busy());
  traffic_.Tick();
  ASSERT_FALSE(host_.log.isEmpty());
  EXPECT_TRUE(host_.log.last().contains(QStringLiteral("中止しました")));
  EXPECT_EQ(host_.levels.last(), kEventInformation) << "the user wanted it";
  EXPECT_TRUE(host_.log.last().contains(QStringLiteral("2通受信")));
  ASSERT_EQ(host_.requests.size(), 1);
  EXPECT_EQ(host_.requests[0]->Text(u"message").split(QStringLiteral("\r\n")).size(), 2);
  EXPECT_TRUE(traffic_.Plan().Job(u"maildefault"_id));
}

// A session that has ended is recorded, and its account given free, also when the user cancels what
// began meanwhile.
TEST_F(OnceTest, CancellingLosesNothingOfSessionsThatHaveEnded) {
  LoopbackPop3Server pop3;
  LoopbackPop3Server silent;
  ASSERT_TRUE(pop3.Listen() && silent.Listen());
  pop3.AddMessage("1", "Subject: x\r\n\r\n\r\n");
  silent.Faults = {{Fault::Kind::Stall, "USER", 1, 0, {}}};
  smtp_.Faults = {{Fault::Kind::Stall, "MAIL", 1, 0, {}},
                  {Fault::Kind::Reply, "RCPT", 1, 0, "550 no such user\r\n"}};
  const DiskPtr account = profile_.AddAccount(pop3.Port());
  account->Let(QStringLiteral("EventLog"), true);
  DiskCollection accounts;
  accounts.Add(account);
  const auto cancelWhen = [&](const auto& reached) {
    ASSERT_TRUE(WaitFor([&] {
      traffic_.Tick();
      return reached();
    }));
    traffic_.Plan().Cancel();
    RunAll({&traffic_});
  };
  // Sending has begun when the account is received, and goes on before that is recorded.
  StoreWaiting();
  traffic_.Plan().CreateMessagePlan(kPlanSend);
  traffic_.Plan().AddReceiveJob(accounts);
  cancelWhen([&] { return smtp_.Count("MAIL") == 1; });
  EXPECT_EQ(host_.log.filter(QStringLiteral("1通受信")).size(), 1);
  OtherProgram other(profile_.Folder());
  EXPECT_TRUE(WorkLock(other.context, Account(account).Work()).Take());

  // The other way round, with the message between the second account and the third.
  accounts.Add(profile_.AddAccount(pop3.Port()));
  accounts.Add(profile_.AddAccount(silent.Port()));
  accounts.Add(profile_.AddAccount(pop3.Port()));
  traffic_.Plan().AddReceiveJob(accounts);
  traffic_.Plan().CreateMessagePlan(kPlanSend);
  cancelWhen([&] { return silent.Count("USER") == 1; });
  EXPECT_EQ(host_.log.filter(QStringLiteral("この宛先をサーバーに断られた")).size(), 1);
  EXPECT_EQ(pop3.Count("USER"), 3) << "what stands behind the ended session is not begun";
}

// The question comes by itself, perhaps to nobody: what has ended is recorded, no account and no
// sending stays taken, and what the user cancels while it is open does not begin after it.
TEST_F(OnceTest, AQuestionThatIsOpenHoldsNobodyUp) {
  LoopbackPop3Server pop3;
  ASSERT_TRUE(pop3.Listen());
  pop3.AddMessage("1", "Subject: x\r\n\r\n\r\n");
  const DiskPtr account =
      profile_.AddAccount(pop3.Port(), false, false, QStringLiteral("user"), QString());
  account->Let(QStringLiteral("InMailServerPasswordSave"), false);
  const DiskPtr known = profile_.AddAccount(pop3.Port());
  known->Let(QStringLiteral("EventLog"), true);
  DiskCollection accounts;
  accounts.Add(known);
  OtherProgram other(profile_.Folder());
  const auto isFree = [&other](const QString& work) {
    return WorkLock(other.context, work).Take();
  };

  // The timer's job asks for an account while a session goes on.
  profile_.Store("From: stranger@example.com\r\nTo: a@example.com\r\n\r\ntext\r\n.\r\n", 2);
  Settings(profile_.Get()).Bag()->Let(QStringLiteral("MessageCheck"), true);
  Settings(profile_.Get()).Bag()->Let(QStringLiteral("Careful"), false);  // else it does not
  bool isAsked = false;
  host_.onPeriodic = [&] { traffic_.Plan().CreateMessagePlan(kPlanSend); };
  host_.onQuestion = [&] {
    isAsked = true;
    EXPECT_TRUE(WaitFor([&] {
      traffic_.Tick();
      return !host_.log.filter(QStringLiteral("1通受信")).isEmpty();
    }));
    EXPECT_TRUE(isFree(Account(known).Work()));
  };
  traffic_.Plan().AddReceiveJob(accounts);
  traffic_.Plan().CreateMessagePlan(kPlanPeriodic);
  EXPECT_TRUE(WaitFor([&] {
    traffic_.Tick();
    return isAsked && !traffic_.Plan().HasWork();
  }));

  accounts.Add(account);
  host_.typedPassword = QStringLiteral("secret");
  host_.onQuestion = [&] {
    EXPECT_TRUE(isFree(Account(account).Work()));
    traffic_.Plan().Cancel();
  };
  accounts.Remove(known->Serial());
  traffic_.Plan().AddReceiveJob(accounts);
  traffic_.Tick();
  EXPECT_FALSE(traffic_.Plan().HasWork());
  EXPECT_FALSE(traffic_.Control().Busy());
}

// Each check of a minute would add a job while another program is at work for long.
TEST_F(OnceTest, WhatWaitsForAnotherProgramIsPlannedOnceAndCanBeCancelled) {
  LoopbackPop3Server pop3;
  ASSERT_TRUE(pop3.Listen());
  const DiskPtr account = profile_.AddAccount(pop3.Port());
  OtherProgram other(profile_.Folder());
  WorkLock held(other.context, Account(account).Work());
  ASSERT_TRUE(held.Take());
  DiskCollection accounts;
  accounts.Add(account);
  const auto wait = [&] {
    for (int i = 0; i < 5; ++i) {
      traffic_.Plan().AddReceiveJob(accounts);
      traffic_.Tick();
    }
    EXPECT_TRUE(traffic_.Plan().HasWork());
  };
  wait();
  traffic_.Plan().Cancel();
  EXPECT_FALSE(traffic_.Plan().HasWork());
  wait();
  held.Release();
  RunAll({&traffic_});
  EXPECT_EQ(pop3.Count("USER"), 1);
}

}  // namespace
}  // namespace vorn
