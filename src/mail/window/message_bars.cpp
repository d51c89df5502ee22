#include "mail/window/message_bars.h"

#include <QVBoxLayout>

#include "mail/window/calendar_bar.h"
#include "mail/window/doubt_bar.h"
#include "mail/window/reading_bar.h"

namespace vorn {

MessageBars::MessageBars(Context& context, MessageDocument& document)
    : document_(document),
      doubt_(new DoubtBar),
      calendar_(new CalendarBar(context)),
      signed_(new NoticeBar(QStringLiteral("frSigned"))),
      reading_(new ReadingBar(context, document)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(doubt_);
  layout->addWidget(calendar_);
  layout->addWidget(signed_);
  layout->addWidget(reading_);
}

void MessageBars::Show(const OpenedMessage& opened) {
  if (const auto& reply = opened.model.calendarReply) {
    calendar_->ShowAnswer(*reply, document_.IsEditable());
  } else {
    calendar_->Show(opened.calendar);
  }
  signed_->Say(opened.signature);
  reading_->Show();
}

}  // namespace vorn
