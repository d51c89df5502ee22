#include "mail/inspection/table_formulas.h"

#include <QRegularExpression>
#include <algorithm>

namespace vorn {
namespace {

// Spreadsheets take the first line "sep=X" as the delimiter of the rest.
QString Delimiters(const QString& table) {
  static const QRegularExpression named(QStringLiteral("^[\\x{FEFF}\\s\"]*sep\\s*=(\\s*.)"),
                                        QRegularExpression::CaseInsensitiveOption);
  const QString first = table.section(u'\n', 0, 0);
  return QStringLiteral("\n\r,;\t|") + named.match(first).captured(1);
}

QRegularExpression CallOf(const QString& names) {
  return QRegularExpression(QStringLiteral("(?<!\\w)(\\w+\\.)*(%1)(\\.\\w+)*\\s*\\(").arg(names),
                            QRegularExpression::CaseInsensitiveOption);
}

// Functions that start a program or ask another computer. What the others do stays in the sheet; a
// name that is none of a function is an error in its cell.
const QString kOutside = QStringLiteral(
    "WEBSERVICE|IMAGE|RTD|DDE|CALL|EXEC|REGISTER|CUBE\\w+|STOCKHISTORY|PY|IMPORT\\w+|GOOGLE\\w+");

// The functions that a line of a table calls from its first formula on: which sign separates cells,
// and which the arguments of a function, differs from program to program.
class LineCalls {
 public:
  void Begin() { isOn_ = true; }
  // False when the line calls out.
  bool Add(QChar c) {
    if (!isOn_) return true;
    if (c == u'"') ++quotes_;
    const bool isEnd = (c == u'\n' || c == u'\r') && quotes_ % 2 == 0;
    if (!isEnd) line_ += c;
    return !isEnd || End();
  }
  bool End() {
    // In a table without a document around it, links and addresses made of text as well.
    static const QRegularExpression calls =
        CallOf(kOutside + QStringLiteral("|HYPERLINK|INDIRECT"));
    const QString usual = line_.normalized(QString::NormalizationForm_KC);
    line_.clear();
    quotes_ = 0;
    isOn_ = false;
    return !calls.match(usual).hasMatch();
  }

 private:
  QString line_;
  int quotes_ = 0;
  bool isOn_ = false;
};

}  // namespace

// A cell is taken for a formula when it begins with one of these signs, and behind the last four
// when it is no number. It acts by a function that leads out, or by a cell of elsewhere: another
// program (DDE), another file. `="0123"` and "@name" do nothing.
bool HasFormula(const QString& table) {
  enum class In { Start, Signed, Formula, Text } state = In::Start;
  const auto isOneOf = [](QStringView set, QChar c) { return set.contains(c); };
  const QString delimiters = Delimiters(table);
  LineCalls calls;
  int quotes = 0;  // in this cell; inside of them a delimiter ends no formula
  for (const QChar c : table) {
    if (c == u'"') ++quotes;
    if (state == In::Formula && isOneOf(u"|｜!！#", c)) return true;
    if (delimiters.contains(c)) {
      if (state != In::Formula || quotes % 2 == 0) {
        state = In::Start;
        quotes = 0;
      }
    } else if (state == In::Signed && c.unicode() < 0x80 && c.isLetter()) {
      state = In::Formula;
    } else if (state == In::Start && isOneOf(u"=＝@＠", c)) {
      state = In::Formula;
    } else if (state == In::Start && !c.isSpace() && !isOneOf(u"\"'\uFEFF", c)) {
      state = isOneOf(u"+＋-－−", c) ? In::Signed : In::Text;
    }
    if (state == In::Formula) calls.Begin();
    if (!calls.Add(c)) return true;
  }
  return !calls.End();
}

// What is quoted twice is text; what is quoted once names a table or a file, and what stands in
// brackets a file or a column. A bar stands between a program and its topic, and nowhere else.
bool ActsAsFormula(const QString& formula) {
  static const QRegularExpression text(QStringLiteral("\"[^\"]*\""));
  static const QRegularExpression name(QStringLiteral("'[^']*'|\\[[^\\]]*\\]"));
  static const QRegularExpression elsewhere(
      QStringLiteral("'\\s*([a-z][a-z0-9+.-]+:|//|\\\\\\\\)(?!///(?![/\\\\%]))"),
      QRegularExpression::CaseInsensitiveOption);
  static const QRegularExpression call = CallOf(kOutside);
  // Functions that are handed on to another one, which calls them.
  static const QRegularExpression handed(
      QStringLiteral("_xleta\\.(%1)\\b|(?<!\\w)(WEBSERVICE|STOCKHISTORY)\\b").arg(kOutside),
      QRegularExpression::CaseInsensitiveOption);
  const auto isSign = [](QChar c) { return QStringView(u"|'(.,").contains(c); };
  if (std::none_of(formula.begin(), formula.end(), isSign)) return false;
  QString rest = formula;
  rest.remove(text);
  if (elsewhere.match(rest).hasMatch() || call.match(rest).hasMatch() ||
      handed.match(rest).hasMatch()) {
    return true;
  }
  return rest.remove(name).contains(u'|');
}

}  // namespace vorn
