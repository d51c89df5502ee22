// Which messages of a server are known, by whatever names it gives them.

#include "mail/store/mail_store.h"
#include "mail/store/message_filing.h"
#include "objects/settings.h"
#include "storage/databases.h"
#include "storage/known_damage.h"
#include "transfer/receive_fixture.h"

namespace vorn {
namespace {

using test::Fault;
using test::LoopbackPop3Server;
using test::WaitFor;

class KnownMailTest : public ReceiveTest {};

// What any of the profile's mail files holds is known.
TEST_F(KnownMailTest, MailOfAnyFileOfTheProfileIsKnown) {
  AddMessages(2);
  profile_.AddAccount(server_.Port());
  ASSERT_EQ(Receive().stored, 2);
  Context& context = profile_.Get();
  const QString other = profile_.Folder() + QStringLiteral("other.mbx");
  ASSERT_TRUE(OpenDatabase(context, DatabaseKind::MailByPath, other));
  context.Data.Close();
  const QString first = context.Session->Text(u"Mail");
  const QString lineBreak = QStringLiteral("\r\n");
  for (const QString& files : {first + lineBreak + other, other + lineBreak + first}) {
    context.Session->Let(QStringLiteral("Mail"), files);
    const ReceiveCounts counts = Receive();
    EXPECT_EQ(counts.known, 2);
    EXPECT_EQ(counts.stored, 0);
    EXPECT_EQ(server_.Count("RETR"), 2) << "nothing is fetched again";
  }
}

// A server that counts its messages anew names new mail as old mail was called.
TEST_F(KnownMailTest, ANameThatIsGivenAnewIsNewMail) {
  const auto stored = [this](const QString& subject) {
    return profile_
        .Select(QStringLiteral("SELECT SERIALID AS V FROM mail WHERE FIELD_SUBJECT = '%1'")
                    .arg(subject))
        .size();
  };
  AddMessages(2);
  const DiskPtr account = profile_.AddAccount(server_.Port(), true);
  EXPECT_EQ(Receive().stored, 2);
  for (const char* subject : {"second", "as long", "as that", "as this"}) {
    server_.AddMessage("uid0", QByteArray("Subject: ") + subject + "\r\n\r\n\r\n");
    EXPECT_EQ(Receive().stored, 1) << subject;
    EXPECT_TRUE(server_.Messages.isEmpty());
  }
  // Also when somebody else has deleted the old one, and when mail is kept on the server.
  account->Let(QStringLiteral("InMailServerDelete"), false);
  server_.AddMessage("uid0", "Subject: third\r\n\r\n\r\n");
  EXPECT_EQ(Receive().stored, 1);
  server_.Messages.clear();
  Receive();
  server_.AddMessage("uid0", "Subject: fourth\r\n\r\n\r\n");
  EXPECT_EQ(Receive().stored, 1);
  for (const char* subject : {"0", "second", "third", "fourth"}) {
    EXPECT_EQ(stored(QString::fromLatin1(subject)), 1) << subject;
  }
  // From then on it is known, and fetched no more.
  server_.ForgetReceived();
  EXPECT_EQ(Receive().known, 1);
  EXPECT_EQ(server_.Count("RETR"), 0);
  EXPECT_EQ(Rows(), 8);
}

// What was to be deleted and was not is told by its header, or fetched where that does not tell.
TEST_F(KnownMailTest, AMessageThatComesBackIsNotStoredTwice) {
  server_.AddMessage("a", "Received: x\r\nMessage-ID: <a@x>\r\nSubject: a\r\n\r\ntext\r\n");
  server_.AddMessage("b", "Subject: b\r\n\r\n\r\n");
  const DiskPtr account = profile_.AddAccount(server_.Port(), true);
  const QList<test::ServerMessage> all = server_.Messages;
  EXPECT_EQ(Receive().stored, 2);
  for (const bool offersTop : {true, false, true}) {
    server_.Messages = all;
    // Some servers write into the header what they know of a message.
    server_.Messages[1].source.prepend("Status: RO\r\n");
    server_.OffersTop = offersTop;
    server_.ForgetReceived();
    const ReceiveCounts again = Receive();
    EXPECT_EQ(again.stored, 0);
    EXPECT_EQ(again.known, 2);
    EXPECT_EQ(server_.Count("RETR"), offersTop ? 1 : 2);
    EXPECT_TRUE(server_.Messages.isEmpty());
  }
  // Where mail is kept from now on, names are believed once they were compared.
  account->Let(QStringLiteral("InMailServerDelete"), false);
  server_.Messages = all;
  EXPECT_EQ(Receive().known, 2);
  server_.ForgetReceived();
  EXPECT_EQ(Receive().known, 2);
  EXPECT_EQ(server_.Count("TOP") + server_.Count("RETR"), 0);
  // Another server under the same name: new identifiers, and a field more.
  server_.Messages = {{"new", "X-Moved: 1\r\n" + all[0].source}, {"newer", all[1].source}};
  EXPECT_EQ(Receive().known, 2);
  EXPECT_EQ(Rows(), 2);
}

// Devices repeat their identifiers and tell all in the subject; a list's copy has the direct one's.
TEST_F(KnownMailTest, OneMessageIdIsNoProofOfOneMessage) {
  profile_.AddAccount(server_.Port(), true);
  int stored = 0;
  for (const char* id : {"<>", "", "<ups@local>"}) {
    for (const bool offersTop : {true, false}) {
      server_.OffersTop = offersTop;
      for (const char* subject : {"power lost", "power back"}) {
        server_.AddMessage("1", QByteArray("Message-ID: ") + id + "\r\nSubject: " + subject + ' ' +
                                    QByteArray::number(offersTop) + "\r\n\r\nalarm\r\n");
        EXPECT_EQ(Receive().stored, 1) << id << subject;
        EXPECT_TRUE(server_.Messages.isEmpty());
        EXPECT_EQ(Rows(), ++stored);
      }
    }
  }
}

// What an interrupted session did not delete comes back under other names from another server.
TEST_F(KnownMailTest, AMoveAfterAnInterruptedDeletionDoublesNothing) {
  AddMessages(3);
  profile_.AddAccount(server_.Port(), true);
  server_.Pipelining = false;
  server_.Faults = {{Fault::Kind::Cut, "DELE", 2, 0, {}}};
  EXPECT_EQ(Receive().stored, 3);
  server_.Faults.clear();
  for (test::ServerMessage& message : server_.Messages) message.uidl += " moved";
  EXPECT_EQ(Receive().stored, 0);
  EXPECT_TRUE(server_.Messages.isEmpty());
  server_.AddMessage("new", "Subject: new\r\n\r\n\r\n");
  // Nor where its name is another one's by then.
  server_.Faults = {{Fault::Kind::Cut, "QUIT", 1, 0, {}}};
  EXPECT_EQ(Receive().stored, 1);
  server_.Faults.clear();
  server_.Messages = {{"new", "Subject: newer\r\n\r\n\r\n"}, {"x", "Subject: new\r\n\r\n\r\n"}};
  EXPECT_EQ(Receive().stored, 1);
  EXPECT_EQ(Rows(), 5);
}

// The names of what an interrupted session stored are given to other messages of the same size
// before it is deleted, with the same body or the same Message-ID, too.
TEST_F(KnownMailTest, NothingIsDeletedByItsNameAlone) {
  const auto message = [](const char* id, const char* subject, const char* text) {
    return QByteArray("Message-ID: <") + id + "@x>\r\nSubject: " + subject + "\r\n\r\n" + text +
           "\r\n";
  };
  profile_.AddAccount(server_.Port(), true);
  server_.Pipelining = false;
  for (const char* command : {"DELE", "RETR"}) {
    server_.Messages = {{"1", message("a", "one", "text")},
                        {"2", message("b", "two", "text")},
                        {"3", message("c", "3rd", "text")}};
    server_.Faults = {{Fault::Kind::Cut, command, *command == 'D' ? 1 : 3, 0, {}}};
    Receive();
    server_.Faults.clear();
    server_.Messages = {{"1", message("d", "uno", "text")},
                        {"2", message("b", "due", "word")},
                        {"3", message("c", "3rd", "text")}};
    server_.OffersTop = *command == 'D';
    Receive();
    EXPECT_TRUE(server_.Messages.isEmpty());
    EXPECT_EQ(Subjects(4),
              QStringList({QStringLiteral("3rd"), QStringLiteral("due"), QStringLiteral("one"),
                           QStringLiteral("two"), QStringLiteral("uno")}))
        << command;
    ASSERT_TRUE(SetDust(profile_.Get(), Serials(), true));
    ASSERT_TRUE(EmptyDust(profile_.Get()));
    Settings(profile_.Get()).Bag()->Let(QStringLiteral("Careful"), false);
  }
}

// A server that numbers its messages anew in each session: what is told apart is what they hold.
TEST_F(KnownMailTest, MessagesThatMoveUpInTheListAreTheSame) {
  const auto number = [this] {
    for (qsizetype i = 0; i < server_.Messages.size(); ++i) {
      server_.Messages[i].uidl = QByteArray::number(i + 1);
    }
  };
  for (const char* subject : {"one", "second", "the third", "number four"}) {
    server_.AddMessage("x", QByteArray("Subject: ") + subject + "\r\n\r\n\r\n");
  }
  number();
  const DiskPtr account = profile_.AddAccount(server_.Port());
  EXPECT_EQ(Receive().stored, 4);
  // One goes and another one comes.
  server_.Messages.removeFirst();
  server_.AddMessage("x", "Subject: a fifth one\r\n\r\n\r\n");
  number();
  Receive();
  Receive();  // the names are known to tell nothing
  EXPECT_EQ(Rows(), 5);
  // One more that nothing but its contents tells from another: it is looked at before the deletion.
  server_.Messages.removeFirst();
  server_.AddMessage("x", "Subject: no sixth so\r\n\r\n\r\n");
  number();
  // The server deletes half and closes.
  account->Let(QStringLiteral("InMailServerDelete"), true);
  server_.Pipelining = false;
  server_.DeletesOnBreak = true;
  server_.Faults = {{Fault::Kind::Cut, "DELE", 3, 0, {}}};
  Receive();
  server_.Faults.clear();
  ASSERT_FALSE(server_.Messages.isEmpty());
  number();
  EXPECT_EQ(Receive().stored, 0);
  EXPECT_TRUE(server_.Messages.isEmpty());
  const QStringList subjects = Subjects(4);
  EXPECT_EQ(subjects.size(), 6);
  EXPECT_EQ(QSet<QString>(subjects.begin(), subjects.end()).size(), 6);
}

// Two mailboxes that seem one: tunnels end at one host, and the servers behind give the same names.
TEST_F(KnownMailTest, MailboxesBehindTwoPortsAreTwo) {
  LoopbackPop3Server other;
  ASSERT_TRUE(other.Listen());
  AddMessages(3);
  for (int i = 0; i < 3; ++i) {
    other.AddMessage("uid" + QByteArray::number(i),
                     "Subject: other " + QByteArray::number(i) + "\r\n\r\n\r\n");
  }
  profile_.AddAccount(server_.Port());
  EXPECT_EQ(Receive().stored, 3);
  profile_.AddAccount(other.Port(), true);
  EXPECT_EQ(Receive().stored, 3);
  EXPECT_EQ(Rows(), 6);
  EXPECT_EQ(server_.Messages.size(), 3);
  server_.ForgetReceived();
  EXPECT_EQ(Receive().stored, 0);
  EXPECT_EQ(server_.Count("RETR"), 0) << "each has a listing of its own";
}

// A listing that lacks what is there, and one without identifiers.
TEST_F(KnownMailTest, AnOddListingDoublesNothing) {
  AddMessages(4);
  profile_.AddAccount(server_.Port());
  EXPECT_EQ(Receive().stored, 4);
  const QList<test::ServerMessage> all = server_.Messages;
  server_.Messages.clear();
  Receive();
  server_.Messages = all;
  EXPECT_EQ(Receive().stored, 0);
  server_.Faults = {
      {Fault::Kind::Reply, "UIDL", 1, 0, "+OK\r\n1 uid0\r\n2 uid1\r\n4 uid3\r\n.\r\n"}};
  EXPECT_EQ(Receive().stored, 0) << "a message without a name";
  server_.Faults.clear();
  server_.Messages[1].uidl = "uid0";
  EXPECT_EQ(Receive().stored, 0) << "two of one name";
  server_.Messages = all;
  EXPECT_EQ(Receive().stored, 0);
  // Two of one name from the beginning, of which one stays; and new names for all.
  server_.AddMessage("pair", "Subject: first of two\r\n\r\n\r\n");
  server_.AddMessage("pair", "Subject: second of two\r\n\r\n\r\n");
  EXPECT_EQ(Receive().stored, 2);
  server_.Messages.removeLast();
  EXPECT_EQ(Receive().stored, 0) << "it has a name of its own now";
  for (test::ServerMessage& message : server_.Messages) message.uidl += " moved";
  EXPECT_EQ(Receive().stored, 0);
  server_.ForgetReceived();
  EXPECT_EQ(Receive().known, 5);
  EXPECT_EQ(server_.Count("RETR"), 0) << "the new names count from then on";
  server_.OffersUidl = false;
  const ReceiveCounts refused = Receive();
  EXPECT_EQ(refused.stored, 0);
  EXPECT_EQ(refused.errors, 1);
  EXPECT_EQ(Rows(), 6);
}

// What was erased is known by what it held as well, and by the files that were used before.
TEST_F(KnownMailTest, WhatWasHereOnceStaysKnown) {
  AddMessages(3);
  for (test::ServerMessage& message : server_.Messages) {
    message.source.prepend("Received: x\r\nMessage-ID: <" + message.uidl + "@x>\r\n");
  }
  profile_.AddAccount(server_.Port());
  EXPECT_EQ(Receive().stored, 3);
  const QList<QVariant> rows = profile_.Select(QStringLiteral("SELECT SERIALID AS V FROM mail"));
  ASSERT_TRUE(SetDust(profile_.Get(), {SerialIdOf(rows.value(0))}, true));
  ASSERT_TRUE(EmptyDust(profile_.Get()));
  const QList<test::ServerMessage> all = server_.Messages;
  server_.Messages.clear();
  Receive();
  server_.Messages = all;
  for (int check = 0; check < 3; ++check) EXPECT_EQ(Receive().stored, 0);
  EXPECT_EQ(server_.Count("RETR"), 3 + 3) << "each was looked at once more";
  // Under new names, at once and from then on.
  server_.Messages.clear();
  Receive();
  server_.Messages = all;
  for (test::ServerMessage& message : server_.Messages) message.uidl += " moved";
  for (int check = 0; check < 3; ++check) EXPECT_EQ(Receive().stored, 0);
  EXPECT_EQ(Rows(), 2);
  EXPECT_EQ(server_.Count("RETR"), 3 + 3 + 3);
  // Another file from now on.
  Context& context = profile_.Get();
  context.Session->Let(QStringLiteral("History"), context.Session->Text(u"Mail"));
  const QString former = context.Session->Text(u"Mail");
  context.Session->Let(QStringLiteral("Mail"), profile_.Folder() + QStringLiteral("/other.mbx"));
  EXPECT_EQ(Receive().stored, 0);
  // What cannot be asked whether it was erased is not taken for new.
  const int fetched = server_.Count("RETR");
  {
    const OpenedDatabase opened(context, DatabaseKind::MailByPath, former);
    ASSERT_TRUE(context.Data.Execute(QStringLiteral("ALTER TABLE erased RENAME TO away")));
  }
  const ReceiveCounts unasked = Receive();
  EXPECT_EQ(unasked.stored, 0);
  EXPECT_EQ(unasked.errors, 1);
  EXPECT_EQ(server_.Count("RETR"), fetched);
  // One that does not open at all, which the user has decided, holds no new mail up.
  context.Data.CloseAll();
  const QString path = PlatformPath(context, former);
  QFile::remove(path + QStringLiteral("-wal"));
  test::WriteFile(path, test::ReadFile(path).replace(100, 900, QByteArray(900, 'x')));
  server_.AddMessage("uid9", "Subject: new\r\n\r\n\r\n");
  Receive();
  std::ignore = AcceptDamage(context, path);  // where it was met
  server_.AddMessage("uid10", "Subject: newer\r\n\r\n\r\n");
  const ReceiveCounts after = Receive();
  EXPECT_EQ(after.stored, 1) << LastLog().toStdString();
  EXPECT_EQ(after.errors, 0);
}

// Whoever erased a message for good does not get it once more, unless he fetches it by an import.
TEST_F(KnownMailTest, WhatWasErasedForGoodStaysAway) {
  AddMessages(3);
  const DiskPtr account = profile_.AddAccount(server_.Port());
  EXPECT_EQ(Receive().stored, 3);
  const auto erase = [this] {
    const QList<QVariant> all =
        profile_.Select(QStringLiteral("SELECT SERIALID AS V FROM mail WHERE FIELD_SUBJECT = '1'"));
    ASSERT_TRUE(SetDust(profile_.Get(), {SerialIdOf(all.value(0))}, true));
    ASSERT_TRUE(EmptyDust(profile_.Get()));
  };
  erase();
  EXPECT_EQ(Receive().stored, 0);
  EXPECT_EQ(Rows(), 2);
  Settings(profile_.Get()).Bag()->Let(QStringLiteral("Careful"), false);
  EXPECT_EQ(Receive().stored, 1);
  Settings(profile_.Get()).Bag()->Let(QStringLiteral("Careful"), true);
  erase();
  // Where the account deletes, it goes from the server too, once it is seen to be the same one.
  account->Let(QStringLiteral("InMailServerDelete"), true);
  EXPECT_EQ(Receive().stored, 0);
  EXPECT_TRUE(server_.Messages.isEmpty());
  server_.AddMessage("uid1", "Subject: another of that name\r\n\r\n\r\n");
  EXPECT_EQ(Receive().stored, 1);
  EXPECT_TRUE(server_.Messages.isEmpty());
  EXPECT_EQ(Rows(), 3);
}

// Erasing the first one while the others come is no sign of a file that was replaced.
TEST_F(KnownMailTest, WhatIsErasedDuringTheSessionKeepsNothingOnTheServer) {
  AddMessages(4);
  server_.Pipelining = false;
  profile_.AddAccount(server_.Port())->Let(QStringLiteral("InMailServerDelete"), true);
  bool erased = false;
  server_.OnCommand = [&](const QByteArray& line) {
    if (!line.startsWith("RETR 3")) return;
    const QList<QVariant> first =
        profile_.Select(QStringLiteral("SELECT SERIALID AS V FROM mail WHERE FIELD_SUBJECT = '0'"));
    erased =
        SetDust(profile_.Get(), {SerialIdOf(first.value(0))}, true) && EmptyDust(profile_.Get());
  };
  EXPECT_EQ(Receive().stored, 4);
  EXPECT_TRUE(erased);
  EXPECT_EQ(Rows(), 3);
  EXPECT_TRUE(server_.Messages.isEmpty()) << LastLog().toStdString();
}

// The server's copy may be the only one that can be read.
TEST_F(KnownMailTest, WhatIsStoredAndCannotBeReadStaysOnTheServer) {
  AddMessages(2);
  const DiskPtr account = profile_.AddAccount(server_.Port());
  EXPECT_EQ(Receive().stored, 2);
  ASSERT_TRUE(OpenDatabase(profile_.Get(), DatabaseKind::Mail));
  ASSERT_TRUE(profile_.Get().Data.Execute(QStringLiteral(
      "UPDATE long_binary SET DATA = 'x' WHERE ID = (SELECT MIN(ID) FROM long_binary)")));
  profile_.Get().Data.Close();
  account->Let(QStringLiteral("InMailServerDelete"), true);
  Receive();
  EXPECT_TRUE(LastLog().contains(QStringLiteral("サーバーからは削除しません")))
      << LastLog().toStdString();
  ASSERT_GE(server_.Messages.size(), 1);
  EXPECT_TRUE(server_.Messages.first().source.startsWith("Subject: 0"));
}

}  // namespace
}  // namespace vorn
