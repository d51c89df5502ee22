#pragma once

#include <QObject>
#include <QStringList>
#include <memory>
#include <optional>

namespace vorn {

/// One notification: plain texts, and what the user can do about what it tells of.
struct Notification {
  QString summary;
  QString body;
  QStringList actions;  ///< alternately a key and the words on its button; "default" is a click
  QStringList about;    ///< what `Chosen` hands back
};

/// The desktop's notification service (D-Bus, org.freedesktop.Notifications). Shows one
/// notification at a time; the next one takes its place. Nothing waits for the service, and
/// nothing happens where there is none.
class NotificationService : public QObject {
  Q_OBJECT

 public:
  /// `icon` is a name of the icon theme and of the program's desktop entry.
  explicit NotificationService(const QString& icon);
  ~NotificationService() override;

  void Show(const Notification& notification);

 Q_SIGNALS:
  /// An action of a notification was chosen.
  void Chosen(const QString& action, const QStringList& about);
  /// It is gone: closed by the user or the desktop, or never shown.
  void Gone(const QStringList& about);

 private Q_SLOTS:
  void ActionInvoked(uint id, const QString& action);
  void NotificationClosed(uint id, uint reason);

 private:  // NOLINT(readability-redundant-access-specifiers): the slots end
  class Bus;
  void Next();
  void Connect();
  void AskAbilities();
  void Send();
  void Withdraw();
  void Forget();

  QString icon_;
  std::unique_ptr<Bus> bus_;
  std::optional<QStringList> abilities_;
  std::optional<Notification> next_;
  bool isBusy_ = false;  // an answer is awaited
  uint shown_ = 0;
  QStringList about_;  // of what is shown
};

}  // namespace vorn
