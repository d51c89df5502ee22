#pragma once

#include <QIcon>
#include <QString>

namespace vorn {

/// The main window's pictures by their keys: "folder", "activedown", "activeup", "activewait",
/// "dust", "static", "active", "account", "bookmark", "book", "event", "profile", "maildown",
/// "mailup", "mail", "replay", "replayall", "forward", "file", "nextunopened", "print",
/// "infomation", "error"; "layout" with the name of a ready-made layout, "panenone", "paneunder",
/// "paneright" for the places of the reading pane, and "more" for buttons that have no room. A
/// category followed by a level name
/// ("accounterror") gives the level's picture laid over the category's. An unknown key gives a
/// plain sheet and a warning, an empty one the sheet alone.
QIcon Icon(const QString& key);

}  // namespace vorn
