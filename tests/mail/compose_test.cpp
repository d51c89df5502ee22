// What is composed, read by GMime and by the codec.

#include "mail/compose_message.h"

#include <gmime/gmime.h>
#include <gtest/gtest.h>

#include "mail/codec/mime/attachments.h"
#include "mail/codec/mime/message_index.h"
#include "mail/codec/mime/text_extraction.h"
#include "mail/reply_form.h"
#include "objects/settings.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

MessageModel Model() {
  MessageModel model;
  model.subject =
      QStringLiteral("会議の資料 12 を送ります、長い件名なので折り返されます, \"引用\" 🍣");
  model.text = QStringLiteral("本文です。\r\n.\r\n二行目");
  model.addresses = {ParseAddressEntry(QStringLiteral("FROM: f@x 山田, 太郎")),
                     ParseAddressEntry(QStringLiteral("TO: t@x Sato, Hanako"))};
  // One of them would be a line that servers refuse.
  model.references = QStringLiteral("<1@x> <%1> <\u0001@x> <é@x> <2@x>").arg(QString(3000, u'r'));
  model.inReplyTo = QStringLiteral("<2@x>");
  model.attachments.push_back({QStringLiteral("見積書（最終版）の長い名前のファイル.pdf"),
                               QStringLiteral("application/pdf"),
                               true,
                               {},
                               {}});
  return model;
}

ComposeOptions Options(CharsetChoice charset, MimeEncode mimeEncode = MimeEncode::Base64) {
  ComposeOptions options;
  options.charset = charset;
  options.settings = EditSettings::Defaults();
  options.settings.mimeEncode = mimeEncode;
  options.boundaryToken = QStringLiteral("token");
  options.read = [](const ModelAttachment&) { return QByteArray("%PDF\0\xFF", 6); };
  return options;
}

// Owns what GMime makes of a source.
class GMimeReading {
 public:
  explicit GMimeReading(const QByteArray& source) {
    g_mime_init();
    GMimeStream* stream =
        g_mime_stream_mem_new_with_buffer(source.constData(), static_cast<size_t>(source.size()));
    GMimeParser* parser = g_mime_parser_new_with_stream(stream);
    message_ = g_mime_parser_construct_message(parser, nullptr);
    g_object_unref(parser);
    g_object_unref(stream);
  }
  ~GMimeReading() { g_object_unref(message_); }

  QString Subject() const { return QString::fromUtf8(g_mime_message_get_subject(message_)); }
  QString FromName() const {
    InternetAddress* from = internet_address_list_get_address(g_mime_message_get_from(message_), 0);
    return QString::fromUtf8(internet_address_get_name(from));
  }
  QString Body() const {
    char* text = g_mime_text_part_get_text(GMIME_TEXT_PART(Part(0)));
    const QString body = QString::fromUtf8(text);
    g_free(text);
    return body;
  }
  QString FileName() const {
    auto* parts = GMIME_MULTIPART(g_mime_message_get_mime_part(message_));
    return QString::fromUtf8(
        g_mime_part_get_filename(GMIME_PART(Part(g_mime_multipart_get_count(parts) - 1))));
  }

 private:
  GMimeObject* Part(int index) const {
    return g_mime_multipart_get_part(GMIME_MULTIPART(g_mime_message_get_mime_part(message_)),
                                     index);
  }
  GMimeMessage* message_;
};

TEST(ComposeMessage, IsReadTheSameByGMime) {
  for (const CharsetChoice charset : {CharsetChoice::Jis, CharsetChoice::Euc,
                                      CharsetChoice::ShiftJis, CharsetChoice::Automatic}) {
    for (const bool emoji : {false, true}) {
      MessageModel model = Model();
      if (!emoji) model.subject.remove(QStringLiteral("🍣"));
      const GMimeReading reading(ComposeMessage(model, Options(charset)));
      EXPECT_EQ(QString(reading.Subject().trimmed()), QString(model.subject.trimmed()));
      EXPECT_EQ(reading.FromName(), QStringLiteral("山田, 太郎"));
      EXPECT_EQ(reading.FileName(), model.attachments[0].name);
      EXPECT_EQ(reading.Body().remove(u'\r').trimmed(),
                QString(model.text.Get()).remove(u'\r').trimmed());
    }
  }
}

