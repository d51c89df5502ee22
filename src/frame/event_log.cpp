#include "frame/event_log.h"

#include "mail/codec/identifiers.h"
#include "storage/databases.h"
#include "storage/ui.h"

namespace vorn {

void EventLog::AddEvent(int level, int mode, const QString& reference, const QString& title,
                        const QString& category, const QString& text) {
  const QString prefix = QStringLiteral("event_%1_").arg(records_.Count());
  auto record = std::make_shared<Disk>(context_.Data.NewSerialID(prefix));
  record->Let(QStringLiteral("reference"), reference);
  record->Let(QStringLiteral("daytime"), MimeCodec::CurrentDateText());
  record->Let(QStringLiteral("message"), text);
  record->Let(QStringLiteral("mode"), mode);
  if (mode == kEventMessage) {
    record->Let(QStringLiteral("db"), static_cast<int>(DatabaseKind::MailByPath));
    record->Let(QStringLiteral("file"), context_.Session->Text(u"Mail"));
    record->Let(QStringLiteral("password"), context_.Session->Text(u"password"));
  }
  records_.Add(record);
  const QString levelName = level == kEventError         ? QStringLiteral("error")
                            : level == kEventInformation ? QStringLiteral("infomation")
                                                         : QString();
  view_.ShowEvent(record->SerialID(), title.isEmpty() ? Ui::tr("システム") : title,
                  category + levelName);
}

}  // namespace vorn
