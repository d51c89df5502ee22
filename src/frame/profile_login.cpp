#include "frame/profile_login.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <tuple>

#include "mail/store/outbox.h"
#include "objects/any_object.h"
#include "objects/object_loader.h"
#include "objects/object_types.h"
#include "objects/profile/file_age.h"
#include "objects/profile/lost_files.h"
#include "objects/profile/profile.h"
#include "objects/profile/profile_password.h"
#include "objects/profile/standard_objects.h"
#include "objects/select_objects.h"
#include "storage/bags/profile_bag.h"
#include "storage/databases.h"
#include "storage/files/file_lock.h"
#include "storage/keys/file_key.h"
#include "storage/keys/recovery_code.h"
#include "storage/known_damage.h"
#include "storage/session/session_result.h"
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

StorageError Refusal(const QString& sentence) {
  return {StorageError::Kind::Other, sentence};
}

// Two programs at once make one first profile, and its objects once.
Result<> TakeFirstStart(FileLock& lock) {
  switch (lock.Take(FileLock::Kind::Exclusive, kFirstStartWaitMs)) {
    case FileLock::Result::Taken:
      return {};
    case FileLock::Result::Held:
      return StorageError{StorageError::Kind::Busy,
                          Ui::tr("ほかのプログラムがプロファイルを作成しています。しばらくしてから"
                                 "やり直してください。")};
    case FileLock::Result::Failed:
      break;
  }
  return Refusal(Ui::tr("データフォルダに書き込めません。"));
}

// A profile's very first login makes its objects; two of them at once make them once.
Result<> MakeStandardObjects(Context& context) {
  if (context.Objects.Contains(fixed_serial::kSettings)) return CreateStandardObjects(context);
  FileLock lock(FirstStartLock(context));
  if (const Result<> taken = TakeFirstStart(lock); !taken) return taken;
  const Result<> loaded = LoadObjects(context, DatabaseKind::Profile, context.Objects);
  return loaded ? CreateStandardObjects(context) : loaded;
}

// A damaged mail file keeps nobody out: what of it can be read, and what not, is for the lists and
// the check to tell.
Result<> MakeMail(Context& context) {
  const Result<> made = CreateDatabase(context, DatabaseKind::Mail);
  return made.Error().kind == StorageError::Kind::Damaged ? Result<>() : made;
}