TEST(ComposeMessage, WritesItsFieldsInOrder) {
  MessageModel model = Model();
  model.subject = QStringLiteral("s");
  model.addresses = {ParseAddressEntry(QStringLiteral("FROM: f@x")),
                     ParseAddressEntry(QStringLiteral("TO: t@x Sato, Hanako"))};
  model.addresses.append({QStringLiteral("RE"), QStringLiteral("r@x"), {}});
  model.headerRows = {QStringLiteral("X-Priority: 3"), QString(), QStringLiteral("no field")};
  const QByteArray source = ComposeMessage(model, Options(CharsetChoice::Jis));
  EXPECT_TRUE(source.startsWith(
      "Subject: s\r\nTo: \"Sato, Hanako\" <t@x>\r\nFrom: f@x\r\nReplay-To: r@x\r\nReply-To: r@x\r\n"
      "References: \r\n\t<1@x>\r\n\t<2@x>\r\nIn-Replay-To: <2@x>\r\nIn-Reply-To: <2@x>\r\n"
      "X-Priority: 3\r\nContent-Type: multipart/mixed;\r\n\tboundary=\"--CLIP_token\"\r\n"
      "Mime-Version: 1.0\r\n\r\n\r\n----CLIP_token\r\nContent-Type: text/plain;\r\n"
      "\tcharset=\"ISO-2022-JP\"\r\nContent-Transfer-Encoding: 7bit\r\n\r\n"))
      << source.toStdString();
  EXPECT_TRUE(source.endsWith("\r\n----CLIP_token--\r\n.\r\n"));
}

TEST(ComposeMessage, ServersTakeItWhateverIsAnswered) {
  MessageModel model = Model();
  model.references = QStringLiteral("<first@x>");
  for (int i = 0; i < 3000; ++i) model.references += QStringLiteral(" <%1@x>").arg(i);
  model.addresses = {{QStringLiteral("TO"), QStringLiteral("t@x"), QString(3000, u'n')}};
  const QByteArray source = ComposeMessage(model, Options(CharsetChoice::Automatic));
  for (const QByteArray& line : source.split('\n'))
    EXPECT_LE(line.size(), 999) << line.left(40).toStdString();
  EXPECT_TRUE(source.contains("<first@x>") && source.contains("<2999@x>"));
  EXPECT_LT(source.count("@x>"), 200);
  EXPECT_EQ(QString(GMimeReading(source).Subject().trimmed()), QString(model.subject.trimmed()));
}

// Each reader finds what it can read: a message as it is, a text's code, a name in either form.
// One code is chosen that has the letters of every part.
TEST(ComposeMessage, AFilesNameLosesNoLetterToTheTextsCode) {
  MessageModel model = Model();
  model.text = model.subject = QStringLiteral("会議");
  model.attachments[0].name = QStringLiteral("寿司🍣.pdf");
  const QByteArray source = ComposeMessage(model, Options(CharsetChoice::Jis));
  EXPECT_EQ(GMimeReading(source).FileName(), model.attachments[0].name);
  // Nor does a name among the addresses.
  model.attachments.clear();
  model.addresses = {{QStringLiteral("TO"), QStringLiteral("k@x"), QStringLiteral("김철수")}};
  EXPECT_EQ(ReadAddressLines(ComposeMessage(model, Options(CharsetChoice::Jis)), {}, true),
            CanonicalLine(model.addresses[0]));
}

