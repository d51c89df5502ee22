#pragma once

#include "frame/window/folder_changes.h"
#include "frame/window/main_closing.h"
#include "frame/window/opener.h"
#include "mail/window/message_host.h"
#include "transfer/check_plan.h"

namespace vorn {

class FolderPanes;
class MainStatusBar;
class RequestWindows;

/// What message windows ask for, done with the pieces of the main window.
class MessagesHost : public MessageHost {
 public:
  MessagesHost(Context& context, QWidget& window, FolderPanes& panes, RequestWindows& windows,
               Opener& opener, FolderChanges& changes, CheckPlan& plan, const MainClosing& closing,
               MainStatusBar& status)
      : context_(context),
        window_(window),
        panes_(panes),
        windows_(windows),
        opener_(opener),
        changes_(changes),
        plan_(plan),
        closing_(closing),
        status_(status) {}

  void SendMessage(const QString& serialId) override {
    plan_.CreateMessagePlan(kPlanSend, serialId);
  }
  bool ChooseSender(const QString& serialId, const QString& addressLines,
                    const QString& subject) override {
    return plan_.ChooseSender(serialId, addressLines, subject);
  }
  void OpenMessageFile(const QString& path) override { opener_.OpenArgument(path); }
  void PostMail(const MailRequest& request) override { opener_.Queue().PostMailRequest(request); }
  void PrintPageFile(const QString& path, const QString& title) override {
    opener_.PrintPageFile(path, title);
  }
  QString NeighbourMessage(const QString& serialId, int step) override;
  void GatherAlike(const QString& serialId) override { MakeRule(serialId, false); }
  void StopAlike(const QString& serialId) override { MakeRule(serialId, true); }
  void AddToBook(const QStringList& serialIds) override;
  bool IsClosing() const override { return closing_.IsClosing(); }
  void MessageStored() override { changes_.Note(); }

 private:
  void MakeRule(const QString& serialId, bool stops);

  Context& context_;
  QWidget& window_;
  FolderPanes& panes_;
  RequestWindows& windows_;
  Opener& opener_;
  FolderChanges& changes_;
  CheckPlan& plan_;
  const MainClosing& closing_;
  MainStatusBar& status_;
};

}  // namespace vorn
