// The transfer control against servers that are slow, silent or of another kind than was thought.

#include "transfer/pop.h"

#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include "support/loopback_pop3_server.h"
#include "support/real_servers.h"
#include "support/recording_events.h"
#include "support/test_profile.h"
#include "transfer/connection_check.h"

namespace vorn {
namespace {

using test::WaitFor;

// Says its lines one by one, each after a line of the client; then `drop` in steps for ever.
class TalkingServer : public QTcpServer {
 public:
  TalkingServer() {
    EXPECT_TRUE(listen(QHostAddress::LocalHost));
    connect(this, &QTcpServer::newConnection, this, [this] {
      QTcpSocket* socket = nextPendingConnection();
      if (socket_ != nullptr) return;  // the first connection is the one that counts
      socket_ = socket;
      connect(socket_, &QTcpSocket::readyRead, this, &TalkingServer::Answer);
      Say();
    });
    connect(&timer_, &QTimer::timeout, this, [this] {
      if (socket_ != nullptr && lines.isEmpty()) socket_->write(drop);
    });
  }
  void SayOnce(const QByteArray& bytes) {
    timer_.stop();
    socket_->write(bytes);
  }
  void Drip(const QByteArray& bytes, int ms) {
    drop = bytes;
    timer_.start(ms);
  }

  QByteArrayList lines;
  QByteArray drop;
  QByteArray heard;

 private:
  void Answer() {
    for (; socket_->canReadLine();) {
      const QByteArray line = socket_->readLine();
      heard += line;
      const bool isBody = heard.contains("DATA\r\n") && line != "DATA\r\n" && line != ".\r\n";
      if (!isBody) Say();
    }
  }
  void Say() {
    if (!lines.isEmpty()) socket_->write(lines.takeFirst());
  }

  QTcpSocket* socket_ = nullptr;
  QTimer timer_;
};

class PopTest : public testing::Test {
 protected:
  PopTest() {
    pop_.SetEvents(&events_);
    pop_.Server = QStringLiteral("127.0.0.1");
    pop_.User = QStringLiteral("user");
    pop_.Password = QStringLiteral("secret");
    pop_.MailFrom = QStringLiteral("f@x");
    pop_.MailTo = QStringLiteral("a@x");
    pop_.SetMessage("Subject: s\r\n\r\n");
  }
  // Runs one session; its errors.
  QString Run(int port, int mode = kPopReceive) {
    events_.errors.clear();
    pop_.ServerPort = port;
    pop_.Mode = mode;
    const int before = events_.ended;
    pop_.Start();
    EXPECT_TRUE(WaitFor([&] { return events_.ended > before; }));
    EXPECT_EQ(events_.started, events_.ended);
    return events_.errors.join(u'\n');
  }

