// HTML, flowed and uuencoded texts, and the recognition of unlabelled text.

#include <gtest/gtest.h>

#include <cstdio>
#include <random>

#include "mail/codec/calendar/calendar_summary.h"
#include "mail/codec/charset/charset_recognition.h"
#include "mail/codec/header/header_decoding.h"
#include "mail/codec/html/html_text.h"
#include "mail/codec/mime/mime_codec.h"
#include "mail/codec/mime/text_extraction.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

using MimeCodec::OutputCharset;

QString TextOf(const QByteArray& source) {
  TextRequest request;
  request.textTypes = {QStringLiteral("text/plain")};
  return GetMessageText(source, MimeCodec::ContentIndex(source), request).text;
}

TEST(TextParts, APieceOfAMessageIsNotBlank) {
  const QString text = TextOf(
      "Content-Type: message/partial; id=\"a\"; number=1; total=2\r\n\r\n"
      "Subject: whole\r\n\r\nfirst half");
  EXPECT_TRUE(text.contains(QStringLiteral("first half"))) << text.toStdString();
}

TEST(TextParts, WideCharactersAreKnownByTheirMark) {
  for (const char* code : {"UTF-16LE", "UTF-16BE"}) {
    const QByteArray bytes =
        QStringEncoder(code, QStringConverter::Flag::WriteBom)(QStringLiteral("日本語です"));
    EXPECT_EQ(TextOf("Content-Type: text/plain\r\nContent-Transfer-Encoding: base64\r\n\r\n" +
                     bytes.toBase64()),
              QStringLiteral("日本語です"))
        << code;
  }
}

TEST(HtmlText, BecomesReadableLines) {
  EXPECT_EQ(
      HtmlToText(QStringLiteral("<html><head><title>t</title><style>p{}</style></head><body>"
                                "<p>一 &amp;&nbsp;二</p>\n<p>三<br>四</p><ul><li>a<li>b</ul>"
                                "<script>if (a < b) x();</script>end &#x1F363; &unknown; "
                                "a &lt; b</body>")),
      QStringLiteral("一 & 二\r\n\r\n三\r\n四\r\n\r\n・a\r\n・b\r\nend 🍣 &unknown; a < b\r\n"));
  EXPECT_EQ(HtmlToText(QStringLiteral("<pre>a\n  b</pre>1 < 2 <a href=\">\">x</a>")),
            QStringLiteral("a\r\n  b\r\n\r\n1 < 2 x\r\n"));
  EXPECT_EQ(HtmlToText(QStringLiteral("<div><!-- x > --><b")), QString());
}

QByteArray Multipart(const char* kind, const QByteArrayList& parts) {
  const QByteArray boundary = QByteArray("b") + kind[0];
  return QByteArray("Content-Type: multipart/") + kind + "; boundary=" + boundary + "\r\n\r\n--" +
         boundary + "\r\n" + parts.join("\r\n--" + boundary + "\r\n") + "\r\n--" + boundary +
         "--\r\n";
}

// Where only one form is shown, the other one is a click away.
TEST(TextParts, ASearchReadsEveryFormAndTheMessagesInside) {
  TextRequest request;
  request.textTypes = {QStringLiteral("text/plain")};
  request.withHtml = true;
  request.isWhole = true;
  const QByteArray both =
      Multipart("alternative", {"\r\nstub", "Content-Type: text/html\r\n\r\n<p>ze<b>bra</b></p>"});
  const QByteArray source =
      Multipart("mixed", {both, "Content-Type: message/rfc822\r\n\r\nSubject: giraffe\r\n" + both});
  const QString read = GetMessageText(source, MimeCodec::ContentIndex(source), request).text;
  EXPECT_EQ(read.simplified(), QStringLiteral("stub zebra giraffe stub zebra"));
  const QByteArray digest = Multipart("digest", {"\r\n" + both});
  EXPECT_EQ(GetMessageText(digest, MimeCodec::ContentIndex(digest), request).text.simplified(),
            QStringLiteral("stub zebra"))
      << "once";
}

