// What has to be on the disk before a server hears of it.

#include <signal.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "support/loopback_pop3_server.h"
#include "support/loopback_smtp_server.h"
#include "support/traffic.h"

namespace {

int syncs = 0;                      // how often the disk has taken something
volatile sig_atomic_t refused = 0;  // and refused it

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

// While it lives no file grows, as on a full disk.
class FullDisk {
 public:
  FullDisk() {
    ::signal(SIGXFSZ, [](int) { refused = refused + 1; });
    ::getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit none{0, before_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &none);
  }
  ~FullDisk() { ::setrlimit(RLIMIT_FSIZE, &before_); }

 private:
  rlimit before_{};
};

// Two messages wait to be written while the third one takes its time; that cannot be done, and it
// can again when the session comes to its end.
TEST_F(DurableTest, WhatCouldNotBeWrittenInBetweenStaysOnTheServer) {
  test::LoopbackPop3Server pop3;
  pop3.Pipelining = false;
  ASSERT_TRUE(pop3.Listen());
  for (int i = 0; i < 3; ++i) pop3.AddMessage(QByteArray::number(i), "Subject: x\r\n\r\n\r\n");
  profile_.AddAccount(pop3.Port(), true);
  pop3.Faults = {{test::Fault::Kind::Reply, "RETR", 3, 0, "-ERR not now\r\n"}};
  pop3.OnCommand = [](const QByteArray& line) {
    if (!line.startsWith("RETR 3")) return;
    const FullDisk full;
    EXPECT_TRUE(test::WaitFor([] { return refused > 0; }));
  };
  Receive();
  EXPECT_EQ(pop3.Count("DELE"), 0);
  EXPECT_EQ(pop3.Messages.size(), 3);
  pop3.OnCommand = {};
  pop3.Faults.clear();
  EXPECT_EQ(Receive().stored, 3);
  EXPECT_EQ(pop3.Messages.size(), 0);
}

}  // namespace
}  // namespace vorn
