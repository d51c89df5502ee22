#pragma once

#include <QStringList>
#include <functional>

#include "storage/context.h"

namespace vorn {

class MessageListPages;
struct ShownPage;

/// Goes to a message of the folder that is shown, whichever page of it the message is on.
class MessageNavigation {
 public:
  /// Has another page shown, with that message as the current one and `chosen` as those chosen; of
  /// one page of a folder it is the next version.
  using ShowPage = std::function<void(int page, const SerialId& message, const SerialIds& chosen)>;
  /// Tells the user a sentence in passing.
  using Tell = std::function<void(const QString& sentence)>;

  MessageNavigation(Context& context, MessageListPages& pages, ShownPage& page, ShowPage show,
                    Tell tell);

  /// Goes to the next unopened message of the folder.
  void GoToUnopened();
  /// Goes to a message of the folder once what was asked before is done.
  void GoTo(const SerialId& message);
  /// Goes to a message at once, whatever the page that is there has been asked; false where the
  /// folder does not show it.
  bool GoToShown(const SerialId& message);
  /// Goes on with a message that this page does not show any more, on the page that does: what has
  /// come before it may have moved it there.
  void Follow(const SerialId& message);
  /// Goes to the first of messages that the page may not show yet, by making another one; several
  /// are chosen there.
  void GoToReturned(const SerialIds& messages);

  /// The number of the page on which a message stands; 0 where the folder does not show it, or does
  /// not find it in time, which the user is told with `tells`.
  int PageOf(const SerialId& message, bool tells = true) const;

 private:
  void GoToUnopenedAfter(const SerialId& message);
  void GoToRow(const SerialId& message);

  Context& context_;
  MessageListPages& pages_;
  ShownPage& page_;
  ShowPage show_;
  Tell tell_;
};

}  // namespace vorn
