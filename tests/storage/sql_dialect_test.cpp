#include "storage/sql/sql_dialect.h"

#include <gtest/gtest.h>

#include "storage/sql/like_pattern.h"
#include "storage/sql/sql_text.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

QString Translated(const QString& statement) {
  const auto result = TranslateSql(statement);
  return result ? QString::fromUtf8(result->sql)
                : QStringLiteral("refused: ") + result.Error().text;
}

TEST(SqlDialect, LiteralsAreNeverTranslated) {
  const auto result = TranslateSql(
      QStringLiteral("SELECT * FROM mail WHERE FIELD_SUBJECT = 'NOW DELETE * it''s \"x\" MAIL'"));
  ASSERT_TRUE(result);
  EXPECT_EQ(result->sql, QByteArray("SELECT * FROM mail WHERE FIELD_SUBJECT = ?"));
  EXPECT_EQ(result->parameters[0].toString(), QStringLiteral("NOW DELETE * it's \"x\" MAIL"));
}

TEST(SqlDialect, TheDialectsOwnFormsAreTranslated) {
  EXPECT_EQ(Translated(QStringLiteral("DELETE * FROM mail WHERE STATUS < 0")),
            QStringLiteral("DELETE  FROM mail WHERE STATUS < 0"));
  EXPECT_EQ(
      Translated(QStringLiteral("SELECT 1 WHERE DATEDIFF(\"d\", now, mail.FIELD_TIMESTAMP )")),
      QStringLiteral("SELECT 1 WHERE DATEDIFF(?, NOW(), mail.FIELD_TIMESTAMP )"));
  EXPECT_EQ(Translated(QStringLiteral("SELECT 1 WHERE a = 'x' & 'y'")),
            QStringLiteral("SELECT 1 WHERE a = ? || ?"));
  EXPECT_EQ(Translated(QStringLiteral("SELECT * FROM mail WHERE [MAIL] LIKE '*x*'")),
            QStringLiteral("SELECT * FROM mail WHERE LONG_BINARY(MAIL) LIKE ?"));
  EXPECT_EQ(Translated(QStringLiteral("SELECT * FROM mail WHERE [mail].[MAIL] LIKE '*x*'")),
            QStringLiteral("SELECT * FROM mail WHERE LONG_BINARY(\"mail\".MAIL) LIKE ?"));
  EXPECT_EQ(Translated(QStringLiteral("SELECT * FROM mail WHERE mail.MAIL LIKE '*x*'")),
            QStringLiteral("SELECT * FROM mail WHERE LONG_BINARY(mail.MAIL) LIKE ?"));
}

TEST(SqlDialect, OneClosedStatementOnly) {
  EXPECT_TRUE(Translated(QStringLiteral("SELECT 'x")).startsWith(u"refused"));
  EXPECT_TRUE(Translated(QStringLiteral("SELECT 1; DROP TABLE mail")).startsWith(u"refused"));
  EXPECT_EQ(Translated(QStringLiteral("SELECT 1; ")), QStringLiteral("SELECT 1"));
  EXPECT_EQ(Translated(QStringLiteral("SELECT 1 --x")), QStringLiteral("SELECT 1 - -x"));
}

TEST(SqlDialect, OnlyWholePlainTablesCanBeUpdated) {
  EXPECT_EQ(UpdatableTable(QStringLiteral("SELECT * FROM mail WHERE SERIALID = 'x'")),
            QStringLiteral("mail"));
  EXPECT_EQ(UpdatableTable(QStringLiteral("SELECT SERIALID FROM mail")), QString());
  EXPECT_EQ(UpdatableTable(QStringLiteral("SELECT * FROM mail, folder")), QString());
}

bool Like(const char* pattern, const char* text) {
  return LikePattern(std::string_view(pattern)).Matches(std::string_view(text));
}

TEST(LikePattern, WildcardsMatchWithoutRegardToCase) {
  EXPECT_TRUE(Like("*abc*", "xxABCyy"));
  EXPECT_FALSE(Like("*abc*", "ab c"));
  EXPECT_TRUE(Like("*会議*", "明日の会議は"));
  EXPECT_TRUE(Like("a?c", "A議C"));
  EXPECT_FALSE(Like("a?c", "ac"));
  EXPECT_TRUE(Like("No.##", "no.12"));
  EXPECT_FALSE(Like("No.##", "no.1x"));
  EXPECT_TRUE(Like("[a-c]*[!0-9]", "Bxx"));
  EXPECT_FALSE(Like("[a-c]*[!0-9]", "bx1"));
  EXPECT_TRUE(Like("[a-c][x]", "cx"));
  EXPECT_TRUE(Like("100%_", "100%_"));
  EXPECT_FALSE(Like("100%", "1000"));
  EXPECT_TRUE(Like("*[*", "a[b"));
  EXPECT_TRUE(Like("**", ""));
  EXPECT_TRUE(Like("*é*", "CAFÉ"));
  EXPECT_TRUE(Like("*ａｂｃ*", "ＸＡＢＣ"));
  // What begins like the pattern may begin it again one letter on, and a word with A in it is
  // found.
  EXPECT_TRUE(Like("*aab*", "AaAB"));
  EXPECT_TRUE(Like("x*aab", "x aab aaab"));
  EXPECT_TRUE(Like("*ABBA*", "abba"));
}

TEST(LikePattern, MalformedTextAndLongPatternsAreHarmless) {
  EXPECT_TRUE(Like("*b*",
                   "\xFF\xE3\x81"
                   "b\xC3"));
  const std::string many(2000, 'a');
  std::string pattern;
  for (int i = 0; i < 500; ++i) pattern += "*a";
  EXPECT_FALSE(LikePattern(pattern + "b").Matches(many));
}

TEST(SqlText, QuotesAreDoubled) {
  EXPECT_EQ(QuoteSql(QStringLiteral("a'b''c")), QStringLiteral("'a''b''''c'"));
}

}  // namespace
}  // namespace vorn
