// Profiles without a password of their user's, whose recovery code is remembered.

#include <gtest/gtest.h>

#include "frame/profile_login.h"
#include "frame/start_up.h"
#include "mail/store/mail_store.h"
#include "objects/profile/profile.h"
#include "objects/profile/profile_password.h"
#include "storage/databases.h"
#include "storage/keys/file_key.h"
#include "storage/keys/recovery_code.h"
#include "storage/session/password_change.h"
#include "support/fake_secrets.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

using test::ReadFile;
using test::TestProfile;
using test::WriteFile;

void CopyFolder(const QString& from, const QString& to) {
  QDirIterator files(from, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
  while (files.hasNext()) {
    const QString path = to + files.next().mid(from.size());
    ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()) && QFile::copy(files.filePath(), path));
  }
}

class RecoveryCodeLogin : public testing::Test {
 protected:
  void SetUp() override {
    profile_.Store("Subject: kept\r\n\r\n");
    Remember();
  }
  void Remember() {
    files_ = ProfileFiles(profile_.Get(), *profile_.Get().Session);
    codeFile_ = CodeFileOf(profile_.Get(), *profile_.Get().Session).Path();
    code_ = FileKey::CodeIn(profile_.Get().Session->Text(u"password"));
  }
  // As another start with what was typed; the reason when it is refused.
  QString LogInWith(const QString& typed, const QString& folder) {
    Context context;
    const Result<> entered = test::Enter(context, folder, typed);
    if (!entered) return entered.Error().text;
    underCode_ = IsUnderCode(context, *context.Session);
    const OpenedDatabase mail(context, DatabaseKind::Mail);
    if (!mail || !context.Data.OpenRecordset(QStringLiteral("SELECT FIELD_SUBJECT FROM mail"),
                                             CursorKind::ForwardOnly)) {
      return context.Data.LastError().text;
    }
    EXPECT_EQ(context.Data.Recordset()->Fields(u"FIELD_SUBJECT").toString(),
              QStringLiteral("kept"));
    context.Data.CloseAll();
    return {};
  }
  QString LogInWith(const QString& typed) { return LogInWith(typed, profile_.Folder()); }
  bool Opens(const QString& file, const QString& password) {
    DataSession data;
    const bool opens = data.TestPassword(file, password);
    data.CloseAll();
    return opens;
  }
  // The profile as an earlier version left it, without a code.
  void MakeOlder() {
    Context& context = profile_.Get();
    context.Data.CloseAll();
    PasswordChange change(context.Data, files_[0] + QStringLiteral(".decided"), files_);
    const QString between = QStringLiteral("x");  // no program re-keys from a code to nothing
    ASSERT_EQ(change.Run(FileKey::FromCode(code_), between).outcome,
              PasswordChange::Outcome::Changed);
    ASSERT_EQ(change.Run(between, {}).outcome, PasswordChange::Outcome::Changed);
    context.Data.CloseAll();
    context.Lock.reset();
    ASSERT_TRUE(QFile::remove(codeFile_));
  }

  TestProfile profile_;
  QStringList files_;
  QString codeFile_;
  QString code_;
  QString error_;
  bool underCode_ = false;
};

TEST_F(RecoveryCodeLogin, TheFirstStartMakesACodeThatTravelsWithTheFolder) {
  EXPECT_EQ(RecoveryCode::Read(QString::fromLatin1(ReadFile(codeFile_))), code_);
  EXPECT_FALSE(Opens(files_[0], {}) || Opens(files_[1], {})) << "a key that anybody can make";
  EXPECT_NE(TestProfile().Get().Session->Text(u"password"), FileKey::FromCode(code_));
  profile_.Get().Data.CloseAll();
  QTemporaryDir elsewhere;
  CopyFolder(profile_.Folder(), elsewhere.path() + u'/');
  // There the list of profiles has another user's key.
  ASSERT_TRUE(QFile::remove(elsewhere.filePath(QStringLiteral("navi.mbx"))));
  EXPECT_EQ(LogInWith({}, elsewhere.path()), QString());
  EXPECT_TRUE(underCode_);
}

