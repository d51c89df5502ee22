#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <optional>

#include "mail/codec/mime/flag_string.h"
#include "storage/base/result.h"
#include "storage/context.h"
#include "storage/databases.h"

namespace vorn {

/// A message that waits, exactly as its row held it.
struct WaitingMessage {
  QByteArray source;
  QString addressLines;
  FlagString flags;
  SerialIds folders;
  QString version;  ///< changes whenever the message is stored
};

/// A message that was being handed over to a server when the program or the connection died, so
/// that nobody knows whether it arrived.
struct DoubtfulMessage {
  SerialId serialId;
  QString subject;
  QString started;  ///< when the server was about to get it, in the stored form
  QString server;
  QString reply;  ///< what the server said last; empty when it said nothing
};

/// The waiting messages of a mail database and what is known of their sending. A message goes
/// through these steps, each of them one transaction:
///
/// * waiting (`STATUS` 2, no attempt): `Read` gives it out;
/// * under way: `BeginHandover` notes the attempt if the message still waits unchanged, durably.
///   From then on no program can change it. Whoever loses this race sends nothing;
/// * sent: `MailStore::StoreSent` ends the attempt and stores the message as sent;
/// * waiting again: `Withdraw`, when the server has certainly not taken it;
/// * doubtful: `Doubt`, or `DoubtLeftOver` for attempts whose program died. It stays so until the
///   user decides by `SendAgain` or `KeepAsSent`.
///
/// Sending is one program's work at a time (`kSendingWork`). An attempt that is under way while
/// nobody holds that work was left over by a death.
class Outbox {
 public:
  /// `file` is the stored path of the mail database.
  Outbox(Context& context, QString file) : context_(context), file_(std::move(file)) {}

  enum class Reading {
    Ready,
    Gone,    ///< it does not wait: sent, taken back, thrown away, deleted, or doubtful
    Closed,  ///< the database cannot be opened now
  };
  struct Waiting {
    Reading reading = Reading::Gone;
    WaitingMessage message = {};  ///< what was read where it is `Ready`
  };
  /// Fails when it waits, and its row cannot be read as it was stored.
  Result<Waiting> Read(const SerialId& serialId);

  enum class Claim { Taken, Lost };
  /// Notes that the message of that `version` is about to be handed over to `server`. `Lost`: it
  /// does not wait any more or was changed. Fails when it cannot be noted durably.
  Result<Claim> BeginHandover(const SerialId& serialId, const QString& version,
                              const QString& server);
  Result<> Withdraw(const SerialId& serialId);
  Result<> Doubt(const SerialId& serialId, const QString& reply);
  /// Makes every attempt that was left over doubtful; the number of them.
  int DoubtLeftOver();
  /// The same when no program is sending: one that is settles it by itself.
  int SettleLeftOver();

  /// Makes every message that waits doubtful, since the file is an older copy: what waits in it may
  /// have been sent since.
  Result<> DoubtWaiting();

  /// Brings what was noted to the disk.
  Result<> MakeDurable();

  Result<QList<DoubtfulMessage>> Doubtful();
  Result<std::optional<DoubtfulMessage>> FindDoubtful(const SerialId& serialId);
  /// The user's word on a doubtful message: it waits again, or it counts as sent. Fails, as
  /// `NotFound`, when it is none (any more).
  Result<> SendAgain(const SerialId& serialId);
  Result<> KeepAsSent(const SerialId& serialId);

 private:
  OpenedDatabase Open();
  Result<> EndAttempt(const SerialId& serialId, const QString& condition,
                      const QStringList& statementsAfter);
  Result<QList<DoubtfulMessage>> ReadDoubtful(const QString& condition);

  Context& context_;
  QString file_;
};

}  // namespace vorn
