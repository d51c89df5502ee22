#include "present/page_queue.h"

#include <QPointer>
#include <QTimer>
#include <utility>

namespace vorn {

PageQueue::PageQueue(Ask ask) : ask_(std::move(ask)) {}

bool PageQueue::Waits() const {
  return alone_ != 0 || state_ == State::Expecting || state_ == State::Loading;
}

void PageQueue::Run(const QString& script, const Answer& then) {
  Enter({script, then});
}

void PageQueue::RunAlone(const QString& script, const Answer& then) {
  Enter({script, then, true});
}

void PageQueue::RunFirst(const QString& script, const Answer& then) {
  if (!HasPage()) {
    if (then) then({});
    return;
  }
  ask_(script, [self = QPointer<PageQueue>(this), then](const QVariant& answer) {
    if (self != nullptr && !self->closed_ && then) then(answer);
  });
}

void PageQueue::After(const std::function<void()>& then) {
  Enter({QStringLiteral("true"), [then](const QVariant&) { then(); }, true, true});
}

void PageQueue::GoOn(const QString& script, const Answer& then) {
  BeginAlone({script, then, true});
}

void PageQueue::Enter(const Question& question) {
  waiting_.append(question);
  Flush();
}

// An answer may come at once, and ask for more.
void PageQueue::Flush() {
  const QPointer<PageQueue> self(this);
  while (self != nullptr && !Waits() && !waiting_.isEmpty()) Begin(waiting_.takeFirst());
}

void PageQueue::Begin(const Question& question) {
  question.isAlone ? BeginAlone(question) : RunFirst(question.script, question.then);
}

void PageQueue::BeginAlone(const Question& question) {
  alone_ = ++lastAlone_;
  isAnswered_ = false;
  RunFirst(question.script, [this, number = alone_, question](const QVariant& answer) {
    if (alone_ == number) isAnswered_ = true;
    QTimer::singleShot(0, this,
                       [this, number, question, answer] { EndAlone(number, question, answer); });
  });
}

void PageQueue::EndAlone(int number, const Question& question, const QVariant& answer) {
  const QPointer<PageQueue> self(this);
  question.then(answer);
  if (self == nullptr) return;
  if (alone_ == number) alone_ = 0;
  if (alone_ == 0 && free_) free_();
  Flush();
}

void PageQueue::EndLoading() {
  state_ = State::Expecting;
  if (IsAlone() && !isAnswered_) Drop();
}

void PageQueue::Resume() {
  state_ = State::There;
  Flush();
}

void PageQueue::Shut() {
  Drop();
  state_ = State::None;
  Flush();
}

// What has been asked is answered still.
void PageQueue::Drop() {
  alone_ = 0;
  qsizetype stay = 0;
  while (stay < waiting_.size() && waiting_[stay].isAfter) ++stay;
  const QList<Question> rest = waiting_.mid(stay);
  waiting_.resize(stay);
  Refuse(rest);
}

void PageQueue::DropOthers() {
  QList<Question> stay = waiting_;
  stay.removeIf([](const Question& question) { return !question.isAfter; });
  Refuse(std::exchange(waiting_, stay));
}

// Nothing that changes the page is done then.
void PageQueue::Refuse(const QList<Question>& questions) {
  for (const Question& question : questions) {
    if (!question.isAlone && question.then) question.then({});
  }
}

}  // namespace vorn
