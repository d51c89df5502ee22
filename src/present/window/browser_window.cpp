#include "present/window/browser_window.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTimer>
#include <QVBoxLayout>
#include <QWebEngineHistory>
#include <QWebEngineView>

#include "kit/window/plain_text.h"
#include "mail/window/message_host.h"
#include "present/window/browser_host.h"
#include "present/window/browser_profiles.h"
#include "present/window/engine_view.h"
#include "present/window/folder_paging.h"
#include "present/window/folder_toolbar.h"
#include "present/window/link_page.h"
#include "present/window/page_commands.h"
#include "present/window/page_maker.h"
#include "present/window/page_messages.h"
#include "present/window/page_printing.h"
#include "present/window/page_reading.h"
#include "present/window/page_rest.h"
#include "present/window/page_split.h"
#include "present/window/script_bar.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kHoldMs = 1000;
constexpr qsizetype kMostReplaced = 1 << 20;  // bytes of a page; a larger one is better loaded

}  // namespace

BrowserWindow::BrowserWindow(Context& context, MessageListPages& pages,
                             const BrowserProfiles& profiles, BrowserHost& host)
    : host_(host),
      request_(std::make_shared<Disk>(context.Data.NewSerialID())),
      toolbar_(new FolderToolbar(context, this)),
      queue_([this](const QString& script, const PageQueue::Answer& then) {
        engine_->Ask(script, then);
      }),
      rows_(queue_),
      change_(queue_, rows_, place_),
      engine_(std::make_unique<EngineView>(context, profiles, *this)),
      split_(new PageSplit(context, engine_->View(), host.Messages())),
      reading_(std::make_unique<PageReading>(*engine_, profiles.Pages(), request_, change_)),
      maker_(std::make_unique<PageMaker>(context, pages, *reading_, request_, place_)),
      paging_(std::make_unique<FolderPaging>(request_, change_, place_, *maker_, *toolbar_)),
      messages_(std::make_unique<PageMessages>(context, pages, request_, queue_, rows_, *split_,
                                               host, *this)),
      commands_(std::make_unique<PageCommands>(*messages_, rows_, request_, *this)),
      printing_(std::make_unique<PagePrinting>(*engine_, host, *this)),
      rest_(std::make_unique<PageRest>(*engine_, change_, *this, *split_)) {
  setObjectName(QStringLiteral("URL"));
  setAttribute(Qt::WA_DeleteOnClose);
  Lay();
  TakeView();
  ConnectEngine();
  ConnectToolbar();
  ConnectFolder();
  ControlToolbarUpdate();
}

BrowserWindow::~BrowserWindow() {
  maker_->StopAsking();
  queue_.Close();
  engine_->Close();
  reading_->Drop();
  if (!request_.IsForPrinting()) host_.BrowserClosed();
}

void BrowserWindow::Lay() {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(toolbar_);
  layout->addWidget(engine_->Scripts());
  layout->addWidget(maker_->Bar());
  layout->addWidget(split_, 1);
}

void BrowserWindow::TakeView() {
  commands_->AddTo(*engine_->View());
  setFocusProxy(engine_->View());
}

void BrowserWindow::ConnectEngine() {
  EngineView* engine = engine_.get();
  connect(engine, &EngineView::Remade, this, [this] {
    TakeView();
    split_->SetPage(engine_->View());
  });
  connect(engine, &EngineView::LoadBegan, this, [this] { SetLoading(true); });
  connect(engine, &EngineView::LoadEnded, this, &BrowserWindow::LoadEnded);
  connect(engine, &EngineView::PlaceChanged, this, &BrowserWindow::ShowPlace);
  connect(engine, &EngineView::DownloadRefused, this, [this] {
    host_.Tell(Ui::tr(
        "このウィンドウではファイルを保存できません。システムのブラウザーで開いてください。"));
  });
  connect(engine, &EngineView::Crashed, this, [this] {
    if (!IsLocal()) return change_.Detach();
    change_.Lose();
    if (!split_->Row().isEmpty()) place_.BeginAtMessage(split_->Row());
    rest_->Renew();
  });
  connect(engine, &EngineView::MailtoFollowed, this, [this](const QString& url) {
    host_.WriteTo(url);
    if (request_.IsNew()) request_.BeDust();
  });
  // The window is told its target's name by the engine, and only by asking.
  connect(engine, &EngineView::FirstNavigation, this, [this](const QUrl& url) {
    engine_->Ask(QStringLiteral("window.name"),
                 [this, url](const QVariant& name) { TakeName(name.toString(), url); });
  });
  engine->OnNewWindow([this] { return host_.NewBrowserWindow()->BecomeNewWindow(); });
  // A window that was opened to print goes when that is done.
  connect(printing_.get(), &PagePrinting::Ended, this, [this] {
    if (request_.IsForPrinting()) request_.BeDust();
  });
  connect(rest_.get(), &PageRest::AnewWanted, this, &BrowserWindow::Refresh);
  connect(rest_.get(), &PageRest::Gone, this, [this] {
    maker_->Counter().Stop();
    reading_->Drop();
  });
}

