#pragma once

#include <QString>

#include "storage/context.h"

class QWidget;

namespace vorn {

class MessageHost;
struct MessageModel;

/// Has `host` print the page of a message (see `PrintPage`). The user is told before `window` when
/// it cannot be written for that.
void PrintMessagePage(Context& context, QWidget* window, MessageHost& host,
                      const MessageModel& model, const QString& html);

/// The same for a stored message as it is first seen when it is read. It keeps its mark.
void PrintStoredMessage(Context& context, QWidget* window, MessageHost& host,
                        const SerialId& serialId);

}  // namespace vorn
