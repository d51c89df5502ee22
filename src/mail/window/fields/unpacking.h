#pragma once

#include <QByteArray>
#include <QString>

#include "storage/context.h"

class QWidget;

namespace vorn {

/// What has been taken out of an archive.
struct Unpacked {
  size_t files = 0;
  QString folder;
};

/// Lets the user take files out of a ZIP archive that came by mail: which ones, into which folder,
/// and with which password where they are encrypted. `name` is the archive's, `address` says where
/// it came from (see `MarkForeign`).
Unpacked UnpackByDialog(Context& context, QWidget* parent, const QByteArray& archive,
                        const QString& name, const QString& address);

}  // namespace vorn
