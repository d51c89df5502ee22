#include "storage/session/password_change.h"

#include <gtest/gtest.h>

#include "storage/engine/engine.h"
#include "storage/engine/raw_pages.h"
#include "storage/file_notes.h"
#include "storage/keys/file_key.h"
#include "storage/session/data_session.h"
#include "storage/session/new_database.h"
#include "storage/session/session_result.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

const QString kOld = QStringLiteral("old");
const QString kNew = QStringLiteral("new");

struct Death {};  // thrown to leave a change as a killed process leaves it

class PasswordStepsTest : public testing::Test {
 protected:
  void SetUp() override {
    // A mail file may lie in another folder than the profile's own.
    ASSERT_TRUE(QDir(folder_.path()).mkpath(QStringLiteral("sub")));
    for (const QString& name : {QStringLiteral("profile.mbx"), QStringLiteral("sub/mail.mbx")}) {
      files_.append(folder_.filePath(name));
      DataSession data;
      ASSERT_TRUE(CreateDatabaseFile(data, files_.last(), kOld, [&data] {
        return ResultOf(data, data.Execute(QStringLiteral("CREATE TABLE t (V)")) &&
                                  CompleteSchema(*data.OpenConnection()));
      })) << data.LastError().text.toStdString();
    }
  }
  PasswordChange Change(DataSession& data) {
    return {data, files_[0] + QStringLiteral(".decided"), files_};
  }
  // The one password that opens every file; empty when there is no such.
  QString Password() {
    QStringList opening;
    for (const QString& password : {kOld, kNew}) {
      int opened = 0;
      for (const QString& file : files_) {
        DataSession data;
        if (data.TestPassword(file, password)) ++opened;
        data.CloseAll();
      }
      if (opened == files_.size()) opening.append(password);
      if (opened > 0 && opened < files_.size()) return {};
    }
    return opening.size() == 1 ? opening.first() : QString();
  }
  // Runs a change that meets its end at a step, then what the next login runs.
  PasswordChange::Outcome RunTo(int step, bool dies, bool* reached) {
    DataSession data;
    PasswordChange change = Change(data);
    int steps = 0;
    *reached = false;
    change.BeforeStep = [&](PasswordStep, const QString&) {
      if (steps++ != step) return true;
      *reached = true;
      if (dies) throw Death();
      return false;
    };
    PasswordChange::Outcome outcome = PasswordChange::Outcome::Unchanged;
    try {
      outcome = change.Run(from_, to_).outcome;
    } catch (const Death&) {
      outcome = QFile::exists(files_[0] + QStringLiteral(".decided"))
                    ? PasswordChange::Outcome::Decided
                    : outcome;
    }
    data.CloseAll();
    return outcome;
  }
  QTemporaryDir folder_;
  QStringList files_;
  QString from_ = kOld;
  QString to_ = kNew;
};

TEST_F(PasswordStepsTest, WhereverItStopsAllFilesHaveOnePassword) {
  constexpr int kSteps = 3 * 2 + 1 + 2 + 1 + 2;  // copies, the marker, replacing, its end, checks
  for (const bool dies : {false, true}) {
    // Every step is one of a death; a failure is one of few in the short form.
    for (int step = 0; step <= kSteps; step += dies ? 1 : test::Rounds(4, 1)) {
      bool reached = false;
      const PasswordChange::Outcome outcome = RunTo(step, dies, &reached);
      EXPECT_EQ(reached, step < kSteps);
      DataSession next;
      PasswordChange rest = Change(next);
      const Result<> finished = rest.Finish();
      EXPECT_TRUE(finished) << finished.Error().text.toStdString();
      EXPECT_FALSE(rest.IsUnfinished());
      const QString password = Password();
      EXPECT_EQ(reached, outcome != PasswordChange::Outcome::Changed) << step;
      // Steps after the marker has gone leave the new password without a marker.
      const bool isNew = outcome != PasswordChange::Outcome::Unchanged || (dies && password == to_);
      EXPECT_EQ(password, isNew ? to_ : from_) << "step " << step << " dies " << dies;
      if (password == to_) std::swap(from_, to_);
      for (const QString& file : files_) {
        EXPECT_EQ(QFileInfo(file).dir().entryList({QStringLiteral("*.rekeyed*")}), QStringList());
      }
    }
  }
}

