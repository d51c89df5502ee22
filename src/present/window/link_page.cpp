#include "present/window/link_page.h"

namespace vorn {

bool LinkPage::acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) {
  if (const auto command = ReadLinkCommand(url.toString(QUrl::FullyEncoded))) {
    // Only what the user clicked; a page cannot follow its own links.
    if (type == NavigationTypeLinkClicked) Q_EMIT CommandFollowed(*command);
    return false;
  }
  if (!localPage_.isEmpty()) {
    return isMainFrame && url == localPage_ && type != NavigationTypeLinkClicked &&
           type != NavigationTypeFormSubmitted;
  }
  if (url.scheme() == u"mailto") {
    // A new window comes of a click as well; there is nothing that it could show.
    if (type == NavigationTypeLinkClicked || holding_)
      Q_EMIT MailtoFollowed(url.toString(QUrl::FullyEncoded));
    return false;
  }
  if (holding_ && isMainFrame && url.scheme() != u"about") {
    holding_ = false;
    // What a form sends would be lost, so it goes where it wants to.
    const bool goesOn = type == NavigationTypeFormSubmitted;
    Q_EMIT FirstNavigation(goesOn ? QUrl() : url);
    return goesOn;
  }
  return QWebEnginePage::acceptNavigationRequest(url, type, isMainFrame);
}

QWebEnginePage* LinkPage::createWindow(WebWindowType) {
  return localPage_.isEmpty() && makeWindow_ ? makeWindow_() : nullptr;
}

}  // namespace vorn
