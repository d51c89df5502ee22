// Which servers are proposed for an address: the table's, a document's, and none in time.

#include "transfer/servers/server_lookup.h"

#include <gtest/gtest.h>

#include <QTcpServer>
#include <QTcpSocket>

#include "support/name_server.h"
#include "support/test_profile.h"
#include "transfer/servers/known_providers.h"

namespace vorn {
namespace {

using test::WaitFor;

std::string Words(const Endpoint& server) {
  return QStringLiteral("%1 %2 %3 %4")
      .arg(server.host)
      .arg(server.port)
      .arg(static_cast<int>(server.security))
      .arg(server.who.user)
      .toStdString();
}

TEST(KnownProvidersTest, GoByTheDomain) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"a.b@gmail.com", "pop.gmail.com 995 2 a.b@gmail.com", "smtp.gmail.com 465 2 a.b@gmail.com"},
      {"A@YAHOO.co.jp", "pop.mail.yahoo.co.jp 995 2 A", "smtp.mail.yahoo.co.jp 465 2 A"},
      {"me@aa.ocn.ne.jp", "pop.ocn.ne.jp 995 2 me@aa.ocn.ne.jp",
       "smtp.ocn.ne.jp 465 2 me@aa.ocn.ne.jp"},
      {"me@shop.sakura.ne.jp", "shop.sakura.ne.jp 995 2 me@shop.sakura.ne.jp",
       "shop.sakura.ne.jp 465 2 me@shop.sakura.ne.jp"},
      {"me@web.de", "pop3.web.de 995 2 me@web.de", "smtp.web.de 587 1 me@web.de"}};
  for (const auto& [address, receiving, sending] : cases) {
    const auto servers = KnownServers(QString::fromLatin1(address));
    ASSERT_TRUE(servers.has_value()) << address;
    EXPECT_EQ(Words(servers->receiving), receiving);
    EXPECT_EQ(Words(servers->sending), sending);
  }
  for (const char* unknown : {"a@notgmail.com", "a@x.gmail.com", "a@.sakura.ne.jp", "gmail.com",
                              "@gmail.com", "", "a@sakura.ne.jp", "a@gmail.com.example"}) {
    EXPECT_FALSE(KnownServers(QString::fromLatin1(unknown)).has_value()) << unknown;
  }
}

QByteArray Server(const QByteArray& kind, const QByteArray& host, const QByteArray& socket,
                  const QByteArray& login = "password-cleartext", const QByteArray& port = "995") {
  const QByteArray element = kind == "smtp" ? "outgoingServer" : "incomingServer";
  return '<' + element + " type=\"" + kind + "\"><hostname>" + host + "</hostname><port>" + port +
         "</port><socketType>" + socket + "</socketType><username>%EMAILLOCALPART%</username>" +
         "<authentication>" + login + "</authentication></" + element + '>';
}

QByteArray Document(const QByteArray& servers) {
  return "<?xml version=\"1.0\"?><clientConfig version=\"1.1\"><emailProvider id=\"x\">" + servers +
         "</emailProvider></clientConfig>";
}

TEST(ReadConfigurationTest, TakesWhatIsEncryptedAndWellFormedAlone) {
  const QByteArray good = Server("pop3", "pop.%EMAILDOMAIN%", "SSL");
  const std::pair<QByteArray, const char*> cases[] = {
      {Document(Server("imap", "i.x.example", "SSL") + good), "pop.x.example 995 2 me"},
      {Document(Server("pop3", "p.x.example", "plain") + good), "pop.x.example 995 2 me"},
      {Document(Server("pop3", "p.x.example", "SSL", "OAuth2") + good), "pop.x.example 995 2 me"},
      {Document(Server("pop3", "p.x.example/evil", "SSL") + good), "pop.x.example 995 2 me"},
      {Document(Server("pop3", "p.x.example", "SSL", "plain", "99999") + good),
       "pop.x.example 995 2 me"},
      {Document(Server("pop3", "p.x.example", "STARTTLS", "plain", "110") + good),
       "p.x.example 110 1 me"},
      {Document(good).chopped(20), " 0 0 "},
      {"<!DOCTYPE a [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;\">"
       "<!ENTITY c \"&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;\"><!ENTITY d \"&c;&c;&c;&c;&c;&c;&c;&c;&c;\">"
       "]><a>&d;&d;&d;&d;&d;" +
           good + "</a>",
       " 0 0 "},
      {"", " 0 0 "}};
  for (const auto& [document, receiving] : cases) {
    const MailServers servers = ReadConfiguration(document, QStringLiteral("me@x.example"));
    EXPECT_EQ(Words(servers.receiving), receiving) << document.toStdString();
    EXPECT_TRUE(servers.sending.host.isEmpty());
  }
  EXPECT_EQ(Words(ReadConfiguration(Document(Server("smtp", "s.x.example", "SSL")),
                                    QStringLiteral("me@x.example"))
                      .sending),
            "s.x.example 995 2 me");
}

