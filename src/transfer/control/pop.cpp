#include "transfer/control/pop.h"

#include <QSslCertificate>
#include <QSslSocket>
#include <utility>

#include "storage/ui.h"
#include "transfer/control/network_words.h"
#include "transfer/pop3/pop3_session.h"
#include "transfer/smtp/smtp_session.h"

namespace vorn {
namespace {

// Bytes handed to the session at a time, and how long one turn may take: the windows stay alive.
constexpr qint64 kSliceBytes = 64 * 1024;
constexpr qint64 kTurnMs = 15;
// What the socket may hold unread; beyond it the server has to wait.
constexpr qint64 kReadBufferBytes = 1024 * 1024;

}  // namespace

Pop::Pop(QObject* parent) : QObject(parent) {
  timeout_.setSingleShot(true);
  pump_.setSingleShot(true);
  connect(&timeout_, &QTimer::timeout, this, &Pop::TimedOut);
  greeting_.setSingleShot(true);
  connect(&pump_, &QTimer::timeout, this, &Pop::Pump);
  connect(&period_, &QTimer::timeout, this, &Pop::PeriodOver);
  connect(&greeting_, &QTimer::timeout, this, &Pop::ProbeTls);
}

// A socket that is closed by its destruction would still tell of it.
Pop::~Pop() {
  DropProbe();
  DropSocket();
}

void Pop::Start() {
  if (busy_) return;
  busy_ = true;
  begun_ = false;
  deleted_ = 0;
  refusedCertificate_.clear();
  QMetaObject::invokeMethod(
      this, [this, start = ++start_] { BeginQueued(start); }, Qt::QueuedConnection);
}

void Pop::BeginQueued(int start) {
  if (busy_ && !begun_ && start == start_) Begin();
}

void Pop::Begin() {
  begun_ = true;
  heard_ = false;
  connected_ = false;
  disconnected_ = false;
  events_->SessionStarted();
  session_ = MakeSession();
  timeout_.start(ConnectTimeoutMs);
  addresses_ = Addresses;
  if (const QHostAddress literal(Server); addresses_.isEmpty() && !literal.isNull()) {
    addresses_ = {literal};
  }
  if (!addresses_.isEmpty()) return TryNextAddress();
  lookup_ = QHostInfo::lookupHost(Server, this, &Pop::TakeAddresses);
}

void Pop::TakeAddresses(const QHostInfo& info) {
  if (!busy_ || info.lookupId() != lookup_) return;  // of a session that was cancelled
  addresses_ = info.addresses();
  if (!addresses_.isEmpty()) return TryNextAddress();
  Fail(PopError::Connect, CannotConnect(QAbstractSocket::HostNotFoundError));
}

// A server may have several addresses, of which some do not answer from here.
void Pop::TryNextAddress() {
  const QHostAddress address = addresses_.takeFirst();
  MakeSocket();
  timeout_.start(ConnectTimeoutMs);
  if (Encryption == Security::Tls) {
    socket_->connectToHostEncrypted(address.toString(), static_cast<quint16>(ServerPort), Server);
  } else {
    socket_->connectToHost(address, static_cast<quint16>(ServerPort));
  }
}

void Pop::MakeSocket() {
  socket_ = std::make_unique<QSslSocket>();
  socket_->setReadBufferSize(kReadBufferBytes);
  socket_->setPeerVerifyName(Server);
  connect(socket_.get(), &QSslSocket::connected, this, &Pop::Connected);
  connect(socket_.get(), &QSslSocket::readyRead, this, [this] { pump_.start(0); });
  connect(socket_.get(), &QSslSocket::disconnected, this, [this] {
    disconnected_ = true;
    pump_.start(0);
  });
  connect(socket_.get(), &QSslSocket::errorOccurred, this, &Pop::SocketFailed);
  connect(socket_.get(), &QSslSocket::sslErrors, this, &Pop::VerificationFailed);
  connect(socket_.get(), &QSslSocket::encrypted, this, [this] {
    timeout_.start(ReplyTimeoutMs);
    session_->TlsEstablished();
  });
  const auto written = [this](qint64 bytes) {
    periodBytes_ += bytes;
    WaitForServer();
    if (socket_->bytesToWrite() == 0 && socket_->encryptedBytesToWrite() == 0) pump_.start(0);
  };
  connect(socket_.get(), &QSslSocket::bytesWritten, this, written);
  connect(socket_.get(), &QSslSocket::encryptedBytesWritten, this, written);
}

void Pop::DropProbe() {
  if (probe_ == nullptr) return;
  probe_->disconnect(this);
  probe_->abort();
  probe_.release()->deleteLater();
}

void Pop::Connected() {
  connected_ = true;
  // Small commands go out at once: they wait for no acknowledgement.
  socket_->setSocketOption(QAbstractSocket::LowDelayOption, 1);
  timeout_.start(Encryption == Security::Tls ? ConnectTimeoutMs : ReplyTimeoutMs);
  if (Encryption != Security::Tls) greeting_.start(TlsProbeMs);
  BeginPeriod();
}

// The socket may be the sender of what is being handled, so it is deleted later.
void Pop::DropSocket() {
  if (socket_ == nullptr) return;
  socket_->disconnect(this);
  socket_->abort();
  socket_.release()->deleteLater();
}

void Pop::WaitForServer() {
  const bool decides = session_ != nullptr && session_->AwaitsDecision();
  timeout_.start(decides ? DecisionTimeoutMs : ReplyTimeoutMs);
}

void Pop::BeginPeriod() {
  periodBytes_ = 0;
  periodReplies_ = session_->Replies();
  periodClock_.start();
  period_.start(RatePeriodMs);
}

// While the server makes up its mind silence is its right; that has a limit of its own.
void Pop::PeriodOver() {
  const bool decides = session_->AwaitsDecision() && socket_->bytesToWrite() == 0 &&
                       socket_->encryptedBytesToWrite() == 0;
  const bool alive = periodBytes_ >= kLeastBytes || session_->Replies() != periodReplies_ ||
                     socket_->bytesAvailable() > 0;
  // A timer that comes late tells of this program's slowness and not of the server's.
  const bool late = periodClock_.elapsed() > RatePeriodMs * qint64{3} / 2;
  if (decides || alive || late || !heard_) return BeginPeriod();
  Fail(PopError::TimeOut,
       Ui::tr("サーバー「%1」の応答が遅すぎるため、通信を中止しました。しばらくしてからもう一度"
              "実行してください。")
           .arg(Server));
}

// Many servers let a client wait for the greeting, so silence alone proves nothing. A second
// connection tells whether the port speaks TLS; what it says is not looked at.
void Pop::ProbeTls() {
  if (heard_ || socket_ == nullptr) return;
  probe_ = std::make_unique<QSslSocket>();
  probe_->setPeerVerifyMode(QSslSocket::VerifyNone);
  connect(probe_.get(), &QSslSocket::encrypted, this, [this] {
    if (!heard_) Fail(PopError::Tls, SpeaksTls());
  });
  probe_->connectToHostEncrypted(socket_->peerAddress().toString(),
                                 static_cast<quint16>(ServerPort), Server);
}

QString Pop::SpeaksTls() const {
  return Ui::tr(
             "サーバー「%1」のポート%2は最初から暗号化する接続（TLS）のためのポートです。"
             "アカウントのセキュリティの設定かポート番号を確認してください。")
      .arg(Server)
      .arg(ServerPort);
}

// The first byte of an alert or a handshake in TLS (RFC 8446 section 5.1); no greeting begins so.
bool Pop::IsTlsInClear() const {
  if (heard_ || socket_->mode() != QSslSocket::UnencryptedMode) return false;
  const QByteArray start = socket_->peek(1);
  return start == "\x15" || start == "\x16";
}

QString Pop::CannotConnect(QAbstractSocket::SocketError error) const {
  return Ui::tr(
             "サーバー「%1」（ポート%2）に接続できません。サーバー名、ポート番号、"
             "ネットワークの接続を確認してください。（%3）")
      .arg(Server)
      .arg(ServerPort)
      .arg(SocketReason(error));
}

std::unique_ptr<MailSession> Pop::MakeSession() {
  const auto send = [this](const QByteArray& bytes) { socket_->write(bytes); };
  const auto startTls = [this] { StartTls(); };
  if (Mode == kPopReceive || Mode == kPopReceiveApop) {
    return std::make_unique<Pop3Session>(
        Pop3Login{Server, {User, Password}, Mode == kPopReceiveApop, Encryption, LoginOnly},
        *events_, send, startTls);
  }
  const QString lineBreak = QStringLiteral("\r\n");
  return std::make_unique<SmtpSession>(SmtpJob{Encryption,
                                               Authenticate,
                                               {User, Password},
                                               MailFrom.section(lineBreak, 0, 0),
                                               MailTo.split(lineBreak, Qt::SkipEmptyParts),
                                               message_,
                                               LoginOnly},
                                       *events_, send, startTls);
}

void Pop::StartTls() {
  timeout_.start(ConnectTimeoutMs);
  socket_->startClientEncryption();
}

// A certificate that cannot be verified ends the session, unless the user chose to trust it.
void Pop::VerificationFailed(const QList<QSslError>& errors) {
  const QString fingerprint =
      QString::fromLatin1(socket_->peerCertificate().digest(QCryptographicHash::Sha256).toHex());
  if (TrustedFingerprints.contains(fingerprint)) {
    socket_->ignoreSslErrors();
    return;
  }
  refusedCertificate_ = fingerprint;
  QStringList reasons;
  for (const QSslError& error : errors) reasons.append(CertificateReason(error.error()));
  reasons.removeDuplicates();
  Fail(PopError::Tls, Ui::tr("サーバー「%1」の証明書を確認できないため、通信を中止しました。（%2）")
                          .arg(Server, reasons.join(QStringLiteral("、"))));
}

void Pop::SocketFailed() {
  if (socket_ == nullptr) return;
  if (socket_->error() == QAbstractSocket::SslHandshakeFailedError) {
    Fail(PopError::Tls, Ui::tr("サーバー「%1」との暗号化に失敗しました。ポート番号とセキュリティの"
                               "設定を確認してください。（%2）")
                            .arg(Server, SocketReason(socket_->error())));
    return;
  }
  if (!connected_) return AddressFailed();
  // A connection that was there ends after the last bytes were read.
  if (socket_->state() == QAbstractSocket::UnconnectedState) {
    disconnected_ = true;
    pump_.start(0);
  }
}

void Pop::AddressFailed() {
  const QAbstractSocket::SocketError error =
      socket_ != nullptr ? socket_->error() : QAbstractSocket::SocketTimeoutError;
  DropSocket();
  if (!addresses_.isEmpty()) return TryNextAddress();
  Fail(PopError::Connect, CannotConnect(error));
}

void Pop::TimedOut() {
  if (!connected_ && !addresses_.isEmpty()) return AddressFailed();
  QString sentence = Ui::tr(
      "サーバー「%1」の応答がありません（時間切れ）。しばらくしてからもう一度"
      "実行してください。");
  if (!connected_) {
    sentence = Ui::tr(
        "サーバー「%1」に接続できません（時間切れ）。サーバー名とネットワークの"
        "接続を確認してください。");
  } else if (!heard_) {
    sentence = Ui::tr(
        "サーバー「%1」の応答がありません（時間切れ）。ポート番号とセキュリティの設定を"
        "確認してください。");
  }
  Fail(PopError::TimeOut, sentence.arg(Server));
}

void Pop::Pump() {
  if (session_ == nullptr || socket_ == nullptr) return;
  // During a handshake the bytes are the socket's own.
  if (socket_->mode() == QSslSocket::SslClientMode && !socket_->isEncrypted() && !disconnected_) {
    return;
  }
  QElapsedTimer turn;
  turn.start();
  bool moreWork = false;
  do {
    if (IsTlsInClear()) return Fail(PopError::Tls, SpeaksTls());
    if (socket_->bytesAvailable() > 0) TakeBytes();
    moreWork = !session_->Finished() && session_->Work();
    if (!session_->Finished() && !disconnected_ && socket_->bytesToWrite() == 0 &&
        socket_->encryptedBytesToWrite() == 0) {
      session_->Drained();
    }
  } while (!session_->Finished() && turn.elapsed() < kTurnMs &&
           (moreWork || socket_->bytesAvailable() > 0));

  const bool moreBytes = socket_->bytesAvailable() > 0;
  if (!session_->Finished() && disconnected_ && !moreBytes && !moreWork) session_->ConnectionLost();
  if (session_->Finished()) {
    deleted_ = session_->Deleted();
    End();
  } else if (moreWork || moreBytes) {
    // The server is not what is waited for.
    if (moreWork) {
      WaitForServer();
      BeginPeriod();
    }
    pump_.start(0);
  }
}

// The time for a decision is counted from the end of the message, whatever comes meanwhile.
void Pop::TakeBytes() {
  const QByteArray bytes = socket_->read(kSliceBytes);
  heard_ = true;
  periodBytes_ += bytes.size();
  const bool decided = session_->AwaitsDecision();
  session_->Receive(bytes);
  if (!decided || !session_->AwaitsDecision()) WaitForServer();
}

void Pop::Cancel() {
  if (busy_) Fail(PopError::Cancelled, Ui::tr("中止しました。"));
}

void Pop::Fail(PopError code, const QString& text) {
  if (!busy_) return;
  if (!std::exchange(begun_, true)) events_->SessionStarted();
  if (session_ != nullptr) session_->Abandon();
  events_->Error(code, text);
  End();
}

void Pop::End() {
  for (QTimer* timer : {&timeout_, &pump_, &period_, &greeting_}) timer->stop();
  DropProbe();
  if (session_ != nullptr) session_->Abandon();
  session_.reset();
  addresses_.clear();
  lookup_ = -1;
  if (socket_ != nullptr) {
    socket_->disconnect(this);
    socket_->close();
    socket_.release()->deleteLater();  // one of its signals may be on the stack
  }
  message_.clear();
  busy_ = false;
  events_->SessionEnded();
  Q_EMIT Idle();
}

}  // namespace vorn
