// What of a mail's HTML is shown: what looks, and nothing that acts.

#include "mail/codec/html/html_sanitizer.h"

#include <gtest/gtest.h>

#include "mail/codec/html/html_text.h"
#include "mail/codec/html/style_filter.h"
#include "support/growth.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

QString Body(const QString& html, RemoteImages images = RemoteImages::LeftOut) {
  const QString whole = QString::fromUtf8(SanitizeHtml(html, images).html);
  const qsizetype start = whole.indexOf(u'>', whole.indexOf(u"<body")) + 1;
  return whole.sliced(start, whole.lastIndexOf(u"</body>") - start);
}

TEST(HtmlSanitizer, WhatLooksStays) {
  const QString table = QStringLiteral(
      "<table border=\"1\"><tbody><tr><td colspan=\"2\" bgcolor=\"#ff0000\">甲</td></tr></tbody>"
      "</table>");
  EXPECT_EQ(Body(table), table);
  const QString text = QStringLiteral(
      "<p style=\"color:red;font-size:12px\">a &lt; b &amp; c<br><b>太</b> <font "
      "color=\"blue\">青</font></p><ul><li>一</li></ul><a href=\"https://x.example/?a=1&amp;b=2\">"
      "行く</a><img src=\"data:image/gif;base64,"
      "R0lGODlhAQABAIAAAP///wAAACwAAAAAAQABAAACAkQBADs=\" alt=\"図\">");
  EXPECT_EQ(Body(text), text);
  // As browsers read what is not well-formed; unknown elements leave their text.
  EXPECT_EQ(Body(QStringLiteral("<b>x<i>y</b>z<o:p>w</o:p><center>v")),
            QStringLiteral("<b>x<i>y</i></b><i>zw<center>v</center></i>"));
  EXPECT_EQ(Body(QStringLiteral("&hellip;&eacute;&#12354;")), QStringLiteral("…éあ"));
}

TEST(HtmlSanitizer, NothingThatActsStays) {
  // Each with a word that must not come through.
  for (const char* hostile :
       {"<script>evil</script>",
        "<img src=x onerror=evil>",
        "<svg onload=evil><image href=http://evil/>evil</svg>",
        "<math><mtext><evil></mtext></math>",
        "<iframe srcdoc='<meta http-equiv=x-dns-prefetch-control content=evil>'></iframe>",
        "<meta http-equiv=refresh content='0;url=http://evil/'>",
        "<meta http-equiv='x-dns-prefetch-control' content='evil'>",
        "<link rel=dns-prefetch href=//evil.example><link rel=preconnect href=http://evil/>",
        "<base href=http://evil/>",
        "<form action=http://evil/><input name=evil value=evil></form>",
        "<object data=http://evil/></object><embed src=http://evil/>",
        "<video poster=http://evil/ src=http://evil/></video><audio src=http://evil/></audio>",
        "<a href=javascript:evil>x</a><a href='java\tscript:evil'>x</a><a href=//evil/>x</a>",
        "<a href=data:text/html,evil>x</a><a ping=http://evil/ target=evil href=#t>x</a>",
        "<img srcset='http://evil/ 2x'><img src=file:///evil><img src=data:image/svg+xml,evil>",
        "<img src=cid:evil><img src=evil.png><input type=image src=http://evil/>",
        "<p style='background:url(http://evil/)'>x</p>",
        "<p style='background:\\75rl(http://evil/)'>x</p>",
        "<p style='width:expression(evil)'>x</p><p style='position:fixed;--evil:1'>x</p>",
        "<p style=\"color:red;background-image:image-set('http://evil/' 1x)\">x</p>",
        "<style>@import 'http://evil/';p{background:url(http://evil/)}</style>",
        "<style>@font-face{font-family:evil;src:url(http://evil/)}</style>",
        "<style>p{color:red}</style\n><style>a[href^=evil]{color:red}</style>",
        "<style><!-- </style><script>evil</script> --></style>",
        "<noscript><p title='</noscript><script>evil</script>'></noscript>",
        "<template><script>evil</script></template><select><option>evil</select>",
        "<title>evil</title><textarea></textarea><!-- evil -->",
        "<x><![CDATA[<script>]]></x evil=1>"}) {
    const QString html = QString::fromLatin1(hostile);
    for (const RemoteImages images : {RemoteImages::LeftOut, RemoteImages::Kept}) {
      const QString safe = QString::fromUtf8(SanitizeHtml(html, images).html);
      // Markup that was made text is text.
      EXPECT_FALSE(
          QString(safe).remove(QRegularExpression(QStringLiteral("&lt;[^<]*"))).contains(u"evil"))
          << safe.toStdString();
    }
  }
}

