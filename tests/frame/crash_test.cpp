// The store on a full disk, and a change of its password beside other programs.

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "frame/profile_login.h"
#include "frame/start_up.h"
#include "mail/store/mail_store.h"
#include "objects/profile/profile.h"
#include "objects/profile/profile_password.h"
#include "storage/databases.h"
#include "storage/session/file_check.h"
#include "storage/session/password_change.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

using test::TestProfile;

FileContents ContentsOf(const QString& file) {
  return file.endsWith(u"profile.mbx") ? FileContents::Objects : FileContents::Messages;
}

// A small file system that goes with the object; not there unless the tests run as root.
class SmallDisk {
 public:
  SmallDisk() {
    mounted_ =
        QProcess::execute(QStringLiteral("mount"), {QStringLiteral("-t"), QStringLiteral("tmpfs"),
                                                    QStringLiteral("-o"), QStringLiteral("size=2m"),
                                                    QStringLiteral("tmpfs"), folder_.path()}) == 0;
  }
  ~SmallDisk() {
    if (mounted_) QProcess::execute(QStringLiteral("umount"), {folder_.path()});
  }
  bool IsMounted() const { return mounted_; }
  QString Path() const { return folder_.path() + u'/'; }

 private:
  QTemporaryDir folder_;
  bool mounted_ = false;
};

TEST(Crash, AFullDiskGivesAnErrorAndLosesNothing) {
  const SmallDisk disk;
  if (!disk.IsMounted()) GTEST_SKIP() << "needs the right to mount a file system";
  Context context;
  ASSERT_TRUE(StartUp(context, disk.Path() + QStringLiteral("data")));
  ASSERT_TRUE(CreateFirstProfile(context));
  ASSERT_TRUE(LogIn(context, {}, {}));
  // Without any room the engine cannot even open a file; the user makes some, later.
  const QString ballast = disk.Path() + QStringLiteral("ballast");
  test::WriteFile(ballast, QByteArray(300000, 'x'));
  MailStore store(context);
  QMap<SerialId, QByteArray> stored;
  for (int i = 0; i < 200; ++i) {
    const QByteArray source = "Subject: " + QByteArray::number(i) + "\r\n\r\n" +
                              QByteArray(30000, static_cast<char>('a' + i % 26));
    const Result<SerialId> serial =
        store.StoreMessage(Disk(context.Data.NewSerialID(QStringLiteral("mail_"))), source);
    if (!serial) {
      EXPECT_EQ(serial.Error().kind, StorageError::Kind::DiskFull)
          << qPrintable(serial.Error().text);
      break;
    }
    stored.insert(*serial, source);
  }
  EXPECT_LT(stored.size(), 200);
  EXPECT_FALSE(ChangeProfilePassword(context, *context.Session, {}, QStringLiteral("new"))
                   .Error()
                   .text.isEmpty());

  context.Data.CloseAll();
  ASSERT_TRUE(QFile::remove(ballast));
  ASSERT_TRUE(LogIn(context, {}, {}));
  EXPECT_EQ(CheckDatabaseFile(MailDatabasePath(context), context.Session->Text(u"password"),
                              FileContents::Messages,
                              context.Data.Damage().TakeOf(MailDatabasePath(context)))
                .problems.join(u'\n'),
            QString());
  for (auto message = stored.begin(); message != stored.end(); ++message) {
    EXPECT_EQ(store.LoadMessageSource(Disk(message.key())), message.value());
  }
  context.Data.CloseAll();
}

