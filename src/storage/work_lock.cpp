#include "storage/work_lock.h"

#include <QFileInfo>

#include "storage/private_files.h"
#include "storage/ui.h"

namespace vorn {
namespace {

QString LockPath(const Context& context, QString work) {
  const QString folder = QFileInfo(PlatformPath(context, context.Session->Text(u"Profile"))).path();
  MakePrivateFolder(folder);
  for (QChar& c : work) {
    if (!c.isLetterOrNumber() && c != u'-' && c != u'_') c = u'_';
  }
  return folder + QStringLiteral("/work-") + work + QStringLiteral(".lock");
}

}  // namespace

QString ReceivingWork(const QString& accountSerialId) {
  return QStringLiteral("receive-") + accountSerialId;
}

WorkLock::WorkLock(const Context& context, const QString& work) : lock_(LockPath(context, work)) {}

bool WorkLock::Take(int waitMs) {
  if (lock_.Take(FileLock::Kind::Exclusive, waitMs) != FileLock::Result::Taken) return false;
  lock_.WriteHolder();
  return true;
}

QString WorkLock::HeldWords() const {
  return Ui::tr("別のプログラム（%1）が同じ作業をしています。").arg(lock_.Holder());
}

}  // namespace vorn
