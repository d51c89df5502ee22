#pragma once

#include <QString>

#include "storage/context.h"

namespace vorn {

/// Whether there is no message yet.
bool IsFirstUse(Context& context);

/// What stands in the place of the first folder's page then, as HTML: how to go on from what there
/// is, with a link for each step ("vorn:" and its name, `first_step`).
QString FirstUseText(const Context& context);

/// The steps that are names of the menus' actions, and the one that is not.
namespace first_step {
inline const QString kAccount = QStringLiteral("stepAccount");
inline const QString kReceive = QStringLiteral("stepReceive");
inline const QString kImport = QStringLiteral("stepImport");
inline const QString kGuide = QStringLiteral("stepGuide");
inline const QString kPassword = QStringLiteral("stepPassword");
}  // namespace first_step

}  // namespace vorn
