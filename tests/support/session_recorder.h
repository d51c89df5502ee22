#pragma once

#include <gtest/gtest.h>

#include <QByteArrayList>
#include <QStringList>

#include "transfer/protocol/pop_events.h"

namespace vorn::test {

/// Answers a session as a program does that wants everything and deletes it on the server, unless
/// told otherwise, and writes down what was told.
class SessionRecorder : public PopEvents, public RetrievalEvents, public HandoverEvents {
 public:
  RetrievalEvents& Retrieval() override { return *this; }
  HandoverEvents& Handover() override { return *this; }
  std::optional<ServerCopy> MessageArrived(const QString& id, const QByteArray& data,
                                           bool) override {
    ids.append(id);
    arrived.append(data);
    return When(canStore);
  }
  bool BeginHandover() override {
    told.append(QStringLiteral("begin"));
    return mayHandOver;
  }
  void MessageSent(const QByteArray& data) override {
    sent.append(data);
    told.append(QStringLiteral("sent"));
  }
  void HandoverEnded(HandoverOutcome outcome, const QString&) override {
    told.append(outcome == HandoverOutcome::Refused ? QStringLiteral("refused")
                                                    : QStringLiteral("unknown"));
  }
  void RecipientRefused(const QString& address, const QString&) override {
    refused.append(address);
  }
  bool MailboxListed(const QString&, const std::optional<QList<ListedMessage>>&) override {
    return true;
  }
  std::optional<ServerCopy> AlreadyStored(const QString& id) override {
    return When(known.contains(id));
  }
  bool WantsHeader(const QString& id) override { return unsure.contains(id); }
  std::optional<ServerCopy> StoredByHeader(const QString&, const QByteArray& header) override {
    headers.append(header);
    return When(header.contains("Subject: stored"));
  }
  void TornOffAgain() override { told.append(QStringLiteral("torn off")); }
  void Error(PopError code, const QString& text) override {
    codes.append(code);
    errors.append(text);
  }
  std::optional<ServerCopy> ReceiveStopTest(const QByteArray& header, bool) override {
    return When(header.contains("Subject: stop"));
  }
  void StopTakenBack(StopDoubt) override { told.append(QStringLiteral("taken back")); }
  void SessionStarted() override { ++started; }
  void SessionEnded() override { ++ended; }
  void Progress(qint64 total, qint64 done, const FetchedMessages& messages) override {
    EXPECT_LE(done, total);
    EXPECT_LE(messages.come, messages.wanted);
    EXPECT_GE(messages.undecided, 0);
  }
  void Log(const QString& text) override { log.append(text); }
  bool WantsHeaders() override { return wantsHeaders; }
  bool MakeDurable() override { return durable; }

  std::optional<ServerCopy> When(bool isSo) const {
    return isSo ? std::optional(DeletedIf(deletes)) : std::nullopt;
  }

  /// Everything that a user could get to see.
  QString Shown() const { return errors.join(u'\n') + log.join(u'\n'); }

  QByteArrayList arrived, sent;
  QByteArrayList headers;          ///< of messages whose identifiers prove nothing
  QStringList ids, known, unsure;  ///< of what arrived, of what need not, and of what may not
  QStringList told;                ///< of handing over, in order
  QStringList errors, log, refused;
  QList<PopError> codes;
  int started = 0, ended = 0;
  bool wantsHeaders = false, mayHandOver = true, deletes = true, canStore = true, durable = true;
};

}  // namespace vorn::test
