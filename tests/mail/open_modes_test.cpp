// A stored message as each open mode begins with it.

#include <gtest/gtest.h>

#include "mail/message_index.h"
#include "mail/message_model.h"
#include "mail/open_message.h"
#include "objects/object_types.h"
#include "support/test_profile.h"

namespace vorn {
namespace {

using test::TestProfile;

class OpenModes : public testing::Test {
 protected:
  OpenModes() {
    settings_ = EditSettings::Defaults();
    settings_.subjectReplay = QStringLiteral("RE");
    settings_.subjectForward = QStringLiteral("FW");
  }
  MessageModel Open(OpenMode mode, const QByteArray& headers,
                    const QByteArray& body = "one\r\ntwo") {
    StoredMessage message;
    message.source = headers + "\r\n" + body;
    const MessageIndex index = IndexMessage(message.source, {}, {settings_.textTypes});
    message.contentIndex = index.content;
    message.addressLines = index.addressLines;
    message.timestamp = QStringLiteral("2026/11/24 9:00:00");
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
};

TEST_F(OpenModes, SubjectsOfRepliesAndForwards) {
  using enum OpenMode;
  EXPECT_EQ(Subject(Reply, "Subject: RE: hello\r\n"), QStringLiteral("RE: hello"));
  EXPECT_EQ(Subject(ReplyAll, "Subject: Re: hello\r\n"), QStringLiteral("RE: hello"));
  EXPECT_EQ(Subject(Reply, "Subject: Re[2]: hello\r\n"), QStringLiteral("RE: hello"));
  EXPECT_EQ(Subject(Reply, "Subject: a: b\r\n"), QStringLiteral("RE: a: b"));
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
  sender_ = {QStringLiteral("me@x"), QStringLiteral("Me")};
  EXPECT_EQ(Kinds(Open(Reply, headers)), QStringLiteral("TO=f@x FROM=me@x"));
  EXPECT_EQ(Kinds(Open(Resend, headers)), QStringLiteral("FROM=f@x TO=t@x CC=c@x BC=b@x NO=n@x"));
}

TEST_F(OpenModes, TextsAreQuotedReferencesCarriedAndFilesKept) {
  using enum OpenMode;
  const QByteArray headers = "Message-ID: <m@x>\r\nSubject: s\r\nX-Priority: 1\r\nX-Other: o\r\n";
  const MessageModel reply = Open(Reply, headers);
  EXPECT_EQ(reply.text, QStringLiteral("one\r\n> two"));
  EXPECT_EQ(reply.references, QStringLiteral("<m@x>"));
  EXPECT_EQ(reply.inReplyTo, QStringLiteral("<m@x>"));
  EXPECT_EQ(Open(Show, headers).text, QStringLiteral("one\r\ntwo"));
  EXPECT_EQ(Open(Show, headers).references, QString());
  EXPECT_EQ(
      Open(Receipt, headers).text,
      QStringLiteral("下記内容のメールを受信したことをお知らせいたします。\r\n\r\n件名： s\r\n"
                     "日時： 2026/11/24 9:00:00"));
  EXPECT_EQ(Open(Show, headers).headerRows.join(u'|'), QStringLiteral("X-Priority: 1|X-Other: o"));
  isNew_ = true;
  EXPECT_EQ(Open(Reply, headers).headerRows.join(u'|'),
            QStringLiteral("X-Mailer: .VORN <x>|X-Priority: 3"));

  const QByteArray file = "Content-Type: application/pdf\r\n";
  EXPECT_EQ(Open(Forward, file).attachments.at(0).name, QStringLiteral("添付ファイル[1].dat"));
  EXPECT_TRUE(Open(Reply, file).attachments.empty());
}

TEST_F(OpenModes, AReplyBecomesANewMessageOfItsOwn) {
  TestProfile profile;
  const QString serialId =
      profile.Store("From: f@x\r\nDisposition-Notification-To: f@x\r\nSubject: s\r\n\r\nbody\r\n");
  Disk show(serialId);
  EXPECT_TRUE(OpenMessage(profile.Get(), show).found);
  EXPECT_TRUE(show.Flag(u"notice"));
  Disk again(serialId);
  OpenMessage(profile.Get(), again);
  EXPECT_FALSE(again.Flag(u"notice"));
  EXPECT_EQ(again.SerialID(), serialId);
  Disk reply(serialId);
  reply.Let(QStringLiteral("open"), 1);
  EXPECT_EQ(OpenMessage(profile.Get(), reply).model.text, QStringLiteral("body\r\n> "));
  EXPECT_NE(reply.SerialID(), serialId);
  EXPECT_EQ(reply.Number(u"process"), 1);
}

}  // namespace
}  // namespace vorn
