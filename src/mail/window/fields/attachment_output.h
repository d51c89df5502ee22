#pragma once

#include <QObject>
#include <vector>

#include "mail/message_model.h"
#include "storage/context.h"

class QWidget;

namespace vorn {

class WorkingFolder;

/// Gives attachments out of a message: saves them, opens them with the system's program, takes
/// files out of archives. The user is asked before anything that may act, and told what failed.
class AttachmentOutput : public QObject {
  Q_OBJECT

 public:
  /// Dialogs stand before `list`, with which it goes; files that are opened go into `working`.
  AttachmentOutput(Context& context, WorkingFolder& working, QWidget& list);

  /// The stored message that attachments stand in which are not new.
  void SetSource(const QByteArray& source) { source_ = source; }
  bool IsArchive(const ModelAttachment& attachment) const;
  void Save(const ModelAttachment& attachment);
  /// Saves them in the folder that the user chooses, beside what is there.
  void SaveAll(const std::vector<ModelAttachment>& attachments);
  /// Saves those that the user chooses, of which some are chosen already.
  void SaveChosen(const std::vector<ModelAttachment>& attachments, const QList<int>& chosen);
  void Open(const ModelAttachment& attachment);
  void Unpack(const ModelAttachment& archive);

 Q_SIGNALS:
  /// A message is to be shown; it was written to `path`.
  void MessageOpened(const QString& path);

 private:
  bool MayOpen(const ModelAttachment& attachment);
  void Tell(const QString& text);

  Context& context_;
  WorkingFolder& working_;
  QWidget& list_;
  QByteArray source_;
};

}  // namespace vorn
