#pragma once

#include <QMainWindow>

#include "frame/request_timer.h"
#include "frame/window/hosts/main_message_host.h"
#include "frame/window/hosts/pages_host.h"
#include "frame/window/notices/damage_watch.h"
#include "frame/window/notices/main_closing.h"
#include "frame/window/notices/main_tray.h"
#include "frame/window/notices/new_message_notice.h"
#include "frame/window/notices/status_bar.h"
#include "frame/window/notices/traffic_host.h"
#include "frame/window/panes/console_tree.h"
#include "frame/window/panes/folder_changes.h"
#include "frame/window/panes/folder_panes.h"
#include "frame/window/panes/opener.h"
#include "frame/window/panes/request_windows.h"
#include "storage/base/serial_id.h"

namespace vorn {

class MainToolbar;

/// The main window "parent". It arranges its pieces: the console tree and the area of the pages,
/// the menus, the tool bar and the status bar, the requests and the mail traffic.
class ParentWindow : public QMainWindow, public DispatchHost {
  Q_OBJECT

 public:
  explicit ParentWindow(Context& context);
  ~ParentWindow() override;

  /// Fills the window after a login and opens the inbox.
  void LoadDefaultProperty();
  /// Does what an entry of the Tools menu does, by its number from 0.
  void menuTools_Click(int entry);
  /// Keeps what is being written and the state of the windows, and ends the traffic, without a
  /// question: the program is about to end.
  void KeepEverything();
  /// Pieces for those who drive the window.
  Opener& Requests() { return opener_; }
  PagesHost& Pages() { return pages_; }
  TrafficHost& Mail() { return traffic_; }
  MailTraffic& Traffic() { return traffic_.Traffic(); }

  // DispatchHost
  bool IsEnabled() const override;
  std::vector<RequestWindow*> OpenWindows() const override { return windows_.Open(); }
  RequestWindow* CreateRequestWindow(const Disk& request) override {
    return windows_.Create(request);
  }
  void ArrangeWindows() override;
  void NotifyNewMessages(const Disk& request) override;
  void ApplySettings() override;
  QString NodeText(const SerialId& serialId) const override;
  void RefreshNode(const SerialId& serialId) override;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void BuildMenus();
  void ConnectPieces();
  void Tick();
  Q_INVOKABLE void AskAtStart();
  void KeepPlacement();
  void ShowTitle();

  // Some of the pieces know others that are made after them.
  Context& context_;
  RequestTimer requests_;
  MainStatusBar* sbStatus_;
  FolderPanes* panes_;
  TrafficHost traffic_;
  Opener opener_;
  MainClosing closing_;
  FolderChanges changes_;
  MainMessageHost messages_;
  PagesHost pages_;
  RequestWindows windows_;
  DamageWatch damage_;
  NewMessageNotice notice_;
  MainTray tray_;
  MainToolbar* tbMain_;
};

}  // namespace vorn
