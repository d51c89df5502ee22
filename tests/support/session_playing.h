#pragma once

#include "support/session_recorder.h"
#include "transfer/pop3/pop3_session.h"
#include "transfer/smtp/smtp_session.h"

namespace vorn::test {

/// What a session said, its lines joined by "|".
inline QString Joined(const QByteArray& said) {
  return QString::fromUtf8(said.trimmed()).replace(QStringLiteral("\r\n"), QStringLiteral("|"));
}

/// Plays a server's words to a session, a byte at a time, so that no answer comes before its
/// question, and cuts the connection behind them. Returns what the session said.
inline QString Play(const SmtpJob& job, SessionRecorder& events, const QByteArray& server) {
  QByteArray said;
  SmtpSession session(job, events, [&said](const QByteArray& bytes) { said += bytes; });
  for (const char byte : server) {
    if (!session.Finished()) session.Receive(QByteArrayView(&byte, 1));
    session.Drained();
  }
  session.ConnectionLost();
  EXPECT_TRUE(session.Finished());
  return Joined(said);
}

/// The same with a session that receives, which may also be given some bytes at a time, and how
/// many messages it has deleted.
inline QString Play(const Pop3Login& job, SessionRecorder& events, const QByteArray& server,
                    qsizetype chunk = 1, int* deleted = nullptr) {
  QByteArray said;
  Pop3Session session(job, events, [&said](const QByteArray& bytes) { said += bytes; });
  for (qsizetype at = 0; at < server.size() && !session.Finished(); at += chunk) {
    session.Receive(server.sliced(at, qMin(chunk, server.size() - at)));
    while (!session.Finished() && session.Work()) {
    }
  }
  if (!session.Finished()) session.ConnectionLost();
  EXPECT_TRUE(session.Finished());
  if (deleted != nullptr) *deleted = session.Deleted();
  return Joined(said);
}

}  // namespace vorn::test
