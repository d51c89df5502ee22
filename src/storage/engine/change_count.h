#pragma once

#include <QByteArray>
#include <QString>

namespace vorn {

class Connection;

/// Marks a transaction in the open file, inside it, and notes, from the log's round when it began,
/// from which mark on the file may be without its write-ahead log. That ties a log to the state of
/// the file that it goes on from, which the engine's own format does not: it would read a log into
/// an older copy of the file, into a newer one, or into one on which somebody else went on, and
/// what comes of it is neither. False when it cannot be written.
[[nodiscard]] bool CountChange(Connection& connection, const QString& path,
                               const QByteArray& roundBefore);

/// Whether the log beside a file goes on from what the file holds. True where that cannot be told.
/// Nobody may have the file open.
bool LogFitsFile(const QString& path, const QString& password);

}  // namespace vorn
