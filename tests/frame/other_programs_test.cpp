// What other programs store while this one has the profile open.

#include "frame/other_programs.h"

#include <gtest/gtest.h>

#include "frame/other_objects.h"
#include "objects/object_types.h"
#include "storage/databases.h"
#include "storage/engine/connection.h"
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
  const auto other = Connection::Open(MailDatabasePath(context), context.Session->Text(u"Password"),
                                      Connection::Mode::Existing)
                         .ValueOr(nullptr);
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

TEST(OtherObjectsTest, WhatTheySaveIsLoadedAndAPasswordThatIsNotStoredStaysKnown) {
  TestProfile profile;
  Context& context = profile.Get();
  OtherObjects others(context, 0);
  others.TakeNew();
  const auto save = [&context](const SerialId& serialId, const QString& name, const QString& time) {
    const auto file =
        Connection::Open(PlatformPath(context, context.Session->Text(u"Profile")),
                         context.Session->Text(u"Password"), Connection::Mode::Existing)
            .ValueOr(nullptr);
    ASSERT_NE(file, nullptr);
    ASSERT_TRUE(file->Run("DELETE FROM object WHERE SERIALID = ?", {serialId.Text()}));
    const QMap<QString, QString> values{{QStringLiteral("FormName"), object_type::kAccount},
                                        {QStringLiteral("Object"), name},
                                        {QStringLiteral("InMailServerPassword"), QString()},
                                        {QStringLiteral("DayTime"), time}};
    for (auto value = values.begin(); value != values.end(); ++value) {
      ASSERT_TRUE(
          file->Run("INSERT INTO object (SERIALID, NAME, PROPERTY) VALUES (?, ?, ?)",
                    {serialId.Text(), value.key() + QStringLiteral("@string"), value.value()}));
    }
  };
  const SerialId account = u"theirs"_id;
  save(account, QStringLiteral("first"), QStringLiteral("2026/01/01 1:00:00"));
  EXPECT_EQ(others.TakeNew(), SerialIds{account});
  EXPECT_TRUE(others.TakeNew().isEmpty());
  const DiskPtr loaded = context.Objects.Find(account);
  ASSERT_NE(loaded, nullptr);
  loaded->Let(QStringLiteral("InMailServerPassword"), QStringLiteral("typed"));
  save(account, QStringLiteral("second"), QStringLiteral("2026/01/01 2:00:00"));
  EXPECT_EQ(others.TakeNew(), SerialIds{account});
  EXPECT_EQ(loaded->Text(u"Object"), QStringLiteral("second"));
  EXPECT_EQ(loaded->Text(u"InMailServerPassword"), QStringLiteral("typed"));
}

}  // namespace
}  // namespace vorn
