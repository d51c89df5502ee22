// Answers that do not fit what the server said of a message: nothing is deleted for them.

#include "transfer/pop3/announced_size.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "objects/object_types.h"
#include "storage/databases.h"
#include "support/loopback_pop3_server.h"
#include "support/traffic.h"

namespace vorn {
namespace {

using test::Fault;
using test::LoopbackPop3Server;

TEST(SizeFitTest, WhatServersCountOtherwiseFitsAndWhatIsMissingDoesNot) {
  const QByteArray header = "Message-ID: <1@example.jp>\r\n" + QByteArray(2000, 'h') + "\r\n\r\n";
  const QByteArray text = header + QByteArray("a line\r\n").repeated(30);
  const auto fit = [](const QByteArray& message, qsizetype announced) {
    return FitOf(message, announced);
  };
  EXPECT_EQ(fit(text, text.size()), SizeFit::Exact);
  EXPECT_EQ(fit(text, text.size() + 3), SizeFit::Exact) << "the end counted as well";
  EXPECT_EQ(fit(text, text.size() - text.count('\n')), SizeFit::LineFeeds);
  EXPECT_EQ(fit(header + ".a\r\n.b\r\n", header.size() + 8 + 7), SizeFit::Exact) << "doubled";
  for (const qsizetype none : {0, -1}) {
    EXPECT_EQ(fit(text, none), SizeFit::Off) << "no size at all";
    EXPECT_EQ(fit(header, none), SizeFit::Off);
    EXPECT_EQ(fit("", none), SizeFit::Off);
  }
  EXPECT_EQ(fit("", 1), SizeFit::Off);
  EXPECT_EQ(fit(text, text.size() + 100), SizeFit::Near);
  EXPECT_EQ(fit(text, text.size() - 100), SizeFit::Near) << "fields added on the way";
  EXPECT_EQ(fit(text, text.size() * 2), SizeFit::Off);
  EXPECT_EQ(fit(text + text, text.size()), SizeFit::Off);
  EXPECT_EQ(fit(header, header.size() + 40), SizeFit::Off) << "a text of 40 bytes is missing";
  EXPECT_EQ(fit(header, header.size() + 2), SizeFit::Exact);
  EXPECT_EQ(fit("", 3), SizeFit::Off);
}

class AnnouncedSizeTest : public test::TrafficTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(server_.Listen());
    server_.Pipelining = false;
    account_ = profile_.AddAccount(server_.Port());
    account_->Let(QStringLiteral("InMailServerDelete"), true);
  }
  static QByteArray Header(const QByteArray& subject, qsizetype more = 0) {
    return "Received: from a by b\r\nMessage-ID: <" + subject +
           "@example.jp>\r\nX-Long: " + QByteArray(more, 'h') + "\r\nSubject: " + subject +
           "\r\n\r\n";
  }
  // A header alone is asked for twice at once.
  void Answer(const QByteArray& given) {
    const QByteArray reply = "+OK\r\n" + given + ".\r\n";
    server_.Faults = {{Fault::Kind::Reply, "RETR", 1, 0, reply},
                      {Fault::Kind::Reply, "RETR", 2, 0, reply}};
  }
  // Messages of which each has another size.
  static QByteArrayList Texts(const QByteArray& name, int count) {
    QByteArrayList texts;
    for (int i = 0; i < count; ++i) {
      texts.append(Header(name + "-" + QByteArray::number(i), i * 700) +
                   QByteArray("a line of text\r\n").repeated(80 + i) + "\r\n");
    }
    return texts;
  }
  // Receives while the server gives that text for the message of that name, in so many sessions.
  void ReceiveWith(const QByteArray& uidl, const QByteArray& given, int sessions = 1000,
                   const QList<Fault>& others = {}) {
    const QByteArray reply = "+OK\r\n" + given + ".\r\n";
    server_.OnCommand = [&, sessions](const QByteArray& line) mutable {
      server_.Faults = others;
      if (line.startsWith("QUIT")) --sessions;
      if (!line.startsWith("RETR ") || sessions <= 0) return;
      const qsizetype number = line.sliced(5).trimmed().toLongLong() - 1;
      if (number >= server_.Messages.size() || server_.Messages[number].uidl != uidl) return;
      for (int time = 1; time <= 8; ++time) {
        server_.Faults.append({Fault::Kind::Reply, "RETR", time, 0, reply});
      }
    };
    Receive();
    server_.OnCommand = nullptr;
    server_.Faults.clear();
  }
  void RefuseSpam() {
    const auto rules = std::make_shared<Disk>(fixed_serial::kRules);
    rules->Let(QStringLiteral("ReceiveStop"), QStringLiteral("from: spam@*"));
    rules->Let(QStringLiteral("ReceiveStopDelete"), true);
    profile_.Get().Objects.Add(rules);
  }
  QByteArrayList Stored() {
    QByteArrayList sources;
    for (const QVariant& source : profile_.Select(QStringLiteral("SELECT MAIL AS V FROM mail"))) {
      sources.append(source.toByteArray());
    }
    return sources;
  }

