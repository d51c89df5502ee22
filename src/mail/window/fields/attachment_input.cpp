#include "mail/window/fields/attachment_input.h"

#include <QApplication>
#include <QClipboard>
#include <QFileInfo>
#include <QImage>
#include <QMessageBox>
#include <QUrl>

#include "kit/window/plain_text.h"
#include "mail/attachment_files.h"
#include "mail/compose_message.h"
#include "mail/working_folder.h"
#include "storage/files/private_files.h"
#include "storage/ui.h"
#include "storage/window/file_dialogs.h"

namespace vorn {
namespace {

QStringList LocalFiles(const QMimeData& data) {
  QStringList paths;
  for (const QUrl& url : data.urls()) {
    if (url.isLocalFile()) paths.append(url.toLocalFile());
  }
  return paths;
}

}  // namespace

AttachmentInput::AttachmentInput(Context& context, WorkingFolder& working, QWidget& list)
    : QObject(&list), context_(context), working_(working), list_(list) {}

bool AttachmentInput::Takes(const QMimeData& given) const {
  return editable_ && (!LocalFiles(given).isEmpty() || (given.hasImage() && !given.hasText()));
}

bool AttachmentInput::Take(const QMimeData& given) {
  if (!Takes(given)) return false;
  const QStringList paths = LocalFiles(given);
  if (paths.isEmpty()) {
    AddPicture(qvariant_cast<QImage>(given.imageData()));
  } else {
    AddFiles(paths);
  }
  return true;
}

bool AttachmentInput::Paste() {
  const QMimeData* given = QApplication::clipboard()->mimeData();
  return given != nullptr && Take(*given);
}

void AttachmentInput::AddByDialog() {
  const QStringList paths =
      AskFilesToOpen(context_, &list_, FileTask::Attach, Ui::tr("添付ファイルの選択"),
                     Ui::tr("全てのファイル (*)"));
  if (!paths.isEmpty()) AddFiles(paths);
}

void AttachmentInput::AddFiles(const QStringList& paths) {
  std::vector<ModelAttachment> files;
  for (const QString& path : paths) {
    const QFileInfo file(path);
    if (file.isDir()) {
      TellFault(Ui::tr("「%1」はフォルダなので添付できません。").arg(path));
      continue;
    }
    if (!file.isFile() || !file.isReadable()) {
      TellFault(Ui::tr("添付ファイル「%1」を読み込めません。").arg(path));
      continue;
    }
    ModelAttachment attachment;
    attachment.name = file.fileName();
    attachment.type = ContentTypeOf(file.fileName());
    attachment.isNew = true;
    attachment.path = file.absoluteFilePath();
    files.push_back(attachment);
  }
  Q_EMIT Added(files);
}

void AttachmentInput::AddPicture(const QImage& picture) {
  const QString path = working_.PathFor(Ui::tr("画像.png"));
  if (picture.isNull() || !picture.save(path, "PNG") || !MakePrivate(path)) {
    TellFault(Ui::tr("「%1」に保存できません。ディスクの空き容量とフォルダを確認してください。")
                  .arg(path));
    return;
  }
  AddFiles({path});
}

void AttachmentInput::TellFault(const QString& text) {
  ShowBox(&list_, QMessageBox::Critical, text);
}

}  // namespace vorn
