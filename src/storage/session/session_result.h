#pragma once

#include "storage/base/result.h"
#include "storage/session/data_session.h"

namespace vorn {

/// Why a call of the session has just failed. To be asked before the next call, which may leave
/// another reason. Where the current result set could not be read or written, that is the reason.
inline StorageError ReasonOf(const DataSession& data) {
  const RecordsetPtr rows = data.Recordset();
  return rows != nullptr && rows->Failed() ? rows->Error() : data.LastError();
}

/// What calls of the session have come to: done, or the reason.
inline Result<> ResultOf(const DataSession& data, bool done) {
  return done ? Result<>() : ReasonOf(data);
}

}  // namespace vorn
