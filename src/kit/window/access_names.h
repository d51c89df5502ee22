#pragma once

#include <QAbstractItemView>
#include <QLabel>
#include <QRegularExpression>
#include <QToolBar>
#include <QToolButton>

#include "kit/window/icons.h"
#include "storage/ui.h"

namespace vorn {

// Names that screen readers say, for controls to which the toolkit gives none.

/// A caption without the letter of its key.
inline QString WithoutKey(QString caption) {
  static const QRegularExpression kLetter(QStringLiteral("\\(&.\\)|&"));
  return caption.remove(kLetter);
}

/// The button of a toolbar that shows what it has no room for. The toolkit's picture for it is
/// black, whatever is behind it.
inline void NameMoreButton(const QToolBar& bar) {
  auto* more = bar.findChild<QToolButton*>(QStringLiteral("qt_toolbar_ext_button"));
  if (more == nullptr) return;
  more->setAccessibleName(Ui::tr("ほかのボタン"));
  more->setIcon(Icon(QStringLiteral("more")));
}

/// Lists and tables, after the label before them.
inline void NameLists(const QWidget& page) {
  for (const auto* label : page.findChildren<QLabel*>()) {
    auto* list = qobject_cast<QAbstractItemView*>(label->buddy());
    if (list == nullptr || !list->accessibleName().isEmpty()) continue;
    list->setAccessibleName(WithoutKey(label->text()));
  }
}

}  // namespace vorn
