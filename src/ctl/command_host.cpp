#include "ctl/command_host.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

#include "ctl/command.h"
#include "storage/ui.h"

namespace vorn::ctl {
namespace {

constexpr int kTickMs = 5;

}  // namespace

void CommandHost::AddEvent(EventLevel level, EventMode, const SerialId&, const QString& title,
                           const QString&, const QString& text) {
  if (level == kEventError) ++failures_;
  if (!text.isEmpty()) Complain(title + QStringLiteral(": ") + text, 0);
}

void CommandHost::WorkIsHeld(const QString& sentence) {
  if (sentence.isEmpty()) return;
  Complain(sentence + Ui::tr("終わるのを待っています。"), 0);
}

double RunPlan(MailTraffic& traffic) {
  QElapsedTimer clock;
  clock.start();
  QTimer ticks;
  QObject::connect(&ticks, &QTimer::timeout, &ticks, [&traffic] {
    traffic.Tick();
    if (traffic.Plan().IsEmpty()) QCoreApplication::quit();
  });
  ticks.start(kTickMs);
  QCoreApplication::exec();
  return static_cast<double>(clock.elapsed()) / 1000.0;
}

}  // namespace vorn::ctl
