#pragma once

#include <QByteArray>
#include <QVariant>

#include "storage/base/result.h"
#include "storage/engine/recordset.h"

namespace vorn {

class DataSession;

// Statements of this program's own on the open file, in the engine's dialect, with values for "?1"
// and so on. Each is prepared once for as long as the file stays warm.

/// Runs one that returns no rows, inside the transaction that is open.
Result<> RunOwn(DataSession& data, const QByteArray& statement, const QVariantList& values);
/// The rows of a SELECT statement, forward only. The session's current result set stays.
Result<RecordsetPtr> AskOwn(DataSession& data, const QByteArray& select,
                            const QVariantList& values);

}  // namespace vorn
