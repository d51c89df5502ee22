#pragma once

#include <QByteArray>
#include <QMultiHash>
#include <QString>

#include "storage/base/result.h"
#include "storage/session/data_session.h"

namespace vorn {

/// What was received and erased for good, of the file that the session has open: the names under
/// which it came, with the digests of the sources.
class ErasedMessages {
 public:
  explicit ErasedMessages(DataSession& data) : data_(data) {}

  /// Whether there is any; and whether one came under that name.
  Result<bool> HasAny();
  Result<bool> Has(const QString& messageId);
  /// The names by digest; of the oldest entries the digest is empty.
  Result<QMultiHash<QByteArray, QString>> ByDigest();
  /// Notes what has that digest under a further name; nothing where none has it.
  Result<> NoteAlso(const QString& messageId, const QByteArray& digest);

 private:
  DataSession& data_;
};

}  // namespace vorn
