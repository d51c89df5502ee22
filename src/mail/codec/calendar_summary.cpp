#include "mail/codec/calendar_summary.h"

#include <QDateTime>
#include <QStringList>

#include "mail/codec/list_splitting.h"
#include "mail/codec/parsed_calendar.h"
#include "storage/ui.h"

namespace vorn {
namespace {

const QString kLineBreak = QStringLiteral("\r\n");
constexpr qsizetype kMostShown = 20;

QString OneLine(const char* text) {
  return MimeCodec::OneLine(QString::fromUtf8(text));
}

QString Title(icalproperty_method method) {
  switch (method) {
    case ICAL_METHOD_REQUEST:
    case ICAL_METHOD_ADD:
      return Ui::tr("予定への招待");
    case ICAL_METHOD_CANCEL:
      return Ui::tr("予定の取り消し");
    case ICAL_METHOD_REPLY:
      return Ui::tr("招待への返事");
    case ICAL_METHOD_COUNTER:
      return Ui::tr("別の日時の提案");
    default:
      return Ui::tr("予定");
  }
}

QString Answer(icalparameter_partstat status) {
  switch (status) {
    case ICAL_PARTSTAT_ACCEPTED:
      return Ui::tr("出席します");
    case ICAL_PARTSTAT_DECLINED:
      return Ui::tr("欠席します");
    case ICAL_PARTSTAT_TENTATIVE:
      return Ui::tr("出席するかもしれません");
    case ICAL_PARTSTAT_DELEGATED:
      return Ui::tr("代わりの人が出席します");
    default:
      return Ui::tr("まだ返事がありません");
  }
}

// "Name <address>" of an organizer or an attendee.
QString Person(icalproperty* property, const char* value) {
  const QString address = CalendarAddress(value);
  icalparameter* name = icalproperty_get_first_parameter(property, ICAL_CN_PARAMETER);
  const QString shown = name == nullptr ? QString() : OneLine(icalparameter_get_cn(name));
  return shown.isEmpty() ? address : shown + QStringLiteral(" <") + address + u'>';
}

// A time without a zone is meant at the place where it is read.
QDateTime LocalTime(const icaltimetype& time) {
  const icaltimezone* zone = icaltime_get_timezone(time);
  if (zone != nullptr && !time.is_date) {
    return QDateTime::fromSecsSinceEpoch(
        icaltime_as_timet_with_zone(time, const_cast<icaltimezone*>(zone)));
  }
  return QDateTime(QDate(time.year, time.month, time.day),
                   QTime(time.hour, time.minute, time.second));
}

QString Period(icalcomponent* event) {
  const icaltimetype start = icalcomponent_get_dtstart(event);
  if (icaltime_is_null_time(start)) return {};
  icaltimetype end = icalcomponent_get_dtend(event);
  const QString day = QStringLiteral("yyyy/MM/dd");
  const QString time = QStringLiteral("HH:mm");
  const QDateTime from = LocalTime(start);
  const QString begin = from.toString(start.is_date ? day : day + u' ' + time);
  if (icaltime_is_null_time(end)) return begin;
  if (end.is_date) icaltime_adjust(&end, -1, 0, 0, 0);  // the day after the last
  const QDateTime to = LocalTime(end);
  if (to <= from) return begin;
  const bool isSameDay = to.date() == from.date();
  return begin + Ui::tr("～") +
         to.toString(end.is_date ? day : (isSameDay ? time : day + u' ' + time));
}

class Summary {
 public:
  explicit Summary(icalcomponent* event) : event_(event) {}

  QString Run(icalproperty_method method, bool withDescription) {
    lines_ = Ui::tr("【%1】").arg(Title(method)) + kLineBreak;
    Add(Ui::tr("件名: "), OneLine(icalcomponent_get_summary(event_)));
    Add(Ui::tr("日時: "), Period(event_));
    if (icalcomponent_get_first_property(event_, ICAL_RRULE_PROPERTY) != nullptr) {
      lines_ += Ui::tr("（繰り返しの予定です）") + kLineBreak;
    }
    if (icalcomponent_get_first_property(event_, ICAL_RECURRENCEID_PROPERTY) != nullptr) {
      lines_ += Ui::tr("（繰り返しのうちの1回です）") + kLineBreak;
    }
    Add(Ui::tr("場所: "), OneLine(icalcomponent_get_location(event_)));
    if (icalproperty* organizer =
            icalcomponent_get_first_property(event_, ICAL_ORGANIZER_PROPERTY)) {
      Add(Ui::tr("主催者: "), Person(organizer, icalproperty_get_organizer(organizer)));
    }
    if (method == ICAL_METHOD_REPLY) AddAnswers();
    const QString description = QString::fromUtf8(icalcomponent_get_description(event_));
    if (withDescription && !description.trimmed().isEmpty()) {
      lines_ += kLineBreak + description + kLineBreak;
    }
    return lines_;
  }

 private:
  void Add(const QString& name, const QString& value) {
    if (!value.isEmpty()) lines_ += name + value + kLineBreak;
  }

  void AddAnswers() {
    for (icalproperty* attendee = icalcomponent_get_first_property(event_, ICAL_ATTENDEE_PROPERTY);
         attendee != nullptr;
         attendee = icalcomponent_get_next_property(event_, ICAL_ATTENDEE_PROPERTY)) {
      icalparameter* status = icalproperty_get_first_parameter(attendee, ICAL_PARTSTAT_PARAMETER);
      Add(Person(attendee, icalproperty_get_attendee(attendee)) + QStringLiteral(": "),
          Answer(status == nullptr ? ICAL_PARTSTAT_NEEDSACTION
                                   : icalparameter_get_partstat(status)));
    }
  }

  icalcomponent* event_;
  QString lines_;
};

}  // namespace

QString CalendarSummary(const QString& calendar, bool withDescription) {
  const ParsedCalendar parsed(calendar);
  const std::vector<icalcomponent*> events = parsed.Events();
  QStringList summaries;
  for (icalcomponent* event : events) {
    if (summaries.size() == kMostShown) break;
    summaries.append(Summary(event).Run(MethodOf(event), withDescription));
  }
  const auto rest = static_cast<qsizetype>(events.size()) - summaries.size();
  if (rest > 0) summaries.append(Ui::tr("（ほかに%1件の予定があります）").arg(rest) + kLineBreak);
  return summaries.join(kLineBreak);
}

}  // namespace vorn
