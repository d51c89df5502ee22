#pragma once

#include <QString>
#include <QStringList>
#include <span>

namespace vorn {

/// What a condition of a folder asks of a message. `MailAddress` is part of an address or a name,
/// `WholeAddress` is one address.
enum class ConditionKind {
  Subject,
  MailAddress,
  Folder,
  Status,
  TimeStamp,
  WholeAddress,
  Attachment,
  Count
};

/// What a condition is given to compare with: one text, the serial identifier of a folder, one or
/// more states of messages, days counted from today, or nothing, where a message has it or not.
enum class ConditionValue { Text, Folder, States, Days, None };

/// All that there is to a kind.
struct ConditionTraits {
  ConditionKind kind;
  const char* word;   ///< as it is stored
  const char* label;  ///< as it is chosen, to translate
  ConditionValue value;
  /// The condition on a row of `mail`, empty when the values are none; null: that of the folder.
  QString (*clause)(const QStringList& values);
};

/// Every kind, in the order in which they are offered.
std::span<const ConditionTraits> ConditionKinds();

const ConditionTraits& TraitsOf(ConditionKind kind);

}  // namespace vorn
