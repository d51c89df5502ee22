#pragma once

#include <QByteArray>
#include <QString>

namespace vorn {

class Connection;

/// Counts a transaction in the open file, inside it, and notes, from the log's round when it began,
/// how much of the count the file holds without its write-ahead log. That ties a log to the state
/// of the file that it goes on from, which the engine's own format does not: it would read the log
/// of a later state into an older copy of the file, or an older log over a newer file, and what
/// comes of it is neither. False when it cannot be written.
bool CountChange(Connection& connection, const QString& path, const QByteArray& roundBefore);

/// Whether the log beside a file goes on from what the file holds. True where that cannot be told.
/// Nobody may have the file open.
bool LogFitsFile(const QString& path, const QString& password);

}  // namespace vorn
