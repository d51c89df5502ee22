#pragma once

#include <QMenu>

#include "events/event_log.h"
#include "objects/settings.h"
#include "storage/context.h"

namespace vorn {

class FolderChanges;
class FolderPanes;
class RequestWindows;

/// The menu "menuDisplays": what folders look like, where messages are read, which events the tree
/// shows.
class DisplayMenu : public QMenu {
  Q_OBJECT

 public:
  /// Questions stand before `window`; `changes` learns of pages that look otherwise now.
  DisplayMenu(Context& context, QWidget& window, FolderPanes& panes, RequestWindows& windows,
              EventLog& events, FolderChanges& changes, QWidget* parent);

 Q_SIGNALS:
  /// A setting is another one now.
  void SettingsChanged();

 private:
  void AddLayouts();
  void AddPanes();
  void ClearEvents();
  void EditLayout();
  void ChooseLayout(const QString& id);
  void PlacePane(PanePlace place);

  Context& context_;
  QWidget& window_;
  FolderPanes& panes_;
  RequestWindows& windows_;
  EventLog& events_;
  FolderChanges& changes_;
};

}  // namespace vorn
