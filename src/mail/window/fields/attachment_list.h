#pragma once

#include <QDateTime>
#include <QHash>
#include <QListWidget>
#include <QSet>
#include <vector>

#include "mail/message_model.h"
#include "mail/working_folder.h"
#include "storage/context.h"

namespace vorn {

class AttachmentInput;
class AttachmentOutput;

/// The list "lvClip": a message's attachments with their sizes. An `AttachmentInput` takes files
/// in, an `AttachmentOutput` gives attachments out. Working files go with the list.
class AttachmentList : public QListWidget {
  Q_OBJECT

 public:
  explicit AttachmentList(Context& context, QWidget* parent = nullptr);

  /// `source` is the stored message that the old ones stand in, `shownImages` those that its HTML
  /// shows (`ShownImages`).
  void Show(const std::vector<ModelAttachment>& attachments, const QByteArray& source,
            bool editable, const QSet<qsizetype>& shownImages = {});
  /// Whether the message's HTML is in front: the pictures that it shows stand last then, in one
  /// entry that opens to them.
  void FoldShown(bool isHtmlInFront);
  const std::vector<ModelAttachment>& Attachments() const { return attachments_; }
  /// The names of the added files that are not as they were when they were added, or accepted.
  QStringList ChangedFiles() const;
  /// Shows added files as they are now, which the user wants to send.
  void AcceptChanges();
  /// What takes files in.
  AttachmentInput& Input() const { return *input_; }

  // Commands, with their dialogs.
  void SaveByDialog();
  void OpenCurrent();
  /// Takes files out of the archive that is chosen, or of the first one.
  void UnpackCurrent();
  bool HasArchive() const { return ArchiveRow() >= 0; }
  void RemoveSelected();

 Q_SIGNALS:
  void Edited();
  /// A message among the files is to be shown; it was written to `path`.
  void MessageOpened(const QString& path);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  void Add(const std::vector<ModelAttachment>& files);
  void Fill();
  ModelAttachment At(int row) const;
  size_t SortShown();
  bool IsFold(int row) const;
  int ArchiveRow() const;

  std::vector<ModelAttachment> attachments_;
  QByteArray source_;
  QHash<QString, QDateTime> shown_;  // when the added files had last been changed, by path
  QSet<qsizetype> shownImages_;
  size_t folded_ = 0;  // how many at the end stand in one entry
  bool editable_ = false;
  WorkingFolder working_;
  AttachmentInput* input_;
  AttachmentOutput* output_;
};

}  // namespace vorn
