#pragma once

#include <QAbstractSocket>
#include <QSslError>
#include <QString>

namespace vorn {

/// Why a connection failed, as a phrase for the user.
QString SocketReason(QAbstractSocket::SocketError error);

/// What is wrong with a server's certificate, as a phrase for the user.
QString CertificateReason(QSslError::SslError error);

}  // namespace vorn
