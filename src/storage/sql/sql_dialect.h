#pragma once

#include <QByteArray>
#include <QString>
#include <QVariantList>

#include "storage/base/result.h"

namespace vorn {

/// A statement in the engine's own SQL. Literals have become parameters, as many as the engine
/// takes, so that statements that differ only in their values share one prepared statement.
struct EngineStatement {
  QByteArray sql;
  QVariantList parameters;
};

/// Translates one statement of the dialect that the system writes into the engine's SQL:
/// `DELETE * FROM`, `NOW` and `DATEDIFF("d", ...)`, strings in double quotes, dates in `#...#`,
/// `&` as concatenation, and columns of long binary data in expressions. Works on tokens, so text
/// inside literals is never touched.
///
/// Fails, as a `BadStatement`, for an unclosed literal or more than one statement.
Result<EngineStatement> TranslateSql(const QString& statement);

/// The table of a plain `SELECT * FROM table [WHERE ...]`, which is the only form that can be
/// updated; empty for anything else.
QString UpdatableTable(const QString& statement);

/// Whether a condition names a column, of whichever table, in its words rather than in a text that
/// it looks for. Capitals and small letters are the same.
bool NamesColumn(const QString& condition, QLatin1String column);

/// The same of a table that one of its columns is said to be of, as in `folder.SERIALID`.
bool NamesTable(const QString& condition, QLatin1String table);

/// Whether a condition holds for other rows as time passes: it names the time in its words, or
/// gives "now" to a function.
bool DependsOnTime(const QString& condition);

}  // namespace vorn
