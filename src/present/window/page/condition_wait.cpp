#include "present/window/page/condition_wait.h"

#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kLimitMs = 120000;  // nothing stands still meanwhile

QPushButton* StopButton() {
  auto* button = new QPushButton(Ui::tr("中止(&C)"));
  button->setObjectName(QStringLiteral("cmStopCondition"));
  return button;
}

}  // namespace

ConditionWait::ConditionWait(Context& context, std::function<void()> stopped)
    : ConditionWait(context, std::move(stopped), StopButton()) {}

ConditionWait::ConditionWait(Context& context, std::function<void()> stopped, QPushButton* button)
    : NoticeBar(QStringLiteral("barCondition"), button), context_(context) {
  connect(button, &QPushButton::clicked, this, [this, stopped = std::move(stopped)] {
    Stop();
    stopped();
  });
}

void ConditionWait::Ask(const QString& question, const ConditionRun::Then& then) {
  Stop();
  question_ = question;
  run_.reset(new ConditionRun(context_, question, kLimitMs,
                              [this, then](const ConditionRun::Answer& answer) {
                                question_.clear();
                                Say({});
                                then(answer);
                              }));
  Say(Ui::tr("条件に合うメッセージを探しています…"));
}

bool ConditionWait::IsAsking(const QString& question) {
  const bool isIt = !question_.isEmpty() && question_ == question;
  again_ = again_ || isIt;
  return isIt;
}

void ConditionWait::Stop() {
  run_.reset();
  question_.clear();
  again_ = false;
  Say({});
}

}  // namespace vorn
