#pragma once

#include <QDateTime>
#include <QString>

namespace vorn {

/// The current local time as it is stored: "2026-11-24 09:05:07.123". Sorts as text.
QString CurrentTimeText();

/// A moment in the same form, as the local clock shows it.
QString StoredTimeText(const QDateTime& time);

/// A stored time in the general form that users see: "2026/11/24 9:05:07"; empty for a text that is
/// no stored time.
QString GeneralTimeText(const QString& stored);

}  // namespace vorn
