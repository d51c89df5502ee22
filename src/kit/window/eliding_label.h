#pragma once

#include <QLabel>

#include "kit/window/plain_text.h"

namespace vorn {

/// A line of foreign text that ends in "…" where its place ends, and widens nothing. Its tooltip
/// and its accessible name have the whole.
class ElidingLabel : public QLabel {
 public:
  explicit ElidingLabel(const QString& name) {
    setObjectName(name);
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  }

  /// Hidden where there is no text. `caption` stands before it.
  void Say(const QString& caption, const QString& text) {
    whole_ = caption + ShownText(text).simplified();
    setToolTip(ShownToolTip(text));
    setAccessibleName(whole_);
    setVisible(!text.isEmpty());
    Elide();
  }

 protected:
  void resizeEvent(QResizeEvent* event) override {
    QLabel::resizeEvent(event);
    Elide();
  }

 private:
  void Elide() { setText(fontMetrics().elidedText(whole_, Qt::ElideRight, width())); }

  QString whole_;
};

}  // namespace vorn
