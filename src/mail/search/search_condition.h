#pragma once

#include <QSet>
#include <QString>
#include <QStringList>
#include <optional>

#include "mail/search/condition_kind.h"
#include "mail/search/folder_query.h"
#include "storage/context.h"

namespace vorn {

/// One line of a folder's condition list.
struct ConditionLine {
  const ConditionKind* kind = &ConditionKinds().front();  ///< never null
  bool joinedByAnd = false;  ///< else joined to the lines before it by "or"
  bool negated = false;
  QStringList values;  ///< as many as the kind takes
};

/// Reads a line: fields separated by the character with code 0, namely the kind, a label, the
/// connector mark, the negation mark, and the value or values. Nothing for an unknown kind.
std::optional<ConditionLine> ParseConditionLine(const QString& line);

/// The stored form of a line.
QString FormatConditionLine(const ConditionLine& line);

/// Whether a folder's conditions, as they stand here, lead back to it, straight or through other
/// folders.
bool RefersToItself(Context& context, const Disk& folder);

/// Turns folders into the questions which messages of the table `mail` they hold.
class FolderSqlBuilder {
 public:
  explicit FolderSqlBuilder(Context& context) : context_(context) {}

  /// What a folder asks for; of no folder when it cannot be loaded.
  FolderQuery Query(const SerialId& folder);
  /// The same of a folder that is not stored as it stands here.
  FolderQuery Query(const Disk& folder);

  /// As text: the complete statement of a folder, or with `wholeStatement` false its condition
  /// alone. Empty when the folder cannot be loaded or is already being expanded. May hold text
  /// written by the user.
  QString CreateFolderSql(const SerialId& folder, bool wholeStatement = true);

 private:
  QString ConditionOnce(const SerialId& serialId);
  QString Contents(const SerialId& serialId, const Disk& folder);
  QString Condition(const SerialId& serialId, const Disk& folder);
  QString ConditionByLines(const QString& list);
  QString Clause(const ConditionLine& line);
  QString NotFiled() const;

  Context& context_;
  FolderQuery::Needs needs_;  // of all conditions, also of the folders that are named
  QSet<SerialId> visited_;    // every folder entered during one build
};

}  // namespace vorn
