#pragma once

#include <libical/ical.h>

#include <QMutexLocker>
#include <QString>
#include <memory>
#include <vector>

namespace vorn {

/// A calendar (iCalendar, RFC 5545) in the library's form. While one lives, no other thread uses
/// the library, which keeps what it knows of time zones in one place.
class ParsedCalendar {
 public:
  /// One that cannot be read, or is far larger than appointments are, has no event; of one that was
  /// cut off there is what came.
  explicit ParsedCalendar(const QString& calendar);

  /// The calendar that holds `Event`. Several may stand one behind the other.
  icalcomponent* Whole() const;
  /// All appointments, as they stand in it.
  std::vector<icalcomponent*> Events() const;
  std::vector<icalcomponent*> Todos() const;
  /// What it is about: the first that is not a single time of a series, else the first; those that
  /// ask for an answer before others. Null when there is none.
  icalcomponent* Event() const;

 private:
  QMutexLocker<QMutex> lock_;
  std::unique_ptr<icalcomponent, decltype(&icalcomponent_free)> whole_;
};

/// What is asked about an appointment (RFC 5546).
icalproperty_method MethodOf(icalcomponent* event);

/// The address of an organizer or attendee, whose value is a URI.
QString CalendarAddress(const char* uri);

}  // namespace vorn
