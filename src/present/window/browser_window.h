#pragma once

#include <QWidget>
#include <functional>
#include <memory>

#include "frame/request_window.h"
#include "present/page_change.h"
#include "present/page_place.h"
#include "present/page_queue.h"
#include "present/page_rows.h"
#include "present/window/page_request.h"
#include "storage/context.h"

class QMenu;

namespace vorn {

class BrowserHost;
class BrowserProfiles;
class EngineView;
class FolderPaging;
class FolderToolbar;
class LinkPage;
class MessageListPages;
class PageCommands;
class PageMaker;
class PageMessages;
class PagePrinting;
class PageReading;
class PageRest;
class PageSplit;

/// The window "URL": shows a folder's message list page, or a web page, in the embedded browser.
/// It keeps its request and reads from it "local", "url" and "Page", and writes back "before",
/// "next" and "onLoad".
class BrowserWindow : public QWidget, public RequestWindow {
  Q_OBJECT

 public:
  BrowserWindow(Context& context, MessageListPages& pages, const BrowserProfiles& profiles,
                BrowserHost& host);
  ~BrowserWindow() override;

  bool LoadDefaultProperty(const DiskPtr& request, bool update) override;
  QString Tag() const override { return tag_; }
  bool IsChild() const override { return true; }
  void ShowModeless() override;
  void ShowModal() override { ShowModeless(); }
  void Activate() override;
  bool Dust() const override { return request_.IsDust(); }
  void Unload() override;

  /// Whether the window shows a folder.
  bool IsLocal() const { return request_.IsLocal(); }
  /// Shows another folder in the place of this one, as if it had just been opened.
  void ShowFolder(const QString& folder);
  /// Makes the folder's page anew and shows it.
  void Refresh();
  /// Nobody sees the window for now: its folder's page is let go, with the memory that it takes in
  /// the engine. Its place and its choice are kept.
  void Rest();
  /// Makes the page anew that was let go.
  void Wake();
  /// The window is behind another one, or no longer: nobody reads what its pane shows.
  void Cover(bool covered);
  /// Gives the keyboard to the page, unless something else in another part of the program has it.
  void TakeKeys();
  /// Loads "url".
  void UpdateBrowser();
  /// The target name this window answers to.
  QString WindowName() const { return request_.WindowName(); }
  /// Makes this the window of a new web page that another page asked for, shown once that page
  /// navigates here and not to a window of its target's name.
  LinkPage* BecomeNewWindow();
  /// What the folder is searched for; empty when all is shown.
  QString Search() const { return request_.Search(); }
  /// Shows all of the folder again.
  void GiveUpSearch();
  /// Makes a message of the folder the current one, whichever page it is on.
  void GoToMessage(const QString& message);
  /// How many messages the user has chosen one by one.
  int CountChosen() const;
  /// Gives the messages that the user has chosen on the folder's page, or the current one.
  void ChosenMessages(const std::function<void(const QStringList&)>& then) { rows_.Chosen(then); }
  /// Messages of the folder have left it; the page is yet to be made anew.
  void MessagesGone(const QStringList& messages);
  /// See `PageQueue::After`.
  void AfterCommands(const std::function<void()>& then) { queue_.After(then); }
  /// Goes to messages that have come back into the folder: what is done next is done with them.
  void GoToReturned(const QStringList& messages);
  /// See `PageCommands::Run`.
  void RunCommand(const QString& command);
  /// Writes the commands on its messages into a menu.
  void ListCommands(QMenu& menu);
  /// Shows a page of the program's own.
  void ShowOwnPage(const QString& title, const QString& html);
  /// Brings the toolbar in line with "before", "next" and "onLoad".
  void ControlToolbarUpdate();

 Q_SIGNALS:
  /// A page has been loaded, or has taken the place of the one before; false when it could not be.
  void Loaded(bool ok);
  /// More or fewer messages are chosen.
  void ChosenChanged();

 private:
  void Lay();
  void TakeView();
  void ConnectEngine();
  void ConnectToolbar();
  void ConnectFolder();
  void LeaveMessages();
  void Turn(int step);
  void Seek();
  void GoToAddress(const QString& address);
  void TakeName(const QString& name, const QUrl& url);
  bool CreatePage();
  void LoadPage();
  bool Replace();
  void ShowText(const QString& html);
  void SetLoading(bool loading);
  void LoadEnded(bool ok);
  void ShowPlace();

  BrowserHost& host_;
  PageRequest request_;
  QString tag_;
  QString ownPage_;  // instead of a folder
  FolderToolbar* toolbar_;
  PageQueue queue_;
  PageRows rows_;
  PagePlace place_;
  PageChange change_;
  std::unique_ptr<EngineView> engine_;
  PageSplit* split_;
  std::unique_ptr<PageReading> reading_;
  std::unique_ptr<PageMaker> maker_;
  std::unique_ptr<FolderPaging> paging_;
  std::unique_ptr<PageMessages> messages_;
  std::unique_ptr<PageCommands> commands_;
  std::unique_ptr<PagePrinting> printing_;
  std::unique_ptr<PageRest> rest_;
};

}  // namespace vorn
