#include "mail/window/attachment_list.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDesktopServices>
#include <QDir>
#include <QFileIconProvider>
#include <QImage>
#include <QMainWindow>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QSaveFile>
#include <QStatusBar>
#include <QUrl>

#include "auxiliary/window/console_window.h"
#include "kit/window/plain_text.h"
#include "kit/window/progress_window.h"
#include "mail/attachment_files.h"
#include "mail/codec/mime_codec.h"
#include "mail/codec/zip_files.h"
#include "mail/compose_message.h"
#include "mail/file_kind.h"
#include "mail/window/unpacking.h"
#include "objects/object_types.h"
#include "storage/file_origin.h"
#include "storage/private_files.h"
#include "storage/ui.h"
#include "storage/window/file_dialogs.h"

namespace vorn {
namespace {

constexpr int kClipsToldMs = 10000;
constexpr qsizetype kMostInRow = 48;  // what is beside the edge of the list is not seen

// In the window's status bar, which is there as long as it says something where the window has none
// of its own.
void TellDone(const QWidget& asked, const QString& sentence) {
  auto* window = qobject_cast<QMainWindow*>(asked.window());
  if (window == nullptr) return;
  const bool isOwn = window->findChild<QStatusBar*>() != nullptr;
  QStatusBar* bar = window->statusBar();
  if (!isOwn) {
    bar->setSizeGripEnabled(false);
    QObject::connect(bar, &QStatusBar::messageChanged, bar,
                     [bar](const QString& shown) { bar->setVisible(!shown.isEmpty()); });
  }
  bar->showMessage(ShownText(sentence), kClipsToldMs);
}

QStringList LocalFiles(const QMimeData& data) {
  QStringList paths;
  for (const QUrl& url : data.urls()) {
    if (url.isLocalFile()) paths.append(url.toLocalFile());
  }
  return paths;
}

// The address of a message (RFC 2392).
QString MidAddress(const QByteArray& source) {
  const QByteArrayView name = "MESSAGE-ID:";
  const QByteArray id =
      MimeCodec::HeaderValue(MimeCodec::HeaderField(source, name), name.size()).trimmed();
  return QStringLiteral("mid:") +
         QString::fromLatin1(id.mid(1, id.size() - 2).toPercentEncoding("@"));
}

// Other kinds of documents are such archives too.
bool IsNamedZip(const ModelAttachment& attachment) {
  return attachment.name.endsWith(u".zip", Qt::CaseInsensitive) ||
         attachment.type.contains(u"zip", Qt::CaseInsensitive);
}

bool IsZip(const ModelAttachment& attachment, const QByteArray& source) {
  return IsNamedZip(attachment) &&
         ReadAttachment(attachment, source).ValueOr({}).startsWith("PK\x03\x04");
}

// What a user should know before opening it.
QString NoteOn(const ModelAttachment& attachment, const QByteArray& source) {
  if (attachment.inner) {
    return Ui::tr("、") + Ui::tr("%1の中").arg(ShownFileName(attachment.record.name));
  }
  // One that was added may be large, and its owner knows what is in it.
  if (attachment.isNew || !IsNamedZip(attachment)) return {};
  const std::vector<ZipEntry> files = ListZip(ReadAttachment(attachment, source).ValueOr({}));
  const bool isEncrypted = std::any_of(files.begin(), files.end(),
                                       [](const ZipEntry& file) { return file.isEncrypted; });
  return isEncrypted ? Ui::tr("、パスワード付き") : QString();
}

}  // namespace

AttachmentList::AttachmentList(Context& context, QWidget* parent)
    : QListWidget(parent), context_(context) {
  setObjectName(QStringLiteral("lvClip"));
  setAccessibleName(Ui::tr("添付ファイル"));
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setFlow(QListView::LeftToRight);
  setWrapping(true);
  setResizeMode(QListView::Adjust);
  setSpacing(2);
  connect(this, &QListWidget::itemActivated, this, &AttachmentList::OpenCurrent);
}

void AttachmentList::Show(const std::vector<ModelAttachment>& attachments, const QByteArray& source,
                          bool editable) {
  attachments_ = attachments;
  shown_.clear();
  for (const ModelAttachment& attachment : attachments_) {
    if (attachment.isNew) NoteTime(attachment.path);
  }
  source_ = source;
  editable_ = editable;
  Fill();
}

void AttachmentList::Fill() {
  clear();
  const QFileIconProvider icons;
  for (const ModelAttachment& attachment : attachments_) {
    const qint64 size = AttachmentSize(attachment, source_);
    auto* item =
        new QListWidgetItem(icons.icon(QFileIconProvider::File),
                            ShownFileName(attachment.name, kMostInRow) + Ui::tr("（") +
                                SizeText(size) + NoteOn(attachment, source_) + Ui::tr("）"),
                            this);
    item->setToolTip(ShownToolTip(attachment.isNew ? attachment.path : attachment.type));
  }
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
    if (attachment.isNew) NoteTime(attachment.path);
  }
  Fill();
}

