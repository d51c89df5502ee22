#pragma once

#include <QStringList>

#include "storage/base/serial_id.h"

namespace vorn {

/// Where the user is on a folder's page, and so on its next version: the current row, the choice
/// and how far the page is scrolled, as the page's own script tells them. Another place may be
/// ordered for the next version, and holds whatever the page tells, until that version is there.
class PagePlace {
 public:
  /// The next version begins at its last row, or at its top.
  void BeginAtEnd(bool atEnd);
  /// It begins at its end, and its last row is the current one.
  void BeginAtLast();
  /// It begins with that message as the current one, and with those chosen that it shows.
  void BeginAtMessage(const SerialId& serialId, const SerialIds& chosen = {});
  /// Whether a page that is scrolled to its end is there again when it has grown: what comes last
  /// is what the user looks at.
  void StayAtEnd(bool stays) { staysAtEnd_ = stays; }
  bool StaysAtEnd() const { return staysAtEnd_; }

  /// Whether it is ordered.
  bool IsOrdered() const { return isOrdered_; }
  /// Another folder, or another page of it, comes.
  void Leave();
  /// What was ordered is not wanted any more.
  void Forget() { Set({}, false); }

  /// The page has told its place, or has no rows that could: it is at its end.
  void Keep(const QString& state);
  void KeepEmpty();
  /// The page in sight has told its current row; empty for none. With `hasGone` the user has gone
  /// there just now, and not where he was when it told its place.
  void NoteRow(const SerialId& row, bool hasGone);
  /// Whether the page whose place was kept is at its end, and no row of it is current.
  bool WasAtEnd() const;
  /// Whether a row of it was current, or the user has just taken its last one.
  bool HadRow() const;

  /// The arguments of the page's `restore`; empty where it stays where it begins. Of a page that
  /// could not be asked it is the place that was known last.
  QString ForLoading() const;
  /// The last arguments of its `replace`.
  QString ForReplacing() const;
  /// The number of the place that is wanted now. Who sends it to a version gives it back with
  /// `Restored` or `Delivered`: a place that has come to be wanted since then stays wanted.
  int Number() const { return number_; }
  /// The version begins at that place now: nothing more is wanted.
  void Restored(int number);
  /// The version has been loaded and is told that place: the next one may begin elsewhere.
  void Delivered(int number);

 private:
  void Set(const QString& state, bool isOrdered);
  QString Arguments(const QString& state) const;

  QString state_;
  QString known_;  // that the page in sight began at
  SerialId row_;   // where the user is there
  bool isOrdered_ = false;
  bool staysAtEnd_ = false;
  int number_ = 0;
};

}  // namespace vorn
