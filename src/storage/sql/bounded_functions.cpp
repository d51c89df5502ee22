// Functions of the engine that take a time which grows with the product of their texts' lengths, or
// make texts without bounds: a condition that calls them could not be stopped, since its time is
// only looked at between the engine's steps. These do the same in bounds.

#include <algorithm>
#include <string>

#include "storage/base/find_bytes.h"
#include "storage/engine/condition_limit.h"
#include "storage/engine/engine.h"

namespace vorn {
namespace {

constexpr size_t kLongestMade = 16 * 1024 * 1024;  // bytes, or what the text had before
constexpr int kMostTrimmed = 64;                   // bytes that say what is trimmed off
constexpr size_t kShort = 512;                     // bytes that cost less than a look at the clock

bool AnyIsNull(int count, sqlite3_value** arguments) {
  return std::any_of(arguments, arguments + count,
                     [](sqlite3_value* value) { return sqlite3_value_type(value) == SQLITE_NULL; });
}

void Give(sqlite3_context* context, std::string_view text) {
  sqlite3_result_text(context, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
}

// INSTR(text, part): the place of the first one, counted in characters from 1; 0 when there is
// none.
void InStr(sqlite3_context* context, int count, sqlite3_value** arguments) {
  if (AnyIsNull(count, arguments)) return sqlite3_result_null(context);
  const std::string_view text = TextOf(arguments[0]);
  const std::string_view part = TextOf(arguments[1]);
  if (GaveUp(context, text.size())) return;
  const size_t before = FindBytes(text, part);
  if (before == std::string_view::npos) return sqlite3_result_int(context, 0);
  const auto characters =
      std::count_if(text.begin(), text.begin() + static_cast<ptrdiff_t>(before),
                    [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; });
  sqlite3_result_int64(context, characters + 1);
}

// REPLACE(text, part, other).
void Replace(sqlite3_context* context, int count, sqlite3_value** arguments) {
  if (AnyIsNull(count, arguments)) return sqlite3_result_null(context);
  const std::string_view text = TextOf(arguments[0]);
  const std::string_view part = TextOf(arguments[1]);
  const std::string_view other = TextOf(arguments[2]);
  if (GaveUp(context, text.size())) return;
  if (part.empty()) return Give(context, text);
  std::string made;
  size_t at = 0;
  while (at < text.size()) {
    const size_t place = FindBytes(text, part, at);
    if (place == std::string_view::npos) break;
    made.append(text.substr(at, place - at)).append(other);
    at = place + part.size();
    if (made.size() > std::max(kLongestMade, text.size()))
      return sqlite3_result_error_toobig(context);
  }
  Give(context, made.append(text.substr(at)));
}

bool HoldsCharacter(std::string_view set, std::string_view character) {
  return set.find(character) != std::string_view::npos;
}

size_t FirstLength(std::string_view text) {
  size_t length = 1;
  while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U) {
    ++length;
  }
  return length;
}

size_t LastLength(std::string_view text) {
  size_t length = 1;
  while (length < text.size() &&
         (static_cast<unsigned char>(text[text.size() - length]) & 0xC0U) == 0x80U) {
    ++length;
  }
  return length;
}

// TRIM(text, characters) and its halves.
template <bool kLeft, bool kRight>
void Trim(sqlite3_context* context, int count, sqlite3_value** arguments) {
  if (AnyIsNull(count, arguments)) return sqlite3_result_null(context);
  std::string_view text = TextOf(arguments[0]);
  const std::string_view set = TextOf(arguments[1]);
  if (GaveUp(context, text.size())) return;
  if (set.size() > kMostTrimmed) return sqlite3_result_error_toobig(context);
  while (kLeft && !text.empty() && HoldsCharacter(set, text.substr(0, FirstLength(text)))) {
    text.remove_prefix(FirstLength(text));
  }
  while (kRight && !text.empty() &&
         HoldsCharacter(set, text.substr(text.size() - LastLength(text)))) {
    text.remove_suffix(LastLength(text));
  }
  Give(context, text);
}

}  // namespace

bool GaveUp(sqlite3_context* context, size_t bytes) {
  const auto* deadline = static_cast<const QDeadlineTimer*>(sqlite3_user_data(context));
  if (bytes < kShort || !(deadline->hasExpired() || ConditionLimit::IsStopped())) return false;
  ConditionLimit::NoteReached();
  sqlite3_result_error_code(context, SQLITE_INTERRUPT);
  return true;
}

void RegisterBoundedFunctions(sqlite3* handle, QDeadlineTimer* deadline) {
  const auto add = [handle, deadline](const char* name, int count,
                                      void (*function)(sqlite3_context*, int, sqlite3_value**)) {
    sqlite3_create_function_v2(handle, name, count, SQLITE_UTF8 | SQLITE_DETERMINISTIC, deadline,
                               function, nullptr, nullptr, nullptr);
  };
  add("instr", 2, InStr);
  add("replace", 3, Replace);
  add("trim", 2, Trim<true, true>);
  add("ltrim", 2, Trim<true, false>);
  add("rtrim", 2, Trim<false, true>);
}

}  // namespace vorn
