#include "objects/profile/profile.h"

#include "objects/any_object.h"
#include "objects/object_types.h"
#include "objects/save_object.h"
#include "storage/bags/profile_bag.h"
#include "storage/databases.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kFileNameCharacters = 8;  // of a serial identifier, enough to name a file

}  // namespace

DiskPtr NewProfile(const SerialId& serialId, const QString& name, const QString& mail) {
  auto profile = std::make_shared<Disk>(serialId);
  const QString folder = QStringLiteral("/current/") + serialId.Text() + u'\\';
  AnyObject::Begin(*profile, object_type::kProfile, name);
  AnyObject::SetSystem(*profile, true);
  ProfileBag::SetFile(*profile, folder + QStringLiteral("profile.mbx"));
  ProfileBag::SetMailFiles(*profile, mail);
  ProfileBag::SetHistory(*profile, mail);
  return profile;
}

Result<DiskPtr> CreateProfile(Context& context, const QString& name) {
  const SerialId serial = context.Data.NewSerialID(QStringLiteral("_profile"));
  const QString mail = QStringLiteral("/current/") + serial.Text() + u'\\' +
                       context.Data.NewSerialID().Text().left(kFileNameCharacters) +
                       QStringLiteral(".mbx");
  DiskPtr profile = NewProfile(serial, name, mail);
  const Result<> saved = SaveObject(context, DatabaseKind::Navigator, *profile);
  if (!saved) return saved.Error();
  return profile;
}

void EnterProfile(Context& context, const DiskPtr& profile, const QString& password) {
  context.Session = profile;
  ProfileBag::SetPassword(*profile, password);
  ProfileBag::SetLoggedIn(*profile, true);
}

Result<> MarkDefaultProfile(Context& context) {
  AnyObject::SetDefault(*context.Session, true);
  return SaveObject(context, DatabaseKind::Navigator, *context.Session);
}

QStringList ProfileFolders() {
  return {QStringLiteral("_profile*"), QStringLiteral("profile_*")};
}

QStringList ProfileFiles(const Context& context, const Disk& profile) {
  QStringList files{PlatformPath(context, ProfileBag(profile).File())};
  const QString lists =
      ProfileBag(profile).MailFiles() + kLineBreak + ProfileBag(profile).History();
  for (const QString& line : lists.split(kLineBreak, Qt::SkipEmptyParts)) {
    files.append(PlatformPath(context, line));
  }
  files.removeDuplicates();
  return files;
}

}  // namespace vorn
