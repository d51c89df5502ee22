#include "frame/window/commands/tools_menu.h"

#include "present/window/page/first_use.h"
#include "storage/ui.h"
#include "transfer/plan/check_plan.h"

namespace vorn {

ToolsMenu::ToolsMenu(CheckPlan& plan, QWidget* parent) : QMenu(Ui::tr("ツール(&T)"), parent) {
  setObjectName(QStringLiteral("menuTools"));
  QAction* receive = Add(ToolsEntry::Receive, Ui::tr("メッセージ送受信(&M)"));
  receive->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_M));
  receive->setObjectName(first_step::kReceive);
  QAction* cancel = Add(ToolsEntry::Cancel, Ui::tr("送受信の中止(&C)"));
  Add(ToolsEntry::Rules, Ui::tr("メッセージ条件(&R).."));
  addSeparator();
  Add(ToolsEntry::Settings, Ui::tr("設定(&O).."));
  addSeparator();
  version_ = Add(ToolsEntry::Version, Ui::tr("バージョン情報(&V).."));
  connect(this, &QMenu::aboutToShow, this, [&plan, cancel] { cancel->setEnabled(plan.HasWork()); });
}

QAction* ToolsMenu::Add(ToolsEntry entry, const QString& text) {
  return addAction(text, this, [this, entry] { Q_EMIT Clicked(entry); });
}

}  // namespace vorn
