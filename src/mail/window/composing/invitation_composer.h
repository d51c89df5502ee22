#pragma once

#include <QObject>

#include "mail/codec/calendar/invitation.h"
#include "storage/context.h"

namespace vorn {

class CalendarBar;
class MessageDocument;
class MessageForm;

/// The message that answers an invitation, as it is written and the answer is changed.
class InvitationComposer : public QObject {
  Q_OBJECT

 public:
  InvitationComposer(Context& context, MessageDocument& document, MessageForm& form,
                     CalendarBar& bar);

  /// Another message is shown.
  void Forget() { isChanged_ = false; }
  /// Makes the reply that is shown an answer.
  void Write(const Invitation& invitation, InvitationAnswer answer);

 Q_SIGNALS:
  void Edited();

 private:
  void Change(InvitationAnswer answer);
  void CheckWords();

  Context& context_;
  MessageDocument& document_;
  MessageForm& form_;
  CalendarBar& bar_;
  bool isChanged_ = false;
};

}  // namespace vorn
