// A browser window that nobody sees lets its page go, and makes it anew when it is seen.

#include <QApplication>
#include <QPrinter>
#include <QTabBar>
#include <QTimer>
#include <QWebEngineView>
#include <utility>

#include "present/window/browser_window.h"
#include "present/window/link_page.h"
#include "present/window/page_split.h"

namespace vorn {

// What is under way stays, and so do pages of the program's own.
void BrowserWindow::Rest() {
  const bool isShown = IsLocal() && request_.HasUrl() && !HasPage();
  if (!isShown || rests_ || request_.IsLoading() || IsForPrinting() || printer_ != nullptr) return;
  rests_ = true;
  rows_.Keep([this] { QTimer::singleShot(0, this, &BrowserWindow::LetViewGo); });
}

// The user may be back before the page has told its place.
void BrowserWindow::LetViewGo() {
  if (wbUrl_ == nullptr) return;
  if (!rests_) return Refresh();
  explore_.stop();
  wbUrl_->disconnect(this);
  page_->disconnect(this);
  delete std::exchange(wbUrl_, nullptr);
  page_ = nullptr;
  DropPage();
}

void BrowserWindow::Wake() {
  if (!std::exchange(rests_, false) || wbUrl_ != nullptr) return;
  const bool hadFocus = HasKeysNear();
  Refresh();
  if (hadFocus && wbUrl_ != nullptr) wbUrl_->setFocus();  // the keys are the page's, as they were
}

void BrowserWindow::Cover(bool covered) {
  split_->Cover(covered);
}

// What is around the view has the keyboard too, as when the view was let go or another tab chosen.
bool BrowserWindow::HasKeysNear() const {
  const QWidget* focus = QApplication::focusWidget();
  return focus == nullptr || isAncestorOf(focus) || focus->isAncestorOf(this) ||
         qobject_cast<const QTabBar*>(focus) != nullptr;
}

void BrowserWindow::TakeKeys() {
  const QWidget* focus = QApplication::focusWidget();
  const bool isInPage = focus != nullptr && split_->isAncestorOf(focus);
  if (wbUrl_ != nullptr && !isInPage && HasKeysNear()) wbUrl_->setFocus();
}

}  // namespace vorn
