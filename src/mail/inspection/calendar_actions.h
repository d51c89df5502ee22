#pragma once

#include <QString>

namespace vorn {

/// Whether an appointment in iCalendar form (RFC 5545) starts a program, names a file of the
/// computer or fetches something.
bool StartsPrograms(const QString& calendar);

/// Whether a card (vCard, RFC 6350) has a picture, a logo or a sound that lies on another computer,
/// which is fetched to show it.
bool LoadsPictures(const QString& card);

}  // namespace vorn
