#include "frame/profile_login.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>

#include "mail/outbox.h"
#include "objects/any_object.h"
#include "objects/file_age.h"
#include "objects/lost_files.h"
#include "objects/object_loader.h"
#include "objects/object_types.h"
#include "objects/profile.h"
#include "objects/select_objects.h"
#include "objects/standard_objects.h"
#include "storage/databases.h"
#include "storage/file_key.h"
#include "storage/file_lock.h"
#include "storage/known_damage.h"
#include "storage/profile_bag.h"
#include "storage/recovery_code.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kFirstStartWaitMs = 10000;

QString FirstStartLock(const Context& context) {
  return context.AppFolder + QStringLiteral("navi.lock");
}

QString ProfilePath(const Context& context, const Disk& profile) {
  return PlatformPath(context, ProfileBag(profile).File());
}

// The default profile is the one logged in last.
DiskPtr DefaultProfile(const Context& context) {
  const DiskCollectionPtr profiles =
      SelectObjects(context.Objects, *context.Session, object_type::kProfile);
  for (const DiskPtr& profile : *profiles) {
    if (AnyObject(*profile).IsDefault()) return profile;
  }
  return profiles->Count() == 1 ? profiles->First() : nullptr;
}

bool Fail(const Context& context, const QString& sentence, QString* error) {
  *error = sentence + context.Data.LastError().text;
  return false;
}

// A profile's very first login makes its objects; two of them at once make them once.
bool MakeStandardObjects(Context& context) {
  if (context.Objects.Contains(fixed_serial::kSettings)) return CreateStandardObjects(context);
  FileLock lock(FirstStartLock(context));
  return lock.Take(FileLock::Kind::Exclusive, kFirstStartWaitMs) == FileLock::Result::Taken &&
         LoadObjects(context, DatabaseKind::Profile, context.Objects) &&
         CreateStandardObjects(context);
}

// A damaged mail file keeps nobody out: what of it can be read, and what not, is for the lists and
// the check to tell.
bool OpensMail(Context& context) {
  return CreateDatabase(context, DatabaseKind::Mail) ||
         context.Data.LastError().kind == StorageError::Kind::Damaged;
}

// What waits in an older copy of a mail file may have been sent, and what was received since, and
// deleted on the server, is not in it. The file counts as damaged until the user decides.
void SettleOlderFiles(Context& context) {
  const QStringList older = OlderFiles(context);
  // The right file may have come back in the place of an older one.
  for (const QString& file : ProfileFiles(context, *context.Session).mid(1)) {
    if (!older.contains(file) && IsNoted(file, kOlderFile) && !WasOlder(context, file)) {
      ForgetDamage(file, kOlderFile);
    }
  }
  for (const QString& file : older) {
    context.Data.PutDamage(file, {kOlderFile});
    if (Outbox(context, file).DoubtWaiting() && NoteDamage(file, kOlderFile)) {
      AcceptAge(context, file);
    }
  }
}

// The files of a profile that are there, without its own database.
QStringList MailFiles(const Context& context, const Disk& profile) {
  QStringList files = ProfileFiles(context, profile).mid(1);
  files.removeIf([](const QString& file) { return !HasContent(file); });
  return files;
}

bool OpensAny(Context& context, const QStringList& files, const QString& password) {
  return std::any_of(files.begin(), files.end(), [&](const QString& file) {
    return context.Data.TestPassword(file, password);
  });
}

// Without older copies: these open with a password that was given up.
QStringList CurrentFiles(const Context& context, const Disk& profile, QStringList files) {
  files.removeIf(
      [&](const QString& file) { return IsUnderOtherKeyThanNoted(context, profile, file); });
  return files;
}

