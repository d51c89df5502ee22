#include "support/loopback_smtp_server.h"

#include <QTcpSocket>

namespace vorn::test {
namespace {

QByteArray PathOf(const QByteArray& line) {
  const qsizetype start = line.indexOf('<');
  const qsizetype end = line.indexOf('>', start);
  return start < 0 || end < 0 ? QByteArray() : line.sliced(start + 1, end - start - 1);
}

}  // namespace

struct LoopbackSmtpServer::Session {
  QTcpSocket* socket = nullptr;
  QByteArray buffer;
  bool inData = false;
  bool dead = false;
  SentMessage message;
};

LoopbackSmtpServer::LoopbackSmtpServer(QObject* parent) : QObject(parent) {
  connect(&server_, &QTcpServer::newConnection, this, &LoopbackSmtpServer::Accept);
}

bool LoopbackSmtpServer::Listen(quint16 port) {
  return server_.listen(QHostAddress::LocalHost, port);
}

void LoopbackSmtpServer::Accept() {
  while (QTcpSocket* socket = server_.nextPendingConnection()) {
    auto session = std::make_shared<Session>();
    session->socket = socket;
    connect(socket, &QTcpSocket::readyRead, this, [this, session] { Read(*session); });
    connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    Send(*session, "GREETING", "220 loopback ESMTP\r\n");
  }
}

void LoopbackSmtpServer::Read(Session& session) {
  session.buffer += session.socket->readAll();
  for (qsizetype end = session.buffer.indexOf("\r\n"); end >= 0 && !session.dead;
       end = session.buffer.indexOf("\r\n")) {
    const QByteArray line = session.buffer.first(end);
    session.buffer.remove(0, end + 2);
    if (session.inData) {
      TakeData(session, line);
      continue;
    }
    const QByteArray verb = line.left(4).toUpper();
    if (OnCommand) OnCommand(line);
    Send(session, verb, Replies.contains(verb) ? Replies[verb] : Reply(session, line));
    if (verb == "QUIT") session.socket->disconnectFromHost();
  }
}

QByteArray LoopbackSmtpServer::Reply(Session& session, const QByteArray& line) {
  const QByteArray verb = line.left(4).toUpper();
  if (verb == "EHLO") return "250-loopback\r\n250-PIPELINING\r\n250-AUTH PLAIN\r\n250 8BITMIME\r\n";
  if (verb == "MAIL") {
    session.message = {PathOf(line), {}, {}};
  } else if (verb == "RCPT") {
    session.message.recipients.append(PathOf(line));
  } else if (verb == "DATA") {
    if (session.message.recipients.isEmpty()) return "503 no recipients\r\n";
    session.inData = true;
    return "354 go on\r\n";
  } else if (verb == "AUTH") {
    return "235 whoever it is\r\n";
  } else if (verb == "QUIT") {
    return "221 bye\r\n";
  } else if (verb != "HELO" && verb != "RSET" && verb != "NOOP") {
    return "500 unknown command\r\n";
  }
  return "250 ok\r\n";
}

void LoopbackSmtpServer::TakeData(Session& session, const QByteArray& line) {
  if (line != ".") {
    session.message.source += (line.startsWith('.') ? line.sliced(1) : line) + "\r\n";
    return;
  }
  session.inData = false;
  QByteArray reply = Replies.value(".", "250 accepted\r\n");
  for (const Fault& fault : Faults) {
    const bool isNext = fault.command == "." && fault.occurrence == counts_.value(".") + 1;
    if (isNext && fault.kind == Fault::Kind::Reply) reply = fault.text;
  }
  if (reply.startsWith('2')) {
    messages_.append(session.message);
    if (OnMessage) OnMessage(session.message);
  }
  Send(session, ".", reply);
}

void LoopbackSmtpServer::Send(Session& session, const QByteArray& command,
                              const QByteArray& reply) {
  const int occurrence = ++counts_[command];
  for (const Fault& fault : Faults) {
    if (fault.command != command || fault.occurrence != occurrence) continue;
    if (fault.kind == Fault::Kind::Reply) {
      // A command that is answered otherwise was not done.
      if (command == "DATA") session.inData = false;
      session.socket->write(fault.text);
      return;
    }
    if (fault.kind == Fault::Kind::Stall && OnStall) OnStall();
    session.socket->write(reply.first(qMin(fault.after, reply.size())));
    session.dead = true;
    if (fault.kind == Fault::Kind::Cut) {
      session.socket->flush();
      session.socket->disconnectFromHost();
    }
    return;
  }
  session.socket->write(reply);
}

}  // namespace vorn::test
