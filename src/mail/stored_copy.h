#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>
#include <functional>

#include "storage/context.h"

namespace vorn {

/// Whether the message with that identifier (`FIELD_ID`) in the mail file at `file` reads back as
/// it was stored. Only then may another copy of it, such as the server's, be given up. False as
/// well when there is none, or the file cannot be read.
bool StoredCopyIsWhole(Context& context, const QString& file, const QString& messageId);

/// Finds a message among the stored ones by what it holds, when its identifier proves nothing.
class StoredCopies {
 public:
  /// Whether a name belongs to its stored message for sure.
  using Vouches = std::function<bool(const QString& messageId)>;

  /// `files` are the mail files to look into.
  StoredCopies(Context& context, const QStringList& files) : context_(context), files_(files) {}

  enum class Found {
    None,     ///< nowhere
    Renewed,  ///< nowhere, but the name was another message's until now
    Stored,
    Moved,   ///< stored, under another name until now
    Erased,  ///< was stored, and erased for good
    Failed,  ///< a file cannot be read or written; the reason is in the session's `LastError`
  };
  /// Looks for the message under its name and under any other of `scope`. The same message is one
  /// with the same bytes, or, under the same name, with the same body and Message-ID, or with the
  /// same fields and some more where it has no Message-ID. With `renames`, one that is found under
  /// a name that nobody vouches for gets this one, and another message of this name gives it up.
  /// `formerName` gets the other name that it had.
  Found Find(const QString& scope, const QString& messageId, const QByteArray& source, bool renames,
             const Vouches& vouches, QString* formerName);

 private:
  enum class Holds { Nothing, Same, Other, Failed };
  struct Place {
    QString file;
    QString serialId;
  };

  Holds Compare(const QString& file, const QString& messageId, const QByteArray& source);
  bool Load(const QString& scope);
  Holds CompareName(const Place& place, const QByteArray& source, QString* name);
  bool Update(const QString& file, const QString& change);
  bool FreeName(const QString& messageId);
  bool IsErased(const QByteArray& digest, const QString& messageId, bool* failed);

  Context& context_;
  QStringList files_;
  QString scope_;  // that `places_` was read for
  QHash<QByteArray, Place> places_;
};

}  // namespace vorn