void BrowserWindow::ConnectToolbar() {
  connect(toolbar_, &FolderToolbar::BeforeWanted, this, [this] { Turn(-1); });
  connect(toolbar_, &FolderToolbar::NextWanted, this, [this] { Turn(1); });
  connect(toolbar_, &FolderToolbar::SeekWanted, this, &BrowserWindow::Seek);
  connect(toolbar_, &FolderToolbar::AddressTyped, this, [this](const QString& address) {
    if (!IsLocal()) GoToAddress(QUrl::fromUserInput(address).toString());
  });
  // The page is asked for its links when the user wants to see them.
  connect(toolbar_, &FolderToolbar::LinksWanted, this, [this] {
    rows_.Links([this](const QList<PageRows::Link>& links) { toolbar_->ListLinks(links); });
  });
  connect(toolbar_, &FolderToolbar::LinkFollowed, this, [this](const QString& address) {
    if (const auto command = ReadLinkCommand(address)) {
      host_.OpenMessage(command->openMode, command->serialId, command->isNew);
    } else if (!IsLocal()) {
      GoToAddress(address);
    }
  });
}

void BrowserWindow::ConnectFolder() {
  connect(paging_.get(), &FolderPaging::PageWanted, this, [this] {
    LeaveMessages();
    LoadDefaultProperty(nullptr, true);
  });
  connect(paging_.get(), &FolderPaging::MessageWanted, this, [this] {
    LeaveMessages();
    rows_.LeaveNow();
    Refresh();
  });
  connect(toolbar_, &FolderToolbar::RowWanted, this, [this] { rows_.Enter(); });
  connect(paging_.get(), &FolderPaging::KeysWanted, this, [this] { engine_->View()->setFocus(); });
  const PageMaker* maker = maker_.get();
  connect(maker, &PageMaker::Named, this, &QWidget::setWindowTitle);
  connect(maker, &PageMaker::Made, this, &BrowserWindow::ControlToolbarUpdate);
  connect(maker, &PageMaker::AnewWanted, this, &BrowserWindow::Refresh);
  connect(reading_.get(), &PageReading::AnewWanted, this, &BrowserWindow::Refresh);
  // Its rows would wait for another page.
  connect(maker, &PageMaker::PageStays, this, [this] {
    if (!engine_->Page()->isLoading()) change_.Stay();
  });
  connect(maker, &PageMaker::TextWanted, this, [this](const QString& html) {
    if (!rest_->IsResting()) ShowText(html);  // else it comes once more when somebody sees it
  });
  const PageMessages* messages = messages_.get();
  connect(engine_.get(), &EngineView::CommandFollowed, messages, &PageMessages::Follow);
  connect(engine_.get(), &EngineView::RowTold, messages, &PageMessages::Told);
  connect(engine_.get(), &EngineView::MenuWanted, commands_.get(), &PageCommands::PopUp);
  connect(messages, &PageMessages::ChosenChanged, this, &BrowserWindow::ChosenChanged);
  connect(messages, &PageMessages::Gone, this, &BrowserWindow::MessagesGone);
  connect(messages, &PageMessages::PageWanted, paging_.get(), &FolderPaging::GoToMessage);
  connect(split_, &PageSplit::PaneMade, this,
          [this](QWidget* pane) { commands_->AddToPane(*pane); });
  // First the choice, then what the folder is searched for.
  connect(commands_.get(), &PageCommands::NothingToGiveUp, paging_.get(),
          &FolderPaging::GiveUpSearch);
}

