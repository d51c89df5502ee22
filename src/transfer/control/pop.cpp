#include "transfer/control/pop.h"

#include <QElapsedTimer>
#include <utility>

#include "storage/ui.h"
#include "transfer/pop3/pop3_session.h"
#include "transfer/smtp/smtp_session.h"

namespace vorn {
namespace {

// Bytes handed to the session at a time, and how long one turn may take: the windows stay alive.
constexpr qint64 kSliceBytes = 64 * 1024;
constexpr qint64 kTurnMs = 15;

}  // namespace

Pop::Pop(QObject* parent) : QObject(parent), clock_(Patience) {
  pump_.setSingleShot(true);
  connect(&pump_, &QTimer::timeout, this, &Pop::Pump);
  connect(&clock_, &SessionClock::Silent, this, &Pop::TimedOut);
  connect(&clock_, &SessionClock::PeriodOver, this, &Pop::PeriodOver);
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
  events_->SessionStarted();
  session_ = MakeSession();
  connection_ = MakeConnection();
  clock_.WaitForConnection();
  connection_->Open();
}

std::unique_ptr<ServerConnection> Pop::MakeConnection() {
  auto connection = std::make_unique<ServerConnection>(Target, Addresses, Patience.TlsProbeMs);
  const auto on = [this, from = connection.get()](auto signal, auto handler) {
    connect(from, signal, this, handler);
  };
  on(&ServerConnection::Trying, [this] { clock_.WaitForConnection(); });
  on(&ServerConnection::Connected, [this] {
    if (Target.security == Security::Tls) {
      clock_.WaitForConnection();
    } else {
      clock_.WaitForReply(false);
    }
    BeginPeriod();
  });
  on(&ServerConnection::Encrypted, [this] {
    clock_.WaitForReply(false);
    session_->TlsEstablished();
  });
  on(&ServerConnection::Ready, [this] { pump_.start(0); });
  on(&ServerConnection::Written, [this](qint64 bytes) {
    clock_.CountBytes(bytes);
    WaitForServer();
  });
  on(&ServerConnection::Failed, [this](PopError code, const QString& text, const QString& refused) {
    refusedCertificate_ = refused;
    Fail(code, text);
  });
  return connection;
}

std::unique_ptr<MailSession> Pop::MakeSession() {
  const auto send = [this](const QByteArray& bytes) { connection_->Write(bytes); };
  const auto startTls = [this] { StartTls(); };
  if (Mode == kPopReceive || Mode == kPopReceiveApop) {
    return std::make_unique<Pop3Session>(Pop3Login{Target, Mode == kPopReceiveApop, LoginOnly},
                                         *events_, send, startTls);
  }
  const QString lineBreak = QStringLiteral("\r\n");
  return std::make_unique<SmtpSession>(
      SmtpJob{Target, Authenticate, MailFrom.section(lineBreak, 0, 0),
              MailTo.split(lineBreak, Qt::SkipEmptyParts), message_, LoginOnly},
      *events_, send, startTls);
}

void Pop::StartTls() {
  clock_.WaitForConnection();
  connection_->StartTls();
}

void Pop::WaitForServer() {
  clock_.WaitForReply(session_ != nullptr && session_->AwaitsDecision());
}

void Pop::BeginPeriod() {
  clock_.BeginPeriod(session_->Replies());
}

// While the server makes up its mind silence is its right; that has a limit of its own.
void Pop::PeriodOver() {
  const bool decides = session_->AwaitsDecision() && connection_->IsDrained();
  const bool alive = clock_.IsFastEnough(session_->Replies()) || connection_->HasBytes();
  if (decides || alive || !connection_->HasHeard()) return BeginPeriod();
  Fail(PopError::TimeOut,
       Ui::tr("サーバー「%1」の応答が遅すぎるため、通信を中止しました。しばらくしてからもう一度"
              "実行してください。")
           .arg(Server));
}

void Pop::TimedOut() {
  if (!connection_->IsConnected() && connection_->TryNext()) return;
  QString sentence = Ui::tr(
      "サーバー「%1」の応答がありません（時間切れ）。しばらくしてからもう一度"
      "実行してください。");
  if (!connection_->IsConnected()) {
    sentence = Ui::tr(
        "サーバー「%1」に接続できません（時間切れ）。サーバー名とネットワークの"
        "接続を確認してください。");
  } else if (!connection_->HasHeard()) {
    sentence = Ui::tr(
        "サーバー「%1」の応答がありません（時間切れ）。ポート番号とセキュリティの設定を"
        "確認してください。");
  }
  Fail(PopError::TimeOut, sentence.arg(Server));
}

void Pop::Pump() {
  if (session_ == nullptr || connection_->IsHandshaking()) return;
  QElapsedTimer turn;
  turn.start();
  bool moreWork = false;
  do {
    if (connection_->HasBytes()) TakeBytes();
    moreWork = !session_->Finished() && session_->Work();
    if (!session_->Finished() && !connection_->IsLost() && connection_->IsDrained()) {
      session_->Drained();
    }
  } while (!session_->Finished() && turn.elapsed() < kTurnMs &&
           (moreWork || connection_->HasBytes()));

  const bool moreBytes = connection_->HasBytes();
  if (!session_->Finished() && connection_->IsLost() && !moreBytes && !moreWork)
    session_->ConnectionLost();
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
  const QByteArray bytes = connection_->Read(kSliceBytes);
  clock_.CountBytes(bytes.size());
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
  clock_.Stop();
  pump_.stop();
  if (session_ != nullptr) session_->Abandon();
  session_.reset();
  if (connection_ != nullptr) {
    connection_->disconnect(this);
    connection_->Close();
    connection_.release()->deleteLater();  // one of its signals may be on the stack
  }
  message_.clear();
  busy_ = false;
  events_->SessionEnded();
  Q_EMIT Idle();
}

}  // namespace vorn
