#include "fuzz_input.h"
#include "transfer/protocol/wire_message.h"
#include "transfer/smtp/smtp_session.h"

using namespace vorn;

namespace {

class Events : public PopEvents, public RetrievalEvents, public HandoverEvents {
 public:
  RetrievalEvents& Retrieval() override { return *this; }
  HandoverEvents& Handover() override { return *this; }
  void MessageSent(const QByteArray&) override { ++sent; }
  bool BeginHandover() override { return true; }
  void Error(PopError, const QString& text) override { fuzz::Require(!text.isEmpty()); }

  int sent = 0;
};

}  // namespace

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2) return 0;
  Events events;
  SmtpJob job;
  job.authenticate = (data[0] & 1) != 0;
  job.from = QStringLiteral("f@x");
  job.recipients = {QStringLiteral("a@x"), QStringLiteral("b@x")};
  job.source = "Subject: s\r\n\r\nbody\r\n";
  SmtpSession session(job, events, [](const QByteArray&) {});
  const size_t chunk = 1 + data[1] % 7;
  for (size_t at = 2; at < size && !session.Finished(); at += chunk) {
    session.Receive(fuzz::Bytes(data + at, std::min(chunk, size - at)));
  }
  session.ConnectionLost();
  fuzz::Require(session.Finished() && events.sent <= 1);

  const QByteArray wire = WireMessage(fuzz::Bytes(data, size).toByteArray());
  fuzz::Require(!wire.contains("\r\n.\r\n") && !wire.startsWith(".\r\n"));
  fuzz::Require(wire.count('\n') == wire.count("\r\n") && wire.count('\r') == wire.count("\r\n"));
  return 0;
}
