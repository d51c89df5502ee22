#pragma once

#include <QByteArray>
#include <QString>
#include <functional>

#include "storage/base/result.h"
#include "storage/session/data_session.h"

namespace vorn {

/// What the file that the session has open tells of its received messages by what they hold, for
/// finding one that has come before.
class ReceivedRows {
 public:
  explicit ReceivedRows(DataSession& data) : data_(data) {}

  /// Tells the rows (of `mail`, by their ROWID) behind `after`, each with the digest of its source
  /// (see `SourceDigest`; empty when it has none yet) and its subject. Reads a page of each source.
  Result<> Read(qint64 after, const std::function<void(qint64 row, const QByteArray& digest,
                                                       const QString& subject)>& tell);
  /// The serial identifier of the message that was last noted under that number (`MessageIdentity`,
  /// table `received_identity`), empty when there is none any more; and the noting of one.
  Result<SerialId> Of(qint64 identity);
  Result<> Note(qint64 identity, const SerialId& serialId);

 private:
  DataSession& data_;
};

}  // namespace vorn
