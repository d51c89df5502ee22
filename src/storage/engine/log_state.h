#pragma once

#include <QByteArray>
#include <QString>

namespace vorn {

/// What stands in the write-ahead log beside a database file, told without opening the database.
/// The engine passes over a log that it cannot follow, and what was written last is gone without a
/// word.
enum class LogState {
  None,     ///< no log, or one without a change
  Sound,    ///< every change in it can be read, but for one that was never finished
  Torn,     ///< a change that was committed cannot be read
  Foreign,  ///< not a log, or that of another database
  Closed,   ///< cannot be read now
};

/// A page as it stands in a log.
struct LoggedPage {
  quint32 number = 0;  ///< 0 for none
  QByteArray bytes;
};

/// What reading a log shows. Only its first page tells by itself to which database a log belongs;
/// of the others `sample` is one to look at.
struct LogReading {
  LogState state = LogState::None;
  LoggedPage sample = {};
};

/// Reads the log of the database file at `path` (see the engine's "Database File Format", section
/// 4), whose first bytes are `databaseSalt`. Nobody may have the database open.
LogReading ReadLog(const QString& path, const QByteArray& databaseSalt);

/// What the log beside a database file bears while it is filled once; another one when it begins
/// anew, which it does when all of it has come into the file. Empty when there is no log.
QByteArray LogRound(const QString& path);

/// Gives a log that does not belong to its database another name, under which it is kept. False
/// when it cannot be renamed.
[[nodiscard]] bool SetLogAside(const QString& path);

}  // namespace vorn
