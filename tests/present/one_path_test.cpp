// Messages whose parts are in different codes, read everywhere as they were written: in the window,
// in its reply, on the folder's page, and from a file.

#include <gtest/gtest.h>
#include <unicode/ucnv.h>

#include "mail/codec/charset/code_page_932.h"
#include "mail/codec/mime/flag_string.h"
#include "mail/codec/mime/message_code.h"
#include "mail/codec/mime/message_index.h"
#include "mail/codec/mime/mime_codec.h"
#include "mail/codec/mime/text_extraction.h"
#include "mail/mail_request_bag.h"
#include "mail/open_message.h"
#include "mail/store/mail_store.h"
#include "mail/store/message_bag.h"
#include "objects/object_types.h"
#include "objects/settings.h"
#include "present/message_list_page.h"
#include "storage/databases.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

using test::TestProfile;

constexpr int kMessages = 2000;
constexpr qsizetype kSurelyShown = 12;  // characters, of the bytes that a page shows of a text

enum class Code { Ascii, Jis, Euc, ShiftJis, Utf8, Gb18030, Koi8R };

struct CodeEntry {
  Code code;
  const char* label;
  QStringList sentences;
};

const QList<CodeEntry>& Codes() {
  const QStringList japanese{QStringLiteral("会議の資料をお送りします。ご確認をお願いいたします。"),
                             QStringLiteral("明日の打ち合わせは、午後三時からに変わりました。"),
                             QStringLiteral("よろしくお願いします。山田より")};
  static const QList<CodeEntry> codes{
      {Code::Ascii,
       "us-ascii",
       {QStringLiteral("To unsubscribe, send a mail to list-off."), QStringLiteral("-- ")}},
      {Code::Jis, "iso-2022-jp", japanese},
      {Code::Euc, "euc-jp", japanese},
      {Code::ShiftJis, "shift_jis", japanese},
      {Code::Utf8, "utf-8", japanese + QStringList{QStringLiteral("Grüße, привет 😀 ありがとう")}},
      {Code::Gb18030, "gb18030", {QStringLiteral("请查收附件中的会议资料。")}},
      {Code::Koi8R, "koi8-r", {QStringLiteral("Документы во вложении, проверьте.")}}};
  return codes;
}

QByteArray Encode(const QString& text, Code code) {
  switch (code) {
    case Code::Jis:
      return MimeCodec::EncodeText(text, MimeCodec::OutputCharset::Jis).value_or(QByteArray());
    case Code::Euc:
      return MimeCodec::EncodeText(text, MimeCodec::OutputCharset::Euc).value_or(QByteArray());
    case Code::ShiftJis:
      return MimeCodec::EncodeText(text, MimeCodec::OutputCharset::ShiftJis).value_or(QByteArray());
    case Code::Gb18030:
    case Code::Koi8R: {
      UErrorCode status = U_ZERO_ERROR;
      UConverter* converter = ucnv_open(code == Code::Koi8R ? "KOI8-R" : "gb18030", &status);
      QByteArray bytes(text.size() * 4 + 16, '\0');
      bytes.resize(ucnv_fromUChars(converter, bytes.data(), static_cast<int32_t>(bytes.size()),
                                   reinterpret_cast<const UChar*>(text.utf16()),
                                   static_cast<int32_t>(text.size()), &status));
      ucnv_close(converter);
      EXPECT_TRUE(U_SUCCESS(status));
      return bytes;
    }
    default:
      return text.toUtf8();
  }
}

struct Generated {
  QByteArray source;
  QString subject;
  QString text;
  bool isSubjectRaw = false;
  int earlierCode = 0;  // what earlier versions stored: that of the last text part
};

class Generator {
 public:
  Generated Next(int number) {
    Generated message;
    const int parts = Number(1, 3);
    const QByteArray headers =
        "From: a@example.jp\r\nTo: b@example.jp\r\n" + Subject(number, message);
    if (parts == 1) {
      message.source = headers + Part(message);
      return message;
    }
    message.source = headers + "Content-Type: multipart/mixed; boundary=b\r\n\r\n";
    for (int part = 0; part < parts; ++part) {
      message.source += "--b\r\n" + Part(message) + "\r\n";
      if (Number(0, 4) == 0) message.source += "--b\r\nContent-Type: image/png\r\n\r\n\x89PNG\r\n";
    }
    if (Number(0, 4) == 0) message.source += "--b\r\n" + NamedPart() + "\r\n";
    message.source += "--b--\r\n";
    return message;
  }

 private:
  int Number(int least, int most) { return chance_.bounded(least, most + 1); }
  const CodeEntry& AnyCode(int first = 0) {
    return Codes()[Number(first, static_cast<int>(Codes().size()) - 1)];
  }

