#pragma once

#include <QByteArray>
#include <QString>

namespace vorn {

/// Text as it may stand in a log: one line of readable length. What a server said passes through
/// `Redaction` first.
QString ServerWords(const QByteArray& reply);

/// Whether a text can be an argument of a command: no line break could smuggle in another one.
bool IsSafeArgument(const QString& text);

}  // namespace vorn
