#pragma once

namespace vorn {

/// How a message window opens a message. The numbers are those of `vornctl open`.
enum class OpenMode {
  Show = 0,
  Reply,
  ReplyAll,
  Forward,
  Resend,
  Receipt,          ///< a read receipt for it
  ForwardKeepFrom,  ///< forward, keeping the sender
};

inline bool IsReply(OpenMode mode) {
  return mode == OpenMode::Reply || mode == OpenMode::ReplyAll;
}
inline bool IsForward(OpenMode mode) {
  return mode == OpenMode::Forward || mode == OpenMode::ForwardKeepFrom;
}

}  // namespace vorn
