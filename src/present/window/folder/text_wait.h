#pragma once

#include <QTimer>
#include <functional>

#include "kit/window/notice_bar.h"
#include "storage/base/serial_id.h"
#include "storage/condition_run.h"

namespace vorn {

/// The bar above a folder's page while the texts of its messages are being read for a search. It
/// tells how far that is and has a button that stops it.
class TextWait : public NoticeBar {
 public:
  /// So many messages are found at most, the newest: each page reads the rows of all.
  static inline qsizetype Most = 10000;

  /// `stopped` is called when the user has stopped it.
  TextWait(Context& context, std::function<void()> stopped);

  /// Reads the messages that `question` asks for. `then` gets the identifiers of those that have
  /// `text`, one too many where there are more.
  void Begin(const QString& question, const QString& text,
             const std::function<void(const Result<SerialIds>&)>& then);
  void Stop();

 private:
  TextWait(Context& context, std::function<void()> stopped, QPushButton* button);
  void Tell();

  Context& context_;
  ConditionRunPtr run_;
  QTimer told_;
};

}  // namespace vorn
