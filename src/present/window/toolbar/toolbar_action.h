#pragma once

#include <QStyle>

class QAction;

namespace vorn {

/// Shows an action with one of the style's pictures and a text of the program, which its tooltip
/// says with the action's key.
void ShowAction(QAction& action, const QStyle& style, QStyle::StandardPixmap picture,
                const QString& text);

}  // namespace vorn
