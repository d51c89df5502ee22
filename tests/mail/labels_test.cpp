// A right label wins, a wrong one loses where the text itself tells.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "mail/codec/charset/charset.h"
#include "mail/codec/charset/charset_recognition.h"
#include "mail/codec/mime/message_index.h"
#include "mail/codec/mime/mime_codec.h"
#include "mail/codes.h"

namespace vorn {
namespace {

// As windows-1252; null where it lacks a character.
QByteArray Western(const QString& text) {
  static const QString kSigns = QStringLiteral("€\u0081‚ƒ„…†‡ˆ‰Š‹Œ\u008DŽ\u008F\u0090‘’“”•–—˜™š›œ");
  QByteArray bytes;
  for (const QChar c : text) {
    const qsizetype sign = kSigns.indexOf(c);
    if (sign < 0 && c.unicode() > 0xFF) return {};
    bytes += static_cast<char>(sign < 0 ? c.unicode() : 0x80 + sign);
  }
  return bytes;
}

TEST(RightLabels, WesternTextsAreNeverJapanese) {
  for (const char16_t* words :
       {u"Special characters: äöüÄÖÜß",
        u"ÄÖÜ ÄÖÜ",
        u"GRÖSSE ÄÖÜ ÜBER",
        u"äöü",
        u"ÄÖÜäöüß",
        u"ÅÄÖåäö",
        u"ÆØÅæøå",
        u"ÆØÅ",
        u"Contraseña: ÁÉÍÓÚ",
        u"ÁÉÍÓÚ",
        u"ÁÉÍÓÚÑÜ",
        u"áéíóúñü",
        u"ÀÂÄÇÉÈÊËÎÏÔÖÙÛÜ sont des lettres françaises",
        u"ÀÉÎÔÛ",
        u"ÀàÂâÇç",
        u"ÄäÖöÜü",
        u"ÃÕÂÊÔÁÉÍÓÚ",
        u"AÇÕES",
        u"ÊTRE ÉLÈVE",
        u"NOËL À ÉTÉ",
        u"PEÑA ÑOÑO",
        u"GÖRÜME",
        u"ŠKODA ŽIVOT",
        u"ÞÐ",
        u"þð",
        u"»»»»» Angebot",
        u"»»»»»» Angebot ««««««",
        u"«ÀÉ»",
        u"“Don’t” – he said – “won’t”",
        u"It’s a dog’s life",
        u"L’été d’un œil",
        u"„Äh“ ‚a‘",
        u"““””",
        u"½¼¾",
        u"1½ cups, ¼ tsp",
        u"5±2 µm, 10³ m³",
        u"Order Nº 123 ÄÖÜ",
        u"1º 2º 3ª",
        u"£££ 100",
        u"¥1,000",
        u"¢¢",
        u"€€€",
        u"Süß™",
        u"Acme® ® ®",
        u"©®",
        u"°°°°°°",
        u"········",
        u"–––––",
        u"•••••",
        u"¯¯¯¯¯¯",
        u"¦¦¦¦",
        u"ÚÄÄÄÄÄ¿",
        u"ÀÄÄÄÄÙ",
        u"ÍÍÍÍÍÍÍÍ",
        u"ÉÍÍÍ»",
        u"\u00A0\u00A0\u00A0\u00A0",
        u"Hello\u00A0\u00A0\u00A0\u00A0\u00A0\u00A0world\r\n\u00A0\u00A0Best\u00A0\u00A0",
        u"The price is $5.\r\n··········\r\nRegards",
        u"¡¡OFERTA!! ¿¿QUÉ??",
        u"7×8÷2",
        u"§§ 5"}) {
    const QString text = QString::fromUtf16(words);
    const QByteArray bytes = Western(text);
    for (const char* label : {"iso-8859-1", "windows-1252", "iso-8859-15"}) {
      // Where the code differs from the two others.
      const auto isElse = [](QChar c) {
        return c.unicode() > 0xFF || QStringView(u"¼½¾¦").contains(c);
      };
      const bool isLast = label == std::string("iso-8859-15");
      ASSERT_FALSE(bytes.isNull()) << text.toStdString();
      if (isLast && std::any_of(text.begin(), text.end(), isElse)) continue;
      ReadingCode body;
      body.body = Charset::FromLabel(label);
      EXPECT_EQ(DecodeAutomatically(bytes, body.body).toStdString(), text.toStdString()) << label;
      EXPECT_EQ(DecodeRawHeader(bytes, body).toStdString(), text.toStdString())
          << label << " of the body";
    }
  }
}

TEST(RightLabels, KanaAndRareNamesAreWhatTheyAreDeclared) {
  for (const char16_t* words :
       {u"ﾔﾏﾀﾞ ﾀﾛｳ", u"ﾔﾏﾀﾞ", u"ﾊｲ",   u"ﾃｽﾄ",  u"ﾒﾆｭｰ",   u"ｶ)ﾔﾏﾀﾞ", u"ﾄｳｷｮｳﾄ ﾁﾖﾀﾞｸ ﾏﾙﾉｳﾁ 1-1",
        u"髙橋",     u"﨑",   u"鷗",   u"邉",   u"渡邉",   u"齋藤",   u"廣瀬",
        u"山﨑",     u"薔薇", u"檸檬", u"鬱憤", u"訃願孔", u"錏",     u"鋺",
        u"羌能",     u"菴尋"}) {
    const QString text = QString::fromUtf16(words);
    for (const Code& code : kCodes) {
      const auto bytes = MimeCodec::EncodeText(text, code.output);
      if (!bytes) continue;  // not all of the codes have it
      const Charset declared = Charset::FromLabel(code.label);
      EXPECT_EQ(DecodeAutomatically(*bytes, declared).toStdString(), text.toStdString())
          << code.label;
    }
  }
}

TEST(WrongLabels, ShortTextsAreReadInTheirOwnCodeAndKanaInTheDeclaredOne) {
  struct Case {
    const char16_t* text;
    Output code;
    const char* label;
  };
  constexpr Case kCases[] = {
      {u"株式会社山田", Output::Utf8, "shift_jis"},
      {u"営業部", Output::Utf8, "shift_jis"},
      {u"鈴木", Output::Utf8, "shift_jis"},
      {u"明日", Output::Utf8, "shift_jis"},
      {u"①", Output::Utf8, "shift_jis"},
      {u"お客様窓口", Output::Utf8, "shift_jis"},
      {u"お客様窓口", Output::Utf8, "euc-jp"},
      {u"渡辺", Output::Utf8, "euc-jp"},
      {u"社", Output::Utf8, "iso-2022-jp"},
      {u"山田 太郎", Output::Euc, "iso-2022-jp"},
      {u"佐藤花子", Output::Euc, "iso-2022-jp"},
      {u"山田", Output::Euc, "iso-2022-jp"},
      {u"田中", Output::Euc, "iso-2022-jp"},
      {u"林", Output::Euc, "iso-2022-jp"},
      {u"ﾀﾛｳ", Output::ShiftJis, "iso-2022-jp"},
      {u"ﾔﾏﾀﾞ", Output::ShiftJis, "iso-2022-jp"},
      {u"林", Output::ShiftJis, "iso-2022-jp"},
      {u"営業部", Output::Euc, "shift_jis"},
      {u"了解", Output::Euc, "shift_jis"},
      {u"小林", Output::Euc, "shift_jis"},
      {u"承知", Output::ShiftJis, "euc-jp"},
      {u"林", Output::ShiftJis, "euc-jp"},
      {u"表", Output::Euc, ""},
      {u"高橋", Output::Euc, "utf-8"},
      {u"林", Output::ShiftJis, "utf-8"},
      {u"会議", Output::Euc, "iso-8859-1"},
      {u"山田", Output::Euc, "windows-1252"},
      {u"はい", Output::Euc, "iso-8859-1"},
      {u"会議", Output::ShiftJis, "iso-8859-1"},
      {u"了解です", Output::ShiftJis, "iso-8859-15"},
      {u"ｻｲﾄｳ ｺｳｲﾁ", Output::ShiftJis, "shift_jis"},
      {u"ﾃｽﾄｱ", Output::ShiftJis, "shift_jis"},
  };
  for (const Case& c : kCases) {
    const QString text = QString::fromUtf16(c.text);
    const QByteArray bytes = *MimeCodec::EncodeText(text, c.code);
    const Charset declared = Charset::FromLabel(c.label);
    EXPECT_EQ(DecodeAutomatically(bytes, declared).toStdString(), text.toStdString()) << c.label;
    const auto recognized = static_cast<CharsetChoice>(CodeNumber(RecognizeCharset(bytes)));
    EXPECT_EQ(DecodeWithChoice(bytes, declared, recognized), text) << c.label;
  }
}

// 山田 in EUC is ｻｳﾅﾄ in Shift_JIS, which are words of kana as well.
TEST(WrongLabels, EncodedWordsFollowATextWhoseLabelIsWrongToo) {
  const auto subject = [](const QByteArray& word, const char* label, Output body,
                          const char* bodyLabel) {
    const QString text = QStringLiteral("いつもお世話になっております。明日の会議の件です。\r\n");
    return IndexMessage(QByteArray("Subject: =?") + label + "?B?" + word.toBase64() +
                            "?=\r\nContent-Type: text/plain; charset=" + bodyLabel + "\r\n\r\n" +
                            *MimeCodec::EncodeText(text, body),
                        {}, {{QStringLiteral("text/plain")}})
        .subject;
  };
  const QString name = QStringLiteral("山田");
  const QByteArray euc = *MimeCodec::EncodeText(name, Output::Euc);
  EXPECT_EQ(subject(euc, "Shift_JIS", Output::Euc, "Shift_JIS"), name);
  EXPECT_EQ(subject(euc, "Shift_JIS", Output::Euc, "iso-2022-jp"), name);
  // The same bytes where the text's label is right.
  for (const Code& body : kCodes) {
    EXPECT_EQ(subject(euc, "Shift_JIS", body.output, body.label), QStringLiteral("ｻｳﾅﾄ"))
        << body.label;
  }
  // Programs that know of no other code label all of a message so.
  const QByteArray other = *MimeCodec::EncodeText(QStringLiteral("鈴木"), Output::Euc);
  EXPECT_EQ(subject(other, "iso-8859-1", Output::Euc, "iso-8859-1"), QStringLiteral("鈴木"));
  EXPECT_EQ(subject("A\xC7\xC3O", "iso-8859-1", Output::Euc, "iso-8859-1"), QStringLiteral("AÇÃO"));
  EXPECT_EQ(subject(*MimeCodec::EncodeText(QStringLiteral("邉"), Output::ShiftJis), "Shift_JIS",
                    Output::Euc, "euc-jp"),
            QStringLiteral("邉"))
      << "a right label bears the text beside it";
}

// What is written into a header as it is, is in the code of the text.
TEST(RawHeaders, NamesAreInTheCodeOfTheText) {
  const QString text = QStringLiteral("いつもお世話になっております。明日の会議の件です。\r\n");
  for (const char* name : {"渡邉", "齋藤", "澤田", "鄭", "劉", "崔", "澁谷", "ｻﾄｳ"}) {
    for (const auto& [output, label] : {std::pair{Output::ShiftJis, "Shift_JIS"},
                                        {Output::Euc, "euc-jp"},
                                        {Output::ShiftJis, ""}}) {
      const QByteArray declared = *label == 0 ? QByteArray() : QByteArray("; charset=") + label;
      const QByteArray rest = " <a@x>\r\nContent-Type: text/plain" + declared + "\r\n\r\n" +
                              *MimeCodec::EncodeText(text, output);
      const QString wanted = QString::fromUtf8(name);
      const auto from = [&](const QByteArray& bytes) {
        return IndexMessage("From: " + bytes + rest, {}, {{QStringLiteral("text/plain")}})
            .addressLines;
      };
      EXPECT_EQ(from(*MimeCodec::EncodeText(wanted, output)), QStringLiteral("FROM: a@x ") + wanted)
          << label;
      EXPECT_EQ(from(QStringLiteral("渡辺太郎").toUtf8()), QStringLiteral("FROM: a@x 渡辺太郎"));
    }
  }
}

}  // namespace
}  // namespace vorn
