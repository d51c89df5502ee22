#include "support/real_servers.h"

#include <grp.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <QDir>
#include <QTcpServer>
#include <QTcpSocket>

#include "support/test_profile.h"

namespace vorn::test {
namespace {

quint16 FreePort() {
  QTcpServer probe;
  probe.listen(QHostAddress::LocalHost);
  return probe.serverPort();
}

QString NameOf(TestCertificates::Kind kind) {
  switch (kind) {
    case TestCertificates::Kind::Valid:
      return QStringLiteral("valid");
    case TestCertificates::Kind::SelfSigned:
      return QStringLiteral("self");
    case TestCertificates::Kind::WrongName:
      return QStringLiteral("wrong");
    default:
      return QStringLiteral("expired");
  }
}

bool Write(const QString& path, const QString& text) {
  QFile file(path);
  return file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) >= 0;
}

bool IsRoot() {
  return geteuid() == 0;
}

// Under whom the server's processes run. Started by root it gives its rights away; by anybody else
// it has none to give, and cannot lock itself into a folder.
QString Users() {
  if (IsRoot()) {
    return QStringLiteral(
        "default_login_user = dovenull\n"
        "default_internal_user = dovecot\n"
        "mail_access_groups = mail\n");
  }
  return QStringLiteral(
             "default_login_user = %1\n"
             "default_internal_user = %1\n"
             "default_internal_group = %2\n"
             "service anvil {\n  chroot =\n}\n"
             "service pop3-login {\n  chroot =\n}\n")
      .arg(QString::fromLocal8Bit(getpwuid(geteuid())->pw_name),
           QString::fromLocal8Bit(getgrgid(getegid())->gr_name));
}

}  // namespace

TestCertificates::TestCertificates() {
  QFile::setPermissions(folder_.path(), QFile::Permissions(0x7755));
  const auto newKey = [this](const QString& name, const QString& subject) {
    OpenSsl({QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"),
             QStringLiteral("rsa:2048"), QStringLiteral("-nodes"), QStringLiteral("-days"),
             QStringLiteral("30"), QStringLiteral("-subj"), subject, QStringLiteral("-keyout"),
             name + QStringLiteral(".key"), QStringLiteral("-out"), name + QStringLiteral(".pem")});
  };
  newKey(QStringLiteral("ca"), QStringLiteral("/CN=Test authority"));
  newKey(QStringLiteral("self"), QStringLiteral("/CN=localhost"));
  const QString here = QStringLiteral("DNS:localhost");
  const QStringList month = {QStringLiteral("-days"), QStringLiteral("30")};
  Sign(QStringLiteral("valid"), QStringLiteral("/CN=localhost"), here, month);
  Sign(QStringLiteral("wrong"), QStringLiteral("/CN=elsewhere.example"),
       QStringLiteral("DNS:elsewhere.example"), month);
  Sign(QStringLiteral("expired"), QStringLiteral("/CN=localhost"), here,
       {QStringLiteral("-days"), QStringLiteral("-1")});
}

void TestCertificates::OpenSsl(const QStringList& arguments) const {
  QProcess process;
  process.setWorkingDirectory(folder_.path());
  process.start(QStringLiteral("openssl"), arguments);
  process.waitForFinished(-1);
  EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
}

void TestCertificates::Sign(const QString& name, const QString& subject, const QString& names,
                            const QStringList& validity) const {
  OpenSsl({QStringLiteral("req"), QStringLiteral("-newkey"), QStringLiteral("rsa:2048"),
           QStringLiteral("-nodes"), QStringLiteral("-subj"), subject, QStringLiteral("-keyout"),
           name + QStringLiteral(".key"), QStringLiteral("-out"), name + QStringLiteral(".csr")});
  const QString extensions = name + QStringLiteral(".ext");
  EXPECT_TRUE(Write(folder_.filePath(extensions), QStringLiteral("subjectAltName=") + names));
  OpenSsl(QStringList{QStringLiteral("x509"), QStringLiteral("-req"), QStringLiteral("-in"),
                      name + QStringLiteral(".csr"), QStringLiteral("-CA"),
                      QStringLiteral("ca.pem"), QStringLiteral("-CAkey"), QStringLiteral("ca.key"),
                      QStringLiteral("-CAcreateserial"), QStringLiteral("-extfile"), extensions,
                      QStringLiteral("-out"), name + QStringLiteral(".pem")} +
          validity);
}

QString TestCertificates::Certificate(Kind kind) const {
  return folder_.filePath(NameOf(kind) + QStringLiteral(".pem"));
}

QString TestCertificates::Key(Kind kind) const {
  return folder_.filePath(NameOf(kind) + QStringLiteral(".key"));
}

