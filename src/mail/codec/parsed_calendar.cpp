#include "mail/codec/parsed_calendar.h"

#include <algorithm>

#include "mail/codec/list_splitting.h"

namespace vorn {
namespace {

constexpr qsizetype kLargest = 4 * 1024 * 1024;

QMutex& LibraryMutex() {
  static QMutex mutex;
  return mutex;
}

icalcomponent* Parse(const QString& calendar) {
  if (calendar.size() > kLargest) return nullptr;
  icalerror_set_errors_are_fatal(false);
  return icalparser_parse_string(calendar.toUtf8().constData());
}

}  // namespace

ParsedCalendar::ParsedCalendar(const QString& calendar)
    : lock_(&LibraryMutex()), whole_(Parse(calendar), &icalcomponent_free) {}

std::vector<icalcomponent*> ParsedCalendar::Events() const {
  std::vector<icalcomponent*> events;
  if (whole_ == nullptr) return events;
  for (icalcomponent* event =
           icalcomponent_get_first_component(whole_.get(), ICAL_VEVENT_COMPONENT);
       event != nullptr;
       event = icalcomponent_get_next_component(whole_.get(), ICAL_VEVENT_COMPONENT)) {
    events.push_back(event);
  }
  return events;
}

icalcomponent* ParsedCalendar::Event() const {
  const std::vector<icalcomponent*> events = Events();
  const auto whole = std::find_if(events.begin(), events.end(), [](icalcomponent* event) {
    return icalcomponent_get_first_property(event, ICAL_RECURRENCEID_PROPERTY) == nullptr;
  });
  if (whole != events.end()) return *whole;
  return events.empty() ? nullptr : events.front();
}

QString CalendarAddress(const char* uri) {
  QString address = MimeCodec::OneLine(QString::fromUtf8(uri));
  if (address.startsWith(u"mailto:", Qt::CaseInsensitive)) address.remove(0, 7);
  return address;
}

}  // namespace vorn
