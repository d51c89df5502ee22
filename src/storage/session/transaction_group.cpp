#include "storage/session/transaction_group.h"

#include <QThread>
#include <tuple>
#include <utility>

#include "storage/base/group_size.h"
#include "storage/engine/connection.h"

namespace vorn {
namespace {

constexpr int kLetOthersMs = 3;

// Whoever waits for the file would hardly ever hit the gap before the next group.
void LetOthersWrite(QElapsedTimer& sincePause) {
  if (sincePause.isValid() && !sincePause.hasExpired(GroupSize::kMs)) return;
  QThread::msleep(kLetOthersMs);
  sincePause.start();
}

}  // namespace

bool TransactionGroup::Begin(const std::shared_ptr<Connection>& connection) {
  if (group_ == nullptr) {
    if (!connection->Begin()) return false;
    group_ = connection;
    depth_ = 0;
  }
  ++depth_;
  return true;
}

Result<> TransactionGroup::Flush() {
  if (const auto reason = std::exchange(undone_, std::nullopt)) return *reason;
  if (group_ == nullptr) return {};
  const std::shared_ptr<Connection> group = std::exchange(group_, nullptr);
  const Result<> written = group->Commit() ? Result<>() : group->LastError();
  LetOthersWrite(sincePause_);
  return written;
}

Result<> TransactionGroup::FlushForReading() {
  const Result<> written = Flush();
  if (!written) undone_ = written.Error();
  return written;
}

Result<> TransactionGroup::End() {
  path_.clear();
  return Flush();
}

// What could not be written then is reported by the next flush.
void TransactionGroup::MakeWay(const std::shared_ptr<Connection>& connection) {
  if (IsOpenOn(connection) && depth_ == 0) std::ignore = FlushForReading();
}

void TransactionGroup::NoteUndone(const StorageError& reason) {
  group_.reset();
  undone_ = reason;
}

}  // namespace vorn
