// What a server or a network can do wrong, one thing per test. Whatever it is, afterwards every
// message is in the store or on the server, none is stored twice, and the next session finishes.

#include "mail/store/mail_store.h"
#include "mail/store/outbox.h"
#include "storage/databases.h"
#include "support/loopback_pop3_server.h"
#include "support/loopback_smtp_server.h"
#include "support/traffic.h"

namespace vorn {
namespace {

using test::Fault;
using test::LoopbackPop3Server;
using test::LoopbackSmtpServer;

constexpr int kMessages = 6;

std::string NameOf(const QByteArray& command, int occurrence, const char* what) {
  return (command == "." ? "End" : command.toStdString()) + std::to_string(occurrence) + what;
}

// --- receiving ---------------------------------------------------------------------------------

struct ReceiveScenario {
  std::string name;
  std::function<void(LoopbackPop3Server&)> prepare;
};

void PrintTo(const ReceiveScenario& scenario, std::ostream* out) {
  *out << scenario.name;
}

std::vector<ReceiveScenario> ReceiveScenarios() {
  std::vector<ReceiveScenario> all;
  const std::pair<const char*, Fault> faults[] = {
      {"CutAtOnce", {Fault::Kind::Cut, {}, 1, 0, {}}},
      {"CutInside", {Fault::Kind::Cut, {}, 1, 20, {}}},
      {"Stalls", {Fault::Kind::Stall, {}, 1, 5, {}}},
      {"IsRefused", {Fault::Kind::Reply, {}, 1, 0, "-ERR not now\r\n"}},
      {"IsGarbage", {Fault::Kind::Reply, {}, 1, 0, "\x01\xFF what?\r\n"}}};
  const std::pair<QByteArray, int> places[] = {
      {"GREETING", 1}, {"CAPA", 1}, {"USER", 1}, {"PASS", 1}, {"LIST", 1}, {"UIDL", 1},
      {"RETR", 1},     {"RETR", 4}, {"DELE", 1}, {"DELE", 3}, {"QUIT", 1}};
  for (const auto& [command, occurrence] : places) {
    for (const auto& [what, fault] : faults) {
      Fault placed = fault;
      placed.command = command;
      placed.occurrence = occurrence;
      all.push_back({NameOf(command, occurrence, what),
                     [placed](LoopbackPop3Server& server) { server.Faults = {placed}; }});
    }
  }
  const auto add = [&all](const char* name, std::function<void(LoopbackPop3Server&)> prepare) {
    all.push_back({name, std::move(prepare)});
  };
  add("ByteByByte", [](LoopbackPop3Server& server) { server.ByteByByte = true; });
  add("NoPipelining", [](LoopbackPop3Server& server) { server.Pipelining = false; });
  add("NoUidl", [](LoopbackPop3Server& server) { server.OffersUidl = false; });
  add("NoTop", [](LoopbackPop3Server& server) { server.OffersTop = false; });
  add("OneUidlForAll", [](LoopbackPop3Server& server) {
    for (auto& message : server.Messages) message.uidl = "same";
  });
  add("HostileUidls", [](LoopbackPop3Server& server) {
    int number = 0;
    for (auto& message : server.Messages) {
      message.uidl = "'; DELETE * FROM mail; --" + QByteArray::number(++number);
    }
  });
  add("SizesTooSmall", [](LoopbackPop3Server& server) { server.SizeFactor = 0.01; });
  add("SizesTooLarge", [](LoopbackPop3Server& server) { server.SizeFactor = 100000; });
  add("LinesWithoutCr", [](LoopbackPop3Server& server) { server.BareLineFeeds = true; });
  add("ListNamesMessagesThatAreNotThere", [](LoopbackPop3Server& server) {
    server.Faults = {{Fault::Kind::Reply, "LIST", 1, 0,
                      "+OK\r\n1 10\r\n2 10\r\n99 10\r\n-4 10\r\nx y\r\n2 10\r\n.\r\n"}};
  });
  add("DropBetweenDeleAndQuit", [](LoopbackPop3Server& server) {
    server.Faults = {{Fault::Kind::Cut, "DELE", kMessages, 5, {}}};
  });
  add("CutWithoutPipelining", [](LoopbackPop3Server& server) {
    server.Pipelining = false;
    server.Faults = {{Fault::Kind::Cut, "RETR", 3, 30, {}}};
  });
  add("StallWithoutPipelining", [](LoopbackPop3Server& server) {
    server.Pipelining = false;
    server.Faults = {{Fault::Kind::Stall, "DELE", 2, 1, {}}};
  });
  return all;
}

class ReceiveScenarioTest : public test::TrafficTest,
                            public testing::WithParamInterface<ReceiveScenario> {
 protected:
  void SetUp() override {
    ASSERT_TRUE(server_.Listen());
    for (int i = 0; i < kMessages; ++i) {
      const QByteArray number = QByteArray::number(i);
      server_.AddMessage("uid" + number, "Subject: " + number + "\r\n\r\n.dot\r\ntext\r\n");
      subjects_.append(QString::number(i));
    }
    account_ = profile_.AddAccount(server_.Port(), true);
  }
  // Everything is somewhere, and nothing twice in the store.
  void ExpectAllThere() {
    QStringList stored = Subjects(4);
    QSet<QString> present(stored.begin(), stored.end());
    EXPECT_EQ(present.size(), stored.size()) << "stored twice";
    for (const test::ServerMessage& message : server_.Messages) {
      present.insert(QString::fromLatin1(message.source.mid(9, 1)));
    }
    EXPECT_EQ(present.size(), kMessages) << "lost";
  }

  LoopbackPop3Server server_;
  QStringList subjects_;
  DiskPtr account_;
};

TEST_P(ReceiveScenarioTest, NothingIsLostOrStoredTwice) {
  for (const bool deletesOnBreak : {false, true}) {
    server_.DeletesOnBreak = deletesOnBreak;
    GetParam().prepare(server_);
    GiveUpOnStalls(server_);
    Receive();
    ExpectAllThere();
  }
  server_.Faults.clear();
  server_.ByteByByte = false;
  GiveUpOnStalls(server_);
  Receive();
  ExpectAllThere();
  EXPECT_EQ(Subjects(4), subjects_);
  EXPECT_EQ(host_.levels.last(), 0) << LastLog().toStdString();
  EXPECT_TRUE(server_.Messages.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Pop3, ReceiveScenarioTest, testing::ValuesIn(ReceiveScenarios()),
                         [](const auto& scenario) { return scenario.param.name; });

// --- sending -----------------------------------------------------------------------------------

struct SendScenario {
  std::string name;
  Fault fault;
  bool serverHasIt;  ///< the server took the message although the program cannot know
};

void PrintTo(const SendScenario& scenario, std::ostream* out) {
  *out << scenario.name;
}

std::vector<SendScenario> SendScenarios() {
  std::vector<SendScenario> all;
  const std::pair<const char*, Fault> faults[] = {
      {"CutAtOnce", {Fault::Kind::Cut, {}, 1, 0, {}}},
      {"CutInside", {Fault::Kind::Cut, {}, 1, 2, {}}},
      {"Stalls", {Fault::Kind::Stall, {}, 1, 1, {}}},
      {"IsPutOff", {Fault::Kind::Reply, {}, 1, 0, "451 later\r\n"}},
      {"IsGarbage", {Fault::Kind::Reply, {}, 1, 0, "\x01\xFF what?\r\n"}}};
  for (const QByteArray command : {"GREETING", "EHLO", "MAIL", "RCPT", "DATA", ".", "QUIT"}) {
    for (const auto& [what, fault] : faults) {
      Fault placed = fault;
      placed.command = command;
      // What is answered instead of a reply was not accepted; a reply that got lost was.
      const bool accepted = command == "QUIT" || (command == "." && fault.text.isEmpty());
      all.push_back({NameOf(command, 1, what), placed, accepted});
    }
  }
  return all;
}

class SendScenarioTest : public test::TrafficTest,
                         public testing::WithParamInterface<SendScenario> {};

TEST_P(SendScenarioTest, AMessageWaitsUntilTheServerHasIt) {
  LoopbackSmtpServer server;
  ASSERT_TRUE(server.Listen());
  AddSendAccount(server.Port());
  GiveUpOnStalls(server);
  for (const char* subject : {"first", "second"}) {
    profile_.Store("From: me@example.com\r\nTo: a@example.com\r\nSubject: " + QByteArray(subject) +
                       "\r\n\r\n.\r\ntext\r\n.\r\n",
                   2);
  }
  server.Faults = {GetParam().fault};
  Send();
  // The fault hits the first message alone: the other goes on, unless the server is gone with it.
  const bool sent = GetParam().fault.command == "QUIT";
  const bool falledBack = GetParam().name == "EHLO1IsPutOff";  // an old server is greeted by HELO
  const QStringList waiting = Subjects(2);
  EXPECT_EQ(waiting, sent || falledBack ? QStringList() : QStringList{QStringLiteral("first")})
      << LastLog().toStdString();
  EXPECT_EQ(server.Messages().size(), waiting.isEmpty() || GetParam().serverHasIt ? 2 : 1);

  // Without a clear answer to the whole message nobody knows, and it is not sent again unasked.
  const bool isDoubtful = GetParam().fault.command == "." && GetParam().name != "End1IsPutOff";
  EXPECT_EQ(Outbox(profile_.Get(), MailDatabasePath(profile_.Get())).Doubtful()->size(),
            isDoubtful ? 1 : 0);
  server.Faults.clear();
  Send();
  EXPECT_EQ(Subjects(2), isDoubtful ? QStringList{QStringLiteral("first")} : QStringList());
  EXPECT_EQ(Subjects(3).size(), isDoubtful ? 1 : 2);
  EXPECT_EQ(server.Messages().size(), isDoubtful && !GetParam().serverHasIt ? 1 : 2);
  EXPECT_EQ(Rows(), 2);
}

INSTANTIATE_TEST_SUITE_P(Smtp, SendScenarioTest, testing::ValuesIn(SendScenarios()),
                         [](const auto& scenario) { return scenario.param.name; });

}  // namespace
}  // namespace vorn
