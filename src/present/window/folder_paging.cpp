#include "present/window/folder_paging.h"

#include "present/page_change.h"
#include "present/page_place.h"
#include "present/window/folder_toolbar.h"
#include "present/window/page_maker.h"
#include "present/window/page_request.h"

namespace vorn {

FolderPaging::FolderPaging(PageRequest& request, PageChange& change, PagePlace& place,
                           PageMaker& maker, FolderToolbar& toolbar)
    : request_(request), change_(change), place_(place), maker_(maker), toolbar_(toolbar) {
  connect(&toolbar_, &FolderToolbar::FirstWanted, this, [this] { GoTo(1); });
  connect(&toolbar_, &FolderToolbar::LastWanted, this, &FolderPaging::GoToLast);
  connect(&toolbar_, &FolderToolbar::TypedPageWanted, this, &FolderPaging::GoToTyped);
  connect(&toolbar_, &FolderToolbar::SearchWanted, this, &FolderPaging::Search);
  connect(&toolbar_, &FolderToolbar::SearchLeft, this, &FolderPaging::KeysWanted);
  // The button that empties the box shows the whole folder again.
  connect(&toolbar_, &FolderToolbar::SearchEmptied, this, [this] {
    if (!request_.Search().isEmpty()) Search();
  });
  connect(&maker_.Counter(), &PageCounter::Counted, &toolbar_, &FolderToolbar::ShowPageCount);
  connect(&maker_.Counter(), &PageCounter::Found, &toolbar_, &FolderToolbar::ShowFound);
}

void FolderPaging::GoTo(int page) {
  if (!request_.IsLocal()) return;
  change_.LeavePlace();
  place_.BeginAtEnd(false);
  Ask(page, &FolderPaging::PageWanted);
}

void FolderPaging::GoToMessage(int page, const QString& message, const QStringList& chosen) {
  place_.BeginAtMessage(message, chosen);
  Ask(page, &FolderPaging::MessageWanted);
}

void FolderPaging::Ask(int page, void (FolderPaging::*wanted)()) {
  toolbar_.ForgetTypedPage();
  request_.SetPage(page);
  Q_EMIT(this->*wanted)();
}

void FolderPaging::Turn(int step) {
  GoTo(request_.Page() + step);
}

void FolderPaging::GoToTyped() {
  maker_.LastPage([this](int last) {
    GoTo(qBound(1, toolbar_.TypedPage(), last));
    Q_EMIT KeysWanted();
  });
}

void FolderPaging::GoToLast() {
  if (!request_.IsLocal()) return;
  maker_.LastPage([this](int last) {
    change_.LeavePlace();
    maker_.BeginAtNewest();
    Ask(last, &FolderPaging::PageWanted);
  });
}

// What is found is a page of the folder like any other.
void FolderPaging::Search() {
  if (!request_.IsLocal()) return;
  request_.SetSearch(toolbar_.TypedSearch());
  toolbar_.ShowPageCount(0);
  toolbar_.ShowFound(-1);
  GoTo(PageRequest::kFirstShown);
}

bool FolderPaging::HasTypedSearch() const {
  return toolbar_.TypedSearch() != request_.Search();
}

void FolderPaging::GiveUpSearch() {
  if (request_.Search().isEmpty()) return;
  toolbar_.ClearSearch();
  Search();
}

}  // namespace vorn
