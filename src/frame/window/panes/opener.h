#pragma once

#include <QString>

#include "events/event_log.h"
#include "frame/request_queue.h"
#include "storage/context.h"

class QWidget;

namespace vorn {

class ConsoleTree;
class FolderChanges;

/// Asks for the windows that show what the user wants to see or to write: messages, objects, the
/// pages of folders and of the web.
class Opener {
 public:
  /// What cannot be opened is told before `window`. The tree shows the folder that is opened;
  /// `changes` learns of a message that is stored for being opened.
  Opener(Context& context, QWidget& window, RequestQueue& queue, const EventLog& events,
         ConsoleTree& tree, FolderChanges& changes)
      : context_(context),
        window_(window),
        queue_(queue),
        events_(events),
        tree_(tree),
        changes_(changes) {}

  RequestQueue& Queue() { return queue_; }
  /// Of the profile's mail.
  void ShowMessage(MailRequest request);
  /// A new message, which a "mailto:" address may begin.
  void WriteMessage(const QString& mailto = {}) {
    queue_.PostMailRequest(MailRequest::New(mailto));
  }
  /// A message file or a "mailto:" address.
  void OpenArgument(const QString& argument);
  void OpenFolder(const SerialId& serialId);
  /// Opens a web page in a window of its own, or in the user's own browser.
  void OpenWebPage(const QString& url);
  /// Prints a page file without showing it.
  void PrintPageFile(const QString& path, const QString& title);
  /// `tag` is the object's type; `show`, `after` and `event` as the request has them.
  void OpenObject(const SerialId& key, const QString& tag, RequestShow show, AfterStep after,
                  const SerialId& event = {});
  void MakeObject(const QString& type, const SerialId& parent);
  /// What a recorded event is about.
  void OpenEvent(const SerialId& serialId);

 private:
  Context& context_;
  QWidget& window_;
  RequestQueue& queue_;
  const EventLog& events_;
  ConsoleTree& tree_;
  FolderChanges& changes_;
};

}  // namespace vorn
