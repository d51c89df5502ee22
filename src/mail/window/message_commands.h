#pragma once

#include <QIcon>
#include <QKeySequence>
#include <QList>
#include <QString>

#include "mail/codec/charset/charset.h"
#include "mail/codec/mime/flag_string.h"
#include "mail/store/message_bag.h"

namespace vorn {

struct Context;
class MessageBars;
class MessageClosing;
class MessageDocument;
class MessageForm;
class MessageHost;
class MessageOutput;
class MessageSending;
class MessageWindow;

/// How it stands with the message of a window, as far as its commands show it. A command that goes
/// by something else adds it here and to `StateOf`, beside the table of commands.
struct MessageState {
  MessageStatus status = kStatusEdit;  ///< in the dust or not
  bool isInDust = false;
  bool isStored = false;
  bool isErased = false;  ///< it was stored when it was opened
  bool isUnreadable = false;
  bool isEditable = false;
  bool isDoubtful = false;  ///< it waits, and may have been sent
  bool isRefused = false;   ///< it waits, and its server does not take it as it is
  bool hasAttachments = false;
  bool hasArchive = false;
  CharsetChoice charset = CharsetChoice::Automatic;
  bool hasStar = false;
  Priority priority = Priority::Usual;

  bool IsRead() const { return status == kStatusReceived && !isUnreadable; }
};

/// What the commands of a message window act on.
struct MessageParts {
  Context& context;
  MessageHost& host;
  MessageDocument& document;
  MessageForm& form;
  MessageBars& bars;
  MessageSending& sending;
  MessageClosing& closing;
  MessageOutput& output;
  MessageWindow& window;
};

MessageState StateOf(const MessageParts& parts);

/// Where a command is shown.
enum class CommandPlace {
  Nowhere,
  Keys,  ///< not to be seen, only its keys act
  MenuBar,
  FileMenu,
  MessagesMenu,
  EditMenu,
  CharsetMenu,
  AttachmentMenu,
  PriorityMenu,
  ViewMenu,
  CommandBar,
  ReadingBar,  ///< of a message that is read
};

/// What a command has besides its text. The functions may be null: it can always be given, always
/// shows, never bears a check mark, and keeps its text.
struct CommandTraits {
  QList<QKeySequence> keys = {};
  QString name = {};  ///< by which the window's action or menu is found
  QIcon icon = {};
  QKeySequence shownKey = {};  ///< of the same command in a menu, which the tool tip tells
  bool begins = false;         ///< a group: a line stands before it
  bool oneOf = false;          ///< of the commands in its place one bears the check mark
  bool needsText = false;      ///< refused, with the reason, while the message is unreadable
  bool needsRow = false;       ///< disabled once the message is erased
  CommandPlace opens = CommandPlace::Nowhere;  ///< the menu behind it
  bool (*isEnabled)(const MessageState& state) = nullptr;
  bool (*isShown)(const MessageState& state) = nullptr;
  bool (*isChecked)(const MessageState& state) = nullptr;
  QString (*text)(const MessageState& state) = nullptr;
};

/// A command of a message window as it is shown in one place.
struct MessageCommand {
  CommandPlace place;
  QString text;
  void (*run)(const MessageParts& parts);  ///< null for one that opens a menu
  CommandTraits traits = {};
};

/// All of them; each menu is opened before anything stands in it. Whoever adds one adds it there.
QList<MessageCommand> MessageCommands();

}  // namespace vorn
