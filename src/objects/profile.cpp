#include "objects/profile.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include "objects/object_types.h"
#include "objects/save_object.h"
#include "storage/password_change.h"
#include "storage/private_files.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kFileNameCharacters = 8;  // of a serial identifier, enough to name a file

// A few seconds' work.
constexpr qint64 kRenewedBytes = 200 * 1024 * 1024;
constexpr qint64 kRenewalPauseS = 24 * 3600;

PasswordChange ChangeOf(Context& context, const Disk& profile) {
  const QStringList files = ProfileFiles(context, profile);
  return {context.Data, files.first() + QStringLiteral(".decided"), files};
}

}  // namespace

DiskPtr NewProfile(const QString& serialId, const QString& name, const QString& mail) {
  auto profile = std::make_shared<Disk>(serialId);
  const QString folder = QStringLiteral("/current/") + serialId + u'\\';
  profile->Let(QStringLiteral("FormName"), object_type::kProfile);
  profile->Let(QStringLiteral("Object"), name);
  profile->Let(QStringLiteral("ToolTipText"), QString());
  profile->Let(QStringLiteral("Draw"), object_type::kProfile);
  profile->Let(QStringLiteral("Default"), false);
  profile->Let(QStringLiteral("System"), true);
  profile->Let(QStringLiteral("Enabled"), false);
  profile->Let(QStringLiteral("Parent"), QString());
  profile->Let(QStringLiteral("Profile"), QString(folder + QStringLiteral("profile.mbx")));
  profile->Let(QStringLiteral("Mail"), mail);
  profile->Let(QStringLiteral("History"), mail);
  return profile;
}

DiskPtr CreateProfile(Context& context, const QString& name) {
  const QString serial = context.Data.NewSerialID(QStringLiteral("_profile"));
  const QString mail = QStringLiteral("/current/") + serial + u'\\' +
                       context.Data.NewSerialID().left(kFileNameCharacters) +
                       QStringLiteral(".mbx");
  DiskPtr profile = NewProfile(serial, name, mail);
  return SaveObject(context, DatabaseKind::Navigator, *profile) ? profile : nullptr;
}

void EnterProfile(Context& context, const DiskPtr& profile, const QString& password) {
  context.Session = profile;
  profile->Let(QStringLiteral("Password"), password);
  profile->Let(QStringLiteral("login"), true);
}

bool MarkDefaultProfile(Context& context) {
  context.Session->Let(QStringLiteral("Default"), true);
  return SaveObject(context, DatabaseKind::Navigator, *context.Session);
}

QStringList ProfileFiles(const Context& context, const Disk& profile) {
  QStringList files{PlatformPath(context, profile.Text(u"Profile"))};
  const QString lists = profile.Text(u"Mail") + kLineBreak + profile.Text(u"History");
  for (const QString& line : lists.split(kLineBreak, Qt::SkipEmptyParts)) {
    files.append(PlatformPath(context, line));
  }
  files.removeDuplicates();
  return files;
}

bool ChangeProfilePassword(Context& context, const Disk& profile, const QString& oldPassword,
                           const QString& newPassword, QString* error) {
  const QString unchanged = Ui::tr("パスワードを変更できませんでした。前のパスワードのままです。");
  if (!HoldProfile(context, profile)) {
    *error = unchanged + context.Data.LastError().text;
    return false;
  }
  if (!context.Lock->TakeAlone()) {
    *error = unchanged + context.Lock->Error().text;
    return false;
  }
  PasswordChange change = ChangeOf(context, profile);
  const PasswordChange::Outcome outcome = change.Run(oldPassword, newPassword);
  context.Lock->ShareAgain();
  if (outcome == PasswordChange::Outcome::Unchanged) {
    *error = unchanged + change.Error().text;
    return false;
  }
  if (outcome == PasswordChange::Outcome::Decided) {
    *error = Ui::tr(
                 "パスワードの変更がまだ終わっていません。プログラムを終了して、新しい"
                 "パスワードでログインしてください。") +
             change.Error().text;
    return false;
  }
  if (context.Session->SerialID() == profile.SerialID()) {
    context.Session->Let(QStringLiteral("password"), newPassword);
  }
  return true;
}

bool AdoptMailFile(Context& context, const QString& path, const QString& itsPassword,
                   QString* error) {
  PasswordChange change(context.Data, path + QStringLiteral(".decided"), {path});
  const QString password = context.Session->Text(u"password");
  // An earlier try may have died at its end.
  if (change.IsUnfinished() && change.Finish() && context.Data.TestPassword(path, password)) {
    return true;
  }
  const bool adopted = change.Run(itsPassword, password) == PasswordChange::Outcome::Changed;
  if (!adopted) *error = change.Error().text;
  return adopted;
}

void RenewFileKeys(Context& context, const Disk& profile, const QString& password) {
  qint64 bytes = 0;
  for (const QString& file : ProfileFiles(context, profile)) bytes += QFileInfo(file).size();
  PasswordChange renewal = ChangeOf(context, profile);
  if (bytes > kRenewedBytes || !renewal.AnyKeyIsOlder(password)) return;
  // What could not be done is not tried at each login.
  const QString tried =
      QFileInfo(ProfileFiles(context, profile).first()).path() + QStringLiteral("/keys.tried");
  if (QFileInfo(tried).lastModified().secsTo(QDateTime::currentDateTime()) < kRenewalPauseS &&
      QFileInfo::exists(tried)) {
    return;
  }
  QFile note(tried);
  if (!OpenPrivate(note, QIODevice::WriteOnly) || !context.Lock->TakeAlone()) return;
  const bool renewed = renewal.Run(password, password) == PasswordChange::Outcome::Changed;
  if (renewed) note.remove();
  context.Lock->ShareAgain();
}

bool HoldProfile(Context& context, const Disk& profile) {
  PasswordChange change = ChangeOf(context, profile);
  const QString folder = QFileInfo(ProfileFiles(context, profile).first()).path();
  if (context.Lock != nullptr && context.Lock->Folder() == folder) return true;
  auto lock = std::make_shared<ProfileLock>(folder);
  if (!lock->Share()) return context.Data.FailWith(lock->Error());
  if (change.IsUnfinished()) {
    lock->Release();  // two that both want to finish would wait for each other
    if (!lock->TakeAlone()) return context.Data.FailWith(lock->Error());
    if (!change.Finish()) return context.Data.FailWith(change.Error());
    if (!lock->ShareAgain()) return context.Data.FailWith(lock->Error());
  }
  context.Lock = std::move(lock);
  return true;
}

}  // namespace vorn
