// Questions with a user's condition that are asked on a thread of their own.

#include "storage/condition_run.h"

#include <gtest/gtest.h>

#include <optional>

#include "storage/databases.h"
#include "storage/engine/condition_limit.h"
#include "storage/session/own_statement.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

using test::TestProfile;
using test::WaitFor;

const QString kEveryRow = QStringLiteral("SELECT SERIALID FROM mail");
const QString kEndless =
    kEveryRow + QStringLiteral(
                    " WHERE 0 > (SELECT COUNT(a.STATUS) FROM mail a, mail b, mail "
                    "c, mail d, mail e, mail f, mail g, mail h)");
constexpr int kLongMs = 600000;

class ConditionRunTest : public testing::Test {
 protected:
  ConditionRunTest() {
    for (int i = 0; i < 40; ++i) profile_.Store("Subject: s\r\n\r\n");
  }
  ConditionRunPtr Ask(const QString& question, int limitMs) {
    answer_.reset();
    return ConditionRunPtr(
        new ConditionRun(profile_.Get(), question, limitMs,
                         [this](const ConditionRun::Answer& answer) { answer_ = answer; }));
  }

  TestProfile profile_;
  std::optional<ConditionRun::Answer> answer_;
};

TEST_F(ConditionRunTest, TheAnswerHasWhatIsOnlyGatheredYet) {
  DataSession& data = profile_.Get().Data;
  ASSERT_TRUE(OpenDatabase(profile_.Get(), DatabaseKind::Mail));
  data.Group().Gather(MailDatabasePath(profile_.Get()));
  ASSERT_TRUE(data.BeginGathered());
  ASSERT_TRUE(RunOwn(data, "INSERT INTO mail (SERIALID, STATUS) VALUES ('m', 4)", {}));
  ASSERT_TRUE(data.Commit());
  const ConditionRunPtr run = Ask(kEveryRow, kLongMs);
  ASSERT_TRUE(WaitFor([&] { return answer_.has_value(); }));
  ASSERT_TRUE(answer_->values) << qPrintable(answer_->values.Error().text);
  EXPECT_EQ(answer_->values->size(), 41);
  EXPECT_TRUE(answer_->values->contains(QStringLiteral("m")));
  EXPECT_TRUE(data.Group().End());
  data.Close();
}

TEST_F(ConditionRunTest, WhatIsRefusedOrTakesTooLongIsToldByTheReason) {
  for (const auto& [question, words] :
       {std::pair{kEveryRow + QStringLiteral(" WHERE x"), QStringLiteral("「x」")},
        std::pair{kEveryRow + QStringLiteral(" WHERE 0 < (SELECT COUNT(DATA) FROM long_binary)"),
                  QStringLiteral("メッセージの検索だけ")},
        std::pair{kEveryRow + QStringLiteral(" WHERE '"), QString()},
        std::pair{kEndless, QStringLiteral("時間がかかりすぎる")}}) {
    const ConditionRunPtr run = Ask(question, 300);
    ASSERT_TRUE(WaitFor([&] { return answer_.has_value(); })) << qPrintable(question);
    ASSERT_FALSE(answer_->values) << qPrintable(question);
    EXPECT_TRUE(answer_->values.Error().text.contains(words))
        << qPrintable(answer_->values.Error().text);
  }
}

TEST_F(ConditionRunTest, OneThatIsStoppedEndsAtOnceAndSaysNothing) {
  const QString ten = QStringLiteral("'aaaaaaaaaa'");
  QString million = ten;
  for (int i = 0; i < 5; ++i) million = QStringLiteral("replace(%1,'a',%2)").arg(million, ten);
  // The second is one long step of the engine.
  for (const QString& question :
       {kEndless,
        QString(kEveryRow +
                QStringLiteral(" WHERE %1 LIKE '*' & substr(%1,1,500000) & 'b*'").arg(million))}) {
    ConditionRunPtr run = Ask(question, kLongMs);
    EXPECT_FALSE(WaitFor([&] { return answer_.has_value(); }, 500));
    profile_.Store("Subject: meanwhile\r\n\r\n");
    QElapsedTimer clock;
    clock.start();
    run.reset();
    EXPECT_LT(clock.elapsed(), 10000) << qPrintable(question);  // of hours
    EXPECT_FALSE(WaitFor([&] { return answer_.has_value(); }, 100));
  }
}

TEST_F(ConditionRunTest, ALimitHoldsInItsScopeAndTellsThatItWasReached) {
  DataSession& data = profile_.Get().Data;
  ASSERT_TRUE(OpenDatabase(profile_.Get(), DatabaseKind::Mail));
  const auto ask = [&data](const QString& question) {
    return data.OpenRecordset(question, CursorKind::ForwardOnly, StatementTrust::UserCondition);
  };
  const ConditionLimit outer(kLongMs);
  {
    const ConditionLimit brief(100);
    EXPECT_TRUE(ask(kEveryRow));
    EXPECT_FALSE(ask(kEveryRow + QStringLiteral(" WHERE x")));
    EXPECT_FALSE(brief.IsReached());
    EXPECT_FALSE(ask(kEndless));
    EXPECT_TRUE(brief.IsReached());
  }
  EXPECT_EQ(ConditionLimit::Ms(), kLongMs);
  EXPECT_FALSE(outer.IsReached());
  data.Close();
}

}  // namespace
}  // namespace vorn
