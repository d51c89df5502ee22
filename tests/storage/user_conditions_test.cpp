// What users write as conditions reads messages, ends in time and does nothing else.

#include <gtest/gtest.h>

#include <utility>

#include "storage/databases.h"
#include "storage/engine/condition_limit.h"
#include "support/hostile_conditions.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

using test::TestProfile;

const QString kAll = QStringLiteral("SELECT * FROM mail WHERE ");

class UserConditionsTest : public testing::Test {
 protected:
  void SetUp() override { profile_.Store("Subject: found\r\n\r\nbody words\r\n"); }

  // 1 with rows, 0 without, -1 when it was refused.
  int Rows(const QString& select, StatementTrust trust) {
    DataSession& data = profile_.Get().Data;
    EXPECT_TRUE(OpenDatabase(profile_.Get(), DatabaseKind::Mail));
    const bool opened = data.OpenRecordset(select, CursorKind::ForwardOnly, trust);
    const int rows = opened ? !data.Recordset()->Eof() : -1;
    data.Close();
    return rows;
  }
  int Asked(const char16_t* condition) {
    return Rows(kAll + QString::fromUtf16(condition), StatementTrust::UserCondition);
  }

  TestProfile profile_;
};

TEST_F(UserConditionsTest, MessagesAndFoldersAreRead) {
  for (const char16_t* condition :
       {u"FIELD_SUBJECT LIKE 'F*' AND MAIL LIKE '*words*'",
        u"DATEDIFF(\"d\", NOW, FIELD_TIMESTAMP) >= 0",
        u"SERIALID NOT IN (SELECT SERIALID FROM folder) AND LENGTH(FIELD_SUBJECT) = 5",
        u"STATUS = (SELECT MAX(b.STATUS) FROM mail a, mail b)"}) {
    EXPECT_EQ(Asked(condition), 1) << QString::fromUtf16(condition).toStdString();
  }
}

// Each of these is true when the program itself asks, so that nothing but the trust refuses it.
TEST_F(UserConditionsTest, NothingElseIsReadOrCalled) {
  for (const char16_t* hostile : test::kForeignReads) {
    const QString select = kAll + QString::fromUtf16(hostile);
    EXPECT_EQ(Rows(select, StatementTrust::System), 1) << select.toStdString();
    EXPECT_EQ(Rows(select, StatementTrust::UserCondition), -1) << select.toStdString();
  }
}

TEST_F(UserConditionsTest, NothingIsWrittenAndTheDialectsBoundsHold) {
  const auto tables = [this] {
    return profile_.Select(
        QStringLiteral("SELECT name || COALESCE(sql, '') AS V FROM sqlite_master"));
  };
  const QList<QVariant> before = tables();
  for (const char16_t* statement : test::kWrites) {
    const QString text = QString::fromUtf16(statement);
    EXPECT_EQ(Rows(text, StatementTrust::UserCondition), -1) << text.toStdString();
  }
  for (const char16_t* condition : test::kNoConditions) {
    EXPECT_EQ(Asked(condition), -1) << QString::fromUtf16(condition).toStdString();
  }
  EXPECT_EQ(Asked(u"STATUS = 4"), 1);
  EXPECT_EQ(tables(), before);
}

// Names that name each other twice.
QString Tower(int height) {
  QString names = QStringLiteral("c0 AS (SELECT 1 AS s)");
  for (int i = 1; i <= height; ++i) {
    names += QStringLiteral(", c%1 AS (SELECT a.s FROM c%2 a, c%2 b)").arg(i).arg(i - 1);
  }
  return QStringLiteral("0 < (WITH %1 SELECT COUNT(s) FROM c%2)").arg(names).arg(height);
}

