// The browser window's toolbar: turning pages, the address, the links, the search.

#include <QAction>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QShortcut>
#include <QStyle>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWebEngineView>

#include "kit/window/access_names.h"
#include "kit/window/plain_text.h"
#include "objects/settings.h"
#include "present/window/browser_keys.h"
#include "present/window/browser_window.h"
#include "present/window/condition_wait.h"
#include "present/window/link_page.h"
#include "present/window/page_split.h"
#include "present/window/script_bar.h"
#include "storage/condition_limit.h"
#include "storage/ui.h"

namespace vorn {

using namespace browser_key;

namespace {

constexpr int kSearchWidth = 220;
constexpr int kSmallestBox = 50;
constexpr int kGap = 4;
constexpr int kHighestPage = 999999;
constexpr qsizetype kMenuTextLength = 60;

}  // namespace

void BrowserWindow::BuildControls() {
  tbLocation_ = new QToolBar(this);
  tbLocation_->setObjectName(QStringLiteral("tbLocation"));
  NameMoreButton(*tbLocation_);
  before_ = AddButton(kBefore, &BrowserWindow::ShowBefore);
  seek_ = AddButton(QStringLiteral("seek"), &BrowserWindow::SeekClicked);
  next_ = AddButton(kNext, &BrowserWindow::ShowNext);
  before_->setShortcut(QKeySequence(Qt::ALT | Qt::Key_Left));
  next_->setShortcut(QKeySequence(Qt::ALT | Qt::Key_Right));
  seek_->setShortcut(QKeySequence(Qt::Key_F5));
  BuildLinkButton();
  BuildPageBox();
  BuildLocationBox();
  BuildSearchBox();
  BuildView();

  // The boxes shrink before the buttons do.
  tbLocation_->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
  auto* bar = new QHBoxLayout;
  bar->setContentsMargins(0, 0, kGap, 0);
  bar->setSpacing(kGap);
  bar->addWidget(tbLocation_);
  bar->addWidget(pageBox_);
  bar->addWidget(txLocation_, 1);
  bar->addWidget(txSearch_, 1);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addLayout(bar);
  scripts_ = new ScriptBar(context_, profiles_.Sites());
  layout->addWidget(scripts_);
  wait_ = new ConditionWait(context_, [this] { AskingStopped(); });
  layout->addWidget(wait_);
  split_ = new PageSplit(context_, wbUrl_, host_.Messages());
  connect(split_, &PageSplit::OpenWanted, this, [this](OpenMode mode, const QString& serialId) {
    host_.OpenMessage(static_cast<int>(mode), serialId, mode != OpenMode::Show);
  });
  layout->addWidget(split_, 1);
}

void BrowserWindow::BuildLocationBox() {
  txLocation_ = new QLineEdit(this);
  txLocation_->setObjectName(QStringLiteral("txLocation"));
  txLocation_->setAccessibleName(Ui::tr("アドレス"));
  txLocation_->setMinimumWidth(kSmallestBox);
  txLocation_->installEventFilter(this);
  connect(txLocation_, &QLineEdit::returnPressed, this, [this] {
    if (IsLocal()) return;
    LocationUrl(QUrl::fromUserInput(txLocation_->text()).toString());
    UpdateBrowser();
  });
}

void BrowserWindow::BuildLinkButton() {
  url_ = new QToolButton(this);
  url_->setObjectName(kUrl);
  url_->setText(Ui::tr("リンク▾"));
  url_->setToolTip(Ui::tr("このページのリンク"));
  url_->setToolButtonStyle(Qt::ToolButtonTextOnly);
  connect(url_, &QToolButton::clicked, this, &BrowserWindow::ShowLinkList);
  tbLocation_->addWidget(url_);
}

QAction* BrowserWindow::AddButton(const QString& key, void (BrowserWindow::*clicked)()) {
  QAction* action = tbLocation_->addAction(QString(), this, clicked);
  action->setObjectName(key);
  return action;
}

// The first page (the oldest unless the newest come first), a page by its number, the last page.
void BrowserWindow::BuildPageBox() {
  pageBox_ = new QWidget(this);
  auto* box = new QHBoxLayout(pageBox_);
  box->setContentsMargins(0, 0, 0, 0);
  box->setSpacing(0);
  const auto button = [this, box](const QString& key, QStyle::StandardPixmap icon,
                                  const QString& text, Qt::Key shortcut,
                                  void (BrowserWindow::*clicked)()) {
    auto* action = new QAction(style()->standardIcon(icon), text, this);
    action->setObjectName(key);
    action->setShortcut(Qt::ALT | shortcut);
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    action->setToolTip(text + u' ' + action->shortcut().toString(QKeySequence::NativeText));
    connect(action, &QAction::triggered, this, clicked);
    addAction(action);
    auto* shown = new QToolButton(pageBox_);
    shown->setDefaultAction(action);
    shown->setAutoRaise(true);
    box->addWidget(shown);
    return action;
  };
  oldest_ = button(QStringLiteral("oldest"), QStyle::SP_MediaSkipBackward, Ui::tr("最初のページ"),
                   Qt::Key_Home, &BrowserWindow::ShowOldest);
  txPage_ = new QLineEdit(pageBox_);
  txPage_->setObjectName(QStringLiteral("txPage"));
  txPage_->setAccessibleName(Ui::tr("ページ番号"));
  txPage_->setToolTip(Ui::tr("ページ番号"));
  txPage_->setAlignment(Qt::AlignRight);
  txPage_->setValidator(new QIntValidator(1, kHighestPage, txPage_));
  txPage_->setFixedWidth(fontMetrics().horizontalAdvance(QString::number(kHighestPage)) + 4 * kGap);
  connect(txPage_, &QLineEdit::returnPressed, this, &BrowserWindow::GoToTypedPage);
  box->addWidget(txPage_);
  lbPages_ = PlainLabel({}, pageBox_);
  lbPages_->setObjectName(QStringLiteral("lbPages"));
  box->addWidget(lbPages_);
  newest_ = button(QStringLiteral("newest"), QStyle::SP_MediaSkipForward, Ui::tr("最新のページ"),
                   Qt::Key_End, &BrowserWindow::ShowNewest);
}

void BrowserWindow::BuildSearchBox() {
  txSearch_ = new QLineEdit(this);
  txSearch_->setObjectName(QStringLiteral("txSearch"));
  txSearch_->setAccessibleName(Ui::tr("フォルダの検索"));
  txSearch_->setPlaceholderText(Ui::tr("件名、アドレスを検索"));
  txSearch_->setClearButtonEnabled(true);
  txSearch_->setMinimumWidth(kSmallestBox);
  txSearch_->setMaximumWidth(kSearchWidth);
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
  connect(wbUrl_, &QWidget::customContextMenuRequested, this, [this](const QPoint& at) {
    if (IsLocal() && rows_.HasRows()) messageMenu_->popup(wbUrl_->mapToGlobal(at));
  });
  wbUrl_->addActions(commands_);
  setFocusProxy(wbUrl_);
}

// An address is there to be replaced.
bool BrowserWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == txLocation_ && event->type() == QEvent::FocusIn) {
    QTimer::singleShot(0, txLocation_, &QLineEdit::selectAll);
  }
  return QWidget::eventFilter(watched, event);
}

