// What the program announces to a script that drives it.

#include "frame/window/announcer.h"
#include "window/program_fixture.h"

namespace vorn {
namespace {

class AnnouncerTest : public ProgramTest {
 protected:
  bool Await(const QString& line) {
    return WaitFor([&] { return lines_.contains(line); });
  }

  QStringList lines_;
  Announcer announcer_{[this](const QString& line) { lines_.append(line); }};
};

TEST_F(AnnouncerTest, WindowsPagesAndSessionsAreAnnouncedWithoutWhatMessagesSay) {
  AddMessages(3);
  Prepare(QStringLiteral("hidden"));
  StartProgram();
  EXPECT_TRUE(Await(QStringLiteral("shown login")));
  EXPECT_TRUE(Await(QStringLiteral("active login")));
  LogInWith(QStringLiteral("hidden"));
  EXPECT_TRUE(Await(QStringLiteral("closed login")));
  EXPECT_TRUE(Await(QStringLiteral("shown parent")));
  EXPECT_TRUE(Await(QStringLiteral("page 01_folder_1_INBOX0000000 0")));
  Receive();
  EXPECT_TRUE(Await(QStringLiteral("session ended received 3 sent 0 errors 0")));
  EXPECT_TRUE(Await(QStringLiteral("page 01_folder_1_INBOX0000000 3")));
  EXPECT_EQ(ScriptIn(*View(), QStringLiteral("vorn.count()")).toInt(), 3) << "it is there by then";
  server_.Password = "changed";
  PressReceive();
  EXPECT_TRUE(Await(QStringLiteral("session ended received 3 sent 0 errors 1")));
  EndProgram();
  EXPECT_TRUE(Await(QStringLiteral("closed parent")));
  const QString all = lines_.join(u'\n');
  for (const char* secret : {"hidden", "secret", "会議", "佐藤", "example"}) {
    EXPECT_FALSE(all.contains(QString::fromUtf8(secret))) << secret;
  }
}

}  // namespace
}  // namespace vorn
