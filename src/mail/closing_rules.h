#pragma once

namespace vorn {

/// How a message stands whose window the user leaves.
struct LeftMessage {
  bool isUnreadable = false;
  bool isNew = false;     ///< never stored
  bool isAnswer = false;  ///< begun from another message: a reply, a forward
  bool isEditable = false;
  bool isEdited = false;
  bool isErased = false;  ///< what is stored of it, by somebody else meanwhile
  bool isBlank = false;   ///< nobody has written anything into it
};

/// What becomes of it.
enum class Leaving {
  Dropped,         ///< nothing is stored
  StateKept,       ///< only what was changed of its state
  AskedAbout,      ///< stored if the user wants it
  AskedAboutAnew,  ///< the same, as a message of its own
  Stored,          ///< without a question
};

/// By the documented rules; with `dropsBlank` a new message in which nobody wrote goes without a
/// question.
Leaving RuleOfLeaving(const LeftMessage& message, bool dropsBlank);

}  // namespace vorn
