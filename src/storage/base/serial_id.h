#pragma once

#include <QString>

namespace vorn {

/// Makes serial identifiers: the prefix, then 20 characters of a-z and 2-7, eleven from the time
/// and nine at random. They sort by the time of making, which keeps neighbours in a message table
/// together; the first eight are enough to name a file. No quote, no "@".
class SerialIdGenerator {
 public:
  QString Next(const QString& prefix);

 private:
  quint64 lastTick_ = 0;
};

}  // namespace vorn
