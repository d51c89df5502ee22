// What a message is read in by hand when its label is wrong, and what is said of signed ones.

#include <gtest/gtest.h>

#include <algorithm>

#include "mail/codec/header/header_decoding.h"
#include "mail/codec/mime/code_offers.h"
#include "mail/codec/mime/mime_codec.h"
#include "mail/codec/mime/signature.h"
#include "mail/codec/mime/text_extraction.h"

namespace vorn {
namespace {

const QStringList kTypes{QStringLiteral("text/plain"), QStringLiteral("text/html")};

QByteArray Message(const QByteArray& label, const QByteArray& body) {
  const QByteArray parameter = label.isEmpty() ? label : "; charset=" + label;
  return "From: a@example.jp\r\nSubject: s\r\nContent-Type: text/plain" + parameter +
         "\r\n\r\nplain first\r\n" + body + "\r\nlast\r\n";
}

std::vector<CodeOffer> OffersFor(const QByteArray& source) {
  return OfferCodes(source, MimeCodec::ContentIndex(source), kTypes);
}

QString ReadIn(const QByteArray& source, const CodeOffer& offer) {
  TextRequest request;
  request.charset.forced = offer.charset;
  request.textTypes = kTypes;
  return GetMessageText(source, MimeCodec::ContentIndex(source), request).text;
}

TEST(CodeOffersTest, TheRightCodeIsAmongThePlausibleOnesAndShowsTheLine) {
  struct Case {
    const char* name;
    const char* label;
    QByteArray body;
    QString text;
  };
  const Case cases[] = {
      {"koi8-r", "iso-8859-1", "\xF0\xD2\xC9\xD7\xC5\xD4", QStringLiteral("Привет")},
      {"windows-1253", "us-ascii", "\xCA\xE1\xEB\xE7\xEC\xDD\xF1\xE1", QStringLiteral("Καλημέρα")},
      {"EUC-JP", "windows-1252", "\xC6\xFC\xCB\xDC\xB8\xEC\xA4\xC7\xA4\xB9",
       QStringLiteral("日本語です")},
      {"EUC-KR", "utf-8", "\xC7\xD1\xB1\xB9", QStringLiteral("한국")},
      {"EUC-JIS-2004", "utf-8", "\xCF\xD4\xA4\xEB", QStringLiteral("𠮟る")},
  };
  for (const Case& one : cases) {
    SCOPED_TRACE(one.name);
    const QByteArray source = Message(one.label, one.body);
    const std::vector<CodeOffer> offers = OffersFor(source);
    const auto found = std::find_if(offers.begin(), offers.end(), [&one](const CodeOffer& offer) {
      return offer.name.compare(QLatin1String(one.name), Qt::CaseInsensitive) == 0;
    });
    ASSERT_NE(found, offers.end());
    EXPECT_TRUE(found->isPlausible);
    EXPECT_LT(found - offers.begin(), 16) << "is not seen without scrolling";
    EXPECT_EQ(found->preview.toStdString(), one.text.toStdString());
    EXPECT_TRUE(ReadIn(source, *found).contains(one.text));
  }
}

TEST(CodeOffersTest, UsualJapaneseStandsFirstAndErrorsLast) {
  const QByteArray sjis =
      "\x93\xFA\x96\x7B\x8C\xEA\x82\xC5\x82\xB7\x81\x42\x82\xA8\x90\xA2\x98\x62\x82\xC9";
  const std::vector<CodeOffer> offers = OffersFor(Message("utf-8", sjis));
  EXPECT_GT(offers.size(), 150U);
  EXPECT_TRUE(offers.front().preview.startsWith(QStringLiteral("日本語です。")))
      << "is " << offers.front().name.toStdString();
  EXPECT_FALSE(offers.back().isPlausible);
  const auto firstBad = std::find_if(offers.begin(), offers.end(),
                                     [](const CodeOffer& offer) { return !offer.isPlausible; });
  EXPECT_TRUE(std::none_of(firstBad, offers.end(),
                           [](const CodeOffer& offer) { return offer.isPlausible; }));
}

// The Japanese codes before others in which the bytes mean something as well; also in a subject
// that says the same of itself.
TEST(CodeOffersTest, WhatIsRecognisedStandsFirstAndIsReadInTheSubjectToo) {
  const QByteArray name = "\x8E\x52\x93\x63\x97\x6C";  // 山田様
  EXPECT_EQ(OffersFor(Message("utf-8", name)).front().name, QStringLiteral("Shift_JIS"));

  const QByteArray word = "=?Shift_JIS?B?5piO5pel?= =?utf-8?B?5piO5pel?=";  // 明日 in UTF-8
  const QByteArray field = "Subject: " + word;
  ReadingCode code;
  code.body = Charset::FromLabel("Shift_JIS");
  code.forced = Charset::FromLabel("iso-8859-2");
  EXPECT_EQ(MimeCodec::DecodeHeader(field, 8, code), QStringLiteral("ć\u0098\u008Eć\u0097Ľ明日"));
}

// A code that is chosen by hand counts also where what is declared fits.
TEST(CodeOffersTest, AForcedCodeGoesBeforeWhatIsDeclared) {
  const QByteArray source = Message("utf-8", QStringLiteral("あ").toUtf8());
  for (const CodeOffer& offer : OffersFor(source)) {
    if (offer.name == u"ISO-8859-1") {
      EXPECT_TRUE(ReadIn(source, offer).contains(QStringLiteral("ã\u0081\u0082")));
    }
  }
}

TEST(CodeOffersTest, AMessageWithoutTextOrWithoutAnythingOffersCodesToo) {
  for (const QByteArray& source :
       {QByteArray(), QByteArray("Subject: s\r\n\r\n"),
        QByteArray("Content-Type: image/png\r\n\r\n\x89PNG"), Message("", "plain")}) {
    EXPECT_GT(OffersFor(source).size(), 150U);
    EXPECT_EQ(WrongLabels(source, MimeCodec::ContentIndex(source), kTypes), QStringList());
  }
}

TEST(CodeOffersTest, LabelsThatDoNotHoldAreNamed) {
  const auto wrong = [](const QByteArray& source) {
    return WrongLabels(source, MimeCodec::ContentIndex(source), kTypes);
  };
  EXPECT_EQ(wrong(Message("us-ascii", "\x82\xA0")), QStringList{QStringLiteral("us-ascii")});
  EXPECT_EQ(wrong(Message("utf-8", "\x82\xA0")), QStringList{QStringLiteral("utf-8")});
  EXPECT_EQ(wrong(Message("utf-8", "\x1B$B$\"\x1B(B")), QStringList{QStringLiteral("utf-8")});
  EXPECT_EQ(wrong(Message("", "\x82\xA0")), QStringList{QString()});
  EXPECT_EQ(wrong(Message("shift_jis", "\x82\xA0")), QStringList());
  EXPECT_EQ(wrong(Message("shift_jis", QStringLiteral("これは日本語です").toUtf8())),
            QStringList{QStringLiteral("shift_jis")})
      << "it is read as UTF-8";
  EXPECT_EQ(wrong(Message("iso-2022-jp", "\x1B$B$\"\x1B(B")), QStringList());
}

// A label that fits any bytes says nothing against the user; what it alone makes sense of stays.
TEST(CodeOffersTest, ACodeThatIsPickedIsReadButWhereItFailsAndTheLabelDoesNot) {
  const auto read = [](const QByteArray& label, const QByteArray& body, CharsetChoice picked) {
    const QByteArray source = Message(label, body);
    TextRequest request;
    request.charset = ReadingCode(picked, true);
    request.textTypes = kTypes;
    return GetMessageText(source, MimeCodec::ContentIndex(source), request).text;
  };
  const QByteArray euc = "\xC6\xFC\xCB\xDC\xB8\xEC\xA4\xC7\xA4\xB9";
  EXPECT_TRUE(read("iso-8859-1", euc, CharsetChoice::Euc).contains(QStringLiteral("日本語です")));
  EXPECT_TRUE(read("iso-8859-1", "caf\xE9!", CharsetChoice::ShiftJis).contains(u"caf\u00E9!"));
  EXPECT_FALSE(read("utf-8", euc, CharsetChoice::Euc).contains(QChar::ReplacementCharacter));
}

TEST(SignatureTest, HowAMessageIsSignedIsSeenByItsPartsOrItsText) {
  const auto kind = [](const QByteArray& source) {
    TextRequest request;
    request.textTypes = kTypes;
    const QString index = MimeCodec::ContentIndex(source);
    return FindSignature(MimeCodec::ParseContentIndex(index),
                         GetMessageText(source, index, request).text);
  };
  const auto beside = [](const QByteArray& type) {
    return "Content-Type: multipart/signed; boundary=b; micalg=sha-256\r\n\r\n--b\r\n\r\ntext\r\n"
           "--b\r\nContent-Type: " +
           type + "\r\n\r\nAAAA\r\n--b--\r\n";
  };
  EXPECT_EQ(kind(beside("application/pkcs7-signature; name=smime.p7s")), SignatureKind::Smime);
  EXPECT_EQ(kind(beside("Application/X-PKCS7-Signature")), SignatureKind::Smime);
  EXPECT_EQ(kind(beside("application/pgp-signature")), SignatureKind::OpenPgp);
  // A mailing list put its own part around it.
  EXPECT_EQ(kind("Content-Type: multipart/mixed; boundary=m\r\n\r\n--m\r\n" +
                 beside("application/pgp-signature") + "\r\n--m\r\n\r\nlist\r\n--m--\r\n"),
            SignatureKind::OpenPgp);
  EXPECT_EQ(kind("Content-Type: application/pkcs7-mime; smime-type=enveloped-data\r\n\r\nAAAA\r\n"),
            SignatureKind::Wrapped);
  EXPECT_EQ(kind("Subject: s\r\n\r\nHello\r\n-----BEGIN PGP SIGNED MESSAGE-----\r\n"),
            SignatureKind::OpenPgp);
  EXPECT_EQ(kind("Subject: s\r\n\r\n> -----BEGIN PGP SIGNED MESSAGE-----\r\n"),
            SignatureKind::None);
  EXPECT_EQ(kind("Subject: s\r\n\r\ntext\r\n"), SignatureKind::None);
  EXPECT_TRUE(SignatureWords(SignatureKind::None).isEmpty());
}

}  // namespace
}  // namespace vorn
