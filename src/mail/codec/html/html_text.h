#pragma once

#include <QString>

namespace vorn {

/// The readable text of an HTML document: blocks, breaks and rows of tables become lines, list
/// items get a mark or number, quotes "> ". Links get a number, under which their targets stand at
/// the end where the text does not say them. What a browser would not show is left out. Never
/// fails. Lines end with CR LF.
QString HtmlToText(const QString& html);

}  // namespace vorn
