#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace vorn {

class Connection;

/// How often messages were received or sent with a mail file, which tells an older copy of it, and
/// a log that goes on from a later state of it than the one that is there.
struct WorkCount {
  qint64 number = 0;
  qint64 inFile = 0;    ///< the number that the file alone, without its log, holds at least
  QByteArray logRound;  ///< the round of the log in which the number stands; empty when unknown
};

/// Of the open file. Zero of one that never counted; nothing when it cannot be read.
std::optional<WorkCount> ReadWorkCount(Connection& connection);

/// Counts one more and makes it durable: at least `least`. The new number, 0 when it could not be
/// stored. No transaction may be open.
qint64 RaiseWorkCount(Connection& connection, const QString& path, qint64 least);

/// Whether the log beside a file goes on from what the file holds. False when the file is an older
/// copy, put beside the log of a later state: read together they would look like the latest one.
/// True where that cannot be told. Nobody may have the file open.
bool LogFitsFile(const QString& path, const QString& password);

}  // namespace vorn
