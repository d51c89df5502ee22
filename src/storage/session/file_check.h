#pragma once

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include "storage/base/result.h"
#include "storage/base/serial_id.h"

namespace vorn {

class DataSession;

/// A message that cannot be read, by what can still be told of it.
struct UnreadableMessage {
  SerialId serialId;  ///< empty when it is lost as well
  QString subject;    ///< empty when it is lost, or the message has none
  QString timestamp;  ///< as stored; empty when it is lost

  /// How it is called to the user: its subject and date.
  QString Name() const;
};

/// What a check of a database file found.
struct FileFindings {
  QStringList problems;  ///< sentences for the user, one a kind; empty when the file is sound
  QList<UnreadableMessage> unreadable;
  QSet<QString> parts;  ///< what is damaged, as `FoundDamage` has it

  bool IsSound() const { return problems.isEmpty(); }
  /// Notes that a log was damaged, of which nothing may be left to see.
  void AddLostLog();
  /// Notes that the whole file is older than it should be.
  void AddOlderFile();
};

/// What a database file is for: the objects of a profile or of the list of profiles, or messages.
enum class FileContents { Objects, Messages };

/// Fails when the file that the session has open is not one of such contents. A look, no check.
Result<> RequireContents(DataSession& data, FileContents contents);

/// Reads every table and index of a file, every message source against its digest, and whether they
/// belong together; a file of other contents is not sound. Neither the file nor its log is changed.
/// `known` is what reading has shown before to be damaged: a log that was may be gone since.
FileFindings CheckDatabaseFile(const QString& path, const QString& password, FileContents contents,
                               const QSet<QString>& known);

}  // namespace vorn
