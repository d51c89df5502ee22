#pragma once

#include <functional>

#include "kit/window/text_box.h"

namespace vorn {

/// The text of a message. What is pasted into it goes to an owner first, who may take what is no
/// text.
class MemoBox : public TextBox {
 public:
  /// True when it took the data.
  using Taker = std::function<bool(const QMimeData&)>;

  explicit MemoBox(Taker taker) : taker_(std::move(taker)) {}

 protected:
  bool canInsertFromMimeData(const QMimeData* given) const override {
    return given->hasUrls() || given->hasImage() || QPlainTextEdit::canInsertFromMimeData(given);
  }
  void insertFromMimeData(const QMimeData* given) override {
    if (!taker_(*given)) TextBox::insertFromMimeData(given);
  }

 private:
  Taker taker_;
};

}  // namespace vorn
