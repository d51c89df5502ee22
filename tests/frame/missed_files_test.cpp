// Database files that are lost or damaged in less simple ways: while the program runs, without
// notes, with a copy elsewhere, with a guess that is wrong.

#include "objects/profile/lost_files.h"

#include <gtest/gtest.h>

#include "frame/profile_login.h"
#include "frame/start_up.h"
#include "frame/user_store.h"
#include "objects/profile/profile_password.h"
#include "storage/databases.h"
#include "storage/file_notes.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

using test::ReadFile;
using test::TestProfile;

const QString kRight = QStringLiteral("right");

class MissedFilesTest : public testing::Test {
 protected:
  // A profile with three messages, after a whole run of the program.
  void SetUp() override {
    for (int i = 0; i < 3; ++i) profile_.Store("Subject: kept\r\n\r\n");
    Context& context = profile_.Get();
    own_ = PlatformPath(context, context.Session->Text(u"Profile"));
    mail_ = MailDatabasePath(context);
    ASSERT_TRUE(NoteFiles(context));
    context.Data.CloseAll();
    context.Lock.reset();
  }
  // The next start, as a command makes it.
  bool LogInAgain(const QString& password = kRight, const LostFileChoice& choice = {},
                  const QString& name = {}) {
    next_ = std::make_unique<Context>();
    const Result<> entered = test::Enter(*next_, profile_.Folder(), password, choice, name);
    error_ = entered.Error().text;
    next_->Data.Close();
    return static_cast<bool>(entered);
  }
  qint64 Messages() {
    EXPECT_TRUE(OpenDatabase(*next_, DatabaseKind::Mail));
    EXPECT_TRUE(next_->Data.OpenRecordset(QStringLiteral("SELECT COUNT(0) AS V FROM mail"),
                                          CursorKind::ForwardOnly));
    const qint64 count = next_->Data.Recordset()->Fields(u"V").toLongLong();
    next_->Data.Close();
    return count;
  }
  void TearDown() override {
    if (next_ != nullptr) next_->Data.CloseAll();
  }

  TestProfile profile_{kRight};
  std::unique_ptr<Context> next_;
  QString own_, mail_, error_;
};

TEST_F(MissedFilesTest, AFileLostWhileTheProgramRunsIsNotMadeAnewEither) {
  ASSERT_TRUE(LogInAgain()) << error_.toStdString();
  next_->Data.CloseAll();
  QFile::remove(mail_);
  EXPECT_EQ(OpenDatabase(*next_, DatabaseKind::Mail).Error().kind, StorageError::Kind::NotFound);
  EXPECT_FALSE(QFile::exists(mail_));
}

// With what only its log holds, as a backup of a running program has it.
TEST_F(MissedFilesTest, AFileFromElsewhereIsCopiedAndStaysAsItIs) {
  const QString log = QStringLiteral("-wal");
  profile_.Store("Subject: in the log\r\n\r\n");
  for (const QString& place : {profile_.Folder() + QStringLiteral("backup"),
                               QFileInfo(mail_).path() + QStringLiteral("/backup.mbx")}) {
    ASSERT_TRUE(QFile::copy(mail_, place));
    ASSERT_TRUE(QFile::copy(mail_ + log, place + log));
    const QByteArray held = ReadFile(place);
    const QByteArray heldLog = ReadFile(place + log);
    EXPECT_FALSE(heldLog.isEmpty());
    profile_.Get().Data.CloseAll();
    profile_.Get().Lock.reset();
    QFile::remove(mail_);
    ASSERT_TRUE(LogInAgain(kRight, {false, {place}})) << error_.toStdString();
    EXPECT_EQ(Messages(), 4);
    EXPECT_EQ(ReadFile(place), held);
    EXPECT_EQ(ReadFile(place + log), heldLog);
    EXPECT_EQ(QDir(QFileInfo(mail_).path()).entryList({QStringLiteral("*.new-*")}).size(), 0);
    // Once more, from a log as it was.
    next_->Data.CloseAll();
    next_->Lock.reset();
    QFile::remove(mail_);
    ASSERT_TRUE(QFile::copy(place, mail_));
    ASSERT_TRUE(QFile::copy(place + log, mail_ + log));
  }
}

