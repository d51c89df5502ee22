#include "present/page_change.h"

#include <QUrl>
#include <utility>

#include "present/page_place.h"
#include "present/page_queue.h"
#include "present/page_rows.h"
#include "present/page_script.h"

namespace vorn {
namespace {

constexpr int kAnswerMs = 2000;  // after so long a page will not answer any more

}  // namespace

PageChange::PageChange(PageQueue& queue, PageRows& rows, PagePlace& place)
    : queue_(queue), rows_(rows), place_(place) {
  giveUpMaking_.setSingleShot(true);
  connect(&giveUpMaking_, &QTimer::timeout, this, &PageChange::Make);
  giveUpReplacing_.setSingleShot(true);
  connect(&giveUpReplacing_, &QTimer::timeout, this, [this] { EndReplacing(version_, -1); });
  queue_.OnFree([this] {
    if (make_) AskPlace();
  });
}

void PageChange::Keep(const std::function<void()>& make) {
  if (make_) return;
  make_ = make;
  giveUpMaking_.start(kAnswerMs);
  // What is asked alone may move the user to another row.
  if (!queue_.IsAlone()) AskPlace();
}

void PageChange::AskPlace() {
  if (isComing_) return;
  if (!queue_.HasPage()) return Make();
  if (!rows_.HasRows()) {
    place_.KeepEmpty();
    return Make();
  }
  // A page that goes at this very moment takes the question with it: the time is limited.
  queue_.Expect();
  queue_.RunFirst(OnPage(QStringLiteral("state()")), [this](const QVariant& state) {
    if (make_ && state.isValid()) place_.Keep(state.toString());
    Make();
  });
}

void PageChange::Make() {
  giveUpMaking_.stop();
  if (make_) std::exchange(make_, {})();
}

bool PageChange::Replace(const QByteArray& page, const std::function<void(bool)>& then) {
  if (!queue_.HasPage()) return false;
  queue_.Expect();
  replaced_ = then;
  sent_ = place_.Number();
  giveUpReplacing_.start(kAnswerMs);
  const QString call = QStringLiteral("replace('%1', ...%2)")
                           .arg(QString::fromLatin1(page.toBase64()), place_.ForReplacing());
  queue_.RunFirst(OnPage(call), [this, version = ++version_](const QVariant& rows) {
    EndReplacing(version, rows.isValid() ? rows.toInt() : -1);
  });
  return true;
}

// Of two that are sent in a row the answer to the first is nobody's.
void PageChange::EndReplacing(int version, int rows) {
  if (version != version_ || !replaced_) return;
  giveUpReplacing_.stop();
  const auto then = std::exchange(replaced_, {});
  if (rows < 0) return then(false);
  place_.Restored(sent_);
  rows_.SetCount(rows);
  // Else the page has been asked where the user is on it, and answers next.
  if (!make_) queue_.Resume();
  then(true);
}

void PageChange::BeginLoading(bool isPage) {
  isPage_ = isComing_ = isPage;
  clicked_ = {};
  replaced_ = {};
  isTold_ = false;
  sent_ = place_.Number();
  queue_.BeginLoading();
}

// The engine forgets what it was asked when the document goes, which is what happens when the end
// of an earlier loading is told: a place that was not put back is still wanted, and what was to
// make the page anew does so now. One that has been ordered meanwhile is meant for that version.
void PageChange::EndLoading() {
  isComing_ = false;
  replaced_ = {};
  queue_.EndLoading();
  // The engine may have lost the profile's scripts, as when a process died or loads overlapped.
  queue_.RunFirst(PageScript());
  const bool isSent = isPage_ && sent_ == place_.Number();
  const QString place = isSent ? place_.ForLoading() : QString();
  if (!place.isEmpty()) {
    queue_.RunFirst(OnPage(QStringLiteral("restore(...%1)").arg(place)),
                    [this, number = sent_](const QVariant& done) {
                      if (done.toBool()) place_.Restored(number);
                    });
  }
  if (isPage_) place_.Delivered(sent_);
  FollowClick();
  Count();
  Resume();
}

// On the document that went, which the one that came knows nothing of.
void PageChange::FollowClick() {
  const SerialId row = std::exchange(clicked_, {});
  if (row.IsEmpty()) return;
  queue_.RunFirst(OnPage(QStringLiteral("follow(decodeURIComponent('%1'))")
                             .arg(QString::fromLatin1(QUrl::toPercentEncoding(row.Text())))));
}

void PageChange::NoteRow(const SerialId& row, bool hasGone) {
  place_.NoteRow(row, hasGone);
  if (hasGone && isComing_) clicked_ = row;
}

void PageChange::Stay() {
  if (replaced_) return;
  if (place_.IsOrdered()) queue_.DropOthers();
  queue_.Expect();
  Count();
  Resume();
}

void PageChange::Count() {
  queue_.RunFirst(OnPage(QStringLiteral("count()")), [this](const QVariant& count) {
    isTold_ = true;
    rows_.SetCount(count.toInt());
  });
}

// The page has been asked for its rows, and answers that first.
void PageChange::Resume() {
  if (!make_) return queue_.Resume();
  giveUpMaking_.start(kAnswerMs);
  queue_.RunFirst(QStringLiteral("true"), [this](const QVariant&) {
    if (make_ && !queue_.IsAlone()) AskPlace();
  });
}

void PageChange::Detach() {
  LeavePlace();
  replaced_ = {};
  isPage_ = isComing_ = false;
  queue_.Shut();
  rows_.SetCount(0);
}

void PageChange::Rest() {
  BeginLoading();
  isComing_ = false;
}

void PageChange::Lose() {
  LeavePlace();
  Rest();
  rows_.SetCount(0);
}

void PageChange::LeavePlace() {
  giveUpMaking_.stop();
  make_ = {};
  clicked_ = {};
  place_.Leave();
  queue_.Drop();
}

}  // namespace vorn
