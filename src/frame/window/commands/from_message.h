#pragma once

#include <QStringList>
#include <functional>
#include <optional>

#include "frame/request_queue.h"
#include "storage/context.h"

class QWidget;

namespace vorn {

// What a user makes from a stored message. What keeps it from being made is told before `window`.

/// The request for the window of a new folder, or with `stops` of the receive-stop rules, with a
/// condition that finds messages like this one.
std::optional<DialogRequest> RuleLikeMessage(Context& context, QWidget& window,
                                             const SerialId& serialId, bool stops);

/// An address book that has got somebody.
struct BookAddition {
  SerialId book;
  QString told;  ///< what was done, for the user
};

/// Puts those with whom messages were exchanged into the address book, which is made where there is
/// none, and chosen by the user where there are several. `isEdited` tells whether a book is just
/// being edited: what is added then would be lost.
std::optional<BookAddition> AddCorrespondents(Context& context, QWidget& window,
                                              const SerialIds& serialIds,
                                              const std::function<bool(const SerialId&)>& isEdited);

}  // namespace vorn
