#include "frame/window/hosts/main_message_host.h"

#include <QMessageBox>

#include "frame/window/commands/from_message.h"
#include "frame/window/commands/message_actions.h"
#include "frame/window/notices/status_bar.h"
#include "frame/window/panes/browser_area.h"
#include "frame/window/panes/console_tree.h"
#include "frame/window/panes/folder_panes.h"
#include "frame/window/panes/request_windows.h"
#include "kit/window/plain_text.h"
#include "mail/search/neighbour_message.h"
#include "objects/list_settings.h"
#include "present/window/browser_window.h"
#include "present/window/folder/shown_folder.h"
#include "storage/engine/condition_limit.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kNeighbourMs = 2000;  // the window stands still meanwhile

}  // namespace

// What another sending came to is no word of this one.
void MainMessageHost::SendMessage(const SerialId& serialId) {
  parts_.status.BeginCheck(false);
  parts_.plan.CreateMessagePlan(kPlanSend, serialId);
}

void MainMessageHost::DustChanged(const SerialId& serialId, bool dust) {
  const Move back = dust ? Move{.outOfDust = {serialId}} : Move{.intoDust = {serialId}};
  parts_.status.OfferUndo(DustWords(dust, 1), [this, back] { CarryBack(back); });
}

void MainMessageHost::CarryBack(const Move& move) {
  const Result<Moved> moved = MoveMessages(parts_.context, move);
  parts_.changes.Note();
  if (moved) return;
  ShowBox(&parts_.window, QMessageBox::Critical,
          Ui::tr("メッセージを変更できません。") + moved.Error().text);
}

SerialId MainMessageHost::NeighbourOf(const SerialId& serialId, int step) {
  BrowserWindow* browser = parts_.panes.Area().Active();
  if (browser == nullptr) return {};
  const ConditionLimit brief(kNeighbourMs);
  const Result<SerialId> found =
      NeighbourMessage(parts_.context, browser->Tag(), browser->Folder().Search(), serialId,
                       ListSettings(parts_.context).IsNewestFirst() ? -step : step);
  if (!found && brief.IsReached()) parts_.status.showMessage(found.Error().text);
  const SerialId neighbour = found.ValueOr({});
  // The page goes along: its keys act on the message that was read last.
  if (!neighbour.IsEmpty()) browser->Folder().GoToMessage(neighbour);
  return neighbour;
}

void MainMessageHost::MakeRule(const SerialId& serialId, bool stops) {
  const auto request = RuleLikeMessage(parts_.context, parts_.window, serialId, stops);
  if (request) parts_.opener.Queue().PostDialogRequest(*request);
}

void MainMessageHost::AddToBook(const SerialIds& serialIds) {
  const auto addition =
      AddCorrespondents(parts_.context, parts_.window, serialIds,
                        [this](const SerialId& book) { return parts_.windows.HasOpen(book); });
  if (!addition) return;
  parts_.panes.Tree().Nodes().Refresh(addition->book);
  parts_.status.ShowForAWhile(addition->told);
}

}  // namespace vorn
