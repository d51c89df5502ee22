// The entry point of the tests with windows.

#include <gtest/gtest.h>

#include <QApplication>

#include "support/test_profile.h"

namespace {

void SetDefault(const char* variable, const char* value) {
  if (qEnvironmentVariableIsEmpty(variable)) qputenv(variable, value);
}

}  // namespace

int main(int argc, char** argv) {
  SetDefault("QT_QPA_PLATFORM", "offscreen");
  SetDefault("QTWEBENGINE_CHROMIUM_FLAGS", "--disable-gpu");
  SetDefault("QTWEBENGINE_DISABLE_SANDBOX", "1");  // tests may run as root
  const vorn::test::PrivateUser user;
  const QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