TEST(ComposeMessage, FilesAreWrittenForEveryReader) {
  const QByteArray mail = "Subject: x\r\n\r\nbody\r\n";
  const auto composed = [](const QString& name, const QString& type, const QByteArray& data) {
    MessageModel model;
    model.attachments.push_back({name, type, true, {}, {}});
    ComposeOptions options = Options(CharsetChoice::Automatic);
    options.read = [&data](const ModelAttachment&) { return data; };
    return ComposeMessage(model, options);
  };
  const auto asMail = [&composed](const QByteArray& data) {
    return composed(QStringLiteral("a.eml"), QStringLiteral("message/rfc822"), data);
  };
  EXPECT_TRUE(asMail(mail).contains("Content-Type: message/rfc822;"));
  EXPECT_TRUE(asMail(mail).contains("Content-Transfer-Encoding: 7bit\r\n"));
  EXPECT_TRUE(asMail(mail).contains("\r\n\r\n" + mail + "\r\n--"));
  const QByteArray report = composed({}, QStringLiteral("message/delivery-status"), mail);
  EXPECT_TRUE(report.contains("Content-Type: message/delivery-status;"));
  EXPECT_TRUE(report.contains("\r\n\r\n" + mail + "\r\n--"));
  EXPECT_TRUE(asMail(mail + "\xE6\r\n").contains("Content-Transfer-Encoding: 8bit\r\n"));
  for (const QByteArray& odd :
       {QByteArray("a\0b\r\n", 5), QByteArray("a\nb\r\n"), QByteArray(999, 'x')}) {
    const QByteArray source = asMail(odd);
    EXPECT_TRUE(source.contains("Content-Type: application/octet-stream;"));
    EXPECT_TRUE(source.contains("Content-Transfer-Encoding: base64\r\n"));
  }
  const QByteArray text = composed(QStringLiteral("資料 1.txt"), QStringLiteral("text/plain"),
                                   QStringLiteral("会議の資料です。").toUtf8());
  EXPECT_TRUE(text.contains("Content-Type: text/plain; charset=\"UTF-8\";"));
  EXPECT_TRUE(text.contains("filename*=UTF-8''%E8%B3%87%E6%96%99%201.txt\r\n"));
  EXPECT_TRUE(text.contains("filename=\"=?"));
  EXPECT_TRUE(
      ComposeMessage({}, Options(CharsetChoice::Automatic)).contains("\r\nMime-Version: 1.0"));
  // A name that was received may be of any length.
  const QString name = QStringLiteral("非常に長い資料の名前").repeated(40) + QStringLiteral(".pdf");
  const QByteArray source = composed(name, QStringLiteral("application/pdf"), "x");
  for (const QByteArray& line : source.split('\n')) EXPECT_LE(line.size(), 999);
  EXPECT_TRUE(GMimeReading(source).FileName().endsWith(QStringLiteral(".pdf"))) << "cut short";
  const std::vector<Attachment> listed =
      ListAttachments(MimeCodec::ReadContent(source), DefaultTextTypes(), true);
  ASSERT_EQ(listed.size(), 1U);
  EXPECT_EQ(listed[0].name, name);
}

// RFC 5322 section 2.1.1: servers break longer lines, or refuse them.
TEST(ComposeMessage, NoLineIsLongerThanServersTake) {
  for (const QString& text :
       {QStringLiteral("a b ").repeated(2000), QStringLiteral("会議").repeated(2000)}) {
    for (const CharsetChoice charset : {CharsetChoice::Jis, CharsetChoice::Automatic}) {
      MessageModel model;
      model.text = text;
      const QByteArray source = ComposeMessage(model, Options(charset));
      for (const QByteArray& line : source.split('\n')) EXPECT_LE(line.size(), 999);
      const MessageIndex index = IndexMessage(source, {}, {DefaultTextTypes(), true});
      TextRequest request;
      request.textTypes = DefaultTextTypes();
      EXPECT_TRUE(GetMessageText(source, index.content, request).text.startsWith(text));
    }
  }
}

