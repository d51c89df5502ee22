#include "transfer/control/connection_check.h"
#include "storage/ui.h"

namespace vorn {

// Hears of failures and of the end; there is nothing else to hear.
class ConnectionCheck::Events : public PopEvents, public RetrievalEvents, public HandoverEvents {
 public:
  explicit Events(ConnectionCheck& check) : check_(check) {}

  RetrievalEvents& Retrieval() override { return *this; }
  HandoverEvents& Handover() override { return *this; }
  void Error(PopError, const QString& text) override { error_ = text; }
  void SessionStarted() override { error_.clear(); }
  void SessionEnded() override {
    Q_EMIT check_.Finished(error_.isEmpty(),
                           error_.isEmpty() ? Ui::tr("接続できました。") : error_);
  }

 private:
  ConnectionCheck& check_;
  QString error_;
};

ConnectionCheck::ConnectionCheck(QObject* parent)
    : QObject(parent), events_(std::make_unique<Events>(*this)), pop_(std::make_unique<Pop>()) {
  pop_->SetEvents(events_.get());
  pop_->Patience.ConnectMs = 10000;
  pop_->Patience.ReplyMs = 10000;
}

ConnectionCheck::~ConnectionCheck() {
  blockSignals(true);
  pop_->Cancel();
}

bool ConnectionCheck::IsRunning() const {
  return pop_->Busy();
}

QString ConnectionCheck::RefusedCertificate() const {
  return pop_->RefusedCertificate();
}

void ConnectionCheck::Start(const ConnectionTrial& trial) {
  pop_->Cancel();
  pop_->Target = trial.server;
  pop_->Mode = trial.mode;
  pop_->Authenticate = trial.authenticate;
  pop_->LoginOnly = true;
  pop_->Start();
}

}  // namespace vorn
