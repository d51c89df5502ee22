#include "present/window/page/page_counter.h"

#include "present/message_list_page.h"
#include "present/page_request.h"
#include "present/window/page/condition_wait.h"
#include "storage/engine/condition_limit.h"

namespace vorn {
namespace {

constexpr int kExploreAfterMs = 1000;
constexpr int kExplorePauseMs = 20;
constexpr int kCountMs = 100;  // for the number of pages

}  // namespace

PageCounter::PageCounter(MessageListPages& pages, const PageRequest& request)
    : pages_(pages), request_(request) {
  pause_.setSingleShot(true);
  connect(&pause_, &QTimer::timeout, this, &PageCounter::Explore);
}

void PageCounter::BeginSoon() {
  pause_.start(kExploreAfterMs);
}

void PageCounter::Explore() {
  if (!request_.IsLocal() || request_.State().IsLoading()) return;
  const ConditionLimit brief(kBriefMs);
  const bool hasPages = request_.State().HasBefore() || request_.State().HasNext();
  if (hasPages && pages_.Explore(request_.Folder(), request_.Search())) {
    pause_.start(kExplorePauseMs);
    return;
  }
  const ConditionLimit briefer(kCountMs);
  Tell(hasPages);
  TellFound();
}

void PageCounter::Tell(bool count) {
  Q_EMIT Counted(pages_.CountPages(request_.Folder(), request_.Search(), count));
}

void PageCounter::TellFound() {
  const FolderSearch search = request_.Search();
  if (search.isEmpty()) return;
  const auto found = pages_.CountFound(request_.Folder(), search);
  if (found) Q_EMIT Found(*found, search.hasMore);
}

}  // namespace vorn
