#pragma once

#include <QObject>
#include <QTimer>
#include <functional>

#include "storage/base/serial_id.h"

namespace vorn {

class PagePlace;
class PageQueue;
class PageRows;

/// How a folder's page becomes its next version, or another folder's: it takes that over row by
/// row, or another document is loaded in its place. What is done meanwhile is done on the new one.
class PageChange : public QObject {
 public:
  PageChange(PageQueue& queue, PageRows& rows, PagePlace& place);

  /// Has `make` make the next version once it is known where the user is on this one, or that no
  /// page will tell. One that is about to be made for that is enough. A page that is being loaded
  /// is waited for: the user may see it already, and choose rows that another loading would lose.
  void Keep(const std::function<void()>& make);
  /// Has the page take over another version of itself, in its bytes. `then` hears whether it has;
  /// else the version has to be loaded. False where no page can be asked to.
  bool Replace(const QByteArray& page, const std::function<void(bool)>& then);
  /// Another document is being loaded, which may be words in the place of a page: what is ordered
  /// for that is still wanted then.
  void BeginLoading(bool isPage = true);
  /// It has been.
  void EndLoading();
  /// No version comes for now in the place of the page that is there, and no other document is
  /// under way. What was meant for a place that was ordered is dropped; the rest is done here.
  void Stay();
  /// There is no folder's page any more; its rows go with it.
  void Detach();
  /// The document has been let go. It is loaded again when somebody sees it: what is done until
  /// then is done on that.
  void Rest();
  /// The document has gone by itself, with its rows; the same holds of what is done.
  void Lose();
  /// The page has told which row is current, or none; with `hasGone` the user has gone there.
  void NoteRow(const SerialId& row, bool hasGone);
  /// What comes next is another folder, or another page of it, at a place to be ordered after this.
  void LeavePlace();
  /// Whether the document that was loaded has told its rows.
  bool IsTold() const { return isTold_; }

 private:
  void AskPlace();
  void Make();
  void Count();
  void Resume();
  void EndReplacing(int number, int rows);
  void FollowClick();

  PageQueue& queue_;
  PageRows& rows_;
  PagePlace& place_;
  std::function<void()> make_;  // the next version, when it is time
  QTimer giveUpMaking_;
  std::function<void(bool)> replaced_;
  QTimer giveUpReplacing_;
  int version_ = 0;        // that the page is taking over
  int sent_ = 0;           // the number of the place that came with it
  bool isPage_ = false;    // that is loaded
  bool isComing_ = false;  // that page, and is not there yet
  SerialId clicked_;       // the row that the user has gone to meanwhile
  bool isTold_ = false;
};

}  // namespace vorn
