#include "storage/sql/sql_dialect.h"
#include "storage/sql/sql_text.h"
#include "storage/ui.h"

#include <algorithm>
#include <vector>

namespace vorn {
namespace {

// The engine takes no more for a statement, unless it was built otherwise.
constexpr qsizetype kMostParameters = 999;

enum class TokenKind { Space, Word, Quoted, Name, Number, Date, Symbol };

struct Token {
  TokenKind kind;
  QString text;  // Quoted and Date: the value without its marks; otherwise as written.

  bool IsWord(QLatin1String word) const {
    return kind == TokenKind::Word && text.compare(word, Qt::CaseInsensitive) == 0;
  }
  // Also in brackets, which are only needed around what is no word.
  bool IsName(QLatin1String name) const {
    return (kind == TokenKind::Word || kind == TokenKind::Name) &&
           text.compare(name, Qt::CaseInsensitive) == 0;
  }
  bool IsSymbol(QChar symbol) const { return kind == TokenKind::Symbol && text == symbol; }
};

bool IsWordStart(QChar c) {
  return c.isLetter() || c == u'_' || c.isSurrogate();
}
bool IsWordPart(QChar c) {
  return IsWordStart(c) || c.isDigit() || c.isMark() || c == u'$';
}

class Tokenizer {
 public:
  explicit Tokenizer(QStringView text) : text_(text) {}

  // False when a literal is not closed.
  bool Run(std::vector<Token>& tokens) {
    while (at_ < text_.size()) {
      const QChar c = text_[at_];
      if (c.isNull()) return false;
      if (c.isSpace()) {
        tokens.push_back({TokenKind::Space, TakeWhile([](QChar x) { return x.isSpace(); })});
      } else if (c == u'\'' || c == u'"') {
        if (!TakeQuoted(c, TokenKind::Quoted, tokens)) return false;
      } else if (c == u'[') {
        if (!TakeQuoted(u']', TokenKind::Name, tokens)) return false;
      } else if (c == u'#') {
        if (!TakeQuoted(c, TokenKind::Date, tokens)) return false;
      } else if (c.isDigit()) {
        tokens.push_back(
            {TokenKind::Number, TakeWhile([](QChar x) { return x.isDigit() || x == u'.'; })});
      } else if (IsWordStart(c)) {
        tokens.push_back({TokenKind::Word, TakeWhile(IsWordPart)});
      } else {
        tokens.push_back({TokenKind::Symbol, QString(c)});
        ++at_;
      }
    }
    return true;
  }

 private:
  template <typename Predicate>
  QString TakeWhile(Predicate predicate) {
    const qsizetype start = at_;
    while (at_ < text_.size() && predicate(text_[at_])) ++at_;
    return text_.mid(start, at_ - start).toString();
  }

  // A literal up to `close`; a doubled closing mark stands for one inside the literal.
  bool TakeQuoted(QChar close, TokenKind kind, std::vector<Token>& tokens) {
    QString value;
    for (qsizetype i = at_ + 1; i < text_.size(); ++i) {
      if (kind == TokenKind::Name && text_[i].isNull()) return false;
      if (text_[i] != close) {
        value += text_[i];
      } else if (i + 1 < text_.size() && text_[i + 1] == close) {
        value += close;
        ++i;
      } else {
        at_ = i + 1;
        tokens.push_back({kind, value});
        return true;
      }
    }
    return false;
  }

  QStringView text_;
  qsizetype at_ = 0;
};

StorageError BadStatement(const QString& sentence) {
  return {StorageError::Kind::BadStatement, sentence};
}

// Reads tokens without their spaces and knows what stands around each.
class Translator {
 public:
  explicit Translator(const std::vector<Token>& tokens) : tokens_(tokens) {}