// A profile's own database that was copied back from before the password changed opens with the
// password of then, and with no other. Who worked with it would have everything else taken for
// damaged.
bool IsOlderThanTheOthers(Context& context, const Disk& profile, const QString& password,
                          const QStringList& mail) {
  const QString path = ProfilePath(context, profile);
  const QStringList current = CurrentFiles(context, profile, mail);
  if (!IsUnderOtherKeyThanNoted(context, profile, path) || current.isEmpty() ||
      OpensAny(context, current, password)) {
    return false;
  }
  context.Data.FailWith(
      {StorageError::Kind::Other,
       Ui::tr("「%1」はこのパスワードで開けますが、メッセージのファイルは開けません。どちらかが、"
              "パスワードが変わる前の古い複製です。今のパスワードを入力してください。")
           .arg(QFileInfo(path).fileName())});
  return true;
}

// All files of a profile have one password, so each of them tells of the others: whether it was the
// right one when the profile's own database is damaged or lost.
bool PasswordFits(Context& context, const Disk& profile, const QString& password) {
  const QString path = ProfilePath(context, profile);
  const QStringList mail = MailFiles(context, profile);
  if (!HasContent(path)) return mail.isEmpty() || OpensAny(context, mail, password);
  if (context.Data.TestPassword(path, password)) {
    return !IsOlderThanTheOthers(context, profile, password, mail);
  }
  const StorageError reason = context.Data.LastError();
  if (reason.kind == StorageError::Kind::WrongPassword && OpensAny(context, mail, password)) {
    if (!OpensAny(context, CurrentFiles(context, profile, mail), password)) {
      return context.Data.FailWith(
          {StorageError::Kind::Other,
           Ui::tr("このパスワードで開けるのは、最後に使ったときのものではないファイルだけです。入力"
                  "した"
                  "のが変える前のパスワードなら、今のパスワードを入力してください。")});
    }
    const QList<LostFile> lost = LostFiles(context, profile, password);
    if (std::any_of(lost.begin(), lost.end(),
                    [&path](const LostFile& file) { return file.path == path; })) {
      return true;
    }
    return context.Data.FailWith(
        {StorageError::Kind::Damaged, Ui::tr("「%1」: ファイルの先頭が壊れています。パスワードは"
                                             "正しく、メッセージのファイルは開けます。")
                                          .arg(QFileInfo(path).fileName())});
  }
  return context.Data.FailWith(reason);
}

// A whole folder that was copied back from before the password changed opens with the password of
// then. So it looks, too, when the program was killed before it could note the keys of a new one.
bool HaveAllOtherKeys(const Context& context, const Disk& profile) {
  const QStringList files = ProfileFiles(context, profile);
  return std::all_of(files.begin(), files.end(), [&](const QString& file) {
    return !HasContent(file) || IsUnderOtherKeyThanNoted(context, profile, file);
  });
}

// Of a file whose code does not open a profile that is under one.
QString CodeMissing(const CodeFile& file) {
  const QString name = QDir::toNativeSeparators(file.Path());
  if (file.NamesSecret() && file.Code().isEmpty()) {
    return Ui::
        tr("プロファイルの鍵はデスクトップのキーリングにあり、読めません（鍵のファイル「%1」）。"
           "キーリングのロックを解除してもう一度ログインしてください。鍵がなくなっているときは、"
           "パスワードの欄に回復コードを入力してください。")
            .arg(name);
  }
  const QString sentence =
      !file.Code().isEmpty()
          ? Ui::tr("鍵のファイル「%1」は、このプロファイルのものではありません。")
      : QFileInfo::exists(file.Path())
          ? Ui::tr("鍵のファイル「%1」が壊れているか、読む権限がありません。")
          : Ui::tr("鍵のファイル「%1」がありません。");
  return sentence.arg(name) +
         Ui::tr("元のファイルを戻すか、パスワードの欄に回復コードを入力してください。");
}

