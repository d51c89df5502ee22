#include "storage/engine/condition_limit.h"

namespace vorn {
namespace {

thread_local ConditionLimit* current = nullptr;

}  // namespace

ConditionLimit::ConditionLimit(int ms, const std::atomic<bool>* stop)
    : outer_(current), ms_(ms), stop_(stop) {
  current = this;
}

ConditionLimit::~ConditionLimit() {
  current = outer_;
}

int ConditionLimit::Ms() {
  return current != nullptr ? current->ms_ : DefaultMs;
}

bool ConditionLimit::IsStopped() {
  return current != nullptr && current->stop_ != nullptr && *current->stop_;
}

void ConditionLimit::NoteReached() {
  if (current != nullptr) current->reached_ = true;
}

}  // namespace vorn
