#include "storage/window/file_dialogs.h"

#include <QDir>
#include <QFileDialog>

#include "storage/window/control_state.h"

namespace vorn {
namespace {

const QString kFilesBag = QStringLiteral("files");

QString KeyOf(FileTask task) {
  switch (task) {
    case FileTask::Attach:
      return QStringLiteral("attach");
    case FileTask::SaveAttachment:
      return QStringLiteral("attachment");
    case FileTask::SaveMessage:
      return QStringLiteral("message");
    case FileTask::SaveCalendar:
      return QStringLiteral("calendar");
    case FileTask::Import:
      return QStringLiteral("import");
    case FileTask::Export:
      return QStringLiteral("export");
    case FileTask::Print:
      return QStringLiteral("print");
  }
  return {};
}

}  // namespace

QString RememberedFolder(Context& context, FileTask task) {
  const QString folder = PlacementBag(context, kFilesBag)->Text(KeyOf(task));
  return QFileInfo(folder).isDir() ? folder : QString();
}

void RememberFolder(Context& context, FileTask task, const QString& folder) {
  PlacementBag(context, kFilesBag)->Let(KeyOf(task), folder);
}

QStringList AskFilesToOpen(Context& context, QWidget* parent, FileTask task, const QString& title,
                           const QString& filter) {
  const QStringList paths =
      QFileDialog::getOpenFileNames(parent, title, RememberedFolder(context, task), filter);
  if (!paths.isEmpty()) RememberFolder(context, task, QFileInfo(paths.first()).absolutePath());
  return paths;
}

QString AskFileToSave(Context& context, QWidget* parent, FileTask task, const QString& title,
                      const QString& name, const QString& filter, QString* chosenFilter) {
  const QString folder = RememberedFolder(context, task);
  const QString path = QFileDialog::getSaveFileName(
      parent, title, folder.isEmpty() ? name : QDir(folder).filePath(name), filter, chosenFilter);
  if (!path.isEmpty()) RememberFolder(context, task, QFileInfo(path).absolutePath());
  return path;
}

QString AskFolder(Context& context, QWidget* parent, FileTask task, const QString& title) {
  const QString folder =
      QFileDialog::getExistingDirectory(parent, title, RememberedFolder(context, task));
  if (!folder.isEmpty()) RememberFolder(context, task, folder);
  return folder;
}

}  // namespace vorn
