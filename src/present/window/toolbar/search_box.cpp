#include "present/window/toolbar/search_box.h"

#include <QKeyEvent>
#include <QLabel>
#include <QShortcut>
#include <QToolButton>

#include "kit/window/plain_text.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kSearchWidth = 360;

QString FoundWords(qint64 messages, bool orMore) {
  return (orMore ? Ui::tr("%1通以上") : Ui::tr("%1通")).arg(messages);
}

}  // namespace

SearchBox::SearchBox(QWidget* window, QWidget* parent)
    : QLineEdit(parent),
      lbFound_(PlainLabel({}, parent)),
      cmEverywhere_(AddChoice(QStringLiteral("cmEverywhere"), Ui::tr("すべてのフォルダ"),
                              Ui::tr("くずかごのほかのすべてのフォルダを検索します。"))),
      cmTexts_(
          AddChoice(QStringLiteral("cmTexts"), Ui::tr("本文も"),
                    Ui::tr("メッセージの本文も検索します。一通ずつ読むので時間がかかります。"))) {
  setObjectName(QStringLiteral("txSearch"));
  setAccessibleName(Ui::tr("フォルダの検索"));
  setPlaceholderText(Ui::tr("件名、アドレスを検索"));
  setToolTip(ShownToolTip(Ui::tr("Enterで検索し、Escでやめます。")));
  setClearButtonEnabled(true);
  setMaximumWidth(kSearchWidth);
  connect(this, &QLineEdit::returnPressed, this, &SearchBox::Wanted);
  connect(this, &QLineEdit::textChanged, this, [this](const QString& text) {
    for (QToolButton* choice : {cmEverywhere_, cmTexts_}) {
      choice->setVisible(!text.isEmpty());
      if (text.isEmpty()) choice->setChecked(false);
    }
    lbFound_->setVisible(!text.isEmpty() && !lbFound_->text().isEmpty());
    if (text.isEmpty()) Q_EMIT Emptied();
  });
  lbFound_->setObjectName(QStringLiteral("lbFound"));
  lbFound_->hide();
  auto* find = new QShortcut(QKeySequence::Find, window);
  find->setContext(Qt::WidgetWithChildrenShortcut);
  connect(find, &QShortcut::activated, this, [this] {
    setFocus();
    selectAll();
  });
}

QToolButton* SearchBox::AddChoice(const QString& name, const QString& text,
                                  const QString& toolTip) {
  auto* choice = new QToolButton(parentWidget());
  choice->setObjectName(name);
  choice->setText(text);
  choice->setToolTip(ShownToolTip(toolTip));
  choice->setCheckable(true);
  choice->hide();
  connect(choice, &QToolButton::clicked, this, &SearchBox::Wanted);
  return choice;
}

// From what is typed one goes down to what was found; Escape gives up both.
void SearchBox::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  if (key != Qt::Key_Escape && key != Qt::Key_Down) return QLineEdit::keyPressEvent(event);
  if (key == Qt::Key_Escape) clear();
  Q_EMIT Left();
  if (key == Qt::Key_Down) Q_EMIT RowWanted();
}

bool SearchBox::IsEverywhere() const {
  return cmEverywhere_->isChecked();
}

void SearchBox::SearchEverywhere() {
  cmEverywhere_->setChecked(true);
  Q_EMIT Wanted();
}

bool SearchBox::IsInTexts() const {
  return cmTexts_->isChecked();
}

void SearchBox::SearchTexts() {
  cmTexts_->setChecked(true);
  Q_EMIT Wanted();
}

void SearchBox::ShowFound(qint64 messages, bool orMore) {
  lbFound_->setText(messages < 0 ? QString() : FoundWords(messages, orMore));
  lbFound_->setVisible(messages >= 0 && !text().isEmpty());
}

}  // namespace vorn
