#include "present/window/browser_window.h"

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QPageLayout>
#include <QPointer>
#include <QPrinter>
#include <QTabBar>
#include <QTimer>
#include <QVBoxLayout>
#include <QWebEngineHistory>
#include <QWebEngineScript>
#include <QWebEngineView>
#include <utility>

#include "kit/window/plain_text.h"
#include "mail/message_rows.h"
#include "objects/object_loader.h"
#include "objects/object_types.h"
#include "objects/select_objects.h"
#include "objects/settings.h"
#include "present/window/condition_wait.h"
#include "present/window/folder_toolbar.h"
#include "present/window/link_page.h"
#include "present/window/page_commands.h"
#include "present/window/page_messages.h"
#include "present/window/page_source.h"
#include "present/window/page_split.h"
#include "present/window/script_bar.h"
#include "storage/condition_limit.h"
#include "storage/databases.h"
#include "storage/ui.h"

namespace vorn {

namespace {

constexpr int kExploreAfterMs = 1000;
constexpr int kCountMs = 100;  // for the number of pages, while the user does nothing
constexpr int kCheckRowsMs = 1000;
constexpr int kExplorePauseMs = 20;
constexpr int kHoldMs = 1000;
constexpr int kLookAgainMs = 2000;
constexpr int kMostAttempts = 3;
constexpr int kPrinterRestMs = 10000;
constexpr qreal kPrintMarginMm = 15;  // above and below; the page itself keeps away from the sides

// Whether there is neither an account nor a message yet.
bool IsFirstUse(Context& context) {
  if (!SelectObjects(context.Objects, *context.Session, object_type::kAccount)->IsEmpty()) {
    return false;
  }
  const OpenedDatabase mail(context, DatabaseKind::Mail);
  const RecordsetPtr rows = mail ? MessageRows(context.Data).All() : nullptr;
  return rows != nullptr && rows->Eof();
}

QString FirstUseText() {
  const QString steps[] = {
      Ui::tr("<b>アカウントの追加</b>: メニューの「ファイル」→「新規作成」→「アカウント」"
             "（Alt+F、N、A）。受信サーバーと送信サーバーは「接続を確認」で試せます。"),
      Ui::tr("<b>送受信</b>: メニューの「ツール」→「メッセージ送受信」（Ctrl+M）。"),
      Ui::tr("<b>これまでのメール</b>: メニューの「ファイル」→「ファイルから取り込む」"
             "または「フォルダから取り込む」。mbox、Maildir、emlのファイルを読みます。"),
      Ui::tr("<b>パスワード</b>: ツリーの「プロファイル」の下の名前で右クリックし、「プロパティ」。"
             "パスワードを決めるまで、プロファイルのフォルダを手に入れた人はメールを読めます。"),
      Ui::tr("<b>使い方</b>: F1キー。")};
  QString text = QStringLiteral("<h2>") + Ui::tr("ようこそ") + QStringLiteral("</h2><p>") +
                 Ui::tr("メールを受信するには、アカウントを追加してください。") +
                 QStringLiteral("</p><ul>");
  for (const QString& step : steps) text += QStringLiteral("<li>") + step + QStringLiteral("</li>");
  return text + QStringLiteral("</ul>");
}

}  // namespace

BrowserWindow::BrowserWindow(Context& context, MessageListPages& pages,
                             const BrowserProfiles& profiles, BrowserHost& host)
    : context_(context),
      pages_(pages),
      profiles_(profiles),
      host_(host),
      request_(std::make_shared<Disk>(context.Data.NewSerialID())) {
  setObjectName(QStringLiteral("URL"));
  setAttribute(Qt::WA_DeleteOnClose);
  BuildControls();
  explore_.setSingleShot(true);
  connect(&explore_, &QTimer::timeout, this, &BrowserWindow::Explore);
  checkRows_.setSingleShot(true);
  connect(&checkRows_, &QTimer::timeout, this, &BrowserWindow::CheckRows);
  ControlToolbarUpdate();
}

BrowserWindow::~BrowserWindow() {
  // Closed in the middle of printing: the engine's thread goes on painting and cannot be asked when
  // it is done, so the printer is left to it.
  static_cast<void>(printer_.release());
  // The engine may report the end of its page as the end of a loading, and answer what it was
  // asked.
  closing_ = true;
  wait_->Stop();
  rows_.Close();
  if (wbUrl_ != nullptr) wbUrl_->disconnect(this);
  if (page_ != nullptr) page_->disconnect(this);
  delete wbUrl_;
  DropPage();
  if (!IsForPrinting()) host_.BrowserClosed();
}

void BrowserWindow::BuildControls() {
  toolbar_ = new FolderToolbar(context_, this);
  ConnectToolbar();
  BuildView();
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(toolbar_);
  scripts_ = new ScriptBar(context_, profiles_.Sites());
  layout->addWidget(scripts_);
  wait_ = new ConditionWait(context_, [this] { AskingStopped(); });
  layout->addWidget(wait_);
  split_ = new PageSplit(context_, wbUrl_, host_.Messages());
  layout->addWidget(split_, 1);
  BuildCommands();
}

void BrowserWindow::BuildCommands() {
  messages_ =
      std::make_unique<PageMessages>(context_, pages_, request_, rows_, *split_, host_, *this);
  connect(messages_.get(), &PageMessages::ChosenChanged, this, &BrowserWindow::ChosenChanged);
  connect(messages_.get(), &PageMessages::Gone, this, &BrowserWindow::MessagesGone);
  connect(messages_.get(), &PageMessages::PageWanted, this, &BrowserWindow::GoToPage);
  commands_ = std::make_unique<PageCommands>(*messages_, rows_, request_, *this);
  commands_->AddTo(*wbUrl_);
  // First the choice, then what the folder is searched for.
  connect(commands_.get(), &PageCommands::NothingToGiveUp, this, [this] {
    if (Search().isEmpty()) return;
    toolbar_->ClearSearch();
    SearchFolder();
  });
}

void BrowserWindow::ConnectToolbar() {
  using Bar = FolderToolbar;
  connect(toolbar_, &Bar::BeforeWanted, this, [this] { TurnPage(-1); });
  connect(toolbar_, &Bar::NextWanted, this, [this] { TurnPage(1); });
  connect(toolbar_, &Bar::FirstWanted, this, [this] { GoToPage(1); });
  connect(toolbar_, &Bar::LastWanted, this, &BrowserWindow::ShowNewest);
  connect(toolbar_, &Bar::TypedPageWanted, this, &BrowserWindow::GoToTypedPage);
  connect(toolbar_, &Bar::SeekWanted, this, &BrowserWindow::SeekClicked);
  connect(toolbar_, &Bar::SearchWanted, this, &BrowserWindow::SearchFolder);
  // The button that empties the box shows the whole folder again.
  connect(toolbar_, &Bar::SearchEmptied, this, [this] {
    if (!Search().isEmpty()) SearchFolder();
  });
  // The page is asked for its links when the user wants to see them.
  connect(toolbar_, &Bar::LinksWanted, this, [this] {
    rows_.Links([this](const QList<PageRows::Link>& links) { toolbar_->ListLinks(links); });
  });
  connect(toolbar_, &Bar::LinkFollowed, this, &BrowserWindow::FollowLink);
  connect(toolbar_, &Bar::AddressTyped, this, [this](const QString& address) {
    if (!IsLocal()) GoToAddress(QUrl::fromUserInput(address).toString());
  });
}

void BrowserWindow::BuildView() {
  wbUrl_ = new QWebEngineView(this);
  wbUrl_->setObjectName(QStringLiteral("wbUrl"));
  wbUrl_->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(wbUrl_, &QWebEngineView::loadStarted, this, [this] { SetLoading(true); });
  connect(wbUrl_, &QWebEngineView::printFinished, this, &BrowserWindow::PrintFinished);
  connect(wbUrl_, &QWebEngineView::loadFinished, this, &BrowserWindow::DocumentComplete);
  connect(wbUrl_, &QWebEngineView::urlChanged, this, &BrowserWindow::ShowPlace);
  connect(wbUrl_, &QWebEngineView::titleChanged, this, &BrowserWindow::ShowPlace);
  connect(wbUrl_, &QWidget::customContextMenuRequested, this,
          [this](const QPoint& at) { commands_->PopUp(wbUrl_->mapToGlobal(at)); });
  setFocusProxy(wbUrl_);
}

void BrowserWindow::ControlToolbarUpdate() {
  toolbar_->Show({.isFolder = IsLocal(),
                  .canSearch = IsLocal() && ownPage_.isEmpty(),
                  .isLoading = request_.IsLoading(),
                  .hasBefore = request_.HasBefore(),
                  .hasNext = request_.HasNext(),
                  .page = request_.Page()});
  split_->Arrange(IsLocal() && !IsForPrinting() && request_.HasUrl());
}

void BrowserWindow::ShowPageCount(bool count) {
  toolbar_->ShowPageCount(pages_.CountPages(request_.Folder(), request_.Search(), count));
}

// A page belongs to one engine profile for life, so a window that changes between a folder and the
// web changes its page.
void BrowserWindow::UsePage(bool local) {
  if (wbUrl_ == nullptr) {
    BuildView();
    commands_->AddTo(*wbUrl_);
    split_->SetPage(wbUrl_);
  }
  QWebEngineProfile* profile = local ? profiles_.Local() : profiles_.Web();
  if (page_ != nullptr && page_->profile() == profile) return;
  delete page_;
  page_ = new LinkPage(profile, wbUrl_);
  if (local) {
    scripts_->hide();
  } else {
    scripts_->Attach(*page_);
  }
  wbUrl_->setPage(page_);
  connect(page_, &LinkPage::CommandFollowed, this,
          [this](const LinkCommand& command) { messages_->Follow(command); });
  connect(page_, &LinkPage::RowTold, this,
          [this](const QString& what, const QString& message) { messages_->Told(what, message); });
  connect(page_, &LinkPage::MailtoFollowed, this, [this](const QString& url) {
    host_.WriteTo(url);
    if (request_.IsNew()) request_.BeDust();
  });
  connect(page_, &LinkPage::FirstNavigation, this, &BrowserWindow::FirstNavigation,
          Qt::QueuedConnection);
  connect(page_, &QWebEnginePage::renderProcessTerminated, this, [this] { rows_.Detach(); });
  connect(page_, &QWebEnginePage::pdfPrintingFinished, this,
          [this](const QString& path, bool written) {
            if (!written) {
              ShowBox(this, QMessageBox::Critical,
                      Ui::tr("「%1」に書き込めません。").arg(QFileInfo(path).fileName()));
            }
            PrintFinished();
          });
  page_->OnNewWindow([this] { return host_.NewBrowserWindow()->BecomeNewWindow(); });
}

LinkPage* BrowserWindow::BecomeNewWindow() {
  request_.SetNew(true);
  UsePage(false);
  page_->HoldFirstNavigation();
  // One that is filled without going anywhere is shown as well.
  QTimer::singleShot(kHoldMs, this, [this] {
    if (request_.IsNew() && !Dust()) TakeName(QString(), QUrl());
  });
  return page_;
}

// The window is told its target's name by the engine, and only by asking.
void BrowserWindow::FirstNavigation(const QUrl& url) {
  page_->runJavaScript(QStringLiteral("window.name"), QWebEngineScript::ApplicationWorld,
                       [self = QPointer<BrowserWindow>(this), url](const QVariant& name) {
                         if (self != nullptr && !self->closing_)
                           self->TakeName(name.toString(), url);
                       });
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
  if (!url.isEmpty()) {
    GoToAddress(url.toString());
  }
  ShowModeless();
  host_.BrowserOpened();
}

bool BrowserWindow::LoadDefaultProperty(const DiskPtr& request, bool) {
  rests_ = false;
  if (request != nullptr) request_.Take(request);
  UsePage(IsLocal());
  if (!IsLocal()) wait_->Stop();
  if (IsLocal() && !request_.HasPage()) request_.SetPage(PageRequest::kFirstShown);
  if (!IsLocal() || CreatePage()) UpdateBrowser();
  tag_ = request_.Folder();
  return true;
}

void BrowserWindow::ShowFolder(const QString& folder) {
  DropPage();
  split_->ShowNothing();
  request_.SetSearch({});  // so that emptying the box searches nothing
  toolbar_->ClearSearch();
  request_.TakeFolder(folder);
  LoadDefaultProperty(nullptr, true);
}

// A folder opens at its first messages, or where the setting says so at its newest.
void BrowserWindow::ChooseFirstPage() {
  const DiskPtr settings = Settings(context_);
  const bool newest = settings->Flag(u"MessagesNewest") && !settings->Flag(u"NewestFirst");
  const ConditionLimit brief(kBriefMs);
  const int pages = newest ? pages_.CountPages(request_.Folder()) : 1;
  request_.SetPage(brief.IsReached() ? PageRequest::kFirstShown : qMax(1, pages));
  if (brief.IsReached()) return;
  rows_.BeginAtEnd(newest);
  rows_.StayAtEnd(newest);
}

// Whether the user looks at what came last and at nothing in particular.
bool BrowserWindow::IsAtNewest() const {
  return rows_.StaysAtEnd() && rows_.WasAtEnd() && Search().isEmpty() && !request_.HasNext();
}

// Whether there is a page to show. A folder that is not available leaves "url" as it was.
bool BrowserWindow::CreatePage() {
  if (!ownPage_.isEmpty()) {
    ShowText(ownPage_);
    return false;
  }
  const DiskPtr folder = LoadObject(context_, request_.Folder());
  if (folder == nullptr) return request_.HasUrl();
  setWindowTitle(folder->Text(u"Object"));
  if (wait_->IsAsking(pages_.Question(request_.Folder(), request_.Search()))) {
    if (request_.HasUrl()) rows_.Attach(page_);  // no other page comes now
    return false;
  }
  wait_->Stop();
  DropPage();
  if (request_.Folder() == fixed_serial::kInbox && IsFirstUse(context_)) {
    ShowText(FirstUseText());
    request_.SetPage(PageRequest::kFirstShown);
    return false;
  }
  if (request_.Page() == PageRequest::kFirstShown) {
    ChooseFirstPage();
    ShowPageCount();
  }
  const auto anew = [this] { Refresh(); };
  const ConditionLimit brief(kBriefMs);
  bool before = false;
  bool next = false;
  const auto make = [&] {
    return pages_.FolderPage(request_.Folder(), request_.Page(), before, next, request_.Search());
  };
  // The number of a first page that could not be counted is still to be chosen.
  const bool isChosen = request_.Page() != PageRequest::kFirstShown;
  QByteArray page = isChosen ? make() : QByteArray();
  if (brief.IsReached() || !isChosen) return AskElsewhere(anew), false;
  // What has come begins a further page.
  if (next && std::exchange(follows_, false)) {
    ChooseFirstPage();
    ShowPageCount();
    if (request_.Page() == PageRequest::kFirstShown) return AskElsewhere(anew), false;
    page = make();
  }
  // The last page may have lost all its messages.
  const int last = next || request_.Page() <= 1
                       ? 0
                       : qMax(1, pages_.CountPages(request_.Folder(), request_.Search()));
  if (last > 0 && request_.Page() > last) {
    request_.SetPage(last);
    page = make();
  }
  if (brief.IsReached()) return AskElsewhere(anew), false;
  // The first page after the words that stood in its place.
  if (!request_.HasUrl()) rows_.BeginAtEnd(rows_.StaysAtEnd());
  request_.SetUrl(page.isEmpty() ? QString() : profiles_.Pages().Keep(page));
  request_.SetNeighbours(before, next);
  ControlToolbarUpdate();
  if (!page.isEmpty()) return true;
  ShowText(Ui::tr("<p>フォルダを表示できません。</p><p>") +
           context_.Data.LastError().text.toHtmlEscaped() + QStringLiteral("</p>"));
  return false;
}

// What takes long is asked on a thread of its own. A page of the folder that is in sight stays.
void BrowserWindow::AskElsewhere(const std::function<void()>& then) {
  if (request_.HasUrl()) {
    rows_.Attach(page_);  // its rows would wait for another page
  } else if (!IsForPrinting()) {
    ShowText(Ui::tr("<p>読み込み中です。</p>"));
  }
  wait_->Ask(pages_.Question(request_.Folder(), request_.Search()),
             [this, then](const ConditionRun::Answer& answer) { TakeAnswer(answer, then); });
  gone_.clear();
}

void BrowserWindow::TakeAnswer(const ConditionRun::Answer& answer,
                               const std::function<void()>& then) {
  if (answer.error && rests_) return;  // asked once more when somebody sees it
  if (answer.error) {
    return ShowText(Ui::tr("<p>フォルダを表示できません。</p><p>") +
                    answer.error.text.toHtmlEscaped() + QStringLiteral("</p>"));
  }
  const QString folder = request_.Folder();
  const QString search = request_.Search();
  QStringList serialIds;
  for (const QVariant& value : answer.values) serialIds.append(value.toString());
  serialIds.removeIf([gone = QSet<QString>(gone_.cbegin(), gone_.cend())](const QString& message) {
    return gone.contains(message);
  });
  pages_.TakeAnswer(folder, search, serialIds);
  // What has changed meanwhile may not be in it.
  if (wait_->TakeAgain()) {
    QTimer::singleShot(kLookAgainMs, this, [this, folder, search] {
      if (!IsLocal() || request_.Folder() != folder || request_.Search() != search) return;
      pages_.Forget(folder, search);
      Refresh();
    });
  }
  then();
}

void BrowserWindow::AskingStopped() {
  if (request_.HasUrl()) return;
  ShowText(Ui::tr("<p>中止しました。もう一度探すには「更新」を押してください。</p>"));
}

void BrowserWindow::ShowOwnPage(const QString& title, const QString& html) {
  UsePage(true);
  request_.BeLocal();
  setWindowTitle(ShownText(title, kMostInTitle));
  ownPage_ = html;
  ShowText(html);
}

// A page of the program's own.
void BrowserWindow::ShowText(const QString& html) {
  request_.SetUrl({});
  messages_->SetChosen(0);
  rows_.BeginAtEnd(false);
  rows_.Detach();
  page_->SetLocalPage(QUrl());
  toolbar_->ShowAddress(windowTitle(), false);
  wbUrl_->setHtml(QStringLiteral("<meta charset=\"utf-8\"><meta name=\"color-scheme\" "
                                 "content=\"light dark\"><body style=\"font-family:sans-serif;"
                                 "margin:2em;line-height:1.7\">") +
                  html);
}

void BrowserWindow::UpdateBrowser() {
  const QString text = request_.Url();
  rows_.Detach();
  const QUrl url = IsLocal() ? LocalUrl() : QUrl::fromUserInput(text);
  page_->SetLocalPage(IsLocal() ? url : QUrl());
  toolbar_->ShowAddress(IsLocal() ? windowTitle() : text, !IsLocal());
  wbUrl_->load(url);
  checkRows_.start(kCheckRowsMs);
}

// Of two loadings in a row the engine may tell one end alone, and an answer that the page was asked
// for in between is lost with the former page: without its rows the keys would stay dead.
void BrowserWindow::CheckRows() {
  if (!IsLocal() || closing_ || rests_ || rows_.IsReady()) return;
  if (page_->isLoading()) {
    checkRows_.start(kCheckRowsMs);
  } else {
    rows_.Attach(page_);
  }
}

void BrowserWindow::SeekClicked() {
  const bool hasTyped = toolbar_->TypedSearch() != request_.Search();
  if (request_.IsLoading()) {
    wbUrl_->stop();
  } else if (IsLocal() && hasTyped) {
    SearchFolder();  // with what the box says, rather than what it said
  } else {
    Refresh();
  }
}

void BrowserWindow::Refresh() {
  if (rests_) return;
  if (IsLocal()) {
    rows_.Keep([this] { MakeAnew(); });
  } else {
    wbUrl_->reload();
  }
}

void BrowserWindow::MakeAnew() {
  follows_ = IsAtNewest();
  LoadDefaultProperty(nullptr, true);
  follows_ = false;
}

void BrowserWindow::TurnPage(int step) {
  if (IsLocal()) {
    GoToPage(request_.Page() + step);
  } else {
    wbUrl_->triggerPageAction(step < 0 ? QWebEnginePage::Back : QWebEnginePage::Forward);
  }
}

void BrowserWindow::GoToPage(int page) {
  if (!IsLocal()) return;
  toolbar_->ForgetTypedPage();
  split_->ShowNothing();
  messages_->SetChosen(0);
  rows_.BeginAtEnd(false);
  request_.SetPage(page);
  LoadDefaultProperty(nullptr, true);
}

void BrowserWindow::GoToTypedPage() {
  const ConditionLimit brief(kBriefMs);
  const int last = pages_.CountPages(request_.Folder(), request_.Search());
  if (brief.IsReached()) return AskElsewhere([this] { GoToTypedPage(); });
  GoToPage(qBound(1, toolbar_->TypedPage(), qMax(1, last)));
  wbUrl_->setFocus();
}

void BrowserWindow::ShowNewest() {
  if (!IsLocal()) return;
  const ConditionLimit brief(kBriefMs);
  const int last = pages_.CountPages(request_.Folder(), request_.Search());
  if (brief.IsReached()) return AskElsewhere([this] { ShowNewest(); });
  GoToPage(qMax(1, last));
  rows_.BeginAtEnd(!Settings(context_)->Flag(u"NewestFirst"));
}

// What is found is a page of the folder like any other.
QString BrowserWindow::Search() const {
  return request_.Search();
}

void BrowserWindow::SearchFolder() {
  if (!IsLocal()) return;
  request_.SetSearch(toolbar_->TypedSearch());
  toolbar_->ShowPageCount(0);
  GoToPage(Search().isEmpty() ? PageRequest::kFirstShown : 1);
}

void BrowserWindow::FollowLink(const QString& address) {
  if (const auto command = ReadLinkCommand(address)) {
    host_.OpenMessage(command->openMode, command->serialId, command->isNew);
  } else if (!IsLocal()) {
    GoToAddress(address);
  }
}

void BrowserWindow::GoToAddress(const QString& address) {
  request_.SetUrl(address);
  UpdateBrowser();
}

// Idle moments are used to find out where the pages of a long folder begin.
void BrowserWindow::Explore() {
  if (!IsLocal() || request_.IsLoading()) return;
  const ConditionLimit brief(kBriefMs);
  const bool hasPages = request_.HasBefore() || request_.HasNext();
  if (hasPages && pages_.Explore(request_.Folder(), request_.Search())) {
    explore_.start(kExplorePauseMs);
    return;
  }
  const ConditionLimit briefer(kCountMs);
  ShowPageCount(hasPages);
}

void BrowserWindow::SetLoading(bool loading) {
  request_.SetLoading(loading);
  ControlToolbarUpdate();
}

void BrowserWindow::DocumentComplete(bool ok) {
  SetLoading(false);
  if (IsLocal()) {
    DeleteReadPage();
    explore_.start(kExploreAfterMs);
  } else {
    ShowPlace();
  }
  rows_.Attach(page_);
  if (IsForPrinting()) DoPrint();
  Q_EMIT Loaded(ok);
}

// Where a web page is; it may go on without being loaded anew.
void BrowserWindow::ShowPlace() {
  if (IsLocal() || closing_) return;
  toolbar_->FollowAddress(wbUrl_->url().toString());
  setWindowTitle(ShownText(wbUrl_->title(), kMostInTitle));
  UpdateHistoryState();
}

bool BrowserWindow::IsForPrinting() const {
  return request_.IsForPrinting();
}

// A window that was opened to print goes when that is done.
void BrowserWindow::DoPrint() {
  if (printer_ != nullptr) return;
  printer_ = std::make_unique<QPrinter>(QPrinter::HighResolution);
  if (!host_.ChoosePrinter(*printer_)) return PrintFinished();
  if (printer_->outputFormat() == QPrinter::PdfFormat) {
    // As text, which can be searched; through a printer the engine gives pictures.
    QPageLayout layout = printer_->pageLayout();
    layout.setUnits(QPageLayout::Millimeter);
    layout.setMargins(QMarginsF(0, kPrintMarginMm, 0, kPrintMarginMm));
    page_->printToPdf(printer_->outputFileName(), layout);
    return;
  }
  // The engine paints whole sheets: with margins of the printer's they would lose their ends.
  printer_->setFullPage(true);
  wbUrl_->print(printer_.get());
}

void BrowserWindow::PrintFinished() {
  // The engine tells this from a thread that has still to end its painting: the printer outlives
  // it.
  const std::shared_ptr<QPrinter> printer(std::move(printer_));
  QTimer::singleShot(kPrinterRestMs, qApp, [printer] {});
  if (IsForPrinting()) request_.BeDust();
}

void BrowserWindow::UpdateHistoryState() {
  request_.SetNeighbours(wbUrl_->history()->canGoBack(), wbUrl_->history()->canGoForward());
  ControlToolbarUpdate();
}

// A folder's page is kept in memory, one that is only printed in a file.
QUrl BrowserWindow::LocalUrl() const {
  const QString place = request_.Url();
  return place.startsWith(QLatin1String(PageSource::kScheme)) ? QUrl(place)
                                                              : QUrl::fromLocalFile(place);
}

bool BrowserWindow::HasPage() const {
  const QUrl url = LocalUrl();
  return url.isLocalFile() ? QFile::exists(url.toLocalFile())
                           : profiles_.Pages().Has(url.toString());
}

void BrowserWindow::DropPage() {
  if (!IsLocal() || !request_.HasUrl()) return;
  const QUrl url = LocalUrl();
  url.isLocalFile() ? static_cast<void>(QFile::remove(url.toLocalFile()))
                    : profiles_.Pages().Forget(url.toString());
}

// Tells which page the document is, and whether it is the one that should be shown.
void BrowserWindow::AskForDocument(const std::function<void(bool isShown)>& then) {
  page_->runJavaScript(QStringLiteral("location.href"), QWebEngineScript::ApplicationWorld,
                       [self = QPointer<BrowserWindow>(this), then](const QVariant& address) {
                         if (self == nullptr || self->closing_) return;
                         then(QUrl(address.toString()) == self->LocalUrl());
                       });
}

// Each page is read once. The end of a loading may be that of the page before this one, whose end
// must not take away this one.
void BrowserWindow::DeleteReadPage() {
  AskForDocument([this](bool isShown) {
    if (isShown) {
      attempts_ = 0;
      DropPage();
    } else {
      QTimer::singleShot(kLookAgainMs, this, &BrowserWindow::LookAgain);
    }
  });
}

// Usually the page is only under way; one that the engine gave up would never be seen.
void BrowserWindow::LookAgain() {
  const auto waits = [this] {
    return IsLocal() && page_ != nullptr && !page_->isLoading() && HasPage();
  };
  if (closing_ || !waits()) return;
  AskForDocument([this, waits](bool isShown) {
    if (!isShown && waits() && attempts_++ < kMostAttempts) Refresh();
  });
}

void BrowserWindow::ShowModeless() {
  show();
  Activate();
}

void BrowserWindow::Activate() {
  QWidget* frame = parentWidget() != nullptr ? parentWidget() : this;
  Wake();
  frame->show();
  frame->raise();
  frame->setFocus();
  wbUrl_->setFocus();
  // Who comes back to a page that he left goes on with a row that he chooses, and not, by one key,
  // with what was chosen then.
  if (rows_.HasRows()) rows_.Leave();
}

void BrowserWindow::Unload() {
  if (auto* frame = qobject_cast<QMdiSubWindow*>(parentWidget())) {
    frame->close();
  } else {
    deleteLater();
  }
}

int BrowserWindow::CountChosen() const {
  return messages_->CountChosen();
}

void BrowserWindow::RunCommand(const QString& command) {
  commands_->Run(command);
}

void BrowserWindow::MessagesGone(const QStringList& messages) {
  gone_ += messages;
  rows_.LeaveFolder(messages);
}

}  // namespace vorn
