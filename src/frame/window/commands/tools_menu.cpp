#include "frame/window/commands/tools_menu.h"

#include <QMessageBox>

#include "frame/window/notices/main_closing.h"
#include "frame/window/notices/traffic_host.h"
#include "frame/window/panes/opener.h"
#include "kit/window/plain_text.h"
#include "objects/object_types.h"
#include "objects/window_request.h"
#include "present/window/page/first_use.h"
#include "storage/ui.h"

namespace vorn {

ToolsMenu::ToolsMenu(const Parts& parts, QWidget* parent) : QMenu(Ui::tr("ツール(&T)"), parent) {
  setObjectName(QStringLiteral("menuTools"));
  TrafficHost& traffic = parts.traffic;
  QAction* receive =
      addAction(Ui::tr("メッセージ送受信(&M)"), &traffic, &TrafficHost::SendAndReceive);
  receive->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_M));
  receive->setObjectName(first_step::kReceive);
  QAction* cancel = addAction(Ui::tr("送受信の中止(&C)"), this,
                              [&closing = parts.closing] { closing.CancelTraffic(); });
  const auto open = [&opener = parts.opener](const SerialId& object, AfterStep after) {
    opener.OpenObject(object, object.Text(), kShowModal, after);
  };
  addAction(Ui::tr("メッセージ条件(&R).."), this,
            [open] { open(fixed_serial::kRules, AfterStep::None); });
  addSeparator();
  addAction(Ui::tr("設定(&O).."), this,
            [open] { open(fixed_serial::kSettings, AfterStep::ApplySettings); });
  addSeparator();
  version_ = addAction(Ui::tr("バージョン情報(&V).."), this,
                       [&window = parts.window, version = parts.version] {
                         ShowBox(&window, QMessageBox::Information,
                                 kApplicationTitle + QStringLiteral(" version. ") + version);
                       });
  connect(this, &QMenu::aboutToShow, this,
          [&traffic, cancel] { cancel->setEnabled(traffic.Plan().HasWork()); });
}

void ToolsMenu::Click(int entry) {
  QList<QAction*> entries = actions();
  entries.removeIf([](const QAction* action) { return action->isSeparator(); });
  if (QAction* action = entries.value(entry)) action->trigger();
}

}  // namespace vorn