// Footers and warnings are put beside a message whose HTML is the message.
TEST(HtmlText, StandsAmongTheTextsUnlessItIsTheirOtherForm) {
  const QByteArray html = "Content-Type: text/html\r\n\r\n<p>html</p>";
  const QByteArray text = "\r\ntext";
  const QByteArray blank = "\r\n\r\n \r\n";
  const QByteArray footer = "\r\nfooter";
  const QByteArray file = "Content-Type: application/pdf; name=a.pdf\r\n\r\nx";
  const QByteArray both = Multipart("alternative", {text, html});
  struct Case {
    QByteArray source;
    const char16_t* text;
    bool isOfHtml = false;
    int shown = 1;  // parts of HTML that are shown as HTML
  };
  const Case cases[] = {
      {Multipart("mixed", {html, footer}), u"html\r\nfooter"},
      {Multipart("mixed", {footer, html}), u"footer\r\nhtml\r\n"},
      {Multipart("mixed", {text, file, html}), u"text\r\nhtml\r\n"},
      {Multipart("mixed", {html, file, html}), u"html\r\nhtml\r\n", true, 2},
      // As programs write it that let files stand within a text.
      {Multipart("alternative", {text, Multipart("mixed", {html, file, html})}), u"text", false, 2},
      {Multipart("alternative", {html, Multipart("related", {html, file})}), u"html\r\n", true},
      {Multipart("mixed", {both, Multipart("x", {text, html}), both}),
       u"text\r\ntext\r\nhtml\r\ntext", false, 3},
      {Multipart("mixed", {Multipart("related", {html, file}), footer}), u"html\r\nfooter"},
      {Multipart("mixed", {Multipart("alternative", {blank, html}), footer}), u"html\r\nfooter"},
      {Multipart("mixed", {both, footer}), u"text\r\nfooter"},
      {Multipart("alternative", {html, text}), u"text"},
      {Multipart("alternative", {text, Multipart("related", {html, file})}), u"text"},
      {Multipart("alternative", {blank, html}), u"html\r\n", true},
      {Multipart("digest", {"\r\n" + both}), u"text", false, 0},
  };
  TextRequest request;
  request.textTypes = {QStringLiteral("text/plain")};
  for (const Case& c : cases) {
    request.withHtml = true;
    const QString index = MimeCodec::ContentIndex(c.source);
    const MessageText read = GetMessageText(c.source, index, request);
    EXPECT_EQ(read.text, QString::fromUtf16(c.text)) << c.source.toStdString();
    EXPECT_EQ(IsTextOfHtml(c.source, index, request), c.isOfHtml) << c.source.toStdString();
    EXPECT_EQ(GetMessageHtml(c.source, index, {}).count(u"<p>html"), c.shown)
        << c.source.toStdString();
    for (const bool withHtml : {false, true}) {
      TextRequest quoted = request;
      quoted.withHtml = withHtml;
      const QString plain = GetMessageText(c.source, index, quoted).text;
      quoted.linePrefix = QStringLiteral("> ");
      EXPECT_EQ(GetMessageText(c.source, index, quoted).text.remove(QStringLiteral("> ")), plain)
          << "quoted: " << c.source.toStdString();
    }
  }
  // A cut one ends with a mark, at most as long as is asked for.
  request.maximum = 6;
  const QByteArray longer = Multipart("mixed", {footer, html});
  EXPECT_EQ(GetMessageText(longer, MimeCodec::ContentIndex(longer), request).text,
            QStringLiteral("footer..."));
}

