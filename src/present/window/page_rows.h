#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QTimer>
#include <functional>

class QWebEnginePage;

namespace vorn {

/// The rows of a folder's page as the user moves among them: one is current, several may be chosen.
/// Everything happens in the page, so answers come later. What is done while the page is made anew
/// is done on the new one.
class PageRows : public QObject {
 public:
  explicit PageRows(QObject* parent = nullptr);

  /// Takes a page that has been loaded, at the place that was last kept.
  void Attach(QWebEnginePage* page);
  /// Has the page that is there take over another version of itself, or another folder's page, row
  /// by row: nothing flashes, and what is done meanwhile is done on the new one. `then` hears
  /// whether it has; else the page has to be loaded.
  void Replace(const QByteArray& page, const std::function<void(bool)>& then);
  /// Whether there is a page that can be asked to.
  bool CanReplace() const { return !page_.isNull(); }
  bool IsReplacing() const { return replaced_ != nullptr; }
  /// No page comes in the place of the one that is there.
  void Stay(QWebEnginePage* page);
  /// The page goes; its rows with it.
  void Detach();
  /// Another page is being loaded: what is done until it is taken is done on it.
  void Await();
  /// The window goes: nothing is answered any more.
  void Close() { closed_ = true; }
  /// Whether there are rows to move among.
  bool HasRows() const { return count_ > 0; }
  /// Whether they are those of a page that is there, and not of one that is being made anew.
  bool IsReady() const { return !page_.isNull() && HasRows(); }
  /// Called when there may be rows, or none any more.
  void OnRows(std::function<void()> changed) { changed_ = std::move(changed); }

  /// Moves by so many rows; with `extend` chooses all rows passed.
  void Step(int by, bool extend) { Call(QStringLiteral("step"), by, extend); }
  /// Goes to a message's row where the page has one, or one that comes soon. What is asked after
  /// this waits for that.
  void Reach(const QString& serialId);
  /// Goes to the first row in sight where none is current.
  void Enter();
  /// Goes to a row counted from 0, or from the last one, -1.
  void GoTo(int row, bool extend) { Call(QStringLiteral("goTo"), row, extend); }
  /// Goes to a message's row; where the page has none, no row is current, and `notHere` is called.
  void GoToMessage(const QString& serialId, const std::function<void()>& notHere = {});
  void Toggle();
  /// No row is chosen any more; gives whether any was.
  void Unchoose(const std::function<void(bool)>& then);
  void ChooseAll();
  /// No row is current or chosen any more, or only where the user does not see the current one.
  void Leave(bool unlessSeen = false);
  /// No row is current any more, since the message that was has gone: the next step goes to the row
  /// after it or before it.
  void LeaveToGap();
  /// Gives the identifiers of the chosen messages, or of the current one; none when the page goes.
  void Chosen(const std::function<void(const QStringList&)>& then);
  /// The same of messages that are about to leave the folder: their rows are marked at once, and
  /// the next one becomes current, so that nothing meets a message twice while the page is made
  /// anew.
  void Take(const std::function<void(const QStringList&)>& then);
  /// Messages that were taken stay.
  void GiveBack(const QStringList& messages) { Call(QStringLiteral("giveBack"), messages); }
  /// Messages have left the folder.
  void LeaveFolder(const QStringList& messages) { Call(QStringLiteral("leaveFolder"), messages); }
  /// Gives the identifier of the current message, whichever others are chosen; none when the page
  /// goes.
  void Current(const std::function<void(const QString&)>& then);

  /// Calls `then` once what was asked before has been answered. What is asked after this is asked
  /// when `then` has been called, and where that reaches for a message, when that is done. Neither
  /// is done when the page goes before.
  void AfterCommands(const std::function<void()>& then);

  /// A link of the page.
  struct Link {
    QString text;
    QString address;
  };
  void Links(const std::function<void(const QList<Link>&)>& then);

  /// Remembers the current row, the choice and how far the page is scrolled, then has `then` make
  /// the page anew, also when there is none.
  void Keep(const std::function<void()>& then);
  /// A script that tells the page which is loaded next its place before it is painted; empty where
  /// it has none. Who is told later (see `Attach`) jumps there.
  QString PlaceScript() const;
  /// The next page begins at its last row, or at its top.
  void BeginAtEnd(bool atEnd);
  /// The next page begins at its end, and its last row is the current one.
  void BeginAtLast();
  /// The next page begins with that message as the current one.
  void BeginAtMessage(const QString& serialId);
  /// Whether a page that is scrolled to its end is there again when it has grown: what comes last
  /// is what the user looks at.
  void StayAtEnd(bool stays) { staysAtEnd_ = stays; }
  bool StaysAtEnd() const { return staysAtEnd_; }
  /// Whether the page whose place was kept is at its end, and no row of it is current. One without
  /// rows is.
  bool WasAtEnd() const;

 private:
  void SetCount(int count);
  void Call(const QString& function, int number, bool flag);
  void Call(const QString& function, const QStringList& messages);
  void Run(const QString& script, const std::function<void(const QVariant&)>& then = {});
  QString Place(const QString& state) const;
  void Restore(const QString& state);
  void Arrive();
  void EndReplacing(int number, int count);
  void LetWaitingGo();
  void Release();
  void TryReaching(bool isLast);
  void DropWaiting();
  void Make();
  void DoWaiting();

  QPointer<QWebEnginePage> page_;
  bool comes_ = false;                  // the page is being made anew or loaded
  bool making_ = false;                 // just now
  bool lettingGo_ = false;              // what waits
  bool held_ = false;                   // what is asked waits for `AfterCommands`
  std::function<void()> make_;          // when its state is known
  QTimer giveUp_;                       // knowing it
  std::function<void(bool)> replaced_;  // when the page has taken another version of itself
  int replacing_ = 0;                   // the number of that version
  QTimer giveUpReplacing_;
  QTimer giveUpReaching_;
  int reachedAt_ = 0;                     // the version that was sent last before that
  QList<std::function<void()>> waiting_;  // until it is there
  int count_ = 0;
  bool closed_ = false;
  std::function<void()> changed_;
  QString kept_;
  bool isOrdered_ = false;  // where the next page begins, whatever this one tells
  QString reach_;           // a message whose row is wanted as the current one
  bool staysAtEnd_ = false;
};

}  // namespace vorn
