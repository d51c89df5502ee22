#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QString>
#include <cstdio>
#include <cstdlib>
#include <functional>

#include "storage/base/result.h"

namespace vorn::bench {

/// Ends the program with a sentence unless the condition holds.
inline void Require(bool condition, const QString& what) {
  if (condition) return;
  std::fprintf(stderr, "%s\n", qPrintable(what));
  std::exit(1);
}

template <typename T>
void Require(const Result<T>& result) {
  Require(static_cast<bool>(result), result ? QString() : result.Error().text);
}

inline double Milliseconds(const QElapsedTimer& clock) {
  return static_cast<double>(clock.nsecsElapsed()) / 1e6;
}

/// Runs the event loop until the condition holds; false after a minute.
inline bool WaitFor(const std::function<bool()>& condition) {
  constexpr qint64 kPatienceMs = 60000;
  QElapsedTimer timer;
  timer.start();
  while (!condition()) {
    if (timer.elapsed() > kPatienceMs) return false;
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
  }
  return true;
}

/// A line of the process's memory figures in kilobytes, such as "VmHWM:" for the peak or "VmRSS:"
/// for now; 0 where the system does not tell.
inline qint64 MemoryKilobytes(const char* line) {
  QFile status(QStringLiteral("/proc/self/status"));
  if (!status.open(QIODevice::ReadOnly)) return 0;
  for (const QByteArray& text : status.readAll().split('\n')) {
    if (text.startsWith(line)) return text.simplified().split(' ').value(1).toLongLong();
  }
  return 0;
}

}  // namespace vorn::bench
