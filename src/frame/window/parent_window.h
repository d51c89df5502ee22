#pragma once

#include <QMainWindow>
#include <QPointer>
#include <QTimer>

#include "frame/dispatcher.h"
#include "frame/event_log.h"
#include "frame/other_programs.h"
#include "frame/source_watch.h"
#include "frame/window/archive_commands.h"
#include "frame/window/console_tree.h"
#include "frame/window/damage_questions.h"
#include "frame/window/message_actions.h"
#include "frame/window/new_message_notice.h"
#include "frame/window/status_bar.h"
#include "frame/window/unread_counter.h"
#include "mail/window/message_host.h"
#include "present/message_list_page.h"
#include "present/window/browser_host.h"
#include "present/window/browser_profiles.h"
#include "transfer/mail_traffic.h"

class QAction;
class QMenu;
class QSplitter;
class QToolBar;

namespace vorn {

class BrowserArea;
class BrowserWindow;
class TaskTray;

/// The main window "parent": the console tree, the browser windows in their area, the menus and the
/// status bar. It owns the request queue and the mail traffic and drives both by its timers.
class ParentWindow : public QMainWindow,
                     public DispatchHost,
                     public PlanHost,
                     public EventView,
                     public BrowserHost,
                     public MessageHost {
  Q_OBJECT

 public:
  explicit ParentWindow(Context& context);
  ~ParentWindow() override;

  /// Fills the window after a login and opens the inbox.
  void LoadDefaultProperty();
  /// The Tools menu's entry with that index; 0 is "send and receive messages".
  void menuTools_Click(int index);
  /// Keeps what is being written and the state of the windows, and ends the traffic, without a
  /// question: the program is about to end.
  void KeepEverything();
  /// Opens what the program was started with: a message file or a "mailto:" address.
  void OpenArgument(const QString& argument);
  MailTraffic& Traffic() { return traffic_; }
  /// Opens a web page in a window of its own.
  void OpenWebPage(const QString& url);

  // DispatchHost
  bool IsEnabled() const override;
  std::vector<RequestWindow*> OpenWindows() const override;
  RequestWindow* CreateRequestWindow(const Disk& request) override;
  void ArrangeWindows() override;
  void NotifyNewMessages(const Disk& request) override;
  void ApplySettings() override;
  QString NodeText(const QString& serialId) const override;
  void RefreshNode(const QString& serialId) override;

  // PlanHost
  void PostRequest(const DiskPtr& request) override { queue_.Post(request); }
  void AddEvent(int level, int mode, const QString& reference, const QString& title,
                const QString& category, const QString& text) override;
  void SendAndReceive() override { menuTools_Click(0); }
  QString ChooseAccount(const QString& title, const QString& prompt) override;
  QString AskPassword(const QString& account) override;
  void WorkIsHeld(const QString& sentence) override;

  // EventView
  void ShowEvent(const QString& serialId, const QString& title, const QString& icon) override;

  // BrowserHost
  void OpenMessage(int open, const QString& serialId, bool isNew) override;
  void WriteTo(const QString& mailto) override { queue_.PostMailRequest(MailRequest::New(mailto)); }
  QStringList ActOnMessages(MessageAction action, const QStringList& messages,
                            const QString& folder) override {
    return actions_.Act(action, messages, folder);
  }
  BrowserWindow* NewBrowserWindow() override;
  BrowserWindow* NamedWindow(const QString& name, const BrowserWindow* asking) override;
  void BrowserOpened() override { ArrangeWindows(); }
  void BrowserClosed() override;
  void Tell(const QString& sentence) override;
  bool ChoosePrinter(QPrinter& printer) override;
  MessageHost& Messages() override { return *this; }

  // MessageHost
  void SendMessage(const QString& serialId) override;
  bool ChooseSender(const QString& serialId, const QString& addressLines,
                    const QString& subject) override {
    return traffic_.Plan().ChooseSender(serialId, addressLines, subject);
  }
  void OpenMessageFile(const QString& path) override { OpenArgument(path); }
  void PostMail(const MailRequest& request) override { queue_.PostMailRequest(request); }
  void PrintPageFile(const QString& path) override;
  QString NeighbourMessage(const QString& serialId, int step) override;
  void GatherAlike(const QString& serialId) override { MakeRule(serialId, false); }
  void StopAlike(const QString& serialId) override { MakeRule(serialId, true); }
  void AddToBook(const QStringList& serialIds) override;
  bool IsClosing() const override { return closing_; }
  void MessageStored() override { foldersChanged_ = true; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  enum ToolsEntry { kToolsReceive = 0, kToolsCancel, kToolsRules, kToolsSettings, kToolsVersion };

  void BuildMenus();
  void BuildFileMenu();
  void BuildDisplayMenu();
  void BuildMessageMenu();
  void BuildPaneMenu(QMenu& display);
  void PlacePane(int place);
  void BuildBookmarkMenu();
  void FillBookmarkMenu(QMenu* menu);
  void BuildToolbar();
  void BuildHelpMenu();
  void ShowGuide();
  QAction* AddMessageButton(QToolBar& bar, const QString& text, const QString& command);
  void BuildLayoutMenu(QMenu& display);
  void ChooseLayout(const QString& id);
  QString CurrentFolder() const;
  void EditLayout();
  void DropMessage(const QString& message, const QString& folder);
  void MakeRule(const QString& serialId, bool stops);
  bool MayEndSending();
  void EndAfterSending();
  void KeepPlacement();
  void FollowActivePage();
  void ShowTitle();
  BrowserWindow* NewUnseenBrowser();
  QWidget* FrontWindow();
  void ClearEvents();
  void ShowTaskTray(bool shown);
  Q_INVOKABLE void OfferDrafts();
  void OfferLook();
  void OfferDoubtful();
  void ConnectTree();
  void OpenNode(const QString& key, const QString& tag, bool inTabOfItsOwn);
  void OpenFolder(const QString& serialId);
  void PostDialog(const QString& key, const QString& tag, int show, const QString& after,
                  const QString& event = {});
  void NewMessage();
  void PostNewObject(const QString& type, const QString& parent);
  void DeleteObject(const QString& key, const QString& tag);
  void OpenEvent(const QString& serialId);
  void DispatchSoon();
  void tmPlan_Timer();
  void RefreshFolders();
  void Track(QObject* object, RequestWindow* window);

  Context& context_;
  MessageListPages pages_;
  BrowserProfiles profiles_;
  RequestQueue queue_;
  Dispatcher dispatcher_;
  EventLog events_;
  MainStatusBar* sbStatus_;
  MailTraffic traffic_;
  SourceWatch watch_;
  ConsoleTree* tvConsole_;
  BrowserArea* area_;
  QPointer<BrowserWindow> takesBack_;  // the list for which that is done just now
  QSplitter* splitter_;
  QToolBar* tbMain_ = nullptr;
  std::unique_ptr<TaskTray> tasktray_;
  QAction* version_ = nullptr;  // the menu entries that the notification area's menu shares
  QAction* exit_ = nullptr;
  QTimer tmDialog_;
  QTimer tmPlan_;
  OtherPrograms others_;
  UnreadCounter unread_;
  NewMessageNotice notice_;
  DamageQuestions damage_;
  MessageActions actions_;
  ArchiveCommands archive_;
  std::vector<RequestWindow*> windows_;
  QObject tracker_;  // hears of their ends as long as there is a list of them
  int storedSeen_ = 0;
  bool foldersChanged_ = false;
  bool closing_ = false;
  bool endsAfterSending_ = false;  // the user has closed the program meanwhile
};

}  // namespace vorn
