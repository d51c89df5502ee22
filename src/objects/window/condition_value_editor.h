#pragma once

#include <QStringList>
#include <functional>

#include "mail/search/condition_kind.h"
#include "storage/context.h"

class QWidget;

namespace vorn {

/// How what a condition is compared with is edited.
struct ConditionValueEditor {
  /// A new editor that shows stored values. It tells when the user changed it.
  QWidget* (*make)(const Context& context, const QStringList& values,
                   const std::function<void(const QWidget*)>& touched);
  /// The values that such an editor shows, and the stored ones that it cannot show.
  QStringList (*values)(const QWidget& editor);
};

ConditionValueEditor EditorOf(ConditionValue value);

}  // namespace vorn
