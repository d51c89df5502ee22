#pragma once

#include <QList>
#include <QStringList>

#include "storage/base/serial_id.h"
#include "storage/sql/sql_text.h"

namespace vorn {

/// The condition that holds for the rows of these messages.
inline QString Among(const SerialIds& messages) {
  QStringList quoted;
  quoted.reserve(messages.size());
  for (const SerialId& serialId : messages) quoted.append(QuoteSql(serialId));
  return QStringLiteral(" SERIALID IN (%1)").arg(quoted.join(u','));
}

/// The statement, without its condition, that puts messages into the dust bin or takes them out,
/// whatever their states are.
inline QString PutIntoDust(bool dust) {
  return QStringLiteral("UPDATE mail SET STATUS = ") +
         (dust ? QStringLiteral("-ABS(STATUS)") : QStringLiteral("ABS(STATUS)"));
}

/// Of so many messages the condition has room in one statement: the engine takes 999 values, and a
/// million characters.
constexpr qsizetype kMessagesAtOnce = 500;

/// Messages in pieces of so many.
inline QList<SerialIds> InPieces(const SerialIds& messages) {
  QList<SerialIds> pieces;
  for (qsizetype at = 0; at < messages.size(); at += kMessagesAtOnce) {
    pieces.append(messages.mid(at, kMessagesAtOnce));
  }
  return pieces;
}

}  // namespace vorn
