#include "frame/event_log.h"

#include "mail/codec/identifiers.h"
#include "mail/message_bag.h"
#include "storage/databases.h"
#include "storage/profile_bag.h"
#include "storage/ui.h"

namespace vorn {

void EventLog::AddEvent(EventLevel level, EventMode mode, const QString& reference,
                        const QString& title, const QString& category, const QString& text) {
  const QString prefix = QStringLiteral("event_%1_").arg(records_.Count());
  auto record = std::make_shared<Disk>(context_.Data.NewSerialID(prefix));
  EventRecord::Begin(*record, mode, reference, MimeCodec::CurrentDateText(), text);
  if (mode == kEventMessage) {
    MessageBag::SetDatabase(*record, DatabaseKind::MailByPath);
    MessageBag::SetFile(*record, ProfileBag(*context_.Session).MailFiles());
    MessageBag::SetPassword(*record, ProfileBag(*context_.Session).Password());
  }
  records_.Add(record);
  const QString levelName =
      level == kEventError ? QStringLiteral("error") : QStringLiteral("infomation");
  view_.ShowEvent(record->SerialID(), title.isEmpty() ? Ui::tr("システム") : title,
                  category + levelName);
}

}  // namespace vorn
