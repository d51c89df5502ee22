#pragma once

#include <QByteArray>

namespace vorn {

/// What an office document (OOXML, OpenDocument) holds beside what is read.
enum class OfficeHolds {
  Nothing,
  Commands,    ///< macros, other files, fields and links that run or load something
  Contact,     ///< what is loaded from another place, which tells its sender
  Unreadable,  ///< parts that could do so cannot be looked into
};

/// Looks into its parts, with a bound.
OfficeHolds PartsOfOffice(const QByteArray& file);

}  // namespace vorn
