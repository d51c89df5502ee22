#include "mail/window/fields/attachment_list.h"

#include <QContextMenuEvent>
#include <QDir>
#include <QFileIconProvider>
#include <QMenu>
#include <algorithm>
#include <utility>

#include "kit/window/plain_text.h"
#include "mail/attachment_files.h"
#include "mail/codec/mime/zip_files.h"
#include "mail/window/fields/attachment_input.h"
#include "mail/window/fields/attachment_output.h"
#include "objects/object_types.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr qsizetype kMostInRow = 48;  // what is beside the edge of the list is not seen

// What a user should know before opening it.
QString NoteOn(const ModelAttachment& attachment, const QByteArray& source) {
  if (attachment.inner) {
    return Ui::tr("、") + Ui::tr("%1の中").arg(ShownFileName(attachment.record.name));
  }
  // One that was added may be large, and its owner knows what is in it.
  if (attachment.isNew || !IsNamedArchive(attachment)) return {};
  const std::vector<ZipEntry> files = ListZip(ReadAttachment(attachment, source).ValueOr({}));
  const bool isEncrypted = std::any_of(files.begin(), files.end(),
                                       [](const ZipEntry& file) { return file.isEncrypted; });
  return isEncrypted ? Ui::tr("、パスワード付き") : QString();
}

// When a file had been changed last, for when it is asked whether it is still the same.
void NoteTime(QHash<QString, QDateTime>& times, const QString& path) {
  times[path] = QFileInfo(path).lastModified();
}

}  // namespace

AttachmentList::AttachmentList(Context& context, QWidget* parent)
    : QListWidget(parent),
      working_(context),
      input_(new AttachmentInput(context, working_, *this)),
      output_(new AttachmentOutput(context, working_, *this)) {
  setObjectName(QStringLiteral("lvClip"));
  setAccessibleName(Ui::tr("添付ファイル"));
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setFlow(QListView::LeftToRight);
  setWrapping(true);
  setResizeMode(QListView::Adjust);
  setSpacing(2);
  connect(this, &QListWidget::itemActivated, this, &AttachmentList::OpenCurrent);
  connect(input_, &AttachmentInput::Added, this, &AttachmentList::Add);
  connect(output_, &AttachmentOutput::MessageOpened, this, &AttachmentList::MessageOpened);
}

void AttachmentList::Show(const std::vector<ModelAttachment>& attachments, const QByteArray& source,
                          bool editable, const QSet<qsizetype>& shownImages) {
  attachments_ = attachments;
  shownImages_ = shownImages;
  folded_ = 0;
  SortShown();
  shown_.clear();
  for (const ModelAttachment& attachment : attachments_) {
    if (attachment.isNew) NoteTime(shown_, attachment.path);
  }
  source_ = source;
  output_->SetSource(source);
  editable_ = editable;
  input_->SetEditable(editable);
  Fill();
}

// Files stand first, and what the HTML part shows behind them. Gives how many those are.
size_t AttachmentList::SortShown() {
  const auto shown = std::stable_partition(attachments_.begin(), attachments_.end(),
                                           [this](const ModelAttachment& attachment) {
                                             return attachment.isNew || attachment.inner ||
                                                    !shownImages_.contains(attachment.record.first);
                                           });
  return static_cast<size_t>(std::distance(shown, attachments_.end()));
}

void AttachmentList::FoldShown(bool isHtmlInFront) {
  const size_t count = SortShown();
  const size_t folded = isHtmlInFront ? count : 0;
  if (std::exchange(folded_, folded) != folded) Fill();
}

// The entry of those that are folded.
bool AttachmentList::IsFold(int row) const {
  return folded_ > 0 && static_cast<size_t>(row) == attachments_.size() - folded_;
}

void AttachmentList::Fill() {
  clear();
  const QFileIconProvider icons;
  for (size_t i = 0; i < attachments_.size() - folded_; ++i) {
    const ModelAttachment& attachment = attachments_[i];
    const qint64 size = AttachmentSize(attachment, source_);
    auto* item =
        new QListWidgetItem(icons.icon(QFileIconProvider::File),
                            ShownFileName(attachment.name, kMostInRow) + Ui::tr("（") +
                                SizeText(size) + NoteOn(attachment, source_) + Ui::tr("）"),
                            this);
    item->setToolTip(ShownToolTip(attachment.isNew ? attachment.path : attachment.type));
  }
  if (folded_ > 0) addItem(Ui::tr("本文中の画像 %1個").arg(folded_));
}

