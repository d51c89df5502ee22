#include "present/window/page/long_search.h"

#include <QSet>
#include <utility>

#include "present/message_list_page.h"
#include "present/page_request.h"
#include "present/window/page/condition_wait.h"
#include "storage/context.h"
#include "storage/databases.h"
#include "storage/session/change_mark.h"

namespace vorn {
namespace {

// What the program notes in the file by itself would have it look again for ever.
constexpr int kLookAgainMs = 2000;
constexpr int kLongestAgainMs = 300000;

}  // namespace

LongSearch::LongSearch(Context& context, MessageListPages& pages, const PageRequest& request)
    : context_(context),
      pages_(pages),
      request_(request),
      wait_(new ConditionWait(context, [this] { Q_EMIT Stopped(); })),
      againMs_(kLookAgainMs) {
  again_.setSingleShot(true);
  connect(&again_, &QTimer::timeout, this, [this] {
    const bool isShown =
        request_.IsLocal() && request_.Folder() == folder_ && request_.Search() == search_;
    if (!isShown) return;
    pages_.Forget(folder_, search_);
    isRepeated_ = true;
    Q_EMIT Outdated();
  });
}

QWidget* LongSearch::Bar() const {
  return wait_;
}

QString LongSearch::Question() const {
  return pages_.Question(request_.Folder(), request_.Search());
}

bool LongSearch::IsUnderWay() {
  return wait_->IsAsking(Question());
}

QString LongSearch::StateOfMail() const {
  const OpenedDatabase mail(context_, DatabaseKind::Mail);
  return mail ? ChangeMark(context_.Data) : QString();
}

bool LongSearch::IsLooking() const {
  return wait_->IsAsking();
}

void LongSearch::Begin(const std::function<void()>& then) {
  if (!std::exchange(isRepeated_, false)) againMs_ = kLookAgainMs;
  again_.stop();
  folder_ = request_.Folder();
  search_ = request_.Search();
  begunAt_ = StateOfMail();
  wait_->Ask(Question(), [this, then](const ConditionRun::Answer& answer) { Take(answer, then); });
  gone_.clear();
}

void LongSearch::Stop() {
  wait_->Stop();
}

// What the user did is looked for soon, however often it looked by itself before.
void LongSearch::TakeIn(const SerialIds& messages) {
  gone_.removeIf([&](const SerialId& message) { return messages.contains(message); });
  againMs_ = kLookAgainMs;
}

void LongSearch::Take(const ConditionRun::Answer& answer, const std::function<void()>& then) {
  if (!answer.values) {
    Q_EMIT Failed(answer.values.Error().text);
    return;
  }
  SerialIds serialIds;
  for (const QVariant& value : *answer.values) serialIds.append(SerialIdOf(value));
  serialIds.removeIf([gone = QSet<SerialId>(gone_.cbegin(), gone_.cend())](
                         const SerialId& message) { return gone.contains(message); });
  pages_.TakeAnswer(request_.Folder(), request_.Search(), serialIds);
  // What was asked for again is not kept waiting; what changed may not have been asked for yet.
  const bool isWanted = wait_->TakeAgain();
  if (isWanted) againMs_ = kLookAgainMs;
  if (isWanted || StateOfMail() != begunAt_) LookAgain();
  then();
}

// What has changed while the messages were looked for may not be in the answer. Each time later,
// as long as something changes.
void LongSearch::LookAgain() {
  again_.start(std::exchange(againMs_, qMin(2 * againMs_, kLongestAgainMs)));
}

}  // namespace vorn
