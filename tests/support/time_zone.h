#pragma once

#include <QByteArray>

namespace vorn::test {

/// The zone of the user's clock, as long as it lives.
class TimeZone {
 public:
  explicit TimeZone(const char* name) : before_(qgetenv("TZ")) { qputenv("TZ", name); }
  ~TimeZone() { before_.isNull() ? qunsetenv("TZ") : qputenv("TZ", before_); }
  Q_DISABLE_COPY_MOVE(TimeZone)

 private:
  QByteArray before_;
};

}  // namespace vorn::test
