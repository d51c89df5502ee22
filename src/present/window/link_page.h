#pragma once

#include <QWebEnginePage>

#include "present/link_command.h"

namespace vorn {

/// A page of the browser engine that takes the link commands out of the navigation.
class LinkPage : public QWebEnginePage {
  Q_OBJECT

 public:
  using QWebEnginePage::QWebEnginePage;

  /// On a local page only link commands act, and the one page that the window itself loads.
  void SetLocalPage(const QUrl& page) { localPage_ = page; }

 Q_SIGNALS:
  void CommandFollowed(const vorn::LinkCommand& command);

 protected:
  bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
  QWebEnginePage* createWindow(WebWindowType type) override;

 private:
  QUrl localPage_;
};

}  // namespace vorn
