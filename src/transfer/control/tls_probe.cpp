#include "transfer/control/tls_probe.h"

#include <QSslSocket>

namespace vorn {

TlsProbe::TlsProbe() {
  wait_.setSingleShot(true);
  connect(&wait_, &QTimer::timeout, this, &TlsProbe::Try);
}

// A socket that is closed by its destruction would still tell of it.
TlsProbe::~TlsProbe() {
  Stop();
}

void TlsProbe::Start(int afterMs, const QHostAddress& address, int port, const QString& server) {
  address_ = address;
  port_ = port;
  server_ = server;
  wait_.start(afterMs);
}

void TlsProbe::Try() {
  socket_ = std::make_unique<QSslSocket>();
  socket_->setPeerVerifyMode(QSslSocket::VerifyNone);
  connect(socket_.get(), &QSslSocket::encrypted, this, &TlsProbe::Answered);
  socket_->connectToHostEncrypted(address_.toString(), static_cast<quint16>(port_), server_);
}

// The socket may be the sender of what is being handled, so it is deleted later.
void TlsProbe::Stop() {
  wait_.stop();
  if (socket_ == nullptr) return;
  socket_->disconnect(this);
  socket_->abort();
  socket_.release()->deleteLater();
}

}  // namespace vorn
