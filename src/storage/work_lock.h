#pragma once

#include <QString>

#include "storage/context.h"
#include "storage/files/file_lock.h"

namespace vorn {

/// Work that one program at a time does in the profile that is logged in: sending, receiving an
/// account, importing. The system ends it with the program that holds it, so nobody waits for the
/// dead, and a program that merely sleeps is not taken for one.
class WorkLock {
 public:
  /// `work` names it and becomes a part of a file name.
  WorkLock(const Context& context, const QString& work);

  /// Waits up to `waitMs` for others. Also false when the lock's file cannot be made.
  [[nodiscard]] bool Take(int waitMs = 0);
  void Release() { lock_.Release(); }
  bool IsHeld() const { return lock_.IsHeld(); }
  /// A sentence for the user that names the program at work.
  QString HeldWords() const;

 private:
  FileLock lock_;
};

// What the work is called, for all programs.
inline const QString kSendingWork = QStringLiteral("send");
inline const QString kImportWork = QStringLiteral("import");
/// Receiving for an account: one for all accounts of a user at a server, whose messages have names
/// of one scope.
QString ReceivingWork(const QString& user, const QString& server);

}  // namespace vorn
