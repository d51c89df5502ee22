#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace vorn {

/// A piece of a PDF file's syntax (ISO 32000-1, 7.2 and 7.3).
struct PdfToken {
  enum class Kind { Name, Number, Word, Open, Close, OpenArray, CloseArray, String, End };
  Kind kind = Kind::End;
  QByteArray text;  ///< of a name without its slash and escapes, a number or a word
};

/// Reads one piece after another. The bytes must live as long.
class PdfTokens {
 public:
  explicit PdfTokens(QByteArrayView bytes, qsizetype at = 0) : bytes_(bytes), at_(at) {}

  PdfToken Next();
  /// Where the next piece, or the blanks before it, begins.
  qsizetype At() const { return at_; }

 private:
  void SkipBlanks();
  PdfToken ReadName();
  PdfToken ReadString();
  PdfToken ReadPlain();

  QByteArrayView bytes_;
  qsizetype at_;
};

bool IsPdfBlank(char c);

}  // namespace vorn
