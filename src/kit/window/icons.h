#pragma once

#include <QIcon>
#include <QString>

namespace vorn {

/// The main window's pictures by their keys: "folder", "activedown", "activeup", "activewait",
/// "dust", "static", "active", "account", "bookmark", "book", "event", "profile", "maildown",
/// "mailup", "infomation", "error". A category followed by a level name ("accounterror") gives the
/// level's picture laid over the category's. An unknown key gives a plain sheet.
QIcon Icon(const QString& key);

}  // namespace vorn
