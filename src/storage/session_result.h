#pragma once

#include "storage/data_session.h"
#include "storage/result.h"

namespace vorn {

/// What calls of the session have come to: done, or why not. To be asked before the next call,
/// which may leave another reason. Where the current result set could not be read to its end, that
/// is the reason.
inline Result<> ResultOf(const DataSession& data, bool done) {
  if (done) return {};
  const RecordsetPtr rows = data.Recordset();
  return rows != nullptr && rows->Failed() ? rows->Error() : data.LastError();
}

}  // namespace vorn
