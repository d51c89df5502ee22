// A stored message as each open mode begins with it.

#include <gtest/gtest.h>

#include "mail/attachment_files.h"
#include "mail/codec/mime/message_code.h"
#include "mail/codec/mime/message_index.h"
#include "mail/compose_message.h"
#include "mail/mail_request_bag.h"
#include "mail/message_model.h"
#include "mail/open_message.h"
#include "mail/store/message_bag.h"
#include "mail/store/message_filing.h"
#include "objects/object_types.h"
#include "objects/settings.h"
#include "support/test_profile.h"
#include "support/time_zone.h"

namespace vorn {
namespace {

using test::TestProfile;

class OpenModes : public testing::Test {
 protected:
  OpenModes() {
    settings_ = EditSettings::Defaults();
    settings_.subjectReplay = QStringLiteral("RE");
    settings_.subjectForward = QStringLiteral("FW");
    LetUsual(false);
  }
  // What new profiles start with, and what an absent key gives.
  void LetUsual(bool usual) {
    settings_.standards = MailStandards::All(usual);
    settings_.usualReplies = usual;
  }
  MessageModel Open(OpenMode mode, const QByteArray& headers,
                    const QByteArray& body = "one\r\ntwo") {
    StoredMessage message;
    message.source = headers + "\r\n" + body;
    const MessageIndex index = IndexMessage(message.source, {}, {settings_.textTypes});
    message.contentIndex = index.content;
    message.addressLines = index.addressLines;
    message.timestamp = QStringLiteral("2026-11-24 09:00:00");
    message.isWritten = isWritten_;
    return OpenSource(message, mode, isNew_, settings_, sender_, QStringLiteral(".VORN <x>"));
  }
  QString Subject(OpenMode mode, const QByteArray& headers) { return Open(mode, headers).subject; }
  static QString Kinds(const MessageModel& model) {
    QStringList kinds;
    for (const AddressEntry& entry : model.addresses) {
      kinds.append(entry.kind + u'=' + entry.address);
    }
    return kinds.join(u' ');
  }

