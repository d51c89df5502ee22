#pragma once

#include <QFileDialog>
#include <QStringList>

#include "storage/context.h"

class QWidget;

namespace vorn {

/// What a file dialog is for. Each begins in the folder in which it ended last, which the
/// profile keeps.
enum class FileTask { Attach, SaveAttachment, SaveMessage, SaveCalendar, Import, Export, Print };

/// The folder in which the dialog ended last; empty the first time, and when the folder is gone,
/// for the toolkit's own choice.
QString RememberedFolder(Context& context, FileTask task);
void RememberFolder(Context& context, FileTask task, const QString& folder);

/// Files that are there, which begin in a folder, or at a file; empty when the user chose nothing.
/// `mode` says whether there may be several.
QStringList OpenFiles(QWidget* parent, const QString& title, const QString& folder,
                      const QString& filter, QFileDialog::FileMode mode);
/// The toolkit's dialogs; empty when the user chose nothing.
QStringList AskFilesToOpen(Context& context, QWidget* parent, FileTask task, const QString& title,
                           const QString& filter);
/// `name` is the file's as it is proposed; `chosenFilter` gets the filter that was chosen.
QString AskFileToSave(Context& context, QWidget* parent, FileTask task, const QString& title,
                      const QString& name, const QString& filter = {},
                      QString* chosenFilter = nullptr);
QString AskFolder(Context& context, QWidget* parent, FileTask task, const QString& title);

}  // namespace vorn
