#include "frame/start_up.h"

#include <gtest/gtest.h>

#include "frame/profile_login.h"
#include "frame/single_instance.h"
#include "objects/object_types.h"
#include "objects/profile/profile.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

using test::ReadFile;
using test::TestProfile;
using test::WriteFile;

TEST(StartUp, ProcessWideValuesAreSet) {
  QTemporaryDir folder;
  const QString path = folder.path() + u'/';
  const auto debugModeWith = [&path](const QByteArray& ini) {
    WriteFile(path + QStringLiteral("vorn.ini"), ini);
    Context context;
    EXPECT_TRUE(StartUp(context, path.chopped(1)));
    EXPECT_EQ(context.AppFolder, path);
    EXPECT_EQ(context.TempFolder, path + QStringLiteral("temp/"));
    EXPECT_LE(context.ComputerName.size(), 40);
    EXPECT_EQ(context.SecurityKey.size(), 14);
    EXPECT_FALSE(context.Session->Flag(u"login", true));
    return context.DebugMode;
  };
  EXPECT_TRUE(debugModeWith("[infomation]\ndebug=TRUE\n"));
  EXPECT_FALSE(debugModeWith("[infomation]\ndebug=yes\n"));
  EXPECT_FALSE(debugModeWith(""));
  EXPECT_EQ(ChooseAppFolder({}, path.chopped(1)), path);
  EXPECT_EQ(ChooseAppFolder(path, QStringLiteral("/elsewhere")), path);
}

TEST(StartUp, AForeignNavigatorFileIsNamedAndLeftAlone) {
  QTemporaryDir folder;
  const QString file = folder.filePath(QStringLiteral("navi.mbx"));
  WriteFile(file, QByteArray(4096, 'x'));
  Context context;
  EXPECT_TRUE(StartUp(context, folder.path()).Error().text.contains(u"navi.mbx"));
  EXPECT_EQ(ReadFile(file), QByteArray(4096, 'x'));
}

TEST(StartUp, AnEmptyNavigatorFileOfAKilledFirstStartIsMadeAnew) {
  QTemporaryDir folder;
  WriteFile(folder.filePath(QStringLiteral("navi.mbx")), {});
  Context context;
  EXPECT_TRUE(StartUp(context, folder.path()));
  EXPECT_TRUE(CreateFirstProfile(context));
}

TEST(StartUp, AFolderThatCannotBeWrittenIsNamedWithTheReason) {
  QTemporaryDir folder;
  // What a write-protected folder gives, for root as well.
  ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("navi.lock")));
  Context context;
  EXPECT_TRUE(StartUp(context, folder.path()).Error().text.contains(u"に書き込めません"));
}

TEST(StartUp, OnlyOneProgramRunsPerFolder) {
  QTemporaryDir folder;
  const QString path = folder.path() + u'/';
  SingleInstance first(path);
  EXPECT_TRUE(first.Acquire());
  EXPECT_FALSE(SingleInstance(path).Acquire());
  SingleInstance elsewhere(path + QStringLiteral("other/"));
  EXPECT_TRUE(elsewhere.Acquire());
}

TEST(Login, ThePasswordIsTestedAgainstTheProfilesDatabase) {
  TestProfile profile(QStringLiteral("right"));
  Context& context = profile.Get();
  const QString name = context.Session->Text(u"Object");
  EXPECT_EQ(name, QStringLiteral("Administrator"));
  EXPECT_TRUE(LogIn(context, name, QStringLiteral("wrong"))
                  .Error()
                  .text.contains(u"プロファイル情報を確認してください"));
  EXPECT_FALSE(LogIn(context, QStringLiteral("nobody"), {}));
  // Who was refused keeps nobody out of what only one may do.
  Context refused;
  ASSERT_TRUE(StartUp(refused, profile.Folder()));
  EXPECT_FALSE(LogIn(refused, name, QStringLiteral("wrong")));
  EXPECT_EQ(refused.Lock, nullptr);
  refused.Data.CloseAll();
  EXPECT_EQ(FindProfile(context, QStringLiteral("nobody")), nullptr);
  profile.Restart(QStringLiteral("right"));
  EXPECT_TRUE(profile.Get().Session->Flag(u"Default"));
}

// With the right password there is nothing to look at in what was entered.
TEST(Login, APasswordChangeThatCannotBeCompletedIsTheReasonThatIsTold) {
  TestProfile profile;
  Context& context = profile.Get();
  const QString file = ProfileFiles(context, *context.Session).first();
  WriteFile(file + QStringLiteral(".decided"), "rubbish");
  Context next;
  ASSERT_TRUE(StartUp(next, profile.Folder()));
  context.Data.CloseAll();
  context.Lock.reset();
  const QString told = LogIn(next, {}, {}).Error().text;
  EXPECT_TRUE(told.contains(u"decided")) << told.toStdString();
  EXPECT_FALSE(told.contains(u"確認してください")) << told.toStdString();
  QFile::remove(file + QStringLiteral(".decided"));
}

TEST(Login, SeveralProfilesNeedANameUnlessOneWasUsedLast) {
  TestProfile profile;
  Context& context = profile.Get();
  const Result<DiskPtr> second = CreateProfile(context, QStringLiteral("Second"));
  ASSERT_TRUE(second);
  context.Objects.Add(*second);
  ASSERT_TRUE(LogIn(context, QStringLiteral("Second"), QStringLiteral("x")));
  profile.Restart(QStringLiteral("x"));
  EXPECT_EQ(profile.Get().Session->Text(u"Object"), QStringLiteral("Second"));
}

}  // namespace
}  // namespace vorn
