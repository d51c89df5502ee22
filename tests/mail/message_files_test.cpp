// What a message window makes of a message beside showing it: files, pages to print, pictures.

#include <gtest/gtest.h>

#include "mail/attachment_files.h"
#include "mail/codec/mime/content_index.h"
#include "mail/codec/mime/flag_string.h"
#include "mail/codec/mime/inline_images.h"
#include "mail/codec/mime/message_date.h"
#include "mail/codec/mime/message_index.h"
#include "mail/date_line.h"
#include "mail/file_kind.h"
#include "mail/print_page.h"
#include "objects/settings.h"
#include "storage/base/time_text.h"
#include "support/test_profile.h"
#include "support/time_zone.h"

namespace vorn {
namespace {

// What a sender calls a file, and what it is called here.
TEST(SafeFileNameTest, NoNameLeavesItsFolderOrHidesItsEnding) {
  const std::pair<const char16_t*, const char16_t*> names[] = {
      {u"見積 ①.pdf", u"見積 ①.pdf"},
      {u"a.tar.gz", u"a.tar.gz"},
      {u"report．exe", u"report．exe"},  // a full-width dot ends no name
      {u"..．．a", u"．．a"},
      // Paths
      {u"../../etc/passwd", u"_.._etc_passwd"},
      {u"..\\..\\boot.ini", u"_.._boot.ini"},
      {u"/dev/zero", u"_dev_zero"},
      {u"C:\\a.exe", u"C__a.exe"},
      {u"\\\\host\\share\\a", u"__host_share_a"},
      {u"file:///etc/passwd", u"file____etc_passwd"},
      {u"a.txt:b.exe", u"a.txt_b.exe"},
      {u"a.txt::$DATA", u"a.txt__$DATA"},
      {u".", u"file_"},
      {u"..", u"file_"},
      {u"", u"file_"},
      {u" . . ", u"file_"},
      {u"/", u"_"},
      // What is hidden, or taken for something else by who reads the name
      {u".bashrc", u"bashrc"},
      {u". .bashrc", u"bashrc"},
      {u"~", u"_"},
      {u"~root", u"_root"},
      {u"~/.ssh/id", u"__.ssh_id"},
      {u"-rf", u"_rf"},
      {u"--help", u"_-help"},
      // Devices
      {u"CON", u"file_CON"},
      {u"con.txt", u"file_con.txt"},
      {u"Nul.tar.gz", u"file_Nul.tar.gz"},
      {u"COM7", u"file_COM7"},
      {u"lpt9.log", u"file_lpt9.log"},
      {u"COM¹.txt", u"file_COM¹.txt"},
      {u"AUX .txt", u"file_AUX .txt"},
      {u"CONIN$", u"file_CONIN$"},
      {u"console.txt", u"console.txt"},
      // Ends
      {u"a.exe.", u"a.exe"},
      {u"a.exe . .", u"a.exe"},
      {u"a.exe.\u3000.", u"a.exe"},
      {u"a.pdf\u00A0", u"a.pdf"},
      // Marks and controls
      {u"x\u202Egpj.exe", u"x_gpj.exe"},
      {u"x\u2066a\u2069.exe", u"x_a_.exe"},
      {u"a\u200B.txt", u"a_.txt"},
      {u"a.txt\u2028.exe", u"a.txt_.exe"},
      {u"a\U000E0061.exe", u"a_.exe"},  // a tag, which nothing shows
      {u"a\r\nb\x1B[2J\x7F", u"a__b_[2J_"},
      // Markup and what shells read
      {u"<img src=\"/dev/zero\">", u"_img src=__dev_zero__"},
      {u"<h1>安全</h1>.exe", u"_h1_安全__h1_.exe"},
      {u"a|b>c*d?.txt", u"a_b_c_d_.txt"}};
  QTemporaryDir folder;
  for (const auto& [name, expected] : names) {
    const QString about = QString::fromUtf16(name);
    EXPECT_EQ(SafeFileName(about), QString::fromUtf16(expected)) << about.toStdString();
    QFile file(FreePath(folder.path(), about));
    EXPECT_EQ(QFileInfo(file.fileName()).absolutePath(), folder.path()) << about.toStdString();
    EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) << about.toStdString();
  }
  // What stands there is left alone, a link that leads nowhere as well.
  ASSERT_TRUE(QFile::link(QStringLiteral("nowhere"), folder.filePath(QStringLiteral("link.txt"))));
  EXPECT_EQ(FreePath(folder.path(), QStringLiteral("link.txt")),
            folder.filePath(QStringLiteral("link (2).txt")));
  EXPECT_EQ(SafeFileName(QStringLiteral("a") + QChar(u'\0') + QStringLiteral(".exe")),
            QStringLiteral("a_.exe"));
}

TEST(SafeFileNameTest, LongNamesKeepTheirEndingAndWholeLetters) {
  const QString sushi = QStringLiteral("🍣");
  const auto made = [](const QString& name) {
    const QString safe = SafeFileName(name);
    EXPECT_LE(safe.toUtf8().size(), 245) << name.toStdString();
    EXPECT_EQ(QString::fromUtf8(safe.toUtf8()), safe) << "half a letter: " << name.toStdString();
    return safe;
  };
  for (const QString& letter : {QStringLiteral("a"), QStringLiteral("会"), sushi,
                                QStringLiteral("é"), QStringLiteral("か\u3099")}) {
    const QString name = made(letter.repeated(500) + QStringLiteral(".xlsx"));
    EXPECT_TRUE(name.endsWith(letter.last(1) + QStringLiteral(".xlsx"))) << name.toStdString();
  }
  EXPECT_TRUE(made(QString(500, u'a') + QStringLiteral(".pdf.exe")).endsWith(u".exe"));
  EXPECT_TRUE(
      made(u'x' + sushi.repeated(90) + QStringLiteral(".a") + sushi.repeated(20)).endsWith(sushi));
  EXPECT_TRUE(made(QString(238, u'a') + u' ' + QString(99, u'b')).endsWith(u'a'));
  EXPECT_TRUE(made(QStringLiteral("CON.") + QString(500, u'a')).startsWith(u"file_CON"));
}

// Only what is known to do nothing opens without a question, and only when the content agrees.
TEST(FileKindTest, WhatMayActIsAskedAbout) {
  const auto harmless = [](const char16_t* name, const QByteArray& bytes) {
    return KindOfFile(QString::fromUtf16(name), bytes).IsHarmless();
  };
  EXPECT_TRUE(harmless(u"a.pdf", "%PDF-1.4\n%\xE2\xE3"));
  EXPECT_TRUE(harmless(u"写真.JPG", "\xFF\xD8\xFF\xE0 JFIF"));
  EXPECT_TRUE(harmless(u"a.png", "\x89PNG\r\n\x1A\n"));
  EXPECT_TRUE(harmless(u"a.txt", "会議の資料です。\r\n"));
  EXPECT_TRUE(harmless(u"a.csv", "a,b\r\n1,2\r\n"));
  EXPECT_TRUE(harmless(u"empty.txt", ""));
  EXPECT_TRUE(harmless(u"a.tsv", "a\t-1\r\n") && harmless(u"a.json", "{\"a\": 1}\n"));
  EXPECT_TRUE(harmless(u"a.md", "# 議事録\n") && harmless(u"a.log", "12:00 ok\n"));
  EXPECT_TRUE(harmless(u"a.vcf", "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:a\r\nEND:VCARD\r\n"));
  EXPECT_FALSE(harmless(u"a.tsv", "a\t=cmd|x!A1") || harmless(u"a.json", "<html><script>x"));
  // A picture is one, and a letter in a text is text.
  EXPECT_TRUE(harmless(u"a.jpg", "\x89PNG\r\n\x1A\n"));
  EXPECT_TRUE(harmless(u"a.txt", "From: a@x.jp\r\nSubject: b\r\n\r\nc\r\n\x1A"));
  EXPECT_FALSE(harmless(u"a.txt", "#!/bin/sh\nid\n") || harmless(u"a.jpg", "%PDF-1.4\n%\xE2"));
  EXPECT_TRUE(harmless(u"jis.txt", "\x1B$B2q5D\x1B(B\r\n"));
  EXPECT_TRUE(harmless(u"sjis.csv", "\x89\xEF\x8B\x63,1\r\n"));
  EXPECT_FALSE(harmless(u"data.txt", QByteArray("\x01\0\x02", 3)));
  // Formulas and macros in what is harmless otherwise.
  EXPECT_TRUE(harmless(u"a.csv", "a@x.example,b=1\r\n-2,+3\r\n"));
  EXPECT_FALSE(harmless(u"a.csv", "a,b\r\n1,=cmd|' /C calc'!A0\r\n"));
  const QString formula = QStringLiteral("=cmd|' /C calc'!A0");
  const QByteArray utf16("\xFF\xFE");
  for (const QByteArray& table :
       {QByteArray("\"@RTD(1)\",2\r\n"), QByteArray("\xEF\xBB\xBF") + formula.toUtf8(),
        utf16 + QByteArray(reinterpret_cast<const char*>(formula.utf16()), formula.size() * 2),
        QByteArray("+cmd|' /C calc'!A0"), QByteArray("a;-2+3+cmd|' /C calc'!A0"),
        QByteArray("a| =cmd!A1"), QByteArray("＝ＲＴＤ（1）")}) {
    EXPECT_FALSE(harmless(u"a.csv", table)) << table.toStdString();
  }
  EXPECT_TRUE(harmless(u"a.csv", "+81-3-1234-5678,-1.5%,\"- 品名\",x@y.example\r\n"));
  EXPECT_FALSE(harmless(u"a.pdf", "%PDF-1.4\n<</OpenAction<</S/JavaScript/JS (x)>>>>"));
  const QByteArray page = "<html><body><script>x</script></body></html>";
  for (const char16_t* name : {u"invoice",
                               u"run.xhtml",
                               u"x.AppImage",
                               u"a.mht",
                               u"a.svgz",
                               u"a.jnlp",
                               u"a.deb",
                               u"a.xll",
                               u"a.slk",
                               u"a.iqy",
                               u"a.settingcontent-ms",
                               u"a.one",
                               u"a.xlsm",
                               u"a.doc",
                               u"a.exe",
                               u"a.js",
                               u"a.lnk",
                               u"a.html",
                               u"a.svg",
                               u"a.jar",
                               u"a.pdf.exe",
                               u"a.pdf ",
                               u"a.txt\u202E"}) {
    EXPECT_FALSE(harmless(name, page)) << QString::fromUtf16(name).toStdString();
    EXPECT_FALSE(harmless(name, "MZ\x90")) << QString::fromUtf16(name).toStdString();
  }
  const FileKind kind = KindOfFile(QStringLiteral("a.pdf"), page);
  EXPECT_EQ(kind.byContent, QStringLiteral("HTML文書"));
  EXPECT_TRUE(kind.byName.contains(QStringLiteral("application/pdf")));
}

// Names that look like a document's, or are taken for one, over content that confirms it.
TEST(FileKindTest, ADisguisedNameIsAskedAbout) {
  const auto isHarmless = [](const char16_t* name) {
    return KindOfFile(QString::fromUtf16(name), "%PDF-1.4\n").IsHarmless();
  };
  for (const char16_t* name :
       {u"a.pdf．exe", u"a．pdf", u"a.pdf:b.exe", u"a.exe:.pdf:$DATA", u"a.pdf\\b",
        u"a.pdf/b.desktop", u"a.pdf.exe.", u"a.pdf.exe\u3000", u"a.pdf\U000E0020.exe",
        u"a.pdf\n.exe", u"exe.\u202Efdp.a", u"<b>a.pdf</b>", u"a.pdf?.sh", u".pdf", u"pdf", u"CON",
        u"/dev/zero"}) {
    EXPECT_FALSE(isHarmless(name)) << QString::fromUtf16(name).toStdString();
  }
  for (const char16_t* name : {u"a.pdf.", u"a.pdf\u3000.", u"../a.pdf", u"~.pdf", u"CON.pdf"}) {
    EXPECT_TRUE(isHarmless(name)) << QString::fromUtf16(name).toStdString();
  }
}

TEST(PrintPageTest, WhatMailContributesIsText) {
  MessageModel model;
  model.subject = QStringLiteral("<b>&amp;");
  model.addresses = {{QStringLiteral("FROM"), QStringLiteral("a@b"), QStringLiteral("A")},
                     {QStringLiteral("TO"), QStringLiteral("c@d"), {}},
                     {QStringLiteral("TO"), kNoAddress, QStringLiteral("unfinished")},
                     {QStringLiteral("TO"), QStringLiteral("true@e"), QStringLiteral("I <c@d>")}};
  model.text = QStringLiteral("1 < 2\r\n<script>");
  model.addresses[0].displayName += QChar(0x202E);
  model.addresses[1].displayName = QStringLiteral("\u05D0\u05D1");
  const QString page = QString::fromUtf8(PrintPage(model));
  EXPECT_TRUE(page.contains(QStringLiteral("<TD>差出人：</TD><TD>A[U+202E] &lt;a@b&gt;</TD>")));
  EXPECT_TRUE(
      page.contains(QStringLiteral("<TD>\u2068\u05D0\u05D1\u2069 &lt;\u2066c@d\u2069&gt;, "
                                   "unfinished, true@e (I &lt;c@d&gt;)</TD>")));
  EXPECT_TRUE(page.contains(QStringLiteral("<TD>件名：</TD><TD>&lt;b&gt;&amp;amp;</TD>")));
  EXPECT_TRUE(page.contains(QStringLiteral("1 &lt; 2<BR>&lt;script&gt;</html>")));
  EXPECT_FALSE(page.contains(QStringLiteral("参照先")));
  const QString html = QString::fromUtf8(PrintPage(
      model,
      QStringLiteral("<body bgcolor=red><b>bold</b><script>x</script><img src='http://x/y'>")));
  const qsizetype body = html.indexOf(QStringLiteral("<body"));
  EXPECT_LT(body, html.indexOf(QStringLiteral("<TABLE")));
  EXPECT_LT(html.indexOf(QStringLiteral("<TD>件名：</TD>")),
            html.indexOf(QStringLiteral("<b>bold")));
  EXPECT_FALSE(html.contains(QStringLiteral("<script")) || html.contains(QStringLiteral("http:")));
  EXPECT_FALSE(html.contains(QStringLiteral("1 &lt; 2"))) << "the half that is not shown";
}

TEST(InlineImagesTest, PicturesOfTheMessageAreShownAndOthersLeft) {
  const QByteArray source =
      "Content-Type: multipart/related; boundary=b\r\n\r\n--b\r\nContent-Type: text/html\r\n\r\n"
      "<img src=cid:p@x>\r\n--b\r\nContent-Type: image/png\r\nContent-ID: <p@x>\r\n"
      "Content-Transfer-Encoding: base64\r\n\r\nAAEC\r\n--b\r\nContent-Type: image/svg+xml\r\n"
      "Content-ID: <s>\r\n\r\n<svg/>\r\n--b--\r\n";
  const QString index = MimeCodec::ContentIndex(source);
  EXPECT_EQ(WithInlineImages(QStringLiteral("<img src='CID:p%40x'> <img src=\"cid:s\"> cid:none."),
                             source, index),
            QStringLiteral("<img src='data:image/png;base64,AAEC'> <img src=\"cid:s\"> cid:none."));
}

// A picture is no file of the message's where its reader sees it in the text, and only there.
TEST(InlineImagesTest, APictureInTheTextIsNoAttachment) {
  const QByteArray gif = "R0lGODlhAgACAAAAACwAAAAAAgACAAACAUQAOw==";
  const auto message = [](const QByteArray& html, const QByteArray& part) {
    return "Content-Type: multipart/related; boundary=b\r\n\r\n--b\r\nContent-Type: "
           "text/html\r\n\r\n" +
           html +
           "\r\n--b\r\nContent-Type: image/gif; name=a.gif\r\nContent-ID: <p@x>\r\n"
           "Content-Transfer-Encoding: base64\r\n\r\n" +
           part + "\r\n--b--\r\n";
  };
  const auto isMarked = [&](const QByteArray& source) {
    const MessageIndex index =
        IndexMessage(source, {}, {.textTypes = DefaultTextTypes(), .countsShown = true});
    const bool isShown = ShownImages(source, index.content, CharsetChoice::Automatic).size() == 1;
    const bool marked = index.flags.Has(kFlagAttachment);
    EXPECT_NE(isShown, marked) << source.toStdString();
    return marked;
  };
  for (const char* html :
       {"<p><img src='CID:p%40x' style='width:10px;border-width:0'>",
        "<table width=1%><td style='line-height:0;margin:0 auto'><img src=cid:p@x>",
        "<details open><img src=cid:p@x style='padding:9px;width:10%'>"}) {
    EXPECT_FALSE(isMarked(message(html, gif))) << html;
  }
  for (const char* html :
       {"text", "<a href=cid:p@x>a</a>", "<!-- <img src=cid:p@x> -->", "<img src=cid:other>",
        "<div style='display: none'><p><img src=cid:p@x>", "<img src=cid:p@x width=1>",
        "<div style='max-height:0px;overflow:hidden'><img src=cid:p@x>",
        "<img src=cid:p@x style='position:absolute;left:-999px'>",
        "<p style='margin: 0 0 0 -99px'><img src=cid:p@x>",
        "<img src=cid:p@x style='padding-left:9999px'>", "<img src=cid:p@x style='width:0.4px'>",
        "<img src=cid:p@x style='height:calc(0px)'>", "<video><img src=cid:p@x></video>",
        "<img src=cid:p@x style='object-position:99px'>", "<details><img src=cid:p@x></details>"}) {
    EXPECT_TRUE(isMarked(message(html, gif))) << html;
  }
  EXPECT_TRUE(isMarked(message("<img src=cid:p@x>", "JVBERi0xLjQK"))) << "it is no picture";
}

TEST(DateLineTest, BothClocksAreShownAndWhenItCameOnAnotherDay) {
  const test::TimeZone zone("Asia/Tokyo");
  const QByteArray source = "Date: Tue, 24 Nov 2026 09:05:07 -0330\r\n\r\n";
  const auto at = [&](int hours) {
    return ArrivalNote(source, StoredTimeText(SentDate(source).addSecs(hours * 3600)));
  };
  EXPECT_EQ(DateLine(source), QStringLiteral("2026/11/24 21:35（差出人 9:05 (-0330)）"));
  EXPECT_EQ(DateLine("Date: Tue, 24 Nov 2026 09:05:07 +0900\r\n\r\n"),
            QStringLiteral("2026/11/24 9:05 (+0900)"));
  EXPECT_EQ(DateLine("Subject: x\r\n\r\n"), QString());
  EXPECT_EQ(at(-23) + at(23), QString());
  EXPECT_TRUE(at(25).contains(u"2026/11/25 22:35:07"));
  EXPECT_TRUE(at(-25).contains(u"2026/11/23 20:35:07"));
  EXPECT_EQ(ArrivalNote("Subject: x\r\n\r\n", StoredTimeText(SentDate(source))), QString());
}

TEST(MessageDateTest, EveryFormOfDateIsRead) {
  const auto utc = [](const QByteArray& text) {
    return ParseMailDate(text).toUTC().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
  };
  EXPECT_EQ(utc("Tue, 24 Nov 2026 09:05:07 +0900"), QStringLiteral("2026-11-24 00:05:07"));
  EXPECT_EQ(utc("Tue,24 Nov 2026 09:05:07 +0900 (JST)"), QStringLiteral("2026-11-24 00:05:07"));
  EXPECT_EQ(utc("1 Jan 99 00:00 EST"), QStringLiteral("1999-01-01 05:00:00"));
  EXPECT_EQ(utc("Sat, 31 dec 05 23:59:60 -0330"), QStringLiteral("2006-01-01 03:29:59"));
  // Messages are sorted by the local clock, wherever they come from.
  const QDateTime there = ParseMailDate("Tue, 24 Nov 2026 09:05:07 -0730");
  EXPECT_EQ(StoredTimeText(there), StoredTimeText(there.toUTC()));
  EXPECT_EQ(StoredTimeText(there).left(19),
            there.toLocalTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")));
  for (const char* broken :
       {"", "now", "32 Nov 2026 09:05 +0900", "1 Foo 2026 09:05", "(", ", , ,"}) {
    EXPECT_FALSE(ParseMailDate(broken).isValid()) << broken;
  }
  EXPECT_EQ(MessageDate("Received: a; 1 Jan 2020 00:00 GMT\r\nReceived: b; 1 Jan 2019 00:00 GMT\r\n"
                        "Date: 1 Jan 2018 00:00 GMT\r\n\r\n")
                .toUTC()
                .date(),
            QDate(2020, 1, 1));
  EXPECT_EQ(MessageDate("Received: a; broken\r\nDate: 1 Jan 2018 00:00 GMT\r\n\r\n").toUTC().date(),
            QDate(2018, 1, 1));
}

}  // namespace
}  // namespace vorn