QStringList AttachmentList::ChangedFiles() const {
  QStringList names;
  for (const ModelAttachment& attachment : attachments_) {
    const QFileInfo file(attachment.path);  // one that is gone is told when it is read
    const bool isChanged =
        attachment.isNew && file.exists() && file.lastModified() != shown_.value(attachment.path);
    if (isChanged) names.append(attachment.name);
  }
  return names;
}

void AttachmentList::AcceptChanges() {
  for (const ModelAttachment& attachment : attachments_) {
    if (attachment.isNew) NoteTime(shown_, attachment.path);
  }
  Fill();
}

void AttachmentList::Add(const std::vector<ModelAttachment>& files) {
  for (const ModelAttachment& file : files) {
    NoteTime(shown_, file.path);
    attachments_.push_back(file);
  }
  Fill();
  Q_EMIT Edited();
}

void AttachmentList::SaveByDialog() {
  QList<int> chosen;
  for (int i = 0; i < count(); ++i) {
    if (!item(i)->isSelected()) continue;
    const int end = IsFold(i) ? static_cast<int>(attachments_.size()) : i + 1;
    for (int meant = i; meant < end; ++meant) chosen.append(meant);
  }
  output_->SaveChosen(std::vector(attachments_), chosen);
}

void AttachmentList::OpenCurrent() {
  const int row = currentRow();
  if (IsFold(row)) {
    FoldShown(false);
    setCurrentRow(row);
  } else if (row >= 0) {
    output_->Open(At(row));
  }
}

// A copy: the list may show another message while the user is asked.
ModelAttachment AttachmentList::At(int row) const {
  return attachments_[static_cast<size_t>(row)];
}

// The row of the archive that is chosen, or of the only one; -1 when there is none.
int AttachmentList::ArchiveRow() const {
  const auto isArchive = [this](int row) { return output_->IsArchive(At(row)); };
  if (currentRow() >= 0 && isArchive(currentRow())) return currentRow();
  for (int row = 0; row < count(); ++row) {
    if (isArchive(row)) return row;
  }
  return -1;
}

void AttachmentList::UnpackCurrent() {
  const int row = ArchiveRow();
  if (row >= 0) output_->Unpack(At(row));
}

void AttachmentList::RemoveSelected() {
  if (!editable_) return;
  QList<int> rows;
  for (const QModelIndex& index : selectionModel()->selectedIndexes()) rows.append(index.row());
  std::sort(rows.begin(), rows.end(), std::greater<>());
  for (const int row : rows) attachments_.erase(attachments_.begin() + row);
  if (rows.isEmpty()) return;
  Fill();
  Q_EMIT Edited();
}

void AttachmentList::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Paste) && input_->Paste()) return;
  if (event->key() == Qt::Key_Delete) {
    RemoveSelected();
    return;
  }
  QListWidget::keyPressEvent(event);
}

void AttachmentList::contextMenuEvent(QContextMenuEvent* event) {
  QMenu menu;
  const bool any = currentRow() >= 0;
  menu.addAction(Ui::tr("開く(&O)"), this, &AttachmentList::OpenCurrent)->setEnabled(any);
  const QList<QListWidgetItem*> meant = selectedItems();
  menu.addAction(Ui::tr("保存(&S).."), this,
                 [this, meant] {
                   if (meant.size() != 1 || IsFold(row(meant.first()))) return SaveByDialog();
                   output_->Save(At(row(meant.first())));
                 })
      ->setEnabled(any);
  if (attachments_.size() > 1) {
    menu.addAction(Ui::tr("すべて保存(&V).."), this,
                   [this] { output_->SaveAll(std::vector(attachments_)); });
  }
  if (HasArchive()) {
    menu.addAction(Ui::tr("中のファイルを取り出す(&X).."), this, &AttachmentList::UnpackCurrent);
  }
  if (editable_) {
    menu.addAction(Ui::tr("追加(&A).."), input_, &AttachmentInput::AddByDialog);
    menu.addAction(Ui::tr("外す(&D)"), this, &AttachmentList::RemoveSelected)->setEnabled(any);
  }
  menu.exec(event->globalPos());
}

}  // namespace vorn
