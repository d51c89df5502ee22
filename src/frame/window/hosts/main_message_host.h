#pragma once

#include "frame/window/notices/main_closing.h"
#include "frame/window/panes/folder_changes.h"
#include "frame/window/panes/opener.h"
#include "mail/store/known_addresses.h"
#include "mail/store/message_filing.h"
#include "mail/window/host/message_host.h"
#include "objects/object_types.h"
#include "transfer/plan/check_plan.h"

namespace vorn {

class FolderPanes;
class MainStatusBar;
class RequestWindows;

/// What message windows ask for, done with the pieces of the main window.
class MainMessageHost : public MessageHost {
 public:
  /// The pieces of the main window that it works with.
  struct Parts {
    Context& context;
    QWidget& window;
    FolderPanes& panes;
    RequestWindows& windows;
    Opener& opener;
    FolderChanges& changes;
    CheckPlan& plan;
    const MainClosing& closing;
    MainStatusBar& status;
  };
  explicit MainMessageHost(const Parts& parts) : parts_(parts), known_(parts.context) {}

  void SendMessage(const SerialId& serialId) override;
  bool ChooseSender(const SerialId& serialId, const QString& addressLines,
                    const QString& subject) override {
    return parts_.plan.ChooseSender(serialId, addressLines, subject);
  }
  void OpenMessageFile(const QString& path) override { parts_.opener.OpenArgument(path); }
  void PostMail(const MailRequest& request) override {
    parts_.opener.Queue().PostMailRequest(request);
  }
  void PrintPageFile(const QString& path, const QString& title) override {
    parts_.opener.PrintPageFile(path, title);
  }
  SerialId NeighbourOf(const SerialId& serialId, int step) override;
  void GatherAlike(const SerialId& serialId) override { MakeRule(serialId, false); }
  void StopAlike(const SerialId& serialId) override { MakeRule(serialId, true); }
  QStringList OfferedAddresses() override { return known_.Offers(); }
  bool PrefersHtml() const override { return prefersHtml_; }
  void PreferHtml(bool html) override { prefersHtml_ = html; }
  void AddToBook(const SerialIds& serialIds) override;
  void MakeAccount() override { parts_.opener.MakeObject(object_type::kAccount, {}); }
  bool IsClosing() const override { return parts_.closing.IsClosing(); }
  void MessageStored() override { parts_.changes.Note(); }
  void DustChanged(const SerialId& serialId, bool dust) override;

 private:
  void MakeRule(const SerialId& serialId, bool stops);
  void CarryBack(const Move& move);

  const Parts parts_;
  KnownAddresses known_;
  bool prefersHtml_ = false;
};

}  // namespace vorn