TEST(ComposeMessage, AReceiptTellsProgramsToo) {
  MessageModel model;
  model.text = QStringLiteral("読みました。");
  model.report = ReceiptReport{QStringLiteral("me@x"), QStringLiteral("<m@x>\r\nX: y")};
  const QByteArray source = ComposeMessage(model, Options(CharsetChoice::Automatic));
  const GMimeReading reading(source);
  EXPECT_EQ(reading.Body().trimmed(), QStringLiteral("読みました。"));
  EXPECT_TRUE(source.contains("multipart/report;\r\n\treport-type=disposition-notification;"));
  EXPECT_TRUE(
      source.contains("Content-Type: message/disposition-notification\r\n\r\n"
                      "Final-Recipient: rfc822;me@x\r\nOriginal-Message-ID: <m@x> X: y\r\n"
                      "Disposition: manual-action/MDN-sent-manually; displayed\r\n"));
  ComposeOptions documented = Options(CharsetChoice::Automatic);
  documented.settings.standards = MailStandards::All(false);
  EXPECT_FALSE(ComposeMessage(model, documented).contains("multipart"));
}

// Not to where a separator inside a name would lead.
TEST(TypedAddresses, GiveWhatWasMeant) {
  const auto read = [](const char16_t* typed) {
    QStringList entries;
    for (const AddressEntry& entry : ReadTypedAddresses(QString::fromUtf16(typed))) {
      entries.append(entry.displayName + u'|' + entry.address);
    }
    return entries.join(u' ');
  };
  EXPECT_EQ(read(u"\"Yamada, Taro\" <t@x>"), QStringLiteral("Yamada, Taro|t@x"));
  EXPECT_EQ(read(u"Sato @ ABC, Inc. <s@x>"), QStringLiteral("Sato @ ABC, Inc.|s@x"));
  EXPECT_EQ(read(u"a@x; B <b@x>, c@x\nd@x"), QStringLiteral("|a@x B|b@x |c@x |d@x"));
  EXPECT_EQ(read(u"a@x, suzuki"), QStringLiteral("|a@x, suzuki"));
  EXPECT_EQ(read(u"山田　太郎 <y@x>、鈴木 <s@x>；c@x"),
            QStringLiteral("山田　太郎|y@x 鈴木|s@x |c@x"));
  EXPECT_EQ(read(u" 　a@x\t "), QStringLiteral("|a@x"));
  EXPECT_EQ(ParseAddressList(QStringLiteral("From: 山田　太郎 <y@x>")),
            QStringLiteral("FROM: y@x 山田　太郎"));
  EXPECT_EQ(read(u"ａｏｋｉ＠ｘ．ｊｐ，佐藤＜s@x＞"), QStringLiteral("|aoki@x.jp 佐藤|s@x"));
  EXPECT_EQ(read(u"s1@x (佐藤, 課長), （鈴木）k1@x"), QStringLiteral("佐藤, 課長|s1@x 鈴木|k1@x"));
  EXPECT_EQ(read(u"ｓ１@x.jp; s2@x\u200B.jp"), QStringLiteral("|s1@x.jp |s2@x.jp"));
  EXPECT_EQ(read(u"a@x b@x\tc@x, d@x"), QStringLiteral("|a@x |b@x |c@x |d@x"));
  EXPECT_EQ(read(u"山田、太郎 <y@x>"), QStringLiteral("山田、太郎|y@x"));
  EXPECT_EQ(read(u"\"a <b@c>, d\" <e@x>"), QStringLiteral("a <b@c>, d|e@x"));
  // Nobody is lost in the name of the last one: these are no addresses.
  for (const char16_t* lost :
       {u"\"Yamada, Taro\" <t@x>, Sato @ ABC, Inc. <s@x>", u"Taro <t@x>, Sato @ ABC, Inc. <s@x>",
        u"Foo <a@x> <b@x>", u"Aoki <ao@q>; Baba @ Q, Inc. <ba@q>", u"a@x, Sato @ ABC, Inc. <s@x>",
        u"\"Taro <t@x>"}) {
    const QList<AddressEntry> entries = ReadTypedAddresses(QString::fromUtf16(lost));
    ASSERT_EQ(entries.size(), 1);
    EXPECT_FALSE(IsMailAddress(entries[0].address)) << QString::fromUtf16(lost).toStdString();
  }
  EXPECT_EQ(read(u" , "), QString());
  for (const char16_t* wrong :
       {u"a@x, suzuki", u"suzuki", u"a b@x", u"@x", u"a@", u"a@b@c", u"a@x.", u"a@b..c",
        u"(不明なメールアドレス)", u"Team:", u"c@d;", u"b\u202Ea@x", u"\u200Ba@x"}) {
    EXPECT_FALSE(IsMailAddress(QString::fromUtf16(wrong)))
        << QString::fromUtf16(wrong).toStdString();
  }
  for (const char16_t* right : {u"a@x", u"a.b+c@x.jp", u"山田@例え.jp", u"\"a b\"@x",
                                u"a..b.@docomo.ne.jp", u"a@[192.0.2.1]"}) {
    EXPECT_TRUE(IsMailAddress(QString::fromUtf16(right)))
        << QString::fromUtf16(right).toStdString();
  }
  for (const int length : {254, 255}) {
    const QString longest = QString(length - 5, u'a') + QStringLiteral("@x.jp");
    EXPECT_EQ(IsMailAddress(longest), length == 254);
  }
}

