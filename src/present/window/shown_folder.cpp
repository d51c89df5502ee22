#include "present/window/shown_folder.h"

#include <QWebEngineView>
#include <utility>

#include "present/shown_page.h"
#include "present/window/engine_view.h"
#include "present/window/folder_toolbar.h"
#include "present/window/page_loader.h"
#include "present/window/page_maker.h"
#include "present/window/page_split.h"
#include "present/window/search_box.h"

namespace vorn {

ShownFolder::ShownFolder(Context& context, MessageListPages& pages, ShownPage& page,
                         EngineView& engine, PageMaker& maker, PageLoader& loader, PageSplit& split,
                         FolderToolbar& toolbar, BrowserHost& host, QWidget& window)
    : page_(page),
      engine_(engine),
      maker_(maker),
      loader_(loader),
      split_(split),
      toolbar_(toolbar),
      paging_(page, maker, toolbar),
      messages_(page, split, host, window),
      navigation_(
          context, pages, page,
          [this](int number, const QString& message, const QStringList& chosen) {
            paging_.GoToMessage(number, message, chosen);
          },
          [&host](const QString& sentence) { host.Tell(sentence); }),
      commands_(messages_, navigation_, page, window) {
  ConnectPaging();
  ConnectMessages();
}

void ShownFolder::ConnectPaging() {
  connect(&paging_, &FolderPaging::PageWanted, this, [this] {
    messages_.Leave();
    loader_.Show();
  });
  connect(&paging_, &FolderPaging::MessageWanted, this, [this] {
    messages_.Leave();
    page_.rows.DeselectFirst();
    loader_.Refresh();
  });
  connect(&paging_, &FolderPaging::Searched, this, &ShownFolder::ShowSearched);
  connect(&paging_, &FolderPaging::KeysWanted, this, [this] { engine_.View()->setFocus(); });
  connect(&toolbar_.Search(), &SearchBox::RowWanted, this, [this] { page_.rows.Enter(); });
  // First the choice, then what the folder is searched for.
  connect(&commands_, &PageCommands::NothingToGiveUp, &paging_, &FolderPaging::GiveUpSearch);
}

void ShownFolder::ConnectMessages() {
  connect(&engine_, &EngineView::CommandFollowed, &messages_, &PageMessages::Follow);
  connect(&engine_, &EngineView::StepFollowed, &paging_, &FolderPaging::Follow);
  connect(&engine_, &EngineView::RowTold, &messages_, &PageMessages::Told);
  connect(&engine_, &EngineView::MenuWanted, &commands_, &PageCommands::PopUp);
  connect(&loader_, &PageLoader::TextShown, &messages_, &PageMessages::Unchoose);
  connect(&messages_, &PageMessages::ChosenChanged, this, &ShownFolder::ChosenChanged);
  connect(&messages_, &PageMessages::Gone, this, &ShownFolder::MessagesGone);
  connect(&split_, &PageSplit::PaneMade, this,
          [this](QWidget* pane) { commands_.AddToPane(*pane); });
}

void ShownFolder::Leave() {
  page_.change.LeavePlace();
  split_.ShowNothing();
  searchedFrom_.clear();
  page_.request.SetSearch({});  // so that emptying the box searches nothing
  toolbar_.Search().clear();
  toolbar_.Search().ShowFound(-1);
}

// Who gives up a search goes on with the message that he found by it, or from which he began it.
void ShownFolder::ShowSearched() {
  if (!split_.Row().isEmpty()) searchedFrom_ = split_.Row();
  page_.change.LeavePlace();
  const bool isAll = page_.request.Search().isEmpty();
  const QString message = isAll ? std::exchange(searchedFrom_, {}) : QString();
  if (message.isEmpty() || !navigation_.GoToShown(message)) paging_.ShowFirst();
}

// A tab is as it was left, whichever way the user comes to it. In the page that he is at he goes
// on with what he sees.
void ShownFolder::ComeBack(bool wasInUse) {
  if (wasInUse && page_.rows.HasRows()) page_.rows.DeselectUnseen();
}

void ShownFolder::Lose() {
  page_.change.Lose();
  if (!split_.Row().isEmpty()) page_.place.BeginAtMessage(split_.Row());
}

void ShownFolder::Cover(bool covered) {
  split_.Cover(covered);
}

FolderSearch ShownFolder::Search() const {
  return page_.request.Search();
}

void ShownFolder::ChosenMessages(const std::function<void(const QStringList&)>& then) {
  page_.rows.Chosen(then);
}

void ShownFolder::MessagesGone(const QStringList& messages) {
  maker_.LeaveOut(messages);
  page_.rows.Remove(messages);
}

void ShownFolder::AfterCommands(const std::function<void()>& then) {
  page_.queue.After(then);
}

}  // namespace vorn
