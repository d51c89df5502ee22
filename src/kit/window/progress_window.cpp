#include "kit/window/progress_window.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QLocale>
#include <QThread>
#include <QTimer>
#include <QWindow>
#include <memory>

#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kShowAfterMs = 300;
constexpr qint64 kTurnMs = 40;  // how often the windows get their turn
constexpr double kMegabyte = 1000 * 1000;
constexpr int kReadSteps = 1000;
constexpr int kExposedMs = 300;
constexpr int kExposureLookMs = 20;

}  // namespace

ProgressWindow::ProgressWindow(QWidget* parent, const QString& title)
    : dialog_(new QProgressDialog(parent)), title_(title) {
  dialog_->setWindowTitle(title);
  dialog_->setLabelText(title + QStringLiteral(".."));
  dialog_->setCancelButtonText(Ui::tr("中止"));
  dialog_->setRange(0, 0);
  dialog_->setWindowModality(Qt::ApplicationModal);
  dialog_->setMinimumWidth(320);
  // Its own minimum duration counts from the first value, of which there is none.
  show_.setSingleShot(true);
  QObject::connect(&show_, &QTimer::timeout, dialog_, &QWidget::show);
  show_.start(kShowAfterMs);
  clock_.start();
}

ProgressWindow::~ProgressWindow() {
  delete dialog_.data();
}

bool ProgressWindow::Show(int done, int total) {
  return Show(
      total > 0 ? Ui::tr(".. %1 / %2通").arg(done).arg(total) : Ui::tr(".. %n通", nullptr, done),
      done, total);
}

bool ProgressWindow::ShowRead(int done, qint64 bytes, qint64 total) {
  const auto megabytes = [](qint64 size) {
    return QLocale().toString(static_cast<double>(size) / kMegabyte, 'f', 1);
  };
  // Line ends may be longer in the store than in the file.
  const qint64 read = qMin(bytes, total);
  return Show(Ui::tr(".. %1 / %2 MB（%3通）").arg(megabytes(read), megabytes(total)).arg(done),
              static_cast<int>(total > 0 ? read * kReadSteps / total : 0), kReadSteps);
}

bool ProgressWindow::Show(const QString& words, int done, int total) {
  if (clock_.elapsed() < kTurnMs) return true;
  clock_.restart();
  if (dialog_ != nullptr) dialog_->setLabelText(title_ + words);
  if (dialog_ != nullptr && total > 0) {
    dialog_->setMaximum(total + 1);  // at its end it would take itself for done
    dialog_->setValue(done);
  }
  TakeTurn({});
  return !IsEnded();
}

bool ProgressWindow::Wait(const QString& sentence, const std::function<bool()>& isThere) {
  dialog_->setLabelText(sentence);
  while (!isThere() && !IsEnded()) TakeTurn(QEventLoop::WaitForMoreEvents);
  return !IsEnded();
}

void ProgressWindow::Announce(const QString& sentence) {
  show_.stop();
  dialog_->setLabelText(sentence);
  dialog_->setCancelButton(nullptr);
  dialog_->show();
  // The window system answers before it is painted, if it answers at all.
  for (QDeadlineTimer shown(kExposedMs); !shown.hasExpired() && dialog_ != nullptr;) {
    const QWindow* window = dialog_->windowHandle();
    if (window != nullptr && window->isExposed()) shown.setRemainingTime(0);
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents, kExposureLookMs);
  }
  if (dialog_ != nullptr) dialog_->repaint();
}

bool ProgressWindow::Run(const QString& sentence,
                         const std::function<void(const std::atomic<bool>& stop)>& work) {
  std::atomic<bool> stop = false;
  std::atomic<bool> isDone = false;
  const std::unique_ptr<QThread> thread(QThread::create([&] {
    work(stop);
    isDone = true;
  }));
  // Wakes the event loop; nothing else is to be done.
  QObject::connect(thread.get(), &QThread::finished, dialog_, [] {});
  thread->start();
  const bool isWanted = Wait(sentence, [&isDone] { return isDone.load(); });
  stop = true;
  thread->wait();
  show_.stop();  // nothing is going on any more
  if (dialog_ != nullptr) dialog_->hide();
  return isWanted;
}

// Before the dialog is there nobody has seen what to click.
void ProgressWindow::TakeTurn(QEventLoop::ProcessEventsFlags flags) {
  const bool isSeen = dialog_ != nullptr && dialog_->isVisible();
  QCoreApplication::processEvents(
      flags | (isSeen ? QEventLoop::AllEvents : QEventLoop::ExcludeUserInputEvents));
}

}  // namespace vorn
