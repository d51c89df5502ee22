#pragma once

#include <QString>

namespace vorn {

/// A script that calls a function of `vorn`, below; it gives nothing where a page could not be
/// loaded and has no script.
inline QString OnPage(const QString& call) {
  return QStringLiteral("window.vorn && vorn.") + call;
}

/// The script with which the program itself follows the user on a folder's page, joined from the
/// files of `page_script/`. It runs in every page once that is read, in a world apart from it,
/// where scripts of the page, if it had any, could not reach it. `vorn` offers moving among the
/// rows, choosing several, and keeping all that over a new version of the page, which takes the
/// place of this one row by row. It says words of the program's own in the user's language.
QString PageScript();

}  // namespace vorn