void AttachmentList::NoteTime(const QString& path) {
  shown_[path] = QFileInfo(path).lastModified();
}

void AttachmentList::AddFiles(const QStringList& paths) {
  for (const QString& path : paths) {
    const QFileInfo file(path);
    if (file.isDir()) {
      Tell(Ui::tr("「%1」はフォルダなので添付できません。").arg(path));
      continue;
    }
    if (!file.isFile() || !file.isReadable()) {
      Tell(Ui::tr("添付ファイル「%1」を読み込めません。").arg(path));
      continue;
    }
    ModelAttachment attachment;
    attachment.name = file.fileName();
    attachment.type = ContentTypeOf(file.fileName());
    attachment.isNew = true;
    attachment.path = file.absoluteFilePath();
    NoteTime(attachment.path);
    attachments_.push_back(attachment);
  }
  Fill();
  Q_EMIT Edited();
}

bool AttachmentList::Takes(const QMimeData& given) const {
  return editable_ && (!LocalFiles(given).isEmpty() || (given.hasImage() && !given.hasText()));
}

bool AttachmentList::Take(const QMimeData& given) {
  if (!Takes(given)) return false;
  const QStringList paths = LocalFiles(given);
  if (paths.isEmpty()) {
    AddPicture(qvariant_cast<QImage>(given.imageData()));
  } else {
    AddFiles(paths);
  }
  return true;
}

bool AttachmentList::Paste() {
  const QMimeData* given = QApplication::clipboard()->mimeData();
  return given != nullptr && Take(*given);
}

void AttachmentList::AddPicture(const QImage& picture) {
  const QString path = WorkingPath(Ui::tr("画像.png"));
  if (picture.isNull() || !picture.save(path, "PNG") || !MakePrivate(path)) {
    Tell(Ui::tr("「%1」に保存できません。ディスクの空き容量とフォルダを確認してください。")
             .arg(path));
    return;
  }
  AddFiles({path});
}

// Of a file that goes with the list.
QString AttachmentList::WorkingPath(const QString& name) {
  if (working_ == nullptr) {
    MakePrivateFolder(context_.TempFolder);
    working_ = std::make_unique<QTemporaryDir>(context_.TempFolder + QStringLiteral("clip_XXXXXX"));
  }
  return FreePath(working_->path(), name);
}

void AttachmentList::AddByDialog() {
  const QStringList paths = AskFilesToOpen(
      context_, this, FileTask::Attach, Ui::tr("添付ファイルの選択"), Ui::tr("全てのファイル (*)"));
  if (!paths.isEmpty()) AddFiles(paths);
}

