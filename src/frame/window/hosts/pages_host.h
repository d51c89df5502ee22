#pragma once

#include "frame/window/commands/page_actions.h"
#include "frame/window/panes/opener.h"
#include "frame/window/panes/request_windows.h"
#include "present/window/web_host.h"
#include "storage/base/serial_id.h"

namespace vorn {

/// What browser windows ask for, done with the pieces of the main window.
class PagesHost : public WebHost {
 public:
  PagesHost(Context& context, QWidget& window, FolderPanes& panes, RequestWindows& windows,
            Opener& opener, MessageHost& messages, MainStatusBar& status)
      : context_(context),
        window_(window),
        panes_(panes),
        windows_(windows),
        opener_(opener),
        messages_(messages),
        status_(status),
        actions_(context, window, messages, panes, status) {}

  PageActions& Actions() { return actions_; }

  void ShowMessage(const MailRequest& request) override { opener_.ShowMessage(request); }
  void WriteTo(const QString& mailto) override { opener_.WriteMessage(mailto); }
  SerialIds ActOnMessages(MessageAction action, const SerialIds& messages,
                          const SerialId& folder) override {
    return actions_.Act(action, messages, folder);
  }
  BrowserWindow* NewBrowserWindow() override { return windows_.NewBrowser(); }
  BrowserWindow* NamedWindow(const QString& name, const BrowserWindow* asking) override;
  bool ChoosePrinter(QPrinter& printer, const QString& title) override;
  MessageHost& Messages() override { return messages_; }
  void Tell(const QString& sentence) override;
  void BrowserOpened() override;
  void BrowserClosed() override;

 private:
  Context& context_;
  QWidget& window_;
  FolderPanes& panes_;
  RequestWindows& windows_;
  Opener& opener_;
  MessageHost& messages_;
  MainStatusBar& status_;
  PageActions actions_;
};

}  // namespace vorn
