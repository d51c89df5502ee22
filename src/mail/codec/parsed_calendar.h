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
  /// One that cannot be read, or is far larger than appointments are, has no event.
  explicit ParsedCalendar(const QString& calendar);

  icalcomponent* Whole() const { return whole_.get(); }
  /// Its appointments, as they stand in it.
  std::vector<icalcomponent*> Events() const;
  /// What it is about: the first that is not a single time of a series, else the first; null when
  /// there is none.
  icalcomponent* Event() const;

 private:
  QMutexLocker<QMutex> lock_;
  std::unique_ptr<icalcomponent, decltype(&icalcomponent_free)> whole_;
};

/// The address of an organizer or attendee, whose value is a URI.
QString CalendarAddress(const char* uri);

}  // namespace vorn
