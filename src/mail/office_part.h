#pragma once

#include <QByteArray>
#include <QDeadlineTimer>

#include "mail/office_parts.h"

namespace vorn {

/// What a part of an office document, in XML, holds. Which element means what is told by its name
/// alone: a document has no use for another meaning. What takes longer is not readable.
OfficeHolds HoldsOfPart(const QByteArray& part, const QDeadlineTimer& deadline);

}  // namespace vorn
