// Work beside the windows, and who ends it.

#include "kit/window/progress_window.h"

#include <gtest/gtest.h>

#include <memory>

#include "support/window_driving.h"

namespace vorn {
namespace {

using test::InModal;

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
