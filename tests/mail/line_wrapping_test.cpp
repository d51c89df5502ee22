// Lines that are broken before they are sent.

#include "mail/codec/text/line_wrapping.h"

#include <gtest/gtest.h>

namespace vorn {
namespace {

TEST(LineWrappingTest, BreaksWhereTheLanguageAllowsIt) {
  const std::tuple<QString, QString> cases[] = {
      {QStringLiteral("aaaa bbbb cccc"), QStringLiteral("aaaa bbbb\ncccc")},
      {QStringLiteral("aaaa bbb"), QStringLiteral("aaaa bbb")},
      {QStringLiteral("aaaaaaaaaabbb cc"), QStringLiteral("aaaaaaaaaabbb\ncc")},
      {QStringLiteral("あいうえおかきくけこさ"), QStringLiteral("あいうえお\nかきくけこ\nさ")},
      {QStringLiteral("あいうえお。かき"), QStringLiteral("あいうえ\nお。かき")},
      {QStringLiteral("あいうえ「おか」"), QStringLiteral("あいうえ\n「おか」")},
      {QStringLiteral("ab https://x.example/a-b/c-d e"),
       QStringLiteral("ab\nhttps://x.example/a-b/c-d\ne")},
      {QStringLiteral("> aaaa bbbb cccc"), QStringLiteral("> aaaa bbbb cccc")},
      {QStringLiteral("| aaaa bbbb cccc"), QStringLiteral("| aaaa bbbb cccc")},
      {QStringLiteral("aaaaa bbb >cc"), QStringLiteral("aaaaa\nbbb >cc")},
      {QStringLiteral("aaaa bbbb  \n\n\ncccc dddd eeee"),
       QStringLiteral("aaaa bbbb  \n\n\ncccc dddd\neeee")},
      {QStringLiteral("-- "), QStringLiteral("-- ")},
      {QString(), QString()}};
  for (const auto& [text, wrapped] : cases) {
    EXPECT_EQ(WrapLines(text, 10, QStringLiteral("| ")).toStdString(), wrapped.toStdString());
  }
}

TEST(LineWrappingTest, WideLettersTakeTwoColumns) {
  const std::pair<QString, int> cases[] = {{QStringLiteral("ab"), 2},
                                           {QStringLiteral("あｱＡ"), 5},
                                           {QStringLiteral("é①…"), 5},
                                           {QStringLiteral("か\u3099"), 2},
                                           {QStringLiteral("\U0001F600\U00020BB7"), 4}};
  for (const auto& [text, columns] : cases) EXPECT_EQ(ColumnsOf(text), columns);
}

}  // namespace
}  // namespace vorn
