// Files of the data folder that vanish are missed, found again or made anew on the user's word.

#include "objects/profile/lost_files.h"
#include "frame/profile_login.h"
#include "frame/start_up.h"
#include "mail/store/mail_store.h"
#include "storage/bags/profile_bag.h"
#include "storage/databases.h"
#include "storage/known_damage.h"
#include "storage/session/file_check.h"
#include "storage/ui.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

using test::ReadFile;
using test::TestProfile;

const QString kPassword = QStringLiteral("right");

class LostFilesTest : public testing::Test {
 protected:
  void SetUp() override {
    for (int i = 0; i < 3; ++i) profile_.Store("Subject: kept\r\n\r\n");
    database_ = PlatformPath(profile_.Get(), profile_.Get().Session->Text(u"Profile"));
    mail_ = MailDatabasePath(profile_.Get());
    ASSERT_TRUE(NoteFiles(profile_.Get()));
    profile_.Get().Data.CloseAll();
    profile_.Get().Lock.reset();
  }
  static void Move(const QString& from, const QString& to) {
    for (const char16_t* part : {u"-wal", u"-shm"}) QFile::remove(from + QString::fromUtf16(part));
    ASSERT_TRUE(QFile::rename(from, to));
  }
  // The next start of the program; whether it came to a login.
  bool Start(const QString& password, const LostFileChoice& choice = {}, const QString& name = {}) {
    if (next_ != nullptr) next_->Data.CloseAll();
    next_ = std::make_unique<Context>();
    const Result<> entered = test::Enter(*next_, profile_.Folder(), password, choice, name);
    error_ = entered.Error().text;
    return static_cast<bool>(entered);
  }
  qsizetype Messages() {
    qsizetype count = -1;
    if (OpenDatabase(*next_, DatabaseKind::Mail) &&
        next_->Data.OpenRecordset(QStringLiteral("SELECT COUNT(0) AS V FROM mail"),
                                  CursorKind::ForwardOnly)) {
      count = next_->Data.Recordset()->Fields(u"V").toInt();
    }
    next_->Data.Close();
    return count;
  }
  bool Says(const QString& words) const { return error_.contains(words); }

  TestProfile profile_{kPassword};
  QString database_, mail_;
  std::unique_ptr<Context> next_;
  QString error_;
};

TEST_F(LostFilesTest, AMissingMailFileIsNamedWithItsMessagesAndFoundUnderAnotherName) {
  const QString elsewhere = QFileInfo(mail_).path() + QStringLiteral("/renamed.mbx");
  Move(mail_, elsewhere);
  EXPECT_FALSE(Start(kPassword));
  EXPECT_TRUE(Says(QStringLiteral("3通"))) << error_.toStdString();
  EXPECT_TRUE(Says(QStringLiteral("renamed.mbx"))) << error_.toStdString();
  EXPECT_FALSE(QFile::exists(mail_));
  // A file that is something else is not taken for it.
  EXPECT_FALSE(Start(kPassword, {false, {database_}}));
  EXPECT_FALSE(QFile::exists(mail_));
  ASSERT_TRUE(Start(kPassword, {false, {elsewhere}})) << error_.toStdString();
  EXPECT_EQ(Messages(), 3);
  EXPECT_TRUE(Start(kPassword)) << error_.toStdString();
}

// One that was in use before, and is only read, is missed like that of today.
TEST_F(LostFilesTest, AFileOfTheHistoryIsMissedToo) {
  ASSERT_TRUE(Start(kPassword));
  const QString former = QFileInfo(mail_).path() + QStringLiteral("/former.mbx");
  const QString away = former + QStringLiteral(".away");
  ASSERT_TRUE(next_->Data.Create(former, kPassword));
  Disk& profile = *next_->Session;
  QString stored = ProfileBag(profile).MailFiles();
  stored.replace(QFileInfo(mail_).fileName(), QStringLiteral("former.mbx"));
  ProfileBag::SetHistory(profile, ProfileBag(profile).MailFiles() + kLineBreak + stored);
  ASSERT_TRUE(NoteFiles(*next_));
  next_->Data.CloseAll();
  Move(former, away);
  EXPECT_FALSE(Start(kPassword));
  EXPECT_TRUE(Says(QStringLiteral("former.mbx"))) << error_.toStdString();
  ASSERT_TRUE(Start(kPassword, {false, {away}})) << error_.toStdString();
  EXPECT_TRUE(QFile::exists(former));
}

