#include "mail/window/body/find_bar.h"
#include "kit/window/plain_text.h"
#include "storage/ui.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QToolButton>

namespace vorn {
namespace {

QString NotFoundWords() {
  return Ui::tr("見つかりません。");
}

}  // namespace

FindBar::FindBar(QWidget* parent) : QWidget(parent), box_(new QLineEdit), result_(PlainLabel()) {
  setObjectName(QStringLiteral("frFind"));
  box_->setObjectName(QStringLiteral("txFind"));
  box_->installEventFilter(this);
  auto* label = PlainLabel(Ui::tr("検索(&I)"));
  label->setBuddy(box_);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(4, 2, 4, 2);
  layout->addWidget(label);
  layout->addWidget(box_, 1);
  result_->setObjectName(QStringLiteral("lbFound"));
  // The buttons stay in their place whatever it says.
  result_->setMinimumWidth(result_->fontMetrics().horizontalAdvance(NotFoundWords()));
  layout->addWidget(result_);
  connect(box_, &QLineEdit::textChanged, result_, &QLabel::clear);
  const auto button = [&](const QString& text, auto clicked) {
    auto* tool = new QToolButton;
    tool->setText(text);
    connect(tool, &QToolButton::clicked, this, clicked);
    layout->addWidget(tool);
  };
  button(Ui::tr("前へ"), [this] { Find(true); });
  button(Ui::tr("次へ"), [this] { Find(false); });
  button(Ui::tr("閉じる"), [this] {
    hide();
    Q_EMIT Closed();
  });
  hide();
}

void FindBar::Open() {
  show();
  box_->setFocus();
  box_->selectAll();
}

void FindBar::ShowFound(bool found) {
  result_->setText(found ? QString() : NotFoundWords());
}

void FindBar::Find(bool backward) {
  if (!box_->text().isEmpty()) Q_EMIT FindWanted(box_->text(), backward);
}

bool FindBar::eventFilter(QObject*, QEvent* event) {
  // Keys of the box must not reach the window's own shortcuts, such as Escape.
  if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride) return false;
  const auto* key = static_cast<QKeyEvent*>(event);
  const bool isEnter = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
  if (!isEnter && key->key() != Qt::Key_Escape) return false;
  event->accept();
  if (event->type() == QEvent::ShortcutOverride) return true;
  if (isEnter) {
    Find(key->modifiers().testFlag(Qt::ShiftModifier));
  } else {
    hide();
    Q_EMIT Closed();
  }
  return true;
}

}  // namespace vorn
