#pragma once

#include <QString>

namespace vorn {

/// Whether a spreadsheet takes a cell of a table of text (CSV) for a formula that may start a
/// program or reach for another file or a server.
bool HasFormula(const QString& table);

}  // namespace vorn
