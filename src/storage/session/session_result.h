#pragma once

#include <type_traits>

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

/// Does `work`, which gives a result, in a transaction of the open database: all of it, or nothing
/// where it fails.
template <typename Work>
std::invoke_result_t<Work> Transact(DataSession& data, const Work& work) {
  if (!data.Begin()) return ReasonOf(data);
  auto done = work();
  if (done && data.Commit()) return done;
  const StorageError reason = done ? ReasonOf(data) : done.Error();
  data.Rollback();
  return reason;
}

}  // namespace vorn
