#pragma once

#include "frame/other_objects.h"
#include "frame/other_programs.h"
#include "frame/window/panes/unread_counter.h"
#include "storage/base/serial_id.h"

namespace vorn {

class EventLog;
class FolderPanes;
class MailTraffic;
class RequestWindows;

/// Brings the folders that are shown up to date when messages have been stored or changed, by the
/// user, by a session or by another program.
class FolderChanges {
 public:
  /// `events` learns of what was sent after all.
  FolderChanges(Context& context, FolderPanes& panes, const RequestWindows& windows,
                MailTraffic& traffic, EventLog& events);

  /// The user has stored or changed messages.
  void Note() { noted_ = true; }
  /// Looks for changes and shows them: what the user did at once, what a session brings when it has
  /// ended.
  void Tick();
  /// The objects that another program has saved since this was last asked, loaded by now.
  SerialIds NewObjects() { return objects_.TakeNew(); }
  /// Counts the unopened messages of all folders anew.
  void CountSoon() { unread_.CountSoon(); }
  /// Counts no more.
  void Stop() { unread_.Stop(); }

 private:
  void Refresh();

  FolderPanes& panes_;
  const RequestWindows& windows_;
  MailTraffic& traffic_;
  EventLog& events_;
  OtherPrograms others_;
  OtherObjects objects_;
  UnreadCounter unread_;
  int storedSeen_ = 0;
  bool noted_ = false;
};

}  // namespace vorn
