#include "frame/window/parent_window.h"

#include <QApplication>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QSplitter>
#include <QToolBar>
#include <algorithm>
#include <tuple>

#include "auxiliary/window/console_window.h"
#include "frame/ui_language.h"
#include "frame/window/browser_area.h"
#include "frame/window/message_drop.h"
#include "frame/window/node_commands.h"
#include "frame/window/start_questions.h"
#include "frame/window/version_window.h"
#include "kit/window/icons.h"
#include "kit/window/plain_text.h"
#include "mail/archive/import_messages.h"
#include "mail/mailto.h"
#include "mail/message_bag.h"
#include "mail/window/message_window.h"
#include "objects/any_object.h"
#include "objects/object_types.h"
#include "objects/save_object.h"
#include "objects/select_objects.h"
#include "objects/settings.h"
#include "objects/standard_objects.h"
#include "objects/window/objects_window.h"
#include "objects/window/settings_window.h"
#include "present/folder_layout.h"
#include "present/window/browser_window.h"
#include "present/window/shown_folder.h"
#include "storage/databases.h"
#include "storage/profile_bag.h"
#include "storage/ui.h"
#include "storage/window/control_state.h"
#include "transfer/window/rule_window.h"
#include "transfer/window/task_tray.h"

namespace vorn {
namespace {

constexpr int kMostOfSubject = 20;  // characters in the status bar
constexpr int kTickMs = 100;
constexpr int kTreeWidth = 210;
constexpr int kLeastTreeWidth = 140;
constexpr int kMessageMs = 10000;

const QString kTree = QStringLiteral("tree");

}  // namespace

ParentWindow::ParentWindow(Context& context)
    : context_(context),
      pages_(context),
      profiles_(context.AppFolder + QStringLiteral("web")),
      queue_(context),
      dispatcher_(context, queue_, *this),
      events_(context, *this),
      sbStatus_(new MainStatusBar(this)),
      traffic_(context, *this, *sbStatus_),
      watch_(context, [this] { return IsEnabled() && !traffic_.Control().Busy(); }),
      tvConsole_(new ConsoleTree(context)),
      area_(new BrowserArea(context)),
      splitter_(new QSplitter),
      others_(context),
      unread_(context, *tvConsole_, [this] { return traffic_.Control().Busy(); }),
      notice_(
          context, *this, [this](const QString& serialId) { OpenMessage(0, serialId, false); },
          [this](MessageAction action, const QStringList& messages) {
            actions_.Act(action, messages, QString());
          }),
      damage_(context, *this,
              [this](const QString& sentence) {
                AddEvent(kEventError, kEventObject, context_.Session->SerialID(),
                         AnyObject(*context_.Session).Name(), QStringLiteral("account"), sentence);
              }),
      actions_(context, *this, *this),
      archive_(context, *this, *this, traffic_, tmPlan_) {
  setObjectName(QStringLiteral("parent"));
  setWindowIcon(Icon(QStringLiteral("mail")));

  splitter_->setObjectName(QStringLiteral("splitter"));
  splitter_->addWidget(tvConsole_);
  splitter_->addWidget(area_);
  splitter_->setStretchFactor(1, 1);
  splitter_->setChildrenCollapsible(false);
  tvConsole_->setMinimumWidth(kLeastTreeWidth);  // names stay readable in a window made small
  setCentralWidget(splitter_);
  setStatusBar(sbStatus_);
  BuildMenus();
  BuildToolbar();

  ConnectTree();
  connect(area_, &BrowserArea::ActiveChanged, this, &ParentWindow::FollowActivePage);
  const auto showChosen = [this] {
    const BrowserWindow* browser = area_->Active();
    sbStatus_->ShowChosen(browser == nullptr ? 0 : browser->Folder().CountChosen());
  };
  connect(area_, &BrowserArea::ActiveChanged, this, showChosen);
  connect(area_, &BrowserArea::ChosenChanged, this, showChosen);
  actions_.OnDone([this](const QString& done, std::function<void()> undo) {
    sbStatus_->OfferUndo(done, std::move(undo));
  });
  // The next key means it, in the list where it was taken back.
  actions_.OnReturned([this](const QStringList& messages) {
    if (takesBack_ != nullptr) takesBack_->Folder().GoToReturned(messages);
  });
  actions_.OnDeleted([this] { sbStatus_->ForgetSteps(); });
  actions_.OnFolderMade([this](const QString& folder) { tvConsole_->RefreshNode(folder); });
  // After what was asked of the page before, whose answer comes later.
  connect(sbStatus_, &MainStatusBar::UndoWanted, this, [this] {
    BrowserWindow* browser = area_->Active();
    if (browser == nullptr) return sbStatus_->TakeBack();
    browser->Folder().AfterCommands([this, browser] {
      takesBack_ = browser;
      sbStatus_->TakeBack();
      takesBack_.clear();
    });
  });
  connect(sbStatus_, &MainStatusBar::CancelClicked, this,
          [this] { menuTools_Click(kToolsCancel); });
  connect(&tmDialog_, &QTimer::timeout, this, [this] { dispatcher_.Tick(); });
  connect(&tmPlan_, &QTimer::timeout, this, &ParentWindow::tmPlan_Timer);
  tmDialog_.start(kTickMs);
  // Nobody who clicked has to wait for the next tick.
  queue_.OnPosted([this] { QTimer::singleShot(0, this, [this] { DispatchSoon(); }); });
  tmPlan_.start(kTickMs);
  watch_.OnDamage([this] { QTimer::singleShot(0, this, [this] { damage_.Ask(); }); });
}

ParentWindow::~ParentWindow() {
  closing_ = true;
  // The browser windows hold pages of profiles that this window owns.
  delete area_;
}

void ParentWindow::ConnectTree() {
  connect(tvConsole_, &ConsoleTree::NodeOpened, this, &ParentWindow::OpenNode);
  connect(&tvConsole_->Commands(), &NodeCommands::NewWanted, this, &ParentWindow::PostNewObject);
  connect(&tvConsole_->Commands(), &NodeCommands::PropertiesWanted, this,
          [this](const QString& key, const QString& tag) {
            PostDialog(key, tag, kShowModal, QString());
          });
  connect(tvConsole_, &ConsoleTree::NodeRenamed, this,
          [this](const QString& key, const QString& tag) {
            PostDialog(key, tag, kShowHidden, QStringLiteral("rename"));
          });
  connect(&tvConsole_->Commands(), &NodeCommands::DeletionWanted, this,
          &ParentWindow::DeleteObject);
  connect(&tvConsole_->Drop(), &MessageDrop::Dropped, this, &ParentWindow::DropMessage);
}

void ParentWindow::PostDialog(const QString& key, const QString& tag, int show,
                              const QString& after, const QString& event) {
  DialogRequest request;
  request.serialId = key;
  request.status = tag;
  request.show = show;
  request.after = after;
  request.event = event;
  queue_.PostDialogRequest(request);
}

void ParentWindow::NewMessage() {
  queue_.PostMailRequest(MailRequest::New());
}

void ParentWindow::PostNewObject(const QString& type, const QString& parent) {
  DialogRequest request;
  request.status = type;
  request.isNew = true;
  request.parent = parent;
  queue_.PostDialogRequest(request);
}

void ParentWindow::LoadDefaultProperty() {
  RestoreWindowPlacement(context_, *this, objectName());
  const int treeWidth = PlacementBag(context_, objectName())->Number(kTree, kTreeWidth);
  splitter_->setSizes({treeWidth, qMax(1, width() - treeWidth)});
  ShowTitle();
  tvConsole_->Fill();
  ApplySettings();
  ArrangeWindows();
  OpenFolder(fixed_serial::kInbox);
  unread_.CountSoon();
  const bool isMaximized = WasMaximized(context_, objectName());
  QTimer::singleShot(0, this, [this, isMaximized] {
    // Earlier the first page, which makes the native window anew, would undo it.
    if (isMaximized) setWindowState(windowState() | Qt::WindowMaximized);
    OfferDoubtful();
    OfferDrafts();
    damage_.Ask();
    OfferLook();
    watch_.Start();
  });
}

void ParentWindow::OfferDoubtful() {
  for (const QString& serialId : AskOfDoubtful(context_, *this)) OpenMessage(0, serialId, false);
}

void ParentWindow::OfferDrafts() {
  const QStringList drafts = AskOfDrafts(context_, *this);
  for (const QString& serialId : drafts) OpenMessage(0, serialId, false);
  if (!drafts.isEmpty()) MessageStored();
}

void ParentWindow::OfferLook() {
  if (!AskOfLook(context_, *this)) return;
  // The question is answered; the layout can be chosen in the menu, too.
  std::ignore = ShareLayout(context_, QStringLiteral("table"), OwnLayouts::Kept);
  area_->Arrange(Arrangement::Tabs);
  ApplySettings();
  MessageStored();
}

void ParentWindow::menuTools_Click(int index) {
  switch (index) {
    case kToolsReceive:
      if (SelectObjects(context_.Objects, *context_.Session, object_type::kAccount, kSelectEnabled)
              ->IsEmpty()) {
        sbStatus_->showMessage(Ui::tr("送受信するアカウントがありません。ファイル > "
                                      "新規作成 > アカウントで追加してください。"),
                               kMessageMs);
        return;
      }
      sbStatus_->BeginCheck();
      traffic_.Plan().CreateMessagePlan(kPlanReceive | kPlanSend);
      break;
    case kToolsRules:
      PostDialog(fixed_serial::kRules, fixed_serial::kRules, kShowModal, QString());
      break;
    case kToolsSettings:
      PostDialog(fixed_serial::kSettings, fixed_serial::kSettings, kShowModal,
                 QStringLiteral("public"));
      break;
    case kToolsCancel:
      endsAfterSending_ = false;
      traffic_.Plan().Cancel();
      break;
    default:
      ShowBox(this, QMessageBox::Information,
              kApplicationTitle + QStringLiteral(" version. ") + context_.VersionText);
  }
}

// One more tick, unless the timer's own have ended.
void ParentWindow::DispatchSoon() {
  if (tmDialog_.isActive()) dispatcher_.Tick();
}

void ParentWindow::tmPlan_Timer() {
  const std::vector<RequestWindow*> open = windows_;
  for (RequestWindow* window : open) {
    if (window->Dust()) window->Unload();
  }
  traffic_.Tick();
  EndAfterSending();
  if (!traffic_.Control().Busy() && others_.HaveStored()) foldersChanged_ = true;
  // What the user did shows at once, what a session brings when it has ended.
  if (foldersChanged_ || !traffic_.Control().Busy()) RefreshFolders();
  if (damage_.IsDue() && IsEnabled()) damage_.Ask();
}

// What arrived in a session shows up in the open folders by itself.
void ParentWindow::RefreshFolders() {
  const ReceiveCounts& counts = traffic_.Events().Counts();
  const int stored = counts.stored + counts.sent;
  if (stored == storedSeen_ && !foldersChanged_) return;
  storedSeen_ = stored;
  foldersChanged_ = false;
  unread_.CountSoon();
  area_->RefreshFolders();
  for (RequestWindow* window : OpenWindows()) window->MessagesChanged();
}

bool ParentWindow::IsEnabled() const {
  return QApplication::activeModalWidget() == nullptr && isEnabled();
}

std::vector<RequestWindow*> ParentWindow::OpenWindows() const {
  return windows_;
}

RequestWindow* ParentWindow::CreateRequestWindow(const Disk& request) {
  const QString status = WindowRequest(request).Status();
  if (status == u"browser") {
    // A page that is only printed is none of those that the user arranges and acts on.
    if (request.Text(u"exec") == u"print") return NewUnseenBrowser();
    BrowserWindow* window = NewBrowserWindow();
    area_->Opened(request.SerialID(), window);
    return window;
  }
  if (status == u"mail") {
    auto* window = new MessageWindow(context_, *this, events_);
    Track(window, window);
    return window;
  }
  EditingWindow* window = nullptr;
  if (status == fixed_serial::kSettings) {
    window = new SettingsWindow(context_, this);
  } else if (status == fixed_serial::kRules) {
    window = new RuleWindow(context_, this);
  } else {
    window = new ObjectsWindow(context_, events_, this);
  }
  Track(window, window);
  return window;
}

BrowserWindow* ParentWindow::NewBrowserWindow() {
  auto* window = new BrowserWindow(context_, pages_, profiles_, *this);
  Track(window, window);
  area_->Add(window);
  return window;
}

BrowserWindow* ParentWindow::NewUnseenBrowser() {
  auto* window = new BrowserWindow(context_, pages_, profiles_, *this);
  area_->AddUnseen(window);
  Track(window, window);
  return window;
}

// The tree shows the folder whose page is in use, which commands act on.
void ParentWindow::FollowActivePage() {
  const BrowserWindow* browser = area_->Active();
  const QString folder = browser == nullptr ? QString() : browser->Tag();
  if (!folder.isEmpty()) tvConsole_->SelectNode(folder);
}

void ParentWindow::Track(QObject* object, RequestWindow* window) {
  windows_.push_back(window);
  connect(object, &QObject::destroyed, &tracker_, [this, window] { std::erase(windows_, window); });
}

void ParentWindow::ArrangeWindows() {
  area_->ArrangeAsKept();
}

void ParentWindow::NotifyNewMessages(const Disk& request) {
  notice_.Tell(WindowRequest(request).NewMessages().split(kLineBreak));
}

void ParentWindow::ApplySettings() {
  static constexpr const char16_t* kLanguages[] = {u"", u"ja", u"en"};  // by `LanguageChoice`
  const Settings settings(context_);
  KeepUiLanguage(QString::fromUtf16(kLanguages[static_cast<int>(settings.Language())]));
  traffic_.Plan().CreateMessagePlan(kPlanPeriodic);
  sbStatus_->setVisible(settings.ShowsStatusBar());
  ShowTaskTray(settings.ShowsTaskTray());
  tbMain_->setToolButtonStyle(settings.HasIconToolbar() ? Qt::ToolButtonIconOnly
                                                        : Qt::ToolButtonTextBesideIcon);
  const FontChoice font = settings.Font(FontUse::List);
  profiles_.UseFont(font.family, font.points);
  for (BrowserWindow* browser : area_->Browsers()) browser->ControlToolbarUpdate();
  area_->RefreshFolders();  // how many rows a page has, and how they are shown
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (auto* message = qobject_cast<MessageWindow*>(window)) message->ControlToolbarUpdate();
  }
}

