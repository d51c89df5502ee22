#pragma once

#include <QByteArray>
#include <QHash>
#include <QMultiHash>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>
#include <vector>

#include "storage/base/result.h"
#include "storage/context.h"

namespace vorn {

/// Whether the message with that identifier (`FIELD_ID`) in the mail file at `file` reads back as
/// it was stored. Only then may another copy of it, such as the server's, be given up. Fails as
/// well when there is none (`NotFound`), or the file cannot be read.
Result<> StoredCopyIsWhole(Context& context, const QString& file, const QString& messageId);

/// Whether the message with that identifier in the mail file at `file` reads back as it was stored,
/// has that header and is `whole`. False as well when the header has no Message-ID or no trace
/// field (RFC 5321 section 4.4), without which those of different messages can be alike.
bool StoredCopyHasHeader(Context& context, const QString& file, const QString& messageId,
                         const QByteArray& header,
                         const std::function<bool(const QByteArray& stored)>& whole);

/// Whether the message with that identifier in the mail file at `file` reads back as it was stored
/// and has all that `source` says: the same identifier, date, sender, subject and text, boundaries
/// of parts aside, or, where both have no text, but a field or two more.
bool StoredCopySaysTheSame(Context& context, const QString& file, const QString& messageId,
                           const QByteArray& source);

/// Finds a message among the stored ones by what it holds, when its identifier proves nothing.
class StoredCopies {
 public:
  /// Whether a name belongs to its stored message for sure.
  using Vouches = std::function<bool(const QString& messageId)>;

  explicit StoredCopies(Context& context) : context_(context) {}

  /// From now on looks into these mail files, for messages of a mailbox whose names begin with
  /// `scope`. What was read of the files before is kept.
  void Begin(const QStringList& files, const QString& scope, Vouches vouches);

  enum class Found {
    None,     ///< nowhere
    Renewed,  ///< nowhere, but the name was another message's until now
    Stored,
    Moved,      ///< stored, under another name until now
    Elsewhere,  ///< stored under the name of another mailbox, which it keeps
    Erased,     ///< was stored, and erased for good
  };
  /// What a name and what was got under it say of each other.
  enum class Trust {
    Named,     ///< it is the message of that name
    Nameless,  ///< the name is none of the mailbox's
    Doubtful,  ///< it may be another message: what is stored under another name is `Elsewhere`
  };
  struct Copy {
    Found found = Found::None;
    QString
        storedAs;  ///< the name under which it was found, else its own; of an erased one the digest
  };
  /// Looks for the message under its name, if there is one (`isNamed`), and under any other. The
  /// same message is one with the same bytes, or with the same body and fields, of which one may
  /// have some more, and those that servers write aside, where both have a Message-ID and a trace
  /// field; under the name of another mailbox only one with no other fields. With `Trust::Named`,
  /// one of this mailbox or from an archive that is found under a name that nobody vouches for gets
  /// this one, and another message of this name gives it up. Fails when a file cannot be read
  /// or written.
  Result<Copy> Find(const QString& messageId, const QByteArray& source, bool isNamed, Trust trust);

 private:
  enum class Holds { Nothing, Same, Other };
  struct Place {
    quint64 key = 0;  // of the digest or the subject
    qint32 file = 0;
    qint64 row = 0;
    bool isTaken = false;  // in this session it was found to be another's
  };
  using Places = std::vector<Place>;

  // Beside the same bytes: the same body, and fields of which one may have more; the same where
  // both are unique; no other fields but servers' notes, where both are.
  enum class Likeness { Any, Traced, ButForNotes };
  Result<Holds> Compare(const QString& file, const QString& messageId, const QByteArray& source,
                        Likeness likeness);
  Result<> Load();
  void ForgetRead();
  struct Hit {
    Found found = Found::None;
    QString name;
    QString file;
  };
  Result<Hit> FindElsewhere(Places& places, quint64 key, const QByteArray& source);
  Result<Found> Claim(const QString& file, const QString& name, const QByteArray& source);
  Result<> FreeName(const QString& messageId);
  Result<> Rename(const QString& file, const QString& from, const QString& value);
  Result<> LoadErased();
  Result<> NoteErased(const QString& messageId, const QByteArray& digest);

  Context& context_;
  QStringList files_;
  QString scope_;
  Vouches vouches_;
  bool isLoaded_ = false;        // in this session
  bool isDamaged_ = false;       // a file, as is known
  QHash<QString, qint64> read_;  // by file, the last row that was read; none is given anew
  Places byDigest_;
  Places bySubject_;
  std::optional<QMultiHash<QByteArray, QString>> erased_;  // names by digest
};

}  // namespace vorn
