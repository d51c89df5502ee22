#pragma once

#include <QString>

namespace vorn {

/// Whether a spreadsheet takes a cell of a table of text (CSV) for a formula that may start a
/// program or reach for another file or a server.
bool HasFormula(const QString& table);

/// Whether a formula of a spreadsheet document starts a program (DDE) or reaches for another
/// computer.
bool ActsAsFormula(const QString& formula);

}  // namespace vorn
