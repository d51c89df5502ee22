#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QStatusBar>
#include <QWidget>

namespace vorn::test {

/// Fails where a text is not fit to be shown: controls, marks of direction, blanks that nobody
/// sees, or no end.
inline void ExpectShowable(const QString& text, const std::string& where) {
  constexpr qsizetype kMost = 4000;
  EXPECT_LE(text.size(), kMost) << where;
  for (const uint code : text.toUcs4()) {
    const bool isControl = (code < 0x20 && code != '\n' && code != '\t') || code == 0x7F;
    const bool isUnseen = (code >= 0x80 && code < 0xA0) || code == 0x200B || code == 0x3164 ||
                          code == 0x2028 || code == 0x2029 || (code >= 0x202A && code <= 0x202E) ||
                          (code >= 0x2066 && code <= 0x2069);
    EXPECT_FALSE(isControl || isUnseen)
        << where << ": U+" << std::hex << code << " in " << text.toStdString();
  }
}

/// The texts that a widget itself shows, whatever it is.
inline QStringList TextsOf(const QWidget& widget) {
  QStringList texts{widget.windowTitle(), widget.accessibleName()};
  if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
    const bool mayBeMarkup =
        label->textFormat() != Qt::PlainText && Qt::mightBeRichText(label->text());
    EXPECT_FALSE(mayBeMarkup && label->text().contains(QStringLiteral("spy.test")))
        << label->text().toStdString();
    texts.append(label->text());
  }
  if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
    texts.append(button->text());
  if (const auto* box = qobject_cast<const QLineEdit*>(&widget)) texts.append(box->text());
  if (const auto* box = qobject_cast<const QPlainTextEdit*>(&widget))
    texts.append(box->toPlainText());
  if (const auto* bar = qobject_cast<const QStatusBar*>(&widget))
    texts.append(bar->currentMessage());
  const auto* view = qobject_cast<const QAbstractItemView*>(&widget);
  if (view == nullptr || view->model() == nullptr) return texts;
  const QModelIndexList items =
      view->model()->match(view->model()->index(0, 0), Qt::DisplayRole, QString(), -1,
                           Qt::MatchContains | Qt::MatchRecursive);
  for (const QModelIndex& item : items) {
    for (int column = 0; column < view->model()->columnCount(item.parent()); ++column) {
      const QModelIndex cell = item.siblingAtColumn(column);
      texts.append(cell.data(Qt::DisplayRole).toString());
      texts.append(cell.data(Qt::AccessibleTextRole).toString());
    }
  }
  return texts;
}

/// Every text that the windows show now.
inline QStringList ShownTexts() {
  QStringList texts;
  for (const QWidget* widget : QApplication::allWidgets()) {
    if (widget->isVisible()) texts += TextsOf(*widget);
  }
  texts.removeAll(QString());
  return texts;
}

}  // namespace vorn::test
