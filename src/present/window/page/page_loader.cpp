#include "present/window/page/page_loader.h"

#include <QWebEngineView>

#include "kit/window/plain_text.h"
#include "present/shown_page.h"
#include "present/window/engine/engine_view.h"
#include "present/window/engine/link_page.h"
#include "present/window/page/page_maker.h"
#include "present/window/page/page_reading.h"
#include "present/window/page/page_rest.h"
#include "present/window/toolbar/folder_toolbar.h"
#include "present/window/toolbar/location_box.h"

namespace vorn {
namespace {

constexpr qsizetype kMostReplaced = 1 << 20;  // bytes of a page; a larger one is better loaded

}  // namespace

PageLoader::PageLoader(ShownPage& page, EngineView& engine, PageReading& reading, PageMaker& maker,
                       PageRest& rest, FolderToolbar& toolbar, QWidget& window)
    : page_(page),
      engine_(engine),
      reading_(reading),
      maker_(maker),
      rest_(rest),
      toolbar_(toolbar),
      window_(window) {
  connect(&engine_, &EngineView::LoadBegan, this, [this] { SetLoading(true); });
  connect(&engine_, &EngineView::LoadEnded, this, &PageLoader::End);
  connect(&reading_, &PageReading::AnewWanted, this, &PageLoader::Refresh);
  connect(&rest_, &PageRest::AnewWanted, this, &PageLoader::Refresh);
  connect(&rest_, &PageRest::Gone, this, [this] {
    maker_.Counter().Stop();
    reading_.Drop();
  });
  ConnectMaker();
}

void PageLoader::ConnectMaker() {
  connect(&maker_, &PageMaker::Named, &window_, &QWidget::setWindowTitle);
  connect(&maker_, &PageMaker::Made, this, &PageLoader::Changed);
  connect(&maker_, &PageMaker::AnewWanted, this, &PageLoader::Refresh);
  // Its rows would wait for another page.
  connect(&maker_, &PageMaker::PageStays, this, [this] {
    if (!engine_.Page()->isLoading()) page_.change.Stay();
  });
  connect(&maker_, &PageMaker::TextWanted, this, [this](const QString& html) {
    if (!rest_.IsResting()) ShowText(html);  // else it comes once more when somebody sees it
  });
}

void PageLoader::Show() {
  PageRequest& request = page_.request;
  rest_.End();
  engine_.Use(request.IsLocal());
  if (!request.IsLocal()) maker_.Search().Stop();
  if (request.IsLocal() && !request.HasPage()) request.SetPage(PageRequest::kFirstShown);
  if (!request.IsLocal() || Make()) Load();
}

// Whether there is a page to load.
bool PageLoader::Make() {
  if (!HasOwnPage()) return maker_.Make();
  ShowText(ownPage_);
  return false;
}

void PageLoader::Refresh() {
  if (rest_.IsResting()) return;
  if (page_.request.IsLocal()) {
    page_.change.Keep([this] { maker_.MakeAnew([this] { Show(); }); });
  } else {
    engine_.View()->reload();
  }
}

void PageLoader::Load() {
  const PageRequest& request = page_.request;
  toolbar_.Location().Show(request.IsLocal() ? window_.windowTitle() : request.Url(),
                           !request.IsLocal());
  const bool isThere = request.IsLocal() && engine_.ShowsFolder() && !request.State().IsLoading();
  if (!isThere || reading_.Page().size() >= kMostReplaced || !Replace()) LoadAnew();
}

// The page in sight becomes the new one.
bool PageLoader::Replace() {
  return page_.change.Replace(reading_.Page(), [this](bool isReplaced) {
    if (!isReplaced) return LoadAnew();
    reading_.Drop();
    maker_.Counter().BeginSoon();
    Q_EMIT Loaded(true);
  });
}

void PageLoader::LoadAnew() {
  if (page_.request.IsLocal()) {
    page_.change.BeginLoading();
    const QString place = page_.place.ForLoading();
    engine_.StandOn(reading_.Page().contains("color-scheme"));
    engine_.Load(reading_.Url(), true,
                 place.isEmpty() ? QString() : QStringLiteral("window.vornPlace = ") + place);
  } else {
    page_.change.Detach();
    engine_.Load(QUrl::fromUserInput(page_.request.Url()), false);
  }
  reading_.Begin();
}

void PageLoader::ShowOwnPage(const QString& title, const QString& html) {
  engine_.Use(true);
  page_.request.BeLocal();
  window_.setWindowTitle(ShownText(title, kMostInTitle));
  ownPage_ = html;
  ShowText(html);
}

void PageLoader::ShowText(const QString& html) {
  page_.request.SetUrl({});
  Q_EMIT TextShown();
  page_.change.BeginLoading(false);
  toolbar_.Location().Show(window_.windowTitle(), false);
  engine_.ShowHtml(html);
}

void PageLoader::SetLoading(bool loading) {
  page_.request.State().SetLoading(loading);
  Q_EMIT Changed();
}

void PageLoader::End(bool ok) {
  SetLoading(false);
  if (page_.request.IsLocal()) {
    reading_.End();
    maker_.Counter().BeginSoon();
  }
  page_.change.EndLoading();
  Q_EMIT Loaded(ok);
}

}  // namespace vorn
