#include "frame/window/notices/status_bar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPaintEvent>
#include <QSet>
#include <QShortcut>
#include <QStyleOption>
#include <QStylePainter>
#include <QToolButton>
#include <utility>

#include "kit/window/elided_sentence.h"
#include "kit/window/eliding_label.h"
#include "kit/window/icons.h"
#include "kit/window/plain_text.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kPanelWidth = 220;
constexpr int kOfferMs = 30000;
constexpr int kLongOfferMs = 300000;
constexpr size_t kMostSteps = 20;
constexpr int kResultMs = 10000;
constexpr int kSameCheckMs = 20000;
constexpr int kEdge = 6;  // around a message, as the toolkit has it

}  // namespace

MainStatusBar::MainStatusBar(QWidget* parent)
    : QStatusBar(parent),
      icon_(PlainLabel()),
      work_(new ElidingLabel(QStringLiteral("panelWork"), ElidingLabel::Room::ForItsText)),
      text_(PlainLabel()),
      unit_(PlainLabel(QStringLiteral("%"))),
      cancel_(new QToolButton),
      chosen_(PlainLabel()),
      panel_(new QWidget),
      offer_(new QWidget),
      done_(new ElidingLabel(QStringLiteral("lbDone"), ElidingLabel::Room::AllThereIs,
                             ElidingLabel::Loses::Names)),
      takeBack_(new QToolButton) {
  setObjectName(QStringLiteral("sbStatus"));
  if (parent != nullptr) parent->installEventFilter(this);
  chosen_->setObjectName(QStringLiteral("lbChosen"));
  addPermanentWidget(chosen_);
  chosen_->hide();
  BuildPanel();
  BuildOffer();
}

void MainStatusBar::BuildPanel() {
  work_->hide();
  text_->setObjectName(QStringLiteral("panelSession"));
  unit_->setObjectName(QStringLiteral("panelUnit"));
  unit_->hide();
  cancel_->setText(Ui::tr("中止"));
  cancel_->setToolTip(Ui::tr("送受信を中止します。"));
  cancel_->setAutoRaise(true);
  cancel_->hide();
  connect(cancel_, &QToolButton::clicked, this, &MainStatusBar::CancelClicked);
  panel_->setMinimumWidth(kPanelWidth);
  auto* layout = new QHBoxLayout(panel_);
  layout->setContentsMargins(4, 0, 4, 0);
  layout->addWidget(icon_);
  layout->addWidget(work_, 1);
  layout->addWidget(text_);
  layout->addWidget(unit_);
  layout->addWidget(cancel_);
  addPermanentWidget(panel_);
  panel_->hide();
}

void MainStatusBar::ShowForAWhile(const QString& sentence) {
  showMessage(sentence, kResultMs);
}

void MainStatusBar::ShowChosen(int count) {
  chosen_->setText(Ui::tr("%1通を選択").arg(count));
  chosen_->setVisible(count > 1);
}

void MainStatusBar::BuildOffer() {
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
  layout->addWidget(done_, 1);
  done_->setMinimumHeight(takeBack_->sizeHint().height());  // without it the bar would be lower
  addWidget(offer_, 1);
  offer_->hide();
  offered_.setSingleShot(true);
  connect(&offered_, &QTimer::timeout, this, &MainStatusBar::HideOffer);
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
  HideOffer();
}

void MainStatusBar::EndOffer() {
  if (lasts_ == OfferLasts::WhileAtIt) HideOffer();
}

void MainStatusBar::HideOffer() {
  offered_.stop();
  offer_->hide();
}

void MainStatusBar::ShowOffer(const QString& sentence, OfferLasts lasts) {
  clearMessage();  // it would stand before the offer
  done_->Say({}, sentence);
  takeBack_->setVisible(!steps_.empty());
  lasts_ = lasts;
  offered_.start(lasts == OfferLasts::Minutes ? kLongOfferMs : kOfferMs);
  offer_->show();
}

