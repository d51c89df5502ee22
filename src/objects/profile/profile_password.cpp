#include "objects/profile/profile_password.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <tuple>

#include "objects/profile/lost_files.h"
#include "objects/profile/profile.h"
#include "storage/bags/profile_bag.h"
#include "storage/databases.h"
#include "storage/engine/raw_pages.h"
#include "storage/file_notes.h"
#include "storage/files/private_files.h"
#include "storage/keys/file_key.h"
#include "storage/keys/recovery_code.h"
#include "storage/session/password_change.h"
#include "storage/session/session_result.h"
#include "storage/ui.h"

namespace vorn {
namespace {

// A few seconds' work.
constexpr qint64 kRenewedBytes = 200 * 1024 * 1024;
constexpr qint64 kRenewalPauseS = 24 * 3600;

// In the profile's own database, under the password that took their place.
class FormerCodes {
 public:
  // Reads them from the database that is open; false when it cannot.
  bool Load(DataSession& data) { return bag_.DatabaseToDisk(data); }
  bool Store(DataSession& data) { return bag_.DiskToDatabase(data); }
  QStringList All() const { return bag_.Text(kCodes).split(kLineBreak, Qt::SkipEmptyParts); }
  void Add(const QString& code) { bag_.Let(kCodes, (All() << code).join(kLineBreak)); }

 private:
  static inline const QString kCodes = QStringLiteral("Codes");

