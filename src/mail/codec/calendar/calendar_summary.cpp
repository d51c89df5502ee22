#include "mail/codec/calendar/calendar_summary.h"

#include <QDateTime>
#include <QStringList>
#include <QTimeZone>

#include "mail/codec/calendar/parsed_calendar.h"
#include "mail/codec/calendar/recurrence_words.h"
#include "mail/codec/header/address.h"
#include "mail/codec/header/list_splitting.h"
#include "storage/base/shown_form.h"
#include "storage/ui.h"

namespace vorn {
namespace {

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
  return PresentableAddress(name == nullptr ? QString() : OneLine(icalparameter_get_cn(name)),
                            address);
}

// A point in time as it is shown, and the zone that it names where nobody knows that one.
struct ShownTime {
  QDateTime local;
  QString unknownZone;
};

// By the name of a zone that the calendar does not bring along, as Windows or the system has it.
QTimeZone ZoneByName(const QByteArray& name) {
  const QByteArray usual = QTimeZone::windowsIdToDefaultIanaId(name);
  if (!usual.isEmpty()) return QTimeZone(usual);
  return QTimeZone::isTimeZoneIdAvailable(name) ? QTimeZone(name) : QTimeZone();
}

// A time without a zone is meant at the place where it is read.
ShownTime TimeOf(icalcomponent* event, icalproperty_kind kind, const icaltimetype& time) {
  const icaltimezone* zone = icaltime_get_timezone(time);
  if (zone != nullptr && !time.is_date) {
    const auto seconds = icaltime_as_timet_with_zone(time, const_cast<icaltimezone*>(zone));
    return {QDateTime::fromSecsSinceEpoch(seconds), {}};
  }
  const QDate day(time.year, time.month, time.day);
  const QTime clock(time.hour, time.minute, time.second);
  icalproperty* property = icalcomponent_get_first_property(event, kind);
  icalparameter* named = property == nullptr
                             ? nullptr
                             : icalproperty_get_first_parameter(property, ICAL_TZID_PARAMETER);
  if (named == nullptr || time.is_date) return {QDateTime(day, clock), {}};
  const QTimeZone known = ZoneByName(icalparameter_get_tzid(named));
  if (known.isValid()) return {QDateTime(day, clock, known).toLocalTime(), {}};
  return {QDateTime(day, clock), OneLine(icalparameter_get_tzid(named))};
}

QString WithZone(const QString& period, const QString& zone) {
  return zone.isEmpty() ? period : period + Ui::tr("（現地の時間: %1）").arg(zone);
}

QString Format(bool isDate) {
  return isDate ? QStringLiteral("yyyy/MM/dd") : QStringLiteral("yyyy/MM/dd H:mm");
}

QString Period(icalcomponent* event) {
  const icaltimetype start = icalcomponent_get_dtstart(event);
  if (icaltime_is_null_time(start)) return {};
  icaltimetype end = icalcomponent_get_dtend(event);
  const auto [from, zone] = TimeOf(event, ICAL_DTSTART_PROPERTY, start);
  const QString begin = Shown(from, Format(start.is_date));
  if (icaltime_is_null_time(end)) return WithZone(begin, zone);
  if (end.is_date) icaltime_adjust(&end, -1, 0, 0, 0);  // the day after the last
  const bool hasEnd = icalcomponent_get_first_property(event, ICAL_DTEND_PROPERTY) != nullptr;
  const QDateTime to =
      TimeOf(event, hasEnd ? ICAL_DTEND_PROPERTY : ICAL_DTSTART_PROPERTY, end).local;
  if (to <= from) return WithZone(begin, zone);
  const bool isClock = !end.is_date && to.date() == from.date();
  const QString until = Shown(to, isClock ? QStringLiteral("H:mm") : Format(end.is_date));
  return WithZone(begin + Ui::tr("～") + until, zone);
}

QString Due(icalcomponent* todo) {
  const icaltimetype due = icalcomponent_get_due(todo);
  if (icaltime_is_null_time(due)) return {};
  const auto [time, zone] = TimeOf(todo, ICAL_DUE_PROPERTY, due);
  return WithZone(Shown(time, Format(due.is_date)), zone);
}

class Summary {
 public:
  explicit Summary(icalcomponent* event) : event_(event) {}

  // Empty when it says nothing.
  QString Run(icalproperty_method method, bool withDescription) {
    AddTimes();
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
    if (lines_.isEmpty()) return {};
    return Ui::tr("【%1】").arg(IsTodo() ? Ui::tr("用件") : Title(method)) + kLineBreak + lines_;
  }

 private:
  bool IsTodo() const { return icalcomponent_isa(event_) == ICAL_VTODO_COMPONENT; }

  void AddTimes() {
    Add(Ui::tr("件名: "), OneLine(icalcomponent_get_summary(event_)));
    if (IsTodo()) {
      Add(Ui::tr("期限: "), Due(event_));
    } else {
      Add(Ui::tr("日時: "), Period(event_));
    }
    if (icalproperty* rule = icalcomponent_get_first_property(event_, ICAL_RRULE_PROPERTY)) {
      Add(Ui::tr("繰り返し: "), RecurrenceWords(rule));
    }
    if (icalcomponent_get_first_property(event_, ICAL_RECURRENCEID_PROPERTY) != nullptr) {
      lines_ += Ui::tr("（繰り返しのうちの1回です）") + kLineBreak;
    }
  }

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
  std::vector<icalcomponent*> events = parsed.Events();
  const std::vector<icalcomponent*> todos = parsed.Todos();
  events.insert(events.end(), todos.begin(), todos.end());
  QStringList summaries;
  for (icalcomponent* event : events) {
    if (summaries.size() == kMostShown) break;
    summaries.append(Summary(event).Run(MethodOf(event), withDescription));
  }
  const auto rest = static_cast<int>(events.size()) - static_cast<int>(summaries.size());
  summaries.removeAll(QString());
  if (rest > 0)
    summaries.append(Ui::tr("（ほかに%n件の予定があります）", nullptr, rest) + kLineBreak);
  return summaries.join(kLineBreak);
}

}  // namespace vorn
