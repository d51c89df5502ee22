#pragma once

#include <QObject>

namespace vorn {

class FolderToolbar;
class PageChange;
class PageMaker;
class PagePlace;
class PageRequest;

/// Goes to the pages of a folder that the toolbar asks for, and searches the folder. On a web page
/// it does nothing.
class FolderPaging : public QObject {
  Q_OBJECT

 public:
  FolderPaging(PageRequest& request, PageChange& change, PagePlace& place, PageMaker& maker,
               FolderToolbar& toolbar);

  void GoTo(int page);
  /// Goes to the page on which a message stands, and to the message there, where some are chosen:
  /// for those is meant what is done meanwhile.
  void GoToMessage(int page, const QString& message, const QStringList& chosen);
  void Turn(int step);
  /// Searches for what is typed, or shows all messages when that is nothing.
  void Search();
  /// Whether something else is typed than what is searched for.
  bool HasTypedSearch() const;
  /// Shows all messages again.
  void GiveUpSearch();

 Q_SIGNALS:
  /// The request asks for another page than before.
  void PageWanted();
  /// It asks for the page of a message, which may be the one that is there, in its next version.
  void MessageWanted();
  /// The user has typed where to go and goes on there.
  void KeysWanted();

 private:
  void GoToTyped();
  void GoToLast();
  void Ask(int page, void (FolderPaging::*wanted)());

  PageRequest& request_;
  PageChange& change_;
  PagePlace& place_;
  PageMaker& maker_;
  FolderToolbar& toolbar_;
};

}  // namespace vorn
