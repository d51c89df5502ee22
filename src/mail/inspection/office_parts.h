#pragma once

#include <QByteArray>

#include "mail/inspection/look_bound.h"

namespace vorn {

/// What an office document (OOXML, OpenDocument) holds beside what is read.
enum class OfficeHolds {
  Nothing,
  Commands,    ///< macros, other files, fields and links that run or load something
  Contact,     ///< what is loaded from another place, which tells its sender
  Unreadable,  ///< parts that could do so cannot be looked into
};

/// Looks into its parts; more than the bound allows, or than 1 GiB, is not readable.
OfficeHolds PartsOfOffice(const QByteArray& file, const LookBound& bound);

}  // namespace vorn
