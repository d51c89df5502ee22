#pragma once

#include <QByteArray>
#include <QString>

namespace vorn {

/// A server's reply as it may stand in a log: one line of readable length.
QString ServerWords(const QByteArray& reply);

/// A sentence for the user with the server's words behind it.
QString WithReply(const QString& sentence, const QByteArray& reply);

/// Whether a text can be an argument of a command: no line break could smuggle in another one.
bool IsSafeArgument(const QString& text);

}  // namespace vorn
