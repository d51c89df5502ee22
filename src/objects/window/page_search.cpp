#include "objects/window/page_search.h"

#include <QAbstractButton>
#include <QKeyEvent>
#include <QLabel>
#include <QScrollArea>
#include <QTabWidget>
#include <QToolTip>

#include "kit/window/access_names.h"
#include "storage/ui.h"

namespace vorn {
namespace {

// What an entry says, without the letter of its key.
QString WordsOf(const QWidget& entry) {
  const auto* label = qobject_cast<const QLabel*>(&entry);
  const auto* button = qobject_cast<const QAbstractButton*>(&entry);
  const QString text = label != nullptr    ? label->text()
                       : button != nullptr ? button->text()
                                           : QString();
  return WithoutKey(text);
}

void Mark(QWidget& entry, bool isFound) {
  QFont font = entry.font();
  font.setBold(isFound);
  font.setUnderline(isFound);  // not by the weight alone
  entry.setFont(font);
}

}  // namespace

PageSearch::PageSearch(QTabWidget& pages) : pages_(pages) {
  setObjectName(QStringLiteral("txFindSetting"));
  setAccessibleName(Ui::tr("設定を探す"));
  setPlaceholderText(Ui::tr("設定を探す（Ctrl+F）"));
  setClearButtonEnabled(true);
  connect(this, &QLineEdit::textChanged, this, &PageSearch::Find);
}

void PageSearch::Find(const QString& text) {
  for (QWidget* entry : found_) Mark(*entry, false);
  found_.clear();
  at_ = -1;
  const QString words = text.trimmed();
  for (int i = 0; i < pages_.count() && !words.isEmpty(); ++i) {
    for (auto* entry : pages_.widget(i)->findChildren<QWidget*>()) {
      if (WordsOf(*entry).contains(words, Qt::CaseInsensitive)) found_.append(entry);
    }
  }
  for (QWidget* entry : found_) Mark(*entry, true);
  if (!found_.isEmpty()) Show(*found_.first());
  const bool isInVain = found_.isEmpty() && !words.isEmpty();
  const QString hint = isInVain ? Ui::tr("その言葉のある設定は見つかりません。") : QString();
  setAccessibleDescription(hint);
  QToolTip::showText(mapToGlobal(rect().bottomLeft()), hint, this);
}

void PageSearch::Show(QWidget& entry) {
  for (int i = 0; i < pages_.count(); ++i) {
    if (!pages_.widget(i)->isAncestorOf(&entry)) continue;
    pages_.setCurrentIndex(i);
    if (auto* area = qobject_cast<QScrollArea*>(pages_.widget(i)))
      area->ensureWidgetVisible(&entry);
  }
}

QWidget* PageSearch::FieldOf(QWidget& entry) {
  const auto* label = qobject_cast<const QLabel*>(&entry);
  return label != nullptr && label->buddy() != nullptr ? label->buddy() : &entry;
}

void PageSearch::GoOn() {
  if (found_.isEmpty()) return;
  at_ = (at_ + 1) % static_cast<int>(found_.size());
  Show(*found_[at_]);
  if (QWidget* field = FieldOf(*found_[at_]); field->isEnabled()) field->setFocus();
}

// Enter is the window's OK anywhere else.
void PageSearch::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) return GoOn();
  if (event->key() == Qt::Key_Escape && !text().isEmpty()) return clear();
  QLineEdit::keyPressEvent(event);
}

}  // namespace vorn
