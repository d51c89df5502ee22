#include "present/window/toolbar/page_box.h"

#include <QAction>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

#include "kit/window/plain_text.h"
#include "present/window/toolbar/toolbar_action.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kHighestPage = 999999;
constexpr int kSpare = 16;  // beside the digits, for the frame and the cursor
constexpr int kManyPages = 8888;

QString CountWords(int pages) {
  return QStringLiteral(" / %1 ").arg(pages);
}

}  // namespace

PageBox::PageBox(QWidget* window) : QWidget(window), window_(window), box_(new QHBoxLayout(this)) {
  box_->setContentsMargins(0, 0, 0, 0);
  box_->setSpacing(0);
  first_ = AddButton(QStringLiteral("oldest"), Qt::Key_Home, &PageBox::FirstWanted);
  AddNumber();
  last_ = AddButton(QStringLiteral("newest"), Qt::Key_End, &PageBox::LastWanted);
}

QAction* PageBox::AddButton(const QString& name, Qt::Key key, void (PageBox::*wanted)()) {
  auto* action = new QAction(this);
  action->setObjectName(name);
  action->setShortcut(Qt::ALT | key);
  action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  connect(action, &QAction::triggered, this, wanted);
  window_->addAction(action);
  auto* button = new QToolButton(this);
  button->setDefaultAction(action);
  button->setAutoRaise(true);
  box_->addWidget(button);
  return action;
}

void PageBox::AddNumber() {
  txPage_ = new QLineEdit(this);
  txPage_->setObjectName(QStringLiteral("txPage"));
  txPage_->setAccessibleName(Ui::tr("ページ番号"));
  txPage_->setToolTip(Ui::tr("ページ番号"));
  txPage_->setAlignment(Qt::AlignRight);
  txPage_->setValidator(new QIntValidator(0, kHighestPage, txPage_));
  txPage_->setFixedWidth(fontMetrics().horizontalAdvance(QString::number(kHighestPage)) + kSpare);
  connect(txPage_, &QLineEdit::returnPressed, this, &PageBox::TypedWanted);
  box_->addWidget(txPage_);
  lbPages_ = PlainLabel({}, this);
  lbPages_->setObjectName(QStringLiteral("lbPages"));
  lbPages_->setMinimumWidth(lbPages_->fontMetrics().horizontalAdvance(CountWords(kManyPages)));
  box_->addWidget(lbPages_);
}

void PageBox::Show(int page, bool hasBefore, bool hasNext) {
  first_->setEnabled(hasBefore);
  last_->setEnabled(hasNext);
  const QString number = QString::number(page);
  if (txPage_->hasFocus() && (txPage_->isModified() || txPage_->text() == number)) return;
  txPage_->setText(number);
}

void PageBox::NameEnds(bool newestFirst) {
  ShowAction(*first_, *style(), QStyle::SP_MediaSkipBackward,
             newestFirst ? Ui::tr("最新のページ") : Ui::tr("最初のページ"));
  ShowAction(*last_, *style(), QStyle::SP_MediaSkipForward,
             newestFirst ? Ui::tr("最も古いページ") : Ui::tr("最新のページ"));
}

void PageBox::ShowCount(int pages) {
  lbPages_->setText(pages > 0 ? CountWords(pages) : QString());
}

int PageBox::Typed() const {
  return txPage_->text().toInt();
}

void PageBox::ForgetTyped() {
  txPage_->setModified(false);
}

}  // namespace vorn