TEST(HtmlSanitizer, ImagesOfTheNetworkAreLeftOutUntilTheyAreWanted) {
  const QString html = QStringLiteral(
      "<body background=http://a/1><img width=1 src=' HTTPS://a/2 '><table background=//a/3>");
  const SafeHtml before = SanitizeHtml(html, RemoteImages::LeftOut);
  EXPECT_TRUE(before.hasRemoteImages);
  EXPECT_FALSE(before.html.contains("//a/"));
  EXPECT_FALSE(before.html.contains("http:"));
  const QByteArray after = SanitizeHtml(html, RemoteImages::Kept).html;
  EXPECT_TRUE(
      after.contains("<img width=\"1\" src=\"vorn-mail://mail/image?HTTPS%3A%2F%2Fa%2F2\">"))
      << after.toStdString();
  EXPECT_TRUE(after.contains("background=\"vorn-mail://mail/image?http%3A%2F%2Fa%2F1\""));
  EXPECT_TRUE(after.contains("background=\"vorn-mail://mail/image?https%3A%2F%2Fa%2F3\""));
  EXPECT_FALSE(after.contains("//a/"));
  EXPECT_FALSE(
      SanitizeHtml(QStringLiteral("<img src=data:image/gif;base64,AA>"), RemoteImages::LeftOut)
          .hasRemoteImages);
}

// Those that are never shown are counted, whatever names them.
TEST(HtmlSanitizer, ImagesOfOtherFormsAreCounted) {
  const std::pair<const char*, int> cases[] = {
      {"<p style='background:#fff url( http://a/1 )'>", 1},
      {"<p style=\"border-image:url('//a/1');list-style-image:URL(https://a/2)\">", 2},
      {"<p style=\"background-image:image-set('http://a/1' 1x, 'http://a/2' 2x)\">", 2},
      {"<style>p{cursor:url(http://a/1),auto} /* url(http://a/c) */</style>", 1},
      {"<style>@import 'http://a/1';@font-face{src:url(http://a/2)} p{color:red}</style>", 0},
      {"<img srcset='http://a/1 2x'><img src=http://a/1 srcset='http://a/2 2x'>", 1},
      {"<video poster=http://a/1></video><input type=IMAGE src=http://a/2>", 2},
      {"<object type=image/png data=http://a/1></object><embed type=image/gif src=http://a/2>", 2},
      {"<svg><g><image xlink:href=http://a/1 /></g><image href='//a/2'/></svg>", 2},
      {"<a href=http://b/1>x</a><p style='background:url(data:image/gif;base64,AA)'>", 0},
  };
  for (const auto& [html, count] : cases) {
    const SafeHtml safe = SanitizeHtml(QString::fromLatin1(html), RemoteImages::Kept);
    EXPECT_EQ(safe.otherImages, count) << html;
    EXPECT_FALSE(safe.html.contains("//a/")) << html;
  }
}