TEST_F(MissedFilesTest, AnEarlierVersionsProfileWithoutNotesMissesItsDatabaseToo) {
  ASSERT_TRUE(LogInAgain()) << error_.toStdString();
  ASSERT_TRUE(OpenDatabase(*next_, DatabaseKind::Navigator));
  ASSERT_TRUE(
      next_->Data.Execute(QStringLiteral("DELETE FROM object WHERE NAME = 'FileNotes@string'")));
  next_->Data.CloseAll();
  next_->Lock.reset();
  QFile::remove(own_);
  EXPECT_FALSE(LogInAgain(QStringLiteral("wrong"), {true, {}}));
  EXPECT_FALSE(LogInAgain());
  EXPECT_FALSE(QFile::exists(own_));
  ASSERT_TRUE(LogInAgain(kRight, {true, {}})) << error_.toStdString();
  EXPECT_EQ(Messages(), 3);
}

// Another profile's file would open with the same password.
TEST_F(MissedFilesTest, OnlyTheFileThatWasLostIsReconnected) {
  const QString away = profile_.Folder() + QStringLiteral("away");
  ASSERT_TRUE(QFile::rename(mail_, away));
  TestProfile other(kRight);
  other.Store("Subject: other\r\n\r\n");
  const QString foreign = MailDatabasePath(other.Get());
  other.Get().Data.CloseAll();
  EXPECT_FALSE(LogInAgain(kRight, {false, {foreign}}));
  EXPECT_TRUE(QFile::exists(foreign));
  EXPECT_FALSE(QFile::exists(mail_));
  ASSERT_TRUE(LogInAgain(kRight, {false, {away}})) << error_.toStdString();
  EXPECT_EQ(Messages(), 3);
}

TEST_F(MissedFilesTest, AFileWhosePathHasBlanksIsMissedToo) {
  Disk profile(QStringLiteral("p"));
  const QList<FileNote> notes{
      {QStringLiteral("/current/my mail file.mbx"), QStringLiteral("ab"), 3, 4, 5}};
  LetFileNotes(profile, notes);
  EXPECT_EQ(FileNotes(profile), notes);
}

// Of several mail files in a profile's folder the largest is most likely the one in use.
TEST_F(MissedFilesTest, TheLargestMailFileIsTheGuessForALostProfile) {
  Context& context = profile_.Get();
  const QString second = QStringLiteral("/current/%1\\aaa.mbx").arg(context.Session->SerialID());
  ASSERT_TRUE(OpenDatabase(context, DatabaseKind::MailByPath, second));
  context.Data.CloseAll();
  for (int i = 0; i < 50; ++i) profile_.Store("Subject: more\r\n\r\n" + QByteArray(3000, 'x'));
  context.Data.CloseAll();
  context.Lock.reset();
  QFile::remove(context.NaviDatabasePath);
  next_ = std::make_unique<Context>();
  ASSERT_TRUE(StartUp(*next_, profile_.Folder()));
  ASSERT_EQ(next_->Objects.Count(), 1);
  EXPECT_EQ(PlatformPath(*next_, next_->Objects.First()->Text(u"Mail")), mail_);
}

TEST_F(MissedFilesTest, TheTrueNameAndMailFileReplaceWhatWasGuessedFromTheFolder) {
  Context& context = profile_.Get();
  // The file in use is not the one that a guess by size would take.
  const QString second = QStringLiteral("/current/%1\\second.mbx").arg(context.Session->SerialID());
  ASSERT_TRUE(OpenDatabase(context, DatabaseKind::MailByPath, second));
  context.Session->Let(QStringLiteral("History"),
                       QString(context.Session->Text(u"Mail") + QStringLiteral("\r\n") + second));
  context.Session->Let(QStringLiteral("Mail"), second);
  context.Session->Let(QStringLiteral("Object"), QStringLiteral("山田"));
  ASSERT_TRUE(NoteFiles(context));
  context.Data.CloseAll();
  const QString navi = context.NaviDatabasePath;
  for (const bool keyLost : {false, true}) {
    if (keyLost) {
      const auto store = UserStore();  // another machine: the key is another one
      store->clear();
      store->sync();
    } else {
      QFile::remove(navi);
    }
    EXPECT_FALSE(LogInAgain(QStringLiteral("wrong"))) << "no welcome and no new profile";
    EXPECT_EQ(next_->Objects.Count(), 1);
    EXPECT_EQ(next_->Notices.size(), keyLost ? 2 : 1);
    ASSERT_TRUE(LogInAgain(kRight, {}, QStringLiteral("山田"))) << error_.toStdString();
    EXPECT_EQ(next_->Session->Serial(), context.Session->Serial());
    EXPECT_EQ(next_->Session->Text(u"Mail"), second);
    EXPECT_EQ(Messages(), 0);
    next_->Data.CloseAll();
    next_->Lock.reset();
    ASSERT_TRUE(LogInAgain()) << error_.toStdString();
    EXPECT_TRUE(next_->Notices.isEmpty());
    EXPECT_EQ(next_->Session->Text(u"Object"), QStringLiteral("山田"));
    next_->Data.CloseAll();
  }
  EXPECT_EQ(QDir(profile_.Folder())
                .entryList({QStringLiteral("navi.mbx.unreadable-*")}, QDir::Files)
                .size(),
            1);
}

