#include "frame/window/panes/folder_changes.h"

#include "events/event_log.h"
#include "frame/window/panes/browser_area.h"
#include "frame/window/panes/console_tree.h"
#include "frame/window/panes/folder_panes.h"
#include "frame/window/panes/request_windows.h"
#include "transfer/mail_traffic.h"

namespace vorn {

FolderChanges::FolderChanges(Context& context, FolderPanes& panes, const RequestWindows& windows,
                             MailTraffic& traffic, EventLog& events)
    : panes_(panes),
      windows_(windows),
      traffic_(traffic),
      events_(events),
      others_(context),
      objects_(context),
      unread_(context, panes.Tree().Nodes(), [&traffic] { return traffic.Control().Busy(); }) {}

void FolderChanges::Tick() {
  if (!traffic_.Control().Busy() && others_.HaveStored()) noted_ = true;
  if (noted_ || !traffic_.Control().Busy()) Refresh();
}

// What arrived in a session shows up in the open folders by itself.
void FolderChanges::Refresh() {
  const ReceiveCounts& counts = traffic_.Events().Counts();
  const int stored = counts.stored + counts.sent;
  if (stored == storedSeen_ && !noted_) return;
  storedSeen_ = stored;
  noted_ = false;
  unread_.CountSoon();
  events_.SettleSent();
  panes_.Area().RefreshFolders();
  const std::vector<RequestWindow*> open = windows_.Open();
  for (RequestWindow* window : open) window->MessagesChanged();
}

}  // namespace vorn
