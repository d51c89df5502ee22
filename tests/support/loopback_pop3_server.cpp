#include "support/loopback_pop3_server.h"

#include <QCryptographicHash>
#include <QTcpSocket>

namespace vorn::test {
namespace {

constexpr char kTimestamp[] = "<4711.1764000000@loopback.example>";

QByteArray DotStuffed(const QByteArray& source) {
  QByteArray stuffed = source;
  if (stuffed.startsWith('.')) stuffed.prepend('.');
  stuffed.replace("\r\n.", "\r\n..");
  if (!stuffed.endsWith("\r\n")) stuffed += "\r\n";
  return stuffed + ".\r\n";
}

}  // namespace

struct LoopbackPop3Server::Session {
  QTcpSocket* socket = nullptr;
  QByteArray buffer;
  QByteArray user;
  bool authorized = false;
  bool dead = false;
  QSet<int> marked;
  QHash<QByteArray, int> counts;
  QList<ServerMessage> snapshot;
};

LoopbackPop3Server::LoopbackPop3Server(QObject* parent) : QObject(parent) {
  connect(&server_, &QTcpServer::newConnection, this, &LoopbackPop3Server::Accept);
}

bool LoopbackPop3Server::Listen(quint16 port) {
  return server_.listen(QHostAddress::LocalHost, port);
}

void LoopbackPop3Server::AddMessage(const QByteArray& uidl, const QByteArray& source) {
  Messages.append({uidl, source});
}

int LoopbackPop3Server::Count(const QByteArray& command) const {
  int count = 0;
  for (const QByteArray& line : received_) {
    if (line.split(' ').first().toUpper() == command) ++count;
  }
  return count;
}

void LoopbackPop3Server::Accept() {
  while (QTcpSocket* socket = server_.nextPendingConnection()) {
    auto session = std::make_shared<Session>();
    session->socket = socket;
    session->snapshot = Messages;
    sessions_.append(session);
    connect(socket, &QTcpSocket::readyRead, this, [this, session] { Read(*session); });
    connect(socket, &QTcpSocket::disconnected, this, [this, session] {
      if (DeletesOnBreak) ApplyDeletions(*session);
      session->socket->deleteLater();
      sessions_.removeOne(session);
    });
    const QByteArray stamp = OffersApop ? QByteArray(" ") + kTimestamp : QByteArray();
    Send(*session, "GREETING", "+OK loopback ready" + stamp + "\r\n");
  }
}

void LoopbackPop3Server::Read(Session& session) {
  session.buffer += session.socket->readAll();
  for (qsizetype end = session.buffer.indexOf("\r\n"); end >= 0 && !session.dead;
       end = session.buffer.indexOf("\r\n")) {
    const QByteArray line = session.buffer.first(end);
    session.buffer.remove(0, end + 2);
    received_.append(line);
    if (OnCommand) OnCommand(line);
    Answer(session, line);
  }
}

void LoopbackPop3Server::Answer(Session& session, const QByteArray& line) {
  const qsizetype blank = line.indexOf(' ');
  const QByteArray verb = (blank < 0 ? line : line.first(blank)).toUpper();
  const QByteArray argument = blank < 0 ? QByteArray() : line.sliced(blank + 1);
  Send(session, verb, Reply(session, verb, argument));
  if (verb == "QUIT" && !session.dead) {
    ApplyDeletions(session);
    session.socket->disconnectFromHost();
  }
}

QByteArray LoopbackPop3Server::Reply(Session& session, const QByteArray& verb,
                                     const QByteArray& argument) {
  if (verb == "CAPA") {
    return "+OK\r\nUSER\r\n" + QByteArray(OffersUidl ? "UIDL\r\n" : "") +
           (OffersTop ? "TOP\r\n" : "") + (Pipelining ? "PIPELINING\r\n" : "") + ".\r\n";
  }
  if (verb == "USER") {
    session.user = argument;
    return "+OK\r\n";
  }
  if (verb == "PASS" || verb == "APOP") {
    QByteArray expected = Password;
    QByteArray given = argument;
    if (verb == "APOP") {
      session.user = argument.split(' ').value(0);
      given = argument.split(' ').value(1);
      expected = QCryptographicHash::hash(kTimestamp + Password, QCryptographicHash::Md5).toHex();
    }
    session.authorized = session.user == User && given == expected;
    return session.authorized ? "+OK\r\n" : "-ERR [AUTH] wrong user or password\r\n";
  }
  if (verb == "QUIT") return "+OK bye\r\n";
  if (!session.authorized) return "-ERR log in first\r\n";
  if (verb == "LIST") return Listing(session, false, argument);
  if (verb == "UIDL" && OffersUidl) return Listing(session, true, argument);
  if (verb == "RETR") return Message(session, argument, false);
  if (verb == "TOP" && OffersTop) return Message(session, argument.split(' ').value(0), true);
  if (verb == "DELE") {
    const int number = argument.toInt();
    if (number < 1 || number > session.snapshot.size()) return "-ERR no such message\r\n";
    session.marked.insert(number);
    return "+OK\r\n";
  }
  return verb == "NOOP" ? "+OK\r\n" : "-ERR unknown command\r\n";
}

QByteArray LoopbackPop3Server::Listing(const Session& session, bool uidl, const QByteArray&) const {
  QByteArray reply = "+OK\r\n";
  for (qsizetype i = 0; i < session.snapshot.size(); ++i) {
    const ServerMessage& message = session.snapshot[i];
    const qsizetype breaks = CountsLineFeeds ? message.source.count('\n') : 0;
    const double size = static_cast<double>(message.source.size() - breaks) * SizeFactor;
    reply += QByteArray::number(i + 1) + ' ' +
             (uidl ? message.uidl : QByteArray::number(static_cast<qint64>(size))) + "\r\n";
  }
  return reply + ".\r\n";
}

QByteArray LoopbackPop3Server::Message(const Session& session, const QByteArray& argument,
                                       bool headerOnly) const {
  const int number = argument.toInt();
  if (number < 1 || number > session.snapshot.size()) return "-ERR no such message\r\n";
  QByteArray source = session.snapshot[number - 1].source;
  if (headerOnly) source.truncate(source.indexOf("\r\n\r\n") + 4);
  return "+OK " + QByteArray::number(source.size()) + " octets\r\n" + DotStuffed(source);
}

void LoopbackPop3Server::Send(Session& session, const QByteArray& command,
                              const QByteArray& reply) {
  const int occurrence = ++session.counts[command];
  for (const Fault& fault : Faults) {
    if (fault.command != command || fault.occurrence != occurrence) continue;
    if (fault.kind == Fault::Kind::Reply) {
      Write(session, fault.text);
      return;
    }
    if (fault.kind == Fault::Kind::Torn) {
      const qsizetype lines = reply.indexOf("\r\n") + 2;
      Write(session, reply.first(qMin(lines + fault.after, reply.size() - 5)) + "\r\n.\r\n");
      return;
    }
    if (fault.kind == Fault::Kind::Stall && OnStall) OnStall();
    Write(session, reply.first(qMin(fault.after, reply.size())));
    session.dead = true;
    if (fault.kind == Fault::Kind::Cut) {
      session.socket->flush();
      session.socket->disconnectFromHost();
    }
    return;
  }
  Write(session, reply);
}

void LoopbackPop3Server::Write(Session& session, const QByteArray& reply) {
  QByteArray bytes = reply;
  if (BareLineFeeds) bytes.replace("\r\n", "\n");
  if (!ByteByByte) {
    session.socket->write(bytes);
    return;
  }
  session.socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
  for (const char byte : bytes) {
    session.socket->write(&byte, 1);
    session.socket->flush();
  }
}

void LoopbackPop3Server::ApplyDeletions(Session& session) {
  for (const int number : std::as_const(session.marked)) {
    const QByteArray source = session.snapshot[number - 1].source;
    Messages.removeIf([&source](const ServerMessage& message) { return message.source == source; });
  }
  session.marked.clear();
}

}  // namespace vorn::test
