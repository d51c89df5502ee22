#include "frame/instance_messages.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <QLocalServer>
#include <atomic>
#include <thread>

#include "support/test_profile.h"

namespace vorn {
namespace {

TEST(InstanceMessages, AreHeardByTheProgramOfTheSameFolderAlone) {
  const QTemporaryDir work;
  const QString folder = work.path() + QStringLiteral("/data/");
  InstanceMessages running(folder);  // before there is a folder, as at a first start
  ASSERT_TRUE(QDir().mkpath(folder));
  ASSERT_TRUE(QDir().mkpath(work.path() + QStringLiteral("/other/")));
  running.Listen();
  QStringList heard;
  QObject::connect(&running, &InstanceMessages::Received,
                   [&heard](const QStringList& arguments) { heard += arguments; });
  const QStringList said = {QStringLiteral("mailto:a@example.jp"), QStringLiteral("/手紙.eml")};
  std::atomic<int> answers = 0;
  std::thread other([&] {
    if (InstanceMessages(work.path() + QStringLiteral("/data")).Send(said)) answers += 1;
    if (InstanceMessages(work.path() + QStringLiteral("/other/")).Send(said)) answers += 10;
    answers += 100;
  });
  EXPECT_TRUE(test::WaitFor([&answers] { return answers >= 100; }));
  other.join();
  EXPECT_EQ(answers, 101);
  EXPECT_EQ(heard, said);
}

// What lies where the programs meet and is another user's is neither taken away nor told anything.
TEST(InstanceMessages, AnotherUsersPlaceIsTold) {
  if (geteuid() != 0) GTEST_SKIP() << "needs root to give a file away";
  const QTemporaryDir work;
  qunsetenv("XDG_RUNTIME_DIR");
  const QString place = work.path() + QStringLiteral("/vorn.socket");
  QLocalServer theirs;
  ASSERT_TRUE(theirs.listen(place));
  ASSERT_EQ(lchown(QFile::encodeName(place).constData(), 65534, 65534), 0);
  InstanceMessages ours(work.path() + u'/');
  EXPECT_TRUE(ours.Listen().contains(place));
  EXPECT_TRUE(QFileInfo::exists(place));
  EXPECT_FALSE(ours.Send({QStringLiteral("mailto:secret@example.jp")}));
  EXPECT_FALSE(theirs.waitForNewConnection(0));
  // A folder of the session counts when it is the user's alone.
  QDir(work.path()).mkdir(QStringLiteral("run"));
  const QString run = work.path() + QStringLiteral("/run");
  qputenv("XDG_RUNTIME_DIR", run.toUtf8());
  for (const bool isPrivate : {false, true}) {
    QFile::setPermissions(run, QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                   QFileDevice::ExeOwner |
                                   (isPrivate ? QFileDevice::Permissions()
                                              : QFileDevice::ReadOther | QFileDevice::ExeOther));
    InstanceMessages(work.path() + u'/').Listen();
    InstanceMessages meeting(work.path() + u'/');
    EXPECT_EQ(meeting.Listen().isEmpty(), isPrivate);
    EXPECT_EQ(QDir(run).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size(),
              isPrivate ? 1 : 0);
  }
  qunsetenv("XDG_RUNTIME_DIR");
}

}  // namespace
}  // namespace vorn
