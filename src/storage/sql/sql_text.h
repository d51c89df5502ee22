#pragma once

#include <QString>

#include "storage/base/serial_id.h"

namespace vorn {

/// `text` as a string literal of the SQL dialect: in single quotes, inner single quotes doubled.
/// The only way in which values enter statements; identifiers given by servers are hostile input.
inline QString QuoteSql(const QString& text) {
  QString quoted = text;
  quoted.replace(u'\'', QStringLiteral("''"));
  return u'\'' + quoted + u'\'';
}

inline QString QuoteSql(const SerialId& id) {
  return QuoteSql(id.Text());
}

}  // namespace vorn
