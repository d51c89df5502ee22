#pragma once

#include <QSettings>
#include <memory>

namespace vorn {

/// The per-user settings store, where what belongs to no data folder is kept.
std::unique_ptr<QSettings> UserStore();

/// The path of the lock under which it is first written.
QString UserStoreLock();

}  // namespace vorn
