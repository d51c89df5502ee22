#include "mail/store/mail_store.h"

#include <gtest/gtest.h>

#include "mail/open_message.h"
#include "mail/store/known_addresses.h"
#include "mail/store/message_filing.h"
#include "objects/object_types.h"
#include "storage/databases.h"
#include "storage/engine/connection.h"
#include "storage/session/own_statement.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

using test::TestProfile;

class MailStoreTest : public testing::Test {
 protected:
  DiskPtr Request(const SerialId& serialId, const QString& folders = {}) {
    auto request = std::make_shared<Disk>(serialId);
    request->Let(QStringLiteral("folder"), folders);
    return request;
  }
  QString Column(const QString& column) {
    return profile_.Select(QStringLiteral("SELECT %1 AS V FROM mail").arg(column))
        .value(0)
        .toString();
  }
  bool Run(const QByteArray& statement) {
    const OpenedDatabase mail(profile_.Get(), DatabaseKind::Mail);
    return mail && RunOwn(profile_.Get().Data, statement, {});
  }

  TestProfile profile_;
  MailStore store_{profile_.Get()};
};

TEST_F(MailStoreTest, SourcesComeBackByteForByte) {
  const QByteArray source(
      "Subject: x\r\n\r\n\0\xFF\x1B"
      "it's \r\r\n\n.",
      24);
  ASSERT_EQ(store_.StoreMessage(*Request(u"m'1"_id), source), u"m'1"_id);
  EXPECT_EQ(store_.LoadMessageSource(*Request(u"m'1"_id)), source);
  EXPECT_FALSE(store_.LoadMessageSource(*Request(u"m2"_id)));
  EXPECT_FALSE(store_.StoreMessage(Disk(), source));
}

TEST_F(MailStoreTest, AddressesThatWereWrittenToAreReadOnceAndOfferedAtOnce) {
  const auto send = [this](const char* to) {
    return profile_.Store(QByteArray("To: ") + to + "\r\n\r\n", kStatusSent);
  };
  const auto change = [this](const SerialId& serialId, const QString& value) {
    const OpenedDatabase opened(profile_.Get(), DatabaseKind::Mail);
    EXPECT_TRUE(profile_.Get().Data.Execute(QStringLiteral("UPDATE mail SET ") + value +
                                            QStringLiteral(" WHERE SERIALID = '") +
                                            serialId.Text() + u'\''));
  };
  KnownAddresses known(profile_.Get());
  const SerialId first = send("one@example.jp");
  send("two@example.jp");
  const QStringList both{QStringLiteral("two@example.jp"), QStringLiteral("one@example.jp")};
  EXPECT_EQ(known.Offers().mid(0, 2), both);
  change(first, QStringLiteral("FIELD_MAILADDRESS = 'TO: never@example.jp'"));
  EXPECT_EQ(known.Offers().mid(0, 2), both) << "it was read again";
  const SerialId third = send("three@example.jp");
  change(third, QStringLiteral("FIELD_TIMESTAMP = '2999-01-01 00:00:00.000'"));
  EXPECT_EQ(known.Offers().value(0), QStringLiteral("three@example.jp"));
  send("four@example.jp");
  EXPECT_TRUE(known.Offers().contains(QStringLiteral("four@example.jp"))) << "a clock was wrong";
}

TEST_F(MailStoreTest, StoringAgainReplacesEverythingButTheIdentifier) {
  const DiskPtr message = Request(u"m"_id, QStringLiteral("a\r\nb"));
  Disk& request = *message;
  request.Let(QStringLiteral("MessageID"), QStringLiteral("first"));
  ASSERT_TRUE(store_.StoreMessage(request, "Subject: one\r\n\r\n"));
  EXPECT_EQ(profile_.Select(QStringLiteral("SELECT FOLDERID AS V FROM folder")).size(), 2);
  request.Let(QStringLiteral("MessageID"), QStringLiteral("second"));
  request.Let(QStringLiteral("process"), 3);
  request.Let(QStringLiteral("folder"), QString());
  ASSERT_TRUE(store_.StoreMessage(request, "Subject: two\r\n\r\n"));
  EXPECT_EQ(Column(QStringLiteral("COUNT(0)")), QStringLiteral("1"));
  EXPECT_EQ(Column(QStringLiteral("FIELD_ID")), QStringLiteral("first"));
  EXPECT_EQ(Column(QStringLiteral("FIELD_SUBJECT")), QStringLiteral("two"));
  EXPECT_EQ(Column(QStringLiteral("STATUS")), QStringLiteral("3"));
  EXPECT_TRUE(profile_.Select(QStringLiteral("SELECT FOLDERID AS V FROM folder")).isEmpty());
}