void BrowserWindow::LeaveMessages() {
  split_->ShowNothing();
  messages_->SetChosen(0);
}

void BrowserWindow::ControlToolbarUpdate() {
  toolbar_->Show({.isFolder = IsLocal(),
                  .canSearch = IsLocal() && ownPage_.isEmpty(),
                  .isLoading = request_.IsLoading(),
                  .hasBefore = request_.HasBefore(),
                  .hasNext = request_.HasNext(),
                  .page = request_.Page()});
  split_->Arrange(IsLocal() && !request_.IsForPrinting() && request_.HasUrl());
}

LinkPage* BrowserWindow::BecomeNewWindow() {
  request_.SetNew(true);
  engine_->Use(false);
  engine_->Page()->HoldFirstNavigation();
  // One that is filled without going anywhere is shown as well.
  QTimer::singleShot(kHoldMs, this, [this] {
    if (request_.IsNew() && !Dust()) TakeName(QString(), QUrl());
  });
  return engine_->Page();
}

// What belongs to a window that is there already goes to it; else this one keeps the name.
void BrowserWindow::TakeName(const QString& name, const QUrl& url) {
  if (!name.isEmpty() && request_.IsNew() && !url.isEmpty()) {
    if (BrowserWindow* named = host_.NamedWindow(name, this)) {
      named->GoToAddress(url.toString());
      named->Activate();
      request_.BeDust();
      return;
    }
  }
  if (!name.isEmpty()) request_.SetWindowName(name);
  request_.SetNew(false);
  if (!url.isEmpty()) GoToAddress(url.toString());
  ShowModeless();
  host_.BrowserOpened();
}

bool BrowserWindow::LoadDefaultProperty(const DiskPtr& request, bool) {
  rest_->End();
  if (request != nullptr) {
    change_.LeavePlace();
    request_.Take(request);
  }
  engine_->Use(IsLocal());
  if (!IsLocal()) maker_->StopAsking();
  if (IsLocal() && !request_.HasPage()) request_.SetPage(PageRequest::kFirstShown);
  if (!IsLocal() || CreatePage()) UpdateBrowser();
  tag_ = request_.Folder();
  return true;
}

// Whether there is a page to load.
bool BrowserWindow::CreatePage() {
  if (ownPage_.isEmpty()) return maker_->Make();
  ShowText(ownPage_);
  return false;
}

void BrowserWindow::ShowFolder(const QString& folder) {
  change_.LeavePlace();
  reading_->Drop();
  split_->ShowNothing();
  request_.SetSearch({});  // so that emptying the box searches nothing
  toolbar_->ClearSearch();
  toolbar_->ShowFound(-1);
  request_.Take(std::make_shared<Disk>(folder));
  request_.BeLocal();
  LoadDefaultProperty(nullptr, true);
}

void BrowserWindow::GiveUpSearch() {
  paging_->GiveUpSearch();
}

void BrowserWindow::ShowOwnPage(const QString& title, const QString& html) {
  engine_->Use(true);
  request_.BeLocal();
  setWindowTitle(ShownText(title, kMostInTitle));
  ownPage_ = html;
  ShowText(html);
}

void BrowserWindow::ShowText(const QString& html) {
  request_.SetUrl({});
  messages_->SetChosen(0);
  change_.Load(false);
  toolbar_->ShowAddress(windowTitle(), false);
  engine_->ShowHtml(html);
}

void BrowserWindow::UpdateBrowser() {
  toolbar_->ShowAddress(IsLocal() ? windowTitle() : request_.Url(), !IsLocal());
  const bool isThere = IsLocal() && engine_->ShowsFolder() && !request_.IsLoading();
  if (!isThere || reading_->Page().size() >= kMostReplaced || !Replace()) LoadPage();
}

// The page in sight becomes the new one.
bool BrowserWindow::Replace() {
  return change_.Replace(reading_->Page(), [this](bool isReplaced) {
    if (!isReplaced) return LoadPage();
    reading_->Drop();
    maker_->Counter().BeginSoon();
    Q_EMIT Loaded(true);
  });
}

void BrowserWindow::LoadPage() {
  if (IsLocal()) {
    change_.Load();
    const QString place = place_.ForLoading();
    engine_->Load(reading_->Url(), true,
                  place.isEmpty() ? QString() : QStringLiteral("window.vornPlace = ") + place);
  } else {
    change_.Detach();
    engine_->Load(QUrl::fromUserInput(request_.Url()), false);
  }
  reading_->Begin();
}

