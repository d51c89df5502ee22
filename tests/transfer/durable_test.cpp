// What has to be on the disk before a server hears of it.

#include <sys/syscall.h>
#include <unistd.h>

#include "support/loopback_pop3_server.h"
#include "support/loopback_smtp_server.h"
#include "support/traffic.h"

namespace {

int syncs = 0;  // how often the disk has taken something

}  // namespace

// The C library's own, which the engine calls.
extern "C" int fdatasync(int file) {
  ++syncs;
  return static_cast<int>(syscall(SYS_fdatasync, file));
}
extern "C" int fsync(int file) {
  ++syncs;
  return static_cast<int>(syscall(SYS_fsync, file));
}

namespace vorn {
namespace {

class DurableTest : public test::TrafficTest {
 protected:
  // Notes how much the disk has taken when a server gets a command.
  std::function<void(const QByteArray&)> Noting() {
    return [this](const QByteArray& line) {
      const QByteArray verb = line.left(4);
      if (verb == "RETR") last_.insert(verb, syncs);
      if (!last_.contains(verb)) last_.insert(verb, syncs);
    };
  }
  QHash<QByteArray, int> last_;
};

// A machine that loses its power after DATA must know that the message may have arrived.
TEST_F(DurableTest, AnAttemptIsOnTheDiskBeforeTheMessageIsHandedOver) {
  test::LoopbackSmtpServer smtp;
  ASSERT_TRUE(smtp.Listen());
  AddSendAccount(smtp.Port());
  profile_.Store("From: me@example.com\r\nTo: a@example.com\r\n\r\ntext\r\n.\r\n", 2);
  smtp.OnCommand = Noting();
  EXPECT_EQ(Send().sent, 1);
  EXPECT_GT(last_["DATA"], last_["RCPT"]);
  EXPECT_GT(syncs, last_["DATA"]) << "that it was sent";
}

TEST_F(DurableTest, MailIsOnTheDiskBeforeTheServersCopyGoes) {
  test::LoopbackPop3Server pop3;
  ASSERT_TRUE(pop3.Listen());
  for (int i = 0; i < 3; ++i) pop3.AddMessage(QByteArray::number(i), "Subject: x\r\n\r\n\r\n");
  profile_.AddAccount(pop3.Port(), true);
  pop3.OnCommand = Noting();
  EXPECT_EQ(Receive().stored, 3);
  EXPECT_GT(last_["DELE"], last_["RETR"]);
}

}  // namespace
}  // namespace vorn
