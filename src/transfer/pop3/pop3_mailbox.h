#pragma once

#include <QByteArray>
#include <QString>
#include <vector>

namespace vorn {

/// A message on the server.
struct Pop3Message {
  int number = 0;
  qint64 size = 0;  ///< in bytes, as the server says, 0 to 2^30
  QByteArray uidl;  ///< its unique identifier; empty when it has none of its own
};

/// The server's list of messages, from the bodies of its answers to LIST and UIDL (RFC 1939
/// sections 5 and 7). Lines that cannot be read are left out. A unique identifier that several
/// messages bear tells none of them apart and is dropped: believing it would lose mail.
std::vector<Pop3Message> ReadMailbox(const QByteArray& list, const QByteArray& uidl);

/// What a message's identifier is stored as: the server's identifier combined with user and
/// server, since servers number their messages alike.
QString ScopedMessageId(const QString& user, const QString& server, const QByteArray& uidl);

}  // namespace vorn
