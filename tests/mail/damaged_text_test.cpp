// Text of which one byte was lost, changed or brought in on the way.

#include <gtest/gtest.h>

#include <string_view>

#include "mail/codec/charset/charset.h"
#include "mail/codec/charset/charset_recognition.h"
#include "mail/codec/mime/mime_codec.h"
#include "mail/codes.h"
#include "support/growth.h"

namespace vorn {
namespace {

using Family = Charset::Family;
const QStringList kTexts = {
    QStringLiteral("お世話になっております。田中です。"),
    QStringLiteral("ソフトウェアの更新についてお知らせします。"),
    QStringLiteral("Meeting: 本日の会議は15:00から第二会議室で行います。 Regards"),
    QStringLiteral("電話：０３−１２３４−５６７８"),
    QStringLiteral("東京都千代田区丸の内一丁目へ移転しました。"),
    QStringLiteral("ヴァイオリン協奏曲\r\n価格は￥１２，８００円（税込）です。\r\n"),
    QStringLiteral("「吾輩は猫である。名前はまだ無い。」"),
    QStringLiteral("添付資料をご確認のほど、よろしくお願い申し上げます。"),
};

CharsetChoice RecognizedChoice(const QByteArray& bytes) {
  return static_cast<CharsetChoice>(CodeNumber(RecognizeCharset(bytes)));
}

enum class Damage { Lost, Changed, Inserted, Escape, LineEnd };

QByteArray Damaged(QByteArray bytes, qsizetype at, Damage damage) {
  switch (damage) {
    case Damage::Lost:
      return bytes.remove(at, 1);
    case Damage::Changed:
      bytes[at] = static_cast<char>(bytes[at] ^ 0x15);
      return bytes;
    case Damage::Escape:
      bytes[at] = '\x1B';
      return bytes;
    case Damage::LineEnd:
      bytes[at] = '\n';
      return bytes;
    default:
      return bytes.insert(at, '\xC5');
  }
}

// How many characters of the text are neither before nor behind what is wrong.
qsizetype LostMarks(const QString& text, const QString& read) {
  qsizetype before = 0;
  while (before < qMin(text.size(), read.size()) && text[before] == read[before]) ++before;
  qsizetype behind = 0;
  while (behind < qMin(text.size(), read.size()) - before &&
         text[text.size() - 1 - behind] == read[read.size() - 1 - behind]) {
    ++behind;
  }
  return text.size() - before - behind;
}

class DamagedText : public testing::TestWithParam<const char*> {};

TEST_P(DamagedText, OneDamagedByteSpoilsAFewCharactersAlone) {
  for (const Code& code : kCodes) {
    const std::string_view label = GetParam();
    const Charset declared = Charset::FromLabel(label == "its own" ? code.label : label.data());
    int trials = 0;
    int tooMany = 0;
    int unreadable = 0;
    for (const QString& text : kTexts) {
      const QByteArray bytes = MimeCodec::EncodeText(text, code.output).value_or(QByteArray());
      ASSERT_FALSE(bytes.isEmpty()) << code.label;
      const QString whole = DecodeAutomatically(bytes, declared);
      for (qsizetype at = 0; at < bytes.size(); ++at) {
        for (const Damage damage :
             {Damage::Lost, Damage::Changed, Damage::Inserted, Damage::Escape, Damage::LineEnd}) {
          const QByteArray damaged = Damaged(bytes, at, damage);
          const QString read = DecodeAutomatically(damaged, declared);
          const qsizetype missing = LostMarks(whole, read);
          // As a window reads it, by the code that was recognised when the message was stored.
          const int number = CodeNumber(RecognizeCharset(damaged));
          const CharsetChoice stored =
              number < 0 ? CharsetChoice::Automatic : static_cast<CharsetChoice>(number);
          EXPECT_LE(LostMarks(whole, DecodeWithChoice(damaged, declared, stored)), missing + 3)
              << number << ' ' << DecodeWithChoice(damaged, declared, stored).toStdString();
          ++trials;
          tooMany += missing > 3 ? 1 : 0;
          unreadable += missing * 2 > whole.size() ? 1 : 0;
        }
      }
    }
    EXPECT_EQ(unreadable, 0) << code.label;
    // Where the text lies between rare characters nobody can tell which byte was too many.
    EXPECT_LE(tooMany * 500, trials) << code.label;
  }
}

INSTANTIATE_TEST_SUITE_P(Labels, DamagedText,
                         testing::Values("its own", "", "us-ascii", "iso-8859-1"));

TEST(DamagedCharacters, AreMarkedOnceAndTheRestIsRead) {
  const auto read = [](const char* label, const QByteArray& bytes) {
    return DecodeAutomatically(bytes, Charset::FromLabel(label));
  };
  EXPECT_EQ(read("utf-8", "\xE3\x83\xB4\xE3\x82\xE3\x82\xAA"), QStringLiteral("ヴ\uFFFDオ"));
  EXPECT_EQ(read("", "\xE3\x83\xB4\xE3\x82\xE3\x82\xAA"), QStringLiteral("ヴ\uFFFDオ"));
  // Every byte has a meaning here, but what it means is no text: 契約書の件 without its second.
  EXPECT_EQ(read("shift_jis", "\x8C\x96\xF1\x8F\x91\x82\xCC\x8C\x8F"),
            QStringLiteral("\uFFFD約書の件"));
  // A byte that forms a character of another code among escapes.
  EXPECT_EQ(read("",
                 "\x1B$BK\\\x83"
                 "F|$N\x1B(B"),
            QStringLiteral("本\uFFFD日の"));
  // Half-width kana of EUC are pairs of Shift_JIS.
  QByteArray kana = *MimeCodec::EncodeText(QStringLiteral("ｶﾌﾞｼｷｶﾞｲｼｬ 御中"), Output::Euc);
  kana.chop(1);
  EXPECT_EQ(read("euc-jp", kana), QStringLiteral("ｶﾌﾞｼｷｶﾞｲｼｬ 御\uFFFD"));
}

// Mailing lists put words of their own behind or before a text without looking at its code.
TEST(MixedText, WholeLinesInTwoCodesAreEachReadInTheirOwn) {
  const QString text = QStringLiteral("本文は JIS です。\r\n二行目です。\r\n--\r\n");
  const QString added = QStringLiteral("配信の停止はこちらからどうぞ。\r\n");
  for (const Code& first : kCodes) {
    for (const Code& last : kCodes) {
      const bool areProven = first.output == Output::Jis || first.output == Output::Utf8 ||
                             last.output == Output::Jis || last.output == Output::Utf8;
      if (!areProven || first.output == last.output) continue;
      const QByteArray bytes =
          *MimeCodec::EncodeText(text, first.output) + *MimeCodec::EncodeText(added, last.output);
      for (const char* label :
           {"", "us-ascii", "iso-2022-jp", "utf-8", "iso-8859-1", first.label}) {
        const Charset declared = Charset::FromLabel(label);
        const auto what = [&] {
          return std::string(first.label) + ' ' + last.label + " as " + label;
        };
        EXPECT_EQ(DecodeAutomatically(bytes, declared), text + added) << what();
        EXPECT_EQ(DecodeWithChoice(bytes, declared, RecognizedChoice(bytes)), text + added)
            << what();
        EXPECT_EQ(DecodeAutomatically(bytes.chopped(5), declared, true).left(text.size() + 10),
                  text + added.left(10))
            << what() << ", cut";
      }
    }
  }
}

// Those who put a banner into a page look at its code no more, nor break the line.
TEST(MixedText, PiecesOfALineInTwoCodesAreEachReadInTheirOwn) {
  const QString body =
      QStringLiteral("<p>いつもお世話になっております。見積書をお送りします。表と図です</p>");
  const QString banner = QStringLiteral("<div>【外部】社外からのメールです é</div>");
  const QString footer = QStringLiteral("<div>配信停止はこちら</div></html>");
  for (const Code& code : kCodes) {
    const QByteArray own = *MimeCodec::EncodeText(body, code.output);
    const QByteArray first = banner.toUtf8();
    const QByteArray last = footer.toUtf8();
    for (const char* label : {"", "iso-2022-jp", "utf-8", "iso-8859-1", code.label}) {
      const Charset declared = Charset::FromLabel(label);
      const auto check = [&](const QByteArray& bytes, const QString& text, bool atCut = false) {
        EXPECT_EQ(DecodeAutomatically(bytes, declared, atCut).toStdString(), text.toStdString())
            << code.label << " as " << label;
      };
      check(first + own, banner + body);
      check(own + last, body + footer);
      check(first + own + last, banner + body + footer);
      check((own + last).chopped(18), body + QStringLiteral("<div>配信停止はこ"), true);
    }
  }
  // Nothing but UTF-8, of which a byte was lost.
  EXPECT_EQ(DecodeAutomatically((banner + body + footer).toUtf8().replace("社", "\xE7\xA4"),
                                Charset::FromLabel("utf-8")),
            QString(banner + body + footer).replace(u'社', QChar::ReplacementCharacter));
}

TEST(DamagedCharacters, TakeNoLongerThanTheTextIsLong) {
  using Bytes = QByteArray (*)(int);
  constexpr Bytes kJis[] = {
      [](int n) { return "\x1B$B" + QByteArray(n, '\n') + "!!\x1B(B"; },
      [](int n) { return "\x1B$B" + QByteArray("$\"$$\n").repeated(n) + "!!\x1B(B"; },
      [](int n) { return QByteArray("\x1B$B\x1Bx").repeated(n) + "\x1B(B"; },
      [](int n) { return QByteArray("\x1B$B$\"\x0E").repeated(n); },
      [](int n) { return QByteArray(n, '\x0E') + '\x0F'; }};
  for (const Bytes bytes : kJis) {
    EXPECT_LT(test::GrowthOverEight(10000,
                                    [&](int n) {
                                      Decode({Family::Jis, {}}, bytes(n));
                                    }),
              test::kLinear)
        << bytes(2).toPercentEncoding().toStdString();
  }
  constexpr Bytes kMixed[] = {
      [](int n) { return QByteArray("\x1B$B$\"\x1B(B\xE3\x81\x82").repeated(n) + '\xFF'; },
      [](int n) { return QByteArray("\xE3\x81\x82 \xB2\xF1\xB5\xC4 ").repeated(n); },
      [](int n) { return QByteArray("\x1B$B\x1B(").repeated(n) + '\xE3'; }};
  for (const Bytes bytes : kMixed) {
    EXPECT_LT(
        test::GrowthOverEight(
            10000, [&](int n) { DecodeAutomatically(bytes(n), Charset::FromLabel("utf-8")); }),
        test::kLinear)
        << bytes(2).toPercentEncoding().toStdString();
  }
}

TEST(UnlabelledText, WesternWordsAndAFewJapaneseOnesAreWhatTheyAre) {
  struct Western {
    const char* bytes;
    const char16_t* text;
  };
  constexpr Western kWestern[] = {
      {"caf\xE9", u"café"},
      {"Se\xF1or Mu\xF1oz", u"Señor Muñoz"},
      {"S\xE3o Paulo, amanh\xE3", u"São Paulo, amanhã"},
      {"a\xE7\xF5\x65s", u"ações"},
      {"R\xE4ksm\xF6rg\xE5s", u"Räksmörgås"},
      {"Stra\xDF\x65, gr\xF6\xDF\x65r", u"Straße, größer"},
      {"o\xF9 \xEAtes-vous", u"où êtes-vous"},
      {"L\x92\xE9t\xE9", u"L’été"},
      {"\x93It\x92s\x94 5 \x80", u"“It’s” 5 €"},
      {"\xC5ngstr\xF6m", u"Ångström"},
      {"cr\xE9\xE9\x65", u"créée"},
      {"\xC8 possibile", u"È possibile"},
      {"OP\xC7\xC3O", u"OPÇÃO"},
      {"\xC4\xE4nekoski", u"Äänekoski"},
      {"7\xD7\x39", u"7×9"},
  };
  for (const Western& western : kWestern) {
    const QString text = QString::fromUtf16(western.text);
    for (const char* label : {"", "us-ascii", "iso-8859-1"}) {
      EXPECT_EQ(DecodeAutomatically(western.bytes, Charset::FromLabel(label)).toStdString(),
                text.toStdString())
          << label;
    }
    EXPECT_EQ(CodeNumber(RecognizeCharset(western.bytes)), -1) << text.toStdString();
  }
  // The code is looked for where the text begins that is not ASCII.
  const QByteArray late = QByteArray(100000, 'x') + " caf\xE9";
  EXPECT_EQ(RecognizeCharset(late).family, Family::Other);
  for (const Code& code : kCodes) {
    for (const char16_t* words : {u"会議室", u"田中様", u"サーバー", u"了解です", u"Re: 見積書"}) {
      const QString text = QString::fromUtf16(words);
      const QByteArray bytes = *MimeCodec::EncodeText(text, code.output);
      for (const char* label : {"", "us-ascii", "iso-8859-1"}) {
        EXPECT_EQ(DecodeAutomatically(bytes, Charset::FromLabel(label)), text)
            << code.label << ' ' << label;
      }
    }
  }
}

// Half-width kana alone have the bytes of ideographs in EUC, and names with old ideographs
// those of kana.
TEST(UnlabelledText, HalfWidthKanaAloneAreWordsOrElseEuc) {
  const auto family = [](const QString& text, MimeCodec::OutputCharset code) {
    return RecognizeCharset(*MimeCodec::EncodeText(text, code)).family;
  };
  for (const char16_t* words :
       {u"ｶﾌﾞｼｷｶﾞｲｼｬ", u"ﾔﾏﾀﾞﾀﾛｳﾔﾏﾀﾞ", u"ｼｽﾃﾑ ｴﾗｰ ﾉ ｵｼﾗｾ", u"ﾒﾝﾃﾅﾝｽ ﾚﾎﾟｰﾄ",
        u"ｺﾞﾆｭｳｷﾝ ｱﾘｶﾞﾄｳｺﾞｻﾞｲﾏｽ", u"ｱｲｳｴｵ", u"ﾆｭｳｷﾝ 1,000 ｴﾝ", u"ｵﾌﾘｺﾐ ｱﾘｶﾞﾄｳ ｺﾞｻﾞｲﾏｼﾀ"}) {
    EXPECT_EQ(family(QString::fromUtf16(words), MimeCodec::OutputCharset::ShiftJis),
              Charset::Family::ShiftJis)
        << QString::fromUtf16(words).toStdString();
  }
  for (const char16_t* name : {u"廣瀬龍崎", u"齋藤渡邊", u"瀧澤彌生", u"會議室", u"國分寺驛"}) {
    EXPECT_EQ(family(QString::fromUtf16(name), MimeCodec::OutputCharset::Euc), Charset::Family::Euc)
        << QString::fromUtf16(name).toStdString();
  }
}

}  // namespace
}  // namespace vorn
