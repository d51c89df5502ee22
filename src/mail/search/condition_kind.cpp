#include "mail/search/condition_kind.h"

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

QString Contains(const QString& column, const QStringList& values) {
  return column + QStringLiteral(" LIKE ") + QuoteSql(u'*' + values.value(0) + u'*');
}

QString SubjectClause(const QStringList& values) {
  return Contains(QStringLiteral("mail.FIELD_SUBJECT"), values);
}

QString AddressPartClause(const QStringList& values) {
  return Contains(QStringLiteral("mail.FIELD_MAILADDRESS"), values);
}

// In the column a line is a kind, an address and perhaps a name.
QString AddressClause(const QStringList& values) {
  const QString column = QStringLiteral("mail.FIELD_MAILADDRESS LIKE ");
  const QString begin = QStringLiteral("*: ") + values.value(0).trimmed();
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

QString DaysClause(const QStringList& values) {
  const QString days = NumberOrNothing(values.value(0));
  return days.isEmpty() ? QString()
                        : QStringLiteral("DATEDIFF(\"d\", NOW, mail.FIELD_TIMESTAMP ) >= ") + days;
}

QString AttachmentClause(const QStringList&) {
  return QStringLiteral("SUBSTR(mail.FIELD_FLAG & '0000', %1, 1) = '1'").arg(kFlagAttachment);
}

constexpr ConditionTraits kKinds[] = {
    {ConditionKind::Subject, "subject", QT_TRANSLATE_NOOP("vorn::Ui", "件名に含む"),
     ConditionValue::Text, SubjectClause},
    {ConditionKind::MailAddress, "mailaddress", QT_TRANSLATE_NOOP("vorn::Ui", "アドレスに含む"),
     ConditionValue::Text, AddressPartClause},
    {ConditionKind::Folder, "folder", QT_TRANSLATE_NOOP("vorn::Ui", "フォルダにある"),
     ConditionValue::Folder, nullptr},
    {ConditionKind::Status, "status", QT_TRANSLATE_NOOP("vorn::Ui", "状態"), ConditionValue::States,
     StatusClause},
    {ConditionKind::TimeStamp, "timestamp", QT_TRANSLATE_NOOP("vorn::Ui", "日付"),
     ConditionValue::Days, DaysClause},
    {ConditionKind::WholeAddress, "wholeaddress", QT_TRANSLATE_NOOP("vorn::Ui", "アドレスが"),
     ConditionValue::Text, AddressClause},
    {ConditionKind::Attachment, "attachment", QT_TRANSLATE_NOOP("vorn::Ui", "添付ファイルがある"),
     ConditionValue::None, AttachmentClause}};

// Each kind stands in its place, and only the condition of a folder is made elsewhere.
constexpr bool IsWhole() {
  for (size_t i = 0; i < std::size(kKinds); ++i) {
    const bool isFolder = kKinds[i].value == ConditionValue::Folder;
    if (static_cast<size_t>(kKinds[i].kind) != i) return false;
    if ((kKinds[i].clause == nullptr) != isFolder) return false;
  }
  return std::size(kKinds) == static_cast<size_t>(ConditionKind::Count);
}
static_assert(IsWhole());

}  // namespace

std::span<const ConditionTraits> ConditionKinds() {
  return kKinds;
}

const ConditionTraits& TraitsOf(ConditionKind kind) {
  return kKinds[static_cast<size_t>(kind)];
}

}  // namespace vorn
