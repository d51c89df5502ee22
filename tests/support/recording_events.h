#pragma once

#include <QByteArrayList>
#include <QStringList>

#include "transfer/pop_events.h"

namespace vorn::test {

/// Answers a session's questions as tests choose and writes down what it is told.
class RecordingEvents : public PopEvents {
 public:
  bool MessageArrived(const QString&, const QByteArray& data, bool&) override {
    arrived.append(data);
    return true;
  }
  bool BeginHandover() override {
    handover.append(QStringLiteral("begin"));
    return mayBegin;
  }
  void MessageSent(const QByteArray& data) override {
    sent.append(data);
    handover.append(QStringLiteral("sent"));
  }
  void HandoverEnded(HandoverOutcome outcome, const QString& reply) override {
    handover.append(outcome == HandoverOutcome::Refused ? QStringLiteral("refused")
                                                        : QStringLiteral("unknown"));
    shown.append(reply);
  }
  void RecipientRefused(const QString& address, const QString& reply) override {
    refused.append(address + u'=' + reply);
    shown.append(reply);
  }
  void AlreadyStored(const QString&, bool&, bool&) override {}
  void Error(int, const QString& text) override {
    errors.append(text);
    shown.append(text);
  }
  void ReceiveStopTest(const QByteArray&, bool&, bool&) override {}
  void SessionStarted() override { ++started; }
  void SessionEnded() override { ++ended; }
  void Progress(int, qint64, qint64) override {}
  void Log(int, const QString& text) override { shown.append(text); }
  bool WantsHeaders() override { return false; }
  bool MakeDurable() override { return true; }
  /// What was told of handing over since the last call, such as "begin sent".
  QString TakeHandover() { return std::exchange(handover, {}).join(u' '); }

  bool mayBegin = true;
  QStringList errors, refused, handover;
  QStringList shown;  ///< every text that is logged or shown
  QByteArrayList sent, arrived;
  int started = 0, ended = 0;
};

}  // namespace vorn::test