Dovecot::Dovecot(const QString& certificate, const QString& key)
    : certificate_(certificate), key_(key), port_(FreePort()), tlsPort_(FreePort()) {
  // Its own users have to enter the folder.
  QFile::setPermissions(folder_.path(), QFile::Permissions(0x7755));
  maildir_ = folder_.filePath(QStringLiteral("mail"));
  for (const char16_t* part : {u"/new", u"/cur", u"/tmp"}) {
    QDir().mkpath(maildir_ + QString::fromUtf16(part));
  }
}

Dovecot::~Dovecot() {
  process_.terminate();
  process_.waitForFinished(-1);
}

void Dovecot::AddMessage(const QByteArray& name, const QByteArray& source) {
  QFile file(maildir_ + QStringLiteral("/new/") + QString::fromLatin1(name));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(source);
}

void Dovecot::Deliver(const QByteArray& name, const QByteArray& source) {
  AddMessage(name, source);
  HandOverMail();
}

int Dovecot::Remaining() const {
  const auto count = [this](const char16_t* part) {
    return QDir(maildir_ + QString::fromUtf16(part)).entryList(QDir::Files).size();
  };
  return static_cast<int>(count(u"/new") + count(u"/cur"));
}

bool Dovecot::Start() {
  WriteConfiguration();
  HandOverMail();
  process_.start(QStringLiteral("/usr/sbin/dovecot"),
                 {QStringLiteral("-F"), QStringLiteral("-c"),
                  folder_.filePath(QStringLiteral("dovecot.conf"))});
  return process_.waitForStarted(-1) && WaitFor([this] {
           QTcpSocket socket;
           socket.connectToHost(QHostAddress::LocalHost, port_);
           return socket.waitForConnected(100);
         });
}

void Dovecot::HandOverMail() const {
  if (!IsRoot()) return;
  QProcess::execute(QStringLiteral("chown"),
                    {QStringLiteral("-R"), QStringLiteral("mail:mail"), maildir_});
}

void Dovecot::WriteConfiguration() const {
  const QString tls =
      certificate_.isEmpty()
          ? QStringLiteral("ssl = no\n")
          : QStringLiteral("ssl = yes\nssl_cert = <%1\nssl_key = <%2\n").arg(certificate_, key_);
  const QString text =
      QStringLiteral(
          "protocols = pop3\n"
          "base_dir = %1/run\n"
          "log_path = %1/log\n"
          "disable_plaintext_auth = no\n"
          "auth_mechanisms = %4\n"
          "%5"
          "first_valid_uid = 1\n"
          "mail_location = maildir:%1/mail\n"
          "passdb {\n  driver = static\n  args = password={PLAIN}secret\n}\n"
          "userdb {\n  driver = static\n  args = uid=%6 gid=%7 home=%1\n}\n"
          "service pop3-login {\n"
          "  inet_listener pop3 {\n    address = 127.0.0.1\n    port = %2\n  }\n"
          "  inet_listener pop3s {\n    address = 127.0.0.1\n    port = %3\n    ssl = yes\n  }\n"
          "}\n"
          "service stats {\n  chroot =\n}\n")
          .arg(folder_.path())
          .arg(port_)
          .arg(certificate_.isEmpty() ? 0 : tlsPort_)
          .arg(Mechanisms)
          .arg(Users())
          .arg(IsRoot() ? QStringLiteral("mail") : QString::number(geteuid()))
          .arg(IsRoot() ? QStringLiteral("mail") : QString::number(getegid()));
  ASSERT_TRUE(Write(folder_.filePath(QStringLiteral("dovecot.conf")), text + tls));
}

SmtpSink::SmtpSink(const QStringList& arguments) : arguments_(arguments) {}

SmtpSink::~SmtpSink() {
  process_.terminate();
  process_.waitForFinished(-1);
}

bool SmtpSink::Start() {
  process_.setProcessChannelMode(QProcess::SeparateChannels);
  process_.start(QStringLiteral("/usr/bin/python3"),
                 QStringList{QStringLiteral(VORN_SMTP_SINK), folder_.path()} + arguments_);
  if (!process_.waitForStarted(-1) || !process_.waitForReadyRead(-1)) return false;
  port_ = process_.readLine().trimmed().toUShort();
  return port_ != 0;
}

QList<QByteArray> SmtpSink::Messages() const {
  QList<QByteArray> messages;
  const QDir folder(folder_.path());
  for (const QString& name : folder.entryList({QStringLiteral("*.msg")}, QDir::Files, QDir::Name)) {
    messages.append(ReadFile(folder.filePath(name)));
  }
  return messages;
}

}  // namespace vorn::test