  LoopbackPop3Server server_;
  DiskPtr account_;
};

// A message that is all header, such as phones send, of which the first answer gave a piece.
TEST_F(AnnouncedSizeTest, AMessageWithoutTextIsNotTakenForAPieceOfItsHeader) {
  for (const bool offersTop : {true, false}) {
    for (const bool deletes : {true, false}) {
      for (const qsizetype lines : {0, 1, 2, 3}) {
        SCOPED_TRACE(
            QStringLiteral("%1 %2 %3").arg(offersTop).arg(deletes).arg(lines).toStdString());
        server_.OffersTop = offersTop;
        account_->Let(QStringLiteral("InMailServerDelete"), deletes);
        const QByteArray uidl = QByteArrayLiteral("u") + QByteArray::number(lines) +
                                (offersTop ? "t" : "") + (deletes ? "d" : "k");
        const QByteArray whole = Header(uidl);
        server_.Messages = {{uidl, whole}};
        qsizetype end = 0;
        for (qsizetype line = 0; line < lines; ++line) end = whole.indexOf("\r\n", end) + 2;
        Answer(whole.first(end));
        Receive();
        EXPECT_EQ(server_.Messages.size(), 1);
        server_.Faults.clear();
        Receive();
        Receive();
        EXPECT_TRUE(Stored().contains(whole));
        EXPECT_EQ(server_.Messages.size(), deletes ? 0 : 1);
      }
    }
  }
}

// Whatever stands once in the place of a message, and whether the server's sizes are right or none:
// the message is asked for again, also by who keeps his mail on the server.
TEST_F(AnnouncedSizeTest, AnAnswerThatWasWrongOnceHidesNoMessage) {
  int run = 0;
  for (const double factor : {1, 0}) {
    for (const bool deletes : {true, false}) {
      for (const bool isNew : {true, false}) {  // whether an earlier session has stored the others
        for (const char* instead : {"half", "first", "third"}) {
          const QByteArray name = QByteArray::number(++run);
          SCOPED_TRACE(name.toStdString() + " " + instead);
          server_.SizeFactor = factor;
          account_->Let(QStringLiteral("InMailServerDelete"), false);
          QHash<QByteArray, QByteArray> texts;
          for (const char* which : {"first", "wanted", "third"}) {
            texts[which] = Header(which + name, texts.size() * 700) +
                           QByteArray("a line of text\r\n").repeated(80 + texts.size()) + "\r\n";
          }
          const QByteArray half = texts["wanted"].first(1500) + "\r\n";
          const QByteArray given = qstrcmp(instead, "half") == 0 ? half : texts[instead];
          server_.Messages = {{"f" + name, texts["first"]}, {"t" + name, texts["third"]}};
          if (!isNew) Receive();
          if (!isNew) Receive();  // which believes what has no size
          server_.Messages.insert(1, {"w" + name, texts["wanted"]});
          account_->Let(QStringLiteral("InMailServerDelete"), deletes);
          const QByteArray reply = "+OK\r\n" + given + ".\r\n";
          server_.OnCommand = [&](const QByteArray& line) {
            server_.Faults.clear();
            if (!line.startsWith("RETR 2")) return;
            for (int time = 1; time <= 3; ++time) {
              server_.Faults.append({Fault::Kind::Reply, "RETR", time, 0, reply});
            }
          };
          Receive();
          server_.OnCommand = nullptr;
          server_.Faults.clear();
          for (int check = 0; check < 4; ++check) Receive();
          for (const QByteArray& text : texts) EXPECT_EQ(Stored().count(text), 1);
          EXPECT_EQ(server_.Messages.size(), deletes ? 0 : 3);
        }
      }
    }
  }
}

