#include "frame/profile_login.h"

#include <QFile>

#include "objects/object_loader.h"
#include "objects/object_types.h"
#include "objects/profile.h"
#include "objects/select_objects.h"
#include "objects/standard_objects.h"
#include "storage/databases.h"
#include "storage/file_lock.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kFirstStartWaitMs = 10000;

QString FirstStartLock(const Context& context) {
  return context.AppFolder + QStringLiteral("navi.lock");
}

const QString kPassword = QStringLiteral("password");
const QString kStatus = QStringLiteral("status");

QString ProfilePath(const Context& context, const Disk& profile) {
  return PlatformPath(context, profile.Text(u"Profile"));
}

// The default profile is the one logged in last.
DiskPtr DefaultProfile(const Context& context) {
  const DiskCollectionPtr profiles =
      SelectObjects(context.Objects, *context.Session, object_type::kProfile);
  for (const DiskPtr& profile : *profiles) {
    if (profile->Flag(u"Default")) return profile;
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

}  // namespace

DiskPtr FindProfile(const Context& context, const QString& name) {
  return FindObjectByName(context, object_type::kProfile, name);
}

bool TestProfilePassword(Context& context, const Disk& profile, const QString& password) {
  if (!HoldProfile(context, profile)) return false;
  const QString path = ProfilePath(context, profile);
  if (!QFile::exists(path) || context.Data.TestPassword(path, password)) return true;
  // Who only tried must not keep others from their work.
  if (context.Session->SerialID() != profile.SerialID()) context.Lock.reset();
  return false;
}

void BeginLogin(Context& context, const Disk& profile, const QString& password) {
  context.Session->Let(kPassword, password);
  context.Session->Let(kStatus, profile.SerialID());
  context.Session->Let(QStringLiteral("mode"), QStringLiteral("login"));
}

bool RunLoginStep(Context& context, LoginStep step, const QString& password, QString* error) {
  switch (step) {
    case LoginStep::LoadProfiles:
      return LoadObjects(context, DatabaseKind::Navigator, context.Objects) ||
             Fail(context, Ui::tr("プロファイルの一覧を読み込めません。"), error);
    case LoginStep::EnterProfile: {
      const DiskPtr profile = context.Objects.Find(context.Session->Text(kStatus));
      if (profile == nullptr) return Fail(context, Ui::tr("プロファイルがありません。"), error);
      if (!HoldProfile(context, *profile)) {
        return Fail(context, Ui::tr("プロファイルを使えません。"), error);
      }
      EnterProfile(context, profile, password);
      return true;
    }
    case LoginStep::MarkDefault:
      MarkDefaultProfile(context);
      return true;
    case LoginStep::LoadObjects:
      return LoadObjects(context, DatabaseKind::Profile, context.Objects) ||
             Fail(context, Ui::tr("プロファイルを読み込めません。"), error);
    case LoginStep::StandardObjects:
      return MakeStandardObjects(context) ||
             Fail(context, Ui::tr("プロファイルに書き込めません。"), error);
  }
  return false;
}

bool LogIn(Context& context, const QString& name, const QString& password, QString* error) {
  const DiskPtr profile = name.isEmpty() ? DefaultProfile(context) : FindProfile(context, name);
  if (profile == nullptr) {
    *error = name.isEmpty() ? Ui::tr("プロファイルが複数あります。名前を指定してください。")
                            : Ui::tr("プロファイル「%1」はありません。").arg(name);
    return false;
  }
  if (!TestProfilePassword(context, *profile, password)) {
    return Fail(context,
                Ui::tr("ログインできませんでした。入力したプロファイル情報を確認してください。"),
                error);
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