void MainStatusBar::OfferUndo(const QString& done, std::function<void()> undo, OfferLasts lasts) {
  if (steps_.size() == kMostSteps) steps_.erase(steps_.begin());
  steps_.push_back({done, std::move(undo)});
  ShowOffer(done, lasts);
}

void MainStatusBar::TakeBack() {
  if (steps_.empty()) return Show(Ui::tr("元に戻せる操作はありません。"));
  const Step step = std::move(steps_.back());
  steps_.pop_back();
  ShowOffer(Ui::tr("取り消し：%1").arg(step.done), OfferLasts::WhileAtIt);
  step.undo();
}

void MainStatusBar::Tell(const QString& sentence, bool isFailure, const QString& about) {
  const bool goesOn = currentMessage() == check_.shown && check_.sinceShown.isValid() &&
                      !check_.sinceShown.hasExpired(kSameCheckMs);
  if (!goesOn) {
    check_.results.clear();
    check_.failures.clear();
  }
  if (sentence.trimmed().isEmpty()) {
    if (check_.isAsked && check_.results.isEmpty() && check_.failures.isEmpty()) {
      Show(Ui::tr("新しいメッセージはありません。"));
    }
    return;
  }
  const std::pair result(about, sentence);
  if (isFailure && !check_.failures.contains(sentence)) check_.failures.append(sentence);
  if (!isFailure && !check_.results.contains(result)) check_.results.append(result);
  Show((Results() + check_.failures).join(Ui::tr(" ／ ")));
}

QStringList MainStatusBar::Results() const {
  QSet<QString> names;
  for (const auto& result : check_.results) {
    if (!result.first.isEmpty()) names.insert(result.first);
  }
  QStringList sentences;
  for (const auto& [about, sentence] : check_.results) {
    const bool isNamed = names.size() > 1 && !about.isEmpty();
    sentences.append((isNamed ? about + QStringLiteral(": ") : QString()) + sentence);
  }
  return sentences;
}

void MainStatusBar::BeginCheck(bool isAsked) {
  check_.isAsked = isAsked;
  clearMessage();
}

void MainStatusBar::Show(const QString& sentences) {
  check_.isAsked = false;
  check_.shown = ShownText(sentences, kMostInTitle);
  check_.sinceShown.start();
  showMessage(check_.shown, check_.failures.isEmpty() ? kResultMs : 0);
}

void MainStatusBar::ShowWork(const QString& words) {
  work_->Say({}, words);
}

void MainStatusBar::ShowStatus(const QString& text, const QString& icon) {
  text_->setText(ShownText(text, kMostInTitle));
  unit_->setVisible(icon.startsWith(u"mail"));  // then the text is how far it is
  icon_->setPixmap(icon.isEmpty() ? QPixmap() : Icon(icon).pixmap(16, 16));
  cancel_->setVisible(!icon.isEmpty());
  // While nothing goes on, sentences have all of the bar.
  panel_->setVisible(!text.isEmpty() || !icon.isEmpty());
}

// Beside a long name there is room for what other accounts brought.
void MainStatusBar::resizeEvent(QResizeEvent* event) {
  QStatusBar::resizeEvent(event);
  panel_->setMaximumWidth(qMax(kPanelWidth, width() * 2 / 3));
}

// The toolkit cuts a message off in the midst of a letter.
void MainStatusBar::paintEvent(QPaintEvent* event) {
  if (currentMessage().isEmpty()) return QStatusBar::paintEvent(event);
  QStylePainter painter(this);
  QStyleOption option;
  option.initFrom(this);
  painter.drawPrimitive(QStyle::PE_PanelStatusBar, option);
  int end = width();
  for (const QWidget* beside : {static_cast<QWidget*>(chosen_), panel_}) {
    if (beside->isVisible()) end = qMin(end, beside->x());
  }
  const QRect room(kEdge, 0, end - 2 * kEdge, height());
  painter.drawText(room, Qt::AlignLeading | Qt::AlignVCenter | Qt::TextSingleLine,
                   ElidedSentence(currentMessage(), fontMetrics(), room.width()));
}

}  // namespace vorn
