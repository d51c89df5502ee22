#pragma once

#include <QString>

namespace vorn {

/// What the appointments and to-dos say that came by mail (iCalendar, RFC 5545, with the methods of
/// RFC 5546), in lines of the user's language that end with CR LF: what each is about, when in the
/// user's own time, how it repeats, where, who invites and who answered how. The description
/// follows with `withDescription`. Empty when there is none in it. Safe to call from any thread.
QString CalendarSummary(const QString& calendar, bool withDescription);

}  // namespace vorn
