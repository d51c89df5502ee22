#pragma once

#include <QObject>
#include <QStringList>
#include <functional>

#include "present/message_navigation.h"
#include "present/window/folder/folder_paging.h"
#include "present/window/folder/page_commands.h"
#include "present/window/folder/page_messages.h"
#include "storage/base/serial_id.h"

namespace vorn {

class EngineView;
class PageLoader;
class PageSplit;
class TextWait;

/// The folder that a browser window shows, as the user works with its pages and the program around
/// asks of it: he turns them, searches the folder, goes to a message, and does things with those
/// that he has chosen.
class ShownFolder : public QObject {
  Q_OBJECT

 public:
  /// What it works with: the pieces of a browser window.
  struct Parts {
    Context& context;
    MessageListPages& pages;
    ShownPage& page;
    EngineView& engine;
    PageMaker& maker;
    PageLoader& loader;
    PageSplit& split;
    FolderToolbar& toolbar;
    BrowserHost& host;
    QWidget& window;
  };
  explicit ShownFolder(const Parts& parts);

  /// The bar above the page while texts are being searched.
  QWidget* Bar() const;
  /// A view takes the page's keys.
  void AddKeysTo(QWidget& view) { commands_.AddTo(view); }
  /// Another folder comes in the place of this one, and is not searched.
  void Leave();
  /// The user comes back to the page, if `wasInUse` from another part of the program.
  void ComeBack(bool wasInUse);
  /// The page's process has ended, and the page with it. It will be made anew where the user was.
  void Lose();
  /// The window is behind another one, or no longer: nobody reads what its pane shows.
  void Cover(bool covered);

  /// What the folder is searched for; empty when all is shown.
  FolderSearch Search() const;
  /// Searches for what is typed if that is something else; whether it is.
  bool SearchTyped() { return paging_.SearchTyped(); }
  /// Shows all of the folder again.
  void GiveUpSearch() { paging_.GiveUpSearch(); }
  /// Makes a message of the folder the current one, whichever page it is on.
  void GoToMessage(const SerialId& message) { navigation_.GoTo(message); }
  /// Goes to messages that have come back into the folder: what is done next is done with them.
  void GoToReturned(const SerialIds& messages);
  /// How many messages the user has chosen one by one.
  int CountChosen() const { return messages_.CountChosen(); }
  /// Gives the messages that the user has chosen, or the current one.
  void ChosenMessages(const std::function<void(const SerialIds&)>& then);
  /// Messages have left the folder; the page is yet to be made anew.
  void MessagesGone(const SerialIds& messages);
  /// See `PageQueue::After`.
  void AfterCommands(const std::function<void()>& then);
  /// What is done with the messages.
  PageCommands& Commands() { return commands_; }

 Q_SIGNALS:
  /// More or fewer messages are chosen.
  void ChosenChanged();

 private:
  void ConnectPaging();
  void ConnectMessages();
  void ShowSearched();
  void ShowAt(const SerialId& message);
  void ReadTexts();
  void EndTexts();
  void ShowHits(FolderSearch search, const SerialIds& hits);

  const Parts parts_;
  FolderPaging paging_;
  PageMessages messages_;
  MessageNavigation navigation_;
  PageCommands commands_;
  TextWait* texts_;
  SerialId searchedFrom_;  // the message that was the current one before the search
};

}  // namespace vorn
