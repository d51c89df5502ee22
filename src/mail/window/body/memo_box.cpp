#include "mail/window/body/memo_box.h"

#include <QMouseEvent>
#include <QScrollBar>
#include <QTextBlock>

#include "mail/codec/text/text_links.h"

namespace vorn {
namespace {

constexpr int kLongestMemoLine = 4000;  // what is longer is no text to be read

// Readable on a light and on a dark sheet, and told apart by its sign as well.
QColor QuoteColor(const QPalette& palette) {
  constexpr int kMiddleGray = 128;
  const bool isDark = palette.color(QPalette::Base).lightness() < kMiddleGray;
  return isDark ? QColor(0x8f, 0xc4, 0xa0) : QColor(0x1d, 0x6b, 0x36);
}

}  // namespace

MemoBox::MemoBox(Taker taker) : taker_(std::move(taker)) {
  viewport()->setMouseTracking(true);
  connect(this, &QPlainTextEdit::textChanged, this, &MemoBox::MarkVisible);
  connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &MemoBox::MarkVisible);
}

// Only what is in sight is looked at, so that the length of a message does not matter. The marks
// lie over the text and are no part of it.
void MemoBox::MarkVisible() {
  QList<QTextEdit::ExtraSelection> marks;
  QTextCharFormat quote;
  quote.setForeground(QuoteColor(palette()));
  QTextCharFormat link;
  link.setForeground(palette().color(QPalette::Link));
  link.setFontUnderline(true);
  const auto mark = [&](int first, int length, const QTextCharFormat& format) {
    QTextCursor cursor(document());
    cursor.setPosition(first);
    cursor.setPosition(first + length, QTextCursor::KeepAnchor);
    marks.append({cursor, format});
  };
  const int bottom = viewport()->height();
  for (QTextBlock block = firstVisibleBlock(); block.isValid(); block = block.next()) {
    if (blockBoundingGeometry(block).translated(contentOffset()).top() > bottom) break;
    const QString text = block.text();
    if (text.size() > kLongestMemoLine) continue;
    if (text.startsWith(u'>')) mark(block.position(), static_cast<int>(text.size()), quote);
    for (const TextLink& found : FindTextLinks(text)) {
      mark(block.position() + static_cast<int>(found.first), static_cast<int>(found.length), link);
    }
  }
  setExtraSelections(marks);
}

// Nothing but what lies under the place: a click behind the end of a line is none on its last word.
QUrl MemoBox::LinkAt(const QPoint& place) const {
  const QTextCursor cursor = cursorForPosition(place);
  const QTextBlock block = cursor.block();
  if (block.length() > kLongestMemoLine) return {};
  for (const TextLink& found : FindTextLinks(block.text())) {
    QTextCursor end(block);
    end.setPosition(block.position() + static_cast<int>(found.first + found.length));
    const bool isInside = cursor.positionInBlock() >= found.first &&
                          cursor.positionInBlock() <= found.first + found.length;
    const bool isBehind =
        cursor.position() == end.position() && place.x() > cursorRect(end).right();
    if (isInside && !isBehind) return found.url;
  }
  return {};
}

void MemoBox::resizeEvent(QResizeEvent* event) {
  TextBox::resizeEvent(event);
  MarkVisible();
}

void MemoBox::mouseMoveEvent(QMouseEvent* event) {
  TextBox::mouseMoveEvent(event);
  const bool follows = isReadOnly() || event->modifiers().testFlag(Qt::ControlModifier);
  const bool isLink = follows && !LinkAt(event->position().toPoint()).isEmpty();
  viewport()->setCursor(isLink ? Qt::PointingHandCursor : Qt::IBeamCursor);
}

void MemoBox::mouseReleaseEvent(QMouseEvent* event) {
  TextBox::mouseReleaseEvent(event);
  const bool follows = isReadOnly() || event->modifiers().testFlag(Qt::ControlModifier);
  if (event->button() != Qt::LeftButton || !follows || textCursor().hasSelection()) return;
  const QUrl url = LinkAt(event->position().toPoint());
  if (!url.isEmpty()) Q_EMIT LinkClicked(url);
}

}  // namespace vorn
