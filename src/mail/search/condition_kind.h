#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <span>

#include "mail/search/folder_query.h"
#include "storage/context.h"

namespace vorn {

/// What a condition is given to compare with: one text, the serial identifier of a folder, one or
/// more states of messages, days counted from today, or nothing, where a message has it or not.
enum class ConditionValue { Text, Folder, States, Days, None };

/// What a clause is made with, beside its values.
struct ClauseSource {
  Context& context;
  /// The condition of another folder, whose needs are added to those of the one that names it;
  /// empty when it cannot be loaded or is being expanded already.
  std::function<QString(const SerialId& folder)> conditionOf;
};

/// What a condition of a folder asks of a message: all that there is to a kind.
struct ConditionKind {
  const char* word;   ///< as it is stored
  const char* label;  ///< as it is chosen, to translate
  ConditionValue value;
  /// What its clause goes by.
  FolderQuery::Needs (*needs)(const QStringList& values);
  /// The condition on a row of `mail`, empty when the values are none.
  QString (*clause)(const ClauseSource& source, const QStringList& values);
};

/// Every kind, in the order in which they are offered. A new condition begins as the first.
std::span<const ConditionKind> ConditionKinds();

/// The kind that is stored under a word; null for one of another version.
const ConditionKind* FindConditionKind(QStringView word);

/// The kind that asks for one address, of whoever wrote or got the message.
const ConditionKind& WholeAddressKind();

}  // namespace vorn
