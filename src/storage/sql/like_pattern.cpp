#include "storage/sql/like_pattern.h"

#include <QChar>
#include <algorithm>

#include "storage/base/find_bytes.h"
#include "storage/engine/condition_limit.h"

namespace vorn {
namespace {

constexpr char32_t kMalformed = 0xFFFD;
constexpr size_t kWorkBetweenLooks = 1 << 20;  // comparisons

bool IsOver(const QDeadlineTimer& deadline) {
  return deadline.hasExpired() || ConditionLimit::IsStopped();
}

// The code point at `at`, which moves past it.
char32_t NextCodePoint(std::string_view text, size_t& at) {
  const auto lead = static_cast<unsigned char>(text[at++]);
  if (lead < 0x80) return lead;
  const int extra = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : 0;
  if (extra == 0) return kMalformed;
  char32_t code = lead & (0x3Fu >> extra);
  for (int i = 0; i < extra; ++i) {
    if (at >= text.size() || (static_cast<unsigned char>(text[at]) & 0xC0) != 0x80) {
      return kMalformed;
    }
    code = code << 6 | (static_cast<unsigned char>(text[at++]) & 0x3F);
  }
  return code;
}

char32_t Fold(char32_t code) {
  if (code < 0x80) return code >= U'A' && code <= U'Z' ? code + 32 : code;
  // Kana and ideographs, the bulk of the text here, have no case.
  if (code >= 0x2E80 && code < 0xA640) return code;
  return QChar::toCaseFolded(code);
}

// Whether the character is the only one that folds to itself.
bool IsCaseless(char32_t code) {
  if (code < 0x80) return code < U'A' || (code > U'Z' && code < U'a') || code > U'z';
  return code >= 0x2E80 && code < 0xA640;
}

}  // namespace

char32_t LikePattern::Next(std::string_view text, size_t& at) const {
  const char32_t code = NextCodePoint(text, at);
  return letterCase_ == LetterCase::Ignored ? Fold(code) : code;
}

LikePattern::LikePattern(std::string_view utf8Pattern, LetterCase letterCase, Wildcards wildcards)
    : letterCase_(letterCase) {
  std::u32string pattern;
  for (size_t at = 0; at < utf8Pattern.size();) pattern += Next(utf8Pattern, at);
  if (wildcards == Wildcards::None) AddAnyRun();
  Parse(pattern, wildcards);
  if (wildcards == Wildcards::None) AddAnyRun();

  isNeedle_ = elements_.size() > 2 && elements_.front().kind == Element::Kind::AnyRun &&
              elements_.back().kind == Element::Kind::AnyRun &&
              std::all_of(elements_.begin() + 1, elements_.end() - 1, [](const Element& element) {
                return element.kind == Element::Kind::Literal;
              });
  if (isNeedle_) {
    for (size_t i = 1; i + 1 < elements_.size(); ++i) needle_ += elements_[i].literal;
    if (letterCase_ == LetterCase::Exact ||
        std::all_of(needle_.begin(), needle_.end(), IsCaseless)) {
      // A needle follows a run of "*" and is followed by one.
      const bool isBare = wildcards == Wildcards::None;
      const size_t first = isBare ? 0 : utf8Pattern.find_first_not_of('*');
      const size_t last = isBare ? utf8Pattern.size() - 1 : utf8Pattern.find_last_not_of('*');
      bytes_ = utf8Pattern.substr(first, last - first + 1);
    }
  }
}

void LikePattern::AddAnyRun() {
  if (!elements_.empty() && elements_.back().kind == Element::Kind::AnyRun) return;
  elements_.push_back({Element::Kind::AnyRun, 0, false, {}});
}

void LikePattern::Parse(std::u32string_view pattern, Wildcards wildcards) {
  const bool hasAll = wildcards == Wildcards::All;
  for (size_t at = 0; at < pattern.size();) {
    const char32_t code = pattern[at];
    if (code == U'*' && wildcards != Wildcards::None) {
      AddAnyRun();
    } else if (code == U'?' && hasAll) {
      elements_.push_back({Element::Kind::AnyOne, 0, false, {}});
    } else if (code == U'#' && hasAll) {
      elements_.push_back({Element::Kind::Digit, 0, false, {}});
    } else if (code == U'[' && hasAll && pattern.find(U']', at + 1) != std::u32string::npos) {
      ParseSet(pattern, at);
      continue;
    } else {
      elements_.push_back({Element::Kind::Literal, code, false, {}});
    }
    ++at;
  }
}

void LikePattern::ParseSet(std::u32string_view pattern, size_t& at) {
  Element set{Element::Kind::Set, 0, false, {}};
  ++at;
  if (pattern[at] == U'!') {
    set.negated = true;
    ++at;
  }
  while (pattern[at] != U']') {
    const char32_t first = pattern[at++];
    char32_t last = first;
    if (pattern[at] == U'-' && pattern[at + 1] != U']') {
      last = pattern[at + 1];
      at += 2;
    }
    set.ranges.emplace_back(first, last);
  }
  ++at;
  elements_.push_back(std::move(set));
}

bool LikePattern::Element::Accepts(char32_t code) const {
  switch (kind) {
    case Kind::Literal:
      return code == literal;
    case Kind::Digit:
      return code >= U'0' && code <= U'9';
    case Kind::Set: {
      const bool inside = std::any_of(ranges.begin(), ranges.end(), [&](const auto& range) {
        return code >= range.first && code <= range.second;
      });
      return inside != negated;
    }
    default:
      return true;
  }
}

bool LikePattern::Matches(std::string_view utf8Text) const {
  return MatchesBy(QDeadlineTimer(QDeadlineTimer::Forever), utf8Text).value_or(false);
}

std::optional<bool> LikePattern::MatchesBy(const QDeadlineTimer& deadline,
                                           std::string_view utf8Text) const {
  if (!bytes_.empty()) return FindBytes(utf8Text, bytes_) != std::string_view::npos;
  return isNeedle_ ? ContainsNeedle(deadline, utf8Text) : MatchesElements(deadline, utf8Text);
}

std::optional<bool> LikePattern::ContainsNeedle(const QDeadlineTimer& deadline,
                                                std::string_view text) const {
  size_t work = 0;
  for (size_t start = 0; start < text.size();) {
    size_t at = start;
    const char32_t first = Next(text, at);
    start = at;
    if (first != needle_[0]) continue;
    size_t matched = 1;
    while (matched < needle_.size() && at < text.size() && Next(text, at) == needle_[matched]) {
      ++matched;
    }
    if (matched == needle_.size()) return true;
    work += matched;
    if (work >= kWorkBetweenLooks) {
      if (IsOver(deadline)) return std::nullopt;
      work = 0;
    }
  }
  return false;
}

// Greedy with one point to go back to, the last `*`: linear in practice and never exponential.
std::optional<bool> LikePattern::MatchesElements(const QDeadlineTimer& deadline,
                                                 std::string_view text) const {
  size_t at = 0;
  size_t element = 0;
  size_t retryElement = elements_.size() + 1;
  size_t retryText = 0;
  for (size_t work = 1;; ++work) {
    if (work % kWorkBetweenLooks == 0 && IsOver(deadline)) return std::nullopt;
    if (element < elements_.size() && elements_[element].kind == Element::Kind::AnyRun) {
      retryElement = ++element;
      retryText = at;
      continue;
    }
    if (at >= text.size()) return element == elements_.size();
    if (element < elements_.size()) {
      size_t next = at;
      if (elements_[element].Accepts(Next(text, next))) {
        at = next;
        ++element;
        continue;
      }
    }
    if (retryElement > elements_.size()) return false;
    NextCodePoint(text, retryText);
    at = retryText;
    element = retryElement;
  }
}

}  // namespace vorn
