#pragma once

#include <QString>
#include <functional>

#include "mail/open_message.h"

namespace vorn {

/// What stands in a tab beside a message's text.
struct HtmlPart {
  std::function<QString()> make = nullptr;  ///< its HTML, whenever the tab is opened; null: no tab
  QString title = {};
  bool isFirst = false;  ///< the tab is in front at first
};

/// The HTML part of a message that is read, which `html` gives, with the pictures that are attached
/// below it, or these alone.
HtmlPart PartToRead(Context& context, const OpenedMessage& opened,
                    const std::function<QString()>& html);

}  // namespace vorn