TEST_F(RecoveryCodeLogin, WithoutTheFileTheTypedCodeOpensTheProfileAndIsRememberedAgain) {
  Context& context = profile_.Get();
  context.Data.CloseAll();
  const QByteArray mail = ReadFile(files_[1]);
  QString mistyped = code_;
  mistyped[0] = mistyped[0] == u'7' ? u'8' : u'7';
  const QList<std::function<void()>> spoil = {
      [&] {}, [&] { WriteFile(codeFile_, {}); },
      [&] { WriteFile(codeFile_, mistyped.toLatin1() + '\n'); },
      [&] { WriteFile(codeFile_, RecoveryCode::Make().toLatin1() + '\n'); },
      // What one that may not be read gives, for root as well.
      [&] { QDir().mkpath(codeFile_); }};
  for (const auto& spoilt : spoil) {
    ASSERT_TRUE(QFile::remove(codeFile_));
    spoilt();
    EXPECT_TRUE(LogInWith({}).contains(u"回復コードを入力")) << LogInWith({}).toStdString();
    EXPECT_TRUE(LogInWith(mistyped).contains(u"打ち間違い"));
    EXPECT_TRUE(LogInWith(RecoveryCode::Make()).contains(u"確認してください"));
    EXPECT_TRUE(LogInWith(QStringLiteral("secret")).contains(u"確認してください"));
    EXPECT_EQ(ReadFile(files_[1]), mail);
    EXPECT_EQ(LogInWith(code_.toLower().replace(u'-', u' ')), QString());
    EXPECT_EQ(LogInWith({}), QString()) << "remembered";
  }
}

// A data folder whose profile's code is the desktop's to keep.
class DesktopSecretLogin : public testing::Test {
 protected:
  QString LogInWith(const QString& typed, const QString& folder,
                    const std::shared_ptr<SecretStore>& secrets) {
    context_ = std::make_unique<Context>();
    context_->Secrets = secrets;
    const Result<> started = StartUp(*context_, folder);
    if (!started) return started.Error().text;
    if (context_->Objects.IsEmpty()) {
      EXPECT_TRUE(CreateFirstProfile(*context_));
    }
    const Result<> entered = LogIn(*context_, {}, typed);
    RememberCode(*context_);
    context_->Data.CloseAll();
    return entered.Error().text;
  }
  QString LogInWith(const QString& typed) { return LogInWith(typed, folder_.path(), secrets_); }
  CodeFile File() const { return CodeFileOf(*context_, *context_->Session); }
  // Whether the code stands in any file.
  bool IsOnDisk(const QString& folder, const QString& code) {
    QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
      if (ReadFile(files.next()).contains(code.left(11).toLatin1())) return true;
    }
    return false;
  }

  QTemporaryDir folder_;
  std::shared_ptr<test::FakeSecrets> secrets_ = std::make_shared<test::FakeSecrets>();
  std::unique_ptr<Context> context_;
};

TEST_F(DesktopSecretLogin, APasswordTakesTheSecretsPlace) {
  ASSERT_EQ(LogInWith({}), QString());
  QTemporaryDir copy;
  CopyFolder(folder_.path(), copy.path() + u'/');
  const QString before = context_->Session->Text(u"password");
  const QString password = QStringLiteral("secret");
  ASSERT_TRUE(ChangeProfilePassword(*context_, *context_->Session, before, password));
  EXPECT_TRUE(File().Code().isEmpty());
  EXPECT_FALSE(LogInWith({}).isEmpty());
  ASSERT_EQ(LogInWith(password), QString());
  ASSERT_TRUE(ChangeProfilePassword(*context_, *context_->Session, password, {}));
  const QString code = FileKey::CodeIn(context_->Session->Text(u"password"));
  EXPECT_TRUE(secrets_->kept.values().contains(code));
  EXPECT_FALSE(IsOnDisk(folder_.path(), code));
  EXPECT_EQ(LogInWith({}), QString());
  EXPECT_EQ(LogInWith({}, copy.path(), secrets_), QString()) << "a copy from before";
}

