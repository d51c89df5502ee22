#pragma once

#include "storage/bags/disk.h"
#include "storage/ui.h"

namespace vorn {

/// Adds a line to the text under `key`.
inline void AppendLine(Disk& bag, const QString& key, const QString& line) {
  const QString text = bag.Text(key);
  bag.Let(key, text.isEmpty() ? line : text + kLineBreak + line);
}

}  // namespace vorn
