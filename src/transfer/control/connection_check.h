#pragma once

#include <QObject>
#include <QString>
#include <memory>

#include "transfer/control/pop.h"
#include "transfer/protocol/mail_session.h"

namespace vorn {

/// A server and a login to try.
struct ConnectionTrial {
  Endpoint server;
  PopMode mode = kPopReceive;
  bool authenticate = true;
};

/// Tries a connection: connects, encrypts, logs in and leaves. Nothing is received or sent.
class ConnectionCheck : public QObject {
  Q_OBJECT

 public:
  explicit ConnectionCheck(QObject* parent = nullptr);
  ~ConnectionCheck() override;

  /// Begins; a check that is running ends first. `Finished` tells the outcome.
  void Start(const ConnectionTrial& trial);
  bool IsRunning() const;
  /// The fingerprint of a certificate that could not be verified, after a check that failed by it.
  QString RefusedCertificate() const;

 Q_SIGNALS:
  /// `text` is a sentence for the user.
  void Finished(bool ok, const QString& text);

 private:
  class Events;

  std::unique_ptr<Events> events_;
  std::unique_ptr<Pop> pop_;
};

}  // namespace vorn
