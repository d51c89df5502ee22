#pragma once

#include <QObject>

class QUrl;

namespace vorn {

class BrowserWindow;
class EngineView;
class FolderToolbar;
class LinkPage;
class PageLoader;
class PageRequest;
class WebHost;

/// Where a browser window on the web goes: to addresses, back and on, and to the window that
/// answers to a link's target name. On a folder's page it does nothing.
class WebNavigation : public QObject {
  Q_OBJECT

 public:
  WebNavigation(PageRequest& request, EngineView& engine, PageLoader& loader,
                FolderToolbar& toolbar, WebHost& host, BrowserWindow& window);

  void GoTo(const QString& address);
  /// Makes the window that of a new web page that another page asked for, shown once that page
  /// navigates there and not to a window of its target's name.
  LinkPage* BecomeNewWindow();
  /// The target name that the window answers to.
  QString WindowName() const;

 private:
  void ConnectEngine();
  void Turn(int step);
  void TakeName(const QString& name, const QUrl& url);
  void ShowPlace();

  PageRequest& request_;
  EngineView& engine_;
  PageLoader& loader_;
  FolderToolbar& toolbar_;
  WebHost& host_;
  BrowserWindow& window_;
};

}  // namespace vorn
