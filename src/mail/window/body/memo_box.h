#pragma once

#include <QUrl>
#include <functional>

#include "kit/window/text_box.h"

namespace vorn {

/// The text of a message. What is pasted into it goes to an owner first, who may take what is no
/// text. Quoted lines have a colour of their own, and addresses are links: of a message that is
/// read they are clicked, of one that is written with the control key.
class MemoBox : public TextBox {
  Q_OBJECT

 public:
  /// True when it took the data.
  using Taker = std::function<bool(const QMimeData&)>;

  explicit MemoBox(Taker taker);

 Q_SIGNALS:
  /// "http", "https" or "mailto".
  void LinkClicked(const QUrl& url);

 protected:
  bool canInsertFromMimeData(const QMimeData* given) const override {
    return given->hasUrls() || given->hasImage() || QPlainTextEdit::canInsertFromMimeData(given);
  }
  void insertFromMimeData(const QMimeData* given) override {
    if (!taker_(*given)) TextBox::insertFromMimeData(given);
  }
  void resizeEvent(QResizeEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  void MarkVisible();
  QUrl LinkAt(const QPoint& place) const;

  Taker taker_;
};

}  // namespace vorn
