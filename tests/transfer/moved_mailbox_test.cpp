// Mailboxes whose names move, whole or in steps, and mail that came here by another way: nothing is
// stored twice, and nothing is deleted that is not stored whole.

#include <gtest/gtest.h>

#include "mail/archive/import_messages.h"
#include "mail/store/mail_store.h"
#include "mail/store/message_filing.h"
#include "objects/settings.h"
#include "support/loopback_pop3_server.h"
#include "support/traffic.h"

namespace vorn {
namespace {

using test::Fault;
using test::LoopbackPop3Server;
using test::ServerMessage;

class MovedMailboxTest : public test::TrafficTest {
 protected:
  void SetUp() override { ASSERT_TRUE(server_.Listen()); }

  // As servers hand them over: with a trace and an identifier.
  QByteArray Mail(int number) const {
    const QByteArray text = QByteArray::number(1000 + number);
    return "Received: from a by b\r\nMessage-ID: <" + text + "@example.jp>\r\nSubject: " + text +
           "\r\n\r\ntext" + QByteArray(hasOneSize_ ? 0 : number, 'x') + "\r\n";
  }
  void AddMail(int from, int count, const QByteArray& name = "uid") {
    for (int i = from; i < from + count; ++i) {
      server_.AddMessage(name + QByteArray::number(i), Mail(i));
    }
  }
  // As servers do that name messages by their places.
  void Number() {
    for (qsizetype i = 0; i < server_.Messages.size(); ++i) {
      server_.Messages[i].uidl = QByteArray::number(i + 1);
    }
  }
  void CutAt(const char* command, int time) {
    server_.Pipelining = false;
    server_.Faults = {{Fault::Kind::Cut, command, time, 0, {}}};
    Receive();
    server_.Faults.clear();
  }
  // How many were new.
  int Import(const QByteArrayList& mails) {
    QByteArray archive;
    for (const QByteArray& mail : mails) {
      archive += "From a@example.jp Mon Jan  1 00:00:00 2024\n" +
                 QByteArray(mail).replace("\r\n", "\n") + '\n';
    }
    const QString file = profile_.Folder() + QStringLiteral("/old.mbox");
    test::WriteFile(file, archive);
    const ImportOutcome outcome = ImportMessages(profile_.Get(), file, {});
    EXPECT_TRUE(outcome.complete);
    return outcome.counts.imported;
  }
  // As another program receives it at this moment, through another name of the server.
  Result<MailStore::Received> StoreElsewhere(const QByteArray& mail) {
    Disk message(profile_.Get().Data.NewSerialID(QStringLiteral("mail_")));
    message.Let(QStringLiteral("MessageID"),
                QStringLiteral("user@localhost/") + message.SerialID());
    message.Let(QStringLiteral("process"), static_cast<int>(kStatusReceived));
    return MailStore(profile_.Get()).StoreReceived(message, mail);
  }
  // Every message once.
  void ExpectStored(int count) {
    const QStringList subjects = Subjects(4);
    EXPECT_EQ(subjects.size(), count) << subjects.join(u' ').toStdString();
    EXPECT_EQ(QSet<QString>(subjects.begin(), subjects.end()).size(), count);
  }
  void EraseAll() {
    ASSERT_TRUE(SetDust(profile_.Get(), Serials(), true));
    ASSERT_TRUE(EmptyDust(profile_.Get()));
  }

