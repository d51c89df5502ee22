#pragma once

#include <QMenu>

namespace vorn {

class BrowserArea;
class FolderPanes;
class RequestWindows;

/// The menu "menuPageMessages": what can be done with the messages of the page that was used last.
class PageMessageMenu : public QMenu {
  Q_OBJECT

 public:
  PageMessageMenu(BrowserArea& area, QWidget* parent);
};

/// The menu "menuWindows": the pages are arranged, closed and reached.
class WindowMenu : public QMenu {
  Q_OBJECT

 public:
  WindowMenu(FolderPanes& panes, QWidget* parent);

 private:
  void AddWays(FolderPanes& panes);
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
};

}  // namespace vorn
