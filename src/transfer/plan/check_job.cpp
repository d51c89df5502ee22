#include "transfer/plan/check_job.h"

#include <QDateTime>
#include <memory>

namespace vorn {
namespace {

const QString kTimeFormat = QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz");
constexpr int kMillisecondsPerMinute = 60000;

QDateTime ReadTime(const QString& text) {
  return QDateTime::fromString(text, kTimeFormat);
}

// Whole minutes as a clock without seconds shows them.
qint64 MinuteBoundaries(const QDateTime& from, const QDateTime& to) {
  return to.toMSecsSinceEpoch() / kMillisecondsPerMinute -
         from.toMSecsSinceEpoch() / kMillisecondsPerMinute;
}

QString ModeWord(CheckJob::Mode mode) {
  switch (mode) {
    case CheckJob::Mode::Periodic:
      return QStringLiteral("maildowndefault");
    case CheckJob::Mode::Receive:
      return QStringLiteral("maildown");
    case CheckJob::Mode::Send:
      return QStringLiteral("mailup");
    case CheckJob::Mode::Look:
      return QStringLiteral("looklater");
  }
  return {};
}

}  // namespace

CheckJob CheckJob::New(const SerialId& serial, Mode mode) {
  auto bag = std::make_shared<Disk>(serial);
  bag->Let(kMode, ModeWord(mode));
  bag->Let(kDayTime, QString());
  return bag;
}

CheckJob CheckJob::Periodic(const SerialId& serial, int minutes) {
  CheckJob job = New(serial, Mode::Periodic);
  job.bag_->Let(kInterval, minutes);
  return job;
}

CheckJob CheckJob::Receive(const SerialId& serial, const DiskCollectionPtr& accounts,
                           bool isUnasked) {
  CheckJob job = New(serial, Mode::Receive);
  job.bag_->Let(kUnasked, isUnasked);
  job.bag_->Set(kAccounts, QVariant::fromValue(accounts));
  return job;
}

CheckJob CheckJob::Send(const SerialId& serial, const DiskCollectionPtr& messages, bool isUnasked) {
  CheckJob job = New(serial, Mode::Send);
  job.bag_->Let(kUnasked, isUnasked);
  job.bag_->Set(kMessages, QVariant::fromValue(messages));
  return job;
}

CheckJob CheckJob::Look(const SerialId& serial, bool isPeriodic) {
  CheckJob job = New(serial, Mode::Look);
  job.bag_->Let(kPeriodic, isPeriodic);
  return job;
}

bool CheckJob::Is(Mode mode) const {
  return bag_->Text(kMode) == ModeWord(mode);
}

bool CheckJob::IsDue(const QString& now) const {
  const QString text = bag_->Text(kDayTime);
  return text.isEmpty() || MinuteBoundaries(ReadTime(text), ReadTime(now)) >= 0;
}

void CheckJob::Reschedule(const QString& now) {
  const QDateTime next =
      ReadTime(now).addSecs(60 * static_cast<qint64>(bag_->Number(kInterval, 1)));
  bag_->Let(kDayTime, next.toString(kTimeFormat));
  bag_->Let(kUpdate, false);
}

bool CheckJob::SetHeld(bool isHeld) {
  const bool wasHeld = bag_->Flag(kHeld);
  bag_->Let(kHeld, isHeld);
  return isHeld != wasHeld;
}

}  // namespace vorn