// What cannot be kept is not used: neither a new profile's files nor those of an earlier version
// come under a code that is in memory alone.
TEST(Crash, AFullDiskLeavesNoFileUnderACodeThatIsNotKept) {
  const SmallDisk disk;
  if (!disk.IsMounted()) GTEST_SKIP() << "needs the right to mount a file system";
  const QString data = disk.Path() + QStringLiteral("data");
  QFile ballast(disk.Path() + QStringLiteral("ballast"));
  const auto fill = [&ballast](qint64 left) {
    ASSERT_TRUE(ballast.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    const qint64 free = QStorageInfo(ballast.fileName()).bytesFree() - left;
    for (qint64 at = 0; at < free && ballast.write(QByteArray(4096, 'x')) == 4096; at += 4096) {
    }
    ballast.close();
  };
  {
    Context first;
    ASSERT_TRUE(StartUp(first, data));
    ASSERT_TRUE(CreateFirstProfile(first));
    const DiskPtr profile = FindProfile(first, QStringLiteral("Administrator"));
    const CodeFile code = CodeFileOf(first, *profile);
    ASSERT_TRUE(HoldProfile(first, *profile));
    fill(0);
    EXPECT_TRUE(LogIn(first, {}, {}).Error().text.contains(u"profile.key"));
    EXPECT_TRUE(code.Code().isEmpty() && !HasFileUnderCode(first, *profile));
    ASSERT_TRUE(ballast.remove());
    ASSERT_TRUE(LogIn(first, {}, {}));
    EXPECT_TRUE(MailStore(first).StoreMessage(Disk(first.Data.NewSerialID(QStringLiteral("mail_"))),
                                              QByteArray(250000, 'x')));
    // As an earlier version left it.
    const QStringList files = ProfileFiles(first, *profile);
    PasswordChange change(first.Data, files.first() + QStringLiteral(".decided"), files);
    const QString between = QStringLiteral("x");
    ASSERT_EQ(change.Run(first.Session->Text(u"password"), between).outcome,
              PasswordChange::Outcome::Changed);
    ASSERT_EQ(change.Run(between, {}).outcome, PasswordChange::Outcome::Changed);
    ASSERT_TRUE(code.Forget());
  }
  fill(300000);
  {
    Context without;
    EXPECT_TRUE(test::Enter(without, data));
    EXPECT_TRUE(CodeFileOf(without, *without.Session).Code().isEmpty());
    EXPECT_FALSE(HasFileUnderCode(without, *without.Session));
    const QString folder = QFileInfo(CodeFileOf(without, *without.Session).Path()).path();
    ASSERT_TRUE(QFile::remove(folder + QStringLiteral("/keys.tried")));
    without.Data.CloseAll();
  }
  ASSERT_TRUE(ballast.remove());
  Context with;
  EXPECT_TRUE(test::Enter(with, data));
  EXPECT_TRUE(IsUnderCode(with, *with.Session));
  with.Data.CloseAll();
}

class PasswordChangeTest : public testing::Test {
 protected:
  // Adds a second mail database to the profile's history.
  void SetUp() override {
    Context& context = profile_.Get();
    const QString folder = context.Session->Text(u"Mail").section(u'\\', 0, 0) + u'\\';
    const QString second = folder + QStringLiteral("second.mbx");
    ASSERT_TRUE(OpenDatabase(context, DatabaseKind::MailByPath, second));
    context.Session->Let(QStringLiteral("History"),
                         context.Session->Text(u"Mail") + QStringLiteral("\r\n") + second);
    profile_.Store("Subject: kept\r\n\r\n");
    files_ = ProfileFiles(context, *context.Session);
    ASSERT_EQ(files_.size(), 3);
  }
  bool AllOpenWith(const QString& password) {
    bool open = true;
    for (const QString& file : files_) {
      open = open && CheckDatabaseFile(file, password, ContentsOf(file),
                                       profile_.Get().Data.Damage().TakeOf(file))
                         .IsSound();
    }
    return open;
  }

  TestProfile profile_{QStringLiteral("old")};
  QStringList files_;
};

TEST_F(PasswordChangeTest, EveryFileChangesAndTheSessionFollows) {
  Context& context = profile_.Get();
  ASSERT_TRUE(ChangeProfilePassword(context, *context.Session, QStringLiteral("old"),
                                    QStringLiteral("new")));
  EXPECT_TRUE(AllOpenWith(QStringLiteral("new")));
  EXPECT_FALSE(AllOpenWith(QStringLiteral("old")));
  EXPECT_EQ(profile_.Select(QStringLiteral("SELECT FIELD_SUBJECT AS V FROM mail")).size(), 1);
  EXPECT_TRUE(
      QDir(QFileInfo(files_[0]).path()).entryList({QStringLiteral("*.rekeyed*")}).isEmpty());
}

TEST_F(PasswordChangeTest, OneFileThatCannotChangeKeepsThemAll) {
  Context& context = profile_.Get();
  context.Data.CloseAll();
  EXPECT_FALSE(ChangeProfilePassword(context, *context.Session, QStringLiteral("wrong"),
                                     QStringLiteral("new")));
  DataSession other;  // another program holds the last file
  ASSERT_TRUE(other.Open(files_[2], QStringLiteral("old")));
  ASSERT_TRUE(other.OpenRecordset(QStringLiteral("SELECT * FROM mail"), CursorKind::ForwardOnly));
  EXPECT_FALSE(
      ChangeProfilePassword(context, *context.Session, QStringLiteral("old"), QStringLiteral("new"))
          .Error()
          .text.isEmpty());
  other.CloseAll();
  EXPECT_TRUE(AllOpenWith(QStringLiteral("old")));
}

TEST_F(PasswordChangeTest, AnotherProgramInTheProfileKeepsThePassword) {
  Context& context = profile_.Get();
  {
    Context other;
    ASSERT_TRUE(test::Enter(other, profile_.Folder(), QStringLiteral("old")));
    EXPECT_TRUE(ChangeProfilePassword(context, *context.Session, QStringLiteral("old"),
                                      QStringLiteral("new"))
                    .Error()
                    .text.contains(QStringLiteral("ほかのプログラム")));
    EXPECT_TRUE(AllOpenWith(QStringLiteral("old")));
    other.Data.CloseAll();
  }
  EXPECT_TRUE(ChangeProfilePassword(context, *context.Session, QStringLiteral("old"),
                                    QStringLiteral("new")));
}

TEST_F(PasswordChangeTest, ALoginWaitsForAChangeAndAChangeNamesTheOther) {
  Context& context = profile_.Get();
  const QString folder = QFileInfo(files_[0]).path();
  ASSERT_TRUE(context.Lock->TakeAlone()) << "the only one in the profile";
  ProfileLock second(folder);
  EXPECT_TRUE(second.TakeAlone().Error().text.contains(
      QStringLiteral("PID %1").arg(QCoreApplication::applicationPid())));
  std::thread change([&context] {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    EXPECT_TRUE(context.Lock->ShareAgain());
  });
  EXPECT_TRUE(second.Share());
  change.join();
  EXPECT_FALSE(context.Lock->TakeAlone());
  second.Release();
  EXPECT_TRUE(context.Lock->TakeAlone());
}

}  // namespace
}  // namespace vorn
