#include "transfer/window/rule_window.h"

#include <QTableWidget>

#include "objects/object_loader.h"
#include "objects/object_request.h"
#include "storage/ui.h"
#include "transfer/rules/rules_object.h"
#include "transfer/window/rule_page.h"

namespace vorn {
namespace {

constexpr QSize kRuleSize(520, 420);

}  // namespace

RuleWindow::RuleWindow(Context& context, QWidget* parent)
    : EditingWindow(context, QStringLiteral("rule"), parent), page_(new RulePage) {
  resize(kRuleSize);
  setWindowTitle(Ui::tr("メッセージ条件"));
  AddPage(page_);
}

bool RuleWindow::LoadDefaultProperty(const DiskPtr& request, bool) {
  TakeRequest(request);
  ReadAnew(GetContext(), Tag());
  shown_ = StoredRules();
  FillPages();
  const QString condition = ObjectRequest(*request).Condition();
  page_->Propose(condition);
  // What is proposed is taken by Enter.
  condition.isEmpty() ? page_->List().setFocus() : FocusOk();
  return true;
}

QStringList RuleWindow::StoredRules() {
  return RulesObject(GetContext()).Lines().split(kLineBreak, Qt::SkipEmptyParts);
}

// What another program has added while the window was open stays.
bool RuleWindow::Save() {
  RulesObject edited(Edited());
  ReadAnew(GetContext(), Tag());
  QStringList rules = edited.Lines().split(kLineBreak, Qt::SkipEmptyParts);
  for (const QString& rule : StoredRules()) {
    if (!shown_.contains(rule) && !rules.contains(rule)) rules.append(rule);
  }
  edited.SetLines(rules.join(kLineBreak));
  return SaveEdited(edited.Bag());
}

}  // namespace vorn