// Of answers that do not fit only the same one, to the same message, is believed.
TEST_F(AnnouncedSizeTest, WrongAnswersThatDifferHideNoMessage) {
  int run = 0;
  for (const double factor : {1, 0}) {
    for (const bool deletes : {true, false}) {
      const QByteArray name = QByteArray::number(++run);
      SCOPED_TRACE(name.toStdString());
      server_.SizeFactor = factor;
      account_->Let(QStringLiteral("InMailServerDelete"), deletes);
      const QByteArrayList texts = Texts(name, 3);
      server_.Messages = {{"a" + name, texts[0]}, {"b" + name, texts[1]}, {"c" + name, texts[2]}};
      for (const int wrong : {0, 2}) ReceiveWith("b" + name, texts[wrong]);
      for (int check = 0; check < 4; ++check) Receive();
      for (const QByteArray& text : texts) EXPECT_EQ(Stored().count(text), 1);
      EXPECT_EQ(server_.Messages.size(), deletes ? 0 : 3);
    }
  }
}

// Messages of about one size, which exact sizes of others tell apart.
TEST_F(AnnouncedSizeTest, AnotherMessageOfAboutTheSameSizeIsMissed) {
  int run = 0;
  for (const bool deletes : {true, false}) {
    for (const int wanted : {0, 3}) {
      for (const int times : {0, 1, 2}) {  // none: a session that is cut after the wrong answer
        const QByteArray name = QByteArray::number(++run);
        SCOPED_TRACE(name.toStdString());
        server_.CountsLineFeeds = times == 1;
        account_->Let(QStringLiteral("InMailServerDelete"), deletes);
        server_.Messages.clear();
        QByteArrayList texts;
        for (int i = 0; i < 5; ++i) {
          texts.append(Header(name + "-" + QByteArray::number(i), i * 40) +
                       QByteArray("a line of text\r\n").repeated(500) + "\r\n");
          server_.Messages.append({name + "-" + QByteArray::number(i), texts[i]});
        }
        const QByteArray uidl = name + "-" + QByteArray::number(wanted);
        const Fault cut{Fault::Kind::Cut, "RETR", 5, 0, {}};
        ReceiveWith(uidl, texts[2], 1000, times == 0 ? QList<Fault>{cut} : QList<Fault>());
        if (times == 2) ReceiveWith(uidl, texts[4]);
        for (int check = 0; check < 4; ++check) Receive();
        for (const QByteArray& text : texts) EXPECT_EQ(Stored().count(text), 1);
        EXPECT_EQ(server_.Messages.size(), deletes ? 0 : 5);
      }
    }
  }
}

