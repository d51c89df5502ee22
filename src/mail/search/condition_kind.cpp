#include "mail/search/condition_kind.h"

#include <algorithm>

#include "storage/message_state.h"
#include "storage/sql/sql_text.h"
#include "storage/ui.h"

namespace vorn {
namespace {

// Numbers stand in the statement unquoted, so that only a number may get there.
QString NumberOrNothing(const QString& text) {
  bool isNumber = false;
  const int number = text.trimmed().toInt(&isNumber);
  return isNumber ? QString::number(number) : QString();
}

FolderQuery::Needs NeedsNothing(const QStringList&) {
  return {};
}

QString Contains(const QString& column, const QStringList& values) {
  return column + QStringLiteral(" LIKE ") + QuoteSql(u'*' + values.value(0) + u'*');
}

QString SubjectClause(const ClauseSource&, const QStringList& values) {
  return Contains(QStringLiteral("mail.FIELD_SUBJECT"), values);
}

QString AddressPartClause(const ClauseSource&, const QStringList& values) {
  return Contains(QStringLiteral("mail.FIELD_MAILADDRESS"), values);
}

// In the column a line is a kind, an address and perhaps a name.
QString AddressClause(const ClauseSource&, const QStringList& values) {
  const QString column = QStringLiteral("mail.FIELD_MAILADDRESS LIKE ");
  const QString begin = QStringLiteral("*: ") + values.value(0).trimmed();
  const QStringList ends{QStringLiteral(" *"), kLineBreak + u'*', QString()};
  QStringList clauses;
  for (const QString& end : ends) clauses.append(column + QuoteSql(begin + end));
  return u'(' + clauses.join(QStringLiteral(" OR ")) + u')';
}

QString FolderClause(const ClauseSource& source, const QStringList& values) {
  return source.conditionOf(SerialId(values.value(0)));
}

// What is in the dust bin has a state below 0.
FolderQuery::Needs StatusNeeds(const QStringList& values) {
  return {.state = std::ranges::any_of(
              values, [](const QString& value) { return value.trimmed().startsWith(u'-'); })};
}

QString StatusClause(const ClauseSource&, const QStringList& values) {
  QStringList numbers;
  for (const QString& value : values) {
    const QString number = NumberOrNothing(value);
    if (!number.isEmpty()) numbers.append(number);
  }
  return numbers.isEmpty() ? QString()
                           : QStringLiteral("mail.STATUS IN (") + numbers.join(u',') + u')';
}

FolderQuery::Needs DaysNeeds(const QStringList&) {
  return {.time = true};
}

QString DaysClause(const ClauseSource&, const QStringList& values) {
  const QString days = NumberOrNothing(values.value(0));
  return days.isEmpty() ? QString()
                        : QStringLiteral("DATEDIFF(\"d\", NOW, mail.FIELD_TIMESTAMP ) >= ") + days;
}

QString AttachmentClause(const ClauseSource&, const QStringList&) {
  return QStringLiteral("SUBSTR(mail.FIELD_FLAG & '0000', %1, 1) = '1'").arg(kFlagAttachment);
}

constexpr char kWholeAddress[] = "wholeaddress";

constexpr ConditionKind kKinds[] = {
    {"subject", QT_TRANSLATE_NOOP("vorn::Ui", "件名に含む"), ConditionValue::Text, NeedsNothing,
     SubjectClause},
    {"mailaddress", QT_TRANSLATE_NOOP("vorn::Ui", "アドレスに含む"), ConditionValue::Text,
     NeedsNothing, AddressPartClause},
    {"folder", QT_TRANSLATE_NOOP("vorn::Ui", "フォルダにある"), ConditionValue::Folder,
     NeedsNothing, FolderClause},
    {"status", QT_TRANSLATE_NOOP("vorn::Ui", "状態"), ConditionValue::States, StatusNeeds,
     StatusClause},
    {"timestamp", QT_TRANSLATE_NOOP("vorn::Ui", "日付"), ConditionValue::Days, DaysNeeds,
     DaysClause},
    {kWholeAddress, QT_TRANSLATE_NOOP("vorn::Ui", "アドレスが"), ConditionValue::Text, NeedsNothing,
     AddressClause},
    {"attachment", QT_TRANSLATE_NOOP("vorn::Ui", "添付ファイルがある"), ConditionValue::None,
     NeedsNothing, AttachmentClause}};

}  // namespace

std::span<const ConditionKind> ConditionKinds() {
  return kKinds;
}

const ConditionKind* FindConditionKind(QStringView word) {
  const auto* kind = std::ranges::find_if(
      kKinds, [word](const ConditionKind& known) { return word == QLatin1String(known.word); });
  return kind == std::end(kKinds) ? nullptr : kind;
}

const ConditionKind& WholeAddressKind() {
  return *FindConditionKind(QString::fromLatin1(kWholeAddress));
}

}  // namespace vorn