// One of a few bytes, which the engine would take for a new one, stays as it is.
TEST_F(LostFilesTest, AnEmptyFileIsLostToo) {
  for (const QString& file : {database_, mail_}) {
    const QByteArray whole = ReadFile(file);
    for (const qint64 size : {1, 0}) {
      for (const char16_t* part : {u"-wal", u"-shm"}) {
        QFile::remove(file + QString::fromUtf16(part));
      }
      ASSERT_TRUE(QFile::resize(file, size));
      EXPECT_FALSE(Start(kPassword)) << size;
      EXPECT_EQ(QFileInfo(file).size(), size);
    }
    if (file == database_) test::WriteFile(file, whole);
  }
  EXPECT_TRUE(Says(QStringLiteral("3通"))) << error_.toStdString();
}

// Also one that opens with the same password.
TEST_F(LostFilesTest, AnotherDatabaseInItsPlaceIsNotTakenForIt) {
  const QString elsewhere = QFileInfo(mail_).path() + QStringLiteral("/renamed.mbx");
  Move(mail_, elsewhere);
  ASSERT_TRUE(QFile::copy(database_, mail_));
  EXPECT_FALSE(Start(kPassword));
  EXPECT_TRUE(Says(QStringLiteral("別のデータベース"))) << error_.toStdString();
  ASSERT_TRUE(Start(kPassword, {false, {elsewhere}})) << error_.toStdString();
  EXPECT_EQ(Messages(), 3);
  EXPECT_EQ(ReadFile(mail_ + QStringLiteral(".other1")), ReadFile(database_));
}

TEST_F(LostFilesTest, ADamagedMailFileKeepsNobodyOut) {
  ASSERT_TRUE(QFile::resize(mail_, QFileInfo(mail_).size() / 2 / 4096 * 4096));
  EXPECT_TRUE(Start(kPassword)) << error_.toStdString();
  EXPECT_FALSE(CheckDatabaseFile(mail_, kPassword, FileContents::Messages,
                                 next_->Data.Damage().TakeOf(mail_))
                   .IsSound());
  EXPECT_FALSE(CheckDatabaseFile(database_, kPassword, FileContents::Messages,
                                 next_->Data.Damage().TakeOf(database_))
                   .IsSound())
      << "a file of other contents";
}

// Frames that hold no first page do not tell by themselves to which database they belong.
TEST_F(LostFilesTest, TheLogOfAnotherDatabaseIsSetAside) {
  TestProfile other(kPassword);
  const SerialId serialId = other.Store("Subject: other\r\n\r\n");
  const QString foreign = MailDatabasePath(other.Get());
  other.Restart(kPassword);
  ASSERT_TRUE(MailStore(other.Get()).UpdateDust(Disk(serialId), true));
  const QByteArray log = ReadFile(foreign + QStringLiteral("-wal"));
  ASSERT_GT(log.size(), 4096);
  test::WriteFile(mail_ + QStringLiteral("-wal"), log);
  ASSERT_TRUE(Start(kPassword)) << error_.toStdString();
  EXPECT_EQ(Messages(), 3);
  EXPECT_TRUE(CheckDatabaseFile(mail_, kPassword, FileContents::Messages,
                                next_->Data.Damage().TakeOf(mail_))
                  .unreadable.isEmpty());
  EXPECT_EQ(ReadFile(mail_ + QStringLiteral("-wal.damaged1")), log);
}

