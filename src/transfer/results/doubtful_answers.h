#pragma once

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>

#include "storage/base/result.h"
#include "storage/context.h"
#include "transfer/protocol/pop_events.h"

namespace vorn {

/// What the messages of a mailbox were answered with that did not fit their sizes, kept in the
/// profile's mail file (table `doubtful_answer`) until one is believed. Such an answer may be half
/// a message or another one; only the same one to another session is believed.
class DoubtfulAnswers {
 public:
  explicit DoubtfulAnswers(Context& context) : context_(context) {}

  /// Begins a session with a mailbox, named as in `ServerListing`, that has these messages. Fails
  /// when the file cannot be read.
  Result<> Begin(const QString& mailbox, const QList<ListedMessage>& messages);
  /// Forgets an earlier session.
  void Clear();
  /// Whether an earlier session got for this message, when it had the size that it has now, what is
  /// stored under the name `storedAs`.
  bool CameBefore(const QString& id, const QString& storedAs) const;
  /// Whether an earlier session got any such answer for it.
  bool Has(const QString& id) const { return noted_.contains(id); }
  /// Notes that this session got it. Of messages without identifiers nothing is noted.
  void Note(const QString& id, const QString& storedAs);
  /// Notes that an answer was believed.
  void Forget(const QString& id);
  /// Stores what was noted.
  Result<> Store();

 private:
  struct Answer {
    qint64 size = 0;
    QString storedAs;
  };

  Result<> Read();
  Result<> Write();

  Context& context_;
  QString mailbox_;
  QHash<QString, qint64> listed_;
  QHash<QString, Answer> noted_;  // as stored
  QHash<QString, Answer> changed_;
  QSet<QString> gone_;
};

}  // namespace vorn