// What a user can do who has no password and whose code is not remembered any more.
void TellOfFiles(Context& context, const Disk& profile, const QString& typed) {
  if (context.Data.LastError().kind != StorageError::Kind::WrongPassword) return;
  const CodeFile file = CodeFileOf(context, profile);
  if (RecoveryCode::IsMistyped(typed)) {
    context.Data.FailWith(
        {StorageError::Kind::Other, Ui::tr("回復コードを入力したのなら、打ち間違いがあります。")});
  } else if (typed.isEmpty() && HasFileUnderCode(context, profile)) {
    context.Data.FailWith({StorageError::Kind::Other, CodeMissing(file)});
  } else if (HaveAllOtherKeys(context, profile)) {
    context.Data.FailWith(
        {StorageError::Kind::Other,
         Ui::tr("プロファイルのファイルは、どれも最後に使ったときのものではありません。古い複製なら"
                "そのときのパスワードで、パスワードを変えた直後に異常終了したのなら新しいパスワード"
                "で開けます。")});
  }
}

// After the list of profiles was made anew the true names stand in the profiles' own databases.
DiskPtr FindRebuiltProfile(Context& context, const QString& name, const QString& password) {
  for (const DiskPtr& profile : context.Objects) {
    if (IsRebuilt(*profile) && CheckLogin(context, profile, password) != LoginCheck::Refused &&
        AnyObject(*profile).Name() == name) {
      return profile;
    }
  }
  return nullptr;
}

QStringList AsPasswords(const QStringList& typed) {
  QStringList passwords;
  for (const QString& text : typed) {
    const QString code = RecoveryCode::Read(text);
    passwords.append(code.isEmpty() ? text : FileKey::FromCode(code));
  }
  return passwords;
}

}  // namespace

DiskPtr FindProfile(const Context& context, const QString& name) {
  return FindObjectByName(context, object_type::kProfile, name);
}

LoginCheck CheckLogin(Context& context, const DiskPtr& profile, const QString& typed) {
  if (!HoldProfile(context, *profile)) return LoginCheck::Refused;
  const QString password = PasswordFor(context, *profile, typed);
  if (!PasswordFits(context, *profile, password)) {
    TellOfFiles(context, *profile, typed);
    // Who only tried must not keep others from their work.
    if (context.Session->SerialID() != profile->SerialID()) context.Lock.reset();
    return LoginCheck::Refused;
  }
  RestoreProfile(context, *profile, password);
  const QList<LostFile> lost = LostFiles(context, *profile, password);
  if (lost.isEmpty()) return LoginCheck::Opens;
  context.Data.FailWith({StorageError::Kind::NotFound, LostFilesText(lost)});
  return LoginCheck::FilesLost;
}

QString LoginRefusal(const Context& context) {
  const StorageError& reason = context.Data.LastError();
  return reason.kind == StorageError::Kind::WrongPassword
             ? Ui::tr("ログインできませんでした。入力したプロファイル情報を確認してください。")
             : Ui::tr("ログインできませんでした。") + reason.text;
}

bool TestProfilePassword(Context& context, const DiskPtr& profile, const QString& password) {
  return CheckLogin(context, profile, password) == LoginCheck::Opens;
}

bool ResolveLostFiles(Context& context, const DiskPtr& profile, const QString& typed,
                      const LostFileChoice& choice) {
  QString password;
  if (!SettlePassword(context, *profile, typed, &password)) return false;
  const QStringList former =
      choice.reconnect.isEmpty()
          ? QStringList()
          : AsPasswords(choice.former) + FormerPasswords(context, *profile, password);
  QStringList opened;
  for (const LostFile& lost : LostFiles(context, *profile, password)) {
    bool resolved = false;
    for (const QString& file : choice.reconnect) {
      if (resolved) break;
      const auto opening = ReconnectFile(context, lost, file, password, former);
      resolved = opening.has_value();
      if (resolved) opened.append(*opening);
    }
    if (!resolved && choice.create) {
      resolved = ReplaceLostFile(context, *profile, lost, password);
    }
    if (!resolved) return false;
  }
  // Other copies may be under them.
  return std::all_of(opened.begin(), opened.end(), [&](const QString& before) {
    return NoteFormerCode(context, *profile, password, before);
  });
}