void BrowserWindow::ControlToolbarUpdate() {
  const bool iconsOnly = Settings(context_)->Flag(u"ToolbarIcon");
  const bool loading = bag_->Flag(kOnLoad);
  const auto set = [&](QAction* action, QStyle::StandardPixmap icon, const QString& text) {
    action->setIcon(style()->standardIcon(icon));
    action->setText(text);
    action->setToolTip(text + QStringLiteral(" ") +
                       action->shortcut().toString(QKeySequence::NativeText));
  };
  set(before_, QStyle::SP_ArrowBack, Ui::tr("前へ"));
  set(seek_, loading ? QStyle::SP_BrowserStop : QStyle::SP_BrowserReload,
      loading ? Ui::tr("中止") : Ui::tr("更新"));
  set(next_, QStyle::SP_ArrowForward, Ui::tr("次へ"));
  const bool newestFirst = Settings(context_)->Flag(u"NewestFirst");
  set(oldest_, QStyle::SP_MediaSkipBackward,
      newestFirst ? Ui::tr("最新のページ") : Ui::tr("最初のページ"));
  set(newest_, QStyle::SP_MediaSkipForward,
      newestFirst ? Ui::tr("最も古いページ") : Ui::tr("最新のページ"));
  before_->setEnabled(bag_->Flag(kBefore));
  next_->setEnabled(bag_->Flag(kNext));
  oldest_->setEnabled(bag_->Flag(kBefore));
  newest_->setEnabled(bag_->Flag(kNext));
  pageBox_->setVisible(IsLocal() && (bag_->Flag(kBefore) || bag_->Flag(kNext)));
  if (!txPage_->hasFocus() || !txPage_->isModified()) {
    txPage_->setText(QString::number(bag_->Number(kPage, 1)));
  }
  txSearch_->setVisible(IsLocal() && ownPage_.isEmpty());
  split_->Arrange(IsLocal() && !IsForPrinting() && !bag_->Text(kUrl).isEmpty());
  tbLocation_->setToolButtonStyle(iconsOnly ? Qt::ToolButtonIconOnly
                                            : Qt::ToolButtonTextBesideIcon);
}

