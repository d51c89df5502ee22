#include "present/window/engine/page_links.h"

#include "present/window/engine/link_page.h"

namespace vorn {

void PageLinks::Follow(LinkPage& page) {
  page.OnNewWindow(makeWindow_);
  connect(&page, &LinkPage::CommandFollowed, this, &PageLinks::CommandFollowed);
  // Outside the engine's question whether the page goes on to it.
  connect(&page, &LinkPage::StepFollowed, this, &PageLinks::StepFollowed, Qt::QueuedConnection);
  connect(&page, &LinkPage::RowTold, this, &PageLinks::RowTold);
  connect(&page, &LinkPage::MailtoFollowed, this, &PageLinks::MailtoFollowed);
  connect(&page, &LinkPage::FirstNavigation, this, &PageLinks::FirstNavigation,
          Qt::QueuedConnection);
}

}  // namespace vorn
