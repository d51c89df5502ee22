#pragma once

#include <QString>

#include "storage/message_state.h"

namespace vorn {

/// How urgent a message is, by the characters of the flag string.
enum class Priority { High = 1, Usual = 2, Low = 3 };

/// What a message says of itself and what the user did with it, one character for each: the column
/// `FIELD_FLAG`. A value.
class FlagString {
 public:
  FlagString() = default;
  explicit FlagString(QString text) : text_(std::move(text)) {}

  /// As it is stored.
  const QString& Text() const { return text_; }
  /// The character at a position, or `fallback` where the string is shorter.
  QString At(FlagPosition position, const QString& fallback = {}) const;
  /// The flags with a position set. A shorter string is first padded with "0". An empty value
  /// changes nothing; a number outside 0 to 9 and a text of several characters pad only.
  FlagString With(FlagPosition position, const QString& value) const;

  /// Whether the flag at a position is set.
  bool Has(FlagPosition position) const { return At(position) == u"1"; }
  /// Whether nobody has opened the message.
  bool IsUnopened() const { return At(kFlagNew, QStringLiteral("0")) != u"0"; }
  /// Usual where the string does not say.
  Priority StoredPriority() const;
  FlagString WithPriority(Priority priority) const;
  /// What the message says of itself, without what the user did with it.
  FlagString OfMessage() const { return FlagString(text_.left(kFlagAttachment)); }

  friend bool operator==(const FlagString&, const FlagString&) = default;

 private:
  QString text_;
};

/// Those of a message that is begun here, before its source is read.
inline const FlagString kWrittenFlags(QStringLiteral("02"));

}  // namespace vorn
