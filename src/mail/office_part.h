#pragma once

#include <QByteArray>

#include "mail/office_parts.h"

namespace vorn {

/// What a part of an office document, in XML, holds. Which element means what is told by its name
/// alone: a document has no use for another meaning.
OfficeHolds HoldsOfPart(const QByteArray& xml);

}  // namespace vorn
