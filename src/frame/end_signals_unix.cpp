#include <fcntl.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <array>
#include <csignal>

#include "frame/end_signals.h"

namespace vorn {
namespace {

// A handler may do hardly more than write to a pipe.
std::array<int, 2> pipeEnds{-1, -1};

void Note(int) {
  const char byte = 0;
  [[maybe_unused]] const auto written = write(pipeEnds[1], &byte, 1);
}

}  // namespace

EndSignals::EndSignals(QObject* parent) : QObject(parent) {
  if (pipe2(pipeEnds.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
  auto* notifier = new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, this);
  connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
    notifier->setEnabled(false);
    Q_EMIT Wanted();
  });
  struct sigaction action {};
  action.sa_handler = Note;
  for (const int number : {SIGTERM, SIGHUP, SIGINT}) sigaction(number, &action, nullptr);
}

}  // namespace vorn
