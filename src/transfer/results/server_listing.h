#pragma once

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>

#include "storage/base/result.h"
#include "storage/context.h"
#include "transfer/protocol/pop_events.h"
#include "transfer/results/mailbox_notes.h"

namespace vorn {

/// Which messages of a mailbox that are stored here it had at its last listing, as `MailboxNotes`
/// keeps them. A server should never give an identifier anew (RFC 1939
/// section 7, UIDL), but some do once the message is gone. So an identifier tells what it names
/// only while it has been in every listing since its message was stored, with one size.
class ServerListing {
 public:
  explicit ServerListing(Context& context) : notes_(context) {}

  /// Begins a session with a mailbox, named by user, server and port, that has these messages. At
  /// the first listing of a mailbox all is doubted. Fails when the file cannot be read.
  Result<> Begin(const QString& mailbox, const QList<ListedMessage>& messages);
  /// Forgets what was not stored, and all of an earlier session: nothing is doubted.
  void Clear();

  /// Whether the identifier may name another message than the stored one of that name.
  bool Doubts(const QString& id) const { return doubted_.contains(id); }
  bool IsListed(const QString& id) const { return listed_.contains(id); }
  /// Whether it is listed and its message has been compared in this session.
  bool IsProven(const QString& id) const { return proven_.contains(id); }
  /// Bytes, as the server tells; 0 for what is not listed.
  qint64 SizeOf(const QString& id) const { return listed_.value(id); }
  /// Whether a stored message of the listed name and size is the same one: at the first listing of
  /// a mailbox, unless the user has another one at the same server, whose messages may have the
  /// same names.
  bool TellsBySize() const { return isFirst_ && !notes_.HasSibling(); }
  /// Whether it was found under a name of another mailbox, or under another one of this.
  bool IsElsewhere(const QString& id) const;
  void NoteElsewhere(const QString& id);
  /// Whether it has another size than at the last listing.
  bool HasOtherSize(const QString& id) const;
  /// Whether those with new names may be stored ones: it is the first listing, most messages went
  /// missing in the last two months, a deletion was not confirmed, a name of one that was not
  /// deleted was found to be another's, or a session in which that was so did not come to its end.
  bool IsUpset() const { return upset_; }
  void Upset();
  /// Notes that the identifier was another message's until now.
  void NoteRenewed(const QString& id);
  /// Notes that names go from one message to another while both are there: from now on no name in
  /// the mailbox tells anything, as on a server without identifiers.
  void Distrust();
  /// Notes that nothing else is stored under that name, or that another message may be.
  void Believe(const QString& id) { doubted_.remove(id); }
  void Doubt(const QString& id) { doubted_.insert(id); }
  /// Notes that the message on the server is the stored one of that name, as its name alone tells.
  void Confirm(const QString& id);
  /// The same, as a comparison told, or since it has just been stored.
  void Prove(const QString& id);
  /// Takes back both: nothing is known of that name.
  void TakeBack(const QString& id);
  /// Notes that the message is about to be deleted on the server.
  void Release(const QString& id);
  /// Notes that those have been: should their names be there again, nothing is known of them.
  void ForgetReleased() { notes_.ForgetReleased(listed_); }
  /// Notes that one that was missing has another name now.
  void ForgetAbsent(const QString& id);
  /// Notes that a session has come to its end. Unless it passed over some messages, what has a new
  /// name from now on is new.
  void Settle();

  /// Stores what was noted.
  Result<> Store() { return notes_.Store(); }

 private:
  using Entry = MailboxNotes::Entry;
  using State = MailboxNotes::State;

  MailboxNotes notes_;
  QHash<QString, qint64> listed_;
  QSet<QString> doubted_;
  QSet<QString> proven_;
  QSet<QString> elsewhere_;
  bool isFirst_ = false;
  bool upset_ = false;
};

}  // namespace vorn