TEST_F(DesktopSecretLogin, ALostSecretIsNotMissedForEver) {
  ASSERT_EQ(LogInWith({}), QString());
  const QString code = FileKey::CodeIn(context_->Session->Text(u"password"));
  const QString password = QStringLiteral("secret");
  secrets_->kept.clear();
  secrets_->refuses = true;
  ASSERT_EQ(LogInWith(code), QString());
  ASSERT_TRUE(
      ChangeProfilePassword(*context_, *context_->Session, FileKey::FromCode(code), password));
  ASSERT_EQ(LogInWith(password), QString());
  EXPECT_TRUE(ChangeProfilePassword(*context_, *context_->Session, password, {}));
  EXPECT_EQ(LogInWith({}), QString());
}

TEST_F(RecoveryCodeLogin, APasswordTakesItsPlaceAndGivesItBack) {
  Context& context = profile_.Get();
  const auto change = [&](const QString& from, const QString& to) {
    return ChangeProfilePassword(context, *context.Session, from, to);
  };
  EXPECT_FALSE(change({}, RecoveryCode::Make())) << "would be taken for a code at the login";
  ASSERT_TRUE(change({}, QStringLiteral("secret")));
  EXPECT_FALSE(QFile::exists(codeFile_));
  EXPECT_FALSE(Opens(files_[1], FileKey::FromCode(code_)));
  EXPECT_EQ(FormerPasswords(context), (QStringList{QString(), FileKey::FromCode(code_)}));
  EXPECT_TRUE(LogInWith({}).contains(u"確認してください"));
  // A program that died before it forgot the code.
  WriteFile(codeFile_, code_.toLatin1() + '\n');
  EXPECT_TRUE(LogInWith({}).contains(u"確認してください"));
  EXPECT_EQ(LogInWith(QStringLiteral("secret")), QString());
  EXPECT_FALSE(QFile::exists(codeFile_));
  // What was copied away before is still its user's.
  context.Lock.reset();
  ASSERT_TRUE(HoldProfile(context, *context.Session));
  ASSERT_TRUE(change(QStringLiteral("secret"), {}));
  const QString first = code_;
  Remember();
  EXPECT_NE(code_, first);
  EXPECT_EQ(LogInWith({}), QString());
  EXPECT_TRUE(underCode_ && FormerPasswords(context).contains(FileKey::FromCode(first)));
}

TEST_F(RecoveryCodeLogin, AFileThatWasAwayWhenThePasswordChangedComesBackUnderIt) {
  Context& context = profile_.Get();
  context.Data.CloseAll();
  QTemporaryDir away;
  const auto copyOf = [&away](const QString& file) {
    return away.filePath(QFileInfo(file).fileName());
  };
  for (const QString& file : files_) ASSERT_TRUE(QFile::copy(file, copyOf(file)));
  const QByteArray mail = ReadFile(files_[1]);
  const QString typed = QStringLiteral("secret");
  ASSERT_TRUE(ChangeProfilePassword(context, *context.Session, {}, typed));
  context.Data.CloseAll();
  context.Lock.reset();
  // The profile's database remembers the code; when it is lost as well, what lies beside the files.
  for (const bool all : {false, true}) {
    LostFileChoice choice;
    for (const QString& file : all ? files_ : files_.mid(1)) {
      ASSERT_TRUE(QFile::remove(file));
      choice.reconnect.append(copyOf(file));
    }
    if (all) WriteFile(copyOf(codeFile_), code_.toLatin1());
    Context next;
    ASSERT_TRUE(test::Enter(next, profile_.Folder(), typed, choice));
    next.Data.CloseAll();
    EXPECT_EQ(LogInWith(typed), QString());
    EXPECT_FALSE(underCode_);
    EXPECT_TRUE(Opens(files_[0], typed) && Opens(files_[1], typed));
    EXPECT_EQ(ReadFile(copyOf(files_[1])), mail);
  }
}

