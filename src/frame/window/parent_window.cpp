#include "frame/window/parent_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>
#include <QTimer>
#include <tuple>

#include "frame/ui_language.h"
#include "frame/window/commands/bookmark_menu.h"
#include "frame/window/commands/display_menu.h"
#include "frame/window/commands/file_menu.h"
#include "frame/window/commands/main_toolbar.h"
#include "frame/window/commands/page_menus.h"
#include "frame/window/commands/tools_menu.h"
#include "frame/window/commands/tree_commands.h"
#include "frame/window/notices/start_questions.h"
#include "frame/window/panes/browser_area.h"
#include "kit/window/icons.h"
#include "mail/window/message_window.h"
#include "objects/any_object.h"
#include "objects/object_types.h"
#include "objects/save_object.h"
#include "objects/select_objects.h"
#include "objects/settings.h"
#include "objects/window_request.h"
#include "present/folder_layout.h"
#include "present/window/browser_window.h"
#include "present/window/folder/shown_folder.h"
#include "present/window/page/first_use.h"
#include "storage/ui.h"
#include "storage/window/control_state.h"

namespace vorn {
namespace {

// As `KeepUiLanguage` takes it.
QString WordOf(LanguageChoice language) {
  switch (language) {
    case LanguageChoice::Japanese:
      return QStringLiteral("ja");
    case LanguageChoice::English:
      return QStringLiteral("en");
    default:
      return {};
  }
}

}  // namespace

ParentWindow::ParentWindow(Context& context)
    : context_(context),
      requests_(context, *this),
      sbStatus_(new MainStatusBar(this)),
      panes_(new FolderPanes(context)),
      traffic_(context, *this, requests_.Queue(), *sbStatus_, panes_->Tree().Nodes()),
      opener_(context, *this, requests_.Queue(), traffic_.Events(), panes_->Tree(), changes_),
      closing_(*this, traffic_.Traffic(), *sbStatus_),
      changes_(context, *panes_, windows_, traffic_.Traffic(), traffic_.Events()),
      messages_({.context = context,
                 .window = *this,
                 .panes = *panes_,
                 .windows = windows_,
                 .opener = opener_,
                 .changes = changes_,
                 .plan = traffic_.Plan(),
                 .closing = closing_,
                 .status = *sbStatus_}),
      pages_(context, *this, *panes_, windows_, opener_, messages_, *sbStatus_),
      windows_(context, *this, panes_->Area(), traffic_.Events(), pages_, messages_),
      damage_(
          context, *this, [this] { return IsEnabled() && !traffic_.IsBusy(); },
          [this](const QString& sentence) {
            traffic_.AddEvent(kEventError, kEventObject, context_.Session->Serial(),
                              AnyObject(*context_.Session).Name(), QStringLiteral("account"),
                              sentence);
          }),
      notice_(
          context, *this,
          [this](const SerialId& serialId) { opener_.ShowMessage(MailRequest::Of(serialId)); },
          [this](MessageAction action, const SerialIds& messages) {
            pages_.Actions().Act(action, messages, {});
          }),
      tray_(*this) {
  setObjectName(QStringLiteral("parent"));
  setWindowIcon(Icon(QStringLiteral("mail")));
  setCentralWidget(panes_);
  setStatusBar(sbStatus_);
  BuildMenus();
  tbMain_ = new MainToolbar(panes_->Area(), opener_, pages_, this);
  connect(tbMain_, &MainToolbar::TrafficWanted, this, [this] { menuTools_Click(0); });
  connect(tbMain_, &MainToolbar::TreeWanted, panes_, &FolderPanes::TurnOver);
  connect(panes_, &FolderPanes::RoomChanged, tbMain_,
          [this](bool forBoth) { tbMain_->OfferTree(!forBoth); });
  addToolBar(tbMain_);
  new TreeCommands(context_, *this, *panes_, windows_, opener_, pages_.Actions());
  ConnectPieces();
}

ParentWindow::~ParentWindow() {
  closing_.Begin();
  // The browser windows hold pages of profiles that a piece of this window owns.
  delete &panes_->Area();
}

void ParentWindow::BuildMenus() {
  QMenuBar* bar = menuBar();
  auto* file = new FileMenu({.context = context_,
                             .window = *this,
                             .panes = *panes_,
                             .opener = opener_,
                             .actions = pages_.Actions(),
                             .traffic = traffic_,
                             .messages = messages_},
                            bar);
  auto* display =
      new DisplayMenu(context_, *this, *panes_, windows_, traffic_.Events(), changes_, bar);
  auto* tools = new ToolsMenu({.window = *this,
                               .opener = opener_,
                               .traffic = traffic_,
                               .closing = closing_,
                               .version = context_.VersionText},
                              bar);
  connect(display, &DisplayMenu::SettingsChanged, this, &ParentWindow::ApplySettings);
  tray_.ShareEntries(tools->Version(), file->Exit());
  for (QMenu* menu : std::initializer_list<QMenu*>{
           file, display, new PageMessageMenu(panes_->Area(), bar), tools,
           new BookmarkMenu(context_, opener_, bar), new WindowMenu(*panes_, windows_, bar),
           new HelpMenu(windows_, panes_->Area(), tools->Version(), bar)}) {
    bar->addMenu(menu);
  }
}

void ParentWindow::ConnectPieces() {
  BrowserArea* area = &panes_->Area();
  const auto showChosen = [this, area] {
    const BrowserWindow* browser = area->Active();
    sbStatus_->ShowChosen(browser == nullptr ? 0 : browser->Folder().CountChosen());
  };
  connect(area, &BrowserArea::ActiveChanged, this, showChosen);
  connect(area, &BrowserArea::ChosenChanged, this, showChosen);
  connect(area, &BrowserArea::StepWanted, this, [this](const QString& step) {
    if (step == first_step::kPassword) {
      opener_.OpenObject(context_.Session->Serial(), object_type::kProfile, kShowModal,
                         AfterStep::None);
    } else if (auto* action = findChild<QAction*>(step)) {
      action->trigger();
    }
  });
  connect(sbStatus_, &MainStatusBar::CancelClicked, this, [this] { closing_.CancelTraffic(); });
  connect(&traffic_, &TrafficHost::Ticked, this, &ParentWindow::Tick);
  // The user would not learn of it.
  connect(&traffic_, &TrafficHost::ListsChanged, this, [this] { changes_.Note(); });
  connect(&traffic_, &TrafficHost::Failed, this, [this] { closing_.Stay(); });
}

void ParentWindow::menuTools_Click(int entry) {
  menuBar()->findChild<ToolsMenu*>()->Click(entry);
}

void ParentWindow::LoadDefaultProperty() {
  RestoreWindowPlacement(context_, *this, objectName());
  panes_->LoadWidths(objectName(), width());
  ShowTitle();
  panes_->Tree().Nodes().Fill();
  ApplySettings();
  ArrangeWindows();
  const DiskPtr folder = DefaultObject(context_.Objects, object_type::kFolder);
  opener_.OpenFolder(folder == nullptr ? fixed_serial::kInbox : folder->Serial());
  changes_.CountSoon();
  const bool isMaximized = WasMaximized(context_, objectName());
  QTimer::singleShot(0, this, [this, isMaximized] {
    // Earlier the first page, which makes the native window anew, would undo it.
    if (isMaximized) setWindowState(windowState() | Qt::WindowMaximized);
    AskAtStart();
    damage_.Start();
  });
}

void ParentWindow::AskAtStart() {
  for (const SerialId& serialId : AskOfDoubtful(context_, *this))
    opener_.ShowMessage(MailRequest::Of(serialId));
  const SerialIds drafts = AskOfDrafts(context_, *this);
  for (const SerialId& serialId : drafts) opener_.ShowMessage(MailRequest::Of(serialId));
  if (!drafts.isEmpty()) changes_.Note();
  damage_.Ask();
  if (!AskOfLook(context_, *this)) return;
  // The question is answered; the layout can be chosen in the menu, too.
  std::ignore = ShareLayout(context_, QStringLiteral("table"), OwnLayouts::Kept);
  panes_->Area().Arrange(Arrangement::Tabs);
  ApplySettings();
  changes_.Note();
}

void ParentWindow::Tick() {
  windows_.UnloadDust();
  if (IsEnabled() && closing_.MayFollow()) {
    closing_.Stay();  // asked again, should something else come between
    close();
  }
  changes_.Tick();
  if (IsEnabled()) {
    for (const SerialId& serialId : changes_.NewObjects()) RefreshNode(serialId);
  }
  if (damage_.IsDue() && IsEnabled()) damage_.Ask();
}

bool ParentWindow::IsEnabled() const {
  return QApplication::activeModalWidget() == nullptr && isEnabled();
}

void ParentWindow::ArrangeWindows() {
  panes_->Area().ArrangeAsKept();
}

void ParentWindow::NotifyNewMessages(const Disk& request) {
  notice_.Tell(WindowRequest(request).NewMessages());
}

void ParentWindow::ApplySettings() {
  const Settings settings(context_);
  KeepUiLanguage(WordOf(settings.Language()));
  traffic_.Plan().CreateMessagePlan(kPlanPeriodic);
  sbStatus_->setVisible(settings.ShowsStatusBar());
  tray_.Show(settings.ShowsTaskTray());
  tbMain_->ShowWords(!settings.HasIconToolbar());
  const FontChoice font = settings.Font(FontUse::List);
  windows_.Profiles().UseFont(font.family, font.points);
  for (BrowserWindow* browser : panes_->Area().Browsers()) browser->ControlToolbarUpdate();
  panes_->Area().RefreshFolders();  // how many rows a page has, and how they are shown
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (auto* message = qobject_cast<MessageWindow*>(window)) message->ControlToolbarUpdate();
  }
}

