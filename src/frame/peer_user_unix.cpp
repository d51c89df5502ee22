#include <sys/socket.h>
#include <unistd.h>

#include <QFileInfo>

#include "frame/peer_user.h"

namespace vorn {

// The folder of the session is the user's alone; without one the data folder is.
QString MeetingPlace(const QString& folder, const QString& hash) {
  constexpr auto kOthers = QFileDevice::ReadGroup | QFileDevice::WriteGroup |
                           QFileDevice::ExeGroup | QFileDevice::ReadOther |
                           QFileDevice::WriteOther | QFileDevice::ExeOther;
  const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
  const QFileInfo session(runtime);
  const bool isPrivate = !runtime.isEmpty() && session.isDir() && session.ownerId() == geteuid() &&
                         (session.permissions() & kOthers) == QFileDevice::Permissions();
  return isPrivate ? runtime + QStringLiteral("/vorn-") + hash
                   : folder + QStringLiteral("/vorn.socket");
}

bool IsOwnPlace(const QString& place) {
  const QFileInfo file(place);
  return (!file.exists() && !file.isSymLink()) ||
         (!file.isSymLink() && file.ownerId() == geteuid());
}

bool IsOwnPeer(qintptr socket) {
#ifdef SO_PEERCRED
  ucred peer{};
  socklen_t size = sizeof peer;
  return getsockopt(static_cast<int>(socket), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 &&
         peer.uid == geteuid();
#else
  uid_t user = 0;
  gid_t group = 0;
  return getpeereid(static_cast<int>(socket), &user, &group) == 0 && user == geteuid();
#endif
}

}  // namespace vorn
