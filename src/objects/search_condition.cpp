#include "objects/search_condition.h"

#include "objects/folder_object.h"
#include "objects/object_loader.h"
#include "objects/object_types.h"
#include "objects/select_objects.h"
#include "objects/settings.h"
#include "storage/sql_text.h"
#include "storage/ui.h"

namespace vorn {
namespace {

const QString kMark = QStringLiteral("○");
constexpr QChar kFieldSeparator = u'\0';

enum FieldIndex { kKindField = 0, kLabelField, kConnectorField, kNegationField, kValueField };

struct KindWord {
  ConditionLine::Kind kind;
  QLatin1String word;
};

constexpr KindWord kKindWords[] = {
    {ConditionLine::Kind::Subject, QLatin1String("subject")},
    {ConditionLine::Kind::MailAddress, QLatin1String("mailaddress")},
    {ConditionLine::Kind::Folder, QLatin1String("folder")},
    {ConditionLine::Kind::Status, QLatin1String("status")},
    {ConditionLine::Kind::TimeStamp, QLatin1String("timestamp")},
    {ConditionLine::Kind::WholeAddress, QLatin1String("wholeaddress")},
};

// Numbers stand in the statement unquoted, so that only a number may get there.
QString NumberOrNothing(const QString& text) {
  bool isNumber = false;
  const int number = text.trimmed().toInt(&isNumber);
  return isNumber ? QString::number(number) : QString();
}

QString Contains(const QString& column, const QString& text) {
  return column + QStringLiteral(" LIKE ") + QuoteSql(u'*' + text + u'*');
}

// In the column a line is a kind, an address and perhaps a name.
QString HasAddress(const QString& address) {
  const QString column = QStringLiteral("mail.FIELD_MAILADDRESS LIKE ");
  const QString begin = QStringLiteral("*: ") + address;
  const QStringList ends{QStringLiteral(" *"), kLineBreak + u'*', QString()};
  QStringList clauses;
  for (const QString& end : ends) clauses.append(column + QuoteSql(begin + end));
  return u'(' + clauses.join(QStringLiteral(" OR ")) + u')';
}

QString StatusClause(const QStringList& values) {
  QStringList numbers;
  for (const QString& value : values) {
    const QString number = NumberOrNothing(value);
    if (!number.isEmpty()) numbers.append(number);
  }
  return numbers.isEmpty() ? QString()
                           : QStringLiteral("mail.STATUS IN (") + numbers.join(u',') + u')';
}

QString DaysClause(const QString& value) {
  const QString days = NumberOrNothing(value);
  return days.isEmpty() ? QString()
                        : QStringLiteral("DATEDIFF(\"d\", NOW, mail.FIELD_TIMESTAMP ) >= ") + days;
}

// Whether a condition asks for a table, in its words rather than in a text that it looks for.
bool UsesTable(const QString& condition, QStringView table) {
  bool isText = false;
  for (const QString& piece : condition.split(u'\'')) {
    if (!isText && piece.contains(table)) return true;
    isText = !isText;
  }
  return false;
}

}  // namespace

std::optional<ConditionLine> ParseConditionLine(const QString& line) {
  const QStringList fields = line.split(kFieldSeparator);
  for (const KindWord& word : kKindWords) {
    if (fields[kKindField] != word.word) continue;
    return ConditionLine{word.kind, fields.value(kConnectorField) == kMark,
                         fields.value(kNegationField) == kMark, fields.mid(kValueField)};
  }
  return std::nullopt;
}

QString FormatConditionLine(const ConditionLine& line) {
  QStringList fields{QString(), QString(), line.joinedByAnd ? kMark : QString(),
                     line.negated ? kMark : QString()};
  for (const KindWord& word : kKindWords) {
    if (word.kind == line.kind) fields[kKindField] = word.word;
  }
  // Without the separators of values that are empty at the end: a stored text that ends with zeros
  // is one that lost its end.
  fields += line.values;
  while (fields.last().isEmpty()) fields.removeLast();
  return fields.join(kFieldSeparator);
}

namespace {

// The folders that a folder's conditions name.
QStringList NamedFolders(const Disk& folder) {
  QStringList named;
  if (FolderObject(folder).UsesSql()) return named;
  for (const QString& text : FolderObject(folder).Conditions().split(kLineBreak)) {
    const auto line = ParseConditionLine(text);
    if (line && line->kind == ConditionLine::Kind::Folder) named.append(line->values.value(0));
  }
  return named;
}

}  // namespace

bool RefersToItself(Context& context, const Disk& folder) {
  QStringList waiting = NamedFolders(folder);
  QStringList seen;
  while (!waiting.isEmpty()) {
    const QString serialId = waiting.takeFirst();
    if (serialId == folder.SerialID()) return true;
    if (seen.contains(serialId)) continue;
    seen.append(serialId);
    if (const DiskPtr other = LoadObject(context, serialId)) waiting += NamedFolders(*other);
  }
  return false;
}

QString FolderSqlBuilder::CreateFolderSql(const QString& serialId, bool wholeStatement) {
  return wholeStatement ? Query(serialId).Listing() : ConditionOnce(serialId);
}

FolderQuery FolderSqlBuilder::Query(const QString& serialId) {
  const DiskPtr folder = LoadObject(context_, serialId);
  return folder == nullptr ? FolderQuery() : Query(*folder);
}

// What was thrown away is in the dust bin alone, unless the folder asks for messages by their
// state.
FolderQuery FolderSqlBuilder::Query(const Disk& folder) {
  visited_ = folder.SerialID() + kLineBreak;
  asksForState_ = false;
  const QString condition = Condition(folder.SerialID(), folder);
  const bool isCareful = Settings(context_).IsCareful();
  const bool leavesDust = isCareful && !FolderObject(folder).UsesSql() && !asksForState_;
  const bool joins = isCareful ? UsesTable(condition, u"folder.") : condition.contains(u"folder.");
  QString rest = leavesDust ? QStringLiteral(" AND mail.STATUS > 0") : QString();
  if (folder.SerialID() == fixed_serial::kInbox && Settings(context_).ShowsFiledOnce()) {
    rest += NotFiled();
  }
  return FolderQuery(rest.isEmpty() ? condition : u'(' + condition + u')' + rest, joins);
}

// Only a folder that is there and shows it holds a message: what was filed into one that has gone,
// or that goes by conditions now, comes back.
QString FolderSqlBuilder::NotFiled() const {
  QStringList folders;
  const auto byHand = SelectObjects(context_.Objects, *context_.Session, QStringLiteral("static"));
  for (const DiskPtr& folder : *byHand) {
    if (FolderObject(*folder).ShowsWhatIsFiled()) folders.append(QuoteSql(folder->SerialID()));
  }
  if (folders.isEmpty()) return {};
  return QStringLiteral(
             " AND NOT EXISTS (SELECT SERIALID FROM folder WHERE folder.SERIALID = mail.SERIALID "
             "AND folder.FOLDERID IN (%1))")
      .arg(folders.join(u','));
}

// Of a folder that another one names; empty when it is being expanded already.
QString FolderSqlBuilder::ConditionOnce(const QString& serialId) {
  const DiskPtr folder = LoadObject(context_, serialId);
  const QString entry = serialId + kLineBreak;
  if (folder == nullptr || visited_.contains(entry)) return {};
  visited_ += entry;
  return Condition(serialId, *folder);
}

QString FolderSqlBuilder::Condition(const QString& serialId, const Disk& folder) {
  if (FolderObject(folder).UsesSql()) {
    const QString sql = FolderObject(folder).Sql();
    asksForState_ = asksForState_ || sql.contains(u"STATUS", Qt::CaseInsensitive);
    return sql;
  }
  const QString list = FolderObject(folder).Conditions();
  if (list.isEmpty()) return QStringLiteral("folder.FOLDERID = ") + QuoteSql(serialId);

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
  const QString value = line.values.value(0);
  switch (line.kind) {
    case ConditionLine::Kind::Subject:
      return Contains(QStringLiteral("mail.FIELD_SUBJECT"), value);
    case ConditionLine::Kind::MailAddress:
      return Contains(QStringLiteral("mail.FIELD_MAILADDRESS"), value);
    case ConditionLine::Kind::WholeAddress:
      return HasAddress(value.trimmed());
    case ConditionLine::Kind::Status:
      asksForState_ = true;
      return StatusClause(line.values);
    case ConditionLine::Kind::TimeStamp:
      return DaysClause(value);
    case ConditionLine::Kind::Folder:
      return ConditionOnce(value);
  }
  return {};
}

}  // namespace vorn
