#include "present/window/toolbar/folder_toolbar.h"

#include <QAction>
#include <QEvent>
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
  connect(search_, &SearchBox::textChanged, this, &FolderToolbar::Fit);
  search_->setMinimumWidth(fontMetrics().horizontalAdvance(u'M') * kSearchEms);
  Lay();
}

void FolderToolbar::Lay() {
  // The boxes shrink before the buttons do.
  tbLocation_->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
  choices_ = new QWidget(this);
  auto* choices = new QHBoxLayout(choices_);
  choices->setContentsMargins(0, 0, 0, 0);
  choices->setSpacing(kGap);
  for (QWidget* choice :
       {static_cast<QWidget*>(search_->Everywhere()), static_cast<QWidget*>(search_->Texts()),
        static_cast<QWidget*>(search_->Found())}) {
    choices->addWidget(choice);
  }
  auto* lines = new QVBoxLayout(this);
  lines->setContentsMargins(0, 0, kGap, 0);
  lines->setSpacing(0);
  line_ = new QHBoxLayout;
  line_->setSpacing(kGap);
  line_->addWidget(tbLocation_);
  line_->addWidget(pages_);
  line_->addWidget(location_, 1);
  line_->addWidget(search_, 2);
  line_->addWidget(choices_);
  lines->addLayout(line_);
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
}

void FolderToolbar::MeasureButtons() {
  tbLocation_->setToolButtonStyle(Qt::ToolButtonIconOnly);
  leastButtons_ = tbLocation_->minimumSizeHint().width();
  if (hasWords_) tbLocation_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  allButtons_ = tbLocation_->sizeHint().width();
}

// Of what cannot give way.
int FolderToolbar::LeastBesideButtons() const {
  int least = kGap;
  for (const QWidget* box : {static_cast<QWidget*>(pages_), static_cast<QWidget*>(search_)}) {
    if (!box->isHidden())
      least += kGap + box->minimumSizeHint().expandedTo(box->minimumSize()).width();
  }
  return least + (location_->isReadOnly() ? 0 : kGap + kSmallestBox);
}

// What is searched for says more than the folder's name does.
void FolderToolbar::Fit() {
  const int room = width() - LeastBesideButtons();
  const bool isSearching = !search_->text().isEmpty();
  const int choices = isSearching ? kGap + choices_->sizeHint().width() : 0;
  const bool isBelow = isSearching && room < leastButtons_ + choices;
  const bool fits = room - (isBelow ? 0 : choices) >= allButtons_;
  tbLocation_->setToolButtonStyle(hasWords_ && fits ? Qt::ToolButtonTextBesideIcon
                                                    : Qt::ToolButtonIconOnly);
  location_->setVisible(!location_->isReadOnly() ||
                        (!isSearching && room >= allButtons_ + kGap + kSmallestBox));
  choices_->setVisible(isSearching);
  if (isBelow == (line_->indexOf(choices_) < 0)) return;
  (isBelow ? static_cast<QBoxLayout*>(layout()) : line_)->addWidget(choices_);
}

QSize FolderToolbar::minimumSizeHint() const {
  const int choices = search_->text().isEmpty() ? 0 : choices_->minimumSizeHint().width();
  return {qMax(LeastBesideButtons() + leastButtons_, choices), QWidget::minimumSizeHint().height()};
}

// One of the boxes may have become wider.
bool FolderToolbar::event(QEvent* event) {
  if (event->type() == QEvent::LayoutRequest) Fit();
  return QWidget::event(event);
}

void FolderToolbar::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Fit();
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
  hasWords_ = !settings.HasIconToolbar();
  MeasureButtons();
  Fit();
}

void FolderToolbar::ListLinks(const QList<PageRows::Link>& links) {
  links_->List(links);
}

}  // namespace vorn
