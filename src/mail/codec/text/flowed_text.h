#pragma once

#include <QString>

namespace vorn {

/// The text of a "format=flowed" part (RFC 3676) with its paragraphs joined again: soft line breaks
/// are removed, stuffed blanks as well, quoted lines keep their marks. With `deleteSpace` (DelSp)
/// the blank at a soft break goes too. Line breaks are those of the input.
QString UnflowText(const QString& text, bool deleteSpace);

}  // namespace vorn
