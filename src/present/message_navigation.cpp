#include "present/message_navigation.h"

#include <utility>

#include "mail/search/neighbour_message.h"
#include "present/message_list_page.h"
#include "present/shown_page.h"
#include "storage/engine/condition_limit.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kSearchMs = 2000;  // the window stands still meanwhile

}  // namespace

MessageNavigation::MessageNavigation(Context& context, MessageListPages& pages, ShownPage& page,
                                     ShowPage show, Tell tell)
    : context_(context),
      pages_(pages),
      page_(page),
      show_(std::move(show)),
      tell_(std::move(tell)) {}

void MessageNavigation::GoToUnopened() {
  page_.rows.CurrentAlone([this, folder = page_.request.Folder()](const SerialId& message) {
    if (page_.request.Folder() == folder) GoToUnopenedAfter(message);
  });
}

void MessageNavigation::GoToUnopenedAfter(const SerialId& message) {
  const ConditionLimit brief(kSearchMs);
  const auto next = NextUnopened(context_, page_.request.Folder(), page_.request.Search(), message);
  if (!next || next->IsEmpty()) {
    tell_(!next && brief.IsReached() ? next.Error().text
                                     : Ui::tr("ほかに未開封のメッセージはありません。"));
    return;
  }
  GoToRow(*next);
}

void MessageNavigation::GoTo(const SerialId& message) {
  page_.rows.CurrentAlone([this, message, folder = page_.request.Folder()](const SerialId&) {
    if (page_.request.Folder() == folder) GoToRow(message);
  });
}

// On this page or another one.
void MessageNavigation::GoToRow(const SerialId& message) {
  page_.rows.GoToMessage(message, [this, message, folder = page_.request.Folder()] {
    if (page_.request.Folder() != folder) return;
    if (const int page = PageOf(message)) show_(page, message, {});
  });
}

int MessageNavigation::PageOf(const SerialId& message, bool tells) const {
  if (message.IsEmpty()) return 0;
  const ConditionLimit brief(kSearchMs);
  const auto before = RowsBefore(context_, page_.request.Folder(), page_.request.Search(), message);
  if (!before && brief.IsReached() && tells) tell_(before.Error().text);
  return before ? pages_.PageOf(*before) : 0;
}

bool MessageNavigation::GoToShown(const SerialId& message) {
  const int page = PageOf(message);
  if (page > 0) show_(page, message, {});
  return page > 0;
}

void MessageNavigation::Follow(const SerialId& message) {
  const int page = PageOf(message, false);
  if (page > 0 && page != page_.request.Page()) show_(page, message, {});
}

// What is pressed before it is there is meant for it, and is done to no other.
void MessageNavigation::GoToReturned(const SerialIds& messages) {
  // Where it cannot be found in time it is back all the same, which is what is said.
  if (const int page = PageOf(messages.first(), false)) {
    show_(page, messages.first(), messages.size() > 1 ? messages : SerialIds());
  } else if (page_.queue.IsAlone()) {
    page_.queue.DropOthers();
  }
}

}  // namespace vorn
