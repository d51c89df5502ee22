#include "mail/codec/calendar/parsed_calendar.h"

#include <QByteArrayList>
#include <algorithm>

#include "mail/codec/header/list_splitting.h"

namespace vorn {
namespace {

constexpr qsizetype kLargest = 4 * 1024 * 1024;

QMutex& LibraryMutex() {
  static QMutex mutex;
  return mutex;
}

// With the ends of what the end of the text left open, and without the line that it cut.
QByteArray Completed(const QByteArray& calendar) {
  QByteArrayList open;
  const qsizetype whole = calendar.lastIndexOf('\n') + 1;
  for (const QByteArray& line : calendar.first(whole).split('\n')) {
    const QByteArray entry = line.trimmed().toUpper();
    if (entry.startsWith("BEGIN:")) open.append(entry.sliced(6));
    if (entry.startsWith("END:") && !open.isEmpty() && open.last() == entry.sliced(4)) {
      open.removeLast();
    }
  }
  QByteArray completed = calendar.first(whole);
  while (!open.isEmpty()) completed += "END:" + open.takeLast() + "\r\n";
  return completed;
}

icalcomponent* Parse(const QString& calendar) {
  if (calendar.size() > kLargest) return nullptr;
  icalerror_set_errors_are_fatal(false);
  const QByteArray bytes = calendar.toUtf8();
  icalcomponent* parsed = icalparser_parse_string(bytes.constData());
  return parsed != nullptr ? parsed : icalparser_parse_string(Completed(bytes).constData());
}

}  // namespace

ParsedCalendar::ParsedCalendar(const QString& calendar)
    : lock_(&LibraryMutex()), whole_(Parse(calendar), &icalcomponent_free) {}

namespace {

// Calendars stand beside each other, or within each other where an end is missing.
constexpr int kMaxCalendarDepth = 4;

void Collect(icalcomponent* component, icalcomponent_kind kind, int depth,
             std::vector<icalcomponent*>& found) {
  if (icalcomponent_isa(component) == kind) found.push_back(component);
  if (depth == kMaxCalendarDepth) return;
  for (icalcomponent* inner = icalcomponent_get_first_component(component, ICAL_ANY_COMPONENT);
       inner != nullptr; inner = icalcomponent_get_next_component(component, ICAL_ANY_COMPONENT)) {
    Collect(inner, kind, depth + 1, found);
  }
}

bool IsOneTime(icalcomponent* event) {
  return icalcomponent_get_first_property(event, ICAL_RECURRENCEID_PROPERTY) != nullptr;
}

}  // namespace

std::vector<icalcomponent*> ParsedCalendar::Events() const {
  std::vector<icalcomponent*> events;
  if (whole_ != nullptr) Collect(whole_.get(), ICAL_VEVENT_COMPONENT, 0, events);
  return events;
}

std::vector<icalcomponent*> ParsedCalendar::Todos() const {
  std::vector<icalcomponent*> todos;
  if (whole_ != nullptr) Collect(whole_.get(), ICAL_VTODO_COMPONENT, 0, todos);
  return todos;
}

icalcomponent* ParsedCalendar::Event() const {
  const std::vector<icalcomponent*> events = Events();
  const auto rank = [](icalcomponent* event) {
    return (MethodOf(event) == ICAL_METHOD_REQUEST ? 0 : 2) + (IsOneTime(event) ? 1 : 0);
  };
  const auto best =
      std::min_element(events.begin(), events.end(),
                       [rank](icalcomponent* a, icalcomponent* b) { return rank(a) < rank(b); });
  return best == events.end() ? nullptr : *best;
}

icalcomponent* ParsedCalendar::Whole() const {
  icalcomponent* event = Event();
  icalcomponent* parent = event == nullptr ? nullptr : icalcomponent_get_parent(event);
  return parent == nullptr ? whole_.get() : parent;
}

icalproperty_method MethodOf(icalcomponent* event) {
  icalcomponent* calendar = icalcomponent_get_parent(event);
  return calendar == nullptr ? ICAL_METHOD_NONE : icalcomponent_get_method(calendar);
}

QString CalendarAddress(const char* uri) {
  QString address = MimeCodec::OneLine(QString::fromUtf8(uri));
  if (address.startsWith(u"mailto:", Qt::CaseInsensitive)) address.remove(0, 7);
  return address;
}

}  // namespace vorn