void BrowserWindow::ShowPageCount(bool count) {
  const int pages = pages_.CountPages(bag_->SerialID(), bag_->Text(kSearch), count);
  lbPages_->setText(pages > 0 ? QStringLiteral(" / %1 ").arg(pages) : QString());
}

void BrowserWindow::TurnPage(int step) {
  if (IsLocal()) {
    GoToPage(bag_->Number(kPage, 1) + step);
  } else {
    wbUrl_->triggerPageAction(step < 0 ? QWebEnginePage::Back : QWebEnginePage::Forward);
  }
}

void BrowserWindow::GoToPage(int page) {
  if (!IsLocal()) return;
  txPage_->setModified(false);
  split_->ShowNothing();
  ShowChosen(0);
  rows_.BeginAtEnd(false);
  bag_->Let(kPage, page);
  LoadDefaultProperty(bag_, true);
}

void BrowserWindow::GoToTypedPage() {
  const ConditionLimit brief(kBriefMs);
  const int last = pages_.CountPages(bag_->SerialID(), bag_->Text(kSearch));
  if (brief.IsReached()) return AskElsewhere([this] { GoToTypedPage(); });
  GoToPage(qBound(1, txPage_->text().toInt(), qMax(1, last)));
  wbUrl_->setFocus();
}

void BrowserWindow::ShowNewest() {
  if (!IsLocal()) return;
  const ConditionLimit brief(kBriefMs);
  const int last = pages_.CountPages(bag_->SerialID(), bag_->Text(kSearch));
  if (brief.IsReached()) return AskElsewhere([this] { ShowNewest(); });
  GoToPage(qMax(1, last));
  rows_.BeginAtEnd(!Settings(context_)->Flag(u"NewestFirst"));
}

// What is found is a page of the folder like any other.
QString BrowserWindow::Search() const {
  return bag_->Text(kSearch);
}

void BrowserWindow::SearchFolder() {
  if (!IsLocal()) return;
  bag_->Let(kSearch, txSearch_->text().trimmed());
  lbPages_->clear();
  GoToPage(Search().isEmpty() ? kFirstShown : 1);
}

// The page is asked for its links when the user wants to see them.
void BrowserWindow::ShowLinkList() {
  rows_.Links([this](const QList<PageRows::Link>& links) {
    auto* menu = new QMenu(url_);
    menu->setObjectName(QStringLiteral("menuUrl"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    // A page may have hundreds: one column that scrolls.
    menu->setStyleSheet(QStringLiteral("QMenu { menu-scrollable: 1; }"));
    for (const PageRows::Link& link : links) {
      QString text = link.text.simplified().left(kMenuTextLength);
      menu->addAction(text.replace(u'&', QStringLiteral("&&")), this,
                      [this, address = link.address] { FollowLink(address); })
          ->setToolTip(ShownToolTip(link.address));
    }
    if (links.isEmpty()) {
      QAction* nothing = menu->addAction(QStringLiteral("nothing.."));
      nothing->setObjectName(QStringLiteral("nothing"));
      nothing->setEnabled(false);
    }
    menu->popup(url_->mapToGlobal(QPoint(0, url_->height())));
  });
}

void BrowserWindow::FollowLink(const QString& address) {
  if (const auto command = ReadLinkCommand(address)) {
    host_.OpenMessage(command->openMode, command->serialId, command->isNew);
  } else if (!IsLocal()) {
    LocationUrl(address);
    UpdateBrowser();
  }
}

}  // namespace vorn
