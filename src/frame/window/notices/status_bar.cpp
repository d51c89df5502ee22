#include "frame/window/notices/status_bar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QShortcut>
#include <QToolButton>
#include <utility>

#include "kit/window/icons.h"
#include "kit/window/plain_text.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kPanelWidth = 220;
constexpr int kOfferMs = 30000;
constexpr size_t kMostSteps = 20;
constexpr int kResultMs = 10000;
constexpr int kSameCheckMs = 20000;

}  // namespace

MainStatusBar::MainStatusBar(QWidget* parent)
    : QStatusBar(parent),
      icon_(PlainLabel()),
      work_(PlainLabel()),
      text_(PlainLabel()),
      cancel_(new QToolButton),
      chosen_(PlainLabel()),
      offer_(new QWidget),
      done_(PlainLabel()),
      takeBack_(new QToolButton) {
  setObjectName(QStringLiteral("sbStatus"));
  if (parent != nullptr) parent->installEventFilter(this);
  work_->setObjectName(QStringLiteral("panelWork"));
  work_->hide();
  text_->setObjectName(QStringLiteral("panelSession"));
  cancel_->setText(Ui::tr("中止"));
  cancel_->setToolTip(Ui::tr("送受信を中止します。"));
  cancel_->setAutoRaise(true);
  cancel_->hide();
  connect(cancel_, &QToolButton::clicked, this, &MainStatusBar::CancelClicked);

  auto* panel = new QWidget;
  panel->setMinimumWidth(kPanelWidth);
  auto* layout = new QHBoxLayout(panel);
  layout->setContentsMargins(4, 0, 4, 0);
  layout->addWidget(icon_);
  layout->addWidget(work_, 1);
  layout->addWidget(text_);
  layout->addWidget(cancel_);
  chosen_->setObjectName(QStringLiteral("lbChosen"));
  addPermanentWidget(chosen_);
  chosen_->hide();
  addPermanentWidget(panel);
  panel->hide();
  BuildOffer();
}

void MainStatusBar::ShowForAWhile(const QString& sentence) {
  showMessage(sentence, kResultMs);
}

void MainStatusBar::ShowChosen(int count) {
  chosen_->setText(Ui::tr("%1通を選択").arg(count));
  chosen_->setVisible(count > 1);
}

void MainStatusBar::BuildOffer() {
  done_->setObjectName(QStringLiteral("lbDone"));
  takeBack_->setObjectName(QStringLiteral("cmUndo"));
  takeBack_->setText(Ui::tr("元に戻す"));
  // Not the button's own, which is hidden behind other sentences and clicks a while after its key.
  auto* undo = new QShortcut(QKeySequence::Undo, window());
  connect(undo, &QShortcut::activated, this, &MainStatusBar::UndoWanted);
  takeBack_->setToolTip(Ui::tr("いまの操作を元に戻します（Ctrl+Z）。"));
  takeBack_->setAutoRaise(true);
  connect(takeBack_, &QToolButton::clicked, this, &MainStatusBar::UndoWanted);
  auto* layout = new QHBoxLayout(offer_);
  layout->setContentsMargins(4, 0, 4, 0);
  layout->addWidget(takeBack_);  // in front, where it stays for a second click
  layout->addWidget(done_);
  done_->setMinimumHeight(takeBack_->sizeHint().height());  // without it the bar would be lower
  layout->addStretch();
  addWidget(offer_, 1);
  offer_->hide();
  offered_.setSingleShot(true);
  connect(&offered_, &QTimer::timeout, this, &MainStatusBar::EndOffer);
  connect(this, &QStatusBar::messageChanged, this, &MainStatusBar::MakeRoom);
}

// The toolkit makes room for a message only while the window can be seen, and would then write it
// over the offer.
void MainStatusBar::MakeRoom(const QString& message) {
  setToolTip(ShownToolTip(message));  // whole, where the bar cuts it off
  offer_->setVisible(message.isEmpty() && offered_.isActive());
}

void MainStatusBar::ForgetSteps() {
  steps_.clear();
  EndOffer();
}

void MainStatusBar::EndOffer() {
  offered_.stop();
  offer_->hide();
}

void MainStatusBar::ShowOffer(const QString& sentence) {
  clearMessage();  // it would stand before the offer
  done_->setText(ShownText(sentence, kMostInTitle));
  takeBack_->setVisible(!steps_.empty());
  offered_.start(kOfferMs);
  offer_->show();
}

void MainStatusBar::OfferUndo(const QString& done, std::function<void()> undo) {
  if (steps_.size() == kMostSteps) steps_.erase(steps_.begin());
  steps_.push_back({done, std::move(undo)});
  ShowOffer(done);
}

void MainStatusBar::TakeBack() {
  if (steps_.empty()) return Show(Ui::tr("元に戻せる操作はありません。"));
  const Step step = std::move(steps_.back());
  steps_.pop_back();
  ShowOffer(Ui::tr("取り消しました：%1").arg(step.done));
  step.undo();
}

void MainStatusBar::Tell(const QString& sentence, bool isFailure) {
  const bool goesOn =
      currentMessage() == told_ && sinceTold_.isValid() && !sinceTold_.hasExpired(kSameCheckMs);
  if (!goesOn) {
    results_.clear();
    failures_.clear();
  }
  if (sentence.trimmed().isEmpty()) {
    if (isAsked_ && results_.isEmpty() && failures_.isEmpty()) {
      Show(Ui::tr("新しいメッセージはありません。"));
    }
    return;
  }
  QStringList& mine = isFailure ? failures_ : results_;
  if (!mine.contains(sentence)) mine.append(sentence);
  Show((results_ + failures_).join(Ui::tr(" ／ ")));
}

void MainStatusBar::BeginCheck(bool isAsked) {
  isAsked_ = isAsked;
  clearMessage();
}

void MainStatusBar::Show(const QString& sentences) {
  isAsked_ = false;
  told_ = ShownText(sentences, kMostInTitle);
  sinceTold_.start();
  showMessage(told_, failures_.isEmpty() ? kResultMs : 0);
}

void MainStatusBar::ShowWork(const QString& words) {
  work_->setText(ShownText(words, kMostInTitle));
  work_->setVisible(!words.isEmpty());
}

void MainStatusBar::ShowStatus(const QString& text, const QString& icon) {
  text_->setText(ShownText(text, kMostInTitle));
  icon_->setPixmap(icon.isEmpty() ? QPixmap() : Icon(icon).pixmap(16, 16));
  cancel_->setVisible(!icon.isEmpty());
  // While nothing goes on, sentences have all of the bar.
  text_->parentWidget()->setVisible(!text.isEmpty() || !icon.isEmpty());
}

}  // namespace vorn
