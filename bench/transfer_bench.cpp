// Receiving and sending inside one process with an event loop, as in the program: how long it
// takes, how long the user-interface thread was held up at most, and the peak of memory.
//
//   transfer-bench receive PORT MESSAGES       user "u", password "secret"
//   transfer-bench send PORT MESSAGES BYTES    one session each
//
// Prints one JSON line.

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>

#include "bench_support.h"
#include "frame/profile_login.h"
#include "frame/start_up.h"
#include "mail/store/mail_store.h"
#include "objects/account.h"
#include "transfer/mail_traffic.h"

namespace {

using namespace vorn;
using namespace vorn::bench;

class Host : public PlanHost, public StatusPanel {
 public:
  void WorkIsHeld(const QString&) override {}
  void PostRequest(const DiskPtr&) override {}
  void AddEvent(EventLevel level, EventMode, const SerialId&, const QString&, const QString&,
                const QString& text) override {
    if (level == kEventError) std::fprintf(stderr, "%s\n", qPrintable(text));
  }
  void SendAndReceive() override {}
  QString AskPassword(const PasswordQuestion&) override { return {}; }
  SerialId ChooseAccount(const QString&, const QString&) override { return {}; }
  void ShowStatus(const QString&, const QString&) override {}
};

void StoreWaiting(Context& context, int count, qsizetype bytes) {
  MailStore store(context);
  const QByteArray line(70, 'x');
  QByteArray body;
  while (body.size() < bytes) body += line + "\r\n";
  for (int i = 0; i < count; ++i) {
    Disk request(context.Data.NewSerialID(QStringLiteral("mail_")));
    request.Let(QStringLiteral("process"), static_cast<int>(kStatusWaiting));
    const QByteArray source =
        "From: me@example.org\r\nTo: you@example.org\r\nSubject: " + QByteArray::number(i) +
        "\r\n\r\n" + body + ".\r\n";
    Require(store.StoreMessage(request, source));
  }
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const QStringList words = QCoreApplication::arguments();
  const bool sends = words.value(1) == u"send";
  Require(words.size() == (sends ? 5 : 4),
          QStringLiteral("usage: transfer-bench receive|send PORT MESSAGES [BYTES]"));
  const QTemporaryDir folder;
  Context context;
  Require(StartUp(context, folder.path() + u'/'));
  Require(CreateFirstProfile(context));
  Require(LogIn(context, {}, {}));
  AccountValues values;
  values.name = QStringLiteral("bench");
  values.address = QStringLiteral("me@example.org");
  values.incoming.host = QStringLiteral("127.0.0.1");
  values.incoming.port = words[2].toInt();
  values.incoming.who.user = QStringLiteral("u");
  values.incoming.who.password = QStringLiteral("secret");
  const DiskPtr account = *CreateAccount(context, values);
  account->Let(QStringLiteral("OutMailServer"), QStringLiteral("127.0.0.1"));
  account->Let(QStringLiteral("OutMailServerPort"), words[2].toInt());
  if (sends) StoreWaiting(context, words[3].toInt(), words[4].toLongLong());

  Host host;
  MailTraffic traffic(context, host, host);
  traffic.Plan().CreateMessagePlan(sends ? kPlanSend : kPlanReceive);
  QTimer ticks;
  QObject::connect(&ticks, &QTimer::timeout, &ticks, [&traffic] {
    traffic.Tick();
    if (traffic.Plan().IsEmpty()) QCoreApplication::quit();
  });
  // What a timer of a millisecond is late.
  QTimer turns;
  turns.setTimerType(Qt::PreciseTimer);
  QElapsedTimer sinceTurn;
  qint64 longest = 0;
  QObject::connect(&turns, &QTimer::timeout, &turns, [&] {
    longest = qMax(longest, sinceTurn.nsecsElapsed());
    sinceTurn.start();
  });
  QElapsedTimer clock;
  clock.start();
  sinceTurn.start();
  traffic.Tick();
  ticks.start(100);
  turns.start(1);
  QCoreApplication::exec();
  const double seconds = static_cast<double>(clock.nsecsElapsed()) / 1e9;
  const int done = sends ? traffic.Events().Counts().sent : traffic.Events().Counts().stored;
  Require(done == words[3].toInt(), QStringLiteral("not all messages went through"));
  const QJsonObject figure{
      {QStringLiteral("messages"), done},
      {QStringLiteral("seconds"), seconds},
      {QStringLiteral("longest_block_ms"), static_cast<double>(longest) / 1e6},
      {QStringLiteral("peak_mb"), static_cast<double>(MemoryKilobytes("VmHWM:")) / 1024}};
  std::printf("%s\n", QJsonDocument(figure).toJson(QJsonDocument::Compact).constData());
  context.Data.CloseAll();
  return 0;
}
