#include "frame/window/parent_window.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QSplitter>

#include "frame/start_up.h"
#include "frame/window/icons.h"
#include "frame/window/version_window.h"
#include "mail/window/message_window.h"
#include "objects/object_types.h"
#include "objects/select_objects.h"
#include "objects/settings.h"
#include "present/window/browser_window.h"
#include "storage/databases.h"

namespace vorn {
namespace {

constexpr int kTickMs = 100;
constexpr int kTreeWidth = 220;
constexpr int kMessageMs = 10000;

// Values of the main window's "arrange".
enum Arrangement { kCascade = 0, kTile = 2 };

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
      tvConsole_(new ConsoleTree(context)),
      area_(new QMdiArea) {
  setObjectName(QStringLiteral("parent"));
  setWindowIcon(Icon(QStringLiteral("mail")));
  resize(1000, 680);
  area_->setObjectName(QStringLiteral("mdiArea"));

  auto* splitter = new QSplitter;
  splitter->addWidget(tvConsole_);
  splitter->addWidget(area_);
  splitter->setStretchFactor(1, 1);
  splitter->setSizes({kTreeWidth, width() - kTreeWidth});
  setCentralWidget(splitter);
  setStatusBar(sbStatus_);
  BuildMenus();

  connect(tvConsole_, &ConsoleTree::NodeOpened, this, &ParentWindow::OpenNode);
  connect(sbStatus_, &MainStatusBar::CancelClicked, this,
          [this] { menuTools_Click(kToolsCancel); });
  connect(&tmDialog_, &QTimer::timeout, this, [this] { dispatcher_.Tick(); });
  connect(&tmPlan_, &QTimer::timeout, this, &ParentWindow::tmPlan_Timer);
  tmDialog_.start(kTickMs);
  tmPlan_.start(kTickMs);
}

ParentWindow::~ParentWindow() {
  closing_ = true;
  // The browser windows hold pages of profiles that this window owns.
  for (QMdiSubWindow* child : area_->subWindowList()) delete child;
}

void ParentWindow::BuildMenus() {
  const auto tools = [this](QMenu* menu, int index, const QString& text) {
    return menu->addAction(text, this, [this, index] { menuTools_Click(index); });
  };
  QMenu* file = menuBar()->addMenu(QStringLiteral("ファイル(&F)"));
  file->setObjectName(QStringLiteral("menuFiles"));
  QAction* exit = file->addAction(QStringLiteral("終了(&X)"), this, &QWidget::close);
  exit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));

  QMenu* tool = menuBar()->addMenu(QStringLiteral("ツール(&T)"));
  tool->setObjectName(QStringLiteral("menuTools"));
  tools(tool, kToolsReceive, QStringLiteral("メッセージ送受信(&M)"))
      ->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_M));
  QAction* cancel = tools(tool, kToolsCancel, QStringLiteral("送受信の中止(&C)"));
  tool->addSeparator();
  tools(tool, kToolsVersion, QStringLiteral("バージョン情報(&V).."));
  connect(tool, &QMenu::aboutToShow, this,
          [this, cancel] { cancel->setEnabled(traffic_.Control().Busy()); });

  QMenu* window = menuBar()->addMenu(QStringLiteral("ウィンドウ(&W)"));
  window->setObjectName(QStringLiteral("menuWindows"));
  window->addAction(QStringLiteral("重ねて表示(&C)"), area_, &QMdiArea::cascadeSubWindows);
  window->addAction(QStringLiteral("並べて表示(&T)"), area_, &QMdiArea::tileSubWindows);
  window->addAction(QStringLiteral("次のウィンドウ(&N)"), area_, &QMdiArea::activateNextSubWindow)
      ->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Tab));
}

void ParentWindow::LoadDefaultProperty() {
  setWindowTitle(context_.Session->Text(u"Object") + QStringLiteral(" - ") + kApplicationTitle);
  tvConsole_->Fill();
  ApplySettings();
  OpenFolder(fixed_serial::kInbox);
}

void ParentWindow::menuTools_Click(int index) {
  switch (index) {
    case kToolsReceive:
      if (SelectObjects(context_.Objects, *context_.Session, object_type::kAccount, kSelectEnabled)
              ->IsEmpty()) {
        sbStatus_->showMessage(QStringLiteral("送受信するアカウントがありません。"), kMessageMs);
        return;
      }
      sbStatus_->clearMessage();
      traffic_.Plan().CreateMessagePlan(kPlanReceive | kPlanSend);
      break;
    case kToolsCancel:
      traffic_.Plan().Clear();
      traffic_.Control().Cancel();
      break;
    default:
      QMessageBox::information(
          this, kApplicationTitle,
          kApplicationTitle + QStringLiteral(" version. ") + context_.VersionText);
  }
}

