#include "present/window/browser_controls.h"

#include <QWebEngineView>

#include "mail/window/host/message_host.h"
#include "present/link_command.h"
#include "present/shown_page.h"
#include "present/window/engine/engine_view.h"
#include "present/window/folder/shown_folder.h"
#include "present/window/page/browser_host.h"
#include "present/window/page/page_loader.h"
#include "present/window/toolbar/folder_toolbar.h"
#include "present/window/web_navigation.h"

namespace vorn {

BrowserControls::BrowserControls(const Parts& parts) : parts_(parts) {
  FolderToolbar& toolbar = parts_.toolbar;
  connect(&toolbar, &FolderToolbar::SeekWanted, this, &BrowserControls::Seek);
  // The page is asked for its links when the user wants to see them.
  connect(&toolbar, &FolderToolbar::LinksWanted, this, [this] {
    parts_.page.rows.Links(
        [this](const QList<PageRows::Link>& links) { parts_.toolbar.ListLinks(links); });
  });
  connect(&toolbar, &FolderToolbar::LinkFollowed, this, &BrowserControls::FollowLink);
}

void BrowserControls::Show() {
  const PageRequest& request = parts_.page.request;
  parts_.toolbar.Show({.isFolder = request.IsLocal(),
                       .canSearch = request.IsLocal() && !parts_.loader.HasOwnPage(),
                       .isLoading = request.State().IsLoading(),
                       .hasBefore = request.State().HasBefore(),
                       .hasNext = request.State().HasNext(),
                       .page = request.Page()});
}

void BrowserControls::Seek() {
  const PageRequest& request = parts_.page.request;
  if (request.State().IsLoading()) return parts_.engine.View()->stop();
  if (parts_.folder.SearchTyped()) return;  // for what the box says, rather than what it said
  if (request.IsLocal() && !parts_.loader.HasOwnPage()) {
    parts_.host.Messages().MessageStored();  // folders and their counts
  } else {
    parts_.loader.Refresh();
  }
}

void BrowserControls::FollowLink(const QString& address) {
  if (const auto request = ReadLinkCommand(address)) {
    parts_.host.ShowMessage(*request);
  } else {
    parts_.web.GoTo(address);
  }
}

}  // namespace vorn
