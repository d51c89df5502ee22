#pragma once

#include <QString>

namespace vorn {

/// Whether a spreadsheet takes a cell of a table of text (CSV) for a formula.
bool HasFormula(const QString& table);

}  // namespace vorn
