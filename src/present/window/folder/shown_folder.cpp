#include "present/window/folder/shown_folder.h"

#include <QToolButton>
#include <QWebEngineView>
#include <utility>

#include "present/message_list_page.h"
#include "present/shown_page.h"
#include "present/window/engine/engine_view.h"
#include "present/window/folder/page_split.h"
#include "present/window/folder/text_wait.h"
#include "present/window/page/page_loader.h"
#include "present/window/page/page_maker.h"
#include "present/window/toolbar/folder_toolbar.h"
#include "present/window/toolbar/search_box.h"
#include "storage/ui.h"

namespace vorn {

ShownFolder::ShownFolder(const Parts& parts)
    : parts_(parts),
      paging_(parts.page, parts.maker, parts.toolbar),
      messages_(parts.page, parts.split, parts.host, parts.window),
      navigation_(
          parts.context, parts.pages, parts.page,
          [this](int number, const SerialId& message, const SerialIds& chosen) {
            paging_.GoToMessage(number, message, chosen);
          },
          [this](const QString& sentence) { parts_.host.Tell(sentence); }),
      commands_(messages_, navigation_, parts.page, parts.window),
      // What subjects and addresses have is in sight already.
      texts_(new TextWait(parts.context, [this] {
        parts_.toolbar.Search().Texts()->setChecked(false);
        EndTexts();
      })) {
  ConnectPaging();
  ConnectMessages();
}

void ShownFolder::ConnectPaging() {
  connect(&paging_, &FolderPaging::PageWanted, this, [this] {
    messages_.Leave();
    parts_.loader.Show();
  });
  connect(&paging_, &FolderPaging::MessageWanted, this, [this] {
    messages_.Leave();
    parts_.page.rows.DeselectFirst();
    parts_.loader.Refresh();
  });
  connect(&paging_, &FolderPaging::Searched, this, &ShownFolder::ShowSearched);
  connect(&paging_, &FolderPaging::KeysWanted, this, [this] { parts_.engine.View()->setFocus(); });
  connect(&parts_.toolbar.Search(), &SearchBox::RowWanted, this,
          [this] { parts_.page.rows.Enter(); });
  // First the choice, then what the folder is searched for.
  connect(&commands_, &PageCommands::NothingToGiveUp, &paging_, &FolderPaging::GiveUpSearch);
}

void ShownFolder::ConnectMessages() {
  connect(&parts_.engine.Links(), &PageLinks::CommandFollowed, &messages_, &PageMessages::Follow);
  connect(&parts_.engine.Links(), &PageLinks::StepFollowed, &paging_, &FolderPaging::Follow);
  connect(&parts_.engine.Links(), &PageLinks::RowTold, &messages_, &PageMessages::Told);
  connect(&parts_.engine, &EngineView::MenuWanted, &commands_, &PageCommands::PopUp);
  connect(&parts_.engine, &EngineView::KeyMenuWanted, this, [this] {
    parts_.page.rows.MenuPlace([this](const QPointF& place) {
      const QWebEngineView* view = parts_.engine.View();
      if (view == nullptr) return;
      commands_.PopUp(view->mapToGlobal((place * view->zoomFactor()).toPoint()));
    });
  });
  connect(&parts_.loader, &PageLoader::TextShown, &messages_, &PageMessages::Leave);
  connect(&messages_, &PageMessages::ChosenChanged, this, &ShownFolder::ChosenChanged);
  connect(&messages_, &PageMessages::Gone, this, &ShownFolder::MessagesGone);
  connect(&parts_.split, &PageSplit::RowElsewhere, this,
          [this](const SerialId& message) { navigation_.Follow(message); });
  connect(&parts_.split, &PageSplit::PaneMade, this,
          [this](QWidget* pane) { commands_.AddToPane(*pane); });
}

QWidget* ShownFolder::Bar() const {
  return texts_;
}

void ShownFolder::Leave() {
  texts_->Stop();
  parts_.page.request.SetReadsTexts(false);
  parts_.page.change.LeavePlace();
  parts_.split.ShowNothing();
  searchedFrom_ = {};
  parts_.page.request.SetSearch({});  // so that emptying the box searches nothing
  parts_.toolbar.Search().clear();
  parts_.toolbar.Search().ShowFound(-1);
}

// Who gives up a search goes on with the message that he found by it, or from which he began it.
void ShownFolder::ShowSearched() {
  if (!parts_.split.Row().IsEmpty()) searchedFrom_ = parts_.split.Row();
  const bool isAll = parts_.page.request.Search().isEmpty();
  const bool readsTexts = !isAll && parts_.toolbar.Search().IsInTexts();
  parts_.page.request.SetReadsTexts(readsTexts);
  ShowAt(isAll ? std::exchange(searchedFrom_, {}) : SerialId());
  texts_->Stop();
  if (readsTexts) ReadTexts();
}

// At that message where it is shown.
void ShownFolder::ShowAt(const SerialId& message) {
  parts_.page.change.LeavePlace();
  if (message.IsEmpty() || !navigation_.GoToShown(message)) paging_.ShowFirst();
}

void ShownFolder::ReadTexts() {
  const FolderSearch search = Search();
  texts_->Begin(parts_.pages.ScopeQuestion(parts_.page.request.Folder(), search), search.text,
                [this, search](const Result<SerialIds>& hits) {
                  if (hits) return ShowHits(search, *hits);
                  parts_.host.Tell(hits.Error().text);
                  EndTexts();
                });
}

// An empty page has said that they are being read.
void ShownFolder::EndTexts() {
  parts_.page.request.SetReadsTexts(false);
  if (parts_.page.request.IsLocal()) parts_.loader.Refresh();
}

// Who has gone to a message or chosen some meanwhile goes on with them.
void ShownFolder::ShowHits(FolderSearch search, const SerialIds& hits) {
  PageRequest& request = parts_.page.request;
  request.SetReadsTexts(false);
  if (!request.IsLocal()) return;
  search.hits = hits.first(qMin(hits.size(), TextWait::Most));
  search.hasMore = hits.size() > TextWait::Most;
  request.SetSearch(search);
  const int page = navigation_.PageOf(parts_.split.Row());
  if (page > 0) request.SetPage(page);
  if (page > 0 || messages_.CountChosen() > 0) {
    parts_.loader.Refresh();
  } else {
    ShowAt({});
  }
  if (!search.hasMore) return;
  parts_.host.Tell(
      Ui::tr("多いので、本文の検索は新しいものから%1通で終わりました。").arg(search.hits->size()));
}

// A tab is as it was left, whichever way the user comes to it. In the page that he is at he goes
// on with what he sees.
void ShownFolder::ComeBack(bool wasInUse) {
  if (wasInUse && parts_.page.rows.HasRows()) parts_.page.rows.DeselectUnseen();
}

void ShownFolder::Lose() {
  parts_.page.change.Lose();
  if (!parts_.split.Row().IsEmpty()) parts_.page.place.BeginAtMessage(parts_.split.Row());
}

void ShownFolder::Cover(bool covered) {
  parts_.split.Cover(covered);
}

FolderSearch ShownFolder::Search() const {
  return parts_.page.request.Search();
}

void ShownFolder::ChosenMessages(const std::function<void(const SerialIds&)>& then) {
  parts_.page.rows.Chosen(then);
}

void ShownFolder::MessagesGone(const SerialIds& messages) {
  parts_.maker.Search().LeaveOut(messages);
  parts_.page.rows.Remove(messages);
}

void ShownFolder::GoToReturned(const SerialIds& messages) {
  parts_.maker.Search().TakeIn(messages);
  navigation_.GoToReturned(messages);
}

void ShownFolder::AfterCommands(const std::function<void()>& then) {
  parts_.page.queue.After(then);
}

}  // namespace vorn
