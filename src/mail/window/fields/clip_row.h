#pragma once

#include <QWidget>

#include "mail/window/fields/attachment_list.h"

class QToolButton;

namespace vorn {

/// A message's attachments in one line, with a button that gives all of them lines of their own.
class ClipRow : public QWidget {
 public:
  explicit ClipRow(Context& context);

  AttachmentList& Clips() const { return *clips_; }
  /// Where those lines are, to be laid out elsewhere; empty until the button is pressed.
  QWidget* Lines() const { return lines_; }
  /// See `AttachmentList::Show`. Hidden where there are none.
  void Show(const std::vector<ModelAttachment>& attachments, const QByteArray& source,
            const QSet<qsizetype>& shownImages);

 private:
  void Open(bool open);

  AttachmentList* clips_;
  QToolButton* all_;
  QWidget* lines_;
};

}  // namespace vorn
