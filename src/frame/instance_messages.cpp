#include "frame/instance_messages.h"

#include <QCryptographicHash>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLocalSocket>

namespace vorn {
namespace {

constexpr int kPatienceMs = 3000;
constexpr qint64 kLongestLine = 1 << 20;
constexpr qsizetype kNameLength = 16;

}  // namespace

InstanceMessages::InstanceMessages(const QString& appFolder) : folder_(appFolder) {
  server_.setSocketOptions(QLocalServer::UserAccessOption);
  connect(&server_, &QLocalServer::newConnection, this, &InstanceMessages::Accept);
}

// Told only when it is needed: at a first start the folder is made after this object.
QString InstanceMessages::Name() const {
  const QByteArray folder = QDir(folder_).canonicalPath().toUtf8();
  const QByteArray hash = QCryptographicHash::hash(folder, QCryptographicHash::Sha256).toHex();
  return QStringLiteral("vorn-") + QString::fromLatin1(hash.left(kNameLength));
}

void InstanceMessages::Listen() {
  const QString name = Name();
  // What a killed program left behind would be in the way.
  QLocalServer::removeServer(name);
  server_.listen(name);
}

// One line of JSON, answered by a line so that the sender knows.
void InstanceMessages::Accept() {
  QLocalSocket* socket = server_.nextPendingConnection();
  connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
  connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
    if (!socket->canReadLine()) {
      if (socket->bytesAvailable() > kLongestLine) socket->abort();
      return;
    }
    QStringList arguments;
    for (const auto& value : QJsonDocument::fromJson(socket->readLine()).array()) {
      arguments.append(value.toString());
    }
    socket->write("ok\n");
    socket->flush();
    socket->disconnectFromServer();
    if (!arguments.isEmpty()) Q_EMIT Received(arguments);
  });
}

bool InstanceMessages::Send(const QStringList& arguments) const {
  QLocalSocket socket;
  socket.connectToServer(Name());
  if (!socket.waitForConnected(kPatienceMs)) return false;
  socket.write(QJsonDocument(QJsonArray::fromStringList(arguments)).toJson(QJsonDocument::Compact) +
               '\n');
  return socket.waitForBytesWritten(kPatienceMs) && socket.waitForReadyRead(kPatienceMs);
}

}  // namespace vorn
