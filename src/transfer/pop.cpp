#include "transfer/pop.h"

#include <QElapsedTimer>
#include <QSslCertificate>
#include <QSslSocket>

#include "transfer/pop3_session.h"
#include "transfer/smtp_session.h"

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
  connect(&pump_, &QTimer::timeout, this, &Pop::Pump);
}

Pop::~Pop() = default;

void Pop::Start() {
  if (busy_) return;
  busy_ = true;
  QMetaObject::invokeMethod(this, &Pop::Begin, Qt::QueuedConnection);
}

void Pop::Begin() {
  deleted_ = 0;
  disconnected_ = false;
  events_->SessionStarted();
  refusedCertificate_.clear();
  socket_ = std::make_unique<QSslSocket>();
  socket_->setReadBufferSize(kReadBufferBytes);
  socket_->setPeerVerifyName(Server);
  session_ = MakeSession();
  connect(socket_.get(), &QSslSocket::connected, this, [this] { timeout_.start(ReplyTimeoutMs); });
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
  timeout_.start(ConnectTimeoutMs);
  if (Encryption == Security::Tls) {
    socket_->connectToHostEncrypted(Server, static_cast<quint16>(ServerPort));
  } else {
    socket_->connectToHost(Server, static_cast<quint16>(ServerPort));
  }
}

std::unique_ptr<MailSession> Pop::MakeSession() {
  const auto send = [this](const QByteArray& bytes) { socket_->write(bytes); };
  const auto startTls = [this] { StartTls(); };
  if (Mode == kPopReceive || Mode == kPopReceiveApop) {
    return std::make_unique<Pop3Session>(
        Pop3Login{Server, User, Password, Mode == kPopReceiveApop, Encryption, LoginOnly}, *events_,
        send, startTls);
  }
  const QString lineBreak = QStringLiteral("\r\n");
  return std::make_unique<SmtpSession>(
      SmtpJob{Encryption, Authenticate, User, Password, MailFrom.section(lineBreak, 0, 0),
              MailTo.split(lineBreak, Qt::SkipEmptyParts), message_, LoginOnly},
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
  if (TrustedCertificates.contains(fingerprint)) {
    socket_->ignoreSslErrors();
    return;
  }
  refusedCertificate_ = fingerprint;
  QStringList reasons;
  for (const QSslError& error : errors) reasons.append(error.errorString());
  reasons.removeDuplicates();
  Fail(PopError::Tls,
       QStringLiteral("サーバー「%1」の証明書を確認できないため、通信を中止しました。（%2）")
           .arg(Server, reasons.join(QStringLiteral("、"))));
}

void Pop::SocketFailed() {
  if (socket_ != nullptr && socket_->error() == QAbstractSocket::SslHandshakeFailedError) {
    Fail(PopError::Tls,
         QStringLiteral("サーバー「%1」との暗号化に失敗しました。ポート番号とセキュリティの"
                        "設定を確認してください。（%2）")
             .arg(Server, socket_->errorString()));
    return;
  }
  // A connection that was there ends through `disconnected`, after the last bytes were read.
  if (socket_ == nullptr || socket_->state() == QAbstractSocket::ConnectedState ||
      socket_->state() == QAbstractSocket::ClosingState ||
      socket_->error() == QAbstractSocket::RemoteHostClosedError) {
    return;
  }
  Fail(PopError::Connect,
       QStringLiteral("サーバー「%1」（ポート%2）に接続できません。サーバー名、ポート番号、"
                      "ネットワークの接続を確認してください。（%3）")
           .arg(Server)
           .arg(ServerPort)
           .arg(socket_->errorString()));
}

void Pop::TimedOut() {
  const bool connecting = socket_ != nullptr && socket_->state() != QAbstractSocket::ConnectedState;
  Fail(PopError::TimeOut,
       connecting
           ? QStringLiteral("サーバー「%1」に接続できません（時間切れ）。サーバー名とネットワークの"
                            "接続を確認してください。")
                 .arg(Server)
           : QStringLiteral("サーバー「%1」の応答がありません（時間切れ）。しばらくしてからもう一度"
                            "受信してください。")
                 .arg(Server));
}

void Pop::Pump() {
  if (session_ == nullptr) return;
  // During a handshake the bytes are the socket's own.
  if (socket_->mode() == QSslSocket::SslClientMode && !socket_->isEncrypted() && !disconnected_) {
    return;
  }
  QElapsedTimer turn;
  turn.start();
  bool moreWork = false;
  do {
    if (socket_->bytesAvailable() > 0) {
      timeout_.start(ReplyTimeoutMs);
      session_->Receive(socket_->read(kSliceBytes));
    }
    moreWork = !session_->Finished() && session_->Work();
  } while (!session_->Finished() && turn.elapsed() < kTurnMs &&
           (moreWork || socket_->bytesAvailable() > 0));

  const bool moreBytes = socket_->bytesAvailable() > 0;
  if (!session_->Finished() && disconnected_ && !moreBytes && !moreWork) session_->ConnectionLost();
  if (session_->Finished()) {
    deleted_ = session_->Deleted();
    End();
  } else if (moreWork || moreBytes) {
    pump_.start(0);
  }
}

void Pop::Cancel() {
  if (busy_) Fail(PopError::Cancelled, QStringLiteral("中止しました。"));
}

void Pop::Fail(PopError code, const QString& text) {
  if (!busy_) return;
  events_->Error(static_cast<int>(code), text);
  End();
}

void Pop::End() {
  timeout_.stop();
  pump_.stop();
  session_.reset();
  if (socket_ != nullptr) {
    socket_->disconnect(this);
    socket_->close();
    socket_.release()->deleteLater();  // one of its signals may be on the stack
  }
  message_.clear();
  busy_ = false;
  events_->SessionEnded();
}

}  // namespace vorn
