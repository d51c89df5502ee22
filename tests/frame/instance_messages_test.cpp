#include "frame/instance_messages.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QLocalSocket>
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

}  // namespace
}  // namespace vorn
