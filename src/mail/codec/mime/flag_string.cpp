#include "mail/codec/mime/flag_string.h"

namespace vorn {

QString FlagString::At(FlagPosition position, const QString& fallback) const {
  return position <= text_.size() ? text_.mid(position - 1, 1) : fallback;
}

FlagString FlagString::With(FlagPosition position, const QString& value) const {
  if (value.isEmpty()) return *this;
  QString result = text_.leftJustified(position, u'0');
  bool isNumber = false;
  const double number = value.toDouble(&isNumber);
  const bool fits = isNumber ? number >= 0 && number <= 9 : value.size() == 1;
  if (fits) result[position - 1] = value[0];
  return FlagString(result);
}

Priority FlagString::StoredPriority() const {
  return static_cast<Priority>(At(kFlagPriority, QStringLiteral("2")).toInt());
}

FlagString FlagString::WithPriority(Priority priority) const {
  return With(kFlagPriority, QString::number(static_cast<int>(priority)));
}

}  // namespace vorn
