#pragma once

#include <QAbstractSocket>
#include <QByteArray>
#include <QHostAddress>
#include <QHostInfo>
#include <QList>
#include <QObject>
#include <QSslError>
#include <QString>
#include <memory>

#include "objects/endpoint.h"
#include "transfer/control/tls_probe.h"
#include "transfer/protocol/pop_events.h"

class QSslSocket;

namespace vorn {

/// The connection of one session to its server: it tries the server's addresses one after the
/// other, encrypts what goes over it and refuses certificates that nobody vouches for.
class ServerConnection : public QObject {
  Q_OBJECT

 public:
  /// `addresses` as in `PopProperties`, `tlsProbeMs` as in `ServerPatience`.
  ServerConnection(Endpoint server, QList<QHostAddress> addresses, int tlsProbeMs);
  ~ServerConnection() override;

  void Open();
  /// Gives an address up that does not answer, and tries the next one; false when there is none.
  bool TryNext();
  void StartTls();
  void Write(const QByteArray& bytes);
  QByteArray Read(qint64 most);
  /// Ends it; what was written still goes out.
  void Close();

  bool IsConnected() const { return isConnected_; }
  /// Whether the server has said something.
  bool HasHeard() const { return hasHeard_; }
  /// Whether it has ended; what came before may still be read.
  bool IsLost() const { return isLost_; }
  bool HasBytes() const;
  /// Whether all that was written has left.
  bool IsDrained() const;
  /// Whether the bytes that come are those of an encryption that is being agreed.
  bool IsHandshaking() const;

 Q_SIGNALS:
  /// Another address is being tried.
  void Trying();
  void Connected();
  void Encrypted();
  /// There is something to read, all has been written, or the connection has ended.
  void Ready();
  void Written(qint64 bytes);
  /// It cannot be used, for a reason in words. `refused` is the fingerprint of the certificate that
  /// was the reason, if one was.
  void Failed(PopError code, const QString& text, const QString& refused);

 private:
  void TakeAddresses(const QHostInfo& info);
  void MakeSocket();
  void DropSocket();
  void VerificationFailed(const QList<QSslError>& errors);
  void SocketFailed();

  Endpoint server_;
  int tlsProbeMs_;
  std::unique_ptr<QSslSocket> socket_;
  TlsProbe probe_;
  QList<QHostAddress> addresses_;  // not tried yet
  int lookup_ = -1;
  bool isConnected_ = false;
  bool hasHeard_ = false;
  bool isLost_ = false;
};

}  // namespace vorn
