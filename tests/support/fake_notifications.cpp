#include "support/fake_notifications.h"

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QVariantMap>

namespace vorn::test {
namespace {

const QString kService = QStringLiteral("org.freedesktop.Notifications");
const QString kPath = QStringLiteral("/org/freedesktop/Notifications");
const QString kName = QStringLiteral("fake-notifications");

// Whoever connects reads the address once, so that all buses of a process have the same.
QString Socket() {
  static const QTemporaryDir folder;
  return folder.filePath(QStringLiteral("bus"));
}

}  // namespace

QString FakeNotifications::NameBus() {
  QFile::remove(Socket());
  qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + Socket().toUtf8());
  return Socket();
}

// The daemon knows no services to start by itself.
class FakeNotifications::Bus {
 public:
  Bus() {
    QFile rules(NameBus() + QStringLiteral(".conf"));
    EXPECT_TRUE(rules.open(QIODevice::WriteOnly));
    rules.write("<busconfig><type>session</type><listen>unix:path=" + Socket().toUtf8() +
                "</listen><policy context=\"default\"><allow send_destination=\"*\" "
                "eavesdrop=\"true\"/><allow eavesdrop=\"true\"/><allow own=\"*\"/></policy>"
                "</busconfig>");
    rules.close();
    daemon_.start(QStringLiteral("dbus-daemon"),
                  {QStringLiteral("--config-file=") + rules.fileName(), QStringLiteral("--nofork"),
                   QStringLiteral("--print-address")});
    EXPECT_TRUE(daemon_.waitForReadyRead()) << daemon_.errorString().toStdString();
  }
  ~Bus() {
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    daemon_.kill();
    daemon_.waitForFinished();
  }
  Bus(const Bus&) = delete;
  Bus& operator=(const Bus&) = delete;

 private:
  QProcess daemon_;
};

class FakeNotifications::Service : public QObject, protected QDBusContext {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

 public:
  explicit Service(FakeNotifications& fake)
      : fake_(fake),
        connection_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, kName)) {
    EXPECT_TRUE(connection_.registerObject(
        kPath, this, QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals));
    EXPECT_TRUE(connection_.registerService(kService));
  }
  ~Service() override { QDBusConnection::disconnectFromBus(kName); }

 public Q_SLOTS:  // NOLINT: the names are the protocol's
  QStringList GetCapabilities() {
    ++fake_.Asked;
    setDelayedReply(!fake_.Answers);
    return fake_.Abilities;
  }
  uint Notify(const QString&, uint replaces, const QString&, const QString& summary,
              const QString& body, const QStringList& actions, const QVariantMap&, int) {
    setDelayedReply(!fake_.Answers);
    const uint id = replaces == 0 ? ++last_ : replaces;
    fake_.Told.append({id, replaces, summary, body, actions});
    return id;
  }
  void CloseNotification(uint id) { fake_.Closed.append(id); }

 Q_SIGNALS:
  void ActionInvoked(uint id, const QString& action);
  void NotificationClosed(uint id, uint reason);

 private:
  FakeNotifications& fake_;
  QDBusConnection connection_;
  uint last_ = 6;
};

FakeNotifications::FakeNotifications()
    : bus_(std::make_unique<Bus>()), service_(std::make_unique<Service>(*this)) {}

FakeNotifications::~FakeNotifications() = default;

void FakeNotifications::Choose(uint id, const QString& action) {
  Q_EMIT service_->ActionInvoked(id, action);
}

void FakeNotifications::Close(uint id) {
  Q_EMIT service_->NotificationClosed(id, 2);
}

void FakeNotifications::EndService() {
  service_.reset();
}

void FakeNotifications::EndBus() {
  service_.reset();
  bus_.reset();
}

}  // namespace vorn::test

#include "fake_notifications.moc"
