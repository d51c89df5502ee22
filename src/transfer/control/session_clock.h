#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include "transfer/control/pop_properties.h"

namespace vorn {

/// Tells when a server was silent for too long, and when it is time to see whether it was too slow.
class SessionClock : public QObject {
  Q_OBJECT

 public:
  /// `patience` must outlive the clock and may change while it runs.
  explicit SessionClock(const ServerPatience& patience);

  /// From now on a connection or an encryption is waited for.
  void WaitForConnection();
  /// From now on a reply is, or with `decides` what becomes of a whole message.
  void WaitForReply(bool decides);
  /// A period begins, with so many replies taken before it.
  void BeginPeriod(qsizetype replies);
  void CountBytes(qint64 bytes) { bytes_ += bytes; }
  /// Whether enough moved in this period, or a reply came, or nothing can be told: a timer that
  /// comes late tells of this program's slowness and not of the server's.
  bool IsFastEnough(qsizetype replies) const;
  void Stop();

 Q_SIGNALS:
  void Silent();
  void PeriodOver();

 private:
  const ServerPatience& patience_;
  QTimer timeout_;
  QTimer period_;
  QElapsedTimer sinceBegin_;  // of the period
  qint64 bytes_ = 0;          // in it
  qsizetype repliesBefore_ = 0;
};

}  // namespace vorn
