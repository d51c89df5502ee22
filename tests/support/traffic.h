#pragma once

#include <gtest/gtest.h>

#include <QStringList>
#include <functional>

#include "storage/databases.h"
#include "storage/engine/connection.h"
#include "support/test_profile.h"
#include "transfer/mail_traffic.h"

namespace vorn::test {

/// The program around the mail traffic, as far as tests look at it.
class RecordingHost : public PlanHost, public StatusPanel {
 public:
  void PostRequest(const DiskPtr& request) override { requests.append(request); }
  void AddEvent(EventLevel level, EventMode, const SerialId&, const QString&,
                const QString& category, const QString& text) override {
    levels.append(level);
    categories.append(category);
    log.append(text);
    if (onEvent) onEvent();
  }
  void SendAndReceive() override {
    ++periodic;
    if (onPeriodic) onPeriodic();
  }
  SerialId ChooseAccount(const QString&, const QString&) override {
    if (onQuestion) onQuestion();
    return chosenAccount;
  }
  QString AskPassword(const PasswordQuestion& question) override {
    ++passwordQuestions;
    lastQuestion = question;
    if (onQuestion) onQuestion();
    return typedPassword;
  }
  void WorkIsHeld(const QString& sentence) override {
    if (!sentence.isEmpty()) held.append(sentence);
  }
  void ShowStatus(const QString& text, const QString& icon) override {
    if (icon == u"maildown" || icon == u"mailup") progress.append(text);
  }
  void ShowWork(const QString& words) override { work.append(words); }

  QList<DiskPtr> requests;
  QList<int> levels;
  QStringList categories, log, progress, work, held;
  SerialId chosenAccount;
  QString typedPassword;
  int passwordQuestions = 0;
  PasswordQuestion lastQuestion;
  int periodic = 0;
  std::function<void()> onEvent;  // a session has ended
  std::function<void()> onPeriodic;
  std::function<void()> onQuestion;  // while it waits for the user's answer
};

/// A profile on disk and everything that moves its mail.
class TrafficTest : public testing::Test {
 protected:
  /// Plans the work that the flags name and runs it to its end; what it added to the counts.
  ReceiveCounts Run(PlanFlags flags) {
    const ReceiveCounts before = traffic_.Events().Counts();
    traffic_.Plan().CreateMessagePlan(flags);
    EXPECT_TRUE(WaitFor([this] {
      traffic_.Tick();
      return traffic_.Plan().IsEmpty();
    }));
    EXPECT_FALSE(traffic_.Control().Busy());
    const ReceiveCounts after = traffic_.Events().Counts();
    return {after.stored - before.stored,     after.known - before.known,
            after.stopped - before.stopped,   after.sent - before.sent,
            after.doubtful - before.doubtful, after.errors - before.errors};
  }
  ReceiveCounts Receive() { return Run(kPlanReceive); }
  ReceiveCounts Send() { return Run(kPlanSend); }
  /// An account whose waiting messages go to a server on 127.0.0.1.
  DiskPtr AddSendAccount(int port, const QString& address = QStringLiteral("me@example.com")) {
    const DiskPtr account = profile_.AddAccount(1);
    account->Let(QStringLiteral("Mailaddress"), address);
    account->Let(QStringLiteral("OutMailServer"), QStringLiteral("127.0.0.1"));
    account->Let(QStringLiteral("OutMailServerPort"), port);
    return account;
  }
  SerialIds Serials() {
    SerialIds serials;
    for (const QVariant& serial :
         profile_.Select(QStringLiteral("SELECT SERIALID AS V FROM mail"))) {
      serials.append(SerialIdOf(serial));
    }
    return serials;
  }
  /// The subjects of the stored messages with that status.
  QStringList Subjects(int status) {
    QStringList subjects;
    for (const QVariant& subject : profile_.Select(
             QStringLiteral("SELECT FIELD_SUBJECT AS V FROM mail WHERE STATUS = %1").arg(status))) {
      subjects.append(subject.toString());
    }
    subjects.sort();
    return subjects;
  }
  /// By a connection of its own, which takes any statement.
  bool Execute(const QByteArray& statement) {
    const auto connection =
        Connection::Open(MailDatabasePath(profile_.Get()),
                         profile_.Get().Session->Text(u"password"), Connection::Mode::Existing)
            .ValueOr(nullptr);
    return connection != nullptr && connection->Run(statement);
  }
  qsizetype Rows() {
    return profile_.Select(QStringLiteral("SELECT STATUS AS V FROM mail")).size();
  }
  /// The control's patience ends when the server, one of the two here, stalls, and not before:
  /// however slow the machine is, a session that goes on is not given up, nor one after it.
  template <typename Server>
  void GiveUpOnStalls(Server& server) {
    Pop& control = traffic_.Control();
    const auto wait = [&control](int milliseconds) {
      control.Patience.ReplyMs = control.Patience.DecisionMs = milliseconds;
    };
    wait(kPatienceMs);
    server.OnStall = [wait] { wait(1); };
    host_.onEvent = [wait] { wait(kPatienceMs); };
  }
  QString LastLog() const { return host_.log.isEmpty() ? QString() : host_.log.last(); }

  static constexpr int kPatienceMs = 30000;

  TestProfile profile_;
  RecordingHost host_;
  MailTraffic traffic_{profile_.Get(), host_, host_};
};

}  // namespace vorn::test