QString ParentWindow::NodeText(const SerialId& serialId) const {
  return panes_->Tree().Nodes().Text(serialId);
}

void ParentWindow::RefreshNode(const SerialId& serialId) {
  if (!panes_->Refresh(serialId)) opener_.OpenFolder(fixed_serial::kInbox);
  changes_.CountSoon();
  // The inbox shows what is in no folder that is filled by hand, and at first what is to be done.
  const DiskPtr object = context_.Objects.Find(serialId);
  const auto is = [&object](const QString& type) { return AnyObject(*object).Is(type); };
  if (object == nullptr || is(object_type::kFolder) || is(object_type::kAccount)) changes_.Note();
  if (serialId != context_.Session->Serial()) return;
  ShowTitle();
  panes_->Area().RefreshFolders();  // it may have another mail file now
}

void ParentWindow::ShowTitle() {
  setWindowTitle(AnyObject(*context_.Session).Name() + QStringLiteral(" - ") + kApplicationTitle);
}

void ParentWindow::KeepPlacement() {
  panes_->KeepWidths(objectName());
  KeepWindowPlacement(context_, *this, objectName());
}

void ParentWindow::KeepEverything() {
  KeepOpenDrafts();
  traffic_.Plan().Cancel();
  KeepPlacement();
  std::ignore = SaveMarkedObjects(context_);  // nobody could be asked any more
}

void ParentWindow::closeEvent(QCloseEvent* event) {
  if ((!qApp->isSavingSession() && !closing_.MayEndSending()) || !closing_.CloseOthers()) {
    event->ignore();
    return;
  }
  requests_.Stop();
  traffic_.Timer().stop();
  changes_.Stop();
  tray_.Leave();
  KeepPlacement();
  std::ignore = SaveMarkedObjects(context_);  // nobody could be asked any more
  requests_.Queue().Clear();
  traffic_.Plan().Cancel();
  traffic_.Plan().Clear();
  QMainWindow::closeEvent(event);
}

void ParentWindow::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  if (isVisible()) QTimer::singleShot(0, this, &ParentWindow::ArrangeWindows);
}

}  // namespace vorn
