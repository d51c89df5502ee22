#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringList>

namespace vorn {

/// The index columns of a message, worked out once when it is stored.
struct MessageIndex {
  QString content;       ///< `FIELD_CONTENT`, the map of its parts
  QString subject;       ///< `FIELD_SUBJECT`
  QString addressLines;  ///< `FIELD_MAILADDRESS`
  QString flags;         ///< `FIELD_FLAG`
};

/// Works out the index columns of a source. `flags` is the flag string to start from; `textTypes`
/// are the content types that are text. Never fails.
MessageIndex IndexMessage(QByteArrayView source, const QString& flags,
                          const QStringList& textTypes);

}  // namespace vorn
