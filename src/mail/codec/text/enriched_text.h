#pragma once

#include <QString>

namespace vorn {

/// The words of text/enriched (RFC 1896) and its older form text/richtext: without commands, "<<"
/// for "<", and with single line breaks as the blanks that they stand for.
QString EnrichedToText(const QString& enriched);

}  // namespace vorn