  // Raw or, usually, encoded.
  QByteArray Subject(int number, Generated& message) {
    message.subject = QString::number(number);
    if (Number(0, 2) == 0) return "Subject: " + QByteArray::number(number) + "\r\n";
    message.subject += u' ' + Codes()[1].sentences[Number(0, 1)];
    const CodeEntry& code = Codes()[Number(1, 4)];
    const QByteArray bytes = Encode(message.subject, code.code);
    message.isSubjectRaw = Number(0, 1) == 0;
    if (message.isSubjectRaw) return "Subject: " + bytes + "\r\n";
    return QByteArray("Subject: =?") + code.label + "?B?" + bytes.toBase64() + "?=\r\n";
  }

  QByteArray Part(Generated& message) {
    const CodeEntry& code = AnyCode();
    QString text = code.sentences[Number(0, static_cast<int>(code.sentences.size()) - 1)];
    if (Number(0, 1) == 0) text += QStringLiteral("\r\n") + code.sentences[0];
    const QByteArray bytes = Encode(text, code.code);
    if (!message.text.isEmpty() && !message.text.endsWith(QStringLiteral("\r\n"))) {
      message.text += QStringLiteral("\r\n");
    }
    message.text += text;
    message.earlierCode = code.code == Code::Ascii || code.code == Code::Jis ? 0
                          : code.code == Code::Euc                           ? 1
                          : code.code == Code::ShiftJis                      ? 2
                                                                             : -1;
    return "Content-Type: text/plain" + Label(code) + "\r\n" + Body(bytes);
  }
  // Now and then wrong or none, where the bytes tell.
  QByteArray Label(const CodeEntry& code) {
    const bool tells =
        code.code == Code::Jis || code.code == Code::Utf8 || code.code == Code::Ascii;
    if (tells && Number(0, 4) == 0) return {};
    if (tells && Number(0, 6) == 0) return "; charset=us-ascii";
    if (code.code == Code::Utf8 && Number(0, 6) == 0) return "; charset=iso-2022-jp";
    return QByteArray("; charset=") + code.label;
  }
  QByteArray Body(const QByteArray& bytes) {
    if (Number(0, 2) == 0) {
      return "Content-Transfer-Encoding: base64\r\n\r\n" + bytes.toBase64();
    }
    return "Content-Transfer-Encoding: 8bit\r\n\r\n" + bytes;
  }
  QByteArray NamedPart() {
    const CodeEntry& code = AnyCode(1);
    return QByteArray("Content-Type: text/plain; charset=") + code.label + "; name=a.txt\r\n" +
           Body(Encode(code.sentences[0], code.code));
  }

  QRandomGenerator chance_{20261125};
};

class OnePathTest : public testing::Test {
 protected:
  Context& TheContext() { return profile_.Get(); }

  MessageModel Open(const SerialId& serial, OpenMode mode) {
    Disk request(serial);
    request.Let(QStringLiteral("db"), static_cast<int>(DatabaseKind::MailByPath));
    MailRequestBag(request).Become(mode, false);
    return OpenMessage(TheContext(), request).model;
  }
  void LetCode(const SerialId& serial, int code) {
    Disk request(serial);
    const QString text = code < 0 ? QStringLiteral("*") : QString::number(code);
    MessageBag::SetFlags(request, FlagString(QStringLiteral("0200")).With(kFlagCode, text));
    EXPECT_TRUE(MailStore(TheContext()).UpdateMessageState(kStateFlag, request, true));
  }

  struct PageRow {
    SerialId serial;
    QString subject, text;
  };
  // Every message of the inbox as a line of a folder's page: a link, its subject and its text.
  QByteArray AllOnOnePage() {
    const auto layout = std::make_shared<Disk>(fixed_serial::kLayout);
    layout->Let(fixed_serial::kInbox.Text() + QStringLiteral("_html"),
                QStringLiteral("<+MAIL>\n<+DIALOG>x<+DIALOG>|<+SUBJECT>|<+TEXT>"));
    TheContext().Objects.Remove(fixed_serial::kLayout);
    TheContext().Objects.Add(layout);
    Settings(TheContext()).Bag()->Let(QStringLiteral("MessagesEdit"), false);
    Settings(TheContext()).Bag()->Let(QStringLiteral("PageEscape"), false);
    const auto page =
        MessageListPages(TheContext()).CreateMessageListPage(fixed_serial::kInbox, 1).ValueOr({});
    return test::ReadFile(page.content);
  }

  TestProfile profile_;
};

