#pragma once

#include <QMenu>
#include <QPointer>
#include <functional>

namespace vorn {

class BrowserArea;
class BrowserWindow;
class FolderPanes;
class RequestWindows;

/// The menu "menuPageMessages": what can be done with the messages of the page that was used last.
class PageMessageMenu : public QMenu {
  Q_OBJECT

 public:
  PageMessageMenu(BrowserArea& area, QWidget* parent);
};

/// The menu "menuWindows": the pages are arranged, closed and reached, and so are the windows of
/// messages.
class WindowMenu : public QMenu {
  Q_OBJECT

 public:
  WindowMenu(FolderPanes& panes, const RequestWindows& windows, QWidget* parent);

 private:
  void AddWays(FolderPanes& panes);
  void List(BrowserArea& area, const RequestWindows& windows);
  void AddWindow(const QString& title, bool isCurrent, const std::function<void()>& activate);

  QList<QAction*> listed_;  // of the windows that were open when the menu was last shown
};

/// The menu "menuHelps", whose guide is a page.
class HelpMenu : public QMenu {
  Q_OBJECT

 public:
  /// `version` is an entry that it shares.
  HelpMenu(RequestWindows& windows, BrowserArea& area, QAction* version, QWidget* parent);

 private:
  /// At a section of the guide, or at its beginning.
  void ShowGuide(const QString& heading);

  RequestWindows& windows_;
  BrowserArea& area_;
  QPointer<BrowserWindow> guide_;
};

}  // namespace vorn
