#pragma once

#include <QString>
#include <QStringList>

#include "storage/context.h"

namespace vorn {

/// The settings object "logo" of the logged-in profile, loaded when it is not yet; an empty bag
/// when it does not exist, so that every key reads as its documented default.
DiskPtr Settings(Context& context);

/// The content types that are shown as text while the settings say nothing.
QStringList DefaultTextTypes();

/// The content types that are shown as text, one a line of "TextMime".
QStringList TextTypes(Context& context);

}  // namespace vorn
