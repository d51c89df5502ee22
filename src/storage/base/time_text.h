#pragma once

#include <QDateTime>
#include <QString>

namespace vorn {

/// The current local time as it is stored: "2026-11-24 09:05:07.123". Sorts as text.
QString CurrentTimeText();

/// A moment in the same form, as the local clock shows it.
QString StoredTimeText(const QDateTime& time);

/// The moment of a stored time; invalid for a text that is none.
QDateTime StoredTime(const QString& stored);

/// A stored time in the general form of objects and command lines: "2026/11/24 9:05:07"; empty for
/// a text that is no stored time.
QString GeneralTimeText(const QString& stored);

/// The same as users see it, in the form of the interface's language (see `ShownForm`).
QString ShownTimeText(const QString& stored);

/// That for a narrow column: the clock for `today`, month and day for the rest of its year, else
/// the date ("9:05", "11/24", "2025/11/24").
QString ShortTimeText(const QString& stored, const QDate& today);

}  // namespace vorn
