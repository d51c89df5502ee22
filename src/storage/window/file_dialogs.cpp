#include "storage/window/file_dialogs.h"

#include <QAbstractItemView>
#include <QDir>
#include <QFileDialog>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QTreeView>

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

// Where the desktop has no file window the toolkit shows its own one. Its list of completions takes
// the keyboard and the first click on the button; folders that were passed while a path was typed
// then stay selected, and one is gone into in the place of the file.
void TakeWhatIsTyped(QFileDialog& dialog) {
  auto* name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
  if (name == nullptr) return;  // the desktop's
  name->setCompleter(nullptr);
  for (const char* list : {"listView", "treeView"}) {
    auto* view = dialog.findChild<QAbstractItemView*>(QLatin1String(list));
    if (view == nullptr || view->selectionModel() == nullptr) continue;
    QObject::connect(name, &QLineEdit::textChanged, view, [name, view] {
      // Unless it was a click there that wrote the name.
      if (name->isModified()) view->clearSelection();
    });
  }
}

// The toolkit gives the date the room of a short one.
void FitColumns(QFileDialog& dialog) {
  const auto* list = dialog.findChild<QTreeView*>(QStringLiteral("treeView"));
  if (list == nullptr) return;  // the desktop's
  list->header()->setStretchLastSection(false);
  list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  list->header()->setSectionResizeMode(0, QHeaderView::Stretch);  // the name
}

// The paths that the user chose.
QStringList Run(QFileDialog& dialog) {
  TakeWhatIsTyped(dialog);
  FitColumns(dialog);
  return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles() : QStringList();
}

}  // namespace

QString RememberedFolder(Context& context, FileTask task) {
  const QString folder = PlacementBag(context, kFilesBag)->Text(KeyOf(task));
  return QFileInfo(folder).isDir() ? folder : QString();
}

void RememberFolder(Context& context, FileTask task, const QString& folder) {
  PlacementBag(context, kFilesBag)->Let(KeyOf(task), folder);
}

QStringList OpenFiles(QWidget* parent, const QString& title, const QString& folder,
                      const QString& filter, QFileDialog::FileMode mode) {
  QFileDialog dialog(parent, title, folder, filter);
  dialog.setFileMode(mode);
  return Run(dialog);
}

QStringList AskFilesToOpen(Context& context, QWidget* parent, FileTask task, const QString& title,
                           const QString& filter) {
  const QStringList paths =
      OpenFiles(parent, title, RememberedFolder(context, task), filter, QFileDialog::ExistingFiles);
  if (!paths.isEmpty()) RememberFolder(context, task, QFileInfo(paths.first()).absolutePath());
  return paths;
}

QString AskFileToSave(Context& context, QWidget* parent, FileTask task, const QString& title,
                      const QString& name, const QString& filter, QString* chosenFilter) {
  const QString folder = RememberedFolder(context, task);
  QFileDialog dialog(parent, title, folder, filter);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.selectFile(name);
  if (chosenFilter != nullptr && !chosenFilter->isEmpty()) dialog.selectNameFilter(*chosenFilter);
  const QString path = Run(dialog).value(0);
  if (chosenFilter != nullptr) *chosenFilter = dialog.selectedNameFilter();
  if (!path.isEmpty()) RememberFolder(context, task, QFileInfo(path).absolutePath());
  return path;
}

QString AskFolder(Context& context, QWidget* parent, FileTask task, const QString& title) {
  QFileDialog dialog(parent, title, RememberedFolder(context, task));
  dialog.setFileMode(QFileDialog::Directory);
  dialog.setOption(QFileDialog::ShowDirsOnly);
  // GTK's window takes the first folder inside the one whose path was typed.
  dialog.setOption(QFileDialog::DontUseNativeDialog);
  const QString folder = Run(dialog).value(0);
  if (!folder.isEmpty()) RememberFolder(context, task, folder);
  return folder;
}

}  // namespace vorn
