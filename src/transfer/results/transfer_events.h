#pragma once

#include "storage/context.h"
#include "transfer/protocol/pop_events.h"
#include "transfer/results/received_mail.h"
#include "transfer/results/sent_mail.h"
#include "transfer/results/transfer_log.h"

namespace vorn {

class CheckPlan;
class Pop;

/// The first panel of the main window's status bar.
class StatusPanel {
 public:
  virtual ~StatusPanel() = default;
  /// `icon` is an icon key, empty for none.
  virtual void ShowStatus(const QString& text, const QString& icon) = 0;
  /// What is going on, in words; empty at the end of it.
  virtual void ShowWork(const QString& /*words*/) {}
};

/// The program's side of a session: what is received and sent is stored, the job's log gathered and
/// progress shown.
class TransferEvents : public PopEvents {
 public:
  TransferEvents(Context& context, CheckPlan& plan, const Pop& pop, StatusPanel& panel);

  RetrievalEvents& Retrieval() override { return received_; }
  HandoverEvents& Handover() override { return sent_; }
  void Error(PopError code, const QString& text) override;
  void SessionStarted() override;
  void SessionEnded() override;
  void Progress(qint64 total, qint64 done, const FetchedMessages& fetched) override;
  void Log(const QString& text) override;

  /// Since the program began.
  const ReceiveCounts& Counts() const { return log_.Counts(); }
  /// Messages deleted on the servers since the program began.
  int DeletedOnServer() const { return deleted_; }

 private:
  QString AccountName() const;
  QString WorkWords(const FetchedMessages& fetched) const;

  CheckPlan& plan_;
  const Pop& pop_;
  StatusPanel& panel_;
  TransferLog log_;
  ReceivedMail received_;
  SentMail sent_;
  int deleted_ = 0;
};

}  // namespace vorn
