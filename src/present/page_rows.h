#pragma once

#include <QList>
#include <QPointF>
#include <QStringList>
#include <functional>

#include "present/page_queue.h"
#include "present/page_script.h"
#include "storage/base/serial_id.h"

namespace vorn {

/// The rows of a folder's page as the user moves among them: one is current, several may be chosen.
/// Everything happens in the page, so answers come later.
class PageRows {
 public:
  explicit PageRows(PageQueue& queue) : queue_(queue) {}

  /// Whether there are rows to move among.
  bool HasRows() const { return count_ > 0; }
  /// The page has told how many.
  void SetCount(int count);
  /// Called when there may be rows, or none any more.
  void OnRows(std::function<void()> changed) { changed_ = std::move(changed); }

  /// Moves by so many rows; with `extend` chooses all rows passed.
  void Step(int by, bool extend) { Call(QStringLiteral("step"), by, extend); }
  /// Goes to the first row in sight where none is current.
  void Enter() { Call(QStringLiteral("enter()")); }
  /// Goes to a row counted from 0, or from the last one, -1.
  void GoTo(int row, bool extend) { Call(QStringLiteral("goTo"), row, extend); }
  /// Goes to a message's row; where the page has none, no row is current, and `notHere` is called.
  /// For what is asked alone: see `PageQueue::GoOn`.
  void GoToMessage(const SerialId& serialId, const std::function<void()>& notHere);
  void Toggle() { Call(QStringLiteral("toggle()")); }
  /// No row is chosen any more; gives whether any was.
  void Unchoose(const std::function<void(bool)>& then);
  void ChooseAll() { Call(QStringLiteral("all()")); }
  /// No row is current or chosen any more, unless the user sees the current one.
  void DeselectUnseen() { Call(QStringLiteral("deselectUnseen()")); }
  /// None is before all that waits, since another message is to be the current one.
  void DeselectFirst() { queue_.RunFirst(OnPage(QStringLiteral("deselect()"))); }
  /// Gives the identifiers of the chosen messages, or of the current one; none when the page goes.
  void Chosen(const std::function<void(const SerialIds&)>& then);
  /// Gives what Enter opens: the address of the link on which the keyboard stands, else empty, and
  /// the same identifiers.
  void ToOpen(const std::function<void(const QString&, const SerialIds&)>& then);
  /// As `Chosen`, of messages that are about to leave the folder: their rows are marked at once,
  /// and the next one becomes current, so that nothing meets a message twice while the page is made
  /// anew. Not called where the page's last row was taken and it is not known yet what follows.
  void Take(const std::function<void(const SerialIds&)>& then);
  /// Messages that were taken stay. What the user does next waits, and is done after this.
  void GiveBack(const SerialIds& messages) { Tell(QStringLiteral("giveBack"), messages); }
  /// Messages have left the folder; so with this.
  void Remove(const SerialIds& messages) { Tell(QStringLiteral("remove"), messages); }
  /// Gives the identifier of the current message, whichever others are chosen; none when the page
  /// goes.
  void Current(const std::function<void(const SerialId&)>& then);
  /// The same for something that changes the page: see `PageQueue::RunAlone`.
  void CurrentAlone(const std::function<void(const SerialId&)>& then);

  /// Gives where a menu of the current row belongs, in the page's own pixels from the view's
  /// corner.
  void MenuPlace(const std::function<void(const QPointF&)>& then);

  /// A link of the page.
  struct Link {
    QString text;
    QString address;
  };
  void Links(const std::function<void(const QList<Link>&)>& then);

 private:
  void Call(const QString& call) { queue_.Run(OnPage(call)); }
  void Call(const QString& function, int number, bool flag);
  void Tell(const QString& function, const SerialIds& messages);

  PageQueue& queue_;
  int count_ = 0;
  std::function<void()> changed_;
};

}  // namespace vorn
