#pragma once

#include <libical/ical.h>

#include <QString>

namespace vorn {

/// The rule of a series of appointments (RRULE of RFC 5545) in the user's language: "毎週
/// 月・水曜日、 全10回". A rule with parts that have no words here is given as it is written.
QString RecurrenceWords(icalproperty* rule);

}  // namespace vorn
