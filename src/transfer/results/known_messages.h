#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include "mail/store/stored_copy.h"
#include "storage/base/result.h"
#include "storage/context.h"
#include "transfer/protocol/pop_events.h"
#include "transfer/results/doubtful_answers.h"
#include "transfer/results/known_files.h"
#include "transfer/results/server_listing.h"

namespace vorn {

/// Tells which messages of a mailbox are stored already. An identifier is believed where its
/// mailbox never gave one anew, and then only to leave a message where it is: before anything is
/// deleted on the server, its header or all of it is compared with the stored one.
class KnownMessages {
 public:
  explicit KnownMessages(Context& context)
      : context_(context),
        files_(context),
        listing_(context),
        answers_(context),
        copies_(context) {}

  /// Forgets an earlier session. Those of `deletes` are of an account that deletes on the server.
  void BeginSession(bool deletes);
  /// Takes the mailbox's messages, whose identifiers begin with `scope`. Fails when the profile's
  /// mail file cannot be read.
  Result<> TakeListing(const QString& scope, int port, const QList<ListedMessage>& messages);
  /// Whether an earlier session got identifiers from that mailbox.
  bool HadIdentifiers(const QString& scope, int port);

  enum class Name {
    New,     ///< to be fetched; when its name proves nothing, `FindStored` tells more
    Unsure,  ///< one of that name is stored; `ProvesHeader` or `FindStored` tells whether it is it
    Stored,
    Erased,  ///< was stored and erased for good
  };
  struct Known {
    Name name = Name::New;
    QStringList files;  ///< the mail files that have a message of that name
  };
  /// What the identifier tells. Fails when a file cannot be asked: as far as anybody can know it is
  /// stored.
  Result<Known> Ask(const QString& messageId);
  /// Whether the answer was `Unsure` and the header may tell.
  bool WantsHeader(const QString& messageId) const { return unsure_.contains(messageId); }
  /// Whether the header is that of the stored message of that name (`StoredCopyHasHeader`).
  bool ProvesHeader(const QString& messageId, const QByteArray& header);
  /// What the whole message tells where its name does not, otherwise `None`. One that `isTornOff`
  /// may be another than that of the name, and takes no name from one that is found.
  Result<StoredCopies::Copy> FindStored(const QString& messageId, const QByteArray& data,
                                        bool isTornOff);
  /// Whether nothing is new in it beside what is stored under that name (`StoredCopySaysTheSame`).
  bool SaysWhatIsStored(const QString& messageId, const QByteArray& data);
  /// The same, whatever its name tells. Under a name of the mailbox the row takes that name; one of
  /// another mailbox, `Elsewhere`, keeps its own.
  Result<StoredCopies::Copy> FindByContents(const QString& messageId, const QByteArray& data,
                                            bool isTornOff);

  /// Notes that the message is stored, under whatever name: which is that name, or a digest where
  /// it has none.
  Result<QString> NoteAlike(const QString& messageId, const QByteArray& data, bool isTornOff);
  /// Notes that an answer which does not fit was the message that is stored under that name.
  void NoteDoubtful(const QString& messageId, const QString& storedAs) {
    answers_.Note(messageId, storedAs);
  }
  /// Notes that what was noted as stored does not fit, as only later messages showed.
  void TakeBack(const QString& messageId);
  /// That an answer for it did not fit, of which nothing was stored.
  void Doubt(const QString& messageId) { answers_.Note(messageId, QString()); }
  /// Whether an earlier session got an answer that did not fit.
  bool HasDoubt(const QString& messageId) const { return answers_.Has(messageId); }
  /// Whether an earlier session got the same answer.
  bool CameBefore(const QString& messageId, const QString& storedAs) const {
    return answers_.CameBefore(messageId, storedAs);
  }

  /// Notes that the message is stored under that name, as the name alone tells or, with `proven`,
  /// as was seen.
  void NoteStored(const QString& messageId, bool proven);
  /// Notes that it is about to be deleted on the server.
  void Release(const QString& messageId) { listing_.Release(messageId); }
  /// Notes that a session has come to its end, and stores it.
  Result<> NoteWhole();
  /// Notes that the server has confirmed the end of a session, and with it all deletions,
  /// and stores it.
  Result<> NoteDeleted();
  /// Stores what was noted.
  Result<> Store();
  bool HasIdentifiers() const { return !scope_.isEmpty(); }

 private:
  bool IsVouchedFor(const QString& messageId) const;
  Name NameOf(const QString& messageId, const KnownFiles::Holders& holders);

  Context& context_;
  KnownFiles files_;
  ServerListing listing_;
  DoubtfulAnswers answers_;
  bool deletes_ = false;
  QString scope_;                       // empty when the mailbox has no identifiers
  QHash<QString, QStringList> unsure_;  // which files have a message of that name
  QSet<QString> absent_;                // of which no file had a message when it was asked for
  StoredCopies copies_;
};

}  // namespace vorn
