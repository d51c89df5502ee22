// Every message that was sent arrives once, whatever happens beside its sending.

#include <utility>

#include "mail/store/mail_store.h"
#include "mail/store/message_filing.h"
#include "mail/store/send_refusals.h"
#include "objects/object_types.h"
#include "objects/select_objects.h"
#include "storage/databases.h"
#include "storage/engine/sole_use.h"
#include "storage/work_lock.h"
#include "support/loopback_pop3_server.h"
#include "transfer/once_fixture.h"

namespace vorn {
namespace {

using test::Fault;
using test::LoopbackPop3Server;
using test::LoopbackSmtpServer;

TEST_F(OnceTest, AMessageThatIsPlannedIsNotPlannedAgain) {
  const SerialId serial = StoreWaiting();
  traffic_.Plan().CreateMessagePlan(kPlanSend);
  // While the server makes up its mind: a second click, the window's own send, the timer's job.
  Arrives([&] {
    traffic_.Plan().CreateMessagePlan(kPlanReceive | kPlanSend);
    traffic_.Plan().CreateMessagePlan(kPlanSend, serial);
  });
  traffic_.Plan().CreateMessagePlan(kPlanSend);
  RunAll({&traffic_});
  EXPECT_EQ(smtp_.Messages().size(), 1);
  EXPECT_EQ(Subjects(3).size(), 1);
}

// At each check the server would say the same again.
TEST_F(OnceTest, WhatAServerRefusesForGoodWaitsForItsUser) {
  Context& context = profile_.Get();
  const DiskPtr account =
      SelectObjects(context.Objects, *context.Session, object_type::kAccount, kSelectEnabled)
          ->First();
  account->Let(QStringLiteral("InMailServer"), QString());
  const auto plan = [this](PlanFlags flags, const SerialId& serial = {}) {
    const int before = smtp_.Count("MAIL");
    traffic_.Plan().CreateMessagePlan(flags, serial);
    RunAll({&traffic_});
    return smtp_.Count("MAIL") - before;
  };
  const auto check = [&plan] { return plan(kPlanReceive | kPlanSend); };
  const auto takeBack = [this](const SerialId& serial) {
    EXPECT_TRUE(MailStore(profile_.Get()).CancelWaiting(Disk(serial)));
    EXPECT_TRUE(
        SendRefusals(profile_.Get(), MailDatabasePath(profile_.Get())).All()->contains(serial))
        << "what is mended, and why";
    EXPECT_TRUE(
        Execute("UPDATE mail SET STATUS = 2 WHERE SERIALID = '" + serial.Text().toUtf8() + "'"));
  };
  const auto sendAgain = [&plan](const SerialId& serial) { EXPECT_EQ(plan(kPlanSend, serial), 1); };
  LoopbackSmtpServer other;
  ASSERT_TRUE(other.Listen());
  const auto mendAccount = [&](const SerialId&) {
    account->Let(QStringLiteral("OutMailServerPort"), static_cast<int>(other.Port()));
  };
  const struct {
    QByteArray command, reply;
    bool isForGood;
    std::function<void(const SerialId&)> mend;
  } cases[] = {{"RCPT", "450 4.7.1 greylisted", false, {}},
               {"RCPT", "550 5.1.1 no such user", true, takeBack},
               {".", "554 5.7.1 spam", true, sendAgain},
               {"RCPT", "550 5.7.1 relaying denied", true, mendAccount}};
  for (const auto& [command, reply, isForGood, mend] : cases) {
    SCOPED_TRACE(reply.toStdString());
    smtp_.Replies = {{command, reply + "\r\n"}};
    const SerialId serial = StoreWaiting();
    EXPECT_EQ(check(), 1);
    const qsizetype told = host_.log.size();
    EXPECT_EQ(check(), isForGood ? 0 : 1);
    EXPECT_TRUE(!isForGood || host_.log.size() == told) << "it was told when it was tried";
    smtp_.Replies.clear();
    if (isForGood) mend(serial);
    check();
    EXPECT_TRUE(Subjects(2).isEmpty());
  }
  EXPECT_EQ(other.Messages().size(), 1);
  other.Replies = {{"RCPT", "550 no\r\n"}};
  // By whichever account the user has chosen for it as well.
  host_.chosenAccount = account->Serial();
  profile_.Store("From: old@example.net\r\nTo: a@example.com\r\n\r\ntext\r\n.\r\n", 2);
  for (int i = 0; i < 3; ++i) check();
  EXPECT_EQ(other.Count("MAIL"), 2) << "the one that came, and the refused one once";
  // Nor does a check send what it cannot find out about.
  ASSERT_TRUE(Execute("ALTER TABLE send_refusal RENAME TO away"));
  const qsizetype told = host_.log.size();
  check();
  EXPECT_EQ(other.Count("MAIL"), 2);
  EXPECT_GT(host_.log.size(), told);
}

// Nothing else has to wait for it to be told.
TEST_F(OnceTest, WhatADeathLeftIsDoubtfulAtTheNextAttempt) {
  const SerialId serial = StoreWaiting();
  Outbox outbox = TheOutbox();
  const auto read = outbox.Read(serial);
  ASSERT_TRUE(read && read->reading == Outbox::Reading::Ready);
  ASSERT_EQ(outbox.BeginHandover(serial, read->message.version, {}), Outbox::Claim::Taken);
  {
    OtherProgram sender(profile_.Folder());
    WorkLock work(sender.context, kSendingWork);
    ASSERT_TRUE(work.Take());
    EXPECT_EQ(outbox.SettleLeftOver(), 0) << "it may still be under way";
  }
  traffic_.Plan().CreateMessagePlan(kPlanSend);
  EXPECT_TRUE(outbox.FindDoubtful(serial)->has_value());
  EXPECT_EQ(host_.log.size(), 1);
}

TEST_F(OnceTest, TwoProgramsSendEachMessageOnce) {
  for (int i = 0; i < 30; ++i) StoreWaiting(QByteArray::number(i));
  OtherProgram other(profile_.Folder());
  traffic_.Plan().CreateMessagePlan(kPlanSend);
  other.traffic.Plan().CreateMessagePlan(kPlanSend);
  RunAll({&traffic_, &other.traffic});
  EXPECT_EQ(smtp_.Messages().size(), 30);
  EXPECT_EQ(Subjects(3).size(), 30);
  // The one that had to wait said for whom, once.
  EXPECT_EQ(host_.held.size() + other.host.held.size(), 1);
}

TEST_F(OnceTest, WhoeverLosesTheClaimSendsNothing) {
  const SerialId serial = StoreWaiting();
  OtherProgram other(profile_.Folder());
  Outbox outbox = TheOutbox();
  Outbox otherOutbox(other.context, MailDatabasePath(other.context));
  const auto ours = outbox.Read(serial).ValueOr({});
  const auto theirs = otherOutbox.Read(serial).ValueOr({});
  ASSERT_EQ(ours.reading, Outbox::Reading::Ready);
  ASSERT_EQ(theirs.reading, Outbox::Reading::Ready);
  EXPECT_EQ(outbox.BeginHandover(serial, ours.message.version, {}), Outbox::Claim::Taken);
  EXPECT_EQ(otherOutbox.BeginHandover(serial, theirs.message.version, {}), Outbox::Claim::Lost);
  EXPECT_EQ(otherOutbox.Read(serial).ValueOr({}).reading, Outbox::Reading::Gone);
  EXPECT_TRUE(outbox.Withdraw(serial));
  EXPECT_EQ(otherOutbox.Read(serial).ValueOr({}).reading, Outbox::Reading::Ready);
  // Stored anew after it was read, it is another message.
  StoreWaiting();
  QThread::msleep(2);
  Disk again(serial);
  again.Let(QStringLiteral("process"), 2);
  EXPECT_TRUE(
      MailStore(profile_.Get()).StoreMessage(again, "From: me@example.com\r\n\r\nother\r\n.\r\n"));
  EXPECT_EQ(otherOutbox.BeginHandover(serial, theirs.message.version, {}), Outbox::Claim::Lost);
}

// The window plans what it stores; that a session of the former text goes on must not drop it.
TEST_F(OnceTest, WhatIsStoredAnewWhileItsSessionBeginsIsSentAsItIsNow) {
  const SerialId serial = StoreWaiting("first");
  int before = 0;
  qsizetype sent = 0;
  const auto storeAs = [&](const QByteArray& subject) {
    QThread::msleep(2);
    Disk again(serial);
    again.Let(QStringLiteral("process"), 2);
    EXPECT_TRUE(MailStore(profile_.Get())
                    .StoreMessage(again, "From: me@example.com\r\nTo: a@example.com\r\nSubject: " +
                                             subject + "\r\n\r\ntext\r\n.\r\n"));
  };
  smtp_.OnCommand = [&](const QByteArray& command) {
    if (!command.startsWith("RCPT") || smtp_.Count("RCPT") > before) return;
    storeAs("now");
    traffic_.Plan().CreateMessagePlan(kPlanSend, serial);
  };
  for (const Fault::Kind end : {Fault::Kind::None, Fault::Kind::Reply, Fault::Kind::Cut}) {
    SCOPED_TRACE(static_cast<int>(end));  // of the former session
    before = smtp_.Count("RCPT");
    smtp_.Faults = {{end, "RCPT", before + 1, 0, "550 no such user\r\n"}};
    if (end == Fault::Kind::None) smtp_.Faults.clear();
    storeAs("former");
    traffic_.Plan().CreateMessagePlan(kPlanSend);
    RunAll({&traffic_});
    ASSERT_EQ(smtp_.Messages().size(), ++sent);
    EXPECT_TRUE(smtp_.Messages().last().source.contains("Subject: now\r\n"));
    EXPECT_EQ(Subjects(3), QStringList{QStringLiteral("now")});
  }
}

// Nobody presses the button of a message again because its file was in use when it was planned.
TEST_F(OnceTest, WhatCannotBeReadAtOnceIsPlannedLater) {
  const SerialId serial = StoreWaiting();
  Context& context = profile_.Get();
  context.Data.CloseAll();
  auto inUse = std::make_unique<SoleUse>(PlatformPath(context, MailDatabasePath(context)));
  ASSERT_TRUE(inUse->IsTaken());
  traffic_.Plan().CreateMessagePlan(kPlanSend, serial);
  EXPECT_TRUE(traffic_.Plan().IsSending());
  inUse.reset();
  RunAll({&traffic_});
  EXPECT_EQ(smtp_.Messages().size(), 1);
}

TEST_F(OnceTest, OnlyWhatStillWaitsIsSent) {
  Context& context = profile_.Get();
  const SerialId deleted = StoreWaiting("deleted");
  const SerialId thrown = StoreWaiting("thrown away");
  const SerialId taken = StoreWaiting("taken back");
  const SerialId unreadable = StoreWaiting("unreadable");
  StoreWaiting("sent");
  traffic_.Plan().CreateMessagePlan(kPlanSend);
  ASSERT_TRUE(DeleteMessages(context, {deleted}));
  ASSERT_TRUE(SetDust(context, {thrown}, true));
  ASSERT_TRUE(MailStore(context).CancelWaiting(Disk(taken)));
  ASSERT_TRUE(
      Execute("UPDATE long_binary SET DATA = 'x' WHERE ID = (SELECT MAX(ID) "
              "- 1 FROM long_binary)"));
  RunAll({&traffic_});
  ASSERT_EQ(smtp_.Messages().size(), 1);
  EXPECT_TRUE(smtp_.Messages()[0].source.contains("Subject: sent\r\n"));
  EXPECT_TRUE(host_.log.join(u'\n').contains(QStringLiteral("「unreadable」を読み込めない")));
  EXPECT_EQ(Subjects(2), QStringList{QStringLiteral("unreadable")});
  EXPECT_FALSE(MailStore(context).LoadMessageSource(Disk(unreadable)));  // and was not overwritten
}

TEST_F(OnceTest, WhatIsSentIsWhatTheRowHoldsNow) {
  const SerialId serial = StoreWaiting();
  traffic_.Plan().CreateMessagePlan(kPlanSend);
  Disk edited(serial);
  edited.Let(QStringLiteral("process"), 2);
  EXPECT_TRUE(MailStore(profile_.Get())
                  .StoreMessage(edited,
                                "From: me@example.com\r\nTo: b@example.com\r\nSubject: t\r\n\r\n"
                                "after\r\n.\r\n"));
  RunAll({&traffic_});
  ASSERT_EQ(smtp_.Messages().size(), 1);
  EXPECT_EQ(smtp_.Messages()[0].recipients, QList<QByteArray>{"b@example.com"});
  EXPECT_TRUE(smtp_.Messages()[0].source.contains("after"));
}

// What waits beside it can: who throws away all that waits loses no time over the one that goes.
TEST_F(OnceTest, AMessageUnderWayCannotBeTakenBack) {
  const SerialId serial = StoreWaiting("under way");
  const SerialId thrown = StoreWaiting("thrown away");
  const SerialId deleted = StoreWaiting("deleted");
  bool cancelled = true;
  UnderWay underWay;
  UnderWay kept;
  Arrives([&] {
    cancelled = static_cast<bool>(MailStore(profile_.Get()).CancelWaiting(Disk(serial)));
    underWay = SetDust(profile_.Get(), {serial, thrown}, true).ValueOr({}).underWay;
    kept = DeleteMessages(profile_.Get(), {deleted, serial}).ValueOr({});
  });
  EXPECT_EQ(Send().sent, 1);
  EXPECT_FALSE(cancelled);
  EXPECT_EQ(underWay, (UnderWay{{serial, QStringLiteral("under way")}}));
  EXPECT_EQ(kept, underWay);
  EXPECT_EQ(Subjects(3), underWay.values());
  EXPECT_EQ(smtp_.Messages().size(), 1);
  EXPECT_EQ(Subjects(-2), QStringList{QStringLiteral("thrown away")});
  // Nor once it was sent, from a window that was opened before.
  EXPECT_FALSE(MailStore(profile_.Get()).CancelWaiting(Disk(serial)));
}

TEST_F(OnceTest, AnAnswerThatNeverCameIsLeftToTheUser) {
  smtp_.Faults = {{Fault::Kind::Cut, ".", 1, 0, {}}};
  const SerialId serial = StoreWaiting();
  const ReceiveCounts counts = Send();
  EXPECT_EQ(counts.sent, 0);
  EXPECT_EQ(counts.doubtful, 1);
  EXPECT_TRUE(host_.log.join(u'\n').contains(QStringLiteral("届いたかどうか分かりません")));
  // Neither by asking again nor after a restart.
  EXPECT_EQ(Send().sent, 0);
  profile_.Restart();
  EXPECT_EQ(smtp_.Messages().size(), 1);
  const std::optional<DoubtfulMessage> doubtful = *TheOutbox().FindDoubtful(serial);
  ASSERT_TRUE(doubtful);
  EXPECT_EQ(doubtful->server, QStringLiteral("127.0.0.1"));
  EXPECT_FALSE(doubtful->started.isEmpty());
  EXPECT_FALSE(MailStore(profile_.Get()).CancelWaiting(Disk(serial)));

  ASSERT_TRUE(TheOutbox().SendAgain(serial));
  EXPECT_FALSE(TheOutbox().SendAgain(serial));
  EXPECT_EQ(Subjects(2).size(), 1);
}

// A server that looks at the message for longer than any other answer takes is not given up.
TEST_F(OnceTest, AnAnswerAfterTheMessageMayTakeItsTime) {
  StoreWaiting();
  Pop& control = traffic_.Control();
  smtp_.OnCommand = [&control](const QByteArray& line) {
    if (line == "DATA") control.Patience.ReplyMs = 2000;
  };
  smtp_.OnMessage = [](const test::SentMessage&) { test::RunFor(3000); };
  EXPECT_EQ(Send().sent, 1);
}

// A large change by another program, longer than the engine waits.
TEST_F(OnceTest, WhatTheServerSaidIsNotForgottenWhileTheFileIsInUse) {
  StoreWaiting();
  std::shared_ptr<Connection> other;
  QTimer end;
  QObject::connect(&end, &QTimer::timeout, &end, [&other] { other.reset(); });
  smtp_.OnMessage = [&](const test::SentMessage&) {
    other = Connection::Open(MailDatabasePath(profile_.Get()),
                             profile_.Get().Session->Text(u"password"), Connection::Mode::Existing)
                .ValueOr(nullptr);
    ASSERT_TRUE(other != nullptr && other->Begin());
    end.start(2000);  // behind the first attempt, which takes five seconds
  };
  const ReceiveCounts counts = Send();
  EXPECT_EQ(counts.sent, 1);
  EXPECT_EQ(counts.errors + counts.doubtful, 0);
  EXPECT_EQ(Subjects(3).size(), 1);
  EXPECT_EQ(TheOutbox().Doubtful()->size(), 0);
}

// The claim is given up after five seconds; the message and those behind it are not.
TEST_F(OnceTest, AFileThatIsInUseAtTheHandoverKeepsNoMessageFromBeingSent) {
  StoreWaiting("first");
  StoreWaiting("second");
  std::shared_ptr<Connection> other;
  QTimer end;
  QObject::connect(&end, &QTimer::timeout, &end, [&other] { other.reset(); });
  smtp_.OnCommand = [&](const QByteArray& command) {
    if (!command.startsWith("RCPT") || smtp_.Count("RCPT") > 0) return;
    other = Connection::Open(MailDatabasePath(profile_.Get()),
                             profile_.Get().Session->Text(u"password"), Connection::Mode::Existing)
                .ValueOr(nullptr);
    ASSERT_TRUE(other != nullptr && other->Begin());
    end.start(2000);  // behind the first attempt
  };
  const ReceiveCounts counts = Send();
  EXPECT_EQ(counts.sent, 2);
  EXPECT_EQ(counts.errors + counts.doubtful, 0);
  EXPECT_EQ(smtp_.Messages().size(), 2);
}

TEST_F(OnceTest, WhatCannotBeNotedIsNotSent) {
  for (int i = 0; i < 3; ++i) StoreWaiting(QByteArray::number(i));
  ASSERT_TRUE(
      Execute("CREATE TRIGGER full BEFORE INSERT ON send_attempt BEGIN SELECT RAISE(ABORT, "
              "'disk'); END"));
  EXPECT_EQ(Send().sent, 0);
  EXPECT_EQ(smtp_.Messages().size(), 0);
  EXPECT_EQ(Subjects(2).size(), 3);
  EXPECT_TRUE(traffic_.Plan().IsEmpty());
}

TEST_F(OnceTest, AfterAFailedStoreNothingMoreIsSent) {
  const SerialId first = StoreWaiting("first");
  for (int i = 0; i < 2; ++i) StoreWaiting(QByteArray::number(i));
  // The others are another job's, which is as far as to begin when the store fails.
  traffic_.Plan().CreateMessagePlan(kPlanSend, first);
  ASSERT_TRUE(Execute(
      "CREATE TRIGGER full BEFORE UPDATE OF STATUS ON mail WHEN NEW.STATUS = 3 BEGIN SELECT "
      "RAISE(ABORT, 'disk'); END"));
  Send();
  EXPECT_EQ(smtp_.Messages().size(), 1);
  EXPECT_EQ(smtp_.Count("MAIL"), 1);
  EXPECT_EQ(TheOutbox().Doubtful()->size(), 1);
  EXPECT_FALSE(host_.log.join(u'\n').contains(QStringLiteral("受信した")));
  ASSERT_TRUE(Execute("DROP TRIGGER full"));
  EXPECT_EQ(Send().sent, 2);
  EXPECT_EQ(smtp_.Messages().size(), 3);
}

TEST_F(OnceTest, ARefusedPasswordThatIsNotSavedIsAskedForAgain) {
  LoopbackPop3Server pop3;
  ASSERT_TRUE(pop3.Listen());
  const DiskPtr account =
      profile_.AddAccount(pop3.Port(), false, false, QStringLiteral("user"), QString());
  account->Let(QStringLiteral("InMailServerPasswordSave"), false);
  const auto receive = [&] {
    DiskCollection accounts;
    accounts.Add(account);
    traffic_.Plan().AddReceiveJob(accounts);
    RunAll({&traffic_});
  };
  host_.typedPassword = QStringLiteral("slip");
  receive();
  EXPECT_FALSE(host_.lastQuestion.wasRefused);
  host_.typedPassword = QStringLiteral("secret");
  receive();
  EXPECT_EQ(host_.passwordQuestions, 2);
  EXPECT_TRUE(host_.lastQuestion.wasRefused && !host_.lastQuestion.toSend);
  receive();  // and the right one is kept
  EXPECT_EQ(host_.passwordQuestions, 2);
  EXPECT_EQ(pop3.Count("PASS"), 3);
  // One that is saved outlives a refusal, which may be the server's own trouble.
  account->Let(QStringLiteral("InMailServerPasswordSave"), true);
  const QByteArray right = std::exchange(pop3.Password, "another for a moment");
  receive();
  pop3.Password = right;
  receive();
  EXPECT_EQ(pop3.Count("PASS"), 5);
  EXPECT_EQ(host_.passwordQuestions, 2);
  EXPECT_EQ(account->Text(u"InMailServerPassword"), QStringLiteral("secret"));
}

TEST_F(OnceTest, TwoProgramsReceiveEachMessageOnce) {
  LoopbackPop3Server pop3;
  ASSERT_TRUE(pop3.Listen());
  for (int i = 0; i < 200; ++i) {
    pop3.AddMessage(QByteArray::number(i), "Subject: " + QByteArray::number(i) + "\r\n\r\n\r\n");
  }
  const DiskPtr account = profile_.AddAccount(pop3.Port(), true);
  OtherProgram other(profile_.Folder());
  for (MailTraffic* program : {&traffic_, &other.traffic}) {
    DiskCollection accounts;
    accounts.Add(account);
    program->Plan().AddReceiveJob(accounts);
  }
  RunAll({&traffic_, &other.traffic});
  EXPECT_EQ(Subjects(4).size(), 200);
  EXPECT_EQ(host_.held.size() + other.host.held.size(), 1);
  EXPECT_EQ(pop3.Messages.size(), 0);
}

TEST_F(OnceTest, TheFileRefusesAReceivedMessageItHas) {
  Disk request(QStringLiteral("mail_one"));
  request.Let(QStringLiteral("process"), 4);
  request.Let(QStringLiteral("MessageID"), QStringLiteral("user@host/1"));
  MailStore store(profile_.Get());
  EXPECT_EQ(store.StoreReceived(request, "Subject: a\r\n\r\n"), MailStore::Received::Stored);
  Disk again(QStringLiteral("mail_two"));
  again.Let(QStringLiteral("process"), 4);
  again.Let(QStringLiteral("MessageID"), QStringLiteral("user@host/1"));
  EXPECT_EQ(store.StoreReceived(again, "Subject: a\r\n\r\n"), MailStore::Received::Known);
  EXPECT_FALSE(store.StoreMessage(again, "Subject: a\r\n\r\n"));
  EXPECT_EQ(Subjects(4).size(), 1);
}

}  // namespace
}  // namespace vorn
