#pragma once

#include "frame/profile_login.h"
#include "frame/start_up.h"
#include "mail/store/outbox.h"
#include "objects/save_object.h"
#include "storage/databases.h"
#include "support/loopback_smtp_server.h"
#include "support/traffic.h"

namespace vorn {

// Another program over the same data folder.
class OtherProgram {
 public:
  explicit OtherProgram(const QString& folder) { EXPECT_TRUE(test::Enter(context, folder)); }
  ~OtherProgram() { context.Data.CloseAll(); }

  Context context;
  test::RecordingHost host;
  MailTraffic traffic{context, host, host};
};

class OnceTest : public test::TrafficTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(smtp_.Listen());
    const DiskPtr account = AddSendAccount(smtp_.Port());
    ASSERT_TRUE(SaveObject(profile_.Get(), DatabaseKind::Profile, *account));
  }
  SerialId StoreWaiting(const QByteArray& subject = "s") {
    return profile_.Store("From: me@example.com\r\nTo: a@example.com\r\nSubject: " + subject +
                              "\r\n\r\ntext\r\n.\r\n",
                          2);
  }
  void RunAll(const std::vector<MailTraffic*>& programs) {
    EXPECT_TRUE(test::WaitFor(
        [&programs] {
          bool idle = true;
          for (MailTraffic* program : programs) {
            program->Tick();
            idle = idle && program->Plan().IsEmpty();
          }
          return idle;
        },
        600000));
  }
  Outbox TheOutbox() { return {profile_.Get(), MailDatabasePath(profile_.Get())}; }
  // Does something when the first message has come and its server has not yet answered.
  void Arrives(std::function<void()> action) {
    smtp_.OnMessage = [this, action = std::move(action)](const test::SentMessage&) {
      if (smtp_.Messages().size() == 1) action();
    };
  }

  test::LoopbackSmtpServer smtp_;
};

}  // namespace vorn
