#pragma once

#include <QString>

namespace vorn {

class DataSession;

/// A mark of the open database's state; it differs once anything has been written to the file, by
/// this program or another. Empty when none is open.
QString ChangeMark(const DataSession& data);
/// The same of what was written through another connection.
QString OthersMark(const DataSession& data);

}  // namespace vorn
