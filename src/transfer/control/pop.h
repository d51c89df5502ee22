#pragma once

#include <QAbstractSocket>
#include <QByteArray>
#include <QElapsedTimer>
#include <QHostAddress>
#include <QHostInfo>
#include <QList>
#include <QObject>
#include <QSslError>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <memory>

#include "transfer/protocol/mail_session.h"
#include "transfer/protocol/pop_events.h"

class QSslSocket;

namespace vorn {

class MailSession;

/// What a session does, by the numbers of the property `Mode`.
enum PopMode { kPopReceive = 0, kPopSend = 1, kPopSendOther = 2, kPopReceiveApop = 3 };

/// The transfer control: runs one session at a time with a mail server, in the background of the
/// user-interface thread, and speaks through `PopEvents`. Set the properties, call `Start`, and
/// wait for `SessionEnded`. Every start ends in it, also one that was cancelled before it began.
class Pop : public QObject {
  Q_OBJECT

 public:
  explicit Pop(QObject* parent = nullptr);
  ~Pop() override;

  /// Whoever answers the events. Must be set before the first session and outlive the control.
  void SetEvents(PopEvents* events) { events_ = events; }

  QString Server;
  int ServerPort = 0;
  QString User;
  QString Password;
  PopMode Mode = kPopReceive;
  QString MailFrom;
  QString MailTo;
  /// How the connection is encrypted.
  Security Encryption = Security::None;
  /// Whether a send session logs in, as `User` with `Password`.
  bool Authenticate = false;
  /// Ends the session after the login.
  bool LoginOnly = false;
  /// Free text kept for the owner: the plan job that the session serves.
  QString Tag;
  /// How long each of the server's addresses may take to answer, and an encryption to be agreed.
  int ConnectTimeoutMs = 30000;
  /// How long the server may be silent.
  int ReplyTimeoutMs = 60000;
  /// How long it may be silent after a whole message was handed over (RFC 5321 section 4.5.3.2.6).
  int DecisionTimeoutMs = 600000;
  /// The period in which `kLeastBytes` must move or a whole reply must come, however often the
  /// server gives a sign of life.
  int RatePeriodMs = 60000;
  /// How long a connection in clear waits for its greeting before it is tried whether the port
  /// speaks TLS; both sides would wait for ever.
  int TlsProbeMs = 3000;
  static constexpr qint64 kLeastBytes = 256;

  /// Certificates, by their SHA-256 in hexadecimal, that the user trusts for this server although
  /// they cannot be verified.
  QStringList TrustedFingerprints;

  /// The server's addresses in the order in which they are tried; when empty, which is usual, the
  /// name service is asked for them.
  QList<QHostAddress> Addresses;

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
  void TakeAddresses(const QHostInfo& info);
  void TryNextAddress();
  void AddressFailed();
  void MakeSocket();
  void DropSocket();
  void DropProbe();
  void Connected();
  void WaitForServer();
  void TakeBytes();
  QString SpeaksTls() const;
  bool IsTlsInClear() const;
  void BeginPeriod();
  void PeriodOver();
  void ProbeTls();
  QString CannotConnect(QAbstractSocket::SocketError error) const;
  std::unique_ptr<MailSession> MakeSession();
  void StartTls();
  void VerificationFailed(const QList<QSslError>& errors);
  void SocketFailed();
  void TimedOut();
  void Pump();
  void Fail(PopError code, const QString& text);
  void End();

  PopEvents* events_ = nullptr;
  bool busy_ = false;
  bool begun_ = false;  // `SessionStarted` was told
  int start_ = 0;       // tells a start from one that was cancelled before it began
  QByteArray message_;
  int deleted_ = 0;
  std::unique_ptr<QSslSocket> socket_;
  std::unique_ptr<MailSession> session_;
  QList<QHostAddress> addresses_;  // not tried yet
  int lookup_ = -1;
  bool connected_ = false;
  bool heard_ = false;  // the server has said something
  std::unique_ptr<QSslSocket> probe_;
  QString refusedCertificate_;
  QTimer timeout_;
  QTimer period_;
  QElapsedTimer periodClock_;
  qint64 periodBytes_ = 0;
  qsizetype periodReplies_ = 0;
  QTimer greeting_;
  QTimer pump_;  // fires when there is work that waits for no server
  bool disconnected_ = false;
};

}  // namespace vorn
