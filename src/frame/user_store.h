#pragma once

#include <QSettings>
#include <memory>

namespace vorn {

/// The per-user settings store, where what belongs to no data folder is kept.
inline std::unique_ptr<QSettings> UserStore() {
  return std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope,
                                     QStringLiteral("Vorn"), QStringLiteral(".VORN"));
}

}  // namespace vorn
