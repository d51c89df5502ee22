#include "storage/work_lock.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <tuple>

#include "storage/bags/profile_bag.h"
#include "storage/files/private_files.h"
#include "storage/ui.h"

namespace vorn {
namespace {

QString LockPath(const Context& context, QString work) {
  const QString folder =
      QFileInfo(PlatformPath(context, ProfileBag(*context.Session).File())).path();
  std::ignore = MakePrivateFolder(folder);  // without it the lock cannot be taken
  for (QChar& c : work) {
    if (!c.isLetterOrNumber() && c != u'-' && c != u'_') c = u'_';
  }
  return folder + QStringLiteral("/work-") + work + QStringLiteral(".lock");
}

}  // namespace

QString ReceivingWork(const QString& user, const QString& server) {
  const QString mailbox = user + u'@' + server.toLower();
  const QByteArray name = QCryptographicHash::hash(mailbox.toUtf8(), QCryptographicHash::Sha256);
  return QStringLiteral("receive-") + QString::fromLatin1(name.toHex().first(16));
}

WorkLock::WorkLock(const Context& context, const QString& work) : lock_(LockPath(context, work)) {}

bool WorkLock::Take(int waitMs) {
  if (lock_.Take(FileLock::Kind::Exclusive, waitMs) != FileLock::Result::Taken) return false;
  lock_.WriteHolder();
  return true;
}

QString WorkLock::HeldWords() const {
  const QString holder = lock_.Holder();  // none while it is being written, or is let go
  return holder.isEmpty() ? Ui::tr("別のプログラムが同じ作業をしています。")
                          : Ui::tr("別のプログラム（%1）が同じ作業をしています。").arg(holder);
}

}  // namespace vorn
