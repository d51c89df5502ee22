// The dialect's functions as the engine calls them.

#include <QDateTime>
#include <algorithm>
#include <memory>
#include <optional>
#include <string>

#include "storage/base/time_text.h"
#include "storage/engine/condition_limit.h"
#include "storage/engine/engine.h"
#include "storage/sql/like_pattern.h"

namespace vorn {
namespace {

// The compiled pattern stays with the statement while it runs, under its argument's place.
void Compare(sqlite3_context* context, sqlite3_value** arguments, int patternAt, int textAt,
             Wildcards wildcards) {
  if (sqlite3_value_type(arguments[0]) == SQLITE_NULL ||
      sqlite3_value_type(arguments[1]) == SQLITE_NULL) {
    sqlite3_result_null(context);
    return;
  }
  auto* pattern = static_cast<LikePattern*>(sqlite3_get_auxdata(context, patternAt));
  std::unique_ptr<LikePattern> own;
  if (pattern == nullptr) {
    own =
        std::make_unique<LikePattern>(TextOf(arguments[patternAt]), LetterCase::Ignored, wildcards);
    pattern = own.get();
  }
  const auto* deadline = static_cast<const QDeadlineTimer*>(sqlite3_user_data(context));
  const std::string_view text = TextOf(arguments[textAt]);
  if (GaveUp(context, text.size())) return;
  const std::optional<bool> matches = pattern->MatchesBy(*deadline, text);
  if (own) {
    sqlite3_set_auxdata(context, patternAt, own.release(),
                        [](void* kept) { delete static_cast<LikePattern*>(kept); });
  }
  if (matches) {
    sqlite3_result_int(context, *matches ? 1 : 0);
  } else {
    ConditionLimit::NoteReached();
    sqlite3_result_error_code(context, SQLITE_INTERRUPT);
  }
}

// "text LIKE pattern" arrives as like(pattern, text).
void Like(sqlite3_context* context, int, sqlite3_value** arguments) {
  Compare(context, arguments, 0, 1, Wildcards::Asterisk);
}

// The dialect has no ESCAPE, and the engine's own comparison knows no deadline.
void LikeWithEscape(sqlite3_context* context, int, sqlite3_value**) {
  sqlite3_result_error(context, "LIKE: no ESCAPE", -1);
}

// CONTAINS(text, part): for what a user types, in which nothing is a wildcard.
void Contains(sqlite3_context* context, int, sqlite3_value** arguments) {
  Compare(context, arguments, 1, 0, Wildcards::None);
}

// ADDRESSES(lines): address lines without the words they begin with, such as "FROM:".
void Addresses(sqlite3_context* context, int, sqlite3_value** arguments) {
  std::string addresses;
  std::string_view lines = TextOf(arguments[0]);
  while (!lines.empty()) {
    const size_t end = std::min(lines.find('\n'), lines.size() - 1) + 1;
    const std::string_view line = lines.substr(0, end);
    const size_t colon = line.find(": ");
    addresses += colon == std::string_view::npos ? line : line.substr(colon + 2);
    lines.remove_prefix(end);
  }
  sqlite3_result_text(context, addresses.data(), static_cast<int>(addresses.size()),
                      SQLITE_TRANSIENT);
}

void Now(sqlite3_context* context, int, sqlite3_value**) {
  const QByteArray now = CurrentTimeText().toUtf8();
  sqlite3_result_text(context, now.constData(), static_cast<int>(now.size()), SQLITE_TRANSIENT);
}

QDate DateOf(sqlite3_value* value) {
  const std::string_view text = TextOf(value).substr(0, 10);
  return QDate::fromString(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())),
                           Qt::ISODate);
}

// DATEDIFF("d", from, to): calendar days, negative when `to` lies before `from`.
void DateDiff(sqlite3_context* context, int, sqlite3_value** arguments) {
  if (TextOf(arguments[0]) != "d") {
    sqlite3_result_error(context, "DATEDIFF: only \"d\" is supported", -1);
    return;
  }
  const QDate from = DateOf(arguments[1]);
  const QDate to = DateOf(arguments[2]);
  if (from.isValid() && to.isValid()) {
    sqlite3_result_int64(context, from.daysTo(to));
  } else {
    sqlite3_result_null(context);
  }
}

// The data that a long binary column's value refers to.
void LongBinary(sqlite3_context* context, int, sqlite3_value** arguments) {
  sqlite3* handle = sqlite3_context_db_handle(context);
  sqlite3_blob* blob = nullptr;
  if (sqlite3_value_type(arguments[0]) == SQLITE_NULL ||
      sqlite3_blob_open(handle, "main", "long_binary", "DATA", sqlite3_value_int64(arguments[0]), 0,
                        &blob) != SQLITE_OK) {
    sqlite3_blob_close(blob);
    sqlite3_result_null(context);
    return;
  }
  const int size = sqlite3_blob_bytes(blob);
  QByteArray bytes(size, Qt::Uninitialized);
  if (sqlite3_blob_read(blob, bytes.data(), size, 0) == SQLITE_OK) {
    sqlite3_result_text(context, bytes.constData(), size, SQLITE_TRANSIENT);
  } else {
    sqlite3_result_null(context);
  }
  sqlite3_blob_close(blob);
}

}  // namespace

void RegisterDialectFunctions(sqlite3* handle, QDeadlineTimer* deadline) {
  const auto add = [handle, deadline](const char* name, int count, int flags,
                                      void (*function)(sqlite3_context*, int, sqlite3_value**)) {
    sqlite3_create_function_v2(handle, name, count, SQLITE_UTF8 | flags, deadline, function,
                               nullptr, nullptr, nullptr);
  };
  add("like", 2, SQLITE_DETERMINISTIC, Like);
  add("like", 3, SQLITE_DETERMINISTIC, LikeWithEscape);
  add("contains", 2, SQLITE_DETERMINISTIC, Contains);
  add("addresses", 1, SQLITE_DETERMINISTIC, Addresses);
  add("now", 0, 0, Now);
  add("datediff", 3, SQLITE_DETERMINISTIC, DateDiff);
  add("long_binary", 1, 0, LongBinary);
}

}  // namespace vorn
