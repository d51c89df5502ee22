#include <gtest/gtest.h>

#include "mail/codec/charset/charset_recognition.h"
#include "mail/codec/charset/code_page_932.h"
#include "mail/codec/header/address.h"
#include "mail/codec/mime/flag_string.h"
#include "mail/codec/mime/message_index.h"
#include "mail/codec/mime/mime_codec.h"
#include "mail/codec/mime/text_extraction.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

const QStringList kTextTypes{QStringLiteral("text/plain")};

QString Decoded(const char* field, CharsetChoice choice = CharsetChoice::Automatic) {
  return MimeCodec::DecodeHeader(field, 0, choice);
}

TEST(HeaderFields, LookupIgnoresCaseAndJoinsContinuationLines) {
  const QByteArray source =
      "X-One: a\r\nSUBJECT : first\r\n second\r\n\tthird\r\nSubject: later\r\n\r\nTo: body\r\n";
  EXPECT_EQ(MimeCodec::HeaderField(source, "Subject:"), QByteArray("SUBJECT: first second third"));
  EXPECT_TRUE(MimeCodec::HeaderField(source, "To:").isNull());
  EXPECT_EQ(MimeCodec::AllHeaders(source),
            (QByteArrayList{"X-One: a", "SUBJECT: first second third", "Subject: later"}));
  EXPECT_EQ(source.sliced(MimeCodec::HeaderBlockEnd(source)), QByteArray("To: body\r\n"));
  EXPECT_TRUE(MimeCodec::HeaderField("", "Subject:").isNull());
}

TEST(HeaderDecoding, OddEncodedWordsAreReadOrLeftAlone) {
  EXPECT_EQ(Decoded("=?UTF-8?Q?a_b=3F?= c"), QStringLiteral("a b? c"));
  EXPECT_EQ(Decoded("=?utf-8*ja?B?44GC?="), QStringLiteral("あ"));
  EXPECT_EQ(Decoded("=?UTF-8?B?44GC?=  =?UTF-8?B?44GE?="), QStringLiteral("あい"));
  EXPECT_EQ(Decoded("=?UTF-8?B?44GC?= x =?UTF-8?B?44GE?="), QStringLiteral("あ x い"));
  EXPECT_EQ(Decoded("=?broken"), QStringLiteral("=?broken"));
  EXPECT_EQ(Decoded("=?UTF-8?X?abc?="), QStringLiteral("=?UTF-8?X?abc?="));
  EXPECT_EQ(Decoded("=?UTF-8?B?Zm9vDQpiYXI=?="), QStringLiteral("foo  bar"));
}

TEST(Charsets, MachineDependentCharactersAreTheSameInEveryCode) {
  const QString text = QStringLiteral("①㈱髙～");
  const auto decode = [](Charset::Family family, const char* bytes) {
    return Decode({family, {}}, bytes).text;
  };
  EXPECT_EQ(decode(Charset::Family::ShiftJis, "\x87\x40\x87\x8A\xFB\xFC\x81\x60"), text);
  EXPECT_EQ(decode(Charset::Family::Euc, "\xAD\xA1\xAD\xEA\xFC\xE2\xA1\xC1"), text);
  EXPECT_EQ(decode(Charset::Family::Jis, "\x1B$B-!-j|b!A\x1B(B"), text);
  EXPECT_EQ(ToCodePage932(text), QByteArray("\x87\x40\x87\x8A\xFB\xFC\x81\x60"));
  EXPECT_EQ(ToCodePage932(QStringLiteral("〜é😀")), QByteArray("\x81\x60&#233;&#128512;"));
}

TEST(Charsets, EveryCharacterOfTheCodePageSurvivesTheWayThereAndBack) {
  int characters = 0;
  for (unsigned c = 1; c < 0x10000; ++c) {
    const QChar character(static_cast<char16_t>(c));
    const unsigned code = CodePage932::Instance().ToCode(character.unicode());
    if (code == 0) continue;
    ++characters;
    const QByteArray bytes = ToCodePage932(QString(character));
    const QString back = Decode({Charset::Family::ShiftJis, {}}, bytes).text;
    ASSERT_EQ(ToCodePage932(back), bytes) << c;
  }
  EXPECT_GT(characters, 9000);
}

TEST(Charsets, RecognitionTellsTheCodesApart) {
  const QString text = QStringLiteral("明日の会議は十時からです。");
  const auto code = [](const QByteArray& bytes) { return RecognizeCharset(bytes).family; };
  EXPECT_EQ(code(ToCodePage932(text)), Charset::Family::ShiftJis);
  EXPECT_EQ(code(text.toUtf8()), Charset::Family::Utf8);
  EXPECT_EQ(code("\xA4\xB3\xA4\xF3\xA4\xCB\xA4\xC1\xA4\xCF"), Charset::Family::Euc);
  EXPECT_EQ(code("\x1B$B$\"\x1B(B"), Charset::Family::Jis);
  EXPECT_EQ(code("plain"), Charset::Family::Ascii);
  EXPECT_EQ(code("\xFF\xFE\xFF"), Charset::Family::Unknown);
}

