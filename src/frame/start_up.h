#pragma once

#include <QString>

#include "storage/base/result.h"
#include "storage/context.h"

namespace vorn {

/// The folder that holds the databases, with its separator: `requested` when one was named, else
/// the executable's folder when it holds "vorn.ini" or "navi.mbx" (portable use), else the user's
/// data folder for the application.
QString ChooseAppFolder(const QString& requested, const QString& executableFolder);

/// What becomes of a list of profiles that cannot be read: its key may be lost, or only be another
/// user's.
enum class UnreadableList { SetAside, Keep };

/// Fills the process-wide values, makes sure that the navigator database exists and loads the
/// profiles. Where it is lost beside profiles' folders, the list is made anew from these, which the
/// context's `Notices` say; one that cannot be read is set aside before that or kept, which is a
/// failure. When it fails, nothing was overwritten.
Result<> StartUp(Context& context, const QString& appFolder,
                 UnreadableList unreadable = UnreadableList::SetAside);

}  // namespace vorn
