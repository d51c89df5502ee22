#pragma once

#include "storage/context.h"

namespace vorn {

class MessageDocument;
class MessageForm;

/// A signature as it stands in the box of a message's text.
QString ShownBlock(const QString& signature);

/// Another sender signs otherwise: brings the signature in line with the sender that stands in the
/// form. What the user has made of it stays.
void FollowSender(Context& context, MessageDocument& document, MessageForm& form);

}  // namespace vorn
