#include "frame/window/version_window.h"

#include <QCloseEvent>
#include <QEvent>
#include <QLabel>
#include <QVBoxLayout>

#include "frame/profile_login.h"
#include "kit/window/icons.h"
#include "kit/window/plain_text.h"
#include "storage/bags/profile_bag.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kBeginMs = 100;
constexpr int kShowMainStep = 5;
constexpr int kCloseStep = 21;  // the splash stays a moment on top of the main window

}  // namespace

VersionWindow::VersionWindow(Context& context)
    : QWidget(nullptr, Qt::SplashScreen | Qt::WindowStaysOnTopHint), context_(context) {
  setObjectName(QStringLiteral("version"));
  setAttribute(Qt::WA_DeleteOnClose);
  auto* picture = PlainLabel();
  picture->setObjectName(QStringLiteral("Image1"));
  picture->setPixmap(Icon(QStringLiteral("mail")).pixmap(64, 64));
  picture->setAlignment(Qt::AlignCenter);
  auto* line =
      PlainLabel(kApplicationTitle + u' ' + QStringLiteral("version. ") + context_.VersionText);
  line->setObjectName(QStringLiteral("Label1"));
  line->setAlignment(Qt::AlignCenter);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(48, 24, 48, 24);
  layout->addWidget(picture);
  layout->addWidget(line);
  tmInitialization_.setInterval(kBeginMs);
  connect(&tmInitialization_, &QTimer::timeout, this, &VersionWindow::tmInitialization_Timer);
}

bool VersionWindow::LoadDefaultProperty(const DiskPtr& request) {
  if (const ProfileBag session(*request); session.IsLogin()) {
    password_ = session.Password();
    step_ = 0;
    tmInitialization_.start();
  } else {
    tmInitialization_.stop();
  }
  return true;
}

void VersionWindow::tmInitialization_Timer() {
  const int step = step_++;
  if (step < kLoginSteps) {
    const Result<> done = RunLoginStep(context_, static_cast<LoginStep>(step), password_);
    if (!done) {
      tmInitialization_.stop();
      Q_EMIT Failed(done.Error().text);
      close();
    }
  } else if (step == kShowMainStep) {
    Q_EMIT ProfileLoaded();
  } else if (step >= kCloseStep) {
    tmInitialization_.stop();
    close();
  }
}

// Nobody can close it while it works: nothing would be left of the program but its process.
void VersionWindow::closeEvent(QCloseEvent* event) {
  if (event->spontaneous() && tmInitialization_.isActive()) {
    event->ignore();
    return;
  }
  QWidget::closeEvent(event);
}

// A question that is asked meanwhile must not stand behind it.
bool VersionWindow::event(QEvent* event) {
  if (event->type() == QEvent::WindowBlocked) hide();
  return QWidget::event(event);
}

}  // namespace vorn
