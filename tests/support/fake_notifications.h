#pragma once

#include <QList>
#include <QStringList>
#include <memory>

namespace vorn::test {

/// A session bus of the test's own, with a notification service that notes what it is told.
class FakeNotifications {
 public:
  struct Shown {
    uint id = 0;
    uint replaces = 0;
    QString summary;
    QString body;
    QStringList actions;
  };

  /// Starts the bus, which the environment then names, and the service on it.
  FakeNotifications();
  ~FakeNotifications();

  /// Lets the environment name a session bus that is still to come; its socket.
  static QString NameBus();

  QStringList Abilities = {QStringLiteral("actions"), QStringLiteral("body"),
                           QStringLiteral("body-markup")};
  bool Answers = true;  ///< else a call waits until the service is gone
  int Asked = 0;        ///< for its abilities
  QList<Shown> Told;
  QList<uint> Closed;  ///< by the program

  void Choose(uint id, const QString& action);
  void Close(uint id);
  void EndService();
  void EndBus();

 private:
  class Service;
  class Bus;

  std::unique_ptr<Bus> bus_;
  std::unique_ptr<Service> service_;
};

}  // namespace vorn::test
