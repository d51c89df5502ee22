#pragma once

#include <QByteArrayList>
#include <QStringList>

#include "transfer/pop_events.h"

namespace vorn::test {

/// Answers a session as a program does that wants everything, and writes down what was told.
class SessionRecorder : public PopEvents {
 public:
  bool MessageArrived(const QString&, const QByteArray& data, bool& deleteOnServer) override {
    arrived.append(data);
    deleteOnServer = true;
    return true;
  }
  bool BeginHandover() override {
    told.append(QStringLiteral("begin"));
    return mayHandOver;
  }
  void MessageSent(const QByteArray&) override { told.append(QStringLiteral("sent")); }
  void HandoverEnded(HandoverOutcome outcome, const QString&) override {
    told.append(outcome == HandoverOutcome::Refused ? QStringLiteral("refused")
                                                    : QStringLiteral("unknown"));
  }
  void RecipientRefused(const QString& address, const QString&) override {
    refused.append(address);
  }
  bool MailboxListed(const QString&, const QStringList&) override { return true; }
  void AlreadyStored(const QString&, bool&, bool&) override {}
  void Error(int code, const QString& text) override {
    codes.append(static_cast<PopError>(code));
    errors.append(text);
  }
  void ReceiveStopTest(const QByteArray& header, bool& stop, bool& deleteOnServer) override {
    stop = header.contains("Subject: stop");
    deleteOnServer = true;
  }
  void SessionStarted() override { ++started; }
  void SessionEnded() override { ++ended; }
  void Progress(int, qint64, qint64) override {}
  void Log(int, const QString& text) override { log.append(text); }
  bool WantsHeaders() override { return wantsHeaders; }
  bool MakeDurable() override { return true; }

  /// Everything that a user could get to see.
  QString Shown() const { return errors.join(u'\n') + log.join(u'\n'); }

  QByteArrayList arrived;
  QStringList told;  ///< of handing over, in order
  QStringList errors, log, refused;
  QList<PopError> codes;
  int started = 0, ended = 0;
  bool wantsHeaders = false, mayHandOver = true;
};

}  // namespace vorn::test
