#include "frame/window/program.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QMessageBox>
#include <QUrl>
#include <cstdlib>
#include <tuple>
#include <utility>

#include "desktop/desktop_secrets.h"
#include "frame/profile_login.h"
#include "frame/start_up.h"
#include "frame/ui_language.h"
#include "frame/window/login_window.h"
#include "frame/window/notices/front_window.h"
#include "frame/window/parent_window.h"
#include "frame/window/version_window.h"
#include "kit/window/plain_text.h"
#include "mail/mailto.h"
#include "mail/window/body/html_view.h"
#include "objects/profile/lost_files.h"
#include "objects/profile/profile_password.h"
#include "objects/settings.h"
#include "present/window/engine/page_source.h"
#include "storage/bags/profile_bag.h"
#include "storage/files/private_files.h"
#include "storage/ui.h"

namespace vorn {

namespace {

// A file's name means something in the folder where the program was started.
QStringList WithFullPaths(QStringList arguments) {
  for (QString& argument : arguments) {
    if (IsMailto(argument)) continue;
    const QUrl url(argument);
    argument = url.isLocalFile() ? url.toLocalFile() : QFileInfo(argument).absoluteFilePath();
  }
  return arguments;
}

}  // namespace

void Program::PrepareEngine() {
  // A look-up of a name that a page merely mentions would tell its owner that it was read.
  const char* options = "QTWEBENGINE_CHROMIUM_FLAGS";
  // The pages of folders share one process, in whichever tabs they are, instead of having one each.
  qputenv(options, qgetenv(options) + " --dns-prefetch-disable --process-per-site");
  HtmlView::RegisterScheme();
  PageSource::RegisterScheme();
}

Program::Program(const QString& appFolder, const QStringList& arguments)
    : appFolder_(appFolder),
      instance_(appFolder),
      messages_(appFolder),
      toOpen_(WithFullPaths(arguments)),
      texts_(UiLanguage()) {
  context_.Secrets = DesktopSecrets();
  qApp->installEventFilter(&wheelGuard_);
  qApp->installEventFilter(&textKeys_);
  qApp->installEventFilter(&screenFit_);
  qApp->installEventFilter(&focusReturn_);
  connect(&signals_, &EndSignals::Wanted, this, &Program::EndAtOnce);
  QApplication::setQuitOnLastWindowClosed(false);  // between login and main window there is none
}

Program::~Program() {
  delete opening_.data();
  delete parent_.data();
  CloseFiles();
}

void Program::CloseFiles() {
  if (ProfileBag(*context_.Session).IsLoggedIn()) {
    RememberCode(context_);
    std::ignore = NoteFiles(context_);  // tried again at the next login
  }
  context_.Data.CloseAll();
  RemoveWorkingFiles();
}

// There may be no time for a question, nor anybody to answer it. What is being written is kept as a
// draft, which the next start offers. A modal window's loop may be running, so nothing is unwound.
void Program::EndAtOnce() {
  if (parent_ != nullptr) parent_->KeepEverything();
  CloseFiles();
  messages_.StopListening();
  std::_Exit(0);
}

ParentWindow* Program::Parent() const {
  return parent_;
}

bool Program::Refuse(const QString& reason) const {
  ShowBox(nullptr, QMessageBox::Critical, reason);
  return false;
}

bool Program::Start() {
  if (!MakePrivateFolder(appFolder_)) {
    return Refuse(
        Ui::tr("データフォルダ「%1」を作成できません。").arg(QDir::toNativeSeparators(appFolder_)));
  }
  if (!instance_.Acquire()) {
    handedOver_ = messages_.Send(toOpen_);
    if (handedOver_) return false;
    const QString lost =
        toOpen_.isEmpty()
            ? QString()
            : Ui::tr("\n\n起動しているほうに渡せなかったため、次のものは開いていません：\n") +
                  toOpen_.join(u'\n');
    return Refuse(kApplicationTitle + Ui::tr("は既に起動しています。") + lost);
  }
  const Result<> started = StartUp(context_, appFolder_);
  if (!started) return Refuse(started.Error().text);
  const QString stranger = messages_.Listen();
  if (!stranger.isEmpty()) context_.Notices.append(stranger);
  connect(&messages_, &InstanceMessages::Received, this, &Program::Open);
  messages_.OnStartedAgain([this] { return ComeForward(); });
  RemoveWorkingFiles();
  if (!context_.Notices.isEmpty()) {
    ShowBox(nullptr, QMessageBox::Information, context_.Notices.join(u'\n'));
  }
  if (!context_.Objects.IsEmpty()) {
    ShowLogin();
    return true;
  }
  const Result<DiskPtr> profile = CreateFirstProfile(context_);
  if (!profile) {
    return Refuse(Ui::tr("プロファイルを作成できません。") + profile.Error().text);
  }
  BeginLogin(context_, **profile, QString());
  ShowVersion();
  return true;
}

bool Program::ComeForward() {
  if (parent_ == nullptr || !Settings(context_).ComesForward()) return false;
  BringForward(*parent_);
  if (QWidget* modal = QApplication::activeModalWidget()) BringForward(*modal);
  return true;
}

// Pages are deleted once they are loaded, and attachments that were opened go with their window;
// what a program left that was killed is in clear.
void Program::RemoveWorkingFiles() const {
  if (context_.TempFolder.isEmpty()) return;  // it never came to that
  const QDir folder(context_.TempFolder);
  if (QFileInfo(folder.path()).isSymLink()) return;  // put there since the start
  for (const QFileInfo& entry :
       folder.entryInfoList({QStringLiteral("*.html"), QStringLiteral("clip_*")},
                            QDir::Files | QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot)) {
    if (entry.isDir() && !entry.isSymLink()) {
      QDir(entry.filePath()).removeRecursively();
    } else {
      QFile::remove(entry.filePath());
    }
  }
}

void Program::ShowLogin() {
  auto* login = new LoginWindow(context_);
  opening_ = login;
  login->setAttribute(Qt::WA_DeleteOnClose);
  login->LoadDefaultProperty(nullptr);
  login->ChooseLast();
  connect(login, &LoginWindow::LoggedIn, this, &Program::ShowVersion);
  connect(login, &LoginWindow::Cancelled, qApp, &QApplication::quit);
  login->show();
}

void Program::ShowVersion() {
  auto* version = new VersionWindow(context_);
  opening_ = version;
  connect(version, &VersionWindow::ProfileLoaded, this, &Program::ShowParent);
  connect(version, &VersionWindow::Failed, this, [this](const QString& reason) {
    Refuse(reason);
    QApplication::quit();
  });
  version->LoadDefaultProperty(context_.Session);
  version->show();
}

void Program::ShowParent() {
  parent_ = new ParentWindow(context_);
  parent_->setAttribute(Qt::WA_DeleteOnClose);
  connect(parent_, &QObject::destroyed, qApp, &QApplication::quit);
  parent_->LoadDefaultProperty();
  parent_->show();
  Open(std::exchange(toOpen_, {}));
}

void Program::Open(const QStringList& arguments) {
  if (parent_ == nullptr) {
    toOpen_ += arguments;
    return;
  }
  // Each in a window of its own: the main window stays behind what is being written.
  for (const QString& argument : arguments) parent_->Requests().OpenArgument(argument);
}

}  // namespace vorn
