#pragma once

#include <memory>
#include <utility>

#include "present/page_change.h"
#include "present/page_place.h"
#include "present/page_queue.h"
#include "present/page_request.h"
#include "present/page_rows.h"

namespace vorn {

/// What a browser window shows, apart from the engine that shows it: the request for it and, where
/// it is a folder's page, what that is asked, its rows, where the user is on it, and how it becomes
/// the next one.
struct ShownPage {
  ShownPage(DiskPtr bag, PageQueue::Ask ask) : request(std::move(bag)), queue(std::move(ask)) {}

  PageRequest request;
  PageQueue queue;
  PageRows rows{queue};
  PagePlace place;
  PageChange change{queue, rows, place};
};

}  // namespace vorn