  Result<EngineStatement> Run() {
    for (size_t i = 0; i < tokens_.size(); ++i) {
      if (tokens_[i].IsSymbol(u';')) {
        if (NextSolid(i) != nullptr) return BadStatement(Ui::tr("条件に使える文は一つだけです。"));
        break;
      }
      if (BeginsInnerWith(i)) return BadStatement(Ui::tr("条件にWITHは使えません。"));
      Emit(i);
    }
    statement_.sql = sql_.toUtf8();
    return statement_;
  }

 private:
  // The engine writes out each name that WITH defines wherever it stands, before it looks at the
  // time: some twenty that name each other twice keep it for hours.
  bool BeginsInnerWith(size_t i) const {
    const Token* previous = PreviousSolid(i);
    return tokens_[i].IsWord(QLatin1String("WITH")) && previous != nullptr &&
           previous->IsSymbol(u'(');
  }

  const Token* NextSolid(size_t index) const {
    for (size_t i = index + 1; i < tokens_.size(); ++i) {
      if (tokens_[i].kind != TokenKind::Space) return &tokens_[i];
    }
    return nullptr;
  }
  const Token* PreviousSolid(size_t index) const {
    while (index-- > 0) {
      if (tokens_[index].kind != TokenKind::Space) return &tokens_[index];
    }
    return nullptr;
  }

  // What finds no room as a parameter stays in the statement. One behind the other would be one
  // literal, and one with a zero in it would end there.
  void Parameter(const QString& value) {
    if (statement_.parameters.size() >= kMostParameters && !value.contains(QChar(u'\0'))) {
      sql_ += u' ' + QuoteSql(value);
      return;
    }
    sql_ += u'?';
    statement_.parameters.append(value);
  }

  void Emit(size_t i) {
    const Token& token = tokens_[i];
    switch (token.kind) {
      case TokenKind::Quoted:
        Parameter(token.text);
        break;
      case TokenKind::Date:
        Parameter(QString(token.text).replace(u'/', u'-'));
        break;
      case TokenKind::Name:
        if (IsSourceColumn(i, QStringView(token.text))) {
          EmitLongBinary(IsQualified(i));
          break;
        }
        sql_ += u'"' + QString(token.text).replace(u'"', QStringLiteral("\"\"")) + u'"';
        break;
      case TokenKind::Word:
        EmitWord(i);
        break;
      case TokenKind::Symbol:
        EmitSymbol(i);
        break;
      default:
        sql_ += token.text;
    }
  }

  void EmitWord(size_t i) {
    const Token& token = tokens_[i];
    const Token* next = NextSolid(i);
    const bool qualified = IsQualified(i);
    const bool isCall = next != nullptr && next->IsSymbol(u'(');
    if (token.IsWord(QLatin1String("WHERE"))) inCondition_ = true;
    if (token.IsWord(QLatin1String("FROM"))) inCondition_ = false;
    if (token.IsWord(QLatin1String("NOW")) && !qualified) {
      sql_ += isCall ? QStringLiteral("NOW") : QStringLiteral("NOW()");
    } else if (!qualified && token.IsWord(QLatin1String("TRUE"))) {
      sql_ += u'1';
    } else if (!qualified && token.IsWord(QLatin1String("FALSE"))) {
      sql_ += u'0';
    } else if (IsSourceColumn(i, QStringView(token.text))) {
      EmitLongBinary(qualified);
    } else {
      sql_ += token.text;
    }
  }

  bool IsQualified(size_t i) {
    const Token* previous = PreviousSolid(i);
    return previous != nullptr && previous->IsSymbol(u'.');
  }

  // Whether a name in a condition is that of the messages' sources.
  bool IsSourceColumn(size_t i, QStringView name) {
    const Token* next = NextSolid(i);
    const bool isOther = next != nullptr && (next->IsSymbol(u'.') || next->IsSymbol(u'('));
    return inCondition_ && !isOther &&
           name.compare(QLatin1String("MAIL"), Qt::CaseInsensitive) == 0;
  }

