#pragma once

#include <QByteArray>
#include <vector>

#include "storage/base/serial_id.h"

namespace vorn {

/// Many serial identifiers in their order, which do not change, in little memory: a million of them
/// in some 33 MB, where a list takes a hundred.
class CompactIds {
 public:
  explicit CompactIds(const SerialIds& ids = {});

  qsizetype Size() const { return static_cast<qsizetype>(ends_.size()); }
  /// Those from the one numbered `first`, counted from 0; at most `limit` of them unless it is 0.
  SerialIds Mid(qsizetype first, qsizetype limit) const;

 private:
  QByteArray texts_;  // UTF-8, one behind the other
  std::vector<qsizetype> ends_;
};

}  // namespace vorn
