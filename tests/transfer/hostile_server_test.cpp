// Servers that hold a connection: silent, trickling, or speaking another protocol.

#include <QTcpServer>
#include <QTcpSocket>

#include "support/loopback_pop3_server.h"
#include "support/real_servers.h"
#include "support/session_recorder.h"
#include "support/test_profile.h"
#include "transfer/control/pop.h"

namespace vorn {
namespace {

using test::SessionRecorder;
using test::WaitFor;

constexpr int kLongMs = 600000;

class HostileServerTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(server_.listen(QHostAddress::LocalHost));
    pop_.SetEvents(&events_);
    pop_.Server = QStringLiteral("127.0.0.1");
    pop_.ServerPort = server_.serverPort();
    pop_.User = QStringLiteral("user");
    pop_.Password = QStringLiteral("secret");
  }
  void Run() {
    pop_.Start();
    EXPECT_TRUE(WaitFor([this] { return !pop_.Busy(); }, kLongMs));
    EXPECT_EQ(events_.started, events_.ended);
  }
  // Greets, and then says one byte after the other of `text`, each after a pause.
  void Trickle(const QByteArray& text, int pauseMs) {
    QObject::connect(&server_, &QTcpServer::newConnection, &server_, [this, text, pauseMs] {
      QTcpSocket* socket = server_.nextPendingConnection();
      auto* timer = new QTimer(socket);
      QObject::connect(timer, &QTimer::timeout, socket, [socket, text, at = 0]() mutable {
        socket->write(text.sliced(at++ % text.size(), 1));
      });
      timer->start(pauseMs);
    });
  }

  QTcpServer server_;
  SessionRecorder events_;
  Pop pop_;
};

TEST_F(HostileServerTest, ATricklingServerIsGivenUp) {
  Trickle("+", 10);
  pop_.Patience.RatePeriodMs = 300;
  Run();
  EXPECT_EQ(events_.codes, QList<PopError>{PopError::TimeOut});
}

// What counts is how long the server is silent, not how long the message takes.
TEST_F(HostileServerTest, AMessageMayTakeLongerThanTheServerMayBeSilent) {
  const QByteArray message = "Subject: x\r\n\r\n" + QByteArray(80, 'x') + "\r\n";
  QObject::connect(&server_, &QTcpServer::newConnection, &server_, [this, message] {
    QTcpSocket* socket = server_.nextPendingConnection();
    socket->write("+OK hi\r\n");
    QObject::connect(socket, &QTcpSocket::readyRead, socket, [socket, message] {
      for (const QByteArray& line : socket->readAll().split('\n')) {
        if (line.startsWith("RETR")) {
          auto* timer = new QTimer(socket);
          const QByteArray reply = "+OK\r\n" + message + ".\r\n";
          QObject::connect(timer, &QTimer::timeout, socket, [=, at = qsizetype(0)]() mutable {
            if (at < reply.size()) socket->write(reply.sliced(at++, 1));
          });
          timer->start(40);
        } else if (line.startsWith("LIST")) {
          socket->write("+OK\r\n1 100\r\n.\r\n");
        } else if (line.startsWith("UIDL")) {
          socket->write("+OK\r\n1 u1\r\n.\r\n");
        } else if (!line.isEmpty()) {
          socket->write(line.startsWith("CAPA") ? "-ERR no\r\n" : "+OK 1 100\r\n");
        }
      }
    });
  });
  pop_.Patience.ReplyMs = 3000;
  Run();
  EXPECT_EQ(events_.arrived.size(), 1) << events_.Shown().toStdString();
}

TEST_F(HostileServerTest, ACancelBeforeTheBeginningLeavesNoGhost) {
  test::LoopbackPop3Server mail;
  ASSERT_TRUE(mail.Listen());
  mail.AddMessage("1", "Subject: x\r\n\r\n");
  pop_.ServerPort = mail.Port();
  pop_.Start();
  pop_.Cancel();
  EXPECT_FALSE(pop_.Busy());
  EXPECT_EQ(events_.started, 1);
  EXPECT_EQ(events_.ended, 1);
  Run();  // and the cancelled one does not begin beside it
  EXPECT_EQ(events_.started, 2);
  EXPECT_EQ(events_.arrived.size(), 1);
  EXPECT_EQ(mail.Count("QUIT"), 1);
}

TEST_F(HostileServerTest, AControlThatIsDeletedInTheMiddleTellsNothing) {
  Trickle("+", 10);
  auto pop = std::make_unique<Pop>();
  pop->SetEvents(&events_);
  pop->Server = QStringLiteral("127.0.0.1");
  pop->ServerPort = server_.serverPort();
  pop->Start();
  ASSERT_TRUE(WaitFor([this] { return events_.started == 1; }, kLongMs));
  ASSERT_TRUE(WaitFor([this] { return !server_.hasPendingConnections(); }, kLongMs));
  pop.reset();
  WaitFor([] { return false; }, 50);
  EXPECT_EQ(events_.ended, 0);
}

TEST_F(HostileServerTest, AnAlertInsteadOfAGreetingPointsToTheSecurity) {
  QObject::connect(&server_, &QTcpServer::newConnection, &server_, [this] {
    server_.nextPendingConnection()->write(QByteArray("\x15\x03\x01\x00\x02\x02\x0A", 7));
  });
  Run();
  EXPECT_EQ(events_.codes, QList<PopError>{PopError::Tls});
  EXPECT_TRUE(events_.Shown().contains(QStringLiteral("セキュリティの設定")));
}

}  // namespace
}  // namespace vorn
