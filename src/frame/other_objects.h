#pragma once

#include <QDeadlineTimer>
#include <QString>
#include <QStringList>

#include "storage/context.h"

namespace vorn {

/// Takes over what another program has stored in the profile's file: accounts, folders and the
/// other objects of the tree.
class OtherObjects {
 public:
  explicit OtherObjects(Context& context, int restMs = kRestMs)
      : context_(context), restMs_(restMs) {}

  /// The serial identifiers of the objects that have come or changed since this was last asked, and
  /// are loaded as they are now. The file is asked every few seconds.
  SerialIds TakeNew();

 private:
  static constexpr int kRestMs = 3000;

  bool HasChanged();
  bool Take(const DiskPtr& stored);

  Context& context_;
  int restMs_;
  QDeadlineTimer rest_;
  QString mark_;
};

}  // namespace vorn