// Raw header fields say nothing of their code; the text does, unless it says so by habit.
TEST(Charsets, ARawSubjectIsReadInTheCodeOfTheText) {
  const auto subject = [](const char* charset, const QByteArray& raw) {
    return IndexMessage("From: " + raw + " <f@x>\r\nSubject: " + raw +
                            "\r\nContent-Type: text/plain; charset=" + charset + "\r\n\r\nx\r\n",
                        {}, {kTextTypes});
  };
  struct Case {
    const char* charset;
    const char* raw;
    const char16_t* text;
  };
  for (const Case& c :
       {Case{"koi8-r", "\xF0\xD2\xC9\xD7\xC5\xD4\x20\xD7\xD3\xC5\xCD", u"Привет всем"},
        {"iso-8859-16", "\xAA\xDE", u"ȘȚ"},
        {"windows-1251", "\xCE\xF2\xF7\xB8\xF2\x20\xE7\xE0\x20\xED\xEE\xFF\xE1\xF0\xFC",
         u"Отчёт за ноябрь"},
        {"iso-8859-1", "\x47\x72\xFC\xDF\x65\x20\x61\x75\x73\x20\x4B\xF6\x6C\x6E",
         u"Grüße aus Köln"},
        {"gb2312", "\xB9\xD8\xD3\xDA\xBB\xE1\xD2\xE9\xB5\xC4\xCD\xA8\xD6\xAA", u"关于会议的通知"},
        {"big5", "\xB7\x7C\xC4\xB3\xB3\x71\xAA\xBE", u"會議通知"},
        {"euc-kr", "\xC8\xB8\xC0\xC7\x20\xBE\xC8\xB3\xBB", u"회의 안내"}}) {
    const QString text = QString::fromUtf16(c.text);
    const MessageIndex index = subject(c.charset, c.raw);
    EXPECT_EQ(index.subject, text) << c.charset;
    EXPECT_EQ(index.addressLines, QStringLiteral("FROM: f@x ") + text);
  }
  for (const char16_t* western :
       {u"Café déjà vu", u"Réunion à 14h", u"Bücher über Gärten", u"élève", u"naïve façade"}) {
    const QString text = QString::fromUtf16(western);
    EXPECT_EQ(subject("iso-8859-15", text.toLatin1()).subject, text);
  }
  const QString japanese = QStringLiteral("明日の会議について");
  EXPECT_EQ(subject("iso-8859-1", ToCodePage932(QStringLiteral("会議資料送付"))).subject,
            QStringLiteral("会議資料送付"));
  EXPECT_EQ(subject("iso-8859-1", ToCodePage932(japanese)).subject, japanese);
  EXPECT_EQ(subject("gb2312", japanese.toUtf8()).subject, japanese);
  EXPECT_EQ(subject("us-ascii", ToCodePage932(japanese)).subject, japanese);
}

TEST(Addresses, ListsAreSplitOutsideQuotesAndBrackets) {
  EXPECT_EQ(ParseAddressList(QStringLiteral("To: \"Sato, Hanako\" <a@x>, b@y (c, d), <e@z>,")),
            QStringLiteral("TO: a@x Sato, Hanako\r\nTO: b@y c, d\r\nTO: e@z\r\n"
                           "TO: (不明なメールアドレス)"));
  EXPECT_EQ(ParseAddressList(QStringLiteral("Cc: (note) z@x, y@x (Taro Yamada)")),
            QStringLiteral("CC: z@x note\r\nCC: y@x Taro Yamada"));
  EXPECT_EQ(ParseAddressList(QStringLiteral("To: a@x (Yamada \\(Taro\\)), b@x (Sato (Sales (2))), "
                                            "(c\\\\d) c@x, d@x (e) (f), e@x ()")),
            QStringLiteral("TO: a@x Yamada (Taro)\r\nTO: b@x Sato (Sales (2))\r\nTO: c@x c\\d\r\n"
                           "TO: d@x (e) (f)\r\nTO: e@x"));
  EXPECT_EQ(ParseAddressList(QStringLiteral("From: Joe (a \\(b\\) \\\"x\\\" c) <a@x>")),
            QStringLiteral("FROM: a@x Joe (a (b) \"x\" c)"));
  EXPECT_EQ(ParseAddressList(QStringLiteral("To: <mailto:a@x.jp>, B <MailTo: b@x.jp>, <mailto@x>")),
            QStringLiteral("TO: a@x.jp\r\nTO: b@x.jp B\r\nTO: mailto@x"));
  EXPECT_EQ(ParseAddressList(QStringLiteral("From: 山田 太郎 <y@x>")),
            QStringLiteral("FROM: y@x 山田 太郎"));
  EXPECT_EQ(ParseAddressList(QStringLiteral("From: A <a@x> <b@y>")).section(u' ', 0, 1),
            QStringLiteral("FROM: a@x"));
  EXPECT_EQ(ParseAddressList(QStringLiteral("From: nobody")), QStringLiteral("FROM: nobody"));
  EXPECT_EQ(ParseAddressList(QString()), QString());
}

