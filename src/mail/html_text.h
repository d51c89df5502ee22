#pragma once

#include <QString>

namespace vorn {

/// The readable text of an HTML document: tags are left out, blocks and breaks become lines, list
/// items get a mark, entities are decoded; scripts, styles and the head are dropped. Never fails.
/// Lines end with CR LF.
QString HtmlToText(const QString& html);

}  // namespace vorn