// Another user, or a command with another home folder, has another key.
TEST_F(MissedFilesTest, AListThatALiveProgramHoldsStaysWhereItIs) {
  const auto leaves = [this](const QString& who) {
    const QByteArray list = ReadFile(profile_.Get().NaviDatabasePath);
    EXPECT_FALSE(LogInAgain()) << qPrintable(who);
    EXPECT_TRUE(error_.contains(QStringLiteral("ほかのプログラム"))) << qPrintable(error_);
    EXPECT_EQ(ReadFile(profile_.Get().NaviDatabasePath), list) << qPrintable(who);
    EXPECT_EQ(QDir(profile_.Folder()).entryList({QStringLiteral("navi.mbx.unreadable-*")}).size(),
              0);
  };
  UserStore()->clear();
  ASSERT_TRUE(OpenDatabase(profile_.Get(), DatabaseKind::Navigator));
  leaves(QStringLiteral("before its login"));
  profile_.Get().Data.CloseAll();
  ASSERT_TRUE(HoldProfile(profile_.Get(), *profile_.Get().Session));
  profile_.Get().Data.CloseAll();
  leaves(QStringLiteral("logged in"));
  profile_.Get().Lock.reset();
  EXPECT_TRUE(LogInAgain()) << qPrintable(error_);
  EXPECT_EQ(Messages(), 3);
}

TEST_F(MissedFilesTest, EveryProfilesFolderIsFoundForANewList) {
  const QDir data(profile_.Folder());
  const SerialId first = profile_.Get().Session->Serial();
  SerialIds folders{first};
  for (const QString& made : {QStringLiteral("_profile_9_X"), QStringLiteral("profile_9_X")}) {
    ASSERT_TRUE(data.mkpath(made));
    const QString copy = data.filePath(made) + QStringLiteral("/profile.mbx");
    ASSERT_TRUE(QFile::copy(own_, copy));
    folders.append(SerialId(made));
  }
  QFile::remove(profile_.Get().NaviDatabasePath);
  next_ = std::make_unique<Context>();
  ASSERT_TRUE(StartUp(*next_, profile_.Folder()));
  for (const SerialId& folder : folders) {
    EXPECT_TRUE(next_->Objects.Contains(folder)) << qPrintable(folder.Text());
  }
  next_->Data.CloseAll();
}

TEST_F(MissedFilesTest, DamageIsNotTakenForAWrongPassword) {
  struct Case {
    QString path;
    QByteArray bytes;
  };
  const QByteArray own = ReadFile(own_);
  const QByteArray mail = ReadFile(mail_);
  const auto spoilt = [](QByteArray bytes) {
    return bytes.replace(100, 200, QByteArray(200, 'x'));
  };
  for (const Case& damage : {Case{own_, spoilt(own)}, Case{own_, own.left(5000)},
                             Case{mail_, spoilt(mail)}, Case{mail_, mail.left(1000)}}) {
    test::WriteFile(damage.path, damage.bytes);
    if (LogInAgain()) error_ = OpenDatabase(*next_, DatabaseKind::Mail).Error().text;
    EXPECT_TRUE(error_.contains(QFileInfo(damage.path).fileName())) << error_.toStdString();
    EXPECT_TRUE(error_.contains(QStringLiteral("壊れて"))) << error_.toStdString();
    EXPECT_FALSE(error_.contains(QStringLiteral("プロファイル情報を確認してください")))
        << error_.toStdString();
    EXPECT_EQ(ReadFile(damage.path), damage.bytes);
    next_->Data.CloseAll();
    test::WriteFile(damage.path, damage.path == own_ ? own : mail);
  }
  EXPECT_FALSE(LogInAgain(QStringLiteral("wrong")));
  EXPECT_TRUE(error_.contains(QStringLiteral("プロファイル情報を確認してください")))
      << error_.toStdString();
  ASSERT_TRUE(LogInAgain()) << error_.toStdString();
  EXPECT_EQ(Messages(), 3);
  // The engine's own words are English; none of them reaches the user.
  ASSERT_TRUE(OpenDatabase(*next_, DatabaseKind::Mail));
  EXPECT_FALSE(next_->Data.Execute(QStringLiteral("DELETE FROM nowhere")));
  EXPECT_FALSE(next_->Data.LastError().text.contains(u"no such"));
}

}  // namespace
}  // namespace vorn