// By its bytes, whatever its label; and none that costs its reader's machine minutes.
TEST(HtmlSanitizer, PicturesWithinTheMailAreOfTheCommonKindsAndOfASize) {
  const QByteArray gif = QByteArray::fromBase64("R0lGODlhAQABAIAAAP///wAAACwAAAAAAQABAAACAkQBADs=");
  const QString shown =
      QString::fromLatin1("<img src=\"data:image/gif;base64," + gif.toBase64() + "\">");
  const auto image = [](const QByteArray& address) {
    return Body(QString::fromLatin1("<img src=\"" + address + "\">"));
  };
  EXPECT_EQ(image("data:image/png;base64," + gif.toBase64()), shown);
  EXPECT_EQ(image("DATA:;x=y;BASE64,R0lG%4FDlhAQABAIAAAP///wAAACwAAAAA AQABAAACAkQBADs="), shown);
  EXPECT_EQ(image("data:image/gif," + gif.toPercentEncoding()), shown);
  const QString nothing = QStringLiteral("<img>");
  EXPECT_EQ(image("data:image/png;base64," + QByteArray("\0\0\0\x1c"
                                                        "ftypavif")
                                                 .toBase64()),
            nothing);
  EXPECT_EQ(image("data:image/gif;base64"), nothing);
  const auto png = [](int width, int height) {
    QByteArray head = QByteArray::fromHex("89504e470d0a1a0a0000000d49484452");
    for (const int side : {width, height})
      head += QByteArray::number(side, 16).rightJustified(8, '0');
    return "data:image/png;base64," +
           (head.first(16) + QByteArray::fromHex(head.sliced(16))).toBase64();
  };
  EXPECT_EQ(image(png(15000, 15000)), nothing);
  EXPECT_EQ(
      Body(QStringLiteral("<img src=\"%1\">").arg(QString::fromLatin1(png(5000, 8000))).repeated(9))
          .count(u"src="),
      5);
}

// The depth is hidden from whoever counts tags.
TEST(HtmlSanitizer, ManyLevelsInDisguiseGiveTheirText) {
  for (const char* piece : {"<div><!--</div>-->", "<div a='</div>'>", "<div></div-x>", "<p-x>",
                            "<svg><td><td>", "<div>"}) {
    const QString html = QString::fromLatin1(piece).repeated(20000) + QStringLiteral("words");
    EXPECT_TRUE(SanitizeHtml(html, RemoteImages::LeftOut).html.contains("words")) << piece;
  }
}

TEST(HtmlSanitizer, PagesTakeNoLongerThanTheyAreLong) {
  const auto links = [](int times) {
    QString html;
    for (int i = 0; i < times; ++i) html += QStringLiteral("<a href='http://x/%1'>y</a> ").arg(i);
    EXPECT_TRUE(HtmlToText(html).contains(QStringLiteral("[%1]").arg(times)));
  };
  EXPECT_LT(test::GrowthOverEight(4000, links), test::kLinear);
  const auto repeated = [](const char* piece, int times) {
    return QString::fromLatin1(piece).repeated(times);
  };
  const auto comments = [&](int times) { HtmlToText(repeated("<!--", times)); };
  EXPECT_LT(test::GrowthOverEight(12000, comments), test::kLinear);
  // What stands deep is not shown so deep.
  const QString items = repeated("<ul>", 600) + repeated("<li>x", 10000);
  const QString quotes = repeated("<blockquote>", 600) + repeated("x<br>", 10000);
  EXPECT_LT(HtmlToText(items).size() + HtmlToText(quotes).size(), 3000000);
}

TEST(HtmlSanitizer, StylesSayHowItLooks) {
  EXPECT_EQ(SafeDeclarations(QStringLiteral("COLOR: red; position:fixed; margin:0 auto !important;"
                                            "width:calc(100% - 2px); color:#fff/*x*/; top:0;"
                                            "font-family:'ＭＳ ゴシック', serif; content:'x'")),
            QStringLiteral("color:red;margin:0 auto !important;width:calc(100% - 2px);color:#fff;"
                           "font-family:'ＭＳ ゴシック', serif"));
  // A picture behind a text goes, the colour that it is seen on stays.
  EXPECT_EQ(SafeDeclarations(QStringLiteral(
                "background:#003366 URL( 'http://x/;a.png' ) no-repeat;color:#fff;"
                "background:linear-gradient(#000, rgba(1,2,3,.5)); background: url(http://x/)")),
            QStringLiteral("color:#fff;background:linear-gradient(#000, rgba(1,2,3,.5))"));
  EXPECT_EQ(SafeDeclarations(QStringLiteral("background:#003366 url(http://x/a.png) no-repeat")),
            QStringLiteral("background:#003366  no-repeat"));
  EXPECT_EQ(SafeStyleSheet(QStringLiteral("<!--\np.MsoNormal, .本文{margin:0} td{color:red} -->")),
            QStringLiteral("p.MsoNormal, .本文{margin:0}td{color:red}"));
  EXPECT_EQ(SafeStyleSheet(QStringLiteral("@charset 'x'; p, .a > b:hover {color:red;top:1}"
                                          "@media (max-width: 600px) {td {width:1px}}"
                                          "@supports (x) {p {color:blue}} q")),
            QStringLiteral("p, .a > b:hover{color:red}@media (max-width: 600px){td{width:1px}}"));
}

