#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QTimer>
#include <memory>

#include "transfer/control/pop_properties.h"
#include "transfer/control/server_connection.h"
#include "transfer/control/session_clock.h"
#include "transfer/protocol/mail_session.h"
#include "transfer/protocol/pop_events.h"

namespace vorn {

/// The transfer control: runs one session at a time with a mail server, in the background of the
/// user-interface thread, and speaks through `PopEvents`. Set the properties, call `Start`, and
/// wait for `SessionEnded`. Every start ends in it, also one that was cancelled before it began.
class Pop : public QObject, public PopProperties {
  Q_OBJECT

 public:
  explicit Pop(QObject* parent = nullptr);

  /// Whoever answers the events. Must be set before the first session and outlive the control.
  void SetEvents(PopEvents* events) { events_ = events; }

  /// The message that a send session transmits.
  void SetMessage(const QByteArray& data) { message_ = data; }
  /// Begins the session that the properties describe and returns at once.
  void Start();
  bool Busy() const { return busy_; }
  /// Ends the session now. Messages received so far are kept; none is deleted on the server.
  void Cancel();
  /// Messages that the last session deleted on the server.
  int DeletedOnServer() const { return deleted_; }
  /// The fingerprint of the certificate that made the last session fail; empty when none did.
  QString RefusedCertificate() const { return refusedCertificate_; }

 Q_SIGNALS:
  /// A session has ended and another one can begin.
  void Idle();

 private:
  void BeginQueued(int start);
  void Begin();
  std::unique_ptr<ServerConnection> MakeConnection();
  std::unique_ptr<MailSession> MakeSession();
  void StartTls();
  void WaitForServer();
  void BeginPeriod();
  void PeriodOver();
  void TimedOut();
  void Pump();
  void TakeBytes();
  void Fail(PopError code, const QString& text);
  void End();

  PopEvents* events_ = nullptr;
  bool busy_ = false;
  bool begun_ = false;  // `SessionStarted` was told
  int start_ = 0;       // tells a start from one that was cancelled before it began
  QByteArray message_;
  int deleted_ = 0;
  std::unique_ptr<ServerConnection> connection_;
  std::unique_ptr<MailSession> session_;
  QString refusedCertificate_;
  SessionClock clock_;
  QTimer pump_;  // fires when there is work that waits for no server
};

}  // namespace vorn
