#include "frame/window/main_message_host.h"

#include "frame/window/browser_area.h"
#include "frame/window/console_tree.h"
#include "frame/window/folder_panes.h"
#include "frame/window/from_message.h"
#include "frame/window/request_windows.h"
#include "frame/window/status_bar.h"
#include "objects/settings.h"
#include "present/neighbour_message.h"
#include "present/window/browser_window.h"
#include "present/window/shown_folder.h"
#include "storage/condition_limit.h"

namespace vorn {
namespace {

constexpr int kNeighbourMs = 2000;  // the window stands still meanwhile

}  // namespace

QString MainMessageHost::NeighbourMessage(const QString& serialId, int step) {
  BrowserWindow* browser = panes_.Area().Active();
  if (browser == nullptr) return {};
  const ConditionLimit brief(kNeighbourMs);
  const Result<QString> found =
      vorn::NeighbourMessage(context_, browser->Tag(), browser->Folder().Search(), serialId,
                             Settings(context_).IsNewestFirst() ? -step : step);
  if (!found && brief.IsReached()) status_.showMessage(found.Error().text);
  const QString neighbour = found.ValueOr({});
  // The page goes along: its keys act on the message that was read last.
  if (!neighbour.isEmpty()) browser->Folder().GoToMessage(neighbour);
  return neighbour;
}

void MainMessageHost::MakeRule(const QString& serialId, bool stops) {
  const auto request = RuleLikeMessage(context_, window_, serialId, stops);
  if (request) opener_.Queue().PostDialogRequest(*request);
}

void MainMessageHost::AddToBook(const QStringList& serialIds) {
  const auto addition = AddCorrespondents(
      context_, window_, serialIds, [this](const QString& book) { return windows_.HasOpen(book); });
  if (!addition) return;
  panes_.Tree().RefreshNode(addition->book);
  status_.ShowForAWhile(addition->told);
}

}  // namespace vorn