TEST_F(UserConditionsTest, OneThatWouldTakeForEverIsGivenUp) {
  for (int i = 0; i < 40; ++i) profile_.Store("Subject: s\r\n\r\n");
  const int limit = std::exchange(ConditionLimit::DefaultMs, 300);
  const QString ten = QStringLiteral("'aaaaaaaaaa'");
  QString many = ten;  // a million
  for (int i = 0; i < 5; ++i) many = QStringLiteral("replace(%1,'a',%2)").arg(many, ten);
  const QString joined = QStringLiteral("mail a, mail b, mail c, mail d, mail e, mail f, mail g");
  const QString ones = QStringLiteral("replace(%1,'a','1111111111')").arg(many);
  const std::pair<QString, bool> conditions[] = {
      // and whether it cannot end
      {QStringLiteral("0 > (SELECT COUNT(a.STATUS) FROM %1)").arg(joined), true},
      {QStringLiteral("0 > (SELECT MAX(a.STATUS) FROM %1 GROUP BY a.STATUS)").arg(joined), true},
      {QStringLiteral("STATUS = 9 UNION SELECT a.* FROM %1 WHERE a.STATUS + b.STATUS + c.STATUS + "
                      "d.STATUS + e.STATUS + f.STATUS + g.STATUS = 9")
           .arg(joined),
       true},
      {QStringLiteral("'x' IN (SELECT DISTINCT a.MAIL & b.MAIL FROM %1)").arg(joined), true},
      {QStringLiteral("0 > (SELECT COUNT(0) FROM mail a, mail b, mail c WHERE length(replace("
                      "a.SERIALID & b.SERIALID & c.SERIALID & %1,'a','bb')) = 1)")
           .arg(many),
       true},
      {Tower(30), true},
      // Nor does one step of it take for ever: the engine looks at the time between steps.
      {QStringLiteral("instr(%1, substr(%1,1,300000)||'b') > 0").arg(many), false},
      {QStringLiteral("length(trim(%1||'c', 'b'||%1)) > 0").arg(many), false},
      {QStringLiteral("length(replace(replace(%1,'a',%1),'a',%1)) > 0").arg(many), false},
      {QStringLiteral("%1 LIKE '*' & substr(%1,1,500000) & 'b*'").arg(many), true},
      {QStringLiteral("%1 LIKE '*' & substr(%1,1,500000) & 'b'").arg(many), true},
      {QStringLiteral("%1 LIKE '*' & substr(%1,1,5000000) & '0*'").arg(ones), false},
      {QStringLiteral("CONTAINS(%1, substr(%1,1,500000) & 'b')").arg(many), true},
      {QStringLiteral("%1 LIKE replace(substr(%1,1,20000),'a','*a') & 'b' ESCAPE '!'").arg(many),
       true}};
  ASSERT_TRUE(OpenDatabase(profile_.Get(), DatabaseKind::Mail));
  DataSession& data = profile_.Get().Data;
  for (const auto& [condition, isEndless] : conditions) {
    QElapsedTimer clock;
    clock.start();
    const bool isOpen = data.OpenRecordset(kAll + condition, CursorKind::ForwardOnly,
                                           StatementTrust::UserCondition);
    const std::string about = condition.right(100).toStdString();
    EXPECT_LT(clock.elapsed(), 20000) << about;  // of hours
    EXPECT_FALSE(isEndless && isOpen) << about;
    EXPECT_TRUE(data.Damage().IsEmpty()) << about;
  }
  EXPECT_FALSE(data.OpenRecordset(kAll + conditions[0].first, CursorKind::ForwardOnly,
                                  StatementTrust::UserCondition));
  EXPECT_EQ(data.LastError().kind, StorageError::Kind::Refused);
  // Nothing else is limited by it.
  EXPECT_TRUE(data.OpenRecordset(
      QStringLiteral("SELECT COUNT(a.STATUS) AS V FROM mail a, mail b, mail c, mail d"),
      CursorKind::ForwardOnly));
  data.Close();
  ConditionLimit::DefaultMs = limit;
}

}  // namespace
}  // namespace vorn