// What stands on the disk is asked, and not what was written: a copy that opens with no password
// takes no file's place, and a file that opens with the old one is not called changed.
TEST_F(PasswordStepsTest, WhatTheDiskHoldsDecidesWhetherItIsChanged) {
  const auto run = [this](PasswordStep at, const std::function<void(const QString&)>& spoil) {
    DataSession data;
    PasswordChange change = Change(data);
    change.BeforeStep = [&](PasswordStep step, const QString& file) {
      if (step == at && file == files_[1]) spoil(file);
      return true;
    };
    const PasswordChange::Outcome outcome = change.Run(kOld, kNew).outcome;
    data.CloseAll();
    return outcome;
  };
  const QString aside = folder_.filePath(QStringLiteral("aside"));
  ASSERT_TRUE(QFile::copy(files_[1], aside));
  EXPECT_EQ(run(PasswordStep::VerifyCopy,
                [](const QString& file) {
                  QFile copy(file + QStringLiteral(".rekeyed"));
                  ASSERT_TRUE(copy.open(QIODevice::ReadWrite));
                  copy.write(QByteArray(4096, 'x'));
                }),
            PasswordChange::Outcome::Unchanged);
  EXPECT_EQ(Password(), kOld);
  EXPECT_EQ(run(PasswordStep::Verify,
                [&aside](const QString& file) {
                  ASSERT_TRUE(QFile::remove(file) && QFile::copy(aside, file));
                }),
            PasswordChange::Outcome::Decided);
}

TEST_F(PasswordStepsTest, AMissingOrDamagedCopyIsAnErrorAndNeverSuccess) {
  constexpr int kFirstReplace = 7;
  bool reached = false;
  ASSERT_EQ(RunTo(kFirstReplace, true, &reached), PasswordChange::Outcome::Decided);
  const QString copy = files_[1] + QStringLiteral(".rekeyed");
  const QString aside = folder_.filePath(QStringLiteral("aside"));
  ASSERT_TRUE(QFile::rename(copy, aside));
  DataSession data;
  for (const QByteArray& wrong : {QByteArray(), QByteArray(8192, 'x')}) {
    if (!wrong.isEmpty()) test::WriteFile(copy, wrong);
    PasswordChange rest = Change(data);
    const Result<> finished = rest.Finish();
    EXPECT_FALSE(finished);
    EXPECT_TRUE(finished.Error().text.contains(u"mail.mbx")) << finished.Error().text.toStdString();
    EXPECT_TRUE(rest.IsUnfinished());
    EXPECT_EQ(rest.Run(kOld, kNew).outcome, PasswordChange::Outcome::Unchanged);
  }
  QFile::remove(copy);
  ASSERT_TRUE(QFile::rename(aside, copy));
  PasswordChange rest = Change(data);
  EXPECT_TRUE(rest.Finish());
  EXPECT_EQ(Password(), kNew);
}

// A change of how keys are derived would leave every file shut.
TEST(FileKeys, StayWhatTheyAre) {
  const QByteArray ours = QByteArray::fromHex("000102030405060708090a0bd3392829");
  const QByteArray engines = QByteArray::fromHex("000102030405060708090a0b0c0d0e0f");
  EXPECT_TRUE(FileKey::IsOurs(kOld, ours));
  EXPECT_FALSE(FileKey::IsOurs(kOld, engines));
  EXPECT_FALSE(FileKey::IsOurs({}, ours)) << "without a password there is nothing to derive from";
  const QString code = FileKey::FromCode(QStringLiteral("ABCDE"));
  const QByteArray coded = QByteArray::fromHex("000102030405060708090a0b4eedb02e");
  EXPECT_TRUE(FileKey::IsOurs(code, coded) && FileKey::IsUnderCode(coded));
  EXPECT_FALSE(FileKey::IsOurs(code, ours) || FileKey::IsUnderCode(ours));
  EXPECT_EQ(FileKey::Raw(code, coded).toHex(),
            "52c61d323938c8cde9285b6e9f1d9ec4ebe4d80dd7c7a64f1041eb0186e25593");
  EXPECT_EQ(FileKey::Raw(code, engines), FileKey::Raw({}, engines)) << "older copies open too";
  EXPECT_EQ(FileKey::Identity(coded), FileKey::Identity(ours));
  EXPECT_EQ(FileKey::Raw(kOld, ours).toHex(),
            "ea1e2eec79add0aa8a820bc95211e1ae4e28d08254c6e6eecc42308e581e324c");
  EXPECT_EQ(FileKey::Raw(kOld, engines).toHex(),
            "406cee99bae634e23d0dca42102e0ba36e26f5eac86bb1a9db395ce08f369cd0");
}

