#pragma once

#include <QSet>
#include <QString>

namespace vorn {

/// How far the sources of a mail file have been gone through, by the numbers of their entries.
struct WalkPlace {
  qint64 digested = 0;  ///< up to here every source has a digest
  qint64 verified = 0;  ///< up to here they were read against it in this round

  bool operator==(const WalkPlace&) const = default;
};

struct WalkOutcome {
  WalkPlace place;
  qint64 bytes = 0;     ///< that were read
  bool atEnd = false;   ///< every source has a digest and was verified: a new round begins
  QSet<QString> parts;  ///< what was found damaged (see `Connection::Damage`)
};

/// Goes on through the sources of a file for some milliseconds, at least one of them: first those
/// that an earlier version stored get their digests, then all are read against theirs, so that
/// damage is found before a message is needed. It has a connection of its own and can run beside
/// the session, on a thread of its own; the file is written to once, at the end, for a moment. What
/// cannot be done, since the file does not open or is busy, is done another time.
WalkOutcome WalkSources(const QString& path, const QString& password, const WalkPlace& from,
                        int milliseconds);

}  // namespace vorn
