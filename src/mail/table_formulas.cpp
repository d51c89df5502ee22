#include "mail/table_formulas.h"

#include <QRegularExpression>

namespace vorn {
namespace {

// Spreadsheets take the first line "sep=X" as the delimiter of the rest.
QString Delimiters(const QString& table) {
  static const QRegularExpression named(QStringLiteral("^[\\x{FEFF}\\s\"]*sep\\s*=(\\s*.)"),
                                        QRegularExpression::CaseInsensitiveOption);
  const QString first = table.section(u'\n', 0, 0);
  return QStringLiteral("\n\r,;\t|") + named.match(first).captured(1);
}

}  // namespace

// Behind a sign a number is none.
bool HasFormula(const QString& table) {
  enum class In { Start, Signed, Rest } state = In::Start;
  const auto isOneOf = [](QStringView set, QChar c) { return set.contains(c); };
  const QString delimiters = Delimiters(table);
  for (const QChar c : table) {
    if (state == In::Start && isOneOf(u"=＝@＠", c)) return true;
    if (delimiters.contains(c)) {
      state = In::Start;
    } else if (state == In::Signed && c.unicode() < 0x80 && c.isLetter()) {
      return true;
    } else if (state == In::Start && !c.isSpace() && !isOneOf(u"\"'\uFEFF", c)) {
      state = isOneOf(u"+＋-－−", c) ? In::Signed : In::Rest;
    }
  }
  return false;
}

}  // namespace vorn
