#pragma once

#include <QElapsedTimer>
#include <QEventLoop>
#include <QPointer>
#include <QProgressDialog>
#include <QTimer>
#include <atomic>
#include <functional>

namespace vorn {

/// Shows what takes long, and lets the user end it. It appears after a moment; until then the
/// windows take no clicks and keys, which wait.
class ProgressWindow {
 public:
  /// What is shown goes with `parent`, which counts as ended by the user.
  ProgressWindow(QWidget* parent, const QString& title);
  ~ProgressWindow();

  /// How many messages are done, of so many where that is known; false when the user ended it.
  bool Show(int done, int total = 0);
  /// The same of what is read, in bytes, where how many messages there are is seen at its end.
  bool ShowRead(int done, qint64 bytes, qint64 total);
  /// Waits for something that the event loop brings; false when the user ended that.
  bool Wait(const QString& sentence, const std::function<bool()>& isThere);
  /// Says at once what work follows in which the windows stand still and that cannot be ended.
  void Announce(const QString& sentence);
  /// Does the work on another thread, while the windows go on, and waits for its end; false when
  /// the user ended it. Work that sees `stop` set ends soon.
  bool Run(const QString& sentence, const std::function<void(const std::atomic<bool>& stop)>& work);

 private:
  bool Show(const QString& words, int done, int total);
  bool IsEnded() const { return dialog_ == nullptr || dialog_->wasCanceled(); }
  void TakeTurn(QEventLoop::ProcessEventsFlags flags);

  QPointer<QProgressDialog> dialog_;
  QString title_;
  QTimer show_;
  QElapsedTimer clock_;
};

}  // namespace vorn