TEST(ComposeMessage, ADomainIsWrittenAsServersTakeIt) {
  MessageModel model;
  model.addresses.append({QStringLiteral("TO"), QStringLiteral("s1@例え.jp"), {}});
  const QByteArray source = ComposeMessage(model, Options(CharsetChoice::Automatic));
  EXPECT_TRUE(source.contains("To: s1@xn--r8jz45g.jp\r\n")) << source.toStdString();
}

// Typed, sent and shown a name is the same, with whatever marks of addresses it holds.
TEST(TypedAddresses, ANameComesThroughAllItsForms) {
  for (const char16_t* name :
       {u"山田 太郎", u"Yamada, Taro", u"O\"Neil; Ltd.", u"a\\b", u"Taro <x@y>", u"t@x (Taro)",
        u"山田、太郎", u"\u05D0\u05D1\u05D2 Ltd, Inc."}) {
    const AddressEntry entry{QStringLiteral("TO"), QStringLiteral("t@x"), QString::fromUtf16(name)};
    const QString typed = TypedForm(entry);
    const QList<AddressEntry> read = ReadTypedAddresses(typed);
    ASSERT_EQ(read.size(), 1) << typed.toStdString();
    EXPECT_EQ(CanonicalLine({entry.kind, read[0].address, read[0].displayName}),
              CanonicalLine(entry));
    MessageModel model;
    model.addresses = {entry};
    const QByteArray source = ComposeMessage(model, Options(CharsetChoice::Automatic));
    EXPECT_EQ(ReadAddressLines(source, {}, true), CanonicalLine(entry)) << source.toStdString();
    EXPECT_EQ(PresentableAddress(entry), entry.displayName + QStringLiteral(" <t@x>"));
    const QString head = ForwardHead({}, {entry}, {});
    if (!entry.displayName.contains(u'@')) {
      EXPECT_TRUE(head.contains(PresentableAddress(entry)));
    } else if (!entry.displayName.contains(entry.address)) {
      EXPECT_FALSE(head.contains(entry.displayName)) << "of a forged sender";
    }
  }
  EXPECT_EQ(PresentableAddress({}, QStringLiteral("t@x")), QStringLiteral("t@x"));
}

TEST(ComposeMessage, NothingTypedCanForgeAHeader) {
  MessageModel model;
  model.subject = QStringLiteral("a\r\nBcc: x@y\r\n\r\nbody");
  model.headerRows = {QStringLiteral("X-A: b\r\nBcc: x@y")};
  model.inReplyTo = QStringLiteral("<1@x>\r\nBcc: x@y");
  model.addresses.append({QStringLiteral("TO"), QStringLiteral("t@x\r\nBcc: x@y"), {}});
  const QByteArray source = ComposeMessage(model, Options(CharsetChoice::Automatic));
  EXPECT_FALSE(source.contains("\nBcc:"));
}

}  // namespace
}  // namespace vorn
