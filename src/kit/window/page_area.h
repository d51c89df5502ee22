#pragma once

#include <QScrollArea>
#include <QScrollBar>

namespace vorn {

/// A page that can be smaller than its controls need, on a small screen with large letters, but has
/// room for all of them where there is some.
class PageArea : public QScrollArea {
 public:
  explicit PageArea(QWidget* page) {
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setWidget(page);
  }
  QSize sizeHint() const override {
    const QSize page = widget()->sizeHint().expandedTo(widget()->minimumSizeHint());
    return page + QSize(verticalScrollBar()->sizeHint().width(), 0);
  }
};

}  // namespace vorn