void AttachmentList::SaveByDialog() {
  if (attachments_.empty()) return;
  if (attachments_.size() == 1) return SaveOne(attachments_.front());
  QStringList entries;
  QStringList highlighted;
  for (size_t i = 0; i < attachments_.size(); ++i) {
    const QListWidgetItem* shown = item(static_cast<int>(i));
    const bool isChosen = shown != nullptr && shown->isSelected();
    if (isChosen) highlighted.append(QString::number(i));
    // "@" separates the fields of an entry.
    QString name = ShownFileName(attachments_[i].name);
    entries.append(QString::number(i) + u'@' + name.replace(u'@', u'＠'));
  }
  const QString answer = InputList(context_, this, Ui::tr("添付ファイルの保存"),
                                   Ui::tr("保存したいファイルを選択して下さい。"),
                                   highlighted.join(kLineBreak), entries.join(kLineBreak), true);
  QList<qsizetype> chosen;
  for (const QString& key : answer.split(kLineBreak, Qt::SkipEmptyParts)) {
    chosen.append(key.toLongLong());
  }
  if (chosen.size() == 1) {
    SaveOne(attachments_[static_cast<size_t>(chosen[0])]);
  } else if (chosen.size() > 1) {
    const QString folder = AskFolder(context_, this, FileTask::SaveAttachment,
                                     Ui::tr("添付ファイルを保存するフォルダ"));
    if (!folder.isEmpty()) SaveInto(folder, chosen);
  }
}

void AttachmentList::SaveOne(const ModelAttachment& attachment) {
  const QString path = AskFileToSave(context_, this, FileTask::SaveAttachment,
                                     Ui::tr("添付ファイルの保存"), SafeFileName(attachment.name));
  if (path.isEmpty() || !WriteTo(path, attachment)) return;
  TellDone(*this, Ui::tr("「%1」に保存しました。").arg(QDir::toNativeSeparators(path)));
}

void AttachmentList::SaveInto(const QString& folder, const QList<qsizetype>& chosen) {
  for (const qsizetype index : chosen) {
    const ModelAttachment& attachment = attachments_[static_cast<size_t>(index)];
    if (!WriteTo(FreePath(folder, attachment.name), attachment)) return;
  }
  TellSaved(static_cast<size_t>(chosen.size()), folder);
}

void AttachmentList::TellSaved(size_t files, const QString& folder) {
  TellDone(*this, Ui::tr("%1個のファイルを「%2」に保存しました。")
                      .arg(files)
                      .arg(QDir::toNativeSeparators(folder)));
}

// The file appears whole or not at all.
bool AttachmentList::WriteTo(const QString& path, const ModelAttachment& attachment) {
  const Result<QByteArray> bytes = ReadAttachment(attachment, source_);
  if (!bytes) {
    Tell(bytes.Error().text);
    return false;
  }
  QSaveFile file(path);
  if (file.open(QIODevice::WriteOnly) && file.write(*bytes) == bytes->size() && file.commit()) {
    if (!attachment.isNew) MarkForeign(path, MidAddress(source_));
    return true;
  }
  Tell(
      Ui::tr("「%1」に保存できません。ディスクの空き容量とフォルダを確認してください。").arg(path));
  return false;
}

// Asks before anything that may act.
bool AttachmentList::MayOpen(const ModelAttachment& attachment) {
  const Result<QByteArray> bytes = ReadAttachment(attachment, source_);
  if (!bytes) return true;  // which is told where it is written
  FileKind kind;
  const QPointer<AttachmentList> self(this);
  const auto look = [&](const std::atomic<bool>& stop) {
    kind = KindOfFile(attachment.name, *bytes, &stop);
  };
  const bool isWanted = ProgressWindow(this, Ui::tr("添付ファイルを開く"))
                            .Run(Ui::tr("添付ファイルの中身を調べています…"), look);
  if (!isWanted || self == nullptr) return false;
  if (kind.IsHarmless()) return true;
  const QString question =
      kind.danger == FileKind::Danger::Unknown
          ? Ui::tr(
                "「%1」の中身は確かめられません（%2）。マクロなどのプログラムが入っていることも"
                "あります。知っている人から送られてくるはずのファイルのときだけ開いてください。\n\n"
                "名前が示す種類: %3\n\n開きますか？")
                .arg(ShownFileName(attachment.name), kind.byContent, kind.byName)
          : Ui::tr(
                "「%1」は、開くとパソコンに害を及ぼすおそれがあります。プログラムや、プログラムを"
                "含むファイルかもしれません。\n\n名前が示す種類: %2\n実際の中身: %3\n\n"
                "開きますか？")
                .arg(ShownFileName(attachment.name), kind.byName, kind.byContent);
  return ShowBox(this, QMessageBox::Warning, question, QMessageBox::Yes | QMessageBox::No,
                 QMessageBox::No) == QMessageBox::Yes;
}

