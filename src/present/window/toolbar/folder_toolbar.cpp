#include "present/window/toolbar/folder_toolbar.h"

#include <QAction>
#include <QHBoxLayout>
#include <QToolBar>

#include "kit/window/access_names.h"
#include "objects/list_settings.h"
#include "objects/settings.h"
#include "present/window/toolbar/link_button.h"
#include "present/window/toolbar/location_box.h"
#include "present/window/toolbar/page_box.h"
#include "present/window/toolbar/search_box.h"
#include "present/window/toolbar/toolbar_action.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kSmallestBox = 50;
constexpr int kSearchEms = 8;
constexpr int kGap = 4;

}  // namespace

FolderToolbar::FolderToolbar(Context& context, QWidget* window)
    : QWidget(window), context_(context), tbLocation_(new QToolBar(this)) {
  BuildButtons();
  BuildPageBox();
  location_ = new LocationBox(this);
  location_->setMinimumWidth(kSmallestBox);
  search_ = new SearchBox(window, this);
  connect(search_, &SearchBox::textChanged, this, &FolderToolbar::ShowLocation);
  search_->setMinimumWidth(fontMetrics().horizontalAdvance(u'M') * kSearchEms);
  // The boxes shrink before the buttons do.
  tbLocation_->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
  auto* bar = new QHBoxLayout(this);
  bar->setContentsMargins(0, 0, kGap, 0);
  bar->setSpacing(kGap);
  bar->addWidget(tbLocation_);
  bar->addWidget(pages_);
  bar->addWidget(location_, 1);
  bar->addWidget(search_, 2);
  bar->addWidget(search_->Everywhere());
  bar->addWidget(search_->Texts());
  bar->addWidget(search_->Found());
}

void FolderToolbar::BuildButtons() {
  tbLocation_->setObjectName(QStringLiteral("tbLocation"));
  NameMoreButton(*tbLocation_);
  before_ = AddButton(QStringLiteral("before"), QKeySequence(Qt::ALT | Qt::Key_Left),
                      &FolderToolbar::BeforeWanted);
  seek_ = AddButton(QStringLiteral("seek"), QKeySequence(Qt::Key_F5), &FolderToolbar::SeekWanted);
  next_ = AddButton(QStringLiteral("next"), QKeySequence(Qt::ALT | Qt::Key_Right),
                    &FolderToolbar::NextWanted);
  links_ = new LinkButton(this);
  connect(links_, &QToolButton::clicked, this, &FolderToolbar::LinksWanted);
  connect(links_, &LinkButton::Followed, this, &FolderToolbar::LinkFollowed);
  tbLocation_->addWidget(links_);
}

QAction* FolderToolbar::AddButton(const QString& name, const QKeySequence& key,
                                  void (FolderToolbar::*wanted)()) {
  QAction* action = tbLocation_->addAction(QString(), this, wanted);
  action->setObjectName(name);
  action->setShortcut(key);
  return action;
}

void FolderToolbar::BuildPageBox() {
  pages_ = new PageBox(parentWidget());
  connect(pages_, &PageBox::FirstWanted, this, &FolderToolbar::FirstWanted);
  connect(pages_, &PageBox::LastWanted, this, &FolderToolbar::LastWanted);
  connect(pages_, &PageBox::TypedWanted, this, &FolderToolbar::TypedPageWanted);
}

// What is searched for says more than the folder's name does.
void FolderToolbar::ShowLocation() {
  const bool isRoomy = width() >= minimumSizeHint().width() + kSmallestBox + kGap;
  location_->setVisible(!location_->isReadOnly() || (search_->text().isEmpty() && isRoomy));
}

QSize FolderToolbar::minimumSizeHint() const {
  const QSize least = QWidget::minimumSizeHint();
  return {least.width() - (location_->isHidden() ? 0 : kSmallestBox + kGap), least.height()};
}

void FolderToolbar::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  ShowLocation();
}

void FolderToolbar::Show(const State& state) {
  const Settings settings(context_);
  ShowAction(*before_, *style(), QStyle::SP_ArrowBack, Ui::tr("前へ"));
  ShowAction(*seek_, *style(), state.isLoading ? QStyle::SP_BrowserStop : QStyle::SP_BrowserReload,
             state.isLoading ? Ui::tr("中止") : Ui::tr("更新"));
  ShowAction(*next_, *style(), QStyle::SP_ArrowForward, Ui::tr("次へ"));
  before_->setEnabled(state.hasBefore);
  next_->setEnabled(state.hasNext);
  pages_->NameEnds(ListSettings(context_).IsNewestFirst());
  pages_->Show(state.page, state.hasBefore, state.hasNext);
  pages_->setVisible(state.isFolder && (state.hasBefore || state.hasNext));
  search_->setVisible(state.canSearch);
  tbLocation_->setToolButtonStyle(settings.HasIconToolbar() ? Qt::ToolButtonIconOnly
                                                            : Qt::ToolButtonTextBesideIcon);
}

void FolderToolbar::ShowPageCount(int pages) {
  pages_->ShowCount(pages);
}

void FolderToolbar::ListLinks(const QList<PageRows::Link>& links) {
  links_->List(links);
}

int FolderToolbar::TypedPage() const {
  return pages_->Typed();
}

void FolderToolbar::ForgetTypedPage() {
  pages_->ForgetTyped();
}

}  // namespace vorn
