#include "mail/store/drafts.h"

#include <gtest/gtest.h>

#include "mail/store/answer_notes.h"
#include "mail/store/mail_store.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

TEST(DraftsTest, ADraftOutlivesTheProgramAndKeepsTheMessagesFolders) {
  test::TestProfile profile;
  Disk stored(QStringLiteral("mail_1"));
  stored.Let(QStringLiteral("process"), 1);
  stored.Let(QStringLiteral("folder"), QStringLiteral("one"));
  ASSERT_TRUE(MailStore(profile.Get()).StoreMessage(stored, "Subject: old\r\n\r\n"));
  const QByteArray typed("Subject: new\r\n\r\n\xF0\x9F\x8D\xA3\0\r\n", 22);
  ASSERT_TRUE(Drafts::Keep(profile.Get(), u"mail_1"_id, typed));
  profile.Restart();
  ASSERT_EQ(Drafts::LeftBehind(profile.Get()), SerialIds{u"mail_1"_id});
  ASSERT_TRUE(Drafts::Restore(profile.Get(), u"mail_1"_id, {}));
  EXPECT_EQ(MailStore(profile.Get()).LoadMessageSource(stored), typed);
  EXPECT_EQ(profile.Select(QStringLiteral("SELECT FOLDERID AS V FROM folder")),
            QList<QVariant>{QStringLiteral("one")});
  profile.Restart();
  EXPECT_TRUE(Drafts::LeftBehind(profile.Get()).isEmpty());
  // As a power failure leaves it: the message went on, and the draft came back.
  for (const int status : {2, 3, -3}) {
    ASSERT_TRUE(Drafts::Keep(profile.Get(), u"mail_1"_id, typed));
    stored.Let(QStringLiteral("process"), status);
    ASSERT_TRUE(MailStore(profile.Get()).StoreMessage(stored, "Subject: sent\r\n\r\n"));
    EXPECT_TRUE(Drafts::LeftBehind(profile.Get()).isEmpty()) << status;
    EXPECT_EQ(profile.Get().Objects.Find(u"draft_mail_1"_id), nullptr);
  }
}

TEST(DraftsTest, WhatADraftAnswersIsKnownAsLongAsItIsWritten) {
  test::TestProfile profile;
  const Answered answered{u"mail_0"_id, kFlagForwarded};
  const auto findAtStart = [&profile](const SerialIds& drafts = {}) {
    profile.Restart();
    AnswerNotes::Sweep(profile.Get(), drafts);
    return AnswerNotes::Find(profile.Get(), u"mail_1"_id);
  };
  ASSERT_TRUE(AnswerNotes::Keep(profile.Get(), u"mail_1"_id, answered));
  EXPECT_EQ(findAtStart({u"mail_1"_id}), answered);
  Disk stored(QStringLiteral("mail_1"));
  for (const int status : {1, -1, 2}) {
    stored.Let(QStringLiteral("process"), status);
    ASSERT_TRUE(MailStore(profile.Get()).StoreMessage(stored, "Subject: x\r\n\r\n"));
    EXPECT_EQ(findAtStart().has_value(), status != 2) << status;
  }
}

// What is stored may have the files that the draft has not.
TEST(DraftsTest, OneThatLacksFilesTakesNothingsPlaceAndNamesThem) {
  test::TestProfile profile;
  const QByteArray whole = "Subject: whole\r\n\r\n";
  Disk stored(QStringLiteral("mail_1"));
  stored.Let(QStringLiteral("process"), 1);
  ASSERT_TRUE(MailStore(profile.Get()).StoreMessage(stored, whole));
  const QStringList files = {QStringLiteral("/a/大きい.zip"), QStringLiteral("b.txt")};
  for (const char16_t* message : {u"mail_1", u"mail_new"}) {
    const SerialId serialId(QString::fromUtf16(message));
    ASSERT_TRUE(Drafts::Keep(profile.Get(), serialId, "Subject: new\r\n\r\n", files));
    ASSERT_TRUE(AnswerNotes::Keep(profile.Get(), serialId, {u"mail_0"_id}));
    profile.Restart();
    const Result<Drafts::Restored> restored =
        Drafts::Restore(profile.Get(), serialId, u"mail_apart"_id);
    ASSERT_TRUE(restored);
    EXPECT_EQ(restored->message, serialId == u"mail_1"_id ? u"mail_apart"_id : serialId);
    EXPECT_EQ(restored->leftOut, files);
    EXPECT_EQ(AnswerNotes::Find(profile.Get(), restored->message), Answered{u"mail_0"_id});
  }
  EXPECT_EQ(MailStore(profile.Get()).LoadMessageSource(stored), whole);
}

}  // namespace
}  // namespace vorn