  // The column holds a reference to data kept in a table of its own.
  void EmitLongBinary(bool qualified) {
    qsizetype start = sql_.size();
    if (qualified) {
      start = sql_.lastIndexOf(u'.');
      while (start > 0 && (IsWordPart(sql_[start - 1]) || sql_[start - 1] == u'"')) --start;
    }
    sql_.insert(start, QStringLiteral("LONG_BINARY("));
    sql_ += QStringLiteral("MAIL)");
  }

  void EmitSymbol(size_t i) {
    const Token& token = tokens_[i];
    const Token* previous = PreviousSolid(i);
    if (token.IsSymbol(u'*') && previous != nullptr && previous->IsWord(QLatin1String("DELETE"))) {
      return;
    }
    // What begins inside parentheses, such as the FROM of a sub-select, ends with them.
    if (token.IsSymbol(u'(')) outer_.push_back(inCondition_);
    if (token.IsSymbol(u')') && !outer_.empty()) {
      inCondition_ = outer_.back();
      outer_.pop_back();
    }
    if (token.IsSymbol(u'&')) {
      sql_ += QStringLiteral("||");
      return;
    }
    // The dialect has no comments: "--" is two signs and "/*" a division by everything.
    const QChar last = sql_.isEmpty() ? QChar() : sql_.back();
    if ((token.IsSymbol(u'-') && last == u'-') || (token.IsSymbol(u'*') && last == u'/')) {
      sql_ += u' ';
    }
    sql_ += token.text;
  }

  const std::vector<Token>& tokens_;
  QString sql_;
  EngineStatement statement_;
  bool inCondition_ = false;
  std::vector<bool> outer_;  // the same around each open parenthesis
};

// Without the spaces, as far as it can be read.
std::vector<Token> SolidTokens(const QString& condition) {
  std::vector<Token> tokens;
  Tokenizer(condition).Run(tokens);
  std::erase_if(tokens, [](const Token& token) { return token.kind == TokenKind::Space; });
  return tokens;
}

}  // namespace

Result<EngineStatement> TranslateSql(const QString& statement) {
  std::vector<Token> tokens;
  if (!Tokenizer(statement).Run(tokens)) {
    return BadStatement(Ui::tr("条件の引用符が閉じていません。"));
  }
  return Translator(tokens).Run();
}

QString UpdatableTable(const QString& statement) {
  std::vector<Token> tokens;
  if (!Tokenizer(statement).Run(tokens)) return {};
  std::erase_if(tokens, [](const Token& token) { return token.kind == TokenKind::Space; });
  const bool isPlain = tokens.size() >= 4 && tokens[0].IsWord(QLatin1String("SELECT")) &&
                       tokens[1].IsSymbol(u'*') && tokens[2].IsWord(QLatin1String("FROM")) &&
                       tokens[3].kind == TokenKind::Word &&
                       (tokens.size() == 4 || tokens[4].IsWord(QLatin1String("WHERE")));
  return isPlain ? tokens[3].text : QString();
}

bool NamesColumn(const QString& condition, QLatin1String column) {
  const std::vector<Token> tokens = SolidTokens(condition);
  return std::ranges::any_of(tokens, [&](const Token& token) { return token.IsName(column); });
}

bool NamesTable(const QString& condition, QLatin1String table) {
  const std::vector<Token> tokens = SolidTokens(condition);
  const auto isQualified = [&](const Token& token, const Token& next) {
    return token.IsName(table) && next.IsSymbol(u'.');
  };
  return std::ranges::adjacent_find(tokens, isQualified) != tokens.end();
}

bool DependsOnTime(const QString& condition) {
  const std::vector<Token> tokens = SolidTokens(condition);
  return std::ranges::any_of(tokens, [](const Token& token) {
    const bool isNow = token.text.compare(u"NOW", Qt::CaseInsensitive) == 0;
    return token.kind == TokenKind::Word
               ? isNow || token.text.startsWith(u"CURRENT_", Qt::CaseInsensitive)
               : isNow && token.kind == TokenKind::Quoted;
  });
}

}  // namespace vorn