TEST_F(MailStoreTest, SeveralMessagesAreStoredTogetherOrNotAtAll) {
  std::vector<std::pair<DiskPtr, QByteArray>> messages;
  for (const auto* name : {"a", "b"}) {
    messages.emplace_back(Request(SerialId(QString::fromLatin1(name))), "Subject: x\r\n\r\n");
  }
  ASSERT_TRUE(
      Run("CREATE TRIGGER full BEFORE INSERT ON mail WHEN NEW.SERIALID = 'b' "
          "BEGIN SELECT RAISE(ABORT, 'full'); END"));
  EXPECT_FALSE(store_.StoreMessages(messages));
  EXPECT_EQ(Column(QStringLiteral("COUNT(0)")), QStringLiteral("0"));
  ASSERT_TRUE(Run("DROP TRIGGER full"));
  // One with its folders too.
  ASSERT_TRUE(
      Run("CREATE TRIGGER full BEFORE INSERT ON folder BEGIN SELECT RAISE(ABORT, 'full'); END"));
  EXPECT_FALSE(store_.StoreMessage(*Request(u"c"_id, QStringLiteral("shelf")), "Subject: x\r\n"));
  EXPECT_EQ(Column(QStringLiteral("COUNT(0)")), QStringLiteral("0"));
  ASSERT_TRUE(Run("DROP TRIGGER full"));
  EXPECT_TRUE(store_.StoreMessages(messages));
  EXPECT_EQ(Column(QStringLiteral("COUNT(0)")), QStringLiteral("2"));
}

TEST_F(MailStoreTest, AFilingFromSeveralFoldersIsTakenBackWholeOrNotAtAll) {
  Context& context = profile_.Get();
  const SerialIds messages{profile_.Store("Subject: 1\r\n\r\n"),
                           profile_.Store("Subject: 2\r\n\r\n")};
  const SerialId into = u"new"_id;
  const Filed left{{u"a"_id, {messages[0]}}, {u"b"_id, {messages[1]}}};
  ASSERT_TRUE(MoveMessages(context, {.into = left}));
  const Result<Moved> back =
      MoveMessages(context, {.into = {{into, messages}}, .outOf = left, .outOfDust = messages});
  ASSERT_TRUE(back);
  const auto folders = [this] {
    QString found;
    for (const QVariant& folder :
         profile_.Select(QStringLiteral("SELECT FOLDERID AS V FROM folder ORDER BY FOLDERID"))) {
      found += folder.toString() + u' ';
    }
    return found;
  };
  ASSERT_TRUE(
      Run("CREATE TRIGGER full BEFORE INSERT ON folder WHEN NEW.FOLDERID = 'b' "
          "BEGIN SELECT RAISE(ABORT, 'full'); END"));
  EXPECT_FALSE(MoveMessages(context, back->back));
  EXPECT_EQ(folders(), QStringLiteral("new new "));
  ASSERT_TRUE(Run("DROP TRIGGER full"));
  EXPECT_TRUE(MoveMessages(context, back->back));
  EXPECT_EQ(folders(), QStringLiteral("a b "));
}

TEST_F(MailStoreTest, WhatIsThrownAwayComesBackAsItWasAndGoesWhole) {
  SerialIds messages;
  for (int status = 1; status <= 4; ++status) {
    messages.append(profile_.Store("Subject: x\r\n\r\ntext\r\n", status));
    ASSERT_TRUE(MoveMessages(profile_.Get(), {.into = {{u"f"_id, {messages.last()}}}}));
  }
  const auto states = [this] {
    QString shown;
    for (const QVariant& state :
         profile_.Select(QStringLiteral("SELECT STATUS AS V FROM mail ORDER BY rowid"))) {
      shown += state.toString() + u' ';
    }
    return shown;
  };
  ASSERT_TRUE(MoveMessages(profile_.Get(),
                           {.into = {{u"g"_id, messages}}, .outOf = {{u"f"_id, messages}}}));
  ASSERT_TRUE(MoveMessages(profile_.Get(), {.into = {{u"g"_id, messages}}}));
  EXPECT_EQ(profile_.Select(QStringLiteral("SELECT SERIALID AS V FROM folder")).size(), 4)
      << "each once, however often it is put there";
  EXPECT_TRUE(
      profile_.Select(QStringLiteral("SELECT SERIALID AS V FROM folder WHERE FOLDERID = 'f'"))
          .isEmpty());
  ASSERT_TRUE(SetDust(profile_.Get(), messages, true));
  EXPECT_EQ(states(), QStringLiteral("-1 -2 -3 -4 "));
  ASSERT_TRUE(SetDust(profile_.Get(), messages.mid(0, 2), false));
  EXPECT_EQ(states(), QStringLiteral("1 2 -3 -4 "));
  ASSERT_TRUE(SetDust(profile_.Get(), messages.mid(0, 1), true) && EmptyDust(profile_.Get()));
  EXPECT_EQ(states(), QStringLiteral("2 "));
  EXPECT_EQ(profile_.Select(QStringLiteral("SELECT SERIALID AS V FROM folder")),
            QList<QVariant>{messages[1].Text()});
  EXPECT_EQ(profile_.Select(QStringLiteral("SELECT COUNT(0) AS V FROM long_binary")),
            QList<QVariant>{1});
}