TEST(Appointments, AreShownInTheUsersOwnTimeWithWhoAnsweredHow) {
  const auto summary = [](const QByteArray& method, const QByteArray& event) {
    const QString text = CalendarSummary(
        QString::fromUtf8("BEGIN:VCALENDAR\r\nMETHOD:" + method +
                          "\r\nBEGIN:VTIMEZONE\r\nTZID:Office\r\nBEGIN:STANDARD\r\n"
                          "DTSTART:16010101T000000\r\nTZOFFSETFROM:+0900\r\nTZOFFSETTO:+0900\r\n"
                          "END:STANDARD\r\nEND:VTIMEZONE\r\nBEGIN:VEVENT\r\nUID:1\r\n" +
                          event + "END:VEVENT\r\nEND:VCALENDAR\r\n"),
        false);
    return text.toStdString();
  };
  const QDateTime utc(QDate(2026, 2, 3), QTime(1, 0), Qt::UTC);
  const std::string local =
      utc.toLocalTime().toString(QStringLiteral("yyyy/MM/dd H:mm")).toStdString();
  for (const char* start :
       {"DTSTART:20260203T010000Z\r\n", "DTSTART;TZID=Office:20260203T100000\r\n"}) {
    EXPECT_EQ(summary("PUBLISH", start), "【予定】\r\n日時: " + local + "\r\n");
  }
  EXPECT_EQ(summary("CANCEL",
                    "DTSTART;VALUE=DATE:20260203\r\nDTEND;VALUE=DATE:20260205\r\n"
                    "RRULE:FREQ=DAILY\r\n"),
            "【予定の取り消し】\r\n日時: 2026/02/03～2026/02/04\r\n繰り返し: 毎日\r\n");
  EXPECT_EQ(summary("REPLY", "ATTENDEE;PARTSTAT=DECLINED;CN=Taro:mailto:t@x\r\n"),
            "【招待への返事】\r\nTaro <t@x>: 欠席します\r\n");
  EXPECT_EQ(CalendarSummary(QStringLiteral("BEGIN:VCALENDAR\r\nBEGIN:VEVENT"), true), QString());
}

QString WithoutTitle(const QByteArray& components) {
  return CalendarSummary(QString::fromUtf8("BEGIN:VCALENDAR\r\n" + components), true)
      .section(QStringLiteral("\r\n"), 1)
      .trimmed();
}

