#include "present/window/folder/folder_paging.h"

#include "objects/object_types.h"
#include "present/shown_page.h"
#include "present/window/engine/search_step.h"
#include "present/window/page/page_maker.h"
#include "present/window/toolbar/folder_toolbar.h"
#include "present/window/toolbar/page_box.h"
#include "present/window/toolbar/search_box.h"

namespace vorn {

FolderPaging::FolderPaging(ShownPage& page, PageMaker& maker, FolderToolbar& toolbar)
    : page_(page), maker_(maker), toolbar_(toolbar), search_(toolbar.Search()) {
  connect(&toolbar_, &FolderToolbar::BeforeWanted, this, [this] { Turn(-1); });
  connect(&toolbar_, &FolderToolbar::NextWanted, this, [this] { Turn(1); });
  connect(&toolbar_.Pages(), &PageBox::FirstWanted, this, [this] { GoTo(1); });
  connect(&toolbar_.Pages(), &PageBox::LastWanted, this, &FolderPaging::GoToLast);
  connect(&toolbar_.Pages(), &PageBox::TypedWanted, this, &FolderPaging::GoToTyped);
  connect(&search_, &SearchBox::Wanted, this, &FolderPaging::Search);
  connect(&search_, &SearchBox::Left, this, &FolderPaging::KeysWanted);
  // The button that empties the box shows the whole folder again.
  connect(&search_, &SearchBox::Emptied, this, [this] {
    if (!page_.request.Search().isEmpty()) Search();
  });
  connect(&maker_.Counter(), &PageCounter::Counted, &toolbar_.Pages(), &PageBox::ShowCount);
  connect(&maker_.Counter(), &PageCounter::Found, &search_, &SearchBox::ShowFound);
}

void FolderPaging::GoTo(int page, bool atEnd) {
  if (!page_.request.IsLocal()) return;
  page_.change.LeavePlace();
  page_.place.BeginAtEnd(atEnd);
  Ask(page, &FolderPaging::PageWanted);
}

void FolderPaging::GoToMessage(int page, const SerialId& message, const SerialIds& chosen) {
  page_.place.BeginAtMessage(message, chosen);
  Ask(page, &FolderPaging::MessageWanted);
}

void FolderPaging::Ask(int page, void (FolderPaging::*wanted)()) {
  toolbar_.Pages().ForgetTyped();
  page_.request.SetPage(page);
  Q_EMIT(this->*wanted)();
}

// Who turns back goes on from the row that stands before those he has seen.
void FolderPaging::Turn(int step) {
  GoTo(page_.request.Page() + step, step < 0);
}

void FolderPaging::GoToTyped() {
  maker_.LastPage([this](int last) {
    GoTo(qBound(1, toolbar_.Pages().Typed(), last));
    Q_EMIT KeysWanted();
  });
}

void FolderPaging::GoToLast() {
  if (!page_.request.IsLocal()) return;
  maker_.LastPage([this](int last) {
    page_.change.LeavePlace();
    maker_.BeginAtNewest();
    Ask(last, &FolderPaging::PageWanted);
  });
}

// Shows all messages when nothing is typed. What is found is a page of the folder like any other.
void FolderPaging::Search() {
  if (!page_.request.IsLocal()) return;
  page_.request.SetSearch(Typed());
  toolbar_.Pages().ShowCount(0);
  search_.ShowFound(-1);
  Q_EMIT Searched();
}

void FolderPaging::ShowFirst() {
  GoTo(PageRequest::kFirstShown);
}

// What was thrown away is searched by itself: what is done with it there ends it.
FolderSearch FolderPaging::Typed() const {
  const bool isDust = page_.request.Folder() == fixed_serial::kDust;
  return {search_.Typed(), search_.IsEverywhere() && !isDust};
}

void FolderPaging::Follow(const QString& step) {
  if (step == search_step::kEverywhere) search_.SearchEverywhere();
  if (step == search_step::kTexts) search_.SearchTexts();
  if (step == search_step::kGiveUp) GiveUpSearch();
}

bool FolderPaging::SearchTyped() {
  if (!page_.request.IsLocal() || Typed() == page_.request.Search()) return false;
  Search();
  return true;
}

void FolderPaging::GiveUpSearch() {
  search_.clear();
  if (!page_.request.Search().isEmpty()) Search();  // unless the box has told it
}

}  // namespace vorn
