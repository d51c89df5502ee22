#pragma once

#include <QHash>
#include <QSet>
#include <QString>

#include "storage/base/result.h"
#include "storage/context.h"
#include "transfer/protocol/pop_events.h"

namespace vorn {

/// What is noted of a mailbox from one session to the next, in the profile's mail file (table
/// `on_server`): the mailbox itself, and the identifiers whose messages are stored here.
class MailboxNotes {
 public:
  // As it is stored.
  enum class State {
    Listed = 0,
    Released = 1,   ///< the server was told to delete it, and has not confirmed that
    Absent = 2,     ///< missing, and may come back, also renamed; its size is the day since when
    Moving = 3,     ///< of the mailbox itself: its names go from one message to another
    Unsettled = 4,  ///< of the mailbox itself: what has a new name may be a stored one
    Elsewhere = 5,  ///< stored under a name of another mailbox
  };
  struct Entry {
    qint64 size = 0;  ///< bytes, as the server told
    State state = State::Listed;

    bool operator==(const Entry& other) const { return size == other.size && state == other.state; }
  };
  /// Stands for the mailbox itself in place of an identifier.
  inline static const QString kItself = QStringLiteral("");

  explicit MailboxNotes(Context& context) : context_(context) {}

  /// Reads what earlier sessions noted of a mailbox, named by user, server and port. Fails when the
  /// file cannot be read.
  Result<> Read(const QString& mailbox);
  /// Forgets what was read and what was not stored.
  void Clear();
  /// Stores what was noted.
  Result<> Store();

  /// Whether an earlier session noted it.
  bool Has(const QString& id) const { return noted_.contains(id); }
  /// What an earlier session noted; a fresh entry where none did.
  Entry Of(const QString& id) const { return noted_.value(id); }
  bool HasReleased() const;
  /// Whether the name tells what it told at the last listing.
  bool Holds(const ListedMessage& message) const;
  /// Whether earlier sessions noted another mailbox of the user at the same server.
  bool HasSibling() const { return hasSibling_; }
  /// Whether messages of a mailbox, any one, were found under names of another.
  bool IsShared() const { return isShared_; }
  /// Whether an earlier session noted any identifier.
  bool HasIdentifiers() const { return noted_.size() > 1; }

  /// What is noted by now; an absent one where nothing is.
  Entry Current(const QString& id) const;
  bool IsChanged(const QString& id) const { return changed_.contains(id); }
  void Note(const QString& id, const Entry& entry) { changed_.insert(id, entry); }
  /// Notes that nothing is known of the identifier.
  void Forget(const QString& id);
  /// The same of those that were released and are in the listing again.
  void ForgetReleased(const QHash<QString, qint64>& listed);
  /// Notes of what is not in the listing that it is missing, or forgets it. Whether anything is
  /// missing that may come back under another name: what was to be deleted and perhaps was, and all
  /// where most is missing, as after a move to another server.
  bool NoteMissing(const QHash<QString, qint64>& listed);
  /// Notes that a message of the mailbox was found under a name of another one.
  void NoteShared() { sharesNow_ = true; }

 private:
  Result<> Write(const QString& mailbox, const QString& id, const Entry& entry);
  Result<> WriteAll();

  Context& context_;
  QString mailbox_;
  QHash<QString, Entry> noted_;  // as stored
  QHash<QString, Entry> changed_;
  QSet<QString> gone_;
  bool hasSibling_ = false;
  bool isShared_ = false;
  bool sharesNow_ = false;
};

}  // namespace vorn
