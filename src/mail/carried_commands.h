#pragma once

#include <QByteArray>
#include <QString>

namespace vorn {

/// What acts in a file whose kind is harmless otherwise, in words for the user: macros, embedded
/// programs and scripts of a document, formulas of a table of text, what contacts its sender or
/// cannot be looked into. Empty when nothing is seen. `type` is the media type, `bytes` the whole
/// content.
QString CarriedCommands(const QString& type, const QByteArray& bytes);

}  // namespace vorn
