// A secret service on the session bus (freedesktop.org's Secret Service) that says yes to whatever
// it is given and keeps nothing.

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDBusVirtualObject>

namespace {

class Service : public QDBusVirtualObject {
 public:
  QString introspect(const QString&) const override { return {}; }

  bool handleMessage(const QDBusMessage& asked, const QDBusConnection& bus) override {
    return bus.send(Answer(asked));
  }

 private:
  static QDBusMessage Answer(const QDBusMessage& asked) {
    const QDBusObjectPath none(QStringLiteral("/"));
    const QDBusObjectPath item(QStringLiteral("/org/freedesktop/secrets/collection/login/1"));
    const QString what = asked.member();
    if (what == u"OpenSession") {
      if (asked.arguments().value(0) != QStringLiteral("plain")) {
        return asked.createErrorReply(QDBusError::NotSupported, QStringLiteral("in clear only"));
      }
      const QDBusObjectPath session(QStringLiteral("/org/freedesktop/secrets/session/1"));
      return asked.createReply(
          {QVariant::fromValue(QDBusVariant(QString())), QVariant::fromValue(session)});
    }
    const QVariant nothing = QVariant::fromValue(QList<QDBusObjectPath>());
    if (what == u"SearchItems") return asked.createReply({nothing, nothing});
    if (what == u"CreateItem") {
      return asked.createReply({QVariant::fromValue(item), QVariant::fromValue(none)});
    }
    if (what == u"GetAll") return asked.createReply(QVariantMap());
    return asked.createErrorReply(QDBusError::UnknownMethod, what);
  }
};

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication app(argc, argv);
  Service service;
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.registerVirtualObject(QStringLiteral("/org/freedesktop/secrets"), &service,
                                 QDBusConnection::SubPath) ||
      !bus.registerService(QStringLiteral("org.freedesktop.secrets"))) {
    return 1;
  }
  return QCoreApplication::exec();
}