// What an encoded word holds is a name, whatever it would mean in a list.
TEST(Addresses, AnEncodedNameStaysWhole) {
  for (const char sign : QByteArrayLiteral(",;:<>()@\"\\")) {
    const QByteArray word = "=?UTF-8?Q?Sales=" + QByteArray(1, sign).toHex().toUpper() + "_Team?=";
    const QByteArray source = "From: " + word + " <a@x.example>\r\nTo: b@x.example\r\n\r\n";
    EXPECT_EQ(
        ReadAddressLines(source, ReadingCode(), true),
        QStringLiteral("FROM: a@x.example Sales%1 Team\r\nTO: b@x.example").arg(QLatin1Char(sign)));
  }
}

TEST(Addresses, EntriesAreTakenApart) {
  const AddressEntry to = ParseAddressEntry(QStringLiteral("TO: a@x 山田 太郎"));
  EXPECT_EQ(to.displayName, QStringLiteral("山田 太郎"));
  EXPECT_EQ(CanonicalLine(to), QStringLiteral("TO: a@x 山田 太郎"));
  EXPECT_EQ(PresentableAddress(to), QStringLiteral("山田 太郎 <a@x>"));
  const AddressEntry bcc = ParseAddressEntry(QStringLiteral("bcc: A@X"));
  EXPECT_EQ(bcc.kind, QStringLiteral("BC"));
  EXPECT_EQ(CanonicalLine(bcc), QStringLiteral("BC: a@x"));
  const AddressEntry reply = ParseAddressEntry(QStringLiteral("replay-to: A@X Name"));
  EXPECT_EQ(reply.kind, QStringLiteral("RE"));
  EXPECT_EQ(PresentableAddress(reply), QStringLiteral("name <a@x>"));
  EXPECT_EQ(ParseAddressEntry(QStringLiteral("Disposition-Notification-To: x@y")).kind,
            QStringLiteral("NO"));
  const AddressEntry plain = ParseAddressEntry(QStringLiteral("a@x Name"));
  EXPECT_EQ(plain.kind + u' ' + plain.address, QStringLiteral("TO a@x"));
  EXPECT_EQ(ParseAddressEntry(QStringLiteral("urn:x")).address, QStringLiteral("urn:x"));
  EXPECT_EQ(CanonicalLine(ParseAddressEntry(QStringLiteral("cc:"))), QString());
}

TEST(FlagString, PositionsAreReadAndWritten) {
  const auto set = [](const char16_t* flags, FlagPosition position, const char16_t* value) {
    return FlagString(QString::fromUtf16(flags)).With(position, QString::fromUtf16(value)).Text();
  };
  EXPECT_EQ(set(u"", kFlagNew, u"1"), QStringLiteral("001"));
  EXPECT_EQ(set(u"001", kFlagCode, u"-1"), QStringLiteral("001"));
  EXPECT_EQ(set(u"02", kFlagAnswered, u"*"), QStringLiteral("0200*"));
  EXPECT_EQ(set(u"02", kFlagCode, u"10"), QStringLiteral("02"));
  EXPECT_EQ(set(u"02", kFlagAttachment, u"ab"), QStringLiteral("0200"));
  EXPECT_EQ(set(u"02", kFlagCode, u""), QStringLiteral("02"));
  EXPECT_EQ(kWrittenFlags.At(kFlagNew, QStringLiteral("0")), QStringLiteral("0"));
}

