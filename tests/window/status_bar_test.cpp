// What the main window's status bar says of checks, and the steps that it takes back, by itself.

#include "frame/window/notices/status_bar.h"

#include <gtest/gtest.h>

#include "support/test_profile.h"

namespace vorn {
namespace {

TEST(MainStatusBarTest, AFailureStaysBesideWhatOthersBrought) {
  MainStatusBar bar;
  bar.BeginCheck(true);
  bar.Tell(QStringLiteral("one: 2"), false);
  bar.Tell(QStringLiteral("two: refused"), true);
  bar.Tell(QStringLiteral("three: 1"), false);
  bar.Tell(QStringLiteral("one: 2"), false);  // once is enough
  const QString all = QStringLiteral("one: 2 ／ three: 1 ／ two: refused");
  EXPECT_EQ(bar.currentMessage(), all);
  bar.Tell({}, false);
  EXPECT_EQ(bar.currentMessage(), all) << "who brought nothing takes nothing away";
  bar.BeginCheck(false);
  bar.Tell({}, false);
  EXPECT_EQ(bar.currentMessage(), QString()) << "nobody asked";
  bar.BeginCheck(true);
  bar.Tell({}, false);
  EXPECT_EQ(bar.currentMessage(), QStringLiteral("新しいメッセージはありません。"));
  bar.ShowForAWhile(QStringLiteral("said by the way"));
  bar.Tell(QStringLiteral("four: 3"), false);
  EXPECT_EQ(bar.currentMessage(), QStringLiteral("four: 3")) << "of another check";
}

TEST(MainStatusBarTest, StepsAreTakenBackTheLastOneFirst) {
  MainStatusBar bar;
  QStringList undone;
  const auto offer = [&](int step) {
    bar.OfferUndo(QString::number(step), [&undone, step] { undone.append(QString::number(step)); });
  };
  for (int step = 1; step <= 21; ++step) offer(step);
  bar.EndOffer();  // of the button, not of the steps
  for (int step = 1; step <= 22; ++step) bar.TakeBack();
  EXPECT_EQ(undone.size(), 20) << "older ones are forgotten";
  EXPECT_EQ(undone.first(), QStringLiteral("21"));
  EXPECT_EQ(undone.last(), QStringLiteral("2"));
  EXPECT_EQ(bar.currentMessage(), QStringLiteral("元に戻せる操作はありません。"));
  offer(1);
  bar.ForgetSteps();
  bar.TakeBack();
  EXPECT_EQ(undone.size(), 20) << "what was deleted for good is behind it";
}

}  // namespace
}  // namespace vorn