// One account keeps and one deletes what has no right sizes: the doubts of one mailbox are theirs.
// A text of about the size, before anything of the session was exact, under which something else is
// known already: it comes of the contents' name, or of a rule.
TEST_F(AnnouncedSizeTest, WhatIsKnownByAnotherMessagesTextIsNotDeletedUnseen) {
  QByteArrayList texts;
  for (int i = 0; i < 6; ++i) {
    texts.append((i == 5 ? "From: spam@example.jp\r\n" : "") +
                 Header(QByteArray::number(i), i * 40) +
                 QByteArray("a line of text\r\n").repeated(500) + "\r\n");
  }
  const auto offer = [&](std::initializer_list<int> added) {
    for (const int i : added) server_.Messages.append({QByteArray::number(i), texts[i]});
  };
  const auto isThere = [this](const QByteArray& uidl) {
    return std::any_of(server_.Messages.begin(), server_.Messages.end(),
                       [&uidl](const auto& message) { return message.uidl == uidl; });
  };
  for (const bool countsLineFeeds : {false, true}) {
    SCOPED_TRACE(countsLineFeeds);
    server_.CountsLineFeeds = countsLineFeeds;
    // Torn off twice alike, on a server that names nothing.
    server_.OffersUidl = false;
    offer({0, 1});
    const QByteArray torn = texts[0].chopped(320) + "\r\n";
    ReceiveWith("0", torn);
    offer({2});
    ReceiveWith("0", torn);
    EXPECT_TRUE(isThere("0"));
    // The text of one that is stored and gone.
    offer({3});
    ReceiveWith("3", texts[1]);
    offer({4});
    ReceiveWith("3", texts[2]);
    EXPECT_TRUE(isThere("3"));
    for (int check = 0; check < 2; ++check) Receive();
    // What a rule deletes, which is seen in the whole message alone.
    server_.OffersTop = false;
    RefuseSpam();
    for (const bool offersUidl : {true, false}) {
      SCOPED_TRACE(offersUidl);
      server_.OffersUidl = offersUidl;
      const QByteArray name = QByteArray(countsLineFeeds ? "f" : "e") + (offersUidl ? "u" : "n");
      QByteArray wanted = texts[4];
      wanted.replace("Message-ID: <", "Message-ID: <" + name);
      server_.Messages = {{name, wanted}, {name + "5", texts[5]}, {name + "6", Header(name, 200)}};
      ReceiveWith(name, texts[5]);
      EXPECT_TRUE(isThere(name));
      for (int check = 0; check < 3; ++check) Receive();
      EXPECT_EQ(Stored().count(wanted), 1);
      EXPECT_FALSE(Stored().contains(texts[5]));
      EXPECT_TRUE(server_.Messages.isEmpty());
    }
    for (int i = 0; i < 5; ++i) EXPECT_GE(Stored().count(texts[i]), 1) << i;
    server_.OffersTop = true;
    profile_.Get().Objects.Remove(fixed_serial::kRules);
    server_.Messages.clear();
  }
}

TEST_F(AnnouncedSizeTest, TwoAccountsAtOneMailboxComeToRest) {
  const DiskPtr other = profile_.AddAccount(server_.Port());
  server_.SizeFactor = 1.4;
  for (const bool firstDeletes : {true, false}) {
    SCOPED_TRACE(firstDeletes);
    account_->Let(QStringLiteral("InMailServerDelete"), firstDeletes);
    other->Let(QStringLiteral("InMailServerDelete"), !firstDeletes);
    const QByteArrayList texts = Texts(firstDeletes ? "rest1" : "rest2", 3);
    server_.Messages.clear();
    for (const QByteArray& text : texts) server_.Messages.append({text.mid(36, 7), text});
    for (int check = 0; check < 4; ++check) Receive();
    EXPECT_TRUE(server_.Messages.isEmpty());
    for (const QByteArray& text : texts) EXPECT_EQ(Stored().count(text), 1);
  }
}

// A server that numbers its messages, of which one went and another has its number, answers once
// with the former one; also where the mailbox is known under two names of the server.
TEST_F(AnnouncedSizeTest, AStaleAnswerUnderAGivenNumberHidesNoMessage) {
  const DiskPtr other = profile_.AddAccount(server_.Port());
  int run = 0;
  for (const double factor : {1, 0}) {
    for (const bool deletes : {true, false}) {
      if (factor == 0 && !deletes) continue;  // a name whose size is the same is believed there
      for (const char* host : {"127.0.0.1", "localhost"}) {
        SCOPED_TRACE(std::to_string(factor) + (deletes ? " deletes " : " keeps ") + host);
        const QByteArray name = QByteArray::number(++run);
        server_.SizeFactor = factor;
        account_->Let(QStringLiteral("InMailServerDelete"), false);
        other->Let(QStringLiteral("InMailServerDelete"), false);
        other->Let(QStringLiteral("InMailServer"), QString::fromLatin1(host));
        const QByteArrayList texts = Texts("stale" + name, 4);
        server_.Messages = {{"1", texts[0]}, {"2", texts[1]}, {"3", texts[2]}};
        for (int check = 0; check < 3; ++check) Receive();
        server_.Messages[2].source = texts[3];
        account_->Let(QStringLiteral("InMailServerDelete"), deletes);
        other->Let(QStringLiteral("InMailServerDelete"), deletes);
        ReceiveWith("3", texts[2], 1);
        for (int check = 0; check < 4; ++check) Receive();
        for (const QByteArray& text : texts) EXPECT_EQ(Stored().count(text), 1);
        EXPECT_EQ(server_.Messages.size(), deletes ? 0 : 3);
        server_.Messages.clear();
        Receive();
      }
    }
  }
}

