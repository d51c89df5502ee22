#pragma once

#include <QByteArray>
#include <QString>
#include <deque>
#include <map>
#include <optional>
#include <vector>

#include "transfer/pop3/pop3_authorization.h"
#include "transfer/pop3/pop3_mailbox.h"
#include "transfer/pop3/pop3_pipeline.h"
#include "transfer/pop3/retrieval_progress.h"
#include "transfer/pop3/stop_tests.h"
#include "transfer/protocol/pop_events.h"

namespace vorn {

/// The middle of a POP3 session (RFC 1939 section 5): which messages of a mailbox are fetched,
/// which answers are believed, and which messages are deleted at the end.
class Pop3Retrieval {
 public:
  Pop3Retrieval(const Pop3Login& login, PopEvents& events, Pop3Pipeline& pipeline)
      : login_(login),
        session_(events),
        events_(events.Retrieval()),
        pipeline_(pipeline),
        progress_(events) {}

  /// Begins with the bodies of the answers to LIST and UIDL; no `uidl` from a server that does not
  /// know it. Returns whether the session goes on.
  bool Begin(const QByteArray& list, const std::optional<QByteArray>& uidl, bool lacksTop);

  /// Asks for further messages, for a short while. Returns whether there is more to ask for now.
  bool AskForMore();
  /// Whether nothing is under way and nothing is to be asked for any more.
  bool IsDone() const;
  qint64 SizeOf(size_t message) const { return messages_[message].size; }

  void TakeHeader(size_t message, const QByteArray& header);
  void HeaderRefused(size_t message);
  /// Returns whether answers are in step with what was asked.
  [[nodiscard]] bool TakeMessage(size_t message, const QByteArray& data);
  void MessageRefused(size_t message);

  /// Asks for deletions as far as the window allows; false once all were answered.
  bool AskForDeletions();
  /// Tells how far the session is, with the bytes of the message that is arriving.
  void ReportProgress(qint64 inFlight) { progress_.Report(inFlight); }

 private:
  // A message whose size was about the announced one, before any was exact.
  struct NearMessage {
    size_t message;
    QString id;
    bool isStopped = false;  // by a rule
  };

  // How the server gives headers alone.
  struct TopUse {
    bool isLacking = false;  // rules are tested on whole messages
    bool isTold = false;
    bool isAnswered = false;  // once
    bool isAsked = false;     // in this session
  };

  QString MessageId(const QByteArray& uidl) const;
  bool TellMailbox(bool hasUidl);
  void ConsiderNext();
  void AskForHeader(size_t message);
  void Fetch(size_t message);
  void FetchUntested(size_t message);
  bool IsWanted(size_t message, const QByteArray& header);
  void Doom(size_t message, ServerCopy copy);
  void EndStop(size_t message, const QByteArray& header);
  bool IsKnownByContents(size_t message, const QString& id, bool isTornOff);
  void Keep(size_t message, const QString& id, const QByteArray& data, bool isTornOff, bool isNear);
  void KeepNear();

  const Pop3Login& login_;
  PopEvents& session_;
  RetrievalEvents& events_;
  Pop3Pipeline& pipeline_;
  std::vector<Pop3Message> messages_;
  size_t next_ = 0;
  bool stopped_ = false;       // nothing more is fetched after a message could not be stored
  std::deque<size_t> doomed_;  // to be deleted on the server, once the store is durable

  bool wantsHeaders_ = false;
  TopUse top_;
  StopTests stopTests_;
  bool hasExactSizes_ = false;  // of a message so far
  std::vector<NearMessage> near_;
  std::map<size_t, QByteArray> doubtful_;  // by message: what was answered first
  RetrievalProgress progress_;
};

}  // namespace vorn
