#pragma once

#include <QObject>

#include "storage/base/serial_id.h"

namespace vorn {

class FolderPanes;
class Opener;
class PageActions;
class RequestWindows;
struct Context;

/// Does what the user wants in the console tree: opens what nodes stand for, makes, renames and
/// deletes objects, files what is dropped.
class TreeCommands : public QObject {
  Q_OBJECT

 public:
  /// Questions stand before `window`.
  TreeCommands(Context& context, QWidget& window, FolderPanes& panes, RequestWindows& windows,
               Opener& opener, PageActions& actions);

 private:
  void OpenNode(const SerialId& key, const QString& tag, bool inTabOfItsOwn);
  void DeleteObject(const SerialId& key, const QString& tag);

  Context& context_;
  QWidget& window_;
  FolderPanes& panes_;
  RequestWindows& windows_;
  Opener& opener_;
};

}  // namespace vorn
