#pragma once

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "kit/window/plain_text.h"

namespace vorn {

/// A line above a message that says something of it, with a button where there is anything to do.
class NoticeBar : public QFrame {
 public:
  explicit NoticeBar(const QString& name, QPushButton* button = nullptr)
      : label_(PlainLabel()), button_(button) {
    setObjectName(name);
    setFrameShape(QFrame::StyledPanel);
    label_->setWordWrap(true);
    auto* layout = new QHBoxLayout(this);
    QMargins margins = layout->contentsMargins();
    margins.setTop(kMargin);
    margins.setBottom(kMargin);
    layout->setContentsMargins(margins);
    layout->addWidget(label_, 1);
    if (button != nullptr) layout->addWidget(button);
    hide();
  }

  /// Null where there is nothing to do.
  QPushButton* Button() const { return button_; }
  /// Hidden where there is nothing to say.
  void Say(const QString& text) {
    label_->setText(ShownText(text));
    setVisible(!text.isEmpty());
  }

 private:
  static constexpr int kMargin = 2;  // the room is the message's

  QLabel* label_;
  QPushButton* button_;
};

}  // namespace vorn