// Also of more messages than one statement has room for.
TEST_F(MailStoreTest, AMoveIsTakenBackToWhereEachWas) {
  Context& context = profile_.Get();
  const SerialId dusted = profile_.Store("Subject: d\r\n\r\n", kStatusReceived);
  const SerialId filed = profile_.Store("Subject: f\r\n\r\n", kStatusReceived);
  const SerialId folder = u"g"_id;
  ASSERT_TRUE(SetDust(context, {dusted}, true));
  ASSERT_TRUE(MoveMessages(context, {.into = {{folder, {filed}}}}));
  SerialIds many{dusted};
  for (int i = 0; i < 1200; ++i) many.append(SerialId(QStringLiteral("gone%1").arg(i)));
  many.append(filed);
  const auto stands = [&](const SerialIds& inFolder, const SerialIds& thrownAway) {
    const QStringList thrown = TextsOf(thrownAway);
    return test::Filed(context, many, folder) == inFolder &&
           profile_.Select(QStringLiteral("SELECT SERIALID AS V FROM mail WHERE STATUS < 0 "
                                          "ORDER BY rowid")) ==
               QList<QVariant>(thrown.begin(), thrown.end());
  };
  const Result<Moved> back = MoveMessages(context, {.into = {{folder, many}}, .outOfDust = many});
  ASSERT_TRUE(back && stands({dusted, filed}, {}));
  EXPECT_EQ(back->back.Messages(), SerialIds{dusted}) << "the other is not moved";
  EXPECT_TRUE(MoveMessages(context, back->back) && stands({filed}, {dusted}));
  int asked = 0;
  const MovedSome some = MoveInPieces(context, {.intoDust = many}, [&asked](int done, int total) {
    EXPECT_TRUE(done == 500 && total == 1202);
    return ++asked == 0;
  });
  EXPECT_TRUE(some.end && asked == 1 && some.messages == many.mid(0, 500));
  EXPECT_TRUE(stands({filed}, {dusted})) << "the end of them was not reached";
  const Result<Moved> out = SetDust(context, many, true);
  EXPECT_TRUE(out && stands({filed}, {dusted, filed}));
  EXPECT_TRUE(MoveMessages(context, out->back) && stands({filed}, {dusted}));
  EXPECT_EQ(ReceivedAmong(context, many).ValueOr({}), (SerialIds{dusted, filed}));
  ASSERT_TRUE(stands({filed}, {dusted})) << "which can be marked there";
  EXPECT_TRUE(SetMark(context, many, kFlagNew, false));
  EXPECT_EQ(Column(QStringLiteral("MAX(SUBSTR(FIELD_FLAG, 3, 1))")), QStringLiteral("0"));
  EXPECT_TRUE(SetMark(context, many, kFlagNew, true) && ToggleStar(context, many));
  EXPECT_EQ(Column(QStringLiteral("MIN(SUBSTR(FIELD_FLAG, 3, 1) & SUBSTR(FIELD_FLAG, 7, 1))")),
            QStringLiteral("11"));
  EXPECT_TRUE(DeleteMessages(context, many) && stands({}, {}));
  EXPECT_EQ(Column(QStringLiteral("COUNT(0)")), QStringLiteral("0"));
}