void ParentWindow::tmPlan_Timer() {
  const std::vector<RequestWindow*> open = windows_;
  for (RequestWindow* window : open) {
    if (window->Dust()) window->Unload();
  }
  traffic_.Tick();
  if (!traffic_.Control().Busy()) RefreshFolders();
}

// What arrived in a session shows up in the open folders by itself.
void ParentWindow::RefreshFolders() {
  const int stored = traffic_.Events().Counts().stored;
  if (stored == storedSeen_) return;
  storedSeen_ = stored;
  for (auto* browser : area_->findChildren<BrowserWindow*>()) {
    if (browser->IsLocal()) browser->Refresh();
  }
}

bool ParentWindow::IsEnabled() const {
  return QApplication::activeModalWidget() == nullptr && isEnabled();
}

std::vector<RequestWindow*> ParentWindow::OpenWindows() const {
  return windows_;
}

RequestWindow* ParentWindow::CreateRequestWindow(const QString& status) {
  if (status == u"browser") {
    return AddChild(new BrowserWindow(context_, pages_, profiles_, *this));
  }
  if (status == u"mail") {
    auto* window = new MessageWindow(context_);
    Track(window, window);
    return window;
  }
  return nullptr;
}

RequestWindow* ParentWindow::AddChild(BrowserWindow* window) {
  Track(window, window);
  QMdiSubWindow* frame = area_->addSubWindow(window);
  frame->setAttribute(Qt::WA_DeleteOnClose);
  frame->setWindowIcon(Icon(QStringLiteral("folder")));
  return window;
}

void ParentWindow::Track(QObject* object, RequestWindow* window) {
  windows_.push_back(window);
  connect(object, &QObject::destroyed, this, [this, window] { std::erase(windows_, window); });
}

void ParentWindow::ArrangeWindows() {
  const DiskPtr saved = context_.Objects.Find(QStringLiteral("DATA_parent"));
  const int arrange = saved == nullptr ? kTile : saved->Number(u"arrange", kTile);
  if (arrange == kCascade) {
    area_->cascadeSubWindows();
  } else {
    area_->tileSubWindows();
  }
}

void ParentWindow::NotifyNewMessages(const Disk& request) {
  if (!Settings(context_)->Flag(u"MessageNoticeDialog")) return;
  QMessageBox question(QMessageBox::Question, kApplicationTitle,
                       QStringLiteral("新着メッセージを受信しました。今すぐ開きますか？"),
                       QMessageBox::Ok | QMessageBox::Cancel, this);
  question.setDefaultButton(QMessageBox::Cancel);
  if (question.exec() != QMessageBox::Ok) return;
  for (const QString& serialId : request.Text(u"message").split(kLineBreak)) {
    OpenMessage(0, serialId, false);
  }
}

void ParentWindow::ApplySettings() {
  traffic_.Plan().CreateMessagePlan(kPlanPeriodic);
  sbStatus_->setVisible(Settings(context_)->Flag(u"Statusbar", true));
  for (auto* browser : area_->findChildren<BrowserWindow*>()) browser->ControlToolbarUpdate();
}

QString ParentWindow::NodeText(const QString& serialId) const {
  return tvConsole_->NodeText(serialId);
}

void ParentWindow::RefreshNode(const QString& serialId) {
  tvConsole_->RefreshNode(serialId);
}

void ParentWindow::AddEvent(int level, int mode, const QString& reference, const QString& title,
                            const QString& category, const QString& text) {
  events_.AddEvent(level, mode, reference, title, category, text);
  if (level == kEventError) {
    sbStatus_->showMessage(title + QStringLiteral(": ") + text.section(kLineBreak, -1), 0);
  } else {
    sbStatus_->showMessage(text.section(kLineBreak, -1), kMessageMs);
  }
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
  request.file = context_.Session->Text(u"Mail");
  request.password = context_.Session->Text(u"password");
  queue_.PostMailRequest(request);
}

void ParentWindow::BrowserClosed() {
  if (!closing_) QTimer::singleShot(0, this, &ParentWindow::ArrangeWindows);
}

void ParentWindow::OpenNode(const QString& key, const QString& tag) {
  if (tag == object_type::kFolder) OpenFolder(key);
  if (tag == u"log") OpenEvent(key);
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
  QMessageBox::information(
      this, kApplicationTitle,
      record->Text(u"daytime") + kLineBreak + kLineBreak + record->Text(u"message"));
}

void ParentWindow::closeEvent(QCloseEvent* event) {
  tmDialog_.stop();
  tmPlan_.stop();
  queue_.Clear();
  traffic_.Plan().Clear();
  traffic_.Control().Cancel();
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window != this && window->isVisible()) window->close();
  }
  QMainWindow::closeEvent(event);
}

void ParentWindow::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  if (isVisible()) QTimer::singleShot(0, this, &ParentWindow::ArrangeWindows);
}

}  // namespace vorn
