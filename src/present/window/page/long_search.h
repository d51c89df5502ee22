#pragma once

#include <QObject>
#include <QStringList>
#include <QTimer>
#include <functional>

#include "mail/search/folder_search.h"
#include "storage/base/serial_id.h"
#include "storage/condition_run.h"

class QWidget;

namespace vorn {

class ConditionWait;
class MessageListPages;
class PageRequest;

/// Finds the messages of a request's folder, or of the search in it, on a thread of its own where
/// that takes long, and hands them to the pages. A bar above the page says so meanwhile.
class LongSearch : public QObject {
  Q_OBJECT

 public:
  LongSearch(Context& context, MessageListPages& pages, const PageRequest& request);

  /// Whether what the request asks for is being looked for. Where that is so, it will be outdated.
  bool IsUnderWay();
  /// Whether anything is being looked for.
  bool IsLooking() const;
  /// Gives up what is being looked for, and calls `then` when the pages have the messages.
  void Begin(const std::function<void()>& then);
  void Stop();
  /// Messages have left the folder: they are none of those that are being looked for.
  void LeaveOut(const SerialIds& messages) { gone_ += messages; }
  /// Messages are back in it.
  void TakeIn(const SerialIds& messages);
  /// The bar, with a button that stops it.
  QWidget* Bar() const;

 Q_SIGNALS:
  void Failed(const QString& reason);
  /// The user has stopped it.
  void Stopped();
  /// What was found may lack what has changed since, and the pages have forgotten it.
  void Outdated();

 private:
  QString Question() const;
  QString StateOfMail() const;
  void Take(const ConditionRun::Answer& answer, const std::function<void()>& then);
  void LookAgain();

  Context& context_;
  MessageListPages& pages_;
  const PageRequest& request_;
  ConditionWait* wait_;
  QString begunAt_;          // the state of the mail file
  int againMs_;              // how long it then waits before it looks again by itself
  bool isRepeated_ = false;  // what begins is looked for by itself
  SerialIds gone_;           // since it began
  SerialId folder_;          // what it looked for
  FolderSearch search_;
  QTimer again_;
};

}  // namespace vorn
