#include "present/window/toolbar/toolbar_action.h"

#include <QAction>

namespace vorn {

void ShowAction(QAction& action, const QStyle& style, QStyle::StandardPixmap picture,
                const QString& text) {
  action.setIcon(style.standardIcon(picture));
  action.setText(text);
  action.setToolTip(text + u' ' + action.shortcut().toString(QKeySequence::NativeText));
}

}  // namespace vorn