// What is taken out of a sheet must not let the rest become the end of its element.
// Where a sender gives one colour and not the other, the reader's scheme must not give that.
TEST(HtmlSanitizer, WhatHasNoColorsFollowsTheReadersScheme) {
  for (const auto& [html, hasColors] : std::initializer_list<std::pair<const char*, bool>>{
           {"<p style='margin:0;color:inherit'>a", false},
           {"<style>p.MsoNormal{color:windowtext;border:1px solid red}</style><p>a", false},
           {"<style>a:link{margin:0;COLOR:#0563C1}</style><p>a", true},
           {"<style>@media (prefers-color-scheme: dark){p{color:#fff}}</style><p>a", true},
           {"<p style='background-color:White'>a", true},
           {"<p style='background:#fff url(http://x/y)'>a", true},
           {"<p style='background:url(http://x/y)'>a", false},
           {"<font color=black>a</font>", true},
           {"<table bgcolor=white><td>a</table>", true}}) {
    const SafeHtml safe = SanitizeHtml(QString::fromUtf8(html), RemoteImages::LeftOut);
    EXPECT_EQ(safe.hasColors, hasColors) << html;
    EXPECT_NE(safe.html.contains("color-scheme:light dark"), hasColors) << html;
  }
}

TEST(HtmlSanitizer, NoStyleSheetEndsItsElement) {
  for (const char* sheet :
       {"p{border</*x*//style>MARK<style>:red}", "p{border<<!--/style>MARK:red}",
        "p{border:<<!--/style>MARK}", "p</*x*//style>MARK{color:red}",
        "@media a</*x*//style>MARK{p{color:red}}", "p{border<-->/style>MARK:red}",
        "p{color:red</*/style>MARK*//style>MARK}"}) {
    const QByteArray html =
        SanitizeHtml(QStringLiteral("<style>%1</style><p>text").arg(QLatin1String(sheet)),
                     RemoteImages::LeftOut)
            .html;
    EXPECT_EQ(html.count("</style"), 1) << sheet << '\n' << html.constData();
  }
  EXPECT_EQ(SafeDeclarations(QStringLiteral("border\"><b>:red; bor/**/der:0; font\\61:x")),
            QString());
}

TEST(HtmlSanitizer, WhatNestsTooDeepGivesItsText) {
  for (const char* tag :
       {"<div>", "<b>", "<form><a><b>", "<table><td>", "<div></x>", "<x></y>", "<div></b>"}) {
    const QString deep = QString::fromLatin1(tag).repeated(100000) + QStringLiteral("words");
    EXPECT_TRUE(SanitizeHtml(deep, RemoteImages::LeftOut).html.contains("words")) << tag;
  }
  const QString page =
      QStringLiteral(
          "<head><style>p{color:red}</style><title>t</title></head><script>x<b>y</script>") +
      QStringLiteral("<div>").repeated(3000) +
      QStringLiteral("one\n 1</div><p title='>'>two &amp; <b>2</b> &lt; <td>3 <4<!-- 5 --></p>6");
  EXPECT_EQ(HtmlToText(page), QStringLiteral("one 1\r\ntwo & 2 < 3 <4\r\n6\r\n"));
  EXPECT_TRUE(Body(page).contains(QStringLiteral("one 1\r\ntwo &amp; 2")));
  const QString open = QStringLiteral("<div><select>").repeated(100000) + QStringLiteral("words");
  EXPECT_TRUE(HtmlToText(open).contains(QStringLiteral("words")));
  const QString flat = QStringLiteral("<p>one<br>two</p>").repeated(50000);
  EXPECT_EQ(Body(flat), flat);
}

}  // namespace
}  // namespace vorn
