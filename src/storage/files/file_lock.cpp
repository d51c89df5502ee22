#include "storage/files/file_lock.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QSysInfo>
#include <QThread>

namespace vorn {
namespace {

constexpr int kPauseMs = 10;
constexpr qint64 kMostHolderBytes = 400;

}  // namespace

FileLock::Result FileLock::Take(Kind kind, int waitMs) {
  if (handle_ == -1 && !OpenFile()) return Result::Failed;
  QElapsedTimer waited;
  waited.start();
  Result result = TryTake(kind);
  while (result == Result::Held && waited.elapsed() < waitMs) {
    QThread::msleep(kPauseMs);
    result = TryTake(kind);
  }
  held_ = result == Result::Taken;
  return result;
}

void FileLock::WriteHolder() {
  QFile file(path_);
  if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) return;  // then nobody is named
  file.write(QStringLiteral("%1 (PID %2, %3)")
                 .arg(QCoreApplication::applicationName())
                 .arg(QCoreApplication::applicationPid())
                 .arg(QSysInfo::machineHostName())
                 .toUtf8());
}

QString FileLock::Holder() const {
  QFile file(path_);
  return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.read(kMostHolderBytes))
                                        : QString();
}

}  // namespace vorn
