#include "mail/search/search_condition.h"

#include "objects/folder_object.h"
#include "objects/list_settings.h"
#include "objects/object_loader.h"
#include "objects/object_types.h"
#include "objects/select_objects.h"
#include "objects/settings.h"
#include "storage/sql/sql_dialect.h"
#include "storage/sql/sql_text.h"
#include "storage/ui.h"

namespace vorn {
namespace {

const QString kMark = QStringLiteral("○");
constexpr QChar kFieldSeparator = u'\0';

enum FieldIndex { kKindField = 0, kLabelField, kConnectorField, kNegationField, kValueField };

}  // namespace

std::optional<ConditionLine> ParseConditionLine(const QString& line) {
  const QStringList fields = line.split(kFieldSeparator);
  const ConditionKind* kind = FindConditionKind(fields[kKindField]);
  if (kind == nullptr) return std::nullopt;
  return ConditionLine{kind, fields.value(kConnectorField) == kMark,
                       fields.value(kNegationField) == kMark, fields.mid(kValueField)};
}

QString FormatConditionLine(const ConditionLine& line) {
  QStringList fields{QLatin1String(line.kind->word), QString(),
                     line.joinedByAnd ? kMark : QString(), line.negated ? kMark : QString()};
  // Without the separators of values that are empty at the end: a stored text that ends with zeros
  // is one that lost its end.
  fields += line.values;
  while (fields.last().isEmpty()) fields.removeLast();
  return fields.join(kFieldSeparator);
}

namespace {

// Of a condition that the user wrote himself.
FolderQuery::Needs NeedsOf(const QString& sql) {
  return {.folders = NamesTable(sql, QLatin1String("folder")),
          .time = DependsOnTime(sql),
          .state = NamesColumn(sql, QLatin1String("STATUS"))};
}

// The folders that a folder's conditions name.
SerialIds NamedFolders(const Disk& folder) {
  SerialIds named;
  if (FolderObject(folder).UsesSql()) return named;
  for (const QString& text : FolderObject(folder).Conditions().split(kLineBreak)) {
    const auto line = ParseConditionLine(text);
    if (line && line->kind->value == ConditionValue::Folder) {
      named.append(SerialId(line->values.value(0)));
    }
  }
  return named;
}

}  // namespace

bool RefersToItself(Context& context, const Disk& folder) {
  SerialIds waiting = NamedFolders(folder);
  SerialIds seen;
  while (!waiting.isEmpty()) {
    const SerialId serialId = waiting.takeFirst();
    if (serialId == folder.Serial()) return true;
    if (seen.contains(serialId)) continue;
    seen.append(serialId);
    if (const DiskPtr other = LoadObject(context, serialId)) waiting += NamedFolders(*other);
  }
  return false;
}

QString FolderSqlBuilder::CreateFolderSql(const SerialId& serialId, bool wholeStatement) {
  return wholeStatement ? Query(serialId).Listing() : ConditionOnce(serialId);
}

FolderQuery FolderSqlBuilder::Query(const SerialId& serialId) {
  const DiskPtr folder = LoadObject(context_, serialId);
  return folder == nullptr ? FolderQuery() : Query(*folder);
}

// What was thrown away is in the dust bin alone, unless the folder asks for messages by their
// state. Without that care a folder is what the documented form of its statement says, which takes
// the table `folder` for needed wherever its name stands, also in a text that is looked for.
FolderQuery FolderSqlBuilder::Query(const Disk& folder) {
  visited_ = {folder.Serial()};
  needs_ = {};
  const QString condition = Condition(folder.Serial(), folder);
  const UserCare care = Settings(context_).Care();
  const bool leavesDust = care.hidesDust && !FolderObject(folder).UsesSql() && !needs_.state;
  if (!care.namesContents && condition.contains(u"folder.")) needs_.folders = true;
  QString rest = leavesDust ? QStringLiteral(" AND mail.") + kOutsideDust : QString();
  if (folder.Serial() == fixed_serial::kInbox && ListSettings(context_).ShowsFiledOnce()) {
    rest += NotFiled();
  }
  return FolderQuery(rest.isEmpty() ? condition : u'(' + condition + u')' + rest, needs_);
}

// Only a folder that is there and shows it holds a message: what was filed into one that has gone,
// or that goes by conditions now, comes back.
QString FolderSqlBuilder::NotFiled() const {
  QStringList folders;
  const auto byHand = SelectObjects(context_.Objects, *context_.Session, object_filter::kByHand);
  for (const DiskPtr& folder : *byHand) {
    if (FolderObject(*folder).ShowsWhatIsFiled()) folders.append(QuoteSql(folder->Serial()));
  }
  if (folders.isEmpty()) return {};
  return QStringLiteral(
             " AND NOT EXISTS (SELECT SERIALID FROM folder WHERE folder.SERIALID = mail.SERIALID "
             "AND folder.FOLDERID IN (%1))")
      .arg(folders.join(u','));
}

// Of a folder that another one names; empty when it is being expanded already.
QString FolderSqlBuilder::ConditionOnce(const SerialId& serialId) {
  const DiskPtr folder = LoadObject(context_, serialId);
  if (folder == nullptr || visited_.contains(serialId)) return {};
  visited_.insert(serialId);
  return Settings(context_).Care().namesContents ? Contents(serialId, *folder)
                                                 : Condition(serialId, *folder);
}

// What a folder shows, whatever stands around it; the documented form puts the named condition as
// it is between the others, and finds only filed messages where one of them asks for what is filed.
QString FolderSqlBuilder::Contents(const SerialId& serialId, const Disk& folder) {
  const FolderObject named(folder);
  if (!named.UsesSql() && named.Conditions().isEmpty()) {
    return QStringLiteral("mail.SERIALID IN (SELECT SERIALID FROM folder WHERE FOLDERID = %1)")
        .arg(QuoteSql(serialId));
  }
  const bool askedForState = needs_.state;
  QString condition = Condition(serialId, folder);
  if (condition.isEmpty()) return {};
  // The program's own folders ask for the states of messages, of which the dust bin's alone are out
  // of sight elsewhere.
  const bool isOfStates = serialId == fixed_serial::kInbox || serialId == fixed_serial::kOutbox ||
                          serialId == fixed_serial::kEditWait;
  if (isOfStates) needs_.state = askedForState;
  condition = u'(' + condition + u')';
  const bool isOnce = serialId == fixed_serial::kInbox && ListSettings(context_).ShowsFiledOnce();
  return isOnce ? u'(' + condition + NotFiled() + u')' : condition;
}

QString FolderSqlBuilder::Condition(const SerialId& serialId, const Disk& folder) {
  if (FolderObject(folder).UsesSql()) {
    const QString sql = FolderObject(folder).Sql();
    needs_ |= NeedsOf(sql);
    return sql;
  }
  const QString list = FolderObject(folder).Conditions();
  if (!list.isEmpty()) return ConditionByLines(list);
  needs_.folders = true;
  return QStringLiteral("folder.FOLDERID = ") + QuoteSql(serialId);
}

QString FolderSqlBuilder::ConditionByLines(const QString& list) {
  QString condition;
  for (const QString& text : list.split(kLineBreak)) {
    const auto line = ParseConditionLine(text);
    if (!line) continue;
    const QString clause = Clause(*line);
    if (clause.isEmpty()) continue;  // and its connector with it
    if (!condition.isEmpty()) {
      condition += line->joinedByAnd ? QStringLiteral(" AND ") : QStringLiteral(" OR ");
    }
    if (line->negated) condition += QStringLiteral(" NOT ");
    condition += clause;
  }
  // Lines that came to nothing select nothing, rather than leave a statement without an end.
  return condition.isEmpty() ? QStringLiteral("0 = 1") : condition;
}

QString FolderSqlBuilder::Clause(const ConditionLine& line) {
  needs_ |= line.kind->needs(line.values);
  return line.kind->clause(
      {context_, [this](const SerialId& folder) { return ConditionOnce(folder); }}, line.values);
}

}  // namespace vorn
