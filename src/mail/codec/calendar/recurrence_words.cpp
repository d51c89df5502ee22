#include "mail/codec/calendar/recurrence_words.h"

#include <QDateTime>
#include <QStringList>
#include <algorithm>
#include <span>

#include "storage/base/shown_form.h"
#include "storage/ui.h"

namespace vorn {
namespace {

// The values of a list, which has an end mark.
template <size_t size>
std::span<const short> ValuesOf(const short (&list)[size]) {
  const auto* const end =
      std::find(std::begin(list), std::end(list), short{ICAL_RECURRENCE_ARRAY_MAX});
  return {std::begin(list), end};
}

QString Interval(const icalrecurrencetype& rule) {
  const bool isEach = rule.interval <= 1;
  switch (rule.freq) {
    case ICAL_HOURLY_RECURRENCE:
      return isEach ? Ui::tr("毎時") : Ui::tr("%1時間ごと").arg(rule.interval);
    case ICAL_DAILY_RECURRENCE:
      return isEach ? Ui::tr("毎日") : Ui::tr("%1日ごと").arg(rule.interval);
    case ICAL_WEEKLY_RECURRENCE:
      return isEach ? Ui::tr("毎週") : Ui::tr("%1週間ごと").arg(rule.interval);
    case ICAL_MONTHLY_RECURRENCE:
      return isEach ? Ui::tr("毎月") : Ui::tr("%1か月ごと").arg(rule.interval);
    case ICAL_YEARLY_RECURRENCE:
      return isEach ? Ui::tr("毎年") : Ui::tr("%1年ごと").arg(rule.interval);
    default:
      return {};
  }
}

QString DayName(icalrecurrencetype_weekday day) {
  const QString names[] = {Ui::tr("日"), Ui::tr("月"), Ui::tr("火"), Ui::tr("水"),
                           Ui::tr("木"), Ui::tr("金"), Ui::tr("土")};
  return day >= ICAL_SUNDAY_WEEKDAY && day <= ICAL_SATURDAY_WEEKDAY
             ? names[day - ICAL_SUNDAY_WEEKDAY]
             : QString();
}

// "第2" or "最後の" before what is counted.
QString PlaceInMonth(int number) {
  if (number == -1) return Ui::tr("最後の");
  const QString first[] = {Ui::tr("第1"), Ui::tr("第2"), Ui::tr("第3"), Ui::tr("第4"),
                           Ui::tr("第5")};
  if (number >= 1 && number <= static_cast<int>(std::size(first))) return first[number - 1];
  return number < 0 ? Ui::tr("最後から%1番目の").arg(-number) : Ui::tr("第%1").arg(number);
}

QString Days(const icalrecurrencetype& rule) {
  QStringList plain;
  QStringList placed;
  for (const short day : ValuesOf(rule.by_day)) {
    const QString name = DayName(icalrecurrencetype_day_day_of_week(day));
    const int number = icalrecurrencetype_day_position(day);
    if (number == 0) plain.append(name);
    if (number != 0) placed.append(PlaceInMonth(number) + Ui::tr("%1曜日").arg(name));
  }
  if (!plain.isEmpty()) placed.append(Ui::tr("%1曜日").arg(plain.join(Ui::tr("・"))));
  QString days = placed.join(Ui::tr("・"));
  for (const short number : ValuesOf(rule.by_set_pos)) {
    days += number == -1 ? Ui::tr("のうち最後の日") : Ui::tr("のうち%1番目の日").arg(number);
  }
  return days;
}

QString DaysOfMonth(const icalrecurrencetype& rule) {
  QStringList days;
  for (const short day : ValuesOf(rule.by_month_day)) {
    if (day == -1) days.append(Ui::tr("末日"));
    if (day < -1) days.append(Ui::tr("末日の%n日前", nullptr, -day - 1));
    if (day > 0) days.append(Ui::tr("%1日").arg(day));
  }
  return days.join(Ui::tr("・"));
}

QString Months(const icalrecurrencetype& rule) {
  QStringList months;
  for (const short month : ValuesOf(rule.by_month)) {
    months.append(Ui::tr("%1月").arg(icalrecurrencetype_month_month(month)));
  }
  return months.join(Ui::tr("・"));
}

QString End(const icalrecurrencetype& rule) {
  if (rule.count > 0) return Ui::tr("、全%n回", nullptr, rule.count);
  if (icaltime_is_null_time(rule.until)) return {};
  const icaltimetype until = rule.until;
  const QDate day = until.is_date || !icaltime_is_utc(until)
                        ? QDate(until.year, until.month, until.day)
                        : QDateTime::fromSecsSinceEpoch(
                              icaltime_as_timet_with_zone(until, icaltimezone_get_utc_timezone()))
                              .date();
  return Ui::tr("、%1まで").arg(Shown(day, QStringLiteral("yyyy/MM/dd")));
}

bool HasWords(const icalrecurrencetype& rule) {
  const bool hasOther = !ValuesOf(rule.by_second).empty() || !ValuesOf(rule.by_minute).empty() ||
                        !ValuesOf(rule.by_hour).empty() || !ValuesOf(rule.by_year_day).empty() ||
                        !ValuesOf(rule.by_week_no).empty();
  const bool countsBack =
      std::ranges::any_of(ValuesOf(rule.by_set_pos), [](short number) { return number < -1; });
  return !hasOther && !countsBack && !Interval(rule).isEmpty();
}

}  // namespace

QString RecurrenceWords(icalproperty* property) {
  const icalrecurrencetype rule = icalproperty_get_rrule(property);
  if (!HasWords(rule)) return QString::fromUtf8(icalproperty_get_value_as_string(property));
  QStringList words{Interval(rule)};
  for (const QString& part : {Months(rule), DaysOfMonth(rule), Days(rule)}) {
    if (!part.isEmpty()) words.append(part);
  }
  return words.join(u' ') + End(rule);
}

}  // namespace vorn
