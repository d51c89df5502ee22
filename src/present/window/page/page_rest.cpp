#include "present/window/page/page_rest.h"

#include <QApplication>
#include <QTabBar>
#include <QTimer>
#include <QWebEngineView>
#include <utility>

#include "present/shown_page.h"
#include "present/window/engine/engine_view.h"
#include "present/window/page/long_search.h"
#include "present/window/page/page_printing.h"
#include "present/window/page/page_reading.h"

namespace vorn {
namespace {

constexpr int kAgainMs = 10000;

}  // namespace

PageRest::PageRest(ShownPage& page, EngineView& engine, PageReading& reading,
                   const LongSearch& search, const PagePrinting& printing, QWidget& window,
                   QWidget& around)
    : page_(page),
      engine_(engine),
      reading_(reading),
      search_(search),
      printing_(printing),
      window_(window),
      around_(around) {
  // The engine tells that a page is loaded before it tells which.
  connect(&reading, &PageReading::WasRead, this, [this] {
    if (isUnseen_) Begin();
  });
}

// What is under way stays, and so do pages of the program's own, but for the words that stand in a
// page's place until its messages are found.
bool PageRest::MayGo() const {
  const PageRequest& request = page_.request;
  const bool isRead = request.HasUrl() ? !reading_.IsKept() : search_.IsLooking();
  return request.IsLocal() && isRead && !request.State().IsLoading() && !request.IsForPrinting() &&
         !printing_.IsUnderWay();
}

void PageRest::Begin() {
  isUnseen_ = true;
  if (!MayGo()) return;
  reading_.Stop();
  if (std::exchange(rests_, true)) return;
  page_.change.Keep([this] { QTimer::singleShot(0, this, &PageRest::LetGo); });
}

// The user may be back before the page has told its place.
void PageRest::LetGo() {
  if (engine_.View() == nullptr) return;
  if (!rests_) {
    page_.change.Stay();
    Q_EMIT AnewWanted();
    return;
  }
  engine_.LetGo();
  page_.change.Rest();
  Q_EMIT Gone();
}

void PageRest::Wake() {
  isUnseen_ = false;
  if (!std::exchange(rests_, false) || engine_.View() != nullptr) return;
  const bool hadFocus = HasKeysNear();
  Q_EMIT AnewWanted();
  // The keys are the page's, as they were.
  if (hadFocus && engine_.View() != nullptr) engine_.View()->setFocus();
}

// Not inside the engine's word of it.
void PageRest::Renew() {
  if (sinceEnd_.isValid() && sinceEnd_.elapsed() < kAgainMs) return;
  sinceEnd_.start();
  const QWidget* focus = QApplication::focusWidget();
  // The widget in the view that has the keyboard goes with the process.
  const bool hadFocus =
      engine_.View() != nullptr && (focus == engine_.View() || engine_.View()->isAncestorOf(focus));
  QTimer::singleShot(0, this, [this, hadFocus] {
    if (engine_.View() == nullptr) return;
    engine_.LetGo();
    Q_EMIT AnewWanted();
    if (hadFocus && engine_.View() != nullptr) engine_.View()->setFocus();
  });
}

// What is around the view has the keyboard too, as when the view was let go or another tab chosen.
bool PageRest::HasKeysNear() const {
  const QWidget* focus = QApplication::focusWidget();
  return focus == nullptr || window_.isAncestorOf(focus) || focus->isAncestorOf(&window_) ||
         qobject_cast<const QTabBar*>(focus) != nullptr;
}

void PageRest::TakeKeys() {
  const QWidget* focus = QApplication::focusWidget();
  const bool isInPage = focus != nullptr && around_.isAncestorOf(focus);
  if (engine_.View() != nullptr && !isInPage && HasKeysNear()) engine_.View()->setFocus();
}

}  // namespace vorn
