// Where the keyboard goes when windows close.

#include "kit/window/focus_return.h"

#include <gtest/gtest.h>

#include "support/window_driving.h"

namespace vorn {
namespace {

using test::WaitFor;

class FocusReturnTest : public testing::Test {
 protected:
  FocusReturnTest() {
    qApp->installEventFilter(&keyboard_);
    other_.show();
    for (QWidget* window : {&below_, &above_}) {
      window->show();
      window->activateWindow();
      EXPECT_TRUE(WaitFor([window] { return window->isActiveWindow(); }));
    }
  }

  // Stands for whatever has the keyboard that is no window of the program.
  void TakeAway() {
    other_.requestActivate();
    ASSERT_TRUE(WaitFor([] { return QApplication::activeWindow() == nullptr; }));
  }

  FocusReturn keyboard_;
  QWindow other_;
  QWidget below_;
  QWidget above_;
};

TEST_F(FocusReturnTest, ItGoesBackWhenTheWindowSystemGivesItToNoWindow) {
  above_.hide();
  TakeAway();
  EXPECT_TRUE(WaitFor([this] { return below_.isActiveWindow(); }));
}

TEST_F(FocusReturnTest, ItStaysWithAnotherProgram) {
  TakeAway();
  above_.hide();
  TakeAway();
  test::RunFor(500);
  EXPECT_EQ(QApplication::activeWindow(), nullptr);
}

}  // namespace
}  // namespace vorn