void BeginLogin(Context& context, const Disk& profile, const QString& password) {
  ProfileBag::SetPassword(*context.Session, password);
  ProfileBag::SetAnswer(*context.Session, profile.SerialID());
  ProfileBag::SetLogin(*context.Session);
}

bool RunLoginStep(Context& context, LoginStep step, const QString& typed, QString* error) {
  switch (step) {
    case LoginStep::LoadProfiles:
      return LoadObjects(context, DatabaseKind::Navigator, context.Objects) ||
             Fail(context, Ui::tr("プロファイルの一覧を読み込めません。"), error);
    case LoginStep::EnterProfile: {
      const DiskPtr profile = context.Objects.Find(ProfileBag(*context.Session).Answer());
      if (profile == nullptr) return Fail(context, Ui::tr("プロファイルがありません。"), error);
      if (!HoldProfile(context, *profile)) {
        return Fail(context, Ui::tr("プロファイルを使えません。"), error);
      }
      QString password;
      if (!SettlePassword(context, *profile, typed, &password)) {
        return Fail(context, Ui::tr("プロファイルを使えません。"), error);
      }
      EnterProfile(context, profile, RenewFileKeys(context, *profile, password));
      return true;
    }
    case LoginStep::MarkDefault:
      MarkDefaultProfile(context);
      return true;
    case LoginStep::LoadObjects:
      return LoadObjects(context, DatabaseKind::Profile, context.Objects) ||
             Fail(context, Ui::tr("プロファイルを読み込めません。"), error);
    case LoginStep::StandardObjects:
      if (MakeStandardObjects(context) && OpensMail(context)) {
        SettleOlderFiles(context);
        NoteFiles(context);  // tried again at the end
        return true;
      }
      return Fail(context, Ui::tr("プロファイルに書き込めません。"), error);
  }
  return false;
}

bool LogIn(Context& context, const QString& name, const QString& password, QString* error,
           const LostFileChoice& choice) {
  DiskPtr profile = name.isEmpty() ? DefaultProfile(context) : FindProfile(context, name);
  if (profile == nullptr && !name.isEmpty()) profile = FindRebuiltProfile(context, name, password);
  if (profile == nullptr) {
    *error = name.isEmpty() ? Ui::tr("プロファイルが複数あります。名前を指定してください。")
                            : Ui::tr("プロファイル「%1」はありません。").arg(name);
    return false;
  }
  LoginCheck check = CheckLogin(context, profile, password);
  const bool wasLost = check == LoginCheck::FilesLost;
  const bool decided = choice.create || !choice.reconnect.isEmpty();
  if (wasLost && decided) {
    if (!ResolveLostFiles(context, profile, password, choice)) {
      return Fail(context, Ui::tr("なくなったファイルを元に戻せません。"), error);
    }
    check = CheckLogin(context, profile, password);
  }
  if (check == LoginCheck::Opens && !choice.reconnect.isEmpty() && !wasLost) {
    *error = Ui::tr("なくなったファイルはないので、つなぎ直しません。");
    return false;
  }
  if (check == LoginCheck::FilesLost) return Fail(context, {}, error);
  if (check == LoginCheck::Refused) {
    *error = LoginRefusal(context);
    return false;
  }
  BeginLogin(context, *profile, password);
  for (int step = 0; step < kLoginSteps; ++step) {
    if (!RunLoginStep(context, static_cast<LoginStep>(step), password, error)) return false;
  }
  return true;
}

DiskPtr CreateFirstProfile(Context& context) {
  FileLock lock(FirstStartLock(context));
  if (lock.Take(FileLock::Kind::Exclusive, kFirstStartWaitMs) != FileLock::Result::Taken ||
      !LoadObjects(context, DatabaseKind::Navigator, context.Objects)) {
    return nullptr;
  }
  if (const DiskPtr made = DefaultProfile(context)) return made;
  const DiskPtr profile = CreateProfile(context, QStringLiteral("Administrator"));
  if (profile != nullptr) context.Objects.Add(profile);
  return profile;
}

}  // namespace vorn
