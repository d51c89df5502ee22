#include "desktop/notification_service.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QThread>
#include <QVariantMap>

#include "desktop/session_bus.h"
#include "storage/ui.h"

namespace vorn {
namespace {

const QString kService = QStringLiteral("org.freedesktop.Notifications");
const QString kPath = QStringLiteral("/org/freedesktop/Notifications");
const QString kBusName = QStringLiteral("vorn-notifications");
constexpr int kAsTheDesktopLikes = -1;

QDBusMessage Call(const QString& method, const QVariantList& arguments = {}) {
  QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kService, method);
  call.setArguments(arguments);
  return call;
}

}  // namespace

// The connection, which is the service object's own: it ends with it.
class NotificationService::Bus {
 public:
  explicit Bus(const QDBusConnection& connection) : connection_(connection) {}
  ~Bus() { QDBusConnection::disconnectFromBus(connection_.name()); }
  Bus(const Bus&) = delete;
  Bus& operator=(const Bus&) = delete;

  QDBusConnection& Get() { return connection_; }

 private:
  QDBusConnection connection_;
};

NotificationService::NotificationService(const QString& icon) : icon_(icon) {}

NotificationService::~NotificationService() {
  Withdraw();
}

void NotificationService::Show(const Notification& notification) {
  next_ = notification;
  Next();
}

void NotificationService::Next() {
  if (isBusy_ || !next_) return;
  if (bus_ != nullptr && !bus_->Get().isConnected()) Forget();
  if (bus_ == nullptr) {
    Connect();
  } else if (!abilities_) {
    AskAbilities();
  } else {
    Send();
  }
}

// A bus that does not answer keeps whoever connects to it waiting.
void NotificationService::Connect() {
  if (!HasSessionBus()) {
    Q_EMIT Gone(std::exchange(next_, std::nullopt)->about);
    return;
  }
  static int number = 0;
  const QString name = kBusName + QString::number(++number);
  isBusy_ = true;
  QThread* thread =
      QThread::create([name] { QDBusConnection::connectToBus(QDBusConnection::SessionBus, name); });
  connect(thread, &QThread::finished, thread, &QObject::deleteLater);
  connect(thread, &QThread::finished, this, [this, name] {
    isBusy_ = false;
    auto bus = std::make_unique<Bus>(QDBusConnection(name));
    if (!bus->Get().isConnected()) {
      Q_EMIT Gone(std::exchange(next_, std::nullopt)->about);
      return;
    }
    bus->Get().connect(kService, kPath, kService, QStringLiteral("ActionInvoked"), this,
                       SLOT(ActionInvoked(uint, QString)));
    bus->Get().connect(kService, kPath, kService, QStringLiteral("NotificationClosed"), this,
                       SLOT(NotificationClosed(uint, uint)));
    bus_ = std::move(bus);
    Next();
  });
  thread->start();
}

void NotificationService::AskAbilities() {
  isBusy_ = true;
  auto* answer = new QDBusPendingCallWatcher(
      bus_->Get().asyncCall(Call(QStringLiteral("GetCapabilities"))), this);
  connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
    isBusy_ = false;
    answer->deleteLater();
    const QDBusPendingReply<QStringList> reply = *answer;
    if (reply.isError()) {
      Q_EMIT Gone(std::exchange(next_, std::nullopt)->about);
      return;
    }
    abilities_ = reply.value();
    Next();
  });
}

void NotificationService::Send() {
  const Notification notification = *std::exchange(next_, std::nullopt);
  const bool readsMarkup = abilities_->contains(QStringLiteral("body-markup"));
  const bool hasActions = abilities_->contains(QStringLiteral("actions"));
  const QVariantMap hints = {{QStringLiteral("category"), QStringLiteral("email.arrived")},
                             {QStringLiteral("desktop-entry"), icon_}};
  const QDBusMessage call =
      Call(QStringLiteral("Notify"),
           {kApplicationTitle, shown_, icon_, notification.summary,
            readsMarkup ? notification.body.toHtmlEscaped() : notification.body,
            hasActions ? notification.actions : QStringList(), hints, kAsTheDesktopLikes});
  isBusy_ = true;
  auto* answer = new QDBusPendingCallWatcher(bus_->Get().asyncCall(call), this);
  connect(answer, &QDBusPendingCallWatcher::finished, this,
          [this, answer, about = notification.about] {
            isBusy_ = false;
            answer->deleteLater();
            const QDBusPendingReply<uint> reply = *answer;
            shown_ = reply.isError() ? 0 : reply.value();
            about_ = reply.isError() ? QStringList() : about;
            // Another service may come, with other abilities.
            if (reply.isError()) abilities_.reset();
            if (reply.isError()) Q_EMIT Gone(about);
            Next();
          });
}

void NotificationService::ActionInvoked(uint id, const QString& action) {
  if (id != shown_ || shown_ == 0) return;
  const QStringList about = about_;
  Withdraw();
  Q_EMIT Chosen(action, about);
}

void NotificationService::NotificationClosed(uint id, uint) {
  if (id != shown_ || shown_ == 0) return;
  shown_ = 0;
  Q_EMIT Gone(std::exchange(about_, {}));
}

void NotificationService::Withdraw() {
  if (shown_ == 0 || bus_ == nullptr) return;
  bus_->Get().send(Call(QStringLiteral("CloseNotification"), {shown_}));
  shown_ = 0;
  about_.clear();
}

// What was shown ended with the bus.
void NotificationService::Forget() {
  bus_.reset();
  abilities_.reset();
  shown_ = 0;
  about_.clear();
}

}  // namespace vorn
