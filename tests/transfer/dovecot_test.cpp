// Receiving through `Pop` from Dovecot, a server that nobody here wrote: in clear, with APOP and
// SASL, and over TLS with certificates of every kind.

#include <QSslConfiguration>

#include "mail/store/mail_store.h"
#include "objects/trusted_certificates.h"
#include "support/real_servers.h"
#include "support/traffic.h"

namespace vorn {
namespace {

using test::Dovecot;
using test::TestCertificates;
using test::WaitFor;

class DovecotTest : public test::TrafficTest, public testing::WithParamInterface<bool> {};

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
  EXPECT_EQ(Receive().stored, sources.size()) << LastLog().toStdString();

  MailStore store(profile_.Get());
  for (const QVariant& serial : profile_.Select(QStringLiteral("SELECT SERIALID AS V FROM mail"))) {
    const QByteArray stored = store.LoadMessageSource(Disk(serial.toString())).ValueOr({});
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

class DovecotTlsTest : public test::TrafficTest {
 protected:
  void SetUp() override {
    saved_ = QSslConfiguration::defaultConfiguration();
    QSslConfiguration configuration = saved_;
    configuration.addCaCertificates(certificates_.Authority());
    QSslConfiguration::setDefaultConfiguration(configuration);
  }
  void TearDown() override { QSslConfiguration::setDefaultConfiguration(saved_); }

  std::unique_ptr<Dovecot> Serve(TestCertificates::Kind kind) {
    auto dovecot =
        std::make_unique<Dovecot>(certificates_.Certificate(kind), certificates_.Key(kind));
    dovecot->AddMessage("one", "Subject: one\n\ntext\n");
    EXPECT_TRUE(dovecot->Start());
    return dovecot;
  }
  // One session with the first account as it stands.
  ReceiveCounts ReceiveWith(const DiskPtr& account, const Dovecot& dovecot, Security security) {
    account->Let(QStringLiteral("InMailServer"), QStringLiteral("localhost"));
    account->Let(QStringLiteral("InMailServerSecurity"), static_cast<int>(security));
    account->Let(QStringLiteral("InMailServerPort"),
                 security == Security::Tls ? dovecot.TlsPort() : dovecot.Port());
    return Receive();
  }

  TestCertificates certificates_;
  QSslConfiguration saved_;
};

TEST_F(DovecotTlsTest, ATrustedCertificateIsTakenAndTheLoginIsNeverInClear) {
  const auto dovecot = Serve(TestCertificates::Kind::Valid);
  const DiskPtr account = profile_.AddAccount(1);
  EXPECT_EQ(ReceiveWith(account, *dovecot, Security::StartTls).stored, 1)
      << LastLog().toStdString();
  EXPECT_EQ(ReceiveWith(account, *dovecot, Security::Tls).known, 1) << LastLog().toStdString();
  // The other way of encrypting at each port fails with a sentence instead of hanging.
  account->Let(QStringLiteral("InMailServerPort"), dovecot->Port());
  EXPECT_EQ(Receive().errors, 1);
  EXPECT_TRUE(LastLog().contains(QStringLiteral("暗号化"))) << LastLog().toStdString();
}

TEST_F(DovecotTlsTest, ACertificateThatCannotBeVerifiedStopsTheSession) {
  const std::pair<TestCertificates::Kind, QString> cases[] = {
      {TestCertificates::Kind::SelfSigned, QStringLiteral("自身が署名")},
      {TestCertificates::Kind::WrongName, QStringLiteral("サーバー名のものではありません")},
      {TestCertificates::Kind::Expired, QStringLiteral("有効期限が切れています")}};
  const DiskPtr account = profile_.AddAccount(1);
  for (const auto& [kind, reason] : cases) {
    const auto dovecot = Serve(kind);
    for (const Security security : {Security::StartTls, Security::Tls}) {
      EXPECT_EQ(ReceiveWith(account, *dovecot, security).stored, 0);
      EXPECT_TRUE(LastLog().contains(reason)) << LastLog().toStdString();
      EXPECT_FALSE(traffic_.Control().RefusedCertificate().isEmpty());
    }
  }
}

TEST_F(DovecotTlsTest, AnExceptionCountsForOneServerAndOneCertificate) {
  const DiskPtr account = profile_.AddAccount(1);
  const QString key = QStringLiteral("InMailServerCertificates");
  const auto dovecot = Serve(TestCertificates::Kind::SelfSigned);
  EXPECT_EQ(ReceiveWith(account, *dovecot, Security::Tls).errors, 1);
  TrustedCertificates trusted;
  trusted.Add(QStringLiteral("elsewhere.example"), traffic_.Control().RefusedCertificate());
  account->Let(key, trusted.Stored());
  EXPECT_EQ(ReceiveWith(account, *dovecot, Security::Tls).errors, 1);
  trusted.Add(QStringLiteral("localhost"), traffic_.Control().RefusedCertificate());
  account->Let(key, trusted.Stored());
  EXPECT_EQ(ReceiveWith(account, *dovecot, Security::Tls).stored, 1) << LastLog().toStdString();
  const auto other = Serve(TestCertificates::Kind::Expired);
  EXPECT_EQ(ReceiveWith(account, *other, Security::Tls).errors, 1);
}

TEST_F(DovecotTlsTest, SaslMechanismsLogIn) {
  for (const char16_t* mechanisms :
       {u"cram-md5", u"plain login cram-md5", u"plain", u"login", u"scram-sha-256"}) {
    Dovecot dovecot(certificates_.Certificate(TestCertificates::Kind::Valid),
                    certificates_.Key(TestCertificates::Kind::Valid));
    dovecot.Mechanisms = QString::fromUtf16(mechanisms);
    dovecot.AddMessage("one", "Subject: one\n\ntext\n");
    ASSERT_TRUE(dovecot.Start());
    const DiskPtr account = profile_.AddAccount(1);
    for (const Security security : {Security::None, Security::Tls}) {
      EXPECT_EQ(ReceiveWith(account, dovecot, security).errors, 0)
          << dovecot.Mechanisms.toStdString() << LastLog().toStdString();
    }
    account->Let(QStringLiteral("InMailServerPassword"), QStringLiteral("wrong"));
    EXPECT_EQ(ReceiveWith(account, dovecot, Security::None).errors, 1);
    EXPECT_TRUE(LastLog().contains(QStringLiteral("パスワードを確認")));
    account->Let(QStringLiteral("Enabled"), false);
  }
}

}  // namespace
}  // namespace vorn
