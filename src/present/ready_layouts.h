#pragma once

#include <QList>
#include <QString>

#include "objects/settings.h"
#include "storage/base/serial_id.h"

namespace vorn {

/// A page template that comes with the program, in the template language of folder pages.
struct ReadyLayout {
  QString id;  ///< as it is stored: "standard", "table" or "cards"
  QString name;
  QString html;
};

/// The ready-made templates for a folder, which in folders of sent messages show whom they went to,
/// with rows of that height; the first is the default one, which knows no height.
QList<ReadyLayout> ReadyLayouts(const SerialId& folder, RowHeight rows = RowHeight::Normal);

}  // namespace vorn
