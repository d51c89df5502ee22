#pragma once

#include <QAction>
#include <QKeySequence>

namespace vorn {

/// Makes an action that stands on a toolbar alone obey Alt and the letter that its text marks with
/// "&": buttons of toolbars show such letters and do not listen to them. Returns the action.
inline QAction* ObeyLetter(QAction* action) {
  action->setShortcut(QKeySequence::mnemonic(action->text()));
  return action;
}

}  // namespace vorn
