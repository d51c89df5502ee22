#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QHash>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "storage/connection.h"
#include "storage/connection_pool.h"
#include "storage/file_check.h"
#include "storage/recordset.h"
#include "storage/schema.h"
#include "storage/serial_id.h"
#include "storage/storage_error.h"

namespace vorn {

/// The database session: at most one open database at a time, and the current result set.
///
/// Every user opens the database it needs as an `OpenedDatabase` (`storage/databases.h`) and runs
/// its statements; closed connections stay warm, so that opening the same file again costs next to
/// nothing. Operations report success as a boolean and leave the reason of a failure in
/// `LastError`. Used on one thread.
class DataSession {
 public:
  /// Opens a file, closing the one that is open. A wrong password never opens a file, warm or not.
  bool Open(const QString& path, const QString& password);
  /// Creates an empty database file; false when the file exists.
  bool Create(const QString& path, const QString& password);
  /// Adds a column to a table of the open database (see `CreateColumn`).
  bool CreateField(const QString& table, const QString& column, FieldType type, bool required,
                   bool indexed, int size);
  /// Completes the tables made by `CreateField`.
  bool CompleteFields();
  void Close();

  /// Lays the open database aside, with its result set and its transaction, until `Leave`. When the
  /// file at `path` is open, here or further out, it is the open one again; else none is.
  void Enter(const QString& path);
  /// Closes what was opened since `Enter`, undoing a transaction that was left open, and goes on
  /// with what was laid aside.
  void Leave();
  bool IsOpen() const { return connection_ != nullptr; }

  /// Really closes the file at `path`, the open one or a warm one.
  void CloseFile(const QString& path);
  /// Whether the file at `path` is open or was, and opens again at no cost.
  bool IsWarm(const QString& path) const { return pool_.Peek(path) != nullptr; }
  /// Whether the open file has no tables yet: its maker died, or has just made it.
  bool IsUnfinished() const;

  /// Transactions nest; an inner rollback undoes the inner one alone.
  bool Begin();
  bool Commit();
  void Rollback();

  /// Runs a SELECT statement of the dialect, whose rows become the current result set. A statement
  /// that holds a condition written by the user may read messages and nothing else.
  bool OpenRecordset(const QString& select, CursorKind kind,
                     StatementTrust trust = StatementTrust::System);
  /// The current result set; null before the first `OpenRecordset`, and after one that failed.
  RecordsetPtr Recordset() const { return recordset_; }
  /// Runs a statement that returns no rows.
  bool Execute(const QString& statement);

  QString NewSerialID(const QString& prefix = {}) { return serials_.Next(prefix); }
  /// The current time in its stored form (see `CurrentTimeText`).
  QString Now() const;

  bool TestPassword(const QString& path, const QString& password);
  /// Re-keys a file. On failure the old password stays valid.
  bool ChangePassword(const QString& path, const QString& oldPassword, const QString& newPassword);

  /// Copies a file that no other program has open, with all that was committed to it.
  bool CopyFile(const QString& path, const QString& password, const QString& target);
  /// What is wrong with a file. Reads all of it and changes nothing.
  FileFindings CheckFile(const QString& path, const QString& password, FileContents contents);
  /// What reading has shown to be damaged since the last call, by the file's path (see
  /// `Connection::TakeDamage`).
  QHash<QString, QSet<QString>> TakeDamage() { return std::exchange(damage_, {}); }
  bool HasDamage() const { return !damage_.isEmpty(); }
  QStringList DamagedFiles() const { return damage_.keys(); }
  /// Puts back what could not be kept.
  void PutDamage(const QString& path, const QSet<QString>& parts) { damage_[path] += parts; }

  /// From here on, the transactions on the file at `path` that begin by `BeginGathered` are
  /// gathered and reach it together at `FlushGroup` or `EndGroup`: storing thousands of messages
  /// then writes each page once. They are seen by this session at once, by others after the flush.
  /// Any other writing takes them to the file first, so that what a user does meanwhile is never
  /// undone with them. A rollback undoes all that was gathered, and the next flush reports it:
  /// undoing one transaction alone would cost every other one the encryption of each page that it
  /// touches.
  void BeginGroup(const QString& path) { groupPath_ = path; }
  bool BeginGathered();
  /// Writes what was gathered. False means that all of it was undone.
  bool FlushGroup();
  /// Commits what was gathered before something is read that may be damaged, and would take it
  /// along. Whoever gathers learns of a failure by the next `FlushGroup` as well.
  bool FlushForReading();
  bool EndGroup();
  /// Forces all that was committed to the file at `path` onto the disk. Only after this may
  /// something outside, such as a mail server's copy, be given up. The file must have been opened.
  bool MakeDurable(const QString& path);

  /// Really closes every file, warm ones included.
  void CloseAll();

  /// Tells the rows (of `mail`, by their ROWID) of the open file's received messages behind
  /// `after`, each with the digest of its source (see `SourceDigest`; empty when it has none yet)
  /// and its subject. False when they cannot be read. Reads a page of each source.
  bool ReadReceived(qint64 after, const std::function<void(qint64 row, const QByteArray& digest,
                                                           const QString& subject)>& tell);
  /// The serial identifier of the open file's received message that was last noted under that
  /// number (table `received_identity`), empty when it has none any more; and the noting of one.
  std::optional<QString> ReceivedAs(qint64 identity);
  bool NoteReceived(qint64 identity, const QString& serialId);
  /// Whether the open file has a message of that identifier (`FIELD_ID`); nothing when it cannot be
  /// asked.
  std::optional<bool> HasMessage(const QString& messageId);
  /// The identifier (`FIELD_ID`) of a row of `mail` in the open file; empty when there is none.
  std::optional<QString> MessageIdOf(qint64 row);

  /// Runs a statement of this program's own, in the engine's dialect, with values for "?1" and so
  /// on, inside the transaction that is open. It is prepared once for as long as the file stays
  /// warm.
  bool Run(const QByteArray& statement, const QVariantList& values);

  /// A mark of the open database's state; it differs once anything has been written to the file, by
  /// this program or another. Empty when none is open.
  QString ChangeMark();
  /// The same of what was written through another connection.
  QString OthersMark();

  /// Why the last call that failed did (see `ReasonOf`).
  const StorageError& LastError() const { return error_; }

 private:
  // An open database that was laid aside, and how far transactions had gone on the one that came in
  // its place.
  struct Outer {
    std::shared_ptr<Connection> connection;
    QString path;
    QString password;
    RecordsetPtr recordset;
    int innerDepth = 0;
    int innerGroupDepth = 0;
  };

  bool IsOpenFurtherOut() const;
  bool FailWith(const StorageError& error);
  bool FailFromConnection();
  void LeaveGroup();
  void LetOthersWrite();
  // The first column of the first row that a statement with a value finds; empty when there is
  // none.
  std::optional<QString> TextOf(const QByteArray& select, const QVariant& value);
  void NoteDamage(const QString& path, Connection& connection);
  std::shared_ptr<Connection> Warm(const QString& path, const QString& password);

  std::shared_ptr<Connection> connection_;
  QString path_;
  QString password_;
  ConnectionPool pool_;
  RecordsetPtr recordset_;
  std::vector<Outer> outer_;
  SerialIdGenerator serials_;
  QString groupPath_;
  std::shared_ptr<Connection> group_;  // set while the group's transaction is open
  int groupDepth_ = 0;                 // of transactions inside it
  bool groupUndone_ = false;
  QElapsedTimer sincePause_;  // for others, between two groups
  StorageError error_;
  QHash<QString, QSet<QString>> damage_;
};

}  // namespace vorn