// Under the code of then, which the profile remembers, or under a password that was typed, which
// only its user knows.
TEST_F(RecoveryCodeLogin, AnOlderCopyInThePlaceOfAFileIsToldAndBroughtUnderThePassword) {
  Context& context = profile_.Get();
  const auto logsIn = [&](const QString& typed, const LostFileChoice& choice) {
    Context next;
    const Result<> opens = test::Enter(next, profile_.Folder(), typed, choice);
    error_ = opens.Error().text;
    next.Data.CloseAll();
    return static_cast<bool>(opens);
  };
  QString before;
  for (const QString& typed : {QStringLiteral("secret"), QStringLiteral("other")}) {
    context.Data.CloseAll();
    const QList<QByteArray> older{ReadFile(files_[0]), ReadFile(files_[1])};
    ASSERT_TRUE(HoldProfile(context, *context.Session));
    ASSERT_TRUE(ChangeProfilePassword(context, *context.Session, before, typed));
    context.Data.CloseAll();
    context.Lock.reset();
    for (int i : {0, 1}) {
      const QString& file = files_[i];
      WriteFile(file, older[i]);
      EXPECT_FALSE(logsIn(typed, {}));
      EXPECT_TRUE(error_.contains(u"古い複製")) << qPrintable(error_);
      // A password that was given up does not come back by way of a copy.
      EXPECT_FALSE(logsIn(before, {false, {file}, {typed}}));
      EXPECT_TRUE(i == 0 || before.isEmpty() || error_.contains(u"変える前のパスワード"))
          << qPrintable(error_);
      EXPECT_EQ(ReadFile(file), older[i]);
      // What came back with the profile's own database is remembered.
      LostFileChoice choice{false, {file}};
      EXPECT_EQ(logsIn(typed, choice), before.isEmpty() && i == 1) << qPrintable(error_);
      choice.former = {QStringLiteral("wrong"), before.isEmpty() ? code_ : before};
      EXPECT_TRUE(Opens(file, typed) || logsIn(typed, choice)) << qPrintable(error_);
      EXPECT_TRUE(logsIn(typed, {})) << qPrintable(error_);
      EXPECT_TRUE(Opens(file, typed));
      EXPECT_EQ(ReadFile(file + QStringLiteral(".other1")), older[i]);
      ASSERT_TRUE(QFile::remove(file + QStringLiteral(".other1")));
    }
    before = typed;
  }
}

TEST_F(RecoveryCodeLogin, TheCodeOfFilesThatAreAwayForTheMomentIsKept) {
  Context& context = profile_.Get();
  context.Data.CloseAll();
  QHash<QString, QByteArray> away;
  for (const QString& file : files_) {
    away[file] = ReadFile(file);
    ASSERT_TRUE(QFile::remove(file));
  }
  LostFileChoice choice;
  choice.create = true;
  const QString typed = QStringLiteral("secret");
  ASSERT_TRUE(ResolveLostFiles(context, context.Session, typed, choice));
  ASSERT_EQ(*CheckLogin(context, context.Session, typed), LoginCheck::Opens);
  ASSERT_TRUE(SettlePassword(context, *context.Session, typed));
  EXPECT_FALSE(QFile::exists(codeFile_));
  context.Data.CloseAll();
  for (const QString& file : files_) {
    QFile::remove(file + QStringLiteral("-wal"));
    WriteFile(file, away[file]);
  }
  EXPECT_EQ(LogInWith({}), QString());
  EXPECT_TRUE(QFile::exists(codeFile_));
}