TEST(ServerLookupTest, AsksOnePlaceAfterTheOtherAndTakesNoEndlessAnswer) {
  QTcpServer web;
  ASSERT_TRUE(web.listen(QHostAddress::LocalHost));
  QByteArray asked;
  QObject::connect(&web, &QTcpServer::newConnection, &web, [&] {
    QTcpSocket* socket = web.nextPendingConnection();
    QObject::connect(socket, &QTcpSocket::readyRead, socket, [&asked, socket] {
      const QByteArray request = socket->readAll();
      const QByteArray path = request.split(' ').value(1);
      asked += path;
      const QByteArray body =
          path == "/good" ? Document(Server("pop3", "pop.x.example", "SSL")) : QByteArray();
      if (path == "/silent") return;
      socket->write(path == "/missing" ? "HTTP/1.1 404 No\r\n" : "HTTP/1.1 200 OK\r\n");
      if (path == "/endless") {
        socket->write("\r\n" + QByteArray(200000, ' '));
        return;  // and goes on
      }
      socket->write("Content-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body);
    });
  });
  const auto place = [&](const char* path) {
    return QUrl(QStringLiteral("http://127.0.0.1:%1%2")
                    .arg(web.serverPort())
                    .arg(QString::fromLatin1(path)));
  };
  const QString address = QStringLiteral("me@x.example");
  ServerLookup lookup;
  QList<MailServers> found;
  QObject::connect(&lookup, &ServerLookup::Found, &lookup,
                   [&found](const MailServers& servers) { found.append(servers); });
  lookup.AskOnly({place("/missing"), place("/endless"), place("/good"), place("/never")});
  lookup.Start(address);
  ASSERT_TRUE(WaitFor([&] { return !found.isEmpty(); }));
  EXPECT_EQ(Words(found.takeFirst().receiving), "pop.x.example 995 2 me");
  EXPECT_EQ(asked, "/missing/endless/good");

  // One that never answers is given up by the user, or by the clock.
  lookup.AskOnly({place("/silent")});
  lookup.Start(address);
  ASSERT_TRUE(WaitFor([&] { return asked.endsWith("/silent"); }));
  lookup.Stop();
  EXPECT_FALSE(lookup.IsRunning());
  lookup.AskOnly({place("/silent")}, 500);
  lookup.Start(address);
  ASSERT_TRUE(WaitFor([&] { return !found.isEmpty(); }));
  EXPECT_FALSE(lookup.IsRunning()) << "the answer is not that of the first";
  EXPECT_TRUE(found.takeFirst().IsEmpty());

  for (const char* nowhere : {"me", "me@", "me@localhost", "me@a b.example", "me@x/y.example"}) {
    lookup.Start(QString::fromLatin1(nowhere));
    ASSERT_EQ(found.size(), 1) << nowhere;
    EXPECT_TRUE(found.takeFirst().IsEmpty());
  }
}

// Each look-up asks for all services anew; the safer one of each that has servers is taken.
TEST(ServerLookupTest, ADomainsRecordsAreAskedAtEachLookup) {
  test::NameServer names;
  if (!names.Listen()) GTEST_SKIP() << "the port of name servers needs a right";
  names.Records = {
      {"_pop3s._tcp.x.example", {{20, 995, "late.x.example"}, {5, 1995, "pop.x.example"}}},
      {"_pop3._tcp.x.example", {{1, 110, "plain.x.example"}}},
      {"_submissions._tcp.x.example", {{0, 0, "."}}},
      {"_submission._tcp.x.example", {{0, 587, "smtp.x.example"}}}};
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"me@nowhere.example", " 0 0 ", " 0 0 "},
      {"me@x.example", "pop.x.example 1995 2 me@x.example", "smtp.x.example 587 1 me@x.example"},
      {"you@x.example", "pop.x.example 1995 2 you@x.example",
       "smtp.x.example 587 1 you@x.example"}};
  ServerLookup lookup;
  lookup.AskOnly({QUrl(QStringLiteral("http://127.0.0.1:1/"))}, ServerLookup::kStepMs,
                 test::NameServer::Address());
  for (const auto& [address, receiving, sending] : cases) {
    std::optional<MailServers> found;
    const auto told = QObject::connect(&lookup, &ServerLookup::Found, &lookup,
                                       [&found](const MailServers& servers) { found = servers; });
    names.Asked.clear();
    lookup.Start(QString::fromLatin1(address));
    ASSERT_TRUE(WaitFor([&] { return found.has_value(); }));
    QObject::disconnect(told);
    EXPECT_EQ(Words(found->receiving), receiving);
    EXPECT_EQ(Words(found->sending), sending);
    EXPECT_FALSE(names.Asked.contains("_pop3._tcp.x.example")) << "without need";
  }
}

}  // namespace
}  // namespace vorn
