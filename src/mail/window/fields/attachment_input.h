#pragma once

#include <QMimeData>
#include <QObject>
#include <vector>

#include "mail/message_model.h"
#include "storage/context.h"

class QImage;
class QWidget;

namespace vorn {

class WorkingFolder;

/// Takes files in that are to be attached: by a dialog, by dropping and by pasting. The user is
/// told of those that cannot be.
class AttachmentInput : public QObject {
  Q_OBJECT

 public:
  /// Dialogs stand before `list`, with which it goes; pictures that are pasted go into `working`.
  AttachmentInput(Context& context, WorkingFolder& working, QWidget& list);

  /// Whether anything may be dropped and pasted.
  void SetEditable(bool editable) { editable_ = editable; }
  /// Whether data that is pasted or dropped holds what can be attached: files, or a picture that is
  /// not given as text too.
  bool Takes(const QMimeData& given) const;
  /// Attaches it; false when there is nothing.
  bool Take(const QMimeData& given);
  /// Attaches what is on the clipboard; false when there is nothing.
  bool Paste();
  void AddByDialog();
  /// Attaches files but those that cannot be read.
  void AddFiles(const QStringList& paths);

 Q_SIGNALS:
  void Added(const std::vector<ModelAttachment>& files);

 private:
  void AddPicture(const QImage& picture);
  void TellFault(const QString& text);

  Context& context_;
  WorkingFolder& working_;
  QWidget& list_;
  bool editable_ = false;
};

}  // namespace vorn