TEST_F(RecoveryCodeLogin, AKeptFileOpensUnderTheCodeOrPasswordOfThen) {
  Context& context = profile_.Get();
  context.Data.CloseAll();
  const QString kept = QFileInfo(files_[0]).path() + QStringLiteral("/kept.mbx");
  ASSERT_TRUE(QFile::copy(files_[1], kept));
  ASSERT_TRUE(ChangeProfilePassword(context, *context.Session, {}, QStringLiteral("x")));
  EXPECT_FALSE(AdoptMailFile(context, kept, RecoveryCode::Make()));
  EXPECT_TRUE(AdoptMailFile(context, kept, code_.toLower()));
  EXPECT_TRUE(Opens(kept, QStringLiteral("x")));
  // Or under the password of then, which only its user knows.
  const QString typed = QFileInfo(kept).path() + QStringLiteral("/typed.mbx");
  ASSERT_TRUE(QFile::copy(kept, typed));
  ASSERT_TRUE(
      ChangeProfilePassword(context, *context.Session, QStringLiteral("x"), QStringLiteral("y")));
  EXPECT_FALSE(AdoptMailFile(context, typed, QStringLiteral("wrong")));
  EXPECT_TRUE(AdoptMailFile(context, typed, QStringLiteral("x")));
  EXPECT_TRUE(Opens(typed, QStringLiteral("y")));
}

TEST_F(RecoveryCodeLogin, FilesOfAnEarlierVersionGetACode) {
  MakeOlder();
  const QByteArray older = ReadFile(files_[1]);
  {
    Context other;  // has the profile, so that nothing can change
    ASSERT_TRUE(StartUp(other, profile_.Folder()));
    const DiskPtr held = FindProfile(other, QStringLiteral("Administrator"));
    ASSERT_TRUE(held != nullptr && HoldProfile(other, *held));
    EXPECT_EQ(LogInWith({}), QString());
    EXPECT_FALSE(underCode_ || QFile::exists(codeFile_));
  }
  const QString tried = QFileInfo(files_[0]).path() + QStringLiteral("/keys.tried");
  EXPECT_EQ(LogInWith({}), QString());
  EXPECT_FALSE(underCode_) << "tried once a day";
  ASSERT_TRUE(QFile::remove(tried));
  EXPECT_EQ(LogInWith({}), QString());
  EXPECT_TRUE(underCode_ && QFile::exists(codeFile_) && !QFile::exists(tried));
  EXPECT_FALSE(Opens(files_[1], {}));
  // A copy from before is read all the same, and gets the code.
  WriteFile(files_[1], older);
  EXPECT_EQ(LogInWith({}), QString());
  EXPECT_TRUE(underCode_);
}

TEST_F(RecoveryCodeLogin, AKillAtAnyMomentLeavesAProfileThatOpens) {
  for (int i = 0; i < 20; ++i) profile_.Store(QByteArray(200000, 'x'));
  MakeOlder();
  // How long a change lasts on this machine: until the first message is stored after it.
  int longest = 0;
  int between = 0;
  const int kills = test::Rounds(8, 100);  // at moments that lie as far from each other
  for (int kill = -1; kill < kills; ++kill) {
    QTemporaryDir copy;
    CopyFolder(profile_.Folder(), copy.path() + u'/');
    QProcess worker;
    QElapsedTimer run;
    run.start();
    // Not so many rounds that it comes to a change of the password, however slow the first run was.
    worker.start(QStringLiteral(VORN_STORE_WORKER), {copy.path(), QString(), QStringLiteral("1")});
    if (kill < 0) {
      ASSERT_TRUE(worker.waitForReadyRead(-1));
      longest = static_cast<int>(run.elapsed());
    } else {
      worker.waitForFinished(1 + longest * (2 * kill + 1) / (2 * kills));
    }
    worker.kill();
    worker.waitForFinished(-1);
    const QStringList left = QDir(copy.path()).entryList({QStringLiteral("_profile*")}, QDir::Dirs);
    const QDir folder(copy.filePath(left.first()));
    if (!folder.entryList({QStringLiteral("*.rekeyed")}, QDir::Files).isEmpty() ||
        folder.exists(QStringLiteral("profile.key"))) {
      between += kill >= 0 ? 1 : 0;
    }
    QFile::remove(folder.filePath(QStringLiteral("keys.tried")));
    EXPECT_EQ(LogInWith({}, copy.path()), QString()) << kill;
    EXPECT_TRUE(underCode_) << kill;
  }
  EXPECT_GT(between, 0) << "no kill met a change";
}

}  // namespace
}  // namespace vorn
