#include "fuzz_input.h"
#include "transfer/pop3_session.h"

using namespace vorn;

namespace {

// Notes what the program was told, and that nothing is deleted before it is durable.
class Events : public PopEvents, public RetrievalEvents, public HandoverEvents {
 public:
  RetrievalEvents& Retrieval() override { return *this; }
  HandoverEvents& Handover() override { return *this; }
  bool MessageArrived(const QString&, const QByteArray&, bool, bool& remove) override {
    remove = true;
    return true;
  }
  void AlreadyStored(const QString& id, bool& exists, bool& remove) override {
    exists = id.size() % 3 == 0;
    remove = true;
  }
  bool WantsHeader(const QString& id) override { return id.size() % 3 == 1; }
  bool IsStored(const QString&, const QByteArray& header, bool& remove) override {
    remove = true;
    return header.size() % 2 == 0;
  }
  void Error(PopError, const QString& text) override { fuzz::Require(!text.isEmpty()); }
  void ReceiveStopTest(const QByteArray& header, bool, bool& stop, bool&) override {
    stop = header.size() % 2 == 0;
  }
  void Progress(qint64 total, qint64 done) override { fuzz::Require(done <= total); }
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
  Pop3Session session({QStringLiteral("h"), QStringLiteral("u"), QStringLiteral("p"), apop}, events,
                      [&events](const QByteArray& said) {
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