  EditSettings settings_;
  Sender sender_;
  bool isNew_ = false;
  bool isWritten_ = false;
};

TEST_F(OpenModes, SubjectsOfRepliesAndForwards) {
  using enum OpenMode;
  EXPECT_EQ(Subject(Reply, "Subject: RE: hello\r\n"), QStringLiteral("RE: hello"));
  EXPECT_EQ(Subject(ReplyAll, "Subject: Re: hello\r\n"), QStringLiteral("RE: hello"));
  EXPECT_EQ(Subject(Reply, "Subject: Re[2]: hello\r\n"), QStringLiteral("RE: hello"));
  EXPECT_EQ(Subject(Reply, "Subject: a: b\r\n"), QStringLiteral("RE: a: b"));
  EXPECT_EQ(Subject(Reply, "Subject: =?utf-8?Q?gnp=E2=80=AE.exe?=\r\n"),
            QStringLiteral("RE: gnp.exe"));
  EXPECT_EQ(Subject(Reply,
                    "Subject: Re: hello\r\nReferences: <1@x>\r\n <2@x>\r\n"
                    "Message-ID: <3@x>\r\n"),
            QStringLiteral("RE[3]: hello"));
  EXPECT_EQ(Subject(Forward, "Subject: FW: x\r\n"), QStringLiteral("FW: x"));
  EXPECT_EQ(Subject(Forward, "Subject: x\r\nReferences: <1@x> <2@x>\r\n"),
            QStringLiteral("FW[1]: x"));
  EXPECT_EQ(Subject(ForwardKeepFrom, "Subject: Fwd: x\r\n"), QStringLiteral("FW: x"));
  EXPECT_EQ(Subject(Receipt, "Subject: x\r\n"), QStringLiteral("開封通知： x"));
  EXPECT_EQ(Subject(Resend, "Subject: Re: x\r\n"), QStringLiteral("Re: x"));
  settings_.editMode = false;
  EXPECT_EQ(Subject(Reply, "Subject: hello\r\n"), QStringLiteral("hello"));
}

// The stored line is taken apart at its first blank, which makes "Mail" of the sender of bounces.
TEST_F(OpenModes, ASenderWithoutAnAddressIsShownAsWhatItIs) {
  struct Case {
    const char* from;
    const char16_t* address;
    const char16_t* name;
  };
  const Case cases[] = {
      {"Mail Delivery Subsystem <MAILER-DAEMON>", u"MAILER-DAEMON", u"Mail Delivery Subsystem"},
      {"MAILER-DAEMON (Mail Delivery System)", u"MAILER-DAEMON", u"Mail Delivery System"},
      {"Mail Delivery Subsystem", u"Mail Delivery Subsystem", u""},
      {"<>", u"<>", u""},
      {"A B <a@x>", u"a@x", u"A B"},
  };
  for (const Case& c : cases) {
    LetUsual(true);
    const QByteArray from = QByteArray("From: ") + c.from + "\r\n";
    const AddressEntry entry = Open(OpenMode::Show, from).addresses.value(0);
    EXPECT_EQ(entry.address, QString::fromUtf16(c.address));
    EXPECT_EQ(entry.displayName, QString::fromUtf16(c.name));
    EXPECT_EQ(CanonicalLine(entry).section(u' ', 1),
              (QString::fromUtf16(c.address) + u' ' + QString::fromUtf16(c.name)).trimmed());
  }
  LetUsual(false);
  EXPECT_EQ(Kinds(Open(OpenMode::Show, QByteArray("From: ") + cases[0].from + "\r\n")),
            QStringLiteral("FROM=Mail"));
}

TEST_F(OpenModes, AddressesFollowTheTable) {
  using enum OpenMode;
  const QByteArray headers =
      "From: f@x\r\nTo: t@x\r\nCc: c@x\r\nBcc: b@x\r\n"
      "Disposition-Notification-To: n@x\r\n";
  EXPECT_EQ(Kinds(Open(Show, headers)), QStringLiteral("FROM=f@x TO=t@x CC=c@x BC=b@x NO=n@x"));
  EXPECT_EQ(Kinds(Open(Reply, headers)), QStringLiteral("TO=f@x"));
  EXPECT_EQ(Kinds(Open(ReplyAll, headers)), QStringLiteral("TO=f@x CC=c@x"));
  EXPECT_EQ(Kinds(Open(Forward, headers)), QString());
  EXPECT_EQ(Kinds(Open(Receipt, headers)), QStringLiteral("TO=f@x FROM=t@x"));
  EXPECT_EQ(Kinds(Open(ForwardKeepFrom, headers)),
            QStringLiteral("FROM=f@x TO=t@x CC=c@x CC=b@x NO=n@x"));
  EXPECT_EQ(Kinds(Open(Reply, headers + "Replay-To: r@x\r\n")), QStringLiteral("TO=r@x"));
  sender_ = {QStringLiteral("me@x"), QStringLiteral("Me"), {}, {}};
  EXPECT_EQ(Kinds(Open(Reply, headers)), QStringLiteral("TO=f@x FROM=me@x"));
  EXPECT_EQ(Kinds(Open(Resend, headers)), QStringLiteral("FROM=f@x TO=t@x CC=c@x BC=b@x NO=n@x"));
}

TEST_F(OpenModes, TextsAreQuotedReferencesCarriedAndFilesKept) {
  using enum OpenMode;
  const QByteArray headers = "Message-ID: <m@x>\r\nSubject: s\r\nX-Priority: 1\r\nX-Other: o\r\n";
  const MessageModel reply = Open(Reply, headers);
  EXPECT_EQ(reply.text.Get(), QStringLiteral("one\r\n> two"));
  EXPECT_EQ(reply.references, QStringLiteral("<m@x>"));
  EXPECT_EQ(reply.inReplyTo, QStringLiteral("<m@x>"));
  EXPECT_EQ(Open(Show, headers).text.Get(), QStringLiteral("one\r\ntwo"));
  EXPECT_EQ(Open(Show, headers).references, QString());
  EXPECT_EQ(
      Open(Receipt, headers).text.Get(),
      QStringLiteral("下記内容のメールを受信したことをお知らせいたします。\r\n\r\n件名： s\r\n"
                     "日時： 2026/11/24 9:00:00"));
  EXPECT_EQ(Open(Show, headers).headerRows.join(u'|'), QStringLiteral("X-Priority: 1|X-Other: o"));
  isNew_ = true;
  EXPECT_EQ(Open(Reply, headers).headerRows.join(u'|'),
            QStringLiteral("X-Mailer: .VORN <x>|X-Priority: 3"));

  // The HTML half of a text is no file; HTML alone is.
  const QByteArray both =
      "Content-Type: multipart/alternative; boundary=b\r\n\r\n--b\r\n\r\nt\r\n--b\r\n"
      "Content-Type: text/html\r\n\r\n<p>t\r\n--b--\r\n";
  EXPECT_TRUE(Open(Forward, both).attachments.empty());
  EXPECT_EQ(Open(Forward, "Content-Type: text/html\r\n").attachments.size(), 1U);
  QByteArray beside = both;
  beside.replace("alternative", "mixed");
  EXPECT_EQ(Open(Forward, beside).attachments.size(), 1U) << "something else than the text";
  // What it shows goes on in it, and so it goes on itself.
  QByteArray pictured = both;
  QByteArray parts = "<img src='cid:c'><img src='cid:d'>";
  for (const char* id : {"<c>", "<d>"}) {
    parts +=
        "\r\n--b\r\nContent-Type: image/png\r\nContent-Transfer-Encoding: base64\r\nContent-ID: " +
        QByteArray(id) + "\r\n\r\n" +
        QByteArray("\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\0\1\0\0\0\1", 24).toBase64();
  }
  pictured.replace("<p>t", parts);
  settings_.standards = MailStandards::All(true);
  const auto files = Open(Forward, pictured).attachments;
  ASSERT_EQ(files.size(), 1U);
  EXPECT_EQ(files[0].name, QStringLiteral("元のメール.html"));
  EXPECT_TRUE(ReadAttachment(files[0], {})->contains("<img src='data:image/png;base64,"));
  EXPECT_TRUE(Open(Forward, both).attachments.empty());
  settings_.standards = MailStandards::All(false);
  EXPECT_EQ(Open(Forward, pictured).attachments.at(0).type, QStringLiteral("image/png"));

  const QByteArray file = "Content-Type: application/pdf\r\n";
  EXPECT_EQ(Open(Forward, file).attachments.at(0).name, QStringLiteral("添付ファイル[1].dat"));
  settings_.standards = MailStandards::All(true);
  EXPECT_EQ(Open(Forward, file).attachments.at(0).name, QStringLiteral("添付ファイル[1].pdf"));
  for (const auto& [type, name] :
       {std::pair("message/delivery-status", u"配送状況.txt"),
        std::pair("message/global-delivery-status", u"配送状況.txt"),
        std::pair("text/rfc822-headers", u"元のヘッダー.txt"),
        std::pair("message/global-headers", u"元のヘッダー.txt"),
        std::pair("message/global", u"件名.eml"), std::pair("message/rfc822", u"件名.eml")}) {
    const QByteArray part = QByteArray("Content-Type: ") + type + "\r\n\r\nSubject: 件名\r\n\r\nx";
    EXPECT_EQ(Open(Forward, part).attachments.at(0).name, QString::fromUtf16(name)) << type;
  }
  settings_.standards = MailStandards::All(false);
  EXPECT_EQ(Open(Resend, file).attachments.size(), 1U);
  EXPECT_TRUE(Open(Reply, file).attachments.empty());
}

TEST_F(OpenModes, RepliesAsPeopleAreUsedToThem) {
  using enum OpenMode;
  LetUsual(true);
  sender_ = {QStringLiteral("me@x"), {}, {QStringLiteral("me@x"), QStringLiteral("Also@Me.x")}, {}};
  const QByteArray headers =
      "From: Boss <Boss@X.jp>\r\nTo: me@x, other@x, OTHER@x\r\n"
      "Cc: team: a@x, boss@x.jp;, also@me.x\r\nBcc: b@x\r\n";
  EXPECT_EQ(Kinds(Open(ReplyAll, headers)),
            QStringLiteral("TO=Boss@X.jp TO=other@x CC=a@x FROM=me@x"));
  EXPECT_EQ(Kinds(Open(Reply, headers + "Reply-To: Desk@X.jp\r\n")),
            QStringLiteral("TO=Boss@X.jp FROM=me@x"));
  EXPECT_EQ(Kinds(Open(Reply, headers + "Replay-To: Desk@X.jp\r\n")),
            QStringLiteral("TO=Desk@X.jp FROM=me@x"));
  // Nobody answers a name that is another one's address.
  const QByteArray forged = "From: \"boss@x.jp\" <f@y>\r\nReplay-To: \"boss@x.jp\" <g@y>\r\n";
  EXPECT_EQ(Open(Reply, forged).addresses.value(0).displayName, QString());
  EXPECT_EQ(Open(Show, forged).addresses.value(0).displayName, QStringLiteral("boss@x.jp"));
  const QByteArray asks =
      "From: f@x\r\nTo: other@x\r\nCc: also@me.x\r\nReplay-To: r@x\r\n"
      "Disposition-Notification-To: N@X\r\nMessage-ID: <m@x>\r\n";
  const MessageModel receipt = Open(Receipt, asks);
  EXPECT_EQ(Kinds(receipt), QStringLiteral("FROM=also@me.x TO=N@X"));
  ASSERT_TRUE(receipt.report);
  EXPECT_EQ(receipt.report->recipient, QStringLiteral("also@me.x"));
  EXPECT_EQ(receipt.report->messageId, QStringLiteral("<m@x>"));

  EXPECT_EQ(Open(Reply, headers).text.Get(), QStringLiteral("> one\r\n> two"));
  EXPECT_EQ(Open(Show, headers).text.Get(), QStringLiteral("one\r\ntwo"));
  EXPECT_EQ(Subject(Reply, "Subject: Report: Q3\r\n"), QStringLiteral("RE: Report: Q3"));
  EXPECT_EQ(Subject(Reply, "Subject: Re[3]: RE: re^2: x\r\n"), QStringLiteral("RE: x"));
  EXPECT_EQ(Subject(Reply, "Subject: Fw: x\r\n"), QStringLiteral("RE: Fw: x"));
  EXPECT_EQ(Subject(Forward, "Subject: Fwd: FW: x\r\n"), QStringLiteral("FW: x"));
  EXPECT_EQ(Subject(Forward, "Subject: Fwiw: x\r\n"), QStringLiteral("FW: Fwiw: x"));
}

// Sent as they are, these went to "(不明なメールアドレス)" and to "Team:".
TEST_F(OpenModes, NoNameOfAGroupBecomesARecipient) {
  using enum OpenMode;
  const QByteArray from = "From: f@x\r\n";
  for (const bool usual : {false, true}) {
    LetUsual(usual);
    EXPECT_EQ(Kinds(Open(ReplyAll, from + "Cc:\r\n")), QStringLiteral("TO=f@x"));
    EXPECT_EQ(Kinds(Open(ReplyAll, from + "Cc: Team: a@b, C <c@d>;, e@f, Empty:;\r\n")),
              QStringLiteral("TO=f@x CC=a@b CC=c@d CC=e@f"));
    EXPECT_EQ(Kinds(Open(ReplyAll, from + "To: undisclosed-recipients:;\r\nCc: x@y, ,\r\n")),
              QStringLiteral("TO=f@x CC=x@y"));
  }
  // A blank, and a colon and a semicolon inside names, make no group.
  EXPECT_EQ(Kinds(Open(Show, "To: \"a: b;\" <x@y>; z@y\r\n")), QStringLiteral("TO=x@y TO=z@y"));
  EXPECT_EQ(Kinds(Open(Show, "To: a@[IPv6:2001:db8::1], b@x\r\n")),
            QStringLiteral("TO=a@[IPv6:2001:db8::1] TO=b@x"));
  // Lists as other programs write them, and a group whose end is missing.
  EXPECT_EQ(Kinds(Open(Show, "To: Kato <k@x>; Sato <s@x>;\r\n")), QStringLiteral("TO=k@x TO=s@x"));
  EXPECT_EQ(Kinds(Open(Show, "To: Team: b@x, c@x\r\n")), QStringLiteral("TO=b@x TO=c@x"));
  EXPECT_EQ(Kinds(Open(Show, "To: Sato; Taro <s@x>\r\n")), QStringLiteral("TO=s@x"));
  // An empty reply address is none.
  for (const bool usual : {false, true}) {
    LetUsual(usual);
    for (const char* field : {"Reply-To:\r\n", "Replay-To:\r\n", "Reply-To: undisclosed:;\r\n"}) {
      EXPECT_EQ(Kinds(Open(Reply, from + field)), QStringLiteral("TO=f@x")) << field;
    }
  }
}

// Saved and opened again, ten times, a draft stays what it is.
TEST_F(OpenModes, ADraftKeepsItsThreadAndItsText) {
  using enum OpenMode;
  LetUsual(true);
  isWritten_ = true;
  const QString text = QStringLiteral("一行目\r\n\r\nthree\r\n");
  for (const bool hasFile : {false, true}) {
    for (const int encode : {-1, 0, 1}) {
      MessageModel model;
      model.text = text;
      model.inReplyTo = QStringLiteral("<m@x>");
      model.references = QStringLiteral("<l@x> <m@x>");
      if (hasFile)
        model.attachments.push_back({QStringLiteral("a"), QStringLiteral("a/b"), true, {}, {}});
      ComposeOptions options;
      options.settings = settings_;
      options.settings.mimeText = encode >= 0;
      options.settings.mimeEncode = static_cast<MimeEncode>(qMax(encode, 0));
      options.boundaryToken = QStringLiteral("b");
      for (int round = 0; round < 10; ++round) {
        StoredMessage message;
        message.source = ComposeMessage(model, options);
        message.contentIndex =
            IndexMessage(message.source, {}, {settings_.textTypes, true}).content;
        message.isWritten = true;
        model = OpenSource(message, Show, false, settings_, {}, {});
      }
      EXPECT_EQ(model.text.Get(), text) << hasFile << encode;
      EXPECT_EQ(model.inReplyTo, QStringLiteral("<m@x>"));
      EXPECT_EQ(model.references, QStringLiteral("<l@x> <m@x>"));
    }
  }
  EXPECT_EQ(Open(Resend, "Message-ID: <m@x>\r\n").inReplyTo, QString());
  // A receipt as well: its report is no file.
  MessageModel receipt;
  receipt.text = text;
  receipt.report = ReceiptReport{QStringLiteral("me@x"), QStringLiteral("<m@x>")};
  ComposeOptions options;
  options.settings = settings_;
  options.boundaryToken = QStringLiteral("b");
  const QByteArray first = ComposeMessage(receipt, options);
  StoredMessage message;
  message.source = first;
  message.contentIndex = IndexMessage(first, {}, {settings_.textTypes, true}).content;
  message.isWritten = true;
  for (const OpenMode mode : {Show, Resend}) {
    receipt = OpenSource(message, mode, false, settings_, {}, {});
    EXPECT_TRUE(receipt.attachments.empty());
    EXPECT_TRUE(ComposeMessage(receipt, options).endsWith(first.mid(first.indexOf("\r\n\r\n"))));
  }
}

TEST_F(OpenModes, ADraftKeepsTheCodeThatWasChosen) {
  const auto choice = [this](const QByteArray& label) {
    const QByteArray source = "Content-Type: text/plain; charset=" + label + "\r\n\r\nascii\r\n";
    return WrittenCharset(source, IndexMessage(source, {}, {settings_.textTypes}).content,
                          CharsetChoice::Automatic);
  };
  EXPECT_EQ(choice("Shift_JIS"), CharsetChoice::ShiftJis);
  EXPECT_EQ(choice("EUC-JP"), CharsetChoice::Euc);
  EXPECT_EQ(choice("UTF-8"), CharsetChoice::Utf8);
  EXPECT_EQ(choice("ISO-2022-JP"), CharsetChoice::Automatic) << "what is written without a choice";
}

TEST_F(OpenModes, AReplyBecomesANewMessageOfItsOwn) {
  TestProfile profile;
  Settings(profile.Get()).Bag()->Let(QStringLiteral("ReplyLine"), QString());
  const SerialId serialId =
      profile.Store("From: f@x\r\nDisposition-Notification-To: f@x\r\nSubject: s\r\n\r\nbody\r\n");
  Disk show(serialId);
  EXPECT_TRUE(OpenMessage(profile.Get(), show).found);
  EXPECT_TRUE(show.Flag(u"notice"));
  Disk again(serialId);
  OpenMessage(profile.Get(), again);
  EXPECT_FALSE(again.Flag(u"notice"));
  EXPECT_EQ(again.Serial(), serialId);
  ASSERT_TRUE(SetMark(profile.Get(), {serialId}, kFlagAnswered, true));
  ASSERT_TRUE(ToggleStar(profile.Get(), {serialId}));
  Disk reply(serialId);
  MailRequestBag(reply).Become(OpenMode::Reply, false);
  EXPECT_EQ(OpenMessage(profile.Get(), reply).model.text.Get(), QStringLiteral("> body"));
  EXPECT_EQ(MessageBag(reply).Flags(), MessageBag(reply).Flags().OfMessage())
      << "nobody has answered or starred the answer";
  // What a profile was given in the other language is in the interface's.
  Settings(profile.Get())
      .Bag()
      ->Let(QStringLiteral("ReplyLine"), QStringLiteral("On %d, %n wrote:"));
  Disk other(serialId);
  MailRequestBag(other).Become(OpenMode::Reply, false);
  EXPECT_TRUE(OpenMessage(profile.Get(), other).model.text.Get().contains(u"さんは書きました："));
  EXPECT_EQ(reply.Text(u"original"), serialId.Text());
  EXPECT_NE(reply.Serial(), serialId);
  EXPECT_EQ(reply.Number(u"process"), 1);
}

// Who writes begins on an empty line above; the form of the message is his own.
TEST_F(OpenModes, RepliesNameTheWriterAndAreSigned) {
  const test::TimeZone zone("Asia/Tokyo");  // of whoever answers
  const QByteArray headers =
      "From: =?utf-8?B?5L2Q6Jek?= <f@x>\r\nTo: own@x\r\nDate: Tue, 24 Nov 2026 0:05:00 +0000\r\n";
  settings_.usualReplies = true;
  settings_.replyLine = QStringLiteral("%d、%n <%a> 100%:");
  sender_ = {QStringLiteral("own@x"), {}, {QStringLiteral("own@x")}, {}};
  const QString line = QStringLiteral("2026/11/24 9:05、佐藤 <f@x> 100%:\r\n");
  const QString quote = QStringLiteral("> one\r\n> two");
  EXPECT_EQ(Open(OpenMode::Reply, headers).text.Get(), QStringLiteral("\r\n\r\n") + line + quote);
  EXPECT_TRUE(Open(OpenMode::Reply, "From: \"I <c@d>\" <true@e>\r\nTo: own@x\r\n")
                  .text.Get()
                  .contains(u"、true@e <true@e> 100%:"))
      << "who he is not";
  const QString head = QStringLiteral(
      "\r\n\r\n---- 転送するメッセージ ----\r\n差出人: 佐藤 <f@x>\r\n日時: 2026/11/24 9:05\r\n"
      "宛先: own@x\r\n件名: about\r\n\r\n");
  const auto forward = [&](const QByteArray& body) {
    return Open(OpenMode::Forward, headers + "Subject: about\r\n", body).text.Get();
  };
  EXPECT_EQ(forward("one\r\n\r\ntwo\r\n \r\n\r\n"), head + QStringLiteral("> one\r\n> \r\n> two"));
  EXPECT_EQ(forward("\r\n\r\n"), head) << "of what is attached";
  settings_.usualReplies = false;
  EXPECT_EQ(forward("one\r\ntwo"), QStringLiteral("one\r\n> two"));
  settings_.usualReplies = true;

  sender_.signatures.insert(QStringLiteral("own@x"), QStringLiteral("山田\n"));
  const QString signature = QStringLiteral("-- \r\n山田");
  EXPECT_EQ(Open(OpenMode::ReplyAll, headers).text.Get(),
            QStringLiteral("\r\n\r\n") + line + quote + QStringLiteral("\r\n\r\n") + signature);
  settings_.signaturePlace = SignaturePlace::AboveQuote;
  EXPECT_EQ(Open(OpenMode::Reply, headers).text.Get(),
            QStringLiteral("\r\n\r\n") + signature + QStringLiteral("\r\n\r\n") + line + quote);
  EXPECT_EQ(Open(OpenMode::Show, headers).text.Get(), QStringLiteral("one\r\ntwo"));
  EXPECT_EQ(Open(OpenMode::Resend, headers).text.Get(), QStringLiteral("one\r\ntwo"));
  // One with a rule of its own needs no other.
  EXPECT_EQ(SignatureBlock(QStringLiteral("----\r\n山田")), QStringLiteral("----\r\n山田"));
  EXPECT_EQ(SignatureBlock(QStringLiteral(" \r\n")), QString());
}

}  // namespace
}  // namespace vorn