TEST(Appointments, TellHowTheyRepeatAndWhichZoneNobodyKnows) {
  struct Case {
    const char* lines;
    const char16_t* words;
  };
  const Case cases[] = {
      {"RRULE:FREQ=DAILY;COUNT=5", u"繰り返し: 毎日、全5回"},
      {"RRULE:FREQ=WEEKLY;INTERVAL=2;BYDAY=MO,WE", u"繰り返し: 2週間ごと 月・水曜日"},
      {"RRULE:FREQ=WEEKLY;BYDAY=TU;UNTIL=20260401", u"繰り返し: 毎週 火曜日、2026/04/01まで"},
      {"RRULE:FREQ=MONTHLY;BYDAY=2TU,-1FR", u"繰り返し: 毎月 第2火曜日・最後の金曜日"},
      {"RRULE:FREQ=MONTHLY;BYMONTHDAY=15,-1,-3", u"繰り返し: 毎月 15日・末日・末日の2日前"},
      {"RRULE:FREQ=MONTHLY;INTERVAL=3;BYDAY=MO,TU;BYSETPOS=-1",
       u"繰り返し: 3か月ごと 月・火曜日のうち最後の日"},
      {"RRULE:FREQ=YEARLY;BYMONTH=3;BYMONTHDAY=31", u"繰り返し: 毎年 3月 31日"},
      {"RRULE:FREQ=YEARLY;BYWEEKNO=20", u"繰り返し: FREQ=YEARLY;BYWEEKNO=20"},
      {"DTSTART;TZID=Nowhere/Else:20260203T100000",
       u"日時: 2026/02/03 10:00（現地の時間: Nowhere/Else）"},
      {"DTSTART;TZID=Nowhere:20260203T100000\r\nDURATION:PT1H",
       u"日時: 2026/02/03 10:00～11:00（現地の時間: Nowhere）"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(WithoutTitle(QByteArray("BEGIN:VEVENT\r\n") + c.lines +
                           "\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n"),
              QString::fromUtf16(c.words));
  }
  const QDateTime tokyo(QDate(2026, 2, 3), QTime(1, 0), Qt::UTC);
  for (const char* zone : {"Tokyo Standard Time", "Asia/Tokyo"}) {
    EXPECT_EQ(
        WithoutTitle(QByteArray("BEGIN:VEVENT\r\nDTSTART;TZID=") + zone +
                     ":20260203T100000\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n"),
        QStringLiteral("日時: ") + tokyo.toLocalTime().toString(QStringLiteral("yyyy/MM/dd H:mm")));
  }
}

TEST(Appointments, OfOneThatIsCutOffOrAToDoThereIsWhatItSays) {
  EXPECT_EQ(CalendarSummary(QStringLiteral("BEGIN:VCALENDAR\r\nBEGIN:VTODO\r\nSUMMARY:提出\r\n"
                                           "DUE;VALUE=DATE:20260210\r\nEND:VTODO\r\n"
                                           "END:VCALENDAR\r\n"),
                            false),
            QStringLiteral("【用件】\r\n件名: 提出\r\n期限: 2026/02/10\r\n"));
  EXPECT_EQ(WithoutTitle("BEGIN:VEVENT\r\nSUMMARY:会議\r\nLOCATION:第三"),
            QStringLiteral("件名: 会議"));
  TextRequest request;
  request.textTypes = {QStringLiteral("text/plain")};
  request.withReports = true;
  const QByteArray source = "Content-Type: text/calendar\r\n\r\nwhat nobody knows\r\n";
  EXPECT_EQ(GetMessageText(source, MimeCodec::ContentIndex(source), request).text,
            QStringLiteral("what nobody knows\r\n"));
}

TEST(InnerMessages, ADigestShowsTheTextsOfItsMessages) {
  EXPECT_EQ(TextOf("Content-Type: multipart/digest; boundary=d\r\n\r\n--d\r\n\r\nSubject: a\r\n\r\n"
                   "one\r\n--d\r\n\r\nSubject: b\r\n\r\ntwo\r\n--d--\r\n"),
            QStringLiteral("onetwo"));
  QByteArray nested = "Subject: x\r\n\r\ndeep\r\n";
  for (int i = 0; i < 50; ++i) nested = "Content-Type: message/rfc822\r\n\r\n" + nested;
  EXPECT_EQ(TextOf(nested), QString());
}

TEST(FlowedText, ParagraphsAreJoinedAndQuotesKept) {
  const auto flowed = [](const QByteArray& body, const QByteArray& more = {}) {
    return TextOf("Content-Type: text/plain; format=flowed" + more + "\r\n\r\n" + body);
  };
  EXPECT_EQ(flowed("one \r\ntwo\r\nthree\r\n"), QStringLiteral("one two\r\nthree\r\n"));
  EXPECT_EQ(flowed(">> a \r\n>> b\r\n> c \r\nd"), QStringLiteral(">> a b\r\n> c \r\nd"));
  EXPECT_EQ(flowed(" >not quoted\r\n  indented \r\n-- \r\nname"),
            QStringLiteral(">not quoted\r\n indented \r\n-- \r\nname"));
  EXPECT_EQ(flowed("\xE3\x81\x82 \r\n\xE3\x81\x84", "; delsp=yes; charset=utf-8"),
            QStringLiteral("あい"));
}

TEST(Uuencoding, BlocksInATextAreFilesOfTheirOwn) {
  QByteArray data;
  for (int i = 0; i < 300; ++i) data += static_cast<char>(i * 7);
  const QByteArray lines = MimeCodec::UuEncode(data);
  EXPECT_EQ(MimeCodec::UuDecode(lines), data);
  const QByteArray source = "Subject: x\r\n\r\nbefore\r\nbegin 644 a.bin\r\n" + lines +
                            "`\r\nend\r\nafter\r\nbegin the day\r\n";
  EXPECT_EQ(TextOf(source), QStringLiteral("before\r\nafter\r\nbegin the day\r\n"));
  const auto records = MimeCodec::ReadContent(source);
  ASSERT_EQ(records.size(), 3U);
  EXPECT_EQ(records[1].name, QStringLiteral("a.bin"));
  EXPECT_EQ(MimeCodec::DecodePart(source, MimeCodec::TransferEncoding::Uuencode, records[1].first,
                                  records[1].last),
            data);
}

TEST(TransferEncodings, WhatIsWrappedComesBack) {
  QByteArray bytes;
  for (int i = 0; i < 5000; ++i) bytes += static_cast<char>(i * i >> 3);
  bytes += "\r\n.\r\n line \r\n=\t";
  using enum MimeCodec::TransferEncoding;
  for (const auto encoding : {Base64, QuotedPrintable, Uuencode}) {
    const QByteArray wrapped = MimeCodec::EncodeTransfer(bytes, encoding);
    EXPECT_EQ(MimeCodec::DecodeTransfer(wrapped, encoding), bytes);
    for (const QByteArray& line : wrapped.split('\n')) EXPECT_LE(line.size(), 77);
  }
  // Servers take blanks off the ends of lines.
  EXPECT_EQ(MimeCodec::EncodeTransfer("-- \r\na\t\r\n", QuotedPrintable),
            QByteArray("--=20\r\na=09\r\n"));
}

TEST(HeaderEncoding, EachWordOfALongTextIsWholeInItself) {
  // Wherever the words end.
  for (const char16_t* start : {u"", u"a", u"é", u"あ", u"aé", u"aあ"}) {
    const QString text = QString::fromUtf16(start) + QStringLiteral("🍣𠮷野家😀").repeated(40);
    const QByteArray field = MimeCodec::EncodeField("Subject:", text, OutputCharset::Utf8);
    EXPECT_EQ(MimeCodec::DecodeHeader(field, 8), text);
    for (const QByteArray& word : field.mid(8).simplified().split(' ')) {
      const QByteArray coded = word.mid(10, word.size() - 12);
      const QByteArray bytes = word.startsWith("=?UTF-8?B?")
                                   ? QByteArray::fromBase64(coded)
                                   : QByteArray::fromPercentEncoding(coded, '=');
      EXPECT_TRUE(QString::fromUtf8(bytes).toUtf8() == bytes) << word.toStdString();
    }
  }
}

TEST(HeaderEditing, FieldsAreRemovedAndPutIn) {
  const QByteArray source =
      "A: 1\r\nBcc: x@y,\r\n z@y,\r\n\tw@y\r\nBccx: 2\r\nbcc : q\r\n\r\nBcc: body\r\n";
  EXPECT_EQ(MimeCodec::RemoveField(source, "Bcc:"),
            QByteArray("A: 1\r\nBccx: 2\r\n\r\nBcc: body\r\n"));
  EXPECT_EQ(MimeCodec::InsertFields(source, "D: 1\r\n"), "D: 1\r\n" + source);
}

// How often each code is taken for which, over generated Japanese text of a given length.
class Recognition : public testing::Test {
 protected:
  // Sentences of common words with particles, as mail has them.
  QString Sentence(int characters) {
    static const QStringList kWords = {
        QStringLiteral("会議"),     QStringLiteral("の"),       QStringLiteral("資料"),
        QStringLiteral("を"),       QStringLiteral("送付"),     QStringLiteral("します"),
        QStringLiteral("お知らせ"), QStringLiteral("テスト"),   QStringLiteral("明日"),
        QStringLiteral("東京"),     QStringLiteral("について"), QStringLiteral("メール"),
        QStringLiteral("ご確認"),   QStringLiteral("ください"), QStringLiteral("Re: "),
        QStringLiteral("2026"),     QStringLiteral("、"),       QStringLiteral("株式会社"),
        QStringLiteral("見積書"),   QStringLiteral("予定")};
    QString text;
    while (text.size() < characters) {
      text += kWords[static_cast<qsizetype>(random_() % static_cast<unsigned>(kWords.size()))];
    }
    return text.left(characters);
  }
  // A subject or a name: one to three words, mostly of ideographs alone, the hardest to tell.
  QString Subject() {
    static const QStringList kWords = {
        QStringLiteral("山田太郎"),     QStringLiteral("佐藤"),         QStringLiteral("鈴木"),
        QStringLiteral("高橋"),         QStringLiteral("渡辺"),         QStringLiteral("小林"),
        QStringLiteral("斎藤"),         QStringLiteral("阿部"),         QStringLiteral("森"),
        QStringLiteral("見積書"),       QStringLiteral("請求書"),       QStringLiteral("領収書"),
        QStringLiteral("議事録"),       QStringLiteral("稟議"),         QStringLiteral("出張"),
        QStringLiteral("経費"),         QStringLiteral("会議室"),       QStringLiteral("予約"),
        QStringLiteral("至急"),         QStringLiteral("重要"),         QStringLiteral("連絡"),
        QStringLiteral("エラー"),       QStringLiteral("キャンペーン"), QStringLiteral("株式会社"),
        QStringLiteral("営業部"),       QStringLiteral("総務"),         QStringLiteral("経理"),
        QStringLiteral("プロジェクト"), QStringLiteral("アンケート"),   QStringLiteral("御礼"),
        QStringLiteral("謹賀新年"),     QStringLiteral("暑中見舞"),     QStringLiteral("忘年会"),
        QStringLiteral("歓送迎会")};
    QString text;
    for (auto count = 1 + random_() % 3; count > 0; --count) {
      text += kWords[static_cast<qsizetype>(random_() % static_cast<unsigned>(kWords.size()))];
    }
    return text;
  }

  std::mt19937 random_{20261124};
};

TEST_F(Recognition, UnlabelledTextIsReadInItsOwnCode) {
  struct Code {
    OutputCharset output;
    Charset::Family family;
    const char* name;
  };
  constexpr Code kCodes[] = {{OutputCharset::Jis, Charset::Family::Jis, "JIS"},
                             {OutputCharset::Euc, Charset::Family::Euc, "EUC"},
                             {OutputCharset::ShiftJis, Charset::Family::ShiftJis, "Shift_JIS"},
                             {OutputCharset::Utf8, Charset::Family::Utf8, "UTF-8"}};
  constexpr int kRounds = 500;
  for (const int characters : {0, 4, 10, 40, 1000}) {
    std::printf(characters == 0 ? "subjects and names: text in the row's code, read as\n"
                                : "%d characters: text in the row's code, read as\n",
                characters);
    std::printf("  %-10s %6s %6s %9s %6s %6s\n", "", "JIS", "EUC", "Shift_JIS", "UTF-8", "other");
    for (const Code& code : kCodes) {
      int taken[5] = {};
      for (int round = 0; round < kRounds; ++round) {
        QString text = characters == 0 ? Subject() : Sentence(characters);
        if (!std::any_of(text.begin(), text.end(), [](QChar c) { return c.unicode() >= 0x80; })) {
          text += u'会';
        }
        const Charset::Family found =
            RecognizeCharset(*MimeCodec::EncodeText(text, code.output)).family;
        int column = 4;
        for (int i = 0; i < 4; ++i) {
          if (kCodes[i].family == found) column = i;
        }
        ++taken[column];
      }
      std::printf("  %-10s %6d %6d %9d %6d %6d\n", code.name, taken[0], taken[1], taken[2],
                  taken[3], taken[4]);
      const auto own = static_cast<size_t>(&code - kCodes);
      EXPECT_GE(taken[own], characters <= 4 ? kRounds * 97 / 100 : kRounds) << code.name;
    }
  }
}

}  // namespace
}  // namespace vorn
