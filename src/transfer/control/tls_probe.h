#pragma once

#include <QHostAddress>
#include <QObject>
#include <QString>
#include <QTimer>
#include <memory>

class QSslSocket;

namespace vorn {

/// Finds out whether a port that gives no greeting in clear speaks TLS. Many servers let a client
/// wait for the greeting, so silence alone proves nothing; a second connection tells, and what it
/// says is not looked at.
class TlsProbe : public QObject {
  Q_OBJECT

 public:
  TlsProbe();
  ~TlsProbe() override;

  /// Tries it after so many milliseconds.
  void Start(int afterMs, const QHostAddress& address, int port, const QString& server);
  void Stop();

 Q_SIGNALS:
  void Answered();

 private:
  void Try();

  QTimer wait_;
  QHostAddress address_;
  int port_ = 0;
  QString server_;
  std::unique_ptr<QSslSocket> socket_;
};

}  // namespace vorn
