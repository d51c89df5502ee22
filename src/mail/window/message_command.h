#pragma once

#include "mail/codec/charset.h"
#include "mail/codec/flag_string.h"

namespace vorn {

/// What a user wants of a message window.
enum class MessageCommand {
  Send,             ///< or cancel the sending
  SendFromToolbar,  ///< the same, of a message in the dust as well
  Reply,
  ReplyAll,
  Forward,
  Resend,
  New,
  ToggleDust,
  ThrowAway,  ///< into the dust, and no more of it
  ToggleStar,
  Delete,
  ChooseFolders,
  GatherAlike,
  StopAlike,
  AddToBook,
  ChooseCode,
  SaveToFile,
  Print,
  Find,
  ShowSource,
  ShowBefore,
  ShowNext,
};

/// How it stands with the message of a window, as far as its menus and toolbars show it.
struct MessageState {
  int status = 0;  ///< in the dust or not (`MessageStatus`)
  bool isInDust = false;
  bool isStored = false;
  bool isUnreadable = false;
  bool isEditable = false;
  bool isDoubtful = false;  ///< it waits, and may have been sent
  CharsetChoice charset = CharsetChoice::Automatic;
  bool hasStar = false;
  Priority priority = Priority::Usual;
};

}  // namespace vorn
