#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

#include "storage/context.h"

namespace vorn {

/// Which messages of a mailbox that are stored here it had at its last listing, kept in the
/// profile's mail file (table `on_server`). A server should never give an identifier anew (RFC 1939
/// section 7, UIDL), but some do once the message is gone. So an identifier tells what it names
/// only while it has been in every listing since its message was stored.
class ServerListing {
 public:
  explicit ServerListing(Context& context) : context_(context) {}

  /// Begins a session with a mailbox that has the messages of `ids`, all of which begin with
  /// `scope`. What a mailbox has that is listed for the first time is trusted. False when the file
  /// cannot be read; the reason is in the session's `LastError`.
  bool Begin(const QString& scope, const QStringList& ids);
  /// Forgets what was not stored, and all of an earlier session: nothing is doubted.
  void Clear();

  /// Whether the identifier may name another message than the stored one of that name.
  bool Doubts(const QString& id) const { return doubted_.contains(id); }
  /// Notes that the message on the server is the stored one of that name.
  void Confirm(const QString& id);
  /// Notes that the message is about to be deleted on the server.
  void Release(const QString& id);

  /// Stores what was noted. False as `Begin`.
  bool Store();

 private:
  struct ListStatement;
  bool Execute(const ListStatement& statement, const QSet<QString>& ids);

  Context& context_;
  QSet<QString> present_;  // as stored
  QSet<QString> doubted_;
  QSet<QString> added_;
  QSet<QString> gone_;
  QSet<QString> released_;
};

}  // namespace vorn
