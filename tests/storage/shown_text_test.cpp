#include "storage/base/shown_text.h"

#include <gtest/gtest.h>

namespace vorn {
namespace {

TEST(ShownText, WhatNobodySeesIsVisible) {
  for (const char32_t c :
       {0x3164u, 0x115Fu, 0x1160u, 0xFFA0u, 0x200Bu, 0x2060u, 0xFEFFu, 0xADu, 0x34Fu, 0x180Eu,
        0x2800u, 0xE0001u, 0xE0020u, 0xE007Fu, 0x200Cu, 0x200Du, 0xFE0Fu, 0xE0100u}) {
    const QString mark = QStringView(QChar::fromUcs4(c)).toString();
    const QString sign = QStringLiteral("[U+%1]").arg(uint(c), 4, 16, QLatin1Char('0')).toUpper();
    for (const QString& name : {QStringLiteral("a%1.exe"), QStringLiteral("%1pdf")}) {
      EXPECT_EQ(ShownText(name.arg(mark)), name.arg(sign));
      EXPECT_EQ(WithoutHidden(name.arg(mark)), name.arg(QString())) << sign.toStdString();
    }
  }
  EXPECT_EQ(ShownText(QStringLiteral("😀😀"), 2), QStringLiteral("😀…"));
}

TEST(ShownText, WhatShapesLettersStays) {
  for (const char16_t* text : {u"日本語 ｶﾞ 한국어 café", u"می\u200Cخواهم", u"क्\u200Dष", u"\u0600١",
                               u"👩\u200D💻", u"👩🏽\u200D🚀", u"❤\uFE0F\u200D🔥",
                               u"1\uFE0F\u20E3", u"葛\U000E0100城", u"‼\uFE0F"}) {
    const QString whole = QString::fromUtf16(text);
    EXPECT_EQ(ShownText(whole), whole);
    EXPECT_EQ(WithoutHidden(whole), whole);
  }
}

TEST(ShownFileName, ALongNameKeepsItsEndsAndWholeLetters) {
  const QString face = QStringLiteral("😀");
  for (const QString& before : {QString(), QStringLiteral("a")}) {
    for (const QString& after : {QStringLiteral(".exe"), QStringLiteral(".html")}) {
      const QString shown = ShownFileName(before + face.repeated(300) + after, 100);
      EXPECT_LE(shown.size(), 100);
      EXPECT_TRUE(shown.startsWith(before + face) && shown.endsWith(face + after));
      EXPECT_TRUE(shown.isValidUtf16()) << shown.toStdString();
    }
  }
}

}  // namespace
}  // namespace vorn
