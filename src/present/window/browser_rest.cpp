// A browser window that nobody sees lets its page go, and makes it anew when it is seen.

#include <QApplication>
#include <QPrinter>
#include <QTabBar>
#include <QTimer>
#include <QWebEngineView>
#include <utility>

#include "present/window/browser_keys.h"
#include "present/window/browser_window.h"
#include "present/window/link_page.h"

namespace vorn {

using namespace browser_key;

// What is under way stays, and so do pages of the program's own.
void BrowserWindow::Rest() {
  const bool isShown = IsLocal() && !bag_->Text(kUrl).isEmpty() && !HasPage();
  if (!isShown || rests_ || bag_->Flag(kOnLoad) || IsForPrinting() || printer_ != nullptr) return;
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
  const QWidget* focus = QApplication::focusWidget();
  // Also what is around it, where the keyboard is left once the view is gone.
  const bool hasFocus = focus == nullptr || isAncestorOf(focus) || focus->isAncestorOf(this) ||
                        qobject_cast<const QTabBar*>(focus) != nullptr;
  Refresh();
  if (hasFocus && wbUrl_ != nullptr) wbUrl_->setFocus();  // the keys are the page's, as they were
}

}  // namespace vorn