TEST_F(LostFilesTest, ANewFileIsMadeOnTheUsersWordAlone) {
  Move(mail_, profile_.Folder() + QStringLiteral("away"));
  EXPECT_FALSE(Start(kPassword));
  ASSERT_TRUE(Start(kPassword, {true, {}})) << error_.toStdString();
  EXPECT_EQ(Messages(), 0);
  EXPECT_TRUE(Start(kPassword)) << error_.toStdString();
}

TEST_F(LostFilesTest, ALostProfileDatabaseTakesNoOtherPassword) {
  const QString away = profile_.Folder() + QStringLiteral("away");
  Move(database_, away);
  EXPECT_FALSE(Start(QStringLiteral("wrong")));
  EXPECT_FALSE(Start(QStringLiteral("wrong"), {true, {}}));
  EXPECT_FALSE(QFile::exists(database_));
  EXPECT_FALSE(Start(kPassword));
  EXPECT_TRUE(Says(QStringLiteral("profile.mbx"))) << error_.toStdString();
  ASSERT_TRUE(Start(kPassword, {false, {away}})) << error_.toStdString();
  EXPECT_EQ(Messages(), 3);
}

// It cannot be worked without, as a mail file can: a backup comes in its place, or a new file.
TEST_F(LostFilesTest, ACutProfileDatabaseIsReplacedOnTheUsersWord) {
  const QString backup = profile_.Folder() + QStringLiteral("backup");
  const QByteArray whole = ReadFile(database_);
  for (const bool hasBackup : {true, false}) {
    SCOPED_TRACE(hasBackup);
    test::WriteFile(database_, whole.left(5000));
    EXPECT_FALSE(Start(QStringLiteral("wrong"), {true, {}}));
    EXPECT_FALSE(Start(kPassword));
    EXPECT_TRUE(Says(QStringLiteral("途中で切れている"))) << error_.toStdString();
    EXPECT_EQ(QFileInfo(database_).size(), 5000);
    test::WriteFile(backup, whole);
    const LostFileChoice choice =
        hasBackup ? LostFileChoice{false, {backup}} : LostFileChoice{true, {}};
    ASSERT_TRUE(Start(kPassword, choice)) << error_.toStdString();
    EXPECT_EQ(Messages(), 3);
    EXPECT_FALSE(IsKnownDamaged(*next_, database_)) << "it was the one before";
    EXPECT_EQ(
        ReadFile(database_ + (hasBackup ? QStringLiteral(".other1") : QStringLiteral(".other2"))),
        whole.left(5000));
    next_->Data.CloseAll();
    for (const char16_t* part : {u"-wal", u"-shm"}) {
      QFile::remove(database_ + QString::fromUtf16(part));
    }
  }
}

TEST_F(LostFilesTest, WithEverythingLostTheDocumentedNewFilesTakeTheTypedPassword) {
  Move(mail_, profile_.Folder() + QStringLiteral("away1"));
  Move(database_, profile_.Folder() + QStringLiteral("away2"));
  EXPECT_FALSE(Start(QStringLiteral("new")));
  ASSERT_TRUE(Start(QStringLiteral("new"), {true, {}})) << error_.toStdString();
  EXPECT_FALSE(Start(kPassword));
  EXPECT_TRUE(Start(QStringLiteral("new"))) << error_.toStdString();
}

TEST_F(LostFilesTest, TheListComesBackWhereverItIsDamaged) {
  const QString path = profile_.Folder() + QStringLiteral("navi.mbx");
  for (const qsizetype page : {0, 1, 2}) {
    QByteArray bytes = ReadFile(path);
    ASSERT_GT(bytes.size(), page * 4096 + 700);
    bytes[page * 4096 + 700] = static_cast<char>(bytes[page * 4096 + 700] ^ 1);
    test::WriteFile(path, bytes);
    ASSERT_TRUE(Start(kPassword)) << page << error_.toStdString();
    EXPECT_EQ(Messages(), 3);
    next_.reset();
  }
}

}  // namespace
}  // namespace vorn