  Disk bag_{QStringLiteral("DATA_codes")};
};

PasswordChange ChangeOf(Context& context, const Disk& profile) {
  const QStringList files = ProfileFiles(context, profile);
  return {context.Data, files.first() + QStringLiteral(".decided"), files};
}

QStringList FilesThere(const Context& context, const Disk& profile) {
  QStringList files = ProfileFiles(context, profile);
  files.removeIf([](const QString& file) { return !HasContent(file); });
  return files;
}

bool IsFileUnderCode(const QString& file) {
  return FileKey::IsUnderCode(FileStart(file, FileKey::kSaltBytes));
}

// Whether the profile's database says that this code was once its files'.
bool IsNoted(Context& context, const Disk& profile, const QString& password, const QString& code) {
  const QString path = ProfileFiles(context, profile).first();
  FormerCodes former;
  if (!HasContent(path)) return false;
  const OpenedDatabase file(context, path, password);
  return file && former.Load(context.Data) && former.All().contains(code);
}

// A change that is not completed may still bring a file under it.
bool IsCodeUsed(Context& context, const Disk& profile, const QString& code) {
  if (ChangeOf(context, profile).IsUnfinished()) return true;
  const QStringList files = FilesThere(context, profile);
  return std::any_of(files.begin(), files.end(), [&](const QString& file) {
    return IsFileUnderCode(file) && context.Data.TestPassword(file, FileKey::FromCode(code));
  });
}

// One that the desktop does not give is of no more use where no file is under any.
void SetLostAside(const Context& context, const Disk& profile, const CodeFile& file) {
  if (file.NamesSecret() && !HasFileUnderCode(context, profile)) {
    std::ignore = file.SetAside();
  }
}

// One that stays is tried again at the next login.
void ForgetUnusedCode(Context& context, const Disk& profile) {
  const CodeFile file = CodeFileOf(context, profile);
  const QString code = file.Code();
  if (code.isEmpty()) return SetLostAside(context, profile, file);
  if (!IsCodeUsed(context, profile, code)) std::ignore = file.Forget();
}

// Files that are away for the moment may come back under a code that no file here needs; one that
// the profile's database remembers is not lost with its file.
void LayDownUnusedCode(Context& context, const Disk& profile, const QString& password) {
  const CodeFile file = CodeFileOf(context, profile);
  const QString code = file.Code();
  if (code.isEmpty()) return SetLostAside(context, profile, file);
  if (IsCodeUsed(context, profile, code)) return;
  std::ignore = IsNoted(context, profile, password, code) ? file.Forget() : file.SetAside();
}

// A code is on the disk before any file is under it, and goes when none is any more.
PasswordChange::End ChangeAlone(Context& context, const Disk& profile, const QString& from,
                                const QString& to) {
  PasswordChange change = ChangeOf(context, profile);
  if (const Result<> finished = change.Finish(); !finished) return {.reason = finished.Error()};
  if (const QString code = FileKey::CodeIn(to); !code.isEmpty()) {
    const Result<> kept = CodeFileOf(context, profile).Keep(code);
    if (!kept) return {.reason = kept.Error()};
  }
  if (to != from) {
    const Result<> noted = NoteFormerCode(context, profile, from, from);
    if (!noted) return {.reason = noted.Error()};
  }
  PasswordChange::End end = change.Run(from, to);
  if (end.outcome != PasswordChange::Outcome::Decided) ForgetUnusedCode(context, profile);
  return end;
}

// An empty new password becomes a code, the present one where there is one.
QString PasswordOrCode(const QString& typed, const QString& from) {
  if (!typed.isEmpty()) return typed;
  return FileKey::CodeIn(from).isEmpty() ? FileKey::FromCode(RecoveryCode::Make()) : from;
}

// None at all, what the profile's database remembers, and what lies beside its code's file.
QStringList PasswordsOf(const FormerCodes& former, const CodeFile& file) {
  QStringList passwords{QString()};
  for (const QString& code : former.All() + file.Others())
    passwords.append(FileKey::FromCode(code));
  return passwords;
}

}  // namespace

CodeFile CodeFileOf(const Context& context, const Disk& profile) {
  return CodeFile(QFileInfo(ProfileFiles(context, profile).first()).path(), context.Secrets.get());
}

QString PasswordFor(Context& context, const Disk& profile, const QString& typed) {
  const CodeFile file = CodeFileOf(context, profile);
  QString code = typed.isEmpty() ? file.Code() : RecoveryCode::Read(typed);
  if (typed.isEmpty() && code.isEmpty() && HasFileUnderCode(context, profile)) {
    const QStringList others = file.Others();
    const auto fits = std::find_if(others.begin(), others.end(), [&](const QString& other) {
      return IsCodeUsed(context, profile, other);
    });
    if (fits != others.end()) code = *fits;
  }
  return code.isEmpty() ? typed : FileKey::FromCode(code);
}

void RememberCode(const Context& context) {
  const QString code = FileKey::CodeIn(ProfileBag(*context.Session).Password());
  if (code.isEmpty()) return;
  const CodeFile file = CodeFileOf(context, *context.Session);
  if (!file.NamesSecret() && file.Code() != code) std::ignore = file.Keep(code);
}

Result<QString> SettlePassword(Context& context, const Disk& profile, const QString& typed) {
  const CodeFile file = CodeFileOf(context, profile);
  const bool isNew = FilesThere(context, profile).isEmpty();
  if (typed.isEmpty() && isNew) {
    const Result<QString> code = file.CodeOrNew();
    if (!code) return code.Error();
    return FileKey::FromCode(*code);
  }
  const QString password = PasswordFor(context, profile, typed);
  const QString code = FileKey::CodeIn(password);
  // One that was put aside is the profile's own again.
  if (typed.isEmpty() && !code.isEmpty() && file.Code() != code) std::ignore = file.Keep(code);
  // Whoever typed the code has it; only new files must not come to depend on memory alone.
  if (!typed.isEmpty() && !code.isEmpty()) {
    const Result<> kept = file.Keep(code);
    if (!kept && isNew) return kept.Error();
    return password;
  }
  if (code.isEmpty() && !isNew) LayDownUnusedCode(context, profile, password);
  return password;
}

bool HasFileUnderCode(const Context& context, const Disk& profile) {
  const QStringList files = FilesThere(context, profile);
  return std::any_of(files.begin(), files.end(), IsFileUnderCode);
}

bool IsUnderCode(const Context& context, const Disk& profile) {
  const QStringList files = FilesThere(context, profile);
  return !files.isEmpty() && std::all_of(files.begin(), files.end(), IsFileUnderCode);
}

bool HasOwnPassword(const Context& context) {
  const QString password = ProfileBag(*context.Session).Password();
  return !password.isEmpty() && FileKey::CodeIn(password).isEmpty();
}

Result<> NoteFormerCode(Context& context, const Disk& profile, const QString& password,
                        const QString& former) {
  const QString path = ProfileFiles(context, profile).first();
  const QString code = FileKey::CodeIn(former);
  if (code.isEmpty() || !HasContent(path)) return {};
  const OpenedDatabase file(context, path, password);
  if (!file) return file.Error();
  FormerCodes known;
  if (!known.Load(context.Data)) return ReasonOf(context.Data);
  if (known.All().contains(code)) return {};
  known.Add(code);
  return Transact(context.Data, [&] { return ResultOf(context.Data, known.Store(context.Data)); });
}

QStringList FormerPasswords(Context& context) {
  FormerCodes former;
  const OpenedDatabase profile(context, DatabaseKind::Profile);
  if (profile) std::ignore = former.Load(context.Data);
  return PasswordsOf(former, CodeFileOf(context, *context.Session));
}

QStringList FormerPasswords(Context& context, const Disk& profile, const QString& password) {
  FormerCodes former;
  const QString path = ProfileFiles(context, profile).first();
  if (HasContent(path)) {
    const OpenedDatabase file(context, path, password);
    if (file) std::ignore = former.Load(context.Data);
  }
  return PasswordsOf(former, CodeFileOf(context, profile));
}

Result<> ChangeProfilePassword(Context& context, const Disk& profile, const QString& oldPassword,
                               const QString& newPassword) {
  const QString unchanged = Ui::tr("パスワードを変更できませんでした。前のパスワードのままです。");
  if (!RecoveryCode::Read(newPassword).isEmpty()) {
    return StorageError{StorageError::Kind::Other,
                        Ui::tr("回復コードと同じ形のものは、パスワードにできません。")}
        .Behind(unchanged);
  }
  const Result<> held = HoldProfile(context, profile);
  if (!held) return held.Error().Behind(unchanged);
  const Result<> alone = context.Lock->TakeAlone();
  if (!alone) return alone.Error().Behind(unchanged);
  const QString from = PasswordFor(context, profile, oldPassword);
  const QString to = PasswordOrCode(newPassword, from);
  const auto [outcome, reason] = ChangeAlone(context, profile, from, to);
  std::ignore = context.Lock->ShareAgain();  // what was changed is changed
  if (outcome == PasswordChange::Outcome::Unchanged) return reason.Behind(unchanged);
  if (outcome == PasswordChange::Outcome::Decided) {
    return reason.Behind(
        Ui::tr("パスワードの変更がまだ終わっていません。プログラムを終了して、新しい"
               "パスワードでログインしてください。"));
  }
  if (context.Session->Serial() == profile.Serial()) {
    ProfileBag::SetPassword(*context.Session, to);
    std::ignore = NoteFiles(context);  // which keys are the present ones; tried again at the end
  }
  return {};
}

Result<> AdoptMailFile(Context& context, const QString& path, const QString& itsPassword) {
  PasswordChange change(context.Data, path + QStringLiteral(".decided"), {path});
  const QString password = ProfileBag(*context.Session).Password();
  // An earlier try may have died at its end.
  if (change.IsUnfinished() && change.Finish() && context.Data.TestPassword(path, password)) {
    return {};
  }
  const QString code = RecoveryCode::Read(itsPassword);
  const QString from = code.isEmpty() ? itsPassword : FileKey::FromCode(code);
  const PasswordChange::End end = change.Run(from, password);
  return end.outcome == PasswordChange::Outcome::Changed ? Result<>() : end.reason;
}

QString RenewFileKeys(Context& context, const Disk& profile, const QString& password) {
  qint64 bytes = 0;
  for (const QString& file : ProfileFiles(context, profile)) bytes += QFileInfo(file).size();
  if (bytes > kRenewedBytes || !ChangeOf(context, profile).AnyKeyIsOlder(password)) return password;
  // What could not be done is not tried at each login.
  const QString tried =
      QFileInfo(ProfileFiles(context, profile).first()).path() + QStringLiteral("/keys.tried");
  if (QFileInfo(tried).lastModified().secsTo(QDateTime::currentDateTime()) < kRenewalPauseS &&
      QFileInfo::exists(tried)) {
    return password;
  }
  QFile note(tried);
  if (!OpenPrivate(note, QIODevice::WriteOnly) || !context.Lock->TakeAlone()) return password;
  const QString renewed = PasswordOrCode(password, password);
  const PasswordChange::Outcome outcome = ChangeAlone(context, profile, password, renewed).outcome;
  if (outcome == PasswordChange::Outcome::Changed) note.remove();
  std::ignore = context.Lock->ShareAgain();  // the next login waits for whoever has it alone
  return outcome == PasswordChange::Outcome::Unchanged ? password : renewed;
}

Result<> HoldProfile(Context& context, const Disk& profile) {
  PasswordChange change = ChangeOf(context, profile);
  const QString folder = QFileInfo(ProfileFiles(context, profile).first()).path();
  if (context.Lock != nullptr && context.Lock->Folder() == folder) return {};
  auto lock = std::make_shared<ProfileLock>(folder);
  Result<> held = lock->Share();
  if (held && change.IsUnfinished()) {
    lock->Release();  // two that both want to finish would wait for each other
    held = lock->TakeAlone();
    if (held) held = change.Finish();
    if (held) held = lock->ShareAgain();
  }
  if (held) context.Lock = std::move(lock);
  return held;
}

}  // namespace vorn
