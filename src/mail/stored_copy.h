#pragma once

#include <QByteArray>
#include <QMultiHash>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>
#include <utility>

#include "storage/context.h"

namespace vorn {

/// Whether the message with that identifier (`FIELD_ID`) in the mail file at `file` reads back as
/// it was stored. Only then may another copy of it, such as the server's, be given up. False as
/// well when there is none, or the file cannot be read.
bool StoredCopyIsWhole(Context& context, const QString& file, const QString& messageId);

/// Whether the message with that identifier in the mail file at `file` reads back as it was stored
/// and has that header. False as well when that has no Message-ID or no trace field (RFC 5321
/// section 4.4), without which headers of different messages can be alike.
bool StoredCopyHasHeader(Context& context, const QString& file, const QString& messageId,
                         const QByteArray& header);

/// Finds a message among the stored ones by what it holds, when its identifier proves nothing.
class StoredCopies {
 public:
  /// Whether a name belongs to its stored message for sure.
  using Vouches = std::function<bool(const QString& messageId)>;

  /// `files` are the mail files to look into, and `scope` is what the names begin with.
  StoredCopies(Context& context, const QStringList& files, const QString& scope, Vouches vouches)
      : context_(context), files_(files), scope_(scope), vouches_(std::move(vouches)) {}

  enum class Found {
    None,     ///< nowhere
    Renewed,  ///< nowhere, but the name was another message's until now
    Stored,
    Moved,   ///< stored, under another name until now
    Erased,  ///< was stored, and erased for good
    Failed,  ///< a file cannot be read or written; the reason is in the session's `LastError`
  };
  /// How far to look under other names.
  enum class Depth {
    Bytes,  ///< for the same bytes
    Bodies  ///< also for the same body, which once reads all that is stored
  };
  /// Looks for the message under its name and under any other of the scope. The same message is one
  /// with the same bytes, or with the same body and fields, of which one may have some more, and
  /// those that servers write aside. With `renames`, one that is
  /// found under a name that nobody vouches for gets this one, and another message of this name
  /// gives it up. `formerName` gets the other name that it had.
  Found Find(const QString& messageId, const QByteArray& source, bool renames, Depth depth,
             QString* formerName);

 private:
  enum class Holds { Nothing, Same, Other, Failed };
  struct Place {
    QString file;
    QString serialId;
  };
  using Places = QMultiHash<QByteArray, Place>;

  Holds Compare(const QString& file, const QString& messageId, const QByteArray& source);
  bool LoadSources();
  bool LoadBodies();
  bool AddBodies(const QString& file);
  std::optional<Place> FindElsewhere(const Places& places, const QByteArray& key,
                                     const QByteArray& source, QString* name, bool* failed);
  Holds CompareName(const Place& place, const QByteArray& source, QString* name);
  bool Update(const QString& file, const QString& change);
  bool FreeName(const QString& messageId);
  bool IsErased(const QByteArray& digest, const QString& messageId, bool* failed);

  Context& context_;
  QStringList files_;
  QString scope_;
  Vouches vouches_;
  std::optional<Places> sources_;  // by their digests, once they were read
  std::optional<Places> bodies_;   // by those of Message-ID and body, as a rough key
};

}  // namespace vorn
