#include "present/window/link_page.h"

namespace vorn {

bool LinkPage::acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) {
  if (const auto command = ReadLinkCommand(url.toString(QUrl::FullyEncoded))) {
    // Only what the user clicked; a page cannot follow its own links.
    if (type == NavigationTypeLinkClicked) Q_EMIT CommandFollowed(*command);
    return false;
  }
  if (localPage_.isEmpty()) return QWebEnginePage::acceptNavigationRequest(url, type, isMainFrame);
  return isMainFrame && url == localPage_ && type != NavigationTypeLinkClicked &&
         type != NavigationTypeFormSubmitted;
}

QWebEnginePage* LinkPage::createWindow(WebWindowType type) {
  return localPage_.isEmpty() ? QWebEnginePage::createWindow(type) : nullptr;
}

}  // namespace vorn