  bool hasOneSize_ = false;
  LoopbackPop3Server server_;
};

// Mail is copied to the new server over days, while new mail arrives there.
TEST_F(MovedMailboxTest, AMoveInStepsDoublesNothing) {
  AddMail(0, 6);
  profile_.AddAccount(server_.Port());
  EXPECT_EQ(Receive().stored, 6);
  server_.Messages.clear();
  AddMail(6, 8, "new");  // more than there was
  EXPECT_EQ(Receive().stored, 8);
  AddMail(0, 3, "moved");
  EXPECT_EQ(Receive().known, 8 + 3);
  AddMail(3, 3, "moved");
  CutAt("RETR", 2);
  AddMail(14, 1, "new");
  EXPECT_EQ(Receive().stored, 1);
  ExpectStored(15);
}

// A session that compares is cut short; the next one goes on with it.
TEST_F(MovedMailboxTest, AComparisonThatWasCutIsMadeUpFor) {
  AddMail(0, 5);
  const DiskPtr account = profile_.AddAccount(server_.Port(), true);
  CutAt("DELE", 2);
  for (const char* name : {"a", "b", "c"}) {
    for (qsizetype i = 0; i < server_.Messages.size(); ++i) {
      server_.Messages[i].uidl = name + QByteArray::number(i);
    }
    if (*name != 'c') CutAt("RETR", 1);
  }
  EXPECT_EQ(Receive().stored, 0);
  EXPECT_TRUE(server_.Messages.isEmpty());
  // New mail stands first, where names are places.
  account->Let(QStringLiteral("InMailServerDelete"), false);
  AddMail(5, 4);
  Number();
  EXPECT_EQ(Receive().stored, 4);
  server_.Messages.prepend({{}, Mail(9)});
  Number();
  CutAt("RETR", 3);
  Receive();
  ExpectStored(10);
  // The same where mail is deleted, and asked for before the headers tell that names move.
  hasOneSize_ = true;
  server_.Messages.clear();
  server_.Pipelining = true;
  AddMail(11, 3);
  Number();
  EXPECT_EQ(Receive().stored, 3);
  server_.Messages.prepend({{}, Mail(10)});
  Number();
  account->Let(QStringLiteral("InMailServerDelete"), true);
  EXPECT_EQ(Receive().stored, 1);
  EXPECT_TRUE(server_.Messages.isEmpty());
  ExpectStored(14);
}

// From another mail program by an archive, and through another name of the same server.
TEST_F(MovedMailboxTest, WhatCameByAnotherWayIsNotReceivedAgain) {
  AddMail(0, 4);
  ASSERT_EQ(Import({Mail(0), "Status: RO\r\n" + Mail(1)}), 2);
  profile_.AddAccount(server_.Port());
  // One is refused at first, and is looked for by the next session as well.
  server_.Faults = {{Fault::Kind::Reply, "RETR", 1, 0, "-ERR busy\r\n"}};
  EXPECT_EQ(Receive().stored, 2);
  server_.Faults.clear();
  EXPECT_EQ(Receive().stored, 0);
  server_.Messages.removeAt(1);
  const DiskPtr other = profile_.AddAccount(server_.Port());
  other->Let(QStringLiteral("InMailServer"), QStringLiteral("localhost"));
  for (int check = 0; check < 2; ++check) EXPECT_EQ(Receive().stored, 0);
  ExpectStored(4);
  AddMail(4, 2);
  EXPECT_EQ(Receive().stored, 2) << "nor what comes later";
  ExpectStored(6);
  server_.ForgetReceived();
  other->Let(QStringLiteral("InMailServerDelete"), true);
  EXPECT_EQ(Receive().stored, 0);
  EXPECT_TRUE(server_.Messages.isEmpty());
  EXPECT_EQ(server_.Count("RETR"), 5) << "nothing is deleted unseen";
}

// Whatever the mailbox is known to hold: the engine is asked when a message is stored.
TEST_F(MovedMailboxTest, WhatIsStoredMeanwhileUnderAnyNameIsNotStoredAgain) {
  using Received = MailStore::Received;
  AddMail(0, 3);
  const DiskPtr account = profile_.AddAccount(server_.Port());
  EXPECT_EQ(Receive().stored, 3);
  EXPECT_EQ(Import({"X-Mozilla-Status: 0001\r\n" + Mail(1), Mail(3)}), 1);
  EXPECT_EQ(StoreElsewhere(Mail(4)), Received::Stored);
  EXPECT_EQ(StoreElsewhere("Status: O\r\n" + Mail(4)), Received::Alike);
  EXPECT_EQ(StoreElsewhere(Mail(4).replace("text", "text ")), Received::Stored);
  EXPECT_EQ(StoreElsewhere(Mail(4).replace("text", "\ttext")), Received::Stored);
  AddMail(3, 2);
  EXPECT_EQ(Receive().known, 3 + 2);
  const int asked = server_.Count("RETR");
  EXPECT_EQ(Receive().stored, 0);
  EXPECT_EQ(server_.Count("RETR"), asked) << "it is known by its name from now on";
  EXPECT_EQ(Subjects(4).size(), 5 + 2);
  // What another program has goes from the server as well.
  account->Let(QStringLiteral("InMailServerDelete"), true);
  EXPECT_EQ(Receive().stored, 0);
  EXPECT_TRUE(server_.Messages.isEmpty());
  // One that cannot be read may be another; one without an identifier of its own is.
  EXPECT_EQ(StoreElsewhere(Mail(5)), Received::Stored);
  ASSERT_TRUE(
      Execute("UPDATE long_binary SET DATA = 'x' WHERE ID = (SELECT MAX(ID) FROM "
              "long_binary)"));
  EXPECT_EQ(StoreElsewhere(Mail(5)), Received::Stored);
  EXPECT_EQ(StoreElsewhere("Subject: report\r\n\r\n"), Received::Stored);
  EXPECT_EQ(StoreElsewhere("Subject: report\r\n\r\n"), Received::Stored);
}

// The engine gives new messages the places of those that were erased last.
TEST_F(MovedMailboxTest, WhatTookTheErasedOnesPlacesIsKnown) {
  Settings(profile_.Get()).Bag()->Let(QStringLiteral("Careful"), false);
  profile_.AddAccount(server_.Port());
  const auto add = [this](int from, const QByteArray& name) {
    server_.Messages.clear();
    for (int i = from; i < from + 3; ++i) {
      const QByteArray number = QByteArray::number(i);
      server_.AddMessage(name + number, "Subject: " + number + "\r\n\r\ntext\r\n");
    }
    return Receive().stored;
  };
  EXPECT_EQ(add(0, "a"), 3);
  EXPECT_EQ(add(0, "b"), 0);
  EraseAll();
  EXPECT_EQ(add(3, "c"), 3);
  EXPECT_EQ(add(3, "d"), 0);
  ExpectStored(3);
}

// Without a trace alike is not the same: a list's copy, one's own post that comes back, reports.
TEST_F(MovedMailboxTest, WhatIsOnlyAlikeIsStored) {
  const QByteArray direct = "Message-ID: <m@x>\r\nSubject: s\r\n\r\ntext\r\n";
  profile_.AddAccount(server_.Port());
  server_.AddMessage("direct", direct);
  EXPECT_EQ(Receive().stored, 1);
  server_.Messages = {{"list", "List-Id: l\r\n" + direct},
                      {"back", "Received: x\r\nList-Id: l\r\n" + direct}};
  EXPECT_EQ(Receive().stored, 2);
  // Raw subjects are found in the code that the text declares.
  server_.Messages = {{"a",
                       "Received: x\r\nMessage-ID: <k@x>\r\nSubject: \xD0\xD2\xC9\xD7\xC5\xD4\r\n"
                       "Content-Type: text/plain; charset=koi8-r\r\n\r\n\xD0\xD2\r\n"}};
  EXPECT_EQ(Receive().stored, 1);
  server_.Messages = {{"b", "X-More: 1\r\n" + server_.Messages[0].source}};
  EXPECT_EQ(Receive().stored, 0);
}

// Nothing is noted in a new mail file, while names that were erased are known from the old one.
TEST_F(MovedMailboxTest, ANewFileBelievesNoNames) {
  hasOneSize_ = true;
  AddMail(0, 3);
  Number();
  const DiskPtr account = profile_.AddAccount(server_.Port());
  EXPECT_EQ(Receive().stored, 3);
  EraseAll();
  Context& context = profile_.Get();
  context.Session->Let(QStringLiteral("History"), context.Session->Text(u"Mail"));
  context.Session->Let(QStringLiteral("Mail"), profile_.Folder() + QStringLiteral("/other.mbx"));
  for (const bool deletes : {false, true}) {
    account->Let(QStringLiteral("InMailServerDelete"), deletes);
    server_.Messages.clear();
    AddMail(deletes ? 8 : 2, 4);
    Number();
    EXPECT_EQ(Receive().stored, deletes ? 4 : 3) << "what was erased stays away";
  }
  EXPECT_TRUE(server_.Messages.isEmpty());
  ExpectStored(7);
}

// The account is changed while its session runs.
TEST_F(MovedMailboxTest, ASessionDeletesAsItBegan) {
  hasOneSize_ = true;
  AddMail(0, 3);
  Number();
  const DiskPtr account = profile_.AddAccount(server_.Port());
  EXPECT_EQ(Receive().stored, 3);
  server_.Messages.clear();
  AddMail(3, 3);
  Number();
  server_.OnCommand = [&account](const QByteArray& line) {
    if (line == "LIST") account->Let(QStringLiteral("InMailServerDelete"), true);
  };
  Receive();
  EXPECT_EQ(server_.Messages.size(), 3);
  EXPECT_EQ(Receive().stored, 3);
  EXPECT_TRUE(server_.Messages.isEmpty());
  ExpectStored(6);
  // Who takes the word back while mail is fetched keeps it there, and who deletes the account as
  // well.
  AddMail(6, 2, "kept");
  server_.OnCommand = [&account](const QByteArray& line) {
    if (line.startsWith("RETR")) account->Let(QStringLiteral("InMailServerDelete"), false);
  };
  EXPECT_EQ(Receive().stored, 2);
  EXPECT_EQ(server_.Messages.size(), 2);
  account->Let(QStringLiteral("InMailServerDelete"), true);
  AddMail(8, 1, "kept");
  server_.OnCommand = [&](const QByteArray& line) {
    if (line.startsWith("RETR")) profile_.Get().Objects.Remove(account->Serial());
  };
  EXPECT_EQ(Receive().stored, 1);
  EXPECT_EQ(server_.Messages.size(), 3);
}

// Where contents are all that messages are told by, what was torn off proves nothing.
// The header tells that it is another one, where name and size are those of a stored message.
TEST_F(MovedMailboxTest, WhatGotTheNameOfAStoredMessageOfItsSizeIsReceivedBeforeItIsDeleted) {
  hasOneSize_ = true;
  AddMail(0, 2);
  const DiskPtr account = profile_.AddAccount(server_.Port());
  EXPECT_EQ(Receive().stored, 2);
  account->Let(QStringLiteral("InMailServerDelete"), true);
  server_.Messages[1].source = Mail(5);
  EXPECT_EQ(Receive().stored, 1);
  EXPECT_TRUE(server_.Messages.isEmpty());
  ExpectStored(3);
}

TEST_F(MovedMailboxTest, WithoutIdentifiersNothingTornOffIsDeleted) {
  server_.OffersUidl = false;
  server_.Pipelining = false;
  profile_.AddAccount(server_.Port())->Let(QStringLiteral("InMailServerDelete"), true);
  AddMail(0, 3);
  for (int time = 1; time <= 3; ++time) {
    server_.Faults.append({Fault::Kind::Reply, "RETR", time, 0, "+OK\r\n.\r\n"});
  }
  Receive();
  Receive();
  EXPECT_EQ(server_.Messages.size(), 3);
  server_.Faults.clear();
  Receive();
  EXPECT_TRUE(server_.Messages.isEmpty());
  EXPECT_EQ(Subjects(4).size(), 4) << "the three, and the empty one";
}

// A server that gives less than it said, once or always, and one that overstates what is small.
TEST_F(MovedMailboxTest, ATornOffMessageIsDeletedWhenItComesTheSameTwice) {
  const QByteArray large = Mail(0) + QByteArray(4000, 'x') + "\r\n";
  const QByteArray small = Mail(0) + QByteArray(200, 'x') + "\r\n";
  const QByteArray withHole = Mail(0) + QByteArray(2000, 'x') + QByteArray(2000, '\0') + "\r\n";
  const DiskPtr account = profile_.AddAccount(server_.Port());
  struct Case {
    QByteArray whole;
    QByteArray given;
    bool always;
    bool deletes;
  };
  QList<Case> cases;
  for (const bool always : {false, true}) {
    for (const bool deletes : {false, true}) {
      cases += {{large, large.first(200) + "\r\n", always, deletes},
                {large, withHole, always, deletes},
                {small, small.first(60) + "\r\n", always, deletes},
                {small, "-ERR no such file\r\n", always, deletes},
                {small, "", always, deletes}};
    }
  }
  for (const auto& [whole, given, always, deletes] : std::as_const(cases)) {
    const QByteArray torn = "+OK\r\n" + given + ".\r\n";
    SCOPED_TRACE(
        QStringLiteral("%1 %2 %3").arg(given.size()).arg(always).arg(deletes).toStdString());
    account->Let(QStringLiteral("InMailServerDelete"), deletes);
    server_.Messages = {{deletes ? "d" : "k", whole}};
    // What looks like the answer to another question is asked for once more.
    server_.Faults = {{Fault::Kind::Reply, "RETR", 1, 0, torn},
                      {Fault::Kind::Reply, "RETR", 2, 0, torn}};
    EXPECT_EQ(Receive().stored, 1);
    EXPECT_EQ(server_.Messages.size(), 1);
    if (!always) server_.Faults.clear();
    EXPECT_EQ(Receive().stored, always ? 0 : 1);
    // A header alone, or less, is never believed.
    const bool staysThere = !deletes || (always && !given.contains("\r\n\r\n"));
    EXPECT_EQ(server_.Messages.size(), staysThere ? 1 : 0);
    server_.Faults.clear();
    EXPECT_EQ(Subjects(4).size(), always ? 1 : 2);
    EraseAll();
    Settings(profile_.Get()).Bag()->Let(QStringLiteral("Careful"), false);
    server_.Messages.clear();
    Receive();
  }
  // What another account has just got in half as well is not the same answer a second time.
  const DiskPtr other = profile_.AddAccount(server_.Port());
  other->Let(QStringLiteral("InMailServer"), QStringLiteral("localhost"));
  other->Let(QStringLiteral("InMailServerDelete"), true);
  const QByteArray traced = Mail(7) + QByteArray(4000, 'x') + "\r\n";
  server_.Messages = {{"t", traced}};
  const QByteArray half = "+OK\r\n" + traced.first(200) + "\r\n.\r\n";
  server_.Faults = {{Fault::Kind::Reply, "RETR", 1, 0, half}};
  Receive();
  EXPECT_EQ(server_.Messages.size(), 1);
  server_.Faults.clear();
  Receive();
  EXPECT_EQ(Subjects(4).size(), 2) << "the half and the whole one";
  EXPECT_TRUE(server_.Messages.isEmpty());
  // The second time it is.
  account->Let(QStringLiteral("InMailServerDelete"), false);
  const QByteArray always = Mail(8) + QByteArray(4000, 'x') + "\r\n";
  server_.Messages = {{"a", always}};
  server_.Faults = {
      {Fault::Kind::Reply, "RETR", 1, 0, "+OK\r\n" + always.first(200) + "\r\n.\r\n"}};
  Receive();
  EXPECT_EQ(server_.Messages.size(), 1);
  Receive();
  EXPECT_TRUE(server_.Messages.isEmpty());
  server_.Faults.clear();
  profile_.Get().Objects.Remove(other->Serial());
  EraseAll();
  // A header alone is asked for once more at once, since it may be the answer to another command.
  Settings(profile_.Get()).Bag()->Let(QStringLiteral("Careful"), true);
  server_.AddMessage("h", "Subject: all\r\n\r\n");
  server_.AddMessage("after", Mail(1));
  server_.SizeFactor = 200;
  account->Let(QStringLiteral("InMailServerDelete"), true);
  Receive();
  Receive();
  ASSERT_EQ(server_.Messages.size(), 1) << "all that a server overstates is believed but this";
  EXPECT_EQ(server_.Messages[0].uidl, "h");
  EXPECT_EQ(Subjects(4).size(), 2);
}

}  // namespace
}  // namespace vorn
