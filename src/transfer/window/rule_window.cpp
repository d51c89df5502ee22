#include "transfer/window/rule_window.h"

#include <QTableWidget>

#include "storage/ui.h"
#include "transfer/window/rule_page.h"

namespace vorn {
namespace {

constexpr QSize kSize(520, 420);

}  // namespace

RuleWindow::RuleWindow(Context& context, QWidget* parent)
    : EditingWindow(context, QStringLiteral("rule"), parent) {
  resize(kSize);
  setWindowTitle(Ui::tr("メッセージ条件"));
  AddPage(new RulePage);
}

bool RuleWindow::LoadDefaultProperty(const DiskPtr& request, bool) {
  TakeRequest(request);
  ReadAnew();
  FillPages();
  findChild<QTableWidget*>(QStringLiteral("lvReceiveStop"))->setFocus();
  return true;
}

}  // namespace vorn