void BrowserWindow::GoToAddress(const QString& address) {
  request_.SetUrl(address);
  UpdateBrowser();
}

void BrowserWindow::Turn(int step) {
  if (IsLocal()) {
    paging_->Turn(step);
  } else {
    engine_->View()->triggerPageAction(step < 0 ? QWebEnginePage::Back : QWebEnginePage::Forward);
  }
}

void BrowserWindow::Seek() {
  if (request_.IsLoading()) {
    engine_->View()->stop();
  } else if (IsLocal() && paging_->HasTypedSearch()) {
    paging_->Search();  // with what the box says, rather than what it said
  } else if (IsLocal() && ownPage_.isEmpty()) {
    host_.Messages().MessageStored();  // folders and their counts
  } else {
    Refresh();
  }
}

void BrowserWindow::Refresh() {
  if (rest_->IsResting()) return;
  if (IsLocal()) {
    change_.Keep([this] { maker_->MakeAnew([this] { LoadDefaultProperty(nullptr, true); }); });
  } else {
    engine_->View()->reload();
  }
}

void BrowserWindow::SetLoading(bool loading) {
  request_.SetLoading(loading);
  ControlToolbarUpdate();
}

void BrowserWindow::LoadEnded(bool ok) {
  SetLoading(false);
  if (IsLocal()) {
    reading_->End();
    maker_->Counter().BeginSoon();
  } else {
    ShowPlace();
  }
  change_.Attach();
  if (request_.IsForPrinting()) printing_->Print();
  Q_EMIT Loaded(ok);
}

// Where a web page is; it may go on without being loaded anew.
void BrowserWindow::ShowPlace() {
  if (IsLocal()) return;
  const QWebEngineView* view = engine_->View();
  toolbar_->FollowAddress(view->url().toString());
  setWindowTitle(ShownText(view->title(), kMostInTitle));
  request_.SetNeighbours(view->history()->canGoBack(), view->history()->canGoForward());
  ControlToolbarUpdate();
}

// What is under way stays, and so do pages of the program's own.
void BrowserWindow::Rest() {
  const bool isRead = IsLocal() && request_.HasUrl() && !reading_->IsKept();
  if (!isRead || request_.IsLoading() || request_.IsForPrinting() || printing_->IsUnderWay()) {
    return;
  }
  reading_->Stop();
  rest_->Begin();
}

void BrowserWindow::Wake() {
  rest_->Wake();
}

void BrowserWindow::Cover(bool covered) {
  split_->Cover(covered);
}

void BrowserWindow::TakeKeys() {
  rest_->TakeKeys();
}

int BrowserWindow::CountChosen() const {
  return messages_->CountChosen();
}

void BrowserWindow::GoToMessage(const QString& message) {
  messages_->GoTo(message);
}

void BrowserWindow::GoToReturned(const QStringList& messages) {
  messages_->GoToReturned(messages);
}

void BrowserWindow::RunCommand(const QString& command) {
  commands_->Run(command);
}

void BrowserWindow::ListCommands(QMenu& menu) {
  commands_->ListIn(menu);
}

void BrowserWindow::MessagesGone(const QStringList& messages) {
  maker_->LeaveOut(messages);
  rows_.LeaveFolder(messages);
}

void BrowserWindow::ShowModeless() {
  show();
  Activate();
}

void BrowserWindow::Activate() {
  QWidget* frame = parentWidget() != nullptr ? parentWidget() : this;
  const auto* child = qobject_cast<QMdiSubWindow*>(frame);
  const bool wasInUse = child != nullptr && child->mdiArea()->currentSubWindow() == child;
  Wake();
  frame->show();
  frame->raise();
  frame->setFocus();
  engine_->View()->setFocus();
  // Who comes back to a page that he left goes on with a row that he chooses, and not, by one key,
  // with what was chosen then.
  if (!rows_.HasRows()) return;
  rows_.Leave(wasInUse);
  if (!wasInUse) split_->ShowNothing();
}

void BrowserWindow::Unload() {
  if (auto* frame = qobject_cast<QMdiSubWindow*>(parentWidget())) {
    frame->close();
  } else {
    deleteLater();
  }
}

}  // namespace vorn