void ParentWindow::ShowTaskTray(bool shown) {
  if (!shown) {
    tasktray_.reset();
  } else if (tasktray_ == nullptr) {
    tasktray_ = std::make_unique<TaskTray>(windowIcon(), version_, exit_, this);
    connect(tasktray_.get(), &TaskTray::Clicked, this, [this] {
      setWindowState(windowState() & ~Qt::WindowMinimized);
      raise();
      activateWindow();
    });
  }
}

QString ParentWindow::NodeText(const QString& serialId) const {
  return tvConsole_->NodeText(serialId);
}

void ParentWindow::RefreshNode(const QString& serialId) {
  const bool wasThere = !tvConsole_->NodeText(serialId).isEmpty();
  tvConsole_->RefreshNode(serialId);
  // Other conditions have other messages, and without its folder a page has none.
  const bool isGone = wasThere && context_.Objects.Find(serialId) == nullptr;
  if (!area_->RefreshFolder(serialId, isGone)) OpenFolder(fixed_serial::kInbox);
  unread_.CountSoon();
  if (serialId != context_.Session->SerialID()) return;
  ShowTitle();
  area_->RefreshFolders();  // it may have another mail file now
}

void ParentWindow::ShowTitle() {
  setWindowTitle(AnyObject(*context_.Session).Name() + QStringLiteral(" - ") + kApplicationTitle);
}

