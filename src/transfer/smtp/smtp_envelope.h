#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <deque>
#include <optional>

#include "transfer/smtp/smtp_extensions.h"

namespace vorn {

/// The envelope of one message: MAIL and RCPT (RFC 5321 section 3.3), with the parameters of SIZE,
/// 8BITMIME and SMTPUTF8, all at once where the server takes commands ahead (PIPELINING, RFC 2920).
/// The message itself is never sent ahead: a recipient may still be refused.
class SmtpEnvelope {
 public:
  /// Plans the commands for a message that goes over the wire as `wire`. Returns why it
  /// cannot be given to this server, as a sentence for the user; nothing when it can.
  std::optional<QString> Plan(const QString& from, const QStringList& recipients,
                              const QByteArray& wire, const SmtpExtensions& extensions);

  /// The commands to send now.
  QByteArray NextCommands();
  bool HasCommands() const { return !commands_.empty(); }
  /// Whether a command that was sent has no reply yet.
  bool AwaitsReply() const { return awaited_ > 0; }
  /// Counts a reply. Replies come in the order of the commands; returns whose address it is about,
  /// the sender's first.
  QString TakeReply();
  /// Whether the last reply was the sender's.
  bool WasSender() const { return answered_ == 1; }

 private:
  std::optional<QString> TakeAddresses(const QStringList& addresses,
                                       const SmtpExtensions& extensions);

  bool pipelining_ = false;
  QStringList addresses_;            // the sender's, then each recipient's
  QByteArrayList paths_;             // the same as they are sent
  bool needsUtf8_ = false;           // one of them
  std::deque<QByteArray> commands_;  // not sent yet
  qsizetype awaited_ = 0;
  qsizetype answered_ = 0;
};

}  // namespace vorn
