#pragma once

namespace vorn {

/// What a folder's page tells of its messages.
enum class RowNews {
  Current,  ///< the user made a message current; no message, that none is any more
  Kept,     ///< made anew, the page has a current message, possibly none
  Left,     ///< the current message is not on the page that was made anew
  Twice,    ///< a message was clicked twice
  Marks,    ///< the marks of a message were clicked
  Chosen    ///< how many the user has chosen, in the place of a message
};

}  // namespace vorn
