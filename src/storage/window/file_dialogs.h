#pragma once

#include <QStringList>

#include "storage/context.h"

class QWidget;

namespace vorn {

/// What a file dialog is for. Each begins in the folder in which it ended last, which the
/// profile keeps.
enum class FileTask { Attach, SaveAttachment, SaveMessage, SaveCalendar, Import, Export };

/// The toolkit's dialogs; empty when the user chose nothing.
QStringList AskFilesToOpen(Context& context, QWidget* parent, FileTask task, const QString& title,
                           const QString& filter);
/// `name` is the file's as it is proposed; `chosenFilter` gets the filter that was chosen.
QString AskFileToSave(Context& context, QWidget* parent, FileTask task, const QString& title,
                      const QString& name, const QString& filter = {},
                      QString* chosenFilter = nullptr);
QString AskFolder(Context& context, QWidget* parent, FileTask task, const QString& title);

}  // namespace vorn
