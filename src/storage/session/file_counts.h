#pragma once

#include <QByteArray>

#include "storage/base/result.h"

namespace vorn {

class DataSession;

/// What the mail file that the session has open counts, by which an older copy of it is told.
class FileCounts {
 public:
  explicit FileCounts(DataSession& data) : data_(data) {}

  /// How many messages it holds.
  Result<qint64> Messages();
  /// How often it was written to (see `CountChange`); 0 where that was never counted.
  Result<qint64> Changes();
  /// In how many times messages were received or sent; 0 where that was never counted.
  Result<qint64> Works();
  Result<> SetWorks(qint64 number);
  /// Whether it was taken for what it is, an older copy.
  Result<bool> IsOlderCopy();
  Result<> MarkOlderCopy();

 private:
  Result<qint64> Number(const QByteArray& select);
  Result<bool> Has(const QByteArray& table);
  Result<qint64> Last(const QByteArray& table);

  DataSession& data_;
};

}  // namespace vorn
