#pragma once

#include <QTimer>
#include <QWidget>
#include <functional>
#include <memory>

#include "frame/request_window.h"
#include "present/message_list_page.h"
#include "present/window/browser_host.h"
#include "present/window/browser_profiles.h"
#include "present/window/page_request.h"
#include "present/window/page_rows.h"
#include "storage/condition_run.h"

class QPrinter;
class QWebEngineView;

namespace vorn {

class ConditionWait;
class FolderToolbar;
class LinkPage;
class PageCommands;
class PageMessages;
class PageSplit;
class ScriptBar;

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
  QString Search() const;
  /// Makes a message of the page the current one, or none when it is on another page.
  void GoToMessage(const QString& serialId) { rows_.GoToMessage(serialId); }
  /// How many messages the user has chosen one by one.
  int CountChosen() const;
  /// Gives the messages that the user has chosen on the folder's page, or the current one.
  void ChosenMessages(const std::function<void(const QStringList&)>& then) { rows_.Chosen(then); }
  /// Messages of the folder have left it; the page is yet to be made anew.
  void MessagesGone(const QStringList& messages);
  /// Runs a command on the chosen messages: "open", "replay", "replayall", "forward", "file",
  /// "dust" or "outofdust".
  void RunCommand(const QString& command);
  /// Shows a page of the program's own.
  void ShowOwnPage(const QString& title, const QString& html);
  /// Prints what is shown.
  bool IsForPrinting() const;
  void DoPrint();
  /// Brings the toolbar in line with "before", "next" and "onLoad".
  void ControlToolbarUpdate();

 Q_SIGNALS:
  /// A page has been loaded; false when it could not be.
  void Loaded(bool ok);
  /// More or fewer messages are chosen.
  void ChosenChanged();

 private:
  void BuildControls();
  void ConnectToolbar();
  void BuildCommands();
  void BuildView();
  void FollowLink(const QString& address);
  void GoToAddress(const QString& address);

  void FirstNavigation(const QUrl& url);
  void TakeName(const QString& name, const QUrl& url);
  void UsePage(bool local);
  void MakeAnew();
  void LetViewGo();
  bool HasKeysNear() const;
  void ChooseFirstPage();
  bool IsAtNewest() const;
  bool CreatePage();
  void AskElsewhere(const std::function<void()>& then);
  void TakeAnswer(const ConditionRun::Answer& answer, const std::function<void()>& then);
  void AskingStopped();
  void ShowText(const QString& html);
  void TurnPage(int step);
  void GoToPage(int page);
  void GoToTypedPage();
  void ShowNewest();
  void Explore();
  void CheckRows();
  void ShowPageCount(bool count = false);
  void SeekClicked();
  void SearchFolder();
  void SetLoading(bool loading);
  void DocumentComplete(bool ok);
  QUrl LocalUrl() const;
  bool HasPage() const;
  void DropPage();
  void AskForDocument(const std::function<void(bool isShown)>& then);
  void DeleteReadPage();
  void LookAgain();
  void PrintFinished();
  void ShowPlace();
  void UpdateHistoryState();

  Context& context_;
  MessageListPages& pages_;
  const BrowserProfiles& profiles_;
  BrowserHost& host_;
  PageRequest request_;
  QString tag_;
  FolderToolbar* toolbar_ = nullptr;
  QWebEngineView* wbUrl_ = nullptr;  // there is none while the window rests
  LinkPage* page_ = nullptr;
  PageSplit* split_ = nullptr;
  ScriptBar* scripts_ = nullptr;
  ConditionWait* wait_ = nullptr;
  std::unique_ptr<QPrinter> printer_;  // while a page is being printed
  QString ownPage_;                    // instead of a folder
  PageRows rows_;
  QStringList gone_;      // since the folder's messages have been looked for elsewhere
  bool follows_ = false;  // the newest page, as it is made anew
  bool rests_ = false;
  int attempts_ = 0;  // to load a page that the engine gave up
  bool closing_ = false;
  QTimer explore_;
  QTimer checkRows_;
  std::unique_ptr<PageMessages> messages_;
  std::unique_ptr<PageCommands> commands_;
};

}  // namespace vorn
