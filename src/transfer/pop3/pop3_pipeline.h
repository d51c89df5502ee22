#pragma once

#include <QByteArray>
#include <deque>
#include <functional>
#include <utility>

namespace vorn {

enum class Pop3Command { Capa, Stls, Auth, User, Pass, Apop, List, Uidl, Top, Retr, Dele, Quit };

/// A command whose reply has not come yet, with the index of the message that it is about.
struct Pop3Pending {
  Pop3Command command;
  size_t message = 0;
};

/// The commands of a POP3 session in the order of their replies: one at a time, or ahead where the
/// server takes them so (PIPELINING, RFC 2449 section 6.6).
class Pop3Pipeline {
 public:
  explicit Pop3Pipeline(std::function<void(QByteArray)> send) : send_(std::move(send)) {}

  void GoAhead(bool goesAhead) { goesAhead_ = goesAhead; }
  bool GoesAhead() const { return goesAhead_; }

  /// `line` without its end.
  void Send(const QByteArray& line, Pop3Command command, size_t message = 0) {
    pending_.push_back({command, message});
    send_(line + "\r\n");
  }
  /// A line that goes on with the command before it, such as the answer to a challenge.
  void SendMore(const QByteArray& line) { send_(line + "\r\n"); }

  bool IsEmpty() const { return pending_.empty(); }
  bool Awaits(Pop3Command command) const {
    return !pending_.empty() && pending_.front().command == command;
  }
  /// On a distant server it is this window that limits the speed.
  bool HasRoom() const { return pending_.size() < (goesAhead_ ? kMostAhead : 1); }
  const Pop3Pending& Next() const { return pending_.front(); }
  Pop3Pending Take() {
    const Pop3Pending pending = pending_.front();
    pending_.pop_front();
    return pending;
  }

 private:
  static constexpr size_t kMostAhead = 2048;

  std::function<void(QByteArray)> send_;
  bool goesAhead_ = false;
  std::deque<Pop3Pending> pending_;
};

}  // namespace vorn
