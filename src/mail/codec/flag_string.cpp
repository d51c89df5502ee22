#include "mail/codec/flag_string.h"

namespace vorn {

QString GetFlagChar(const QString& flags, FlagPosition position, const QString& fallback) {
  return position <= flags.size() ? flags.mid(position - 1, 1) : fallback;
}

QString SetFlagChar(const QString& flags, FlagPosition position, const QString& value) {
  if (value.isEmpty()) return flags;
  QString result = flags.leftJustified(position, u'0');
  bool isNumber = false;
  const double number = value.toDouble(&isNumber);
  const bool fits = isNumber ? number >= 0 && number <= 9 : value.size() == 1;
  if (fits) result[position - 1] = value[0];
  return result;
}

Priority PriorityIn(const QString& flags) {
  return static_cast<Priority>(GetFlagChar(flags, kFlagPriority, QStringLiteral("2")).toInt());
}

QString SetPriority(const QString& flags, Priority priority) {
  return SetFlagChar(flags, kFlagPriority, QString::number(static_cast<int>(priority)));
}

}  // namespace vorn
