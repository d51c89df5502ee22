#pragma once

#include <QMenu>

#include "frame/window/commands/archive_commands.h"

namespace vorn {

class FolderPanes;
class Opener;
class PageActions;
class TrafficHost;

/// The menu "menuFiles": objects and messages are made, the tree's node is changed, messages are
/// imported and exported.
class FileMenu : public QMenu {
  Q_OBJECT

 public:
  /// The pieces of the main window that its commands act on.
  struct Parts {
    Context& context;
    QWidget& window;
    FolderPanes& panes;
    Opener& opener;
    PageActions& actions;
    TrafficHost& traffic;
    MessageHost& messages;
  };
  FileMenu(const Parts& parts, QWidget* parent);

  QAction* Exit() const { return exit_; }

 private:
  void AddCreation();
  void AddNodeCommands();
  void AddArchive();

  FolderPanes& panes_;
  Opener& opener_;
  ArchiveCommands archive_;
  QAction* exit_ = nullptr;
};

}  // namespace vorn
