// Receiving into a file of which a page cannot be read.

#include <gtest/gtest.h>

#include "storage/databases.h"
#include "support/loopback_pop3_server.h"
#include "support/traffic.h"

namespace vorn {
namespace {

class DamagedStoreTest : public test::TrafficTest {};

// Whichever page cannot be read: new mail is stored, or it is told that it is not, at each check.
TEST_F(DamagedStoreTest, HidesNoNewMail) {
  test::LoopbackPop3Server server;
  ASSERT_TRUE(server.Listen());
  for (int i = 0; i < 12; ++i) {
    server.AddMessage("uid" + QByteArray::number(i), "Subject: s\r\n\r\ntext\r\n");
  }
  profile_.AddAccount(server.Port());
  ASSERT_EQ(Receive().stored, 12);
  const QString path = MailDatabasePath(profile_.Get());
  profile_.Get().Data.CloseAll();
  const QByteArray sound = test::ReadFile(path);
  constexpr qsizetype kPage = 4096;
  int told = 0;
  for (qsizetype page = 1; page < sound.size() / kPage; ++page) {
    profile_.Get().Data.CloseAll();
    for (const char* ending : {"-wal", "-shm", ".damaged"}) {
      QFile::remove(path + QLatin1String(ending));
    }
    test::WriteFile(path, QByteArray(sound).replace(page * kPage, kPage, QByteArray(kPage, '\0')));
    server.Messages = {{"new" + QByteArray::number(page), "Subject: new\r\n\r\ntext\r\n"}};
    for (int check = 0; check < 2; ++check) {
      host_.log.clear();
      const ReceiveCounts counts = Receive();
      if (counts.stored == 1) break;
      ++told;
      EXPECT_FALSE(host_.log.isEmpty()) << "page " << page;
      EXPECT_EQ(counts.known, 0) << "page " << page;
    }
    EXPECT_EQ(server.Messages.size(), 1);
  }
  EXPECT_GT(told, 0);
}

}  // namespace
}  // namespace vorn