TEST_F(OnePathTest, MixedCodesAreReadAsTheyWereWritten) {
  const DiskPtr settings = Settings(TheContext()).Bag();
  settings->Let(QStringLiteral("EditMode"), true);
  settings->Let(QStringLiteral("MemoIndent"), QStringLiteral("> "));
  settings->Let(QStringLiteral("ReplyLine"), QString());
  const QStringList types = Settings(TheContext()).TextTypes();
  Generator generator;
  int failures = 0;
  int numbered = 0;
  std::vector<PageRow> pages;
  for (int number = 0; number < kMessages && failures < 5; ++number) {
    const Generated message = generator.Next(number);
    const SerialId serial = profile_.Store(message.source);
    const MessageIndex index = IndexMessage(message.source, {}, {types});
    numbered += StoredCharset(index.flags) != CharsetChoice::Automatic ? 1 : 0;
    const auto agrees = [&](const char* place, const QString& text, const QString& expected) {
      if (text == expected) return;
      ++failures;
      ADD_FAILURE() << place << " of message " << number << ": " << text.toStdString()
                    << "\nexpected: " << expected.toStdString() << '\n'
                    << message.source.toStdString();
    };
    for (const int code : {99, message.earlierCode}) {
      if (code != 99) LetCode(serial, code);
      const MessageModel shown = Open(serial, OpenMode::Show);
      agrees("window", shown.text.Get(), message.text);
      // Nothing tells a raw subject from one in the code that was stored.
      if (code == 99 || !message.isSubjectRaw) agrees("subject", shown.subject, message.subject);
      QString quoted = message.text;
      agrees(
          "reply", Open(serial, OpenMode::Reply).text.Get(),
          QStringLiteral("> ") + quoted.replace(QStringLiteral("\r\n"), QStringLiteral("\r\n> ")));
      TextRequest preview;
      preview.charset = code == 99 ? StoredCharset(index.flags) : CharsetChoice(code);
      preview.textTypes = types;
      preview.maximum = 1000;
      agrees("preview", GetMessageText(message.source, index.content, preview).text, message.text);
    }
    agrees("list", index.subject, message.subject);
    // The page shows the beginning of the text.
    const QString line = message.text.section(QStringLiteral("\r\n"), 0, 0);
    pages.push_back({serial, message.subject, line.left(kSurelyShown)});
  }
  const QByteArray page = AllOnOnePage();
  for (size_t i = 0; i < pages.size() && !HasFailure(); ++i) {
    const QByteArray wanted =
        ToCodePage932(QStringLiteral("preview:%1\">x</A>|%2|%3")
                          .arg(pages[i].serial.Text(), pages[i].subject, pages[i].text));
    EXPECT_TRUE(page.contains(wanted)) << wanted.toStdString();
  }
  // Those in one code throughout keep its number.
  EXPECT_GT(numbered, kMessages / 20);
  EXPECT_LT(numbered, kMessages / 2);
}

TEST_F(OnePathTest, AChosenCodeIsForWhatDoesNotSayItsOwn) {
  const QString text = QStringLiteral("会議の資料をお送りします。");
  const QByteArray euc = Encode(text, Code::Euc);
  const auto read = [](const QByteArray& bytes, const char* label, CharsetChoice choice) {
    return DecodeWithChoice(bytes, Charset::FromLabel(label), choice);
  };
  // A label of a code that fits nearly everything says little, but a word proves nothing against
  // it.
  EXPECT_EQ(read(euc, "iso-8859-1", CharsetChoice::Automatic), text);
  const QByteArray word = Encode(text.first(1), Code::Euc);
  EXPECT_NE(read(word, "iso-8859-1", CharsetChoice::Automatic), text.first(1));
  EXPECT_EQ(read(word, "iso-8859-1", CharsetChoice::Euc), text.first(1));
  EXPECT_EQ(read(euc, "", CharsetChoice::Euc), text);
  EXPECT_EQ(read(euc, "euc-jp", CharsetChoice::Jis), text);
  EXPECT_EQ(read(text.toUtf8(), "iso-2022-jp", CharsetChoice::ShiftJis), text);
  const QString russian = QStringLiteral("привет");
  EXPECT_EQ(read(Encode(russian, Code::Koi8R), "koi8-r", CharsetChoice::ShiftJis), russian);
  // Half-width kana alone are recognised as another code, which a choice mends.
  const QByteArray kana("\xB1\xB2\xB3\xB4");
  EXPECT_EQ(read(kana, "", CharsetChoice::ShiftJis), QStringLiteral("ｱｲｳｴ"));
  LetCode(profile_.Store("From: a@x\r\nSubject: kana\r\n\r\n" + kana + "\r\n"), 2);
  EXPECT_TRUE(AllOnOnePage().contains("kana|" + kana));  // in the page's own code
  // Whoever picks a code sees what it gives.
  EXPECT_NE(DecodeWithChoice(text.toUtf8(), {}, {CharsetChoice::ShiftJis, true}), text);
  EXPECT_EQ(
      DecodeWithChoice(text.toUtf8(), Charset::FromLabel("utf-8"), {CharsetChoice::ShiftJis, true}),
      text);
  EXPECT_EQ(DecodeWithChoice(Encode(russian, Code::Koi8R), Charset::FromLabel("koi8-r"),
                             {CharsetChoice::Jis, true}),
            russian);
  // One byte is broken: the choice still counts.
  EXPECT_TRUE(read(euc + '\xFF', "", CharsetChoice::Euc).startsWith(text));
}

}  // namespace
}  // namespace vorn
