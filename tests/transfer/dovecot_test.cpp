// Receiving through `Pop` from Dovecot, a server that nobody here wrote.

#include <gtest/gtest.h>

#include <QDir>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>

#include "frame/mail_traffic.h"
#include "mail/mail_store.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

using test::TestProfile;
using test::WaitFor;

class QuietHost : public PlanHost, public StatusPanel {
 public:
  void PostRequest(const DiskPtr&) override {}
  void AddEvent(int, int, const QString&, const QString&, const QString&,
                const QString& text) override {
    log = text;
  }
  void SendAndReceive() override {}
  QString ChooseAccount(const QString&, const QString&) override { return {}; }
  void ShowStatus(const QString&, const QString&) override {}
  QString log;
};

quint16 FreePort() {
  QTcpServer probe;
  probe.listen(QHostAddress::LocalHost);
  return probe.serverPort();
}

// Dovecot on a free port of 127.0.0.1, its mail in a folder that goes with the test.
class Dovecot {
 public:
  Dovecot() : port_(FreePort()) {
    // Its own users have to enter the folder.
    QFile::setPermissions(folder_.path(), QFile::Permissions(0x7755));
    maildir_ = folder_.filePath(QStringLiteral("mail"));
    for (const char16_t* part : {u"/new", u"/cur", u"/tmp"}) {
      QDir().mkpath(maildir_ + QString::fromUtf16(part));
    }
    WriteConfiguration();
  }
  ~Dovecot() {
    process_.terminate();
    process_.waitForFinished(5000);
  }

  void AddMessage(const QByteArray& name, const QByteArray& source) {
    QFile file(maildir_ + QStringLiteral("/new/") + QString::fromLatin1(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(source);
  }
  int Remaining() const {
    const auto count = [this](const char16_t* part) {
      return QDir(maildir_ + QString::fromUtf16(part)).entryList(QDir::Files).size();
    };
    return static_cast<int>(count(u"/new") + count(u"/cur"));
  }
  bool Start() {
    HandOverMail();
    process_.start(QStringLiteral("dovecot"), {QStringLiteral("-F"), QStringLiteral("-c"),
                                               folder_.filePath(QStringLiteral("dovecot.conf"))});
    return process_.waitForStarted() && WaitFor([this] {
             QTcpSocket socket;
             socket.connectToHost(QHostAddress::LocalHost, port_);
             return socket.waitForConnected(100);
           });
  }
  quint16 Port() const { return port_; }

 private:
  void HandOverMail() const {
    QProcess::execute(QStringLiteral("chown"),
                      {QStringLiteral("-R"), QStringLiteral("mail:mail"), maildir_});
  }
  void WriteConfiguration() const {
    const QString text = QStringLiteral(
        "protocols = pop3\n"
        "base_dir = %1/run\n"
        "log_path = %1/log\n"
        "ssl = no\n"
        "disable_plaintext_auth = no\n"
        "auth_mechanisms = plain login apop\n"
        "default_login_user = dovenull\n"
        "default_internal_user = dovecot\n"
        "first_valid_uid = 1\n"
        "mail_location = maildir:%1/mail\n"
        "mail_access_groups = mail\n"
        "passdb {\n  driver = static\n  args = password={PLAIN}secret\n}\n"
        "userdb {\n  driver = static\n  args = uid=mail gid=mail home=%1\n}\n"
        "service pop3-login {\n  inet_listener pop3 {\n    address = 127.0.0.1\n    port = %2\n  "
        "}\n"
        "  inet_listener pop3s {\n    port = 0\n  }\n}\n"
        "service stats {\n  chroot =\n}\n");
    QFile file(folder_.filePath(QStringLiteral("dovecot.conf")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text.arg(folder_.path()).arg(port_).toUtf8());
  }

  QTemporaryDir folder_;
  QString maildir_;
  quint16 port_;
  QProcess process_;
};

class DovecotTest : public testing::TestWithParam<bool> {
 protected:
  ReceiveCounts Receive() {
    const ReceiveCounts before = traffic_.Events().Counts();
    traffic_.Plan().CreateMessagePlan(kPlanReceive);
    EXPECT_TRUE(WaitFor([this] {
      traffic_.Tick();
      return traffic_.Plan().IsEmpty();
    }));
    const ReceiveCounts after = traffic_.Events().Counts();
    EXPECT_EQ(after.errors, before.errors) << host_.log.toStdString();
    return {after.stored - before.stored, after.known - before.known, 0, 0, 0};
  }

  TestProfile profile_;
  QuietHost host_;
  MailTraffic traffic_{profile_.Get(), host_, host_};
};

TEST_P(DovecotTest, SourcesAreStoredByteForByteOnceAndDeletedOnlyWhenTold) {
  Dovecot dovecot;
  QList<QByteArray> sources;
  const auto samples = test::Samples();
  for (auto sample = samples.begin(); sample != samples.end(); ++sample) {
    dovecot.AddMessage(sample.key().toLatin1(), sample.value());
    // A POP3 server gives every line CR LF and ends the last one.
    QByteArray served = sample.value();
    served.replace("\r\n", "\n").replace('\n', "\r\n");
    if (!served.endsWith("\r\n")) served += "\r\n";
    sources.append(served);
  }
  ASSERT_TRUE(dovecot.Start());
  const DiskPtr account = profile_.AddAccount(dovecot.Port(), false, GetParam());
  EXPECT_EQ(Receive().stored, sources.size());

  MailStore store(profile_.Get());
  for (const QVariant& serial : profile_.Select(QStringLiteral("SELECT SERIALID AS V FROM mail"))) {
    const QByteArray stored = store.LoadMessageSource(Disk(serial.toString()));
    EXPECT_TRUE(sources.removeOne(stored)) << stored.left(300).toStdString();
  }
  EXPECT_TRUE(sources.isEmpty());

  const ReceiveCounts again = Receive();
  EXPECT_EQ(again.stored, 0);
  EXPECT_EQ(again.known, samples.size());
  EXPECT_EQ(dovecot.Remaining(), samples.size());
  account->Let(QStringLiteral("InMailServerDelete"), true);
  EXPECT_EQ(Receive().stored, 0);
  EXPECT_TRUE(WaitFor([&dovecot] { return dovecot.Remaining() == 0; }));
}

INSTANTIATE_TEST_SUITE_P(Logins, DovecotTest, testing::Values(false, true),
                         [](const auto& login) { return login.param ? "Apop" : "UserPass"; });

}  // namespace
}  // namespace vorn
