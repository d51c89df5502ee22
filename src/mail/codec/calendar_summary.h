#pragma once

#include <QString>

namespace vorn {

/// What an appointment says that came by mail (iCalendar, RFC 5545, with the methods of RFC 5546),
/// in lines of the user's language that end with CR LF: what it is about, when in the user's own
/// time, where, who invites and who answered how. Its description follows with `withDescription`.
/// Empty when there is no appointment in it. Safe to call from any thread.
QString CalendarSummary(const QString& calendar, bool withDescription);

}  // namespace vorn
