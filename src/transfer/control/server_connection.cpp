#include "transfer/control/server_connection.h"

#include <QSslCertificate>
#include <QSslSocket>
#include <utility>

#include "storage/ui.h"
#include "transfer/control/network_words.h"

namespace vorn {
namespace {

// What the socket may hold unread; beyond it the server has to wait.
constexpr qint64 kReadBufferBytes = 1024 * 1024;

QString CannotConnect(const Endpoint& server, QAbstractSocket::SocketError error) {
  return Ui::tr(
             "サーバー「%1」（ポート%2）に接続できません。サーバー名、ポート番号、"
             "ネットワークの接続を確認してください。（%3）")
      .arg(server.host)
      .arg(server.port)
      .arg(SocketReason(error));
}

QString SpeaksTls(const Endpoint& server) {
  return Ui::tr(
             "サーバー「%1」のポート%2は最初から暗号化する接続（TLS）のためのポートです。"
             "アカウントのセキュリティの設定かポート番号を確認してください。")
      .arg(server.host)
      .arg(server.port);
}

// The first byte of an alert or a handshake in TLS (RFC 8446 section 5.1); no greeting begins so.
bool BeginsTls(QSslSocket& socket) {
  if (socket.mode() != QSslSocket::UnencryptedMode) return false;
  const QByteArray start = socket.peek(1);
  return start == "\x15" || start == "\x16";
}

}  // namespace

ServerConnection::ServerConnection(Endpoint server, QList<QHostAddress> addresses, int tlsProbeMs)
    : server_(std::move(server)), tlsProbeMs_(tlsProbeMs), addresses_(std::move(addresses)) {
  connect(&probe_, &TlsProbe::Answered, this, [this] {
    if (!hasHeard_) Q_EMIT Failed(PopError::Tls, SpeaksTls(server_), {});
  });
}

// A socket that is closed by its destruction would still tell of it.
ServerConnection::~ServerConnection() {
  DropSocket();
}

void ServerConnection::Open() {
  if (const QHostAddress literal(server_.host); addresses_.isEmpty() && !literal.isNull()) {
    addresses_ = {literal};
  }
  if (TryNext()) return;
  lookup_ = QHostInfo::lookupHost(server_.host, this, &ServerConnection::TakeAddresses);
}

void ServerConnection::TakeAddresses(const QHostInfo& info) {
  if (info.lookupId() != lookup_) return;  // it was closed meanwhile
  addresses_ = info.addresses();
  if (TryNext()) return;
  Q_EMIT Failed(PopError::Connect, CannotConnect(server_, QAbstractSocket::HostNotFoundError), {});
}

// A server may have several addresses, of which some do not answer from here.
bool ServerConnection::TryNext() {
  if (addresses_.isEmpty()) return false;
  DropSocket();
  const QHostAddress address = addresses_.takeFirst();
  MakeSocket();
  Q_EMIT Trying();
  const auto port = static_cast<quint16>(server_.port);
  if (server_.security == Security::Tls) {
    socket_->connectToHostEncrypted(address.toString(), port, server_.host);
  } else {
    socket_->connectToHost(address, port);
  }
  return true;
}

void ServerConnection::MakeSocket() {
  socket_ = std::make_unique<QSslSocket>();
  socket_->setReadBufferSize(kReadBufferBytes);
  socket_->setPeerVerifyName(server_.host);
  connect(socket_.get(), &QSslSocket::connected, this, [this] {
    isConnected_ = true;
    // Small commands go out at once: they wait for no acknowledgement.
    socket_->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    if (server_.security != Security::Tls) {
      probe_.Start(tlsProbeMs_, socket_->peerAddress(), server_.port, server_.host);
    }
    Q_EMIT Connected();
  });
  connect(socket_.get(), &QSslSocket::readyRead, this, [this] {
    if (!hasHeard_ && BeginsTls(*socket_)) {
      Q_EMIT Failed(PopError::Tls, SpeaksTls(server_), {});
    } else {
      Q_EMIT Ready();
    }
  });
  connect(socket_.get(), &QSslSocket::disconnected, this, [this] {
    isLost_ = true;
    Q_EMIT Ready();
  });
  connect(socket_.get(), &QSslSocket::errorOccurred, this, &ServerConnection::SocketFailed);
  connect(socket_.get(), &QSslSocket::sslErrors, this, &ServerConnection::VerificationFailed);
  connect(socket_.get(), &QSslSocket::encrypted, this, &ServerConnection::Encrypted);
  const auto written = [this](qint64 bytes) {
    Q_EMIT Written(bytes);
    if (socket_ != nullptr && IsDrained()) Q_EMIT Ready();
  };
  connect(socket_.get(), &QSslSocket::bytesWritten, this, written);
  connect(socket_.get(), &QSslSocket::encryptedBytesWritten, this, written);
}

// The socket may be the sender of what is being handled, so it is deleted later.
void ServerConnection::DropSocket() {
  if (socket_ == nullptr) return;
  socket_->disconnect(this);
  socket_->abort();
  socket_.release()->deleteLater();
}

void ServerConnection::Close() {
  lookup_ = -1;
  addresses_.clear();
  probe_.Stop();
  if (socket_ == nullptr) return;
  socket_->disconnect(this);
  socket_->close();
  socket_.release()->deleteLater();  // one of its signals may be on the stack
}

void ServerConnection::StartTls() {
  socket_->startClientEncryption();
}

void ServerConnection::Write(const QByteArray& bytes) {
  socket_->write(bytes);
}

QByteArray ServerConnection::Read(qint64 most) {
  hasHeard_ = true;
  probe_.Stop();
  return socket_->read(most);
}

bool ServerConnection::HasBytes() const {
  return socket_ != nullptr && socket_->bytesAvailable() > 0;
}

bool ServerConnection::IsDrained() const {
  return socket_->bytesToWrite() == 0 && socket_->encryptedBytesToWrite() == 0;
}

bool ServerConnection::IsHandshaking() const {
  return socket_->mode() == QSslSocket::SslClientMode && !socket_->isEncrypted() && !isLost_;
}

// A certificate that cannot be verified ends the session, unless the user chose to trust it.
void ServerConnection::VerificationFailed(const QList<QSslError>& errors) {
  const QString fingerprint =
      QString::fromLatin1(socket_->peerCertificate().digest(QCryptographicHash::Sha256).toHex());
  if (server_.trustedFingerprints.contains(fingerprint)) {
    socket_->ignoreSslErrors();
    return;
  }
  QStringList reasons;
  for (const QSslError& error : errors) reasons.append(CertificateReason(error.error()));
  reasons.removeDuplicates();
  Q_EMIT Failed(PopError::Tls,
                Ui::tr("サーバー「%1」の証明書を確認できないため、通信を中止しました。（%2）")
                    .arg(server_.host, reasons.join(Ui::tr("、"))),
                fingerprint);
}

void ServerConnection::SocketFailed() {
  const QAbstractSocket::SocketError error = socket_->error();
  if (error == QAbstractSocket::SslHandshakeFailedError) {
    Q_EMIT Failed(PopError::Tls,
                  Ui::tr("サーバー「%1」との暗号化に失敗しました。ポート番号とセキュリティの"
                         "設定を確認してください。（%2）")
                      .arg(server_.host, SocketReason(error)),
                  {});
  } else if (!isConnected_) {
    DropSocket();
    if (!TryNext()) Q_EMIT Failed(PopError::Connect, CannotConnect(server_, error), {});
  } else if (socket_->state() == QAbstractSocket::UnconnectedState) {
    // A connection that was there ends after the last bytes were read.
    isLost_ = true;
    Q_EMIT Ready();
  }
}

}  // namespace vorn