void AttachmentList::OpenCurrent() {
  const int row = currentRow();
  if (row < 0) return;
  // While it is looked into and asked about, the list may show another message, or go.
  const ModelAttachment attachment = attachments_[static_cast<size_t>(row)];
  const QByteArray source = source_;
  const QPointer<AttachmentList> self(this);
  // A message is shown by the program itself, and does nothing.
  const bool isMessage = attachment.type.compare(u"message/rfc822", Qt::CaseInsensitive) == 0 ||
                         attachment.name.endsWith(u".eml", Qt::CaseInsensitive);
  if (!isMessage && !MayOpen(attachment)) return;
  if (self == nullptr || source_ != source) return;
  const QString path = WorkingPath(attachment.name);
  if (!WriteTo(path, attachment) || !MakePrivate(path)) return;
  if (isMessage) {
    Q_EMIT MessageOpened(path);
  } else if (QDesktopServices::openUrl(QUrl::fromLocalFile(path))) {
    return;
  } else if (IsZip(attachment, source)) {
    UnpackCurrent();  // which needs no program
  } else {
    Tell(Ui::tr("「%1」を開くプログラムがありません。").arg(ShownFileName(attachment.name)));
  }
}

// The row of the archive that is chosen, or of the only one; -1 when there is none.
int AttachmentList::ArchiveRow() const {
  const auto isArchive = [this](int row) {
    const ModelAttachment& attachment = attachments_[static_cast<size_t>(row)];
    return IsZip(attachment, source_);
  };
  if (currentRow() >= 0 && isArchive(currentRow())) return currentRow();
  for (int row = 0; row < count(); ++row) {
    if (isArchive(row)) return row;
  }
  return -1;
}

void AttachmentList::UnpackCurrent() {
  const int row = ArchiveRow();
  if (row < 0) return;
  const ModelAttachment archive = attachments_[static_cast<size_t>(row)];
  const QPointer<AttachmentList> self(this);
  const Unpacked unpacked =
      UnpackByDialog(context_, this, ReadAttachment(archive, source_).ValueOr({}), archive.name,
                     MidAddress(source_));
  if (self != nullptr && unpacked.files > 0) TellSaved(unpacked.files, unpacked.folder);
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
  if (event->matches(QKeySequence::Paste) && Paste()) return;
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
                   if (meant.size() != 1) return SaveByDialog();
                   SaveOne(attachments_[static_cast<size_t>(row(meant.first()))]);
                 })
      ->setEnabled(any);
  if (HasArchive()) {
    menu.addAction(Ui::tr("中のファイルを取り出す(&X).."), this, &AttachmentList::UnpackCurrent);
  }
  if (editable_) {
    menu.addAction(Ui::tr("追加(&A).."), this, &AttachmentList::AddByDialog);
    menu.addAction(Ui::tr("外す(&D)"), this, &AttachmentList::RemoveSelected)->setEnabled(any);
  }
  menu.exec(event->globalPos());
}

void AttachmentList::Tell(const QString& text) {
  ShowBox(this, QMessageBox::Critical, text);
}

}  // namespace vorn