void ParentWindow::AddEvent(int level, int mode, const QString& reference, const QString& title,
                            const QString& category, const QString& text) {
  events_.AddEvent(level, mode, reference, title, category, text);
  if (level == kEventError) {
    endsAfterSending_ = false;  // the user would not learn of it
    // A long subject leaves room for what happened.
    const QString about = ShownText(title, kMostOfSubject);
    // How many came all the same stands last, and is not what is cut off.
    QStringList lines = text.split(kLineBreak);
    lines.prepend(lines.takeLast());
    sbStatus_->Tell((about.isEmpty() ? about : about + QStringLiteral(": ")) + lines.join(u' '),
                    true);
  } else {
    // What was received and what was not, for instance.
    QString all = text;
    sbStatus_->Tell(all.replace(kLineBreak, QStringLiteral(" ")), false);
  }
}

// What a question may stand over: an open list is not, since it goes of itself and takes along what
// stands over it.
QWidget* ParentWindow::FrontWindow() {
  QWidget* active = QApplication::activeWindow();
  return active == nullptr || active->windowType() == Qt::Popup ? this : active;
}

QString ParentWindow::ChooseAccount(const QString& title, const QString& prompt) {
  const DiskCollectionPtr accounts =
      SelectObjects(context_.Objects, *context_.Session, object_type::kAccount);
  // In front of the window that sends; where there is but one, it is chosen already.
  return InputTree(context_, FrontWindow(), title, prompt, object_type::kAccount,
                   accounts->Count() == 1 ? accounts->First()->SerialID() : QString());
}

