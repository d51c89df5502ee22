#pragma once

#include <QList>
#include <QString>

namespace vorn {

/// A page template that comes with the program, in the template language of folder pages.
struct ReadyLayout {
  QString name;
  QString html;
};

/// The ready-made templates; the first is the default one.
QList<ReadyLayout> ReadyLayouts();

/// A tag of the template language, for the list from which a user picks.
struct LayoutTag {
  QString text;     ///< as it is written into a template
  QString meaning;  ///< what it becomes, a few words
};

QList<LayoutTag> LayoutTags();

}  // namespace vorn
