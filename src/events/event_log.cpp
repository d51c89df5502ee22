#include "events/event_log.h"

#include <QTime>

#include "mail/codec/header/identifiers.h"
#include "mail/store/mail_row.h"
#include "mail/store/message_bag.h"
#include "mail/store/message_rows.h"
#include "objects/settings.h"
#include "storage/bags/profile_bag.h"
#include "storage/base/shown_form.h"
#include "storage/databases.h"
#include "storage/ui.h"

namespace vorn {
namespace {

// The names of the levels, as the icons have them.
const QString kError = QStringLiteral("error");
const QString kInformation = QStringLiteral("infomation");
constexpr qsizetype kMostText = 20000;  // characters of a record that is written on

// What happened now above what is known; a session that brought nothing has no words.
QString WrittenOn(const QString& known, const QString& time, const QString& text) {
  if (text.isEmpty()) return known;
  const QString now = time + kLineBreak + text;
  return known.isEmpty() ? now : (now + kLineBreak + kLineBreak + known).left(kMostText);
}

}  // namespace

void EventLog::AddEvent(EventLevel level, EventMode mode, const SerialId& reference,
                        const QString& title, const QString& category, const QString& text) {
  const QString icon = category + (level == kEventError ? kError : kInformation);
  QString name = title.isEmpty() ? Ui::tr("システム") : title;
  DiskPtr record;
  if (Settings(context_).FoldsEvents()) {
    const QString time = Shown(QTime::currentTime(), QStringLiteral("H:mm"));
    name += u' ' + time;
    record = Like(reference, icon);
    if (record == nullptr) record = Begin(mode, reference, {});
    EventRecord::SetKind(*record, icon);
    EventRecord::Renew(*record, MimeCodec::CurrentDateText(),
                       WrittenOn(EventRecord(*record).Text(), time, text));
  } else {
    record = Begin(mode, reference, text);
  }
  records_.Add(record);
  if (mode == kEventMessage && level == kEventError) {
    failures_[record->Serial()] = {name, category};
  }
  view_.ShowEvent(record->Serial(), name, icon);
}

void EventLog::SettleSent() {
  if (failures_.isEmpty()) return;
  const OpenedDatabase opened(context_, DatabaseKind::Mail);
  if (!opened) return;  // they are looked at with the next change
  const SerialIds failed = failures_.keys();
  for (const SerialId& serialId : failed) {
    Disk& record = *records_.Find(serialId);
    const RecordsetPtr row = MessageRows(context_.Data).Of(EventRecord(record).Reference());
    if (row == nullptr || row->Eof() || MailRow(*row).Status() != kStatusSent) continue;
    const Failure failure = failures_.take(serialId);
    const QString icon = failure.category + kInformation;
    EventRecord::Settle(record, icon, Ui::tr("その後、送信しました。"));
    view_.ShowEvent(serialId, failure.title, icon);
  }
}

DiskPtr EventLog::Begin(EventMode mode, const SerialId& reference, const QString& text) const {
  const QString prefix = QStringLiteral("event_%1_").arg(records_.Count());
  auto record = std::make_shared<Disk>(context_.Data.NewSerialID(prefix));
  EventRecord::Begin(*record, mode, reference, MimeCodec::CurrentDateText(), text);
  if (mode == kEventMessage) {
    MessageBag::SetDatabase(*record, DatabaseKind::MailByPath);
    MessageBag::SetFile(*record, ProfileBag(*context_.Session).MailFiles());
    MessageBag::SetPassword(*record, ProfileBag(*context_.Session).Password());
  }
  return record;
}

// Null where nothing is known of it yet.
DiskPtr EventLog::Like(const SerialId& reference, const QString& icon) const {
  for (const DiskPtr& record : records_) {
    if (EventRecord(*record).Is(reference, icon)) return record;
  }
  return nullptr;
}

}  // namespace vorn