QString ParentWindow::AskPassword(const QString& account) {
  // What is being typed into another window is no password.
  const bool takesKeys = QApplication::activeWindow() == this;
  return InputPassword(
      context_, this, Ui::tr("パスワード"),
      Ui::tr("アカウント「%1」の受信のパスワードを入力してください。").arg(account), takesKeys);
}

void ParentWindow::WorkIsHeld(const QString& sentence) {
  sbStatus_->showMessage(sentence);
}

void ParentWindow::ShowEvent(const QString& serialId, const QString& title, const QString& icon) {
  tvConsole_->AddEventNode(serialId, title, icon);
}

void ParentWindow::OpenMessage(int open, const QString& serialId, bool isNew) {
  MailRequest request;
  request.open = open;
  request.serialId = serialId;
  request.isNew = isNew;
  request.db = static_cast<int>(DatabaseKind::MailByPath);
  request.file = ProfileBag(*context_.Session).MailFiles();
  request.password = ProfileBag(*context_.Session).Password();
  queue_.PostMailRequest(request);
}

void ParentWindow::OpenArgument(const QString& argument) {
  if (IsMailto(argument)) {
    queue_.PostMailRequest(MailRequest::New(argument));
    return;
  }
  const Result<QString> serialId = TakeMessageFile(context_, argument);
  if (!serialId) {
    ShowBox(this, QMessageBox::Critical, serialId.Error().text);
    return;
  }
  OpenMessage(0, *serialId, false);
  MessageStored();
}

