#include "frame/instance_messages.h"

#include <QCryptographicHash>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLocalSocket>

#include "frame/peer_user.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kPatienceMs = 3000;
constexpr qint64 kLongestLine = 1 << 20;
constexpr qsizetype kNameLength = 16;
constexpr char kHeard[] = "ok\n";

}  // namespace

InstanceMessages::InstanceMessages(const QString& appFolder) : folder_(appFolder) {
  server_.setSocketOptions(QLocalServer::UserAccessOption);
  connect(&server_, &QLocalServer::newConnection, this, &InstanceMessages::Accept);
}

// Told only when it is needed: at a first start the folder is made after this object.
QString InstanceMessages::Place() const {
  const QString folder = QDir(folder_).canonicalPath();
  const QByteArray hash =
      QCryptographicHash::hash(folder.toUtf8(), QCryptographicHash::Sha256).toHex();
  return MeetingPlace(folder, QString::fromLatin1(hash.left(kNameLength)));
}

QString InstanceMessages::Listen() {
  const QString place = Place();
  if (!IsOwnPlace(place)) {
    return Ui::tr(
               "「%1」はほかの利用者が作ったものです。メールのリンクやファイルをこのプログラムに"
               "渡すことはできません。")
        .arg(place);
  }
  // What a killed program left behind would be in the way.
  QLocalServer::removeServer(place);
  server_.listen(place);
  return {};
}

// One line of JSON, answered by a line so that the sender knows.
void InstanceMessages::Accept() {
  QLocalSocket* socket = server_.nextPendingConnection();
  if (!IsOwnPeer(socket->socketDescriptor())) {
    delete socket;
    return;
  }
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
    const bool heard = !arguments.isEmpty() || comeForward_();
    socket->write(heard ? kHeard : "no\n");
    socket->flush();
    socket->disconnectFromServer();
    if (!arguments.isEmpty()) Q_EMIT Received(arguments);
  });
}

bool InstanceMessages::Send(const QStringList& arguments) const {
  QLocalSocket socket;
  const QString place = Place();
  if (!IsOwnPlace(place)) return false;
  socket.connectToServer(place);
  if (!socket.waitForConnected(kPatienceMs) || !IsOwnPeer(socket.socketDescriptor())) return false;
  socket.write(QJsonDocument(QJsonArray::fromStringList(arguments)).toJson(QJsonDocument::Compact) +
               '\n');
  return socket.waitForBytesWritten(kPatienceMs) && socket.waitForReadyRead(kPatienceMs) &&
         socket.readAll() == kHeard;
}

}  // namespace vorn
