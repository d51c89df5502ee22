// The entry point of the tests without windows.

#include <gtest/gtest.h>

#include <QCoreApplication>

#include "support/test_profile.h"

int main(int argc, char** argv) {
  const vorn::test::PrivateUser user;
  const QCoreApplication application(argc, argv);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