// A server that is wrong about sizes, and writes a message anew each time.
TEST_F(AnnouncedSizeTest, WhatIsWrittenAnewEachTimeIsStoredOnce) {
  int time = 0;
  for (const double factor : {0.7, 1.4}) {
    for (const bool deletes : {true, false}) {
      SCOPED_TRACE(std::to_string(factor) + (deletes ? " deletes" : " keeps"));
      account_->Let(QStringLiteral("InMailServerDelete"), deletes);
      server_.SizeFactor = factor;
      const QByteArray name = QByteArray::number(factor) + (deletes ? "d" : "k");
      const auto write = [&] {
        server_.Messages = {{name, "X-Scan: " + QByteArray::number(++time) + "\r\n" + Header(name) +
                                       QByteArray(3000, 'x') + "\r\n"}};
      };
      const qsizetype before = Stored().size();
      write();
      Receive();
      for (int check = 0; check < 3 && !server_.Messages.isEmpty(); ++check) {
        write();
        Receive();
      }
      EXPECT_EQ(Stored().size(), before + 1);
      EXPECT_EQ(server_.Messages.size(), deletes ? 0 : 1);
    }
  }
}

// What came first was a piece, however like it what comes next is.
TEST_F(AnnouncedSizeTest, AWholeMessageIsNotTakenForThePieceThatCameFirst) {
  const QByteArray line = "a line of the text of some length\r\n";
  struct Case {
    double factor;
    int lines, then;  // of 3,000 and the end
  };
  const Case cases[] = {{1.4, 2990, 3001},  // the server overstates
                        {1, 1500, 1501},    // a proxy ends each transfer after a while
                        {1, 2940, 2950}};
  for (const auto& [factor, lines, then] : cases) {
    SCOPED_TRACE(std::to_string(factor) + " " + std::to_string(then));
    const QByteArray name = "u" + QByteArray::number(factor) + QByteArray::number(then);
    const QByteArray whole = Header(name) + line.repeated(3000) + "the end\r\n";
    const QByteArray first = Header(name) + line.repeated(lines);
    const QByteArray second = then > 3000 ? whole : Header(name) + line.repeated(then);
    server_.SizeFactor = factor;
    server_.Messages = {{name, whole}};
    for (const QByteArray& given : {first, second}) {
      Answer(given);
      Receive();
    }
    EXPECT_TRUE(Stored().contains(whole) || !server_.Messages.isEmpty());
    EXPECT_TRUE(Stored().contains(second)) << "what is more than before is kept";
    server_.Faults.clear();
    Receive();
    Receive();
    EXPECT_TRUE(Stored().contains(whole));
    EXPECT_TRUE(server_.Messages.isEmpty());
  }
}

// Also the first message of a session is held to sizes that are exact, as the others show.
TEST_F(AnnouncedSizeTest, TheFirstMessageIsHeldToExactSizesAsWell) {
  const QByteArray whole = Header("first") + QByteArray("a line of text\r\n").repeated(900);
  server_.Messages = {{"f", whole},
                      {"s", Header("second") + QByteArray("a line\r\n").repeated(20)}};
  Answer(whole.chopped(800));
  server_.Faults.removeLast();
  Receive();
  ASSERT_EQ(server_.Messages.size(), 1);
  server_.Faults.clear();
  Receive();
  EXPECT_TRUE(Stored().contains(whole));
  EXPECT_TRUE(server_.Messages.isEmpty());
}

