#include "storage/engine/log_look.h"

#include <QDir>
#include <QFileInfo>
#include <memory>

#include "storage/engine/change_count.h"
#include "storage/engine/connection.h"
#include "storage/engine/log_state.h"
#include "storage/engine/raw_pages.h"
#include "storage/engine/sole_use.h"
#include "storage/files/damage_note.h"
#include "storage/files/file_lock.h"
#include "storage/files/found_damage.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kLookWaitMs = 20000;  // a look takes a moment

StorageError InUse() {
  return {StorageError::Kind::Busy, Ui::tr("データベースが使用中です。")};
}

}  // namespace

Result<> LookAtLog(Connection& connection, const QString& path, const QString& password,
                   bool maySetAside) {
  const QString name = QFileInfo(path).fileName() + QStringLiteral("-wal");
  if (QFileInfo(path + QStringLiteral("-wal")).size() == 0) return {};
  // One at a time: who is only looking has not looked yet.
  FileLock looking(QFileInfo(path).dir().filePath(QStringLiteral("look.lock")));
  const FileLock::Result taken = looking.Take(FileLock::Kind::Exclusive, kLookWaitMs);
  if (taken == FileLock::Result::Held) return InUse();
  if (taken == FileLock::Result::Failed && maySetAside) {
    return StorageError{
        StorageError::Kind::Other,
        Ui::tr("「look.lock」に書き込めません。フォルダの権限を確認してください。")};
  }
  auto alone = std::make_unique<SoleUse>(path);
  if (!alone->IsTaken()) return {};  // whoever has it open looked, and is writing to it
  const LogReading reading = ReadLog(path, FileSalt(connection.Handle()));
  const LoggedPage& sample = reading.sample;
  LogState log = reading.state;
  if (log == LogState::Sound && sample.number != 0) {
    const PageMarks marks(connection.Handle(), password);
    if (!marks.IsMarked(sample.number, sample.bytes) && marks.FitFile()) log = LogState::Foreign;
  }
  if (log == LogState::Sound) {
    alone.reset();  // the engine's own reading takes its locks
    if (LogFitsFile(path, password)) return {};
    alone = std::make_unique<SoleUse>(path);
    if (!alone->IsTaken()) return InUse();
    log = LogState::Foreign;
  }
  if (log < LogState::Torn) return {};
  if (log == LogState::Closed) {
    return StorageError{StorageError::Kind::Other,
                        Ui::tr("記録ファイル「%1」を読み込めません。").arg(name)};
  }
  connection.Damage().insert(kDamagedLog);
  if (log == LogState::Torn) return {};
  // Noted first: once it is set aside nothing shows that there was one.
  if (maySetAside && NoteDamage(path, {kDamagedLog}) && SetLogAside(path)) return {};
  return StorageError{
      StorageError::Kind::Damaged,
      Ui::tr("記録ファイル「%1」が壊れているか、別のデータベースのものです。").arg(name)};
}

}  // namespace vorn
