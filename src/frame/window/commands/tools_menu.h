#pragma once

#include <QMenu>

namespace vorn {

class MainClosing;
class Opener;
class TrafficHost;

/// The menu "menuTools": mail is sent and received, what the program goes by is edited.
class ToolsMenu : public QMenu {
  Q_OBJECT

 public:
  /// The pieces of the main window that its commands act on.
  struct Parts {
    QWidget& window;
    Opener& opener;
    TrafficHost& traffic;
    MainClosing& closing;
    QString version;
  };
  ToolsMenu(const Parts& parts, QWidget* parent);

  QAction* Version() const { return version_; }
  /// Does what an entry does, by its number from 0; separators do not count.
  void Click(int entry);

 private:
  QAction* version_;
};

}  // namespace vorn
