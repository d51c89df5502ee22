#pragma once

#include <QMimeData>
#include <QPlainTextEdit>

namespace vorn {

/// A box of several lines that can be edited. The toolkit's own reads the first form of what is
/// pasted also where there is none, as in a clipboard whose owner has gone, and crashes.
class TextBox : public QPlainTextEdit {
 public:
  using QPlainTextEdit::QPlainTextEdit;

 protected:
  void insertFromMimeData(const QMimeData* given) override {
    if (!given->formats().isEmpty()) QPlainTextEdit::insertFromMimeData(given);
  }
};

}  // namespace vorn
