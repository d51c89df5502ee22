#pragma once

#include <QString>

namespace vorn {

/// Why a storage operation failed, for the caller that wants to tell the user.
struct StorageError {
  enum class Kind {
    None,
    NotFound,
    WrongPassword,  ///< also a file that is no database at all: the two cannot be told apart
    Foreign,        ///< an encrypted database, but not one of ours
    Newer,          ///< written by a later version of the program
    Busy,
    DiskFull,
    Damaged,
    Refused,     ///< a user-written condition that does more than read messages
    InTransfer,  ///< a message that is being sent, or of which nobody knows whether it was
    BadStatement,
    Other,
  };

  Kind kind = Kind::None;
  QString text;  ///< one sentence in Japanese

  /// A failure for which whoever asked finds the words.
  static StorageError Wordless() { return {Kind::Other, {}}; }

  explicit operator bool() const { return kind != Kind::None; }
  /// The same, with its text behind a sentence that says what could not be done; western sentences
  /// have a space between them.
  StorageError Behind(const QString& sentence) const {
    return {kind, sentence + (sentence.endsWith(u'.') ? QStringLiteral(" ") : QString()) + text};
  }
};

}  // namespace vorn
