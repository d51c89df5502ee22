#include "fuzz_input.h"
#include "transfer/pop3/pop3_session.h"

using namespace vorn;

namespace {

// Notes what the program was told, and that nothing is deleted before it is durable.
class Events : public PopEvents, public RetrievalEvents, public HandoverEvents {
 public:
  RetrievalEvents& Retrieval() override { return *this; }
  HandoverEvents& Handover() override { return *this; }
  std::optional<ServerCopy> MessageArrived(const QString&, const QByteArray&, bool) override {
    return ServerCopy::Deleted;
  }
  std::optional<ServerCopy> AlreadyStored(const QString& id) override {
    if (id.size() % 3 != 0) return {};
    return ServerCopy::Deleted;
  }
  bool WantsHeader(const QString& id) override { return id.size() % 3 == 1; }
  std::optional<ServerCopy> StoredByHeader(const QString&, const QByteArray& header) override {
    if (header.size() % 2 != 0) return {};
    return ServerCopy::Deleted;
  }
  void Error(PopError, const QString& text) override { fuzz::Require(!text.isEmpty()); }
  std::optional<ServerCopy> ReceiveStopTest(const QByteArray& header, bool) override {
    if (header.size() % 2 != 0) return {};
    return ServerCopy::Stays;
  }
  void Progress(qint64 total, qint64 done, const FetchedMessages&) override {
    fuzz::Require(done <= total);
  }
  bool WantsHeaders() override { return wantsHeaders; }
  bool MakeDurable() override { return durable = true; }

  bool wantsHeaders = false;
  bool durable = false;
};

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2) return 0;
  Events events;
  events.wantsHeaders = (data[0] & 1) != 0;
  const bool apop = (data[0] & 2) != 0;
  const size_t chunk = 1 + data[1] % 7;
  Pop3Session session(
      {{.host = QStringLiteral("h"), .who = {QStringLiteral("u"), QStringLiteral("p")}}, apop},
      events, [&events](const QByteArray& said) {
        fuzz::Require(said.endsWith("\r\n") && said.count('\n') == 1);
        if (said.startsWith("DELE")) fuzz::Require(events.durable);
      });
  for (size_t at = 2; at < size && !session.Finished(); at += chunk) {
    session.Receive(fuzz::Bytes(data + at, std::min(chunk, size - at)));
    while (!session.Finished() && session.Work()) {
    }
  }
  session.ConnectionLost();
  fuzz::Require(session.Finished());
  return 0;
}
