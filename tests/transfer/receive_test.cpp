// Receiving through `Pop` from a server that tests control, into a real store.

#include "mail/store/mail_store.h"
#include "objects/account.h"
#include "objects/settings.h"
#include "storage/databases.h"
#include "transfer/receive_fixture.h"

namespace vorn {
namespace {

using test::Fault;
using test::LoopbackPop3Server;
using test::WaitFor;

// Three hundred that were fetched at once did not arrive in one minute.
TEST_F(ReceiveTest, TheTimeIsTheOneAtWhichTheServerTookTheMessageIn) {
  const QString year = QDate::currentDate().toString(QStringLiteral("yyyy"));
  const auto add = [this](const QByteArray& uidl, const QByteArray& received) {
    server_.AddMessage(uidl, "Received: from b by a; " + received +
                                 "\r\nReceived: from c by b; Sat, 1 Jan 2000 00:00 +0900\r\n"
                                 "Date: Sat, 1 Jan 2000 00:00 +0900\r\nSubject: " +
                                 uidl + "\r\n\r\ntext\r\n");
  };
  add("noted", "Tue, 2 Jan 2024 03:04:05 +0900");
  add("future", "Tue, 2 Jan 2124 03:04:05 +0900");
  add("ancient", "Tue, 2 Jan 1970 03:04:05 +0900");
  add("broken", "the day before yesterday");
  profile_.AddAccount(server_.Port());
  EXPECT_EQ(Receive().stored, 4);
  const auto yearOf = [this](const char* subject) {
    return profile_
        .Select(QStringLiteral("SELECT FIELD_TIMESTAMP AS V FROM mail WHERE FIELD_SUBJECT = '%1'")
                    .arg(QLatin1String(subject)))
        .value(0)
        .toString()
        .left(4);
  };
  EXPECT_EQ(yearOf("noted"), QStringLiteral("2024"));
  for (const char* subject : {"future", "ancient", "broken"}) {
    EXPECT_GE(yearOf(subject), year) << subject;
  }
  Settings(profile_.Get()).Bag()->Let(QStringLiteral("ReceivedTime"), false);
  add("as documented", "Tue, 2 Jan 2024 03:04:05 +0900");
  EXPECT_EQ(Receive().stored, 1);
  EXPECT_GE(yearOf("as documented"), year);
}

TEST_F(ReceiveTest, APasswordThatIsNotSavedIsAskedForOnce) {
  AddMessages(1);
  AddAccountWithoutPassword();
  EXPECT_EQ(Receive().stored, 0);  // the user declines
  EXPECT_TRUE(LastLog().contains(QStringLiteral("入力されなかった"))) << LastLog().toStdString();
  EXPECT_EQ(server_.Count("USER"), 0);
  host_.typedPassword = QStringLiteral("secret");
  EXPECT_EQ(Receive().stored, 1);
  Receive();
  EXPECT_EQ(host_.passwordQuestions, 2);
}

// Whoever is writing while automatic checking begins would type into the question.
TEST_F(ReceiveTest, AutomaticCheckingAsksForNoPassword) {
  AddMessages(1);
  const DiskPtr account = AddAccountWithoutPassword();
  account->Let(QStringLiteral("EventLog"), true);
  host_.typedPassword = QStringLiteral("secret");
  host_.onPeriodic = [this] { traffic_.Plan().CreateMessagePlan(kPlanReceive); };
  Settings(profile_.Get()).Bag()->Let(QStringLiteral("MessageCheck"), true);
  traffic_.Plan().CreateMessagePlan(kPlanPeriodic);
  const DiskPtr job = traffic_.Plan().Job(u"maildefault"_id);
  ASSERT_NE(job, nullptr);
  for (int check = 1; check <= 2; ++check) {
    host_.log.clear();
    job->Let(QStringLiteral("daytime"), QStringLiteral("2020-01-01 00:00:00.000"));
    EXPECT_TRUE(WaitFor([&] {
      traffic_.Tick();
      return host_.periodic == check;
    }));
    for (int i = 0; i < 20; ++i) traffic_.Tick();
    EXPECT_EQ(host_.log.filter(QStringLiteral("送受信を押すと")).size(), check == 1 ? 1 : 0);
  }
  EXPECT_EQ(host_.passwordQuestions, 0);
  Settings(profile_.Get()).Bag()->Let(QStringLiteral("MessageCheck"), false);
  traffic_.Plan().CreateMessagePlan(kPlanPeriodic);
  EXPECT_EQ(Receive().stored, 1) << "whoever asks for it is asked";
  EXPECT_EQ(host_.passwordQuestions, 1);
}

TEST_F(ReceiveTest, ASessionCanBeCancelledAtAnyMoment) {
  AddMessages(3);
  profile_.AddAccount(server_.Port(), true);
  server_.Pipelining = false;
  int sent = 3;
  for (const char* command :
       {"GREETING", "CAPA", "USER", "PASS", "LIST", "UIDL", "RETR", "DELE", "QUIT"}) {
    SCOPED_TRACE(command);
    bool stalled = false;
    server_.OnStall = [&stalled] { stalled = true; };
    server_.Faults = {{Fault::Kind::Stall, command, 1, 3, {}}};
    traffic_.Plan().CreateMessagePlan(kPlanReceive);
    ASSERT_TRUE(WaitFor([&] {
      traffic_.Tick();
      return stalled;
    }));
    traffic_.Control().Cancel();
    EXPECT_FALSE(traffic_.Control().Busy());
    server_.Faults.clear();
    Receive();
    EXPECT_EQ(server_.Messages.size(), 0);
    EXPECT_EQ(Rows(), sent);
    server_.AddMessage(QByteArray("more ") + command, "Subject: more\r\n\r\n\r\n");
    ++sent;
  }
}

TEST_F(ReceiveTest, LargeAndRandomMessagesArriveWhole) {
  QByteArray noise(3000000, Qt::Uninitialized);
  quint32 state = 1;
  for (char& byte : noise) {
    state = state * 1664525 + 1013904223;
    byte = static_cast<char>(state >> 24);
  }
  noise.replace("\r\n.\r\n", "");  // what the protocol itself cannot carry
  noise += "\r\n";
  server_.AddMessage("noise", noise);
  server_.AddMessage("empty", "\r\n");
  const DiskPtr account = profile_.AddAccount(server_.Port());
  EXPECT_EQ(Receive().stored, 2);
  const auto sizes = profile_.Select(
      QStringLiteral("SELECT LENGTH(DATA) AS V FROM long_binary ORDER BY LENGTH(DATA) DESC"));
  EXPECT_EQ(sizes.value(0).toLongLong(), noise.size());
  EXPECT_EQ(host_.progress.last(), QStringLiteral("100.0"));
  const QString name = Account(account).Name();
  EXPECT_TRUE(host_.work.contains(QStringLiteral("0 / 2 通を受信中 …（%1）").arg(name)));
  EXPECT_TRUE(host_.work.contains(QStringLiteral("2 / 2 通を受信中 …（%1）").arg(name)));
  EXPECT_EQ(host_.work.last(), QString());
  // What is here already is none of those that are fetched.
  server_.AddMessage("more", "Subject: more\r\n\r\ntext\r\n");
  host_.work.clear();
  host_.progress.clear();
  EXPECT_EQ(Receive().stored, 1);
  EXPECT_TRUE(host_.work.contains(QStringLiteral("1 / 1 通を受信中 …（%1）").arg(name)));
  EXPECT_EQ(host_.work.filter(QStringLiteral(" / ")).filter(QStringLiteral(" / 1 通")).size(),
            host_.work.filter(QStringLiteral(" / ")).size())
      << "no number of what is not to come";
  EXPECT_EQ(host_.progress.value(0), QStringLiteral("0.0"))
      << host_.progress.join(u' ').toStdString();
  EXPECT_EQ(host_.progress.filter(QStringLiteral("100.0")).size(), 1);
}

TEST_F(ReceiveTest, ThePeriodicJobRunsWhenItsMinuteHasCome) {
  const DiskPtr settings = profile_.Get().Objects.Find(u"logo"_id);
  settings->Let(QStringLiteral("MessageCheck"), true);
  settings->Let(QStringLiteral("MessageCheckInterval"), 0);  // counts as one minute
  traffic_.Plan().CreateMessagePlan(kPlanPeriodic);
  for (int i = 0; i < 5; ++i) traffic_.Tick();
  EXPECT_EQ(host_.periodic, 1);
  // It waits for the next minute, and goes on each time that its time has come.
  const DiskPtr job = traffic_.Plan().Job(u"maildefault"_id);
  const QString format = QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz");
  const auto next = [&] { return QDateTime::fromString(job->Text(u"daytime"), format); };
  for (int runs = 2; runs < 4; ++runs) {
    EXPECT_GT(QDateTime::currentDateTime().secsTo(next()), 30);
    job->Let(QStringLiteral("daytime"), QDateTime::currentDateTime().addSecs(-1).toString(format));
    for (int i = 0; i < 5; ++i) traffic_.Tick();
    EXPECT_EQ(host_.periodic, runs);
  }
  settings->Let(QStringLiteral("MessageCheck"), false);
  traffic_.Plan().CreateMessagePlan(kPlanPeriodic);
  EXPECT_TRUE(traffic_.Plan().IsEmpty());
}

TEST_F(ReceiveTest, NewMailPostsANoticeWhenAskedTo) {
  AddMessages(2);
  profile_.AddAccount(server_.Port());
  const DiskPtr settings = profile_.Get().Objects.Find(u"logo"_id);
  const auto set = [&](const QStringList& on) {
    for (const char* key : {"", "Dialog", "Desktop", "Sound", "SoundAlone"}) {
      settings->Let(QStringLiteral("MessageNotice") + QLatin1String(key),
                    on.contains(QLatin1String(key)));
    }
  };
  set({QString(), QStringLiteral("Dialog")});
  Receive();
  Receive();
  ASSERT_EQ(host_.requests.size(), 1);
  EXPECT_EQ(host_.requests[0]->Text(u"message").split(QStringLiteral("\r\n")).size(), 2);
  const std::pair<const char*, bool> cases[] = {{"Dialog,Desktop,Sound,SoundAlone", false},
                                                {",Sound", false},
                                                {",SoundAlone", false},
                                                {",Desktop", true},
                                                {",Sound,SoundAlone", true},
                                                {",", false}};
  for (const auto& [on, isTold] : cases) {
    set(QString::fromLatin1(on).split(u','));
    server_.AddMessage(on, "Subject: another\r\n\r\n\r\n");
    host_.requests.clear();
    EXPECT_EQ(Receive().stored, 1);
    EXPECT_EQ(host_.requests.size(), isTold ? 1 : 0) << on;
  }
}

}  // namespace
}  // namespace vorn