// Two answers that are wrong differently, by each of which a rule would delete it.
TEST_F(AnnouncedSizeTest, ARuleRemembersThatAnAnswerDidNotFit) {
  RefuseSpam();
  server_.OffersTop = false;
  const auto text = [](const QByteArray& name, int more, const QByteArray& from = {}) {
    return from + Header(name, more) + QByteArray("a line of text\r\n").repeated(500) + "\r\n";
  };
  const QByteArray spam = "From: spam@example.jp\r\n";
  int run = 0;
  for (const bool isExactFirst : {false, true}) {
    for (const int more : {0, 9000}) {  // about the size, or far from it
      const QByteArray name = "w" + QByteArray::number(++run);
      SCOPED_TRACE(name.toStdString());
      const QByteArray wanted = text(name, 100);
      server_.Messages = {{name, wanted}};
      server_.Messages.insert(isExactFirst ? 0 : 1, {name + "other", text(name + "other", 40)});
      ReceiveWith(name, text("first", more, spam));
      ReceiveWith(name, text("second", 140, spam));
      EXPECT_EQ(server_.Messages.size(), 1);
      for (int check = 0; check < 2; ++check) Receive();
      EXPECT_EQ(Stored().count(wanted), 1);
      EXPECT_TRUE(server_.Messages.isEmpty());
    }
  }
}

// The header of a message that does not fit decides nothing.
TEST_F(AnnouncedSizeTest, ARuleDeletesNothingForAnotherMessagesHeader) {
  RefuseSpam();
  server_.OffersTop = false;
  const QByteArray wanted = Header("wanted") + QByteArray(3000, 'x') + "\r\n";
  server_.Messages = {{"w", wanted}};
  Answer("From: spam@example.jp\r\n" + Header("spam") + "buy\r\n");
  const ReceiveCounts first = Receive();
  EXPECT_EQ(first.stored + first.stopped, 0);
  EXPECT_EQ(server_.Messages.size(), 1);
  server_.Faults.clear();
  Receive();
  EXPECT_TRUE(Stored().contains(wanted));
}

// A gateway that writes a field of its own into each answer does not look out of step.
TEST_F(AnnouncedSizeTest, AHeaderThatDiffersByAFieldIsTheSameAnswer) {
  RefuseSpam();
  server_.Messages = {{"h", Header("h")},
                      {"after", Header("after") + QByteArray(400, 'x') + "\r\n"}};
  server_.SizeFactor = 1.3;
  for (int time = 1; time <= 2; ++time) {
    server_.Faults.append(
        {Fault::Kind::Reply, "RETR", time, 0,
         "+OK\r\nX-Scan: " + QByteArray::number(time) + "\r\n" + Header("h") + ".\r\n"});
  }
  EXPECT_EQ(Receive().errors, 0);
  EXPECT_EQ(Stored().size(), 2);
}

// A program that copies files about puts an older file in the place of the one that is written to,
// between two messages or behind the last one that is stored.
TEST_F(AnnouncedSizeTest, NothingIsDeletedWhenTheFileWasExchanged) {
  const QString file = MailDatabasePath(profile_.Get());
  const QByteArray older = test::ReadFile(file);
  for (const bool isBehindTheLast : {false, true}) {
    server_.Messages.clear();
    for (int i = 0; i < 3; ++i) {
      const QByteArray name = (isBehindTheLast ? "b" : "a") + QByteArray::number(i);
      server_.Messages.append({name, Header(name) + "text\r\n"});
    }
    if (isBehindTheLast) {
      server_.Faults.append({Fault::Kind::Reply, "RETR", 3, 0, "-ERR it cannot be read\r\n"});
    }
    server_.OnCommand = [&](const QByteArray& line) {
      if (!line.startsWith("RETR 3")) return;
      EXPECT_TRUE(test::WaitFor([this] { return Rows() == 2; }));  // in the file
      const QString copy = file + QStringLiteral(".new");
      test::WriteFile(copy, older);
      EXPECT_EQ(::rename(copy.toLocal8Bit().constData(), file.toLocal8Bit().constData()), 0);
    };
    Receive();
    EXPECT_EQ(server_.Messages.size(), 3) << isBehindTheLast;
  }
}

}  // namespace
}  // namespace vorn
