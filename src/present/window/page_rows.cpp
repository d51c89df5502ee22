#include "present/window/page_rows.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUrl>
#include <QWebEnginePage>
#include <QWebEngineScript>
#include <utility>

#include "present/window/page_script.h"

namespace vorn {
namespace {

constexpr int kAnswerMs = 2000;  // after so long a page will not tell its place any more
constexpr int kReachMs = 1000;   // a message that is on no page by then is in another folder
const QString kTop = QStringLiteral(R"({"next":[],"chosen":[],"x":0,"y":0})");

}  // namespace

PageRows::PageRows(QObject* parent) : QObject(parent) {
  giveUp_.setSingleShot(true);
  connect(&giveUp_, &QTimer::timeout, this, &PageRows::Make);
  giveUpReplacing_.setSingleShot(true);
  giveUpReaching_.setSingleShot(true);
  connect(&giveUpReaching_, &QTimer::timeout, this,
          [this] { comes_ ? giveUpReaching_.start(kReachMs) : DropWaiting(); });
  connect(&giveUpReplacing_, &QTimer::timeout, this, [this] { EndReplacing(replacing_, -1); });
}

// What waits for an answer goes on without one when the page goes for good: a message that was
// dropped onto a folder must not be forgotten because another page was opened.
void PageRows::Run(const QString& script, const std::function<void(const QVariant&)>& then) {
  if (comes_ || held_) {
    waiting_.append([this, script, then] { Run(script, then); });
    return;
  }
  if (page_ == nullptr) {
    if (then) then({});
    return;
  }
  // A page that could not be loaded has no script either.
  page_->runJavaScript(QStringLiteral("window.vorn && ") + script,
                       QWebEngineScript::ApplicationWorld,
                       [self = QPointer<PageRows>(this), then](const QVariant& answer) {
                         if (self != nullptr && !self->closed_ && then) then(answer);
                       });
}

// The engine forgets what it was asked when the document goes, which is what happens when the end
// of an earlier loading is told: state that was not put back is still kept, and what was to make
// the page anew does so now.
void PageRows::Attach(QWebEnginePage* page) {
  page_ = page;
  comes_ = held_ = false;
  // The engine may have lost the profile's scripts, as when a process died or loads overlapped.
  page_->runJavaScript(QString::fromUtf8(kPageScript), QWebEngineScript::ApplicationWorld);
  if (!kept_.isEmpty()) Restore(kept_);
  isOrdered_ = false;
  Stay(page);
}

void PageRows::Stay(QWebEnginePage* page) {
  replaced_ = {};
  reachedAt_ = replacing_;  // of what is loaded nobody knows when it was made
  page_ = page;
  comes_ = held_ = false;
  Run(QStringLiteral("vorn.count()"), [this](const QVariant& count) { SetCount(count.toInt()); });
  Arrive();
}

// Where a message is to be reached, what waits goes on waiting for that.
void PageRows::Arrive() {
  held_ = held_ || !reach_.isEmpty();
  TryReaching(replacing_ > reachedAt_);
  if (make_) {
    Keep(std::exchange(make_, {}));
  } else {
    DoWaiting();
  }
}

void PageRows::Replace(const QByteArray& page, const std::function<void(bool)>& then) {
  if (!making_) LetWaitingGo();  // it is another folder's, or another page of it
  comes_ = true;
  replaced_ = then;
  giveUpReplacing_.start(kAnswerMs);
  const QString script =
      QStringLiteral("window.vorn ? vorn.replace('%1', ...%2) : null")
          .arg(QString::fromLatin1(page.toBase64()), Place(!isOrdered_       ? QString()
                                                           : kept_.isEmpty() ? kTop
                                                                             : kept_));
  page_->runJavaScript(
      script, QWebEngineScript::ApplicationWorld,
      [self = QPointer<PageRows>(this), number = ++replacing_](const QVariant& count) {
        if (self == nullptr || self->closed_) return;
        self->EndReplacing(number, count.isValid() ? count.toInt() : -1);
      });
}

// Of two that are sent in a row the answer to the first is nobody's.
void PageRows::EndReplacing(int number, int count) {
  if (number != replacing_ || !replaced_) return;
  giveUpReplacing_.stop();
  const auto then = std::exchange(replaced_, {});
  if (count < 0) {
    making_ = true;  // what waits for the page goes on waiting
    then(false);
    making_ = false;
    return;
  }
  kept_.clear();
  isOrdered_ = false;
  comes_ = false;
  SetCount(count);
  Arrive();
  then(true);
}

// As arguments in a list, which JSON is.
QString PageRows::Place(const QString& state) const {
  return QString::fromUtf8(
      QJsonDocument(QJsonArray{state, staysAtEnd_}).toJson(QJsonDocument::Compact));
}

QString PageRows::PlaceScript() const {
  return kept_.isEmpty() ? QString() : QStringLiteral("window.vornPlace = ") + Place(kept_);
}

void PageRows::Restore(const QString& state) {
  Run(QStringLiteral("(vorn.restore(...%1), true)").arg(Place(state)),
      [this, state](const QVariant& done) {
        if (done.toBool() && kept_ == state) kept_.clear();
      });
}

void PageRows::Detach() {
  replaced_ = {};
  page_.clear();
  if (making_) return;
  LetWaitingGo();
  SetCount(0);
}

void PageRows::LetWaitingGo() {
  comes_ = false;
  make_ = {};
  DropWaiting();
}

// What waits is answered with nothing: what it was meant for is not here.
void PageRows::DropWaiting() {
  giveUpReaching_.stop();
  reach_.clear();
  held_ = false;
  const bool comes = std::exchange(comes_, false);
  const QPointer<QWebEnginePage> page = std::exchange(page_, nullptr);
  lettingGo_ = true;
  DoWaiting();
  lettingGo_ = false;
  page_ = page;
  comes_ = comes;
}

void PageRows::Await() {
  Detach();
  comes_ = true;
}

void PageRows::DoWaiting() {
  for (const auto& run : std::exchange(waiting_, {})) run();
}

void PageRows::SetCount(int count) {
  count_ = count;
  if (changed_) changed_();
}

void PageRows::Call(const QString& function, int number, bool flag) {
  Run(QStringLiteral("vorn.%1(%2, %3)")
          .arg(function)
          .arg(number)
          .arg(flag ? QStringLiteral("true") : QStringLiteral("false")));
}

void PageRows::Call(const QString& function, const QStringList& messages) {
  if (messages.isEmpty()) return;
  const QByteArray ids =
      QJsonDocument(QJsonArray::fromStringList(messages)).toJson(QJsonDocument::Compact);
  Run(QStringLiteral("vorn.%1(%2)").arg(function, QString::fromUtf8(ids)));
}

void PageRows::GoToMessage(const QString& serialId, const std::function<void()>& notHere) {
  Run(QStringLiteral("vorn.goToMessage(decodeURIComponent('%1'))")
          .arg(QString::fromLatin1(QUrl::toPercentEncoding(serialId))),
      [notHere](const QVariant& here) {
        if (notHere && !here.toBool()) notHere();
      });
}

void PageRows::Reach(const QString& serialId) {
  reach_ = serialId;
  reachedAt_ = replacing_;
  giveUpReaching_.start(kReachMs);
  TryReaching(false);
  held_ = true;  // the next key means that message
}

// It may be on the page that is about to be made, unless this is that page.
void PageRows::TryReaching(bool isLast) {
  if (reach_.isEmpty() || comes_) return;
  const bool wasHeld = std::exchange(held_, false);
  Run(QStringLiteral("vorn.reach(decodeURIComponent('%1'))")
          .arg(QString::fromLatin1(QUrl::toPercentEncoding(reach_))),
      [this, isLast, serialId = reach_](const QVariant& there) {
        if (reach_ != serialId) return;
        if (there.toBool()) {
          Release();
        } else if (isLast) {
          DropWaiting();
        }
      });
  held_ = wasHeld;
}

void PageRows::Enter() {
  Run(QStringLiteral("vorn.enter()"));
}

void PageRows::Toggle() {
  Run(QStringLiteral("vorn.toggle()"));
}

void PageRows::Unchoose(const std::function<void(bool)>& then) {
  Run(QStringLiteral("vorn.unchoose()"), [then](const QVariant& had) { then(had.toBool()); });
}

void PageRows::ChooseAll() {
  Run(QStringLiteral("vorn.all()"));
}

void PageRows::Leave(bool unlessSeen) {
  Run(unlessSeen ? QStringLiteral("vorn.leaveUnseen()") : QStringLiteral("vorn.leave()"));
}

void PageRows::LeaveToGap() {
  Run(QStringLiteral("vorn.leaveToGap()"));
}

void PageRows::Chosen(const std::function<void(const QStringList&)>& then) {
  Run(QStringLiteral("vorn.chosen()"),
      [then](const QVariant& answer) { then(answer.toStringList()); });
}

void PageRows::Take(const std::function<void(const QStringList&)>& then) {
  Run(QStringLiteral("vorn.take()"),
      [then](const QVariant& answer) { then(answer.toStringList()); });
}

void PageRows::Current(const std::function<void(const QString&)>& then) {
  Run(QStringLiteral("vorn.current()"),
      [then](const QVariant& answer) { then(answer.toString()); });
}

void PageRows::AfterCommands(const std::function<void()>& then) {
  if (lettingGo_) return;  // what it was meant to take back has not been done either
  if (comes_ || held_) {
    waiting_.append([this, then] { AfterCommands(then); });
    return;
  }
  Current([this, then](const QString&) {
    // Not inside the engine's answer.
    QTimer::singleShot(0, this, [self = QPointer<PageRows>(this), then] {
      self->held_ = false;
      then();
      if (self == nullptr) return;
      if (self->reach_.isEmpty()) return self->Release();
      self->held_ = true;
    });
  });
  held_ = true;
}

void PageRows::Release() {
  giveUpReaching_.stop();
  reach_.clear();
  held_ = false;
  if (!comes_) DoWaiting();
}

void PageRows::Links(const std::function<void(const QList<Link>&)>& then) {
  Run(QStringLiteral("vorn.links()"), [then](const QVariant& answer) {
    QList<Link> links;
    for (const QVariant& entry : answer.toList()) {
      const QStringList fields = entry.toStringList();
      if (fields.size() == 2) links.append({fields[0], fields[1]});
    }
    then(links);
  });
}

void PageRows::BeginAtEnd(bool atEnd) {
  isOrdered_ = true;
  kept_ = atEnd ? QStringLiteral(R"({"next":[],"chosen":[],"x":0,"y":1e9,"end":true})") : QString();
}

// As after a row that has gone with all rows after it.
void PageRows::BeginAtLast() {
  isOrdered_ = true;
  kept_ = QStringLiteral(R"({"next":[""],"chosen":[],"x":0,"y":1e9,"end":true})");
}

void PageRows::BeginAtMessage(const QString& serialId) {
  const QJsonObject state{{QStringLiteral("next"), QJsonArray{serialId}},
                          {QStringLiteral("chosen"), QJsonArray()},
                          {QStringLiteral("seen"), true}};
  isOrdered_ = true;
  kept_ = QString::fromUtf8(QJsonDocument(state).toJson(QJsonDocument::Compact));
}

bool PageRows::WasAtEnd() const {
  if (kept_.isEmpty()) return count_ == 0;
  const QJsonObject state = QJsonDocument::fromJson(kept_.toUtf8()).object();
  return state[u"end"].toBool() && state[u"next"].toArray().isEmpty();
}

void PageRows::Keep(const std::function<void()>& then) {
  if (make_) return;  // it is about to be made
  make_ = then;
  if (page_ == nullptr || count_ == 0) {
    Make();
    return;
  }
  const bool wasHeld =
      std::exchange(held_, false);  // the page that comes may be what is waited for
  Run(QStringLiteral("vorn.state()"), [this](const QVariant& state) {
    if (make_ && state.isValid() && !isOrdered_) kept_ = state.toString();
    Make();
  });
  held_ = wasHeld;
  // A page that goes at this very moment takes the question with it.
  giveUp_.start(kAnswerMs);
  comes_ = true;
}

void PageRows::Make() {
  giveUp_.stop();
  if (!make_) return;
  making_ = true;
  std::exchange(make_, {})();
  making_ = false;
}

}  // namespace vorn
