#pragma once

#include <QLabel>

#include "kit/window/elided_sentence.h"
#include "kit/window/plain_text.h"
#include "storage/base/shown_text.h"

namespace vorn {

/// A line of foreign text that ends in "…" where its place ends, and widens nothing. Its tooltip
/// and its accessible name have the whole.
class ElidingLabel : public QLabel {
 public:
  /// Whether it wants as much room as there is, or as its text needs; it does with less.
  enum class Room { AllThereIs, ForItsText };

  /// What goes first where there is too little room: the end, or the middles of the names in a
  /// sentence of the program (`ElidedSentence`).
  enum class Loses { End, Names };

  explicit ElidingLabel(const QString& name, Room room = Room::AllThereIs, Loses loses = Loses::End)
      : loses_(loses) {
    setObjectName(name);
    setTextFormat(Qt::PlainText);
    const bool takesAll = room == Room::AllThereIs;
    setSizePolicy(takesAll ? QSizePolicy::Ignored : QSizePolicy::Preferred, QSizePolicy::Preferred);
  }

  QSize sizeHint() const override {
    return {fontMetrics().horizontalAdvance(whole_) + 1, QLabel::sizeHint().height()};
  }
  QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

  /// Hidden where there is no text. `caption` stands before it.
  void Say(const QString& caption, const QString& text) {
    SayShown(caption, ShownText(text).simplified());
  }
  /// The same for what is such a text already, perhaps with marks that keep its pieces apart.
  void SayShown(const QString& caption, const QString& shown) {
    whole_ = caption + shown;
    const QString plain = WithoutDirectionMarks(shown);
    setToolTip(ShownToolTip(plain));
    setAccessibleName(caption + plain);
    setVisible(!shown.isEmpty());
    updateGeometry();
    Elide();
  }

 protected:
  void resizeEvent(QResizeEvent* event) override {
    QLabel::resizeEvent(event);
    Elide();
  }

 private:
  void Elide() {
    setText(loses_ == Loses::Names ? ElidedSentence(whole_, fontMetrics(), width())
                                   : fontMetrics().elidedText(whole_, Qt::ElideRight, width()));
  }

  Loses loses_;
  QString whole_;
};

}  // namespace vorn
