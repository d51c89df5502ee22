#pragma once

#include <QDeadlineTimer>
#include <QString>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vorn {

/// Whether capitals and small letters are told apart.
enum class LetterCase { Ignored, Exact };

/// What stands for other characters in a pattern.
enum class Wildcards {
  None,      ///< nothing: the text contains the pattern somewhere
  Asterisk,  ///< `*` any characters, as in the LIKE of the SQL dialect
  /// Also `?` one character, `#` one digit, `[a-z]` one of a set, `[!a-z]` none of a set; an
  /// unclosed
  /// `[` stands for itself.
  All,
};

/// A pattern that texts are compared with.
class LikePattern {
 public:
  explicit LikePattern(std::string_view utf8Pattern, LetterCase letterCase = LetterCase::Ignored,
                       Wildcards wildcards = Wildcards::All);

  /// Whether the whole of `utf8Text` matches. Malformed UTF-8 matches nothing but wildcards.
  bool Matches(std::string_view utf8Text) const;
  /// The same; nothing when it is not known at the deadline.
  std::optional<bool> MatchesBy(const QDeadlineTimer& deadline, std::string_view utf8Text) const;

  /// The same for text that is not UTF-8 already.
  explicit LikePattern(const QString& pattern, LetterCase letterCase = LetterCase::Ignored)
      : LikePattern(std::string_view(pattern.toStdString()), letterCase) {}
  bool Matches(const QString& text) const { return Matches(std::string_view(text.toStdString())); }

 private:
  struct Element {
    enum class Kind { Literal, AnyRun, AnyOne, Digit, Set };
    Kind kind = Kind::Literal;
    char32_t literal = 0;
    bool negated = false;
    std::vector<std::pair<char32_t, char32_t>> ranges;

    bool Accepts(char32_t code) const;
  };

  char32_t Next(std::string_view text, size_t& at) const;
  std::optional<bool> ContainsNeedle(const QDeadlineTimer& deadline, std::string_view text) const;
  std::optional<bool> MatchesElements(const QDeadlineTimer& deadline, std::string_view text) const;
  void Parse(std::u32string_view pattern, Wildcards wildcards);
  void AddAnyRun();
  void ParseSet(std::u32string_view pattern, size_t& at);

  LetterCase letterCase_;
  std::vector<Element> elements_;
  // The pattern "*text*" of nearly every search, kept as folded text for a plain scan.
  std::u32string needle_;
  bool isNeedle_ = false;
  // The needle as UTF-8 when none of its characters has a case that matters: bytes are then
  // compared as they are, which is several times faster.
  std::string bytes_;
};

}  // namespace vorn