TEST(MessageIndexing, PriorityAttachmentAndReplyHeaders) {
  const auto flags = [](const QByteArray& source) {
    return IndexMessage(source, FlagString(QStringLiteral("001")), {kTextTypes}).flags.Text();
  };
  EXPECT_EQ(flags("Subject: x\r\n\r\nbody\r\n"), QStringLiteral("*210"));
  EXPECT_EQ(flags("X-Priority: 5\r\n\r\n"), QStringLiteral("*310"));
  EXPECT_EQ(flags("X-Priority: 1\r\n\r\n"), QStringLiteral("*110"));
  EXPECT_EQ(flags("X-Priority: 1 (Highest)\r\n\r\n"), QStringLiteral("*210"));
  EXPECT_EQ(flags("Content-Type: image/png\r\n\r\nx"), QStringLiteral("0211"));
  // A message has attachments where its window shows some, where that is what counts.
  const QByteArray both =
      "Content-Type: multipart/alternative; boundary=b\r\n\r\n--b\r\n\r\nt\r\n--b\r\n"
      "Content-Type: text/html\r\n\r\n<p>t\r\n--b--\r\n";
  const QByteArray named = "Content-Type: text/plain; name=a.txt\r\n\r\nx";
  EXPECT_EQ(flags(both).at(3), u'1');
  EXPECT_EQ(flags(named).at(3), u'0');
  const IndexOptions shown{.textTypes = kTextTypes, .countsShown = true};
  EXPECT_EQ(IndexMessage(both, {}, shown).flags.Text().at(3), u'0');
  EXPECT_EQ(IndexMessage(named, {}, shown).flags.Text().at(3), u'1');
  const QByteArray html = "Content-Type: text/html\r\n\r\n<p>x";
  EXPECT_EQ(flags(html).at(3), u'1');
  EXPECT_EQ(IndexMessage(html, {}, shown).flags.Text().at(3), u'0');
  const MessageIndex index =
      IndexMessage("Reply-To: no@x\r\nReplay-To: yes@x\r\nFrom: f@x\r\n\r\n", {}, {kTextTypes});
  EXPECT_EQ(index.addressLines, QStringLiteral("FROM: f@x\r\nREPLAY-TO: yes@x"));
}

TEST(ContentIndex, HostileStructuresStayBoundedAndReadable) {
  QByteArray nested;
  for (int i = 0; i < 10000; ++i) {
    const QByteArray boundary = "b" + QByteArray::number(i);
    nested +=
        "Content-Type: multipart/mixed; boundary=" + boundary + "\r\n\r\n--" + boundary + "\r\n";
  }
  nested += "Content-Type: text/plain\r\n\r\nthe text\r\n";
  TextRequest request;
  request.textTypes = kTextTypes;
  const QString text = GetMessageText(nested, MimeCodec::ContentIndex(nested), request).text;
  EXPECT_TRUE(text.contains(u"the text"));

  const QByteArray forged =
      "Content-Type: text/plain; name=\"a\0b\r\n c\"\r\n\r\nx"
      "\r\nContent-Type: image/png; name=\"=?UTF-8?Q?x=0D=0Ay=00z?=\"\r\n\r\n";
  const auto records = MimeCodec::ReadContent(forged);
  EXPECT_EQ(MimeCodec::ParseContentIndex(MimeCodec::FormatContentIndex(records)).size(),
            records.size());
  EXPECT_EQ(MimeCodec::ReadContent("").size(), 1U);
}

TEST(MessageText, ACutTextEndsWithDotsAtAWholeCharacter) {
  const QByteArray body = QByteArray(300, 'x');
  TextRequest request;
  request.textTypes = kTextTypes;
  request.maximum = 100;
  const auto text = [&request](const QByteArray& source) {
    return GetMessageText(source, MimeCodec::ContentIndex(source), request).text;
  };
  EXPECT_EQ(text("\r\n" + body), QString(100, u'x') + QStringLiteral("..."));
  EXPECT_EQ(text("Content-Transfer-Encoding: base64\r\n\r\n" + body.toBase64()),
            QString(99, u'x') + QStringLiteral("..."));
  const QString japanese = QString(60, u'あ');
  EXPECT_EQ(text("Content-Type: text/plain; charset=utf-8\r\n\r\n" + japanese.toUtf8()),
            QString(33, u'あ') + QStringLiteral("..."));
  EXPECT_EQ(
      text("Content-Type: multipart/mixed; boundary=b\r\n\r\n--b\r\nContent-Type: text/plain; "
           "charset=utf-8\r\nContent-Transfer-Encoding: base64\r\n\r\n" +
           japanese.toUtf8().toBase64() + "\r\n--b\r\n\r\nsecond\r\n--b--\r\n"),
      QString(33, u'あ') + QStringLiteral("\r\nsecond..."));
  request.maximum = 0;
  EXPECT_EQ(text("Content-Type: multipart/mixed; boundary=b\r\n\r\n--b\r\n\r\nno line end\r\n--b"
                 "\r\n\r\nthe next\r\n--b--\r\n"),
            QStringLiteral("no line end\r\nthe next"));
  request.linePrefix = QStringLiteral("> ");
  EXPECT_EQ(text("\r\na\r\nb\nc\rd"), QStringLiteral("a\r\n> b\r\n> c\r\n> d"));
}

}  // namespace
}  // namespace vorn
