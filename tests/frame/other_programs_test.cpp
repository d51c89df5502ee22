// What other programs store while this one has the profile open.

#include "frame/other_programs.h"

#include <gtest/gtest.h>

#include "storage/connection.h"
#include "storage/databases.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

using test::TestProfile;

TEST(OtherProgramsTest, WhatTheyStoreIsNoticedOnceAndWhatThisOneStoresIsNot) {
  TestProfile profile;
  Context& context = profile.Get();
  profile.Store("Subject: mine\r\n\r\n");
  ASSERT_TRUE(context.Data.Group().Flush());
  OtherPrograms others(context, 0);
  EXPECT_FALSE(others.HaveStored());
  profile.Store("Subject: mine too\r\n\r\n");
  ASSERT_TRUE(context.Data.Group().Flush());
  EXPECT_FALSE(others.HaveStored());
  StorageError error;
  const auto other = Connection::Open(MailDatabasePath(context), context.Session->Text(u"Password"),
                                      Connection::Mode::Existing, &error);
  ASSERT_NE(other, nullptr);
  // Something else than a message.
  ASSERT_TRUE(other->Run("UPDATE mail SET FIELD_SUBJECT = 'x'"));
  others.HaveStored();  // with what this program stored before
  ASSERT_TRUE(other->Run("UPDATE mail SET FIELD_SUBJECT = 'y'"));
  EXPECT_FALSE(others.HaveStored());
  ASSERT_TRUE(other->Run("INSERT INTO mail (SERIALID) VALUES ('theirs')"));
  EXPECT_TRUE(others.HaveStored());
  EXPECT_FALSE(others.HaveStored());
}

}  // namespace
}  // namespace vorn
