#include "transfer/window/rule_window.h"

#include <QTableWidget>

#include "objects/object_loader.h"
#include "objects/object_request.h"
#include "objects/object_types.h"
#include "storage/ui.h"
#include "transfer/window/rule_page.h"

namespace vorn {
namespace {

constexpr QSize kRuleSize(520, 420);
const QString kRules = QStringLiteral("ReceiveStop");

}  // namespace

RuleWindow::RuleWindow(Context& context, QWidget* parent)
    : EditingWindow(context, QStringLiteral("rule"), parent) {
  resize(kRuleSize);
  setWindowTitle(Ui::tr("メッセージ条件"));
  AddPage(new RulePage);
}

bool RuleWindow::LoadDefaultProperty(const DiskPtr& request, bool) {
  TakeRequest(request);
  ReadAnew();
  shown_ = StoredRules();
  FillPages();
  auto* list = findChild<QTableWidget*>(QStringLiteral("lvReceiveStop"));
  static_cast<RulePage*>(list->parentWidget())->Propose(ObjectRequest(*request).Condition());
  // What is proposed is taken by Enter.
  auto* ok = findChild<QWidget*>(QStringLiteral("cmOk"));
  ObjectRequest(*request).Condition().isEmpty() || ok == nullptr ? list->setFocus()
                                                                 : ok->setFocus();
  return true;
}

QStringList RuleWindow::StoredRules() {
  const DiskPtr object = LoadObject(GetContext(), Tag());
  return object == nullptr ? QStringList()
                           : object->Text(kRules).split(kLineBreak, Qt::SkipEmptyParts);
}

// What another program has added while the window was open stays.
bool RuleWindow::Save() {
  const DiskPtr bag = Edited();
  ReadAnew();
  QStringList rules = bag->Text(kRules).split(kLineBreak, Qt::SkipEmptyParts);
  for (const QString& rule : StoredRules()) {
    if (!shown_.contains(rule) && !rules.contains(rule)) rules.append(rule);
  }
  bag->Let(kRules, rules.join(kLineBreak));
  return SaveEdited(bag);
}

}  // namespace vorn
