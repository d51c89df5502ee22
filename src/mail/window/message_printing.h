#pragma once

#include <QByteArray>
#include <QString>

#include "storage/context.h"

class QWidget;

namespace vorn {

class MessageHost;

/// Has `host` print a page (see `PrintPage`). The user is told before `window` when it cannot be
/// written for that.
void PrintMessagePage(Context& context, QWidget* window, MessageHost& host, const QByteArray& page);

/// The same for a stored message as it is first seen when it is read. It keeps its mark.
void PrintStoredMessage(Context& context, QWidget* window, MessageHost& host,
                        const QString& serialId);

}  // namespace vorn
