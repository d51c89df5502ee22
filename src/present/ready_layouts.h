#pragma once

#include <QList>
#include <QString>

namespace vorn {

/// A page template that comes with the program, in the template language of folder pages.
struct ReadyLayout {
  QString id;  ///< as it is stored: "standard", "table" or "cards"
  QString name;
  QString html;
};

/// The ready-made templates for a folder, which in folders of sent messages show whom they went to;
/// the first is the default one.
QList<ReadyLayout> ReadyLayouts(const QString& folder);

}  // namespace vorn
