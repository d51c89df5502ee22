#pragma once

#include <QStringList>
#include <QStringView>

#include "mail/message_model.h"

namespace vorn {

/// The addresses of that kind (capitals are ignored) as people read them, each in one line and
/// whole whatever marks its name holds.
QStringList ShownAddresses(const MessageModel& model, QStringView kind);

}  // namespace vorn
