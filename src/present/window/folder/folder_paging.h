#pragma once

#include <QObject>

#include "mail/search/folder_search.h"

namespace vorn {

class FolderToolbar;
class PageMaker;
class SearchBox;
struct ShownPage;

/// Goes to the pages of a folder that the toolbar asks for, and searches the folder. On a web page
/// it does nothing.
class FolderPaging : public QObject {
  Q_OBJECT

 public:
  FolderPaging(ShownPage& page, PageMaker& maker, FolderToolbar& toolbar);

  /// Goes to the page on which a message stands, and to the message there, where some are chosen:
  /// for those is meant what is done meanwhile.
  void GoToMessage(int page, const QString& message, const QStringList& chosen);
  /// Shows the folder, or what is found in it, from its first page on.
  void ShowFirst();
  /// Does a step that the page of a search offers (`search_step`).
  void Follow(const QString& step);
  /// Searches for what is typed if that is something else than what is searched for; whether it is.
  bool SearchTyped();
  /// Shows all messages again.
  void GiveUpSearch();

 Q_SIGNALS:
  /// The request asks for another page than before.
  void PageWanted();
  /// It asks for the page of a message, which may be the one that is there, in its next version.
  void MessageWanted();
  /// The folder is searched for something else than before, or no longer.
  void Searched();
  /// The user has typed where to go and goes on there.
  void KeysWanted();

 private:
  void GoTo(int page, bool atEnd = false);
  void Turn(int step);
  void GoToTyped();
  void GoToLast();
  void Search();
  FolderSearch Typed() const;
  void Ask(int page, void (FolderPaging::*wanted)());

  ShownPage& page_;
  PageMaker& maker_;
  FolderToolbar& toolbar_;
  SearchBox& search_;
};

}  // namespace vorn
