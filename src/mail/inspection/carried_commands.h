#pragma once

#include <QByteArray>
#include <QString>

#include "mail/inspection/look_bound.h"

namespace vorn {

/// What acts in a file whose kind is harmless otherwise.
struct CarriedCommands {
  /// In words for the user: macros, embedded programs and scripts of a document, formulas of a
  /// table of text, what contacts its sender or cannot be looked into. Empty when nothing is seen.
  QString words;
  bool isSeen = true;  ///< false when nothing was seen, but not everything could be looked into
};

/// `type` is the media type, `bytes` the whole content.
CarriedCommands FindCommands(const QString& type, const QByteArray& bytes, const LookBound& bound);

}  // namespace vorn
