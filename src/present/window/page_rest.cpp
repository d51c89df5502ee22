#include "present/window/page_rest.h"

#include <QApplication>
#include <QTabBar>
#include <QTimer>
#include <QWebEngineView>
#include <utility>

#include "present/page_change.h"
#include "present/window/engine_view.h"

namespace vorn {
namespace {

constexpr int kAgainMs = 10000;

}  // namespace

PageRest::PageRest(EngineView& engine, PageChange& change, QWidget& window, QWidget& around)
    : engine_(engine), change_(change), window_(window), around_(around) {}

void PageRest::Begin() {
  if (std::exchange(rests_, true)) return;
  change_.Keep([this] { QTimer::singleShot(0, this, &PageRest::LetGo); });
}

// The user may be back before the page has told its place.
void PageRest::LetGo() {
  if (engine_.View() == nullptr) return;
  if (!rests_) {
    change_.Stay();
    Q_EMIT AnewWanted();
    return;
  }
  engine_.LetGo();
  change_.Load();  // in its time
  Q_EMIT Gone();
}

void PageRest::Wake() {
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
