#pragma once

#include <QDeadlineTimer>
#include <QString>

#include "storage/context.h"

namespace vorn {

/// Notices that another program has stored messages in the profile's mail file.
class OtherPrograms {
 public:
  explicit OtherPrograms(Context& context, int restMs = kRestMs)
      : context_(context), restMs_(restMs) {}

  /// Whether that has happened since this was last asked. The file is asked every few seconds.
  bool HaveStored();

 private:
  static constexpr int kRestMs = 3000;

  Context& context_;
  int restMs_;
  QDeadlineTimer rest_;
  QString mark_;
  qint64 last_ = -1;
};

}  // namespace vorn
