#pragma once

#include <QByteArray>
#include <QSet>

#include "storage/base/result.h"
#include "storage/context.h"

namespace vorn {

/// Which messages that the receive-stop rules leave on their servers the user has been told of:
/// they are stopped at each check, and told of once. Known by a digest of the header, in the table
/// `told_stop` of the profile's mail file.
class ToldStops {
 public:
  explicit ToldStops(Context& context) : context_(context) {}

  /// A session begins.
  void Begin() { fresh_.clear(); }
  /// Whether nobody has been told of the message with that header, which is noted; also where that
  /// cannot be read.
  bool IsFresh(const QByteArray& header);
  /// The user has been told of what was noted in the session.
  Result<> Store();

 private:
  Context& context_;
  QSet<qint64> fresh_;
};

}  // namespace vorn
