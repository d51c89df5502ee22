#pragma once

#include <utility>
#include <variant>

#include "storage/base/storage_error.h"

namespace vorn {

/// What an operation yields: a value, or why there is none, as a sentence for the user and a kind
/// that callers can decide by. A failure whose reason nobody has noted is still a failure
/// (`Kind::Other`).
///
/// Everything that stands on the database session and the bags fails this way. Those two themselves
/// say it with a boolean, of which `ResultOf` (storage/session/session_result.h) makes a result.
template <typename T = void>
class [[nodiscard]] Result {
 public:
  Result(T value) : content_(std::move(value)) {}
  Result(StorageError error) : content_(Noted(std::move(error))) {}

  explicit operator bool() const { return std::holds_alternative<T>(content_); }
  /// The value; only of a result that is true.
  const T& operator*() const& { return std::get<T>(content_); }
  T& operator*() & { return std::get<T>(content_); }
  T&& operator*() && { return std::get<T>(std::move(content_)); }
  const T* operator->() const { return &std::get<T>(content_); }
  T* operator->() { return &std::get<T>(content_); }
  /// Whether it is true and has that value.
  friend bool operator==(const Result& result, const T& value) {
    return result && *result == value;
  }
  /// The value, or another one where there is none.
  T ValueOr(T other) const { return *this ? **this : std::move(other); }
  /// The reason; only of a result that is false.
  const StorageError& Error() const { return std::get<StorageError>(content_); }

 private:
  static StorageError Noted(StorageError error) {
    if (!error) error.kind = StorageError::Kind::Other;
    return error;
  }

  std::variant<T, StorageError> content_;
};

/// The same of an operation that yields nothing: done, or why not.
template <>
class [[nodiscard]] Result<void> {
 public:
  Result() = default;
  Result(StorageError error) : error_(std::move(error)) {
    if (!error_) error_.kind = StorageError::Kind::Other;
  }

  explicit operator bool() const { return !error_; }
  /// The reason; of a result that is true, one of `Kind::None`.
  const StorageError& Error() const { return error_; }

 private:
  StorageError error_;
};

}  // namespace vorn