  test::RecordingEvents events_;
  Pop pop_;
};

const QByteArrayList kToRetr = {"+OK\r\n", "-ERR\r\n", "+OK\r\n", "+OK\r\n", "+OK\r\n1 9\r\n.\r\n",
                                "-ERR\r\n"};
const QByteArrayList kToBody = {"220\r\n", "250 x\r\n", "250\r\n", "250\r\n", "354\r\n"};

TEST_F(PopTest, ATricklingServerHoldsNoSession) {
  pop_.RatePeriodMs = 400;
  for (const bool inGreeting : {true, false}) {
    TalkingServer server;
    if (!inGreeting) server.lines = kToRetr + QByteArrayList{"+OK\r\n"};
    server.Drip("x", 20);
    EXPECT_TRUE(Run(server.serverPort()).contains(QStringLiteral("遅すぎる")));
    EXPECT_TRUE(events_.arrived.isEmpty());
  }
}

TEST_F(PopTest, ASlowMessageGoesOnAsLongAsItMoves) {
  pop_.RatePeriodMs = 1000;
  pop_.ReplyTimeoutMs = 2000;
  TalkingServer server;
  server.lines = kToRetr + QByteArrayList{"+OK\r\n"};
  server.Drip(QByteArray(200, 'x'), 50);
  QTimer::singleShot(4000, &server, [&server] {
    server.lines = {"+OK bye\r\n"};
    server.SayOnce("\r\n.\r\n");
  });
  EXPECT_EQ(Run(server.serverPort()), QString());
  ASSERT_EQ(events_.arrived.size(), 1);
  EXPECT_GT(events_.arrived[0].size(), 1000);
}

TEST_F(PopTest, ALateDecisionIsTakenAndATrickledOneIsDoubtful) {
  pop_.ReplyTimeoutMs = 300;
  pop_.DecisionTimeoutMs = 20000;
  {
    TalkingServer server;
    server.lines = kToBody;
    QTimer::singleShot(1500, &server, [&server] { server.Drip("250\r\n", 50); });
    EXPECT_EQ(Run(server.serverPort(), kPopSend), QString());
    EXPECT_EQ(events_.TakeHandover(), QStringLiteral("begin sent"));
  }
  pop_.SetMessage("Subject: s\r\n\r\n");
  pop_.DecisionTimeoutMs = 1000;
  pop_.RatePeriodMs = 100000;
  TalkingServer server;
  server.lines = kToBody;
  server.Drip("250-\r\n", 20);
  EXPECT_TRUE(Run(server.serverPort(), kPopSend).contains(QStringLiteral("時間切れ")));
  EXPECT_EQ(events_.TakeHandover(), QStringLiteral("begin unknown"));
}

TEST_F(PopTest, ACancelledHandoverHasItsOutcome) {
  for (const auto& [lines, outcome] :
       {std::pair{kToBody, "begin unknown"}, std::pair{kToBody.first(4), "begin refused"}}) {
    TalkingServer server;
    server.lines = lines;
    pop_.SetMessage("Subject: s\r\n\r\n");
    pop_.ServerPort = server.serverPort();
    pop_.Mode = kPopSend;
    pop_.Start();
    const char* const last = lines.size() == 5 ? "\r\n.\r\n" : "DATA\r\n";
    ASSERT_TRUE(WaitFor([&] { return server.heard.endsWith(last); }));
    pop_.Cancel();
    EXPECT_EQ(events_.TakeHandover(), QString::fromLatin1(outcome));
  }
}

TEST_F(PopTest, TheProgramMayEndInTheMiddle) {
  TalkingServer server;
  {
    Pop pop;
    pop.SetEvents(&events_);
    pop.Server = QStringLiteral("127.0.0.1");
    pop.ServerPort = server.serverPort();
    pop.TlsProbeMs = 1;
    pop.Start();
    ASSERT_TRUE(WaitFor([this] { return events_.started == 1; }));
    WaitFor([] { return false; }, 100);
  }
  WaitFor([] { return false; }, 50);
  EXPECT_EQ(events_.ended, 0);
}

TEST_F(PopTest, CancellingBeforeTheBeginningLeavesNoGhost) {
  test::LoopbackPop3Server server;
  ASSERT_TRUE(server.Listen());
  pop_.ServerPort = server.Port();
  pop_.Start();
  pop_.Cancel();
  EXPECT_FALSE(pop_.Busy());
  EXPECT_EQ(events_.started, 1);
  EXPECT_EQ(events_.ended, 1);
  EXPECT_EQ(events_.errors.size(), 1);
  WaitFor([] { return false; }, 200);
  EXPECT_EQ(events_.started, 1);
  EXPECT_TRUE(server.Received().isEmpty());
  // The second start is the only one.
  pop_.Start();
  pop_.Cancel();
  EXPECT_EQ(Run(server.Port()), QString());
  EXPECT_EQ(events_.started, 3);
  EXPECT_EQ(server.Count("PASS"), 1);
}

TEST_F(PopTest, AWrongKindOfPortIsToldWithinSeconds) {
  const QString setting = QStringLiteral("セキュリティの設定");
  const test::TestCertificates certificates;
  test::SmtpSink sink({QStringLiteral("--tls=tls"), QStringLiteral("--cert"),
                       certificates.Certificate(test::TestCertificates::Kind::Valid),
                       QStringLiteral("--key"),
                       certificates.Key(test::TestCertificates::Kind::Valid)});
  ASSERT_TRUE(sink.Start());
  // In clear to a port of TLS, where both sides would wait.
  pop_.TlsProbeMs = 200;
  for (const Security security : {Security::None, Security::StartTls}) {
    pop_.Encryption = security;
    EXPECT_TRUE(Run(sink.Port(), kPopSend).contains(QStringLiteral("TLS")));
    EXPECT_TRUE(events_.errors.value(0).contains(setting));
  }
  pop_.Encryption = Security::None;
  TalkingServer alert;
  alert.lines = {QByteArray("\x15\x03\x01\x00\x02\x02\x0A", 7)};
  EXPECT_TRUE(Run(alert.serverPort()).contains(setting));
  // Silent, and not of TLS: waited for as long as a slow server may take.
  TalkingServer slow;
  QTimer::singleShot(1000, &slow, [&slow] { slow.Drip("-ERR busy\r\n", 50); });
  EXPECT_TRUE(Run(slow.serverPort()).contains(QStringLiteral("busy")));
  TalkingServer silent;
  pop_.ReplyTimeoutMs = 500;
  EXPECT_TRUE(Run(silent.serverPort()).contains(setting));
  // TLS to a port in clear.
  test::LoopbackPop3Server clear;
  ASSERT_TRUE(clear.Listen());
  pop_.Encryption = Security::Tls;
  EXPECT_TRUE(Run(clear.Port()).contains(setting));
}

TEST(ConnectionCheckTest, ASecretThatIsSentBackIsNotShown) {
  test::LoopbackPop3Server server;
  ASSERT_TRUE(server.Listen());
  server.Faults = {{test::Fault::Kind::Reply, "PASS", 1, 0, "-ERR PASS hunter22 is wrong\r\n"}};
  ConnectionCheck check;
  ConnectionTrial trial;
  trial.server = QStringLiteral("127.0.0.1");
  trial.port = server.Port();
  trial.user = QStringLiteral("user");
  trial.password = QStringLiteral("hunter22");
  QString outcome;
  QObject::connect(&check, &ConnectionCheck::Finished, &check,
                   [&outcome](bool, const QString& text) { outcome = text; });
  check.Start(trial);
  ASSERT_TRUE(WaitFor([&outcome] { return !outcome.isEmpty(); }));
  EXPECT_TRUE(outcome.contains(QStringLiteral("PASS ***"))) << outcome.toStdString();
  EXPECT_FALSE(outcome.contains(QStringLiteral("hunter22")));
}

}  // namespace
}  // namespace vorn