// What waits in an older copy of a mail file may have been sent, and what was received since, and
// deleted on the server, is not in it. The file counts as damaged until the user decides.
void SettleOlderFiles(Context& context) {
  const QStringList older = OlderFiles(context);
  // The right file may have come back in the place of an older one.
  for (const QString& file : ProfileFiles(context, *context.Session).mid(1)) {
    if (!older.contains(file) && IsNoted(file, kOlderFile) && !WasOlder(context, file)) {
      std::ignore = ForgetDamage(file, kOlderFile);  // else it is asked about once more
    }
  }
  for (const QString& file : older) {
    context.Data.Damage().Add(file, {kOlderFile});
    if (Outbox(context, file).DoubtWaiting() && NoteDamage(file, {kOlderFile})) {
      std::ignore = AcceptAge(context, file);  // else it is asked about once more
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
Result<> FitsTheOthers(Context& context, const Disk& profile, const QString& password,
                       const QStringList& mail) {
  const QString path = ProfilePath(context, profile);
  const QStringList current = CurrentFiles(context, profile, mail);
  if (!IsUnderOtherKeyThanNoted(context, profile, path) || current.isEmpty() ||
      OpensAny(context, current, password)) {
    return {};
  }
  return Refusal(
      Ui::tr("「%1」はこのパスワードで開けますが、メッセージのファイルは開けません。どちらかが、"
             "パスワードが変わる前の古い複製です。今のパスワードを入力してください。")
          .arg(QFileInfo(path).fileName()));
}

// All files of a profile have one password, so each of them tells of the others: whether it was the
// right one when the profile's own database is damaged or lost.
Result<> PasswordFits(Context& context, const Disk& profile, const QString& password) {
  const QString path = ProfilePath(context, profile);
  const QStringList mail = MailFiles(context, profile);
  if (!HasContent(path)) {
    return ResultOf(context.Data, mail.isEmpty() || OpensAny(context, mail, password));
  }
  const Result<> opens = ResultOf(context.Data, context.Data.TestPassword(path, password));
  if (opens) return FitsTheOthers(context, profile, password, mail);
  const bool isDamaged = opens.Error().kind == StorageError::Kind::Damaged;
  if (isDamaged && OpensAny(context, mail, password)) return {};  // the user is asked about it
  if (opens.Error().kind != StorageError::Kind::WrongPassword ||
      !OpensAny(context, mail, password)) {
    return opens;
  }
  if (!OpensAny(context, CurrentFiles(context, profile, mail), password)) {
    return Refusal(
        Ui::tr("このパスワードで開けるのは、最後に使ったときのものではないファイルだけです。入力"
               "した"
               "のが変える前のパスワードなら、今のパスワードを入力してください。"));
  }
  const QList<LostFile> lost = LostFiles(context, profile, password);
  if (std::any_of(lost.begin(), lost.end(),
                  [&path](const LostFile& file) { return file.path == path; })) {
    return {};
  }
  return StorageError{StorageError::Kind::Damaged,
                      Ui::tr("「%1」: ファイルの先頭が壊れています。パスワードは"
                             "正しく、メッセージのファイルは開けます。")
                          .arg(QFileInfo(path).fileName())};
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

// The same reason, or after a wrong password what a user can do who has none and whose code is not
// remembered any more.
StorageError WithAdvice(Context& context, const Disk& profile, const QString& typed,
                        const StorageError& reason) {
  if (reason.kind != StorageError::Kind::WrongPassword) return reason;
  if (RecoveryCode::IsMistyped(typed)) {
    return Refusal(Ui::tr("回復コードを入力したのなら、打ち間違いがあります。"));
  }
  if (typed.isEmpty() && HasFileUnderCode(context, profile)) {
    return Refusal(CodeMissing(CodeFileOf(context, profile)));
  }
  if (HaveAllOtherKeys(context, profile)) {
    return Refusal(
        Ui::tr("プロファイルのファイルは、どれも最後に使ったときのものではありません。古い複製なら"
               "そのときのパスワードで、パスワードを変えた直後に異常終了したのなら新しいパスワード"
               "で開けます。"));
  }
  return reason;
}

// After the list of profiles was made anew the true names stand in the profiles' own databases.
DiskPtr FindRebuiltProfile(Context& context, const QString& name, const QString& password) {
  for (const DiskPtr& profile : context.Objects) {
    if (ProfileBag(*profile).IsRebuilt() && CheckLogin(context, profile, password) &&
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

DiskPtr DefaultProfile(const Context& context) {
  const DiskCollectionPtr profiles =
      SelectObjects(context.Objects, *context.Session, object_type::kProfile);
  for (const DiskPtr& profile : *profiles) {
    if (AnyObject(*profile).IsDefault()) return profile;
  }
  return profiles->Count() == 1 ? profiles->First() : nullptr;
}

Result<LoginCheck> CheckLogin(Context& context, const DiskPtr& profile, const QString& typed) {
  if (const Result<> held = HoldProfile(context, *profile); !held) return held.Error();
  const QString password = PasswordFor(context, *profile, typed);
  if (const Result<> fits = PasswordFits(context, *profile, password); !fits) {
    // Who only tried must not keep others from their work.
    if (context.Session->Serial() != profile->Serial()) context.Lock.reset();
    return WithAdvice(context, *profile, typed, fits.Error());
  }
  RestoreProfile(context, *profile, password);
  return LostFiles(context, *profile, password).isEmpty() ? LoginCheck::Opens
                                                          : LoginCheck::FilesLost;
}

QString LoginRefusal(const StorageError& reason) {
  return reason.kind == StorageError::Kind::WrongPassword
             ? Ui::tr("ログインできませんでした。入力したプロファイル情報を確認してください。")
             : Ui::tr("ログインできませんでした。") + reason.text;
}

Result<> ResolveLostFiles(Context& context, const DiskPtr& profile, const QString& typed,
                          const LostFileChoice& choice) {
  const Result<QString> settled = SettlePassword(context, *profile, typed);
  if (!settled) return settled.Error();
  const QString& password = *settled;
  const QStringList former =
      choice.reconnect.isEmpty()
          ? QStringList()
          : AsPasswords(choice.former) + FormerPasswords(context, *profile, password);
  QStringList opened;
  for (const LostFile& lost : LostFiles(context, *profile, password)) {
    Result<> resolved = StorageError::Wordless();
    for (const QString& file : choice.reconnect) {
      const Result<QString> opening = ReconnectFile(context, lost, file, password, former);
      resolved = opening ? Result<>() : opening.Error();
      if (!opening) continue;
      opened.append(*opening);
      break;
    }
    if (!resolved && choice.create) {
      resolved = ReplaceLostFile(context, *profile, lost, password);
    }
    if (!resolved) return resolved;
  }
  // Other copies may be under them.
  for (const QString& before : std::as_const(opened)) {
    const Result<> noted = NoteFormerCode(context, *profile, password, before);
    if (!noted) return noted;
  }
  return {};
}

void BeginLogin(Context& context, const Disk& profile, const QString& password) {
  ProfileBag::SetPassword(*context.Session, password);
  ProfileBag::SetAnswer(*context.Session, profile.SerialID());
  ProfileBag::SetLogin(*context.Session);
}

Result<> RunLoginStep(Context& context, LoginStep step, const QString& typed) {
  switch (step) {
    case LoginStep::LoadProfiles: {
      const Result<> loaded = LoadObjects(context, DatabaseKind::Navigator, context.Objects);
      if (!loaded) return loaded.Error().Behind(Ui::tr("プロファイルの一覧を読み込めません。"));
      return {};
    }
    case LoginStep::EnterProfile: {
      const DiskPtr profile = context.Objects.Find(SerialId(ProfileBag(*context.Session).Answer()));
      if (profile == nullptr) return Refusal(Ui::tr("プロファイルがありません。"));
      const QString unusable = Ui::tr("プロファイルを使えません。");
      if (const Result<> held = HoldProfile(context, *profile); !held) {
        return held.Error().Behind(unusable);
      }
      const Result<QString> password = SettlePassword(context, *profile, typed);
      if (!password) return password.Error().Behind(unusable);
      EnterProfile(context, profile, RenewFileKeys(context, *profile, *password));
      return {};
    }
    case LoginStep::MarkDefault:
      std::ignore = MarkDefaultProfile(context);  // the next login writes it again
      return {};
    case LoginStep::LoadObjects: {
      const Result<> loaded = LoadObjects(context, DatabaseKind::Profile, context.Objects);
      if (!loaded) return loaded.Error().Behind(Ui::tr("プロファイルを読み込めません。"));
      return {};
    }
    case LoginStep::StandardObjects: {
      Result<> made = MakeStandardObjects(context);
      if (made) made = MakeMail(context);
      if (!made) return made.Error().Behind(Ui::tr("プロファイルに書き込めません。"));
      SettleOlderFiles(context);
      std::ignore = NoteFiles(context);  // tried again at the end
      return {};
    }
  }
  return StorageError::Wordless();
}

Result<> LogIn(Context& context, const QString& name, const QString& password,
               const LostFileChoice& choice) {
  DiskPtr profile = name.isEmpty() ? DefaultProfile(context) : FindProfile(context, name);
  if (profile == nullptr && !name.isEmpty()) profile = FindRebuiltProfile(context, name, password);
  if (profile == nullptr) {
    return Refusal(name.isEmpty() ? Ui::tr("プロファイルが複数あります。名前を指定してください。")
                                  : Ui::tr("プロファイル「%1」はありません。").arg(name));
  }
  Result<LoginCheck> check = CheckLogin(context, profile, password);
  const bool wasLost = check == LoginCheck::FilesLost;
  const bool decided = choice.create || !choice.reconnect.isEmpty();
  if (wasLost && decided) {
    const Result<> resolved = ResolveLostFiles(context, profile, password, choice);
    if (!resolved) {
      return resolved.Error().Behind(Ui::tr("なくなったファイルを元に戻せません。"));
    }
    check = CheckLogin(context, profile, password);
  }
  if (!check) return StorageError{check.Error().kind, LoginRefusal(check.Error())};
  if (*check == LoginCheck::FilesLost) {
    return StorageError{
        StorageError::Kind::NotFound,
        LostFilesText(LostFiles(context, *profile, PasswordFor(context, *profile, password)))};
  }
  if (!choice.reconnect.isEmpty() && !wasLost) {
    return Refusal(Ui::tr("なくなったファイルはないので、つなぎ直しません。"));
  }
  BeginLogin(context, *profile, password);
  for (int step = 0; step < kLoginSteps; ++step) {
    const Result<> done = RunLoginStep(context, static_cast<LoginStep>(step), password);
    if (!done) return done;
  }
  return {};
}

Result<DiskPtr> CreateFirstProfile(Context& context) {
  FileLock lock(FirstStartLock(context));
  if (const Result<> taken = TakeFirstStart(lock); !taken) return taken.Error();
  const Result<> loaded = LoadObjects(context, DatabaseKind::Navigator, context.Objects);
  if (!loaded) return loaded.Error();
  if (const DiskPtr made = DefaultProfile(context)) return made;
  const Result<DiskPtr> profile = CreateProfile(context, QStringLiteral("Administrator"));
  if (profile) context.Objects.Add(*profile);
  return profile;
}

}  // namespace vorn
