#pragma once

#include <QKeySequence>
#include <QList>
#include <QMap>
#include <QObject>
#include <functional>

#include "present/window/folder/page_command.h"
#include "present/window/page/browser_host.h"

class QAction;
class QMenu;
class QWidget;

namespace vorn {

class MessageNavigation;
class PageMessages;
struct ShownPage;

/// The keys of a folder's page and the menu of its messages. They act while the page has the
/// keyboard; in the boxes of the toolbar they type.
class PageCommands : public QObject {
  Q_OBJECT

 public:
  /// The actions belong to `window`.
  PageCommands(PageMessages& messages, MessageNavigation& navigation, ShownPage& page,
               QWidget& window);
  ~PageCommands() override;

  /// A view takes the keys.
  void AddTo(QWidget& view);
  /// What is done with messages can also be done where one of them is read.
  void AddToPane(QWidget& pane);
  /// Shows the menu if there are messages.
  void PopUp(const QPoint& at);
  /// Writes the same commands, as they can be given now, into another menu.
  void ListIn(QMenu& menu);
  /// Runs a command on the chosen messages; the next unopened one needs none. Else the user is told
  /// when none is chosen.
  void Run(PageCommand command);

 Q_SIGNALS:
  /// The choice is given up while there is none.
  void NothingToGiveUp();

 private:
  QAction* AddKeys(const QList<QKeySequence>& keys, const std::function<void()>& run);
  QAction* AddCommand(PageCommand command, const QString& text, const QList<QKeySequence>& keys,
                      const std::function<void()>& run);
  void BuildMenu();
  void BuildOpening();
  void BuildActions();
  void BuildFromMessage();
  void BuildMoves();
  void Enable();
  void EnableForMenu();
  void GiveUpChoice();

  PageMessages& messages_;
  MessageNavigation& navigation_;
  ShownPage& page_;
  QWidget& window_;
  QMenu* menu_;
  QList<QAction*> actions_;
  QMap<PageCommand, QAction*> commands_;  // those of them that have a word
};

}  // namespace vorn
