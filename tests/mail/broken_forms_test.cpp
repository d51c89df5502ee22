// Messages that do not keep to the rules of their form, and what a reader still finds in them.

#include <gtest/gtest.h>

#include "mail/codec/charset/text_encoding.h"
#include "mail/codec/header/address.h"
#include "mail/codec/mime/message_index.h"
#include "mail/codec/mime/mime_codec.h"
#include "mail/codec/mime/text_extraction.h"
#include "support/growth.h"

namespace vorn {
namespace {

using MimeCodec::OutputCharset;

QString Text(const QByteArray& source) {
  TextRequest request;
  request.textTypes = {QStringLiteral("text/plain")};
  return GetMessageText(source, MimeCodec::ContentIndex(source), request).text;
}

QString Subject(const QByteArray& field) {
  return MimeCodec::DecodeHeader("Subject: " + field, 8);
}

QStringList Names(const QByteArray& source) {
  QStringList names;
  for (const auto& record : MimeCodec::ReadContent(source)) {
    if (record.hasName) names.append(record.name);
  }
  return names;
}

TEST(BrokenForms, TheTextIsFoundWhereTheHeaderHasNoProperEnd) {
  // A server completes the last line; one CR too many in front of a line break is no such mail.
  EXPECT_EQ(Text("Subject: s\rTo: a@x\r\rone\r\rtwo\r\n"), QStringLiteral("one\r\n\r\ntwo\r\n"));
  EXPECT_EQ(Text("Content-Type: multipart/mixed; boundary=b\r\r--b\r\rone\r--b\r\rtwo\r--b--\r\n"),
            QStringLiteral("one\r\ntwo"));
  EXPECT_EQ(MimeCodec::HeaderField("Subject: a\rFrom: b@x\r\nTo: c@x\r\n\r\nx", "To:"), "To: c@x");
  // A line in the midst of the header that lost its indentation is no text.
  const QByteArray torn = "Subject: a long\nsubject\nContent-Type: text/plain\n\nbody\n";
  EXPECT_EQ(Text(torn), QStringLiteral("body\r\n"));
  EXPECT_EQ(MimeCodec::HeaderField(torn, "Content-Type:"), "Content-Type: text/plain");
}

TEST(BrokenForms, TakeNoLongerThanTheyAreLong) {
  const auto parts = [](int times) {
    QByteArray mail = "Content-Type: multipart/mixed; boundary=o\r\n\r\n";
    for (int i = 0; i < times; ++i) {
      mail += "--o\r\nContent-Type: multipart/mixed\r\n\r\n--x" + QByteArray::number(i) + "\r\n";
    }
    EXPECT_FALSE(MimeCodec::ReadContent(mail).empty());
  };
  EXPECT_LT(test::GrowthOverEight(5000, parts), test::kLinear);
  const auto words = [](int times) {
    const QByteArray header = "To: " + QByteArray("=?utf-8?B?").repeated(times);
    EXPECT_FALSE(MimeCodec::DecodeHeader(header, 4, CharsetChoice::Automatic,
                                         MimeCodec::HeaderUse::AddressList)
                     .isEmpty());
  };
  EXPECT_LT(test::GrowthOverEight(8000, words), test::kLinear);
}

TEST(BrokenForms, WordsBehindWhatEndsAreShown) {
  const QByteArray mixed =
      "Content-Type: multipart/mixed; boundary=b\r\n\r\nThis is "
      "MIME.\r\n--b\r\n\r\none\r\n--b--\r\n";
  EXPECT_EQ(Text(mixed + "\r\nThe list\r\n"), QStringLiteral("one\r\n\r\nThe list\r\n"));
  EXPECT_EQ(Text(mixed + "\r\n \r\n"), QStringLiteral("one"));
  EXPECT_EQ(Text(mixed + ".\r\n"), QStringLiteral("one")) << "the end mark of a stored message";
  const QByteArray base64 = "Content-Transfer-Encoding: base64\r\n\r\nb25lIHR3byB0aHJlZSBmb3Vy\r\n";
  const QByteArray footer = "____________\r\nTo unsubscribe, write to x.\r\n";
  EXPECT_EQ(Text(base64 + footer),
            QStringLiteral("one two three four\r\n") + QLatin1String(footer));
  EXPECT_EQ(Text(base64 + base64.mid(37)), QStringLiteral("one two three fourone two three four"));
}

// Whom the delivered header names gets the message.
TEST(BrokenForms, RepeatedFieldsNameMoreRecipientsButNoOtherSender) {
  const QByteArray source =
      "From: a@x\r\nTo: b@x\r\nFrom: c@x\r\nTo: d@x, e@x\r\nBcc: f@x\r\nBcc: g@x\r\n\r\n";
  EXPECT_EQ(IndexMessage(source, {}, {}).addressLines.split(QStringLiteral("\r\n")),
            (QStringList{QStringLiteral("FROM: a@x"), QStringLiteral("TO: b@x"),
                         QStringLiteral("TO: d@x"), QStringLiteral("TO: e@x"),
                         QStringLiteral("BCC: f@x"), QStringLiteral("BCC: g@x")}));
}

TEST(BrokenForms, WhatWasCutFromAnEncodingCostsNothing) {
  const QByteArray quoted = "Content-Transfer-Encoding: quoted-printable\r\n\r\n";
  for (const char* softBreak : {"=\r\n", "=\n", "=\r", "=\r\r\n", "= \t\r\n", "= \r"}) {
    EXPECT_EQ(Text(quoted + "on" + softBreak + "e=3D=\r\ntwo"), QStringLiteral("one=two"));
  }
  EXPECT_EQ(Text(quoted + "a = b\rc"), QStringLiteral("a = b\r\nc"));
  const QByteArray base64 = "Content-Transfer-Encoding: base64\r\n\r\n";
  for (const char* text : {"one", "one2", "one23", "one234"}) {
    const QByteArray coded = QByteArray(text).toBase64(QByteArray::OmitTrailingEquals);
    EXPECT_EQ(Text(base64 + coded + "\r\n"), QLatin1String(text));
    EXPECT_EQ(Subject("=?us-ascii?B?" + coded + "?="), QLatin1String(text));
  }
  EXPECT_EQ(ParseAddressList(QStringLiteral("From: T <t@example.jp")),
            QStringLiteral("FROM: t@example.jp T"));
}

// The second bytes of these characters are a quotation mark, a backslash, a semicolon and a
// bracket.
TEST(BrokenForms, FileNamesInJisKeepTheBytesThatLookLikeQuotes) {
  const QString both = QStringLiteral("帰移参示.txt");
  const QByteArray jis = *MimeCodec::EncodeText(both, OutputCharset::Jis);
  ASSERT_TRUE(jis.contains('"') && jis.contains('\\') && jis.contains(';') && jis.contains('('));
  QByteArray escaped = jis;
  escaped.replace('\\', "\\\\").replace('"', "\\\"");
  QByteArray word = jis;
  word.replace('\x1B', "=1B");
  struct Case {
    const char* what;
    QByteArray value;
  };
  const Case cases[] = {
      {"raw", '"' + jis + '"'},
      {"raw without quotes", jis},
      {"escaped", '"' + escaped + '"'},
      {"Q word", "\"=?iso-2022-jp?Q?" + word + "?=\""},
  };
  for (const Case& c : cases) {
    for (const char* form : {"Content-Disposition: attachment; filename=%; size=5",
                             "Content-Type: application/pdf; name=%; x=y"}) {
      EXPECT_EQ(Names(QByteArray(form).replace('%', c.value) + "\r\n\r\nx"), QStringList{both})
          << c.what << ' ' << form;
    }
  }
}

TEST(BrokenForms, OfTwoFormsOfANameTheReadableOneCounts) {
  const QByteArray extended = "filename*=utf-8''%E4%BC%9A%E8%AD%B0.txt";
  const QByteArray broken = "filename*=utf-8''%E4%BC%E8%AD.txt";
  const QByteArray plain = "filename=\"=?utf-8?B?5Lya6K2wLnR4dA==?=\"";
  const QByteArray marks = "filename=\"??.txt\"";
  const QByteArray type =
      "\r\nContent-Type: application/pdf; name=\"\xE4\xBC\x9A\xE8\xAD\xB0.txt\"";
  for (const QByteArray& forms :
       {marks + "; " + extended, broken + "; " + plain, plain + "; " + broken, marks + type,
        broken + type, broken + "; " + marks + type, extended + type}) {
    EXPECT_EQ(Names("Content-Disposition: attachment; " + forms + "\r\n\r\nx"),
              QStringList{QStringLiteral("会議.txt")})
        << forms.constData();
  }
}

TEST(BrokenForms, FieldsAreReadWithCommentsQuotesAndWithoutNames) {
  struct Case {
    QByteArray fields;
    const char* body;
    const char16_t* text;
  };
  const Case cases[] = {
      {"Content-Type: text/plain; charset=gb2312 (as usual)", "\xC4\xE3\xBA\xC3", u"你好"},
      {"Content-Type: text/plain (x); charset=\"gb2312 (y)\"", "\xC4\xE3\xBA\xC3", u"你好"},
      {"Content-Transfer-Encoding: \"base64\"", "5Lya6K2w", u"会議"},
      {"Content-Transfer-Encoding: (see (RFC 2045)) base64", "5Lya6K2w", u"会議"},
      {"Content-Transfer-Encoding: quoted-printable (x)", "=E4=BC=9A=E8=AD=B0", u"会議"},
      {"Content-Type: text/plain; charset=x-SJIS_0213", "\x83\xE5\x82\xA0", u"☎あ"},
      {"Content-Type: text/plain; charset=cp949", "\x8C\x63\x94\xEE", u"똠뷁"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(Text(c.fields + "\r\n\r\n" + c.body + "\r\n").trimmed(), QString::fromUtf16(c.text))
        << c.fields.constData();
  }
  EXPECT_EQ(Subject("=??B?5Lya6K2w?= =??Q?=E3=81=A7=E3=81=99?="), QStringLiteral("会議です"));
  EXPECT_EQ(Subject("what =?? is =?x?="), QStringLiteral("what =?? is =?x?="));
  EXPECT_EQ(DecodeAutomatically("\x8C\xFF", Charset::FromLabel("ibm-949")).count(QChar(0x1A)), 0);
}

TEST(BrokenForms, WhatIsAMessagesOnlyTextIsShown) {
  struct Case {
    const char* source;
    const char16_t* text;
  };
  const Case cases[] = {
      {"Content-Type: text/markdown\r\n\r\n# 題\r\n", u"# 題"},
      {"Content-Type: text/csv; charset=shift_jis\r\n\r\na,\x89\xEF\x8B\x63\r\n", u"a,会議"},
      {"Content-Type: text/enriched\r\n\r\n<bold>Now</bold> is\r\nthe <param>x</param>time\r\n"
       "\r\nto << go\r\n",
       u"Now is the time\r\nto < go"},
      {"Content-Type: multipart/mixed; boundary=b\r\n\r\n--b\r\n\r\nplain\r\n--b\r\n"
       "Content-Type: text/markdown\r\n\r\n# x\r\n--b--\r\n",
       u"plain"},
      {"Content-Type: multipart/mixed; boundary=b\r\n\r\n前置き\r\n--b\r\n"
       "Content-Type: image/png\r\n\r\nx\r\n--b--\r\n",
       u"前置き"},
      {"Content-Type: multipart/mixed; boundary=b\r\n\r\nThis is a multi-part message.\r\n--b\r\n"
       "Content-Type: image/png\r\n\r\nx\r\n--b--\r\n",
       u""},
      {"Content-Type: multipart/report; boundary=b\r\n\r\n--b\r\n"
       "Content-Type: text/rfc822-headers\r\n\r\nSubject: x\r\n--b--\r\n",
       u""},
      {"Content-Transfer-Encoding: base64\r\n\r\n> 5Lya\r\n> 6K2w\r\n", u"会議"},
      {"Content-Transfer-Encoding: base64\r\n\r\n>5Lya6K2w\r\n", u"会議"},
      {"Content-Transfer-Encoding: base64\r\n\r\n> no\r\nbase64 at all\r\n",
       u"> no\r\nbase64 at all"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(Text(c.source).trimmed(), QString::fromUtf16(c.text)) << c.source;
  }
}

TEST(BrokenForms, CodesAreReadByTheirOwnNames) {
  const auto read = [](const char* label, const QByteArray& bytes) {
    return DecodeAutomatically(bytes, Charset::FromLabel(label));
  };
  EXPECT_EQ(read("EUC-JIS-2004", "\xA4\xAA\xA2\xAF"), QStringLiteral("お").append(QChar(0xFF07)));
  EXPECT_EQ(read("iso-2022-jp-3", "\x1B$(Q$*\x1B(B"), QStringLiteral("お"));
  EXPECT_EQ(read("iso-2022-jp-2004", "\x1B$(P!!\x1B(B").size(), 2) << "beyond the first plane";
  EXPECT_EQ(read("iso-2022-jp", "\x1B$B$3$l\n$G$9\x1B(B."), QStringLiteral("これ\nです."));
  EXPECT_EQ(read("iso-2022-jp", "\x1B$B$3$l\nThat is.\n"), QStringLiteral("これ\nThat is.\n"));
  EXPECT_EQ(read("shift_jis", "\xA4\xB3\xA4\xEC\xA4\xCF\xA4\xC7\xA4\xB9"),
            QStringLiteral("これはです"));
}

}  // namespace
}  // namespace vorn
