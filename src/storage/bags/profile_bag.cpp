#include "storage/bags/profile_bag.h"

namespace vorn {
namespace {

const QString kLoginMode = QStringLiteral("login");

}  // namespace

const QStringList& ProfileBag::SessionKeys() {
  static const QStringList keys{kPassword, kAnswer, kMode, kLoggedIn, kCancelled};
  return keys;
}

bool ProfileBag::IsLogin() const {
  return bag_.Text(kMode) == kLoginMode;
}

void ProfileBag::SetLogin(Disk& bag) {
  bag.Let(kMode, kLoginMode);
}

}  // namespace vorn
