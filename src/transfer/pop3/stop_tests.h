#pragma once

#include <QByteArray>
#include <map>
#include <set>

namespace vorn {

/// What the receive-stop rules still have to see of the messages of a mailbox: those that come
/// whole because their headers do not come alone, and a second time the headers of those that the
/// rules delete, since one answer may have been another message's.
class StopTests {
 public:
  /// The rules are to be tested on the message once it has come.
  void TestLater(size_t message) { untested_.insert(message); }
  bool IsUntested(size_t message) const { return untested_.count(message) != 0; }

  /// A message is deleted if its header comes once more as it was.
  void Confirm(size_t message, const QByteArray& header) { unconfirmed_.emplace(message, header); }
  bool IsUnconfirmed(size_t message) const { return unconfirmed_.count(message) != 0; }
  /// Whether it has come so; nothing is awaited for the message any more.
  [[nodiscard]] bool TakeSecond(size_t message, const QByteArray& header) {
    const QByteArray first = unconfirmed_.extract(message).mapped();
    return first == header;
  }

 private:
  std::set<size_t> untested_;
  std::map<size_t, QByteArray> unconfirmed_;  // the header that came first
};

}  // namespace vorn
