#pragma once

#include <QByteArray>
#include <QStringList>
#include <vector>

namespace vorn {

/// Many short texts in their order, which do not change, in little memory: of a million identifiers
/// of messages some 30 MB, where a QStringList takes a hundred.
class CompactList {
 public:
  explicit CompactList(const QStringList& texts = {});

  qsizetype Size() const { return static_cast<qsizetype>(ends_.size()); }
  /// Those from the one numbered `first`, counted from 0; at most `limit` of them unless it is 0.
  QStringList Mid(qsizetype first, qsizetype limit) const;

 private:
  QByteArray texts_;  // UTF-8, one behind the other
  std::vector<qsizetype> ends_;
};

}  // namespace vorn