TEST_F(PasswordStepsTest, TheFilesOfAPasswordShareASecretAndHaveKeysOfTheirOwn) {
  const QByteArray first = FileStart(files_[0], FileKey::kSaltBytes);
  const QByteArray second = FileStart(files_[1], FileKey::kSaltBytes);
  EXPECT_TRUE(FileKey::IsOurs(kOld, first) && FileKey::IsOurs(kOld, second));
  EXPECT_EQ(first.first(8), second.first(8));
  EXPECT_NE(FileKey::Raw(kOld, first), FileKey::Raw(kOld, second));
}

// A file of an earlier version, whose key the engine derives.
TEST_F(PasswordStepsTest, OlderFilesOpenAndGetAKeyOfTodayUnderTheSamePassword) {
  for (const QString& file : files_) ASSERT_TRUE(QFile::remove(file));
  sqlite3* handle = nullptr;
  ASSERT_EQ(sqlite3_open(files_[0].toUtf8().constData(), &handle), SQLITE_OK);
  ASSERT_EQ(sqlite3_key(handle, "vorn-file-key:old", 17), SQLITE_OK);
  const QByteArray make =
      "PRAGMA cipher_page_size = 4096; CREATE TABLE t (V); INSERT INTO t VALUES"
      " ('kept'); PRAGMA application_id = " +
      QByteArray::number(kApplicationId);
  ASSERT_EQ(sqlite3_exec(handle, make.constData(), nullptr, nullptr, nullptr), SQLITE_OK);
  sqlite3_close(handle);
  EXPECT_EQ(Password(), QString()) << "the other file is missing";
  files_.removeLast();
  EXPECT_EQ(Password(), kOld);
  DataSession data;
  PasswordChange renewal = Change(data);
  EXPECT_TRUE(renewal.AnyKeyIsOlder(kOld));
  const QString mark = FileMark(files_[0]);
  EXPECT_TRUE(renewal.AnyKeyIsOlder({}));
  EXPECT_EQ(renewal.Run(kOld, kOld).outcome, PasswordChange::Outcome::Changed);
  EXPECT_FALSE(renewal.AnyKeyIsOlder(kOld));
  EXPECT_EQ(FileMark(files_[0]), mark) << "a lost file is still told from another";
  EXPECT_EQ(renewal.Run(kOld, kNew).outcome, PasswordChange::Outcome::Changed);
  EXPECT_EQ(renewal.Run(kNew, {}).outcome, PasswordChange::Outcome::Changed);
  const QString code = FileKey::FromCode(QStringLiteral("ABCDE"));
  EXPECT_TRUE(renewal.AnyKeyIsOlder(code));
  EXPECT_TRUE(data.TestPassword(files_[0], code));
  EXPECT_EQ(renewal.Run(code, code).outcome, PasswordChange::Outcome::Changed);
  EXPECT_FALSE(renewal.AnyKeyIsOlder(code));
  EXPECT_FALSE(data.TestPassword(files_[0], {}));
  EXPECT_EQ(renewal.Run(code, kOld).outcome, PasswordChange::Outcome::Changed);
  EXPECT_EQ(FileMark(files_[0]), mark);
  EXPECT_EQ(Password(), kOld);
  ASSERT_TRUE(data.Open(files_[0], kOld));
  ASSERT_TRUE(data.OpenRecordset(QStringLiteral("SELECT V FROM t"), CursorKind::ForwardOnly));
  EXPECT_EQ(data.Recordset()->Fields(u"V").toString(), QStringLiteral("kept"));
}

}  // namespace
}  // namespace vorn