void ParentWindow::SendMessage(const QString& serialId) {
  traffic_.Plan().CreateMessagePlan(kPlanSend, serialId);
}

void ParentWindow::PrintPageFile(const QString& path) {
  BrowserRequest request;
  request.serialId = context_.Data.NewSerialID();
  request.url = path;
  request.local = true;
  request.show = kShowHidden;
  request.exec = QStringLiteral("print");
  queue_.PostBrowserRequest(request);
}

bool ParentWindow::ChoosePrinter(QPrinter& printer) {
  // Over the window whose message is printed.
  QPrintDialog dialog(&printer, FrontWindow());
  dialog.setWindowTitle(Ui::tr("印刷"));
  return dialog.exec() == QDialog::Accepted;
}

void ParentWindow::BrowserClosed() {
  if (!closing_) QTimer::singleShot(0, area_, &BrowserArea::ArrangeAsKept);
}

void ParentWindow::OpenNode(const QString& key, const QString& tag, bool inTabOfItsOwn) {
  if (tag == u"log") OpenEvent(key);
  if (tag != object_type::kFolder) return;
  // Who asks for the folder that he is searching wants all of it.
  BrowserWindow* active = area_->Active();
  if (active != nullptr && active->Tag() == key) active->Folder().GiveUpSearch();
  if (!inTabOfItsOwn && area_->Current() == Arrangement::Tabs) {
    const bool isOpen = std::any_of(windows_.begin(), windows_.end(),
                                    [&](const RequestWindow* open) { return open->Tag() == key; });
    if (!isOpen && area_->ShowInPreview(key)) return;
    area_->ExpectPreview(key);
  }
  OpenFolder(key);
}

void ParentWindow::OpenFolder(const QString& serialId) {
  tvConsole_->SelectNode(serialId);
  BrowserRequest request;
  request.serialId = serialId;
  request.local = true;
  queue_.PostBrowserRequest(request);
}

void ParentWindow::OpenEvent(const QString& serialId) {
  const DiskPtr record = events_.Find(serialId);
  if (record == nullptr) return;
  const QString reference = EventRecord(*record).Reference();
  if (EventRecord(*record).IsAboutMessage()) {
    const MessageBag message(*record);
    MailRequest request;
    request.serialId = reference;
    request.db = static_cast<int>(message.Database());
    request.file = message.File(context_);
    request.password = message.Password();
    request.event = serialId;
    queue_.PostMailRequest(request);
    return;
  }
  const DiskPtr object = context_.Objects.Find(reference);
  const QString type = object == nullptr ? QString() : AnyObject(*object).Type();
  const bool isSettings = reference == fixed_serial::kSettings;
  if (object == nullptr && !isSettings) {
    ShowBox(this, QMessageBox::Information,
            Ui::tr("このイベントのアカウントは削除されています。") + kLineBreak + kLineBreak +
                EventRecord(*record).Text());
    return;
  }
  PostDialog(reference, isSettings ? reference : type, kShowModal,
             isSettings ? QStringLiteral("public") : QString(), serialId);
}

void ParentWindow::KeepPlacement() {
  PlacementBag(context_, objectName())->Let(kTree, splitter_->sizes().value(0, kTreeWidth));
  KeepWindowPlacement(context_, *this, objectName());
}

void ParentWindow::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  if (isVisible()) QTimer::singleShot(0, this, &ParentWindow::ArrangeWindows);
}

}  // namespace vorn
