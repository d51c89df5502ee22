// A conversation from end to end against servers that nobody here wrote: received from Dovecot,
// answered to all with a Japanese file name and an emoji, sent through aiosmtpd, received again,
// forwarded and resent.

#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QTableWidget>

#include "mail/mail_store.h"
#include "mail/window/attachment_list.h"
#include "mail/window/message_window.h"
#include "storage/databases.h"
#include "support/real_servers.h"
#include "window/program_fixture.h"

namespace vorn {
namespace {

using test::Child;
using test::Type;

class ConversationTest : public ProgramTest {
 protected:
  void SetUp() override {
    ASSERT_TRUE(sink_.Start());
    ASSERT_TRUE(dovecot_.Start());
    PrepareSending(dovecot_.Port(), sink_.Port(), QStringLiteral("me@example.org"));
    StartProgram();
    LogInWith(QString());
    AwaitInbox();
  }

  // The received message with that subject, in a window.
  MessageWindow& Open(const QString& subject) {
    Context& context = program_->GetContext();
    EXPECT_TRUE(OpenDatabase(context, DatabaseKind::Mail));
    context.Data.OpenRecordset(
        QStringLiteral("SELECT * FROM mail WHERE STATUS = 4 AND FIELD_SUBJECT = '%1'").arg(subject),
        CursorKind::ForwardOnly);
    const RecordsetPtr rows = context.Data.Recordset();
    const QString serial = rows->Eof() ? QString() : rows->SerialID();
    context.Data.Close();
    EXPECT_FALSE(serial.isEmpty()) << subject.toStdString();
    program_->Parent()->OpenMessage(0, serial, false);
    EXPECT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
    return *TopLevel<MessageWindow>();
  }
  static void Command(const MessageWindow& window, int index) {
    window.findChild<QMenu*>(QStringLiteral("menuFilesMessages"))->actions()[index]->trigger();
  }
  // Sends what the window holds; the envelope's line and the source as the server got them.
  std::pair<QByteArray, QByteArray> Sent(MessageWindow& window) {
    const qsizetype before = sink_.Messages().size();
    Command(window, 0);
    EXPECT_TRUE(WaitFor([&] { return sink_.Messages().size() == before + 1; }));
    EXPECT_TRUE(WaitFor([this] { return !program_->Parent()->Traffic().Control().Busy(); }));
    const QByteArray kept = sink_.Messages().last();
    const qsizetype end = kept.indexOf("\r\n");
    return {kept.first(end), kept.sliced(end + 2)};
  }
  // Puts a source into the mailbox, as its recipient's provider would, and receives it.
  void Deliver(const QByteArray& source) {
    dovecot_.Deliver("m" + QByteArray::number(++delivered_), source);
    Receive();
  }

  test::SmtpSink sink_;
  test::Dovecot dovecot_;
  int delivered_ = 0;
};

TEST_F(ConversationTest, GoesRoundWithoutLosingACharacter) {
  Deliver(
      "From: =?UTF-8?B?5L2Q6Jek?= <sato@example.jp>\r\nTo: me@example.org, "
      "=?UTF-8?B?6Z2S5pyo?= <aoki@example.jp>\r\nCc: cc@example.jp\r\n"
      "Message-ID: <first@example.jp>\r\nSubject: =?ISO-2022-JP?B?GyRCMnE1RBsoQg==?=\r\n"
      "Content-Type: text/plain; charset=ISO-2022-JP\r\n\r\n\x1B$B$3$s$K$A$O\x1B(B\r\n");
  MessageWindow& answer = Open(QStringLiteral("会議"));
  Command(answer, 3);  // reply to all
  Type(Child<QLineEdit>(answer, u"txSubject"), QStringLiteral("Re: 会議🍣の件"));
  QFile file(folder_.filePath(QStringLiteral("議事録 ①.pdf")));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  QByteArray bytes(5000, 'x');
  for (int i = 0; i < 256; ++i) bytes[i] = static_cast<char>(i);
  file.write(bytes);
  file.close();
  Child<AttachmentList>(answer, u"lvClip").AddFiles({file.fileName()});
  auto& memo = Child<QPlainTextEdit>(answer, u"txMemo");
  EXPECT_TRUE(memo.toPlainText().contains(QStringLiteral("こんにちは")));
  memo.setFocus();
  test::TypeText(memo, QStringLiteral("承知しました～"));
  const auto [envelope, reply] = Sent(answer);
  EXPECT_TRUE(envelope.startsWith("me@example.org ")) << envelope.toStdString();
  for (const char* recipient : {"sato@example.jp", "cc@example.jp"}) {
    EXPECT_TRUE(envelope.contains(recipient)) << recipient;
  }
  EXPECT_TRUE(reply.contains("<first@example.jp>"));

  Deliver(reply);
  MessageWindow& received = Open(QStringLiteral("Re: 会議🍣の件"));
  const auto& attachments = Child<AttachmentList>(received, u"lvClip");
  ASSERT_EQ(attachments.count(), 1);
  EXPECT_TRUE(attachments.item(0)->text().startsWith(QStringLiteral("議事録 ①.pdf")));
  EXPECT_TRUE(Child<QPlainTextEdit>(received, u"txMemo")
                  .toPlainText()
                  .startsWith(QStringLiteral("承知しました～")));
  Command(received, 4);  // forward, with what is attached
  auto& list = Child<QTableWidget>(received, u"lvMailaddress");
  list.item(list.rowCount() - 1, 1)->setText(QStringLiteral("boss@example.jp"));
  const auto [forwardEnvelope, forward] = Sent(received);
  EXPECT_TRUE(forwardEnvelope.contains("boss@example.jp"));

  Deliver(forward);
  const QString forwarded = QStringLiteral("Fw: Re: 会議🍣の件");
  MessageWindow& last = Open(forwarded);
  const auto& files = Child<AttachmentList>(last, u"lvClip");
  ASSERT_EQ(files.count(), 1);
  EXPECT_EQ(files.Attachments()[0].name, QStringLiteral("議事録 ①.pdf"));
  Command(last, 5);  // resend
  const auto [resentEnvelope, resent] = Sent(last);
  EXPECT_TRUE(resentEnvelope.contains("boss@example.jp")) << resentEnvelope.toStdString();
  EXPECT_TRUE(resent.contains(bytes.toBase64().left(60)));
}

}  // namespace
}  // namespace vorn