// One without a digest, as earlier versions stored it: no mail ends with zeros.
TEST_F(MailStoreTest, ASourceThatLostItsEndIsNotGivenOut) {
  ASSERT_TRUE(store_.StoreMessage(*Request(u"m"_id), "Subject: x\r\n\r\ntext\r\n"));
  const auto connection =
      Connection::Open(MailDatabasePath(profile_.Get()), profile_.Get().Session->Text(u"password"),
                       Connection::Mode::Existing)
          .ValueOr(nullptr);
  ASSERT_NE(connection, nullptr);
  const auto lay = [&](const QByteArray& bytes) {
    ASSERT_TRUE(connection->Run("UPDATE long_binary SET DIGEST = NULL, DATA = ?", {bytes}));
  };
  lay("Subject: x\r\n\r\nte");
  EXPECT_EQ(store_.LoadMessageSource(*Request(u"m"_id)), "Subject: x\r\n\r\nte");
  lay(QByteArray("Subject: x\r\n\r\nte\0\0", 18));
  EXPECT_FALSE(store_.LoadMessageSource(*Request(u"m"_id)));
}

TEST_F(MailStoreTest, WhoHasNoDefaultAccountWritesWithTheFirst) {
  const DiskPtr account = profile_.AddAccount(1);
  account->Let(QStringLiteral("Default"), false);
  Disk request(QStringLiteral("new"));
  request.Let(QStringLiteral("new"), true);
  const OpenedMessage opened = OpenMessage(profile_.Get(), request, true);
  ASSERT_EQ(opened.model.addresses.size(), 1);
  EXPECT_EQ(opened.model.addresses[0].address, account->Text(u"Mailaddress"));
}

TEST_F(MailStoreTest, TheMaskChoosesWhatIsWritten) {
  const DiskPtr message = Request(u"m"_id);
  Disk& request = *message;
  ASSERT_TRUE(store_.StoreMessage(request, "\r\n"));
  request.Let(QStringLiteral("process"), -4);
  request.Let(QStringLiteral("flag"), QStringLiteral("0'2"));
  request.Let(QStringLiteral("folder"), QStringLiteral("f"));
  ASSERT_TRUE(store_.UpdateMessageState(kStateFlag, request, true));
  EXPECT_EQ(Column(QStringLiteral("FIELD_FLAG")), QStringLiteral("0'2"));
  EXPECT_EQ(Column(QStringLiteral("STATUS")), QStringLiteral("1"));
  // What was marked meanwhile, by an answer or a star, stays.
  const QString marks = QStringLiteral("111");
  ASSERT_TRUE(OpenDatabase(profile_.Get(), DatabaseKind::Mail));
  ASSERT_TRUE(profile_.Get().Data.Execute(QStringLiteral("UPDATE mail SET FIELD_FLAG = '%1'")
                                              .arg(QString(kFlagAttachment, u'0') + marks)));
  profile_.Get().Data.Close();
  request.Let(QStringLiteral("flag"), QString(kFlagAttachment + marks.size(), u'2'));
  ASSERT_TRUE(store_.UpdateMessageState(kStateFlag, request, true));
  EXPECT_EQ(Column(QStringLiteral("FIELD_FLAG")), QString(kFlagAttachment, u'2') + marks);
  ASSERT_TRUE(store_.UpdateMessageState({}, request, true));
  EXPECT_EQ(Column(QStringLiteral("STATUS")), QStringLiteral("-4"));
  EXPECT_EQ(profile_.Select(QStringLiteral("SELECT FOLDERID AS V FROM folder")).size(), 1);
  ASSERT_TRUE(store_.DeleteMessage(request));
  EXPECT_EQ(Column(QStringLiteral("COUNT(0)")), QStringLiteral("0"));
}

TEST_F(MailStoreTest, OpeningAMessageReadsItAndMarksItOpened) {
  const SerialId serialId =
      profile_.Store("Subject: =?UTF-8?B?44GC?=\r\nFrom: =?UTF-8?B?44GE?= <a@x>\r\n\r\nbody\r\n");
  Disk request(serialId);
  const OpenedMessage message = OpenMessage(profile_.Get(), request);
  EXPECT_TRUE(message.found);
  EXPECT_EQ(message.model.subject, QStringLiteral("あ"));
  EXPECT_EQ(message.model.text.Get(), QStringLiteral("body\r\n"));
  ASSERT_EQ(message.model.addresses.size(), 1);
  EXPECT_EQ(PresentableAddress(message.model.addresses[0]), QStringLiteral("い <a@x>"));
  EXPECT_EQ(Column(QStringLiteral("FIELD_FLAG")).mid(2, 1), QStringLiteral("0"));
  EXPECT_EQ(request.Number(u"process"), 4);

  Disk missing(QStringLiteral("nowhere"));
  EXPECT_FALSE(OpenMessage(profile_.Get(), missing).found);
}

}  // namespace
}  // namespace vorn
