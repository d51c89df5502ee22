#pragma once

#include <QByteArray>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

namespace vorn::test {

/// Certificates for the names of this machine, made by openssl for one test run.
class TestCertificates {
 public:
  enum class Kind { Valid, SelfSigned, WrongName, Expired };

  TestCertificates();
  /// The paths of a certificate and its key.
  QString Certificate(Kind kind) const;
  QString Key(Kind kind) const;
  /// The authority's certificate, to be trusted by whoever should trust `Valid`.
  QString Authority() const { return folder_.filePath(QStringLiteral("ca.pem")); }

 private:
  void OpenSsl(const QStringList& arguments) const;
  void Sign(const QString& name, const QString& subject, const QString& names,
            const QStringList& validity) const;

  QTemporaryDir folder_;
};

/// A Dovecot on free ports of 127.0.0.1 whose mail is a Maildir of the test's own. Any user may log
/// in with the password "secret". Needs root.
class Dovecot {
 public:
  /// With a certificate it offers STLS on `Port` and TLS on `TlsPort`.
  explicit Dovecot(const QString& certificate = {}, const QString& key = {});
  ~Dovecot();

  void AddMessage(const QByteArray& name, const QByteArray& source);
  /// Adds a message while the server runs.
  void Deliver(const QByteArray& name, const QByteArray& source);
  int Remaining() const;
  bool Start();
  quint16 Port() const { return port_; }
  quint16 TlsPort() const { return tlsPort_; }
  /// The mechanisms of AUTH, "plain login apop" when not set before `Start`.
  QString Mechanisms = QStringLiteral("plain login apop");

 private:
  void HandOverMail() const;
  void WriteConfiguration() const;

  QString certificate_;
  QString key_;
  QTemporaryDir folder_;
  QString maildir_;
  quint16 port_;
  quint16 tlsPort_;
  QProcess process_;
};

/// An aiosmtpd on a free port that keeps what it is given. It refuses recipients that begin with
/// "refused". See smtp_sink.py for its arguments.
class SmtpSink {
 public:
  explicit SmtpSink(const QStringList& arguments = {});
  ~SmtpSink();

  bool Start();
  quint16 Port() const { return port_; }
  /// Every message as it came over the wire, after a first line with its envelope.
  QList<QByteArray> Messages() const;

 private:
  QStringList arguments_;
  QTemporaryDir folder_;
  quint16 port_ = 0;
  QProcess process_;
};

}  // namespace vorn::test
