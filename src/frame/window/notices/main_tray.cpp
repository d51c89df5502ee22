#include "frame/window/notices/main_tray.h"

#include <QAction>
#include <QWidget>

#include "frame/window/notices/front_window.h"
#include "transfer/window/task_tray.h"

namespace vorn {

MainTray::MainTray(QWidget& window) : window_(window) {}

MainTray::~MainTray() = default;

void MainTray::ShareEntries(QAction* version, QAction* exit) {
  version_ = version;
  exit_ = exit;
}

void MainTray::Show(bool shown) {
  if (!shown) {
    tasktray_.reset();
  } else if (tasktray_ == nullptr) {
    tasktray_ = std::make_unique<TaskTray>(window_.windowIcon(), version_, exit_, &window_);
    QObject::connect(tasktray_.get(), &TaskTray::Clicked, &window_,
                     [this] { BringForward(window_); });
  }
}

void MainTray::Leave() {
  // It may be its own menu that closes the program.
  if (TaskTray* tray = tasktray_.release()) {
    tray->Hide();
    tray->deleteLater();
  }
}

}  // namespace vorn
