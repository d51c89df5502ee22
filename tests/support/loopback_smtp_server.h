#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QTcpServer>
#include <functional>
#include <memory>

#include "support/fault.h"

class QTcpSocket;

namespace vorn::test {

/// A message that was handed over, dot-stuffing undone.
struct SentMessage {
  QByteArray from;
  QList<QByteArray> recipients;
  QByteArray source;
};

/// An SMTP server on 127.0.0.1 (RFC 5321) that keeps what it is given. Replies can be replaced by
/// command, to play refusals.
class LoopbackSmtpServer : public QObject {
  Q_OBJECT

 public:
  explicit LoopbackSmtpServer(QObject* parent = nullptr);

  bool Listen(quint16 port = 0);
  quint16 Port() const { return server_.serverPort(); }

  /// Replies instead of the ordinary ones, by upper-case command ("RCPT", "DATA", "." for the end
  /// of a message).
  QHash<QByteArray, QByteArray> Replies;
  /// What goes wrong, counted over all sessions.
  QList<Fault> Faults;
  /// Called with every command that a client sends, before it is answered.
  std::function<void(const QByteArray&)> OnCommand;
  /// Called when a stall begins, before its last bytes go out.
  std::function<void()> OnStall;
  /// Called for every message accepted.
  std::function<void(const SentMessage&)> OnMessage;
  const QList<SentMessage>& Messages() const { return messages_; }
  /// How often a command was answered so far.
  int Count(const QByteArray& command) const { return counts_.value(command); }

 private:
  struct Session;

  void Accept();
  void Read(Session& session);
  QByteArray Reply(Session& session, const QByteArray& line);
  void TakeData(Session& session, const QByteArray& line);
  void Send(Session& session, const QByteArray& command, const QByteArray& reply);

  QTcpServer server_;
  QList<SentMessage> messages_;
  QHash<QByteArray, int> counts_;
};

}  // namespace vorn::test
