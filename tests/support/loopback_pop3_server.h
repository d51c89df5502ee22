#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>
#include <QTcpServer>
#include <functional>
#include <memory>

#include "support/fault.h"

class QTcpSocket;

namespace vorn::test {

struct ServerMessage {
  QByteArray uidl;
  QByteArray source;
};

/// A POP3 server on 127.0.0.1 (RFC 1939, CAPA and PIPELINING of RFC 2449) whose behaviour tests
/// choose. Messages live in memory.
class LoopbackPop3Server : public QObject {
  Q_OBJECT

 public:
  explicit LoopbackPop3Server(QObject* parent = nullptr);

  bool Listen(quint16 port = 0);
  quint16 Port() const { return server_.serverPort(); }
  void AddMessage(const QByteArray& uidl, const QByteArray& source);

  QByteArray User = "user";
  QByteArray Password = "secret";
  bool Pipelining = true;
  bool OffersApop = true;
  bool OffersUidl = true;
  bool OffersTop = true;
  bool ByteByByte = false;
  /// Lines end with a line feed alone.
  bool BareLineFeeds = false;
  /// What LIST says of a message's size, by its real size.
  double SizeFactor = 1;
  /// There a line break counts as one byte.
  bool CountsLineFeeds = false;
  /// Deletes what was marked also when the connection breaks, which the standard forbids.
  bool DeletesOnBreak = false;
  QList<Fault> Faults;
  /// Called with every line that a client sends, before it is answered.
  std::function<void(const QByteArray&)> OnCommand;
  /// Called when a stall begins, before its last bytes go out.
  std::function<void()> OnStall;
  QList<ServerMessage> Messages;

  /// Every line that clients sent, without line breaks.
  const QList<QByteArray>& Received() const { return received_; }
  int Count(const QByteArray& command) const;
  void ForgetReceived() { received_.clear(); }

 private:
  struct Session;

  void Accept();
  void Read(Session& session);
  void Answer(Session& session, const QByteArray& line);
  QByteArray Reply(Session& session, const QByteArray& verb, const QByteArray& argument);
  QByteArray Message(const Session& session, const QByteArray& argument, bool headerOnly) const;
  QByteArray Listing(const Session& session, bool uidl, const QByteArray& argument) const;
  void Send(Session& session, const QByteArray& command, const QByteArray& reply);
  void Write(Session& session, const QByteArray& bytes);
  void ApplyDeletions(Session& session);

  QList<QByteArray> received_;
  QList<std::shared_ptr<Session>> sessions_;
  QTcpServer server_;  // goes first: its sockets still tell that they are closed
};

}  // namespace vorn::test
