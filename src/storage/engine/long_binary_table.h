#pragma once

#include <QByteArray>

#include "storage/base/result.h"

namespace vorn {

class Connection;

/// The table `long_binary` of an open file, which holds the message sources, each with a digest
/// that shows whether it is as it was written.
class LongBinaryTable {
 public:
  explicit LongBinaryTable(Connection& connection) : connection_(connection) {}

  /// The bytes of an entry. Fails when they cannot be read as they were written, which the
  /// connection has noted as its damage then.
  Result<QByteArray> Read(qint64 id);
  /// Negative, with the reason at the connection, when it cannot be read.
  qint64 Size(qint64 id);
  /// The new entry's identifier; 0, with the reason at the connection, on failure.
  qint64 Write(const QByteArray& data);

 private:
  struct Entry {
    QByteArray bytes;
    QByteArray digest;  // empty where none is known
  };
  Result<Entry> ReadWithDigest(qint64 id);
  Result<QByteArray> ReadLarge(qint64 id);
  Result<QByteArray> ReadLateDigest(qint64 id);

  Connection& connection_;
};

}  // namespace vorn
