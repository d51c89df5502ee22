// Work beside the windows, and who ends it.

#include "kit/window/progress_window.h"

#include <gtest/gtest.h>

#include <QThread>
#include <memory>

#include "support/window_driving.h"

namespace vorn {
namespace {

using test::InModal;

TEST(ProgressWindowTest, WorkThatLastsIsShownAndEndedByTheUser) {
  QWidget parent;
  ProgressWindow progress(&parent, QStringLiteral("title"));
  bool wasStopped = false;
  bool isWanted = true;
  EXPECT_TRUE(InModal<QProgressDialog>(
      [&] {
        isWanted = progress.Run(QStringLiteral("busy"), [&](const std::atomic<bool>& stop) {
          while (!stop) QThread::msleep(1);
          wasStopped = true;
        });
      },
      [](QProgressDialog& dialog) {
        EXPECT_EQ(dialog.labelText(), QStringLiteral("busy"));
        QTest::keyClick(&dialog, Qt::Key_Escape);
      }));
  EXPECT_FALSE(isWanted);
  EXPECT_TRUE(wasStopped);
}

// It would stand in front of what is asked next.
TEST(ProgressWindowTest, WorkThatIsDoneIsNotShownAnyMore) {
  QWidget parent;
  ProgressWindow progress(&parent, QStringLiteral("title"));
  EXPECT_TRUE(progress.Run(QStringLiteral("busy"), [](const std::atomic<bool>&) {}));
  test::RunFor(600);
  EXPECT_EQ(test::TopLevel<QProgressDialog>(), nullptr);
}

TEST(ProgressWindowTest, WhatItBelongsToMayGo) {
  auto parent = std::make_unique<QWidget>();
  ProgressWindow progress(parent.get(), QStringLiteral("title"));
  QTimer::singleShot(0, qApp, [&parent] { parent.reset(); });
  EXPECT_FALSE(progress.Run(QStringLiteral("busy"), [](const std::atomic<bool>& stop) {
    while (!stop) QThread::msleep(1);
  }));
}

}  // namespace
}  // namespace vorn
