#include "desktop/desktop_secrets.h"

#include <qt6keychain/keychain.h>

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDeadlineTimer>
#include <QHash>
#include <QSemaphore>
#include <QThread>
#include <functional>

#include "desktop/session_bus.h"

namespace vorn {
namespace {

using Error = QKeychain::Error;

const QString kSecretsOf = QStringLiteral("Vorn");
constexpr int kRefusedMs = 2000;
constexpr int kWaitMs = 120000;  // for somebody who has to look for his password
constexpr int kAliveMs = 10000;  // for the service to start as well

struct Answer {
  QSemaphore given;
  Error error = Error::OtherError;
  QString text;
};

// Whether the service is there and gives no sign of life; while it asks its user it does.
bool Hangs() {
  const QString name = QStringLiteral("vorn-secrets");
  const QDBusMessage ping = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.secrets"), QStringLiteral("/"),
      QStringLiteral("org.freedesktop.DBus.Peer"), QStringLiteral("Ping"));
  const QDBusMessage reply = QDBusConnection::connectToBus(QDBusConnection::SessionBus, name)
                                 .call(ping, QDBus::Block, kAliveMs);
  QDBusConnection::disconnectFromBus(name);
  return QDBusError(reply).type() == QDBusError::NoReply;
}

// The service answers to an event loop. That one has a thread of its own, so that nothing else of
// the program goes on in the middle of a login; the library wants the same one for all questions.
class Asking {
 public:
  static Asking& Of() {
    static auto* asking = new Asking;  // it may still wait for an answer when the program ends
    return *asking;
  }

  // What the service says; an error where it says nothing.
  template <class Job>
  std::shared_ptr<Answer> Ask(const QString& name, const std::function<void(Job&)>& prepare = {}) {
    auto answer = std::make_shared<Answer>();
    isSilent_ = isSilent_ || Hangs();
    if (isSilent_) return answer;
    QMetaObject::invokeMethod(&inThread_, [this, name, prepare, answer] {
      auto* job = new Job(kSecretsOf);
      job->setKey(name);
      if (prepare) prepare(*job);
      QObject::connect(job, &QKeychain::Job::finished, &inThread_, [job, answer] {
        answer->error = job->error();
        if constexpr (std::is_same_v<Job, QKeychain::ReadPasswordJob>) {
          answer->text = job->textData();
        }
        answer->given.release();
      });
      job->start();
    });
    if (answer->given.tryAcquire(1, kWaitMs)) return answer;
    isSilent_ = true;
    return std::make_shared<Answer>();
  }

 private:
  Asking() {
    inThread_.moveToThread(&thread_);
    thread_.start();
  }

  QThread thread_;
  QObject inThread_;
  bool isSilent_ = false;
};

class Secrets : public SecretStore {
 public:
  // A login asks several times, and its user shall answer once.
  QString Read(const QString& name) override {
    if (const QString known = known_.value(name); !known.isEmpty()) return known;
    if (!refusal_.hasExpired()) return {};
    const auto answer = Asking::Of().Ask<QKeychain::ReadPasswordJob>(name);
    if (answer->error != Error::NoError || answer->text.isEmpty()) {
      refusal_.setRemainingTime(kRefusedMs);
      return {};
    }
    known_.insert(name, answer->text);
    return answer->text;
  }

  bool Keep(const QString& name, const QString& secret) override {
    const auto answer = Asking::Of().Ask<QKeychain::WritePasswordJob>(
        name, [secret](QKeychain::WritePasswordJob& job) { job.setTextData(secret); });
    refusal_ = QDeadlineTimer();
    return answer->error == Error::NoError && Read(name) == secret;
  }

  void Forget(const QString& name) override {
    known_.remove(name);
    Asking::Of().Ask<QKeychain::DeletePasswordJob>(name);
  }

 private:
  QHash<QString, QString> known_;
  QDeadlineTimer refusal_;
};

}  // namespace

std::unique_ptr<SecretStore> DesktopSecrets() {
  // The service's library knows no other event loop than that of GLib.
  if (!HasSessionBus() || !qEnvironmentVariableIsEmpty("QT_NO_GLIB")) return nullptr;
  return std::make_unique<Secrets>();
}

}  // namespace vorn
