#include "present/window/browser_window.h"

#include <QAction>
#include <QApplication>
#include <QFile>
#include <QLineEdit>
#include <QPrinter>
#include <QShortcut>
#include <QStyle>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>
#include <QWebEngineHistory>
#include <QWebEngineView>

#include "objects/object_loader.h"
#include "objects/object_types.h"
#include "objects/select_objects.h"
#include "objects/settings.h"
#include "present/window/link_page.h"
#include "storage/databases.h"

namespace vorn {
namespace {

const QString kBefore = QStringLiteral("before");
const QString kNext = QStringLiteral("next");
const QString kUrl = QStringLiteral("url");
const QString kPage = QStringLiteral("Page");
const QString kSearch = QStringLiteral("search");
const QString kOnLoad = QStringLiteral("onLoad");

// Whether there is neither an account nor a message yet.
bool IsFirstUse(Context& context) {
  if (!SelectObjects(context.Objects, *context.Session, object_type::kAccount)->IsEmpty() ||
      !OpenDatabase(context, DatabaseKind::Mail)) {
    return false;
  }
  const bool isEmpty =
      context.Data.OpenRecordset(QStringLiteral("SELECT * FROM mail"), CursorKind::ForwardOnly) &&
      context.Data.Recordset()->Eof();
  context.Data.Close();
  return isEmpty;
}

QString FirstUseText() {
  return QStringLiteral(
      "<h2>ようこそ</h2>"
      "<p>メールを受信するには、アカウントを追加してください。</p>"
      "<ul><li><b>アカウントの追加</b>: メニューの「ファイル」→「新規作成」→「アカウント」"
      "（Alt+F、N、A）。受信サーバーと送信サーバーは「接続を確認」で試せます。</li>"
      "<li><b>送受信</b>: メニューの「ツール」→「メッセージ送受信」（Ctrl+M）。</li>"
      "<li><b>これまでのメール</b>: コマンド <code>vornctl import</code> で、mbox、Maildir、"
      "emlのファイルを取り込めます。</li></ul>");
}

constexpr int kSearchWidth = 200;
constexpr int kPrinterRestMs = 10000;

}  // namespace

BrowserWindow::BrowserWindow(Context& context, MessageListPages& pages,
                             const BrowserProfiles& profiles, BrowserHost& host)
    : context_(context),
      pages_(pages),
      profiles_(profiles),
      host_(host),
      bag_(std::make_shared<Disk>(context.Data.NewSerialID())) {
  setObjectName(QStringLiteral("URL"));
  setAttribute(Qt::WA_DeleteOnClose);
  BuildControls();
  ControlToolbarUpdate();
}

BrowserWindow::~BrowserWindow() {
  // Closed in the middle of printing: the engine's thread goes on painting and cannot be asked when
  // it is done, so the printer is left to it.
  static_cast<void>(printer_.release());
  DeletePageFile();
  host_.BrowserClosed();
}

void BrowserWindow::BuildControls() {
  tbLocation_ = new QToolBar(this);
  tbLocation_->setObjectName(QStringLiteral("tbLocation"));
  before_ = AddButton(kBefore, &BrowserWindow::ShowBefore);
  seek_ = AddButton(QStringLiteral("seek"), &BrowserWindow::SeekClicked);
  next_ = AddButton(kNext, &BrowserWindow::ShowNext);
  before_->setShortcut(QKeySequence(Qt::ALT | Qt::Key_Left));
  next_->setShortcut(QKeySequence(Qt::ALT | Qt::Key_Right));
  seek_->setShortcut(QKeySequence(Qt::Key_F5));

  txLocation_ = new QLineEdit(this);
  txLocation_->setObjectName(QStringLiteral("txLocation"));
  txLocation_->setAccessibleName(QStringLiteral("アドレス"));
  tbLocation_->addWidget(txLocation_);
  connect(txLocation_, &QLineEdit::returnPressed, this, [this] {
    if (IsLocal()) return;
    LocationUrl(QUrl::fromUserInput(txLocation_->text()).toString());
    UpdateBrowser();
  });

  txSearch_ = new QLineEdit(this);
  txSearch_->setObjectName(QStringLiteral("txSearch"));
  txSearch_->setAccessibleName(QStringLiteral("フォルダの検索"));
  txSearch_->setPlaceholderText(QStringLiteral("件名、アドレスを検索"));
  txSearch_->setClearButtonEnabled(true);
  txSearch_->setMaximumWidth(kSearchWidth);
  searchBox_ = tbLocation_->addWidget(txSearch_);
  connect(txSearch_, &QLineEdit::returnPressed, this, &BrowserWindow::SearchFolder);
  // The button that empties the box shows the whole folder again.
  connect(txSearch_, &QLineEdit::textChanged, this, [this](const QString& text) {
    if (text.isEmpty() && !bag_->Text(kSearch).isEmpty()) SearchFolder();
  });
  auto* find = new QShortcut(QKeySequence::Find, this);
  find->setContext(Qt::WidgetWithChildrenShortcut);
  connect(find, &QShortcut::activated, txSearch_, [this] {
    txSearch_->setFocus();
    txSearch_->selectAll();
  });

  wbUrl_ = new QWebEngineView(this);
  wbUrl_->setObjectName(QStringLiteral("wbUrl"));
  wbUrl_->setContextMenuPolicy(Qt::NoContextMenu);
  connect(wbUrl_, &QWebEngineView::loadStarted, this, [this] { SetLoading(true); });
  connect(wbUrl_, &QWebEngineView::printFinished, this, &BrowserWindow::PrintFinished);
  connect(wbUrl_, &QWebEngineView::loadFinished, this, &BrowserWindow::DocumentComplete);
  setFocusProxy(wbUrl_);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(tbLocation_);
  layout->addWidget(wbUrl_, 1);
}

QAction* BrowserWindow::AddButton(const QString& key, void (BrowserWindow::*clicked)()) {
  QAction* action = tbLocation_->addAction(QString(), this, clicked);
  action->setObjectName(key);
  return action;
}

// A page belongs to one engine profile for life, so a window that changes between a folder and the
// web changes its page.
void BrowserWindow::UsePage(bool local) {
  QWebEngineProfile* profile = local ? profiles_.Local() : profiles_.Web();
  if (page_ != nullptr && page_->profile() == profile) return;
  delete page_;
  page_ = new LinkPage(profile, wbUrl_);
  wbUrl_->setPage(page_);
  connect(page_, &LinkPage::CommandFollowed, this, [this](const LinkCommand& command) {
    host_.OpenMessage(command.openMode, command.serialId, command.isNew);
  });
}

bool BrowserWindow::LoadDefaultProperty(const DiskPtr& request, bool) {
  if (request != nullptr) bag_ = request;
  UsePage(IsLocal());
  if (!IsLocal() || CreatePage()) UpdateBrowser();
  tag_ = bag_->SerialID();
  return true;
}

// Whether there is a page to show. A folder that is not available leaves "url" as it was.
bool BrowserWindow::CreatePage() {
  const DiskPtr folder = LoadObject(context_, bag_->SerialID());
  if (folder == nullptr) return !bag_->Text(kUrl).isEmpty();
  setWindowTitle(folder->Text(u"Object"));
  DeletePageFile();
  if (bag_->SerialID() == fixed_serial::kInbox && IsFirstUse(context_)) {
    ShowText(FirstUseText());
    return false;
  }
  bool before = false;
  bool next = false;
  const QString path = pages_.CreateMessageListPage(bag_->SerialID(), bag_->Number(kPage, 1),
                                                    before, next, bag_->Text(kSearch));
  bag_->Let(kUrl, path);
  bag_->Let(kBefore, before);
  bag_->Let(kNext, next);
  ControlToolbarUpdate();
  if (!path.isEmpty()) return true;
  ShowText(QStringLiteral("<p>フォルダを表示できません。</p><p>") +
           context_.Data.LastError().text.toHtmlEscaped() + QStringLiteral("</p>"));
  return false;
}

// A page of the program's own.
void BrowserWindow::ShowText(const QString& html) {
  bag_->Let(kUrl, QString());
  page_->SetLocalPage(QUrl());
  txLocation_->setReadOnly(true);
  txLocation_->setText(windowTitle());
  wbUrl_->setHtml(QStringLiteral("<meta charset=\"utf-8\"><body style=\"font-family:sans-serif;"
                                 "margin:2em;line-height:1.7\">") +
                  html);
}

void BrowserWindow::UpdateBrowser() {
  const QString text = bag_->Text(kUrl);
  const QUrl url = IsLocal() ? QUrl::fromLocalFile(text) : QUrl::fromUserInput(text);
  page_->SetLocalPage(IsLocal() ? url : QUrl());
  txLocation_->setReadOnly(IsLocal());
  txLocation_->setText(IsLocal() ? windowTitle() : text);
  wbUrl_->load(url);
}

void BrowserWindow::ControlToolbarUpdate() {
  const bool iconsOnly = Settings(context_)->Flag(u"ToolbarIcon");
  const bool loading = bag_->Flag(kOnLoad);
  const auto set = [&](QAction* action, QStyle::StandardPixmap icon, const QString& text) {
    action->setIcon(style()->standardIcon(icon));
    action->setText(text);
    action->setToolTip(text);
  };
  set(before_, QStyle::SP_ArrowBack, QStringLiteral("前へ"));
  set(seek_, loading ? QStyle::SP_BrowserStop : QStyle::SP_BrowserReload,
      loading ? QStringLiteral("中止") : QStringLiteral("更新"));
  set(next_, QStyle::SP_ArrowForward, QStringLiteral("次へ"));
  searchBox_->setVisible(IsLocal());
  before_->setEnabled(bag_->Flag(kBefore));
  next_->setEnabled(bag_->Flag(kNext));
  tbLocation_->setToolButtonStyle(iconsOnly ? Qt::ToolButtonIconOnly
                                            : Qt::ToolButtonTextBesideIcon);
}

void BrowserWindow::TurnPage(int step) {
  if (!IsLocal()) {
    wbUrl_->triggerPageAction(step < 0 ? QWebEnginePage::Back : QWebEnginePage::Forward);
    return;
  }
  bag_->Let(kPage, bag_->Number(kPage, 1) + step);
  LoadDefaultProperty(bag_, true);
}

// What is found is a page of the folder like any other.
void BrowserWindow::SearchFolder() {
  if (!IsLocal()) return;
  bag_->Let(kSearch, txSearch_->text().trimmed());
  bag_->Let(kPage, 1);
  LoadDefaultProperty(nullptr, true);
}

void BrowserWindow::SeekClicked() {
  if (bag_->Flag(kOnLoad)) {
    wbUrl_->stop();
  } else {
    Refresh();
  }
}

void BrowserWindow::Refresh() {
  if (IsLocal()) {
    LoadDefaultProperty(nullptr, true);
  } else {
    wbUrl_->reload();
  }
}

void BrowserWindow::SetLoading(bool loading) {
  bag_->Let(kOnLoad, loading);
  ControlToolbarUpdate();
}

void BrowserWindow::DocumentComplete(bool ok) {
  SetLoading(false);
  if (IsLocal()) {
    DeletePageFile();  // each page is read once
  } else {
    txLocation_->setText(wbUrl_->url().toString());
    setWindowTitle(wbUrl_->title());
    UpdateHistoryState();
  }
  if (bag_->Text(u"exec") == u"print") DoPrint();
  Q_EMIT Loaded(ok);
}

// A window that was opened to print goes when that is done.
void BrowserWindow::DoPrint() {
  if (printer_ != nullptr) return;
  printer_ = std::make_unique<QPrinter>(QPrinter::HighResolution);
  if (host_.ChoosePrinter(*printer_)) {
    wbUrl_->print(printer_.get());
  } else {
    PrintFinished();
  }
}

void BrowserWindow::PrintFinished() {
  // The engine tells this from a thread that has still to end its painting: the printer outlives
  // it.
  const std::shared_ptr<QPrinter> printer(std::move(printer_));
  QTimer::singleShot(kPrinterRestMs, qApp, [printer] {});
  if (bag_->Text(u"exec") == u"print") bag_->Let(QStringLiteral("dust"), true);
}

void BrowserWindow::UpdateHistoryState() {
  bag_->Let(kBefore, wbUrl_->history()->canGoBack());
  bag_->Let(kNext, wbUrl_->history()->canGoForward());
  ControlToolbarUpdate();
}

void BrowserWindow::DeletePageFile() {
  const QString path = bag_->Text(kUrl);
  if (IsLocal() && !path.isEmpty()) QFile::remove(path);
}

void BrowserWindow::ShowModeless() {
  show();
  Activate();
}

void BrowserWindow::Activate() {
  QWidget* frame = parentWidget() != nullptr ? parentWidget() : this;
  frame->show();
  frame->raise();
  frame->setFocus();
  wbUrl_->setFocus();
}

void BrowserWindow::Unload() {
  if (parentWidget() != nullptr) {
    parentWidget()->close();
  } else {
    deleteLater();
  }
}

}  // namespace vorn
