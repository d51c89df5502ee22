#pragma once

#include <QObject>
#include <QTimer>

namespace vorn {

class MessageListPages;
class PageRequest;

/// Finds out, in moments in which the user does nothing, where the pages of a long folder begin and
/// how many there are, and how many messages a search finds.
class PageCounter : public QObject {
  Q_OBJECT

 public:
  PageCounter(MessageListPages& pages, const PageRequest& request);

  /// Begins when nothing has happened for a while.
  void BeginSoon();
  void Stop() { pause_.stop(); }
  /// Tells the number of pages if it is known, or with `count` in any case.
  void Tell(bool count = false);

 Q_SIGNALS:
  /// So many pages are there; 0 when that is not known.
  void Counted(int pages);
  /// The search of the page finds so many messages, or more.
  void Found(qint64 messages, bool orMore);

 private:
  void Explore();
  void TellFound();

  MessageListPages& pages_;
  const PageRequest& request_;
  QTimer pause_;
};

}  // namespace vorn
