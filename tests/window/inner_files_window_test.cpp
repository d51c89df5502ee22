// Archives and appointments in message windows.

#include "auxiliary/window/console_window.h"
#include "mail/window/bars/calendar_bar.h"
#include "mail/window/fields/attachment_input.h"
#include "mail/window/fields/attachment_list.h"
#include "window/message_window_fixture.h"

namespace vorn {
namespace {

// An archive of two files with the password "himitsu", one of them in a folder above.
const QByteArray kArchive = QByteArrayLiteral(
    "UEsDBBQACQAIAAAAIQAAAAAAAAAAAAQAAAANABQAjpGXvy+MqZDPLnR4dFVUAQAAdXgLAAEEAAAAAAQAAAAAdjKpTt"
    "FmOS82JwytJJJ2EfieUEsHCGXWQsMSAAAABAAAAFBLAwQUAAkACAAAACEAAAAAAAAAAAADAAAACAAUAC4uL2IudHh0"
    "VVQBAAB1eAsAAQQAAAAABAAAAAAS8kWrXje0JT/n6kwYvlS0YVBLBwhmisoREQAAAAMAAABQSwECFAMUAAkACAAAAC"
    "EAZdZCwxIAAAAEAAAADQAUAAAAAAAAAAAApIEAAAAAjpGXvy+MqZDPLnR4dFVUAQAAdXgLAAEEAAAAAAQAAAAAUEsB"
    "AhQDFAAJAAgAAAAhAGaKyhERAAAAAwAAAAgAFAAAAAAAAAAAAKSBYQAAAC4uL2IudHh0VVQBAAB1eAsAAQQAAAAABA"
    "AAAABQSwUGAAAAAAIAAgCZAAAAvAAAAAAA");

TEST_F(MessageWindowTest, FilesAreTakenOutOfAnArchiveWithItsPassword) {
  MessageWindow& window = OpenStored(
      "From: a@example.jp\r\nSubject: s\r\nContent-Type: multipart/mixed; boundary=b\r\n\r\n--b\r\n"
      "\r\ntext\r\n--b\r\nContent-Type: application/zip; name=\"a.zip\"\r\n"
      "Content-Transfer-Encoding: base64\r\n\r\n" +
          kArchive + "\r\n--b--\r\n",
      4);
  auto& list = Child<AttachmentList>(window, u"lvClip");
  ASSERT_EQ(list.count(), 1);
  EXPECT_TRUE(list.item(0)->text().contains(QStringLiteral("パスワード付き")));
  const QString out = folder_.filePath(QStringLiteral("out"));
  QDir().mkpath(out);
  QStringList passwords = {QStringLiteral("wrong"), QStringLiteral("himitsu")};
  test::Answering<QFileDialog, ConsoleWindow>(
      [&list] { list.UnpackCurrent(); },
      [&out](QFileDialog& dialog) { test::AcceptIn(dialog, out); },
      [&passwords](ConsoleWindow& choice) {
        auto& text = Child<QLineEdit>(choice, u"Text1");
        if (text.isVisible()) {
          EXPECT_EQ(text.echoMode(), QLineEdit::Password);
          text.setText(passwords.isEmpty() ? QString() : passwords.takeFirst());
        }
        // The choice of a folder comes up within this click.
        QMetaObject::invokeMethod(&Child<QPushButton>(choice, u"cmOk"), "click",
                                  Qt::QueuedConnection);
      });
  EXPECT_TRUE(passwords.isEmpty());
  EXPECT_EQ(test::ReadFile(out + QStringLiteral("/見積.txt")), "\x8b\xe0\x8az");
  EXPECT_EQ(test::ReadFile(out + QStringLiteral("/b.txt")), "two");
  EXPECT_EQ(QDir(out).entryList(QDir::Files).size(), 2);
  EXPECT_FALSE(QFile::exists(folder_.filePath(QStringLiteral("b.txt"))));
}

// As a file that another program writes while it is attached.
void ChangeLater(const QString& path, int seconds) {
  QFile file(path);
  EXPECT_TRUE(file.open(QIODevice::ReadWrite));
  file.write("changed");
  EXPECT_TRUE(file.flush());
  EXPECT_TRUE(file.setFileTime(QDateTime::currentDateTime().addSecs(seconds),
                               QFileDevice::FileModificationTime));
}

// What was refused once is not sent by the next click, nor what was not named.
TEST_F(MessageWindowTest, ChangedFilesAreSentAfterAWordForAllOfThem) {
  MessageWindow& window = OpenStored(kDraft, kStatusEdit);
  const QStringList paths = {File("one.txt", "1"), File("two.txt", "2"), File("three.txt", "3")};
  Child<AttachmentList>(window, u"lvClip").Input().AddFiles(paths);
  const auto send = [&window](QMessageBox::StandardButton button) {
    return test::AnswerBox(
        [&window] { Menu(window, u"menuFilesMessages").actions()[0]->trigger(); }, button);
  };
  ChangeLater(paths[0], 60);
  ChangeLater(paths[1], 61);
  for (int time = 0; time < 2; ++time) {
    const QString question = send(QMessageBox::No);
    EXPECT_TRUE(question.contains(u"one.txt") && question.contains(u"two.txt"));
    EXPECT_FALSE(question.contains(u"three.txt"));
    EXPECT_TRUE(window.isVisible());
  }
  send(QMessageBox::Yes);
  EXPECT_TRUE(Gone());
  EXPECT_TRUE(WaitFor([this] { return smtp_.Messages().size() == 1; }));
}

// Nor does a draft take over what nobody has looked at. One that is new is asked about first.
TEST_F(MessageWindowTest, AChangedFileIsKeptInADraftAfterAWord) {
  for (const bool isNew : {true, false}) {
    SCOPED_TRACE(isNew);
    MessageWindow& window = isNew ? New() : OpenStored(kDraft, kStatusEdit);
    const QString path = File("plan.txt", "first");
    Child<AttachmentList>(window, u"lvClip").Input().AddFiles({path});
    ChangeLater(path, 60);
    const int before = Count();
    const auto close = [&window](QMessageBox::StandardButton answer) {
      QString question;
      test::Answering<QMessageBox>([&window] { window.close(); },
                                   [&question, answer](QMessageBox& box) {
                                     const bool isAboutFiles = box.text().contains(u"plan.txt");
                                     if (isAboutFiles) question = box.text();
                                     box.button(isAboutFiles ? answer : QMessageBox::Yes)->click();
                                   });
      return question.contains(QStringLiteral("今の内容で保存"));
    };
    EXPECT_TRUE(close(QMessageBox::No));
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(Count(), before);
    EXPECT_TRUE(close(QMessageBox::Yes));
    EXPECT_TRUE(Gone());
    EXPECT_EQ(Count(), before + (isNew ? 1 : 0));
  }
}

class InvitationWindowTest : public MessageWindowTest {
 protected:
  MessageWindow& OpenInvitation() const {
    return OpenStored(
        "From: Robot <noreply@example.net>\r\nTo: list@example.jp\r\nSubject: meeting\r\n"
        "Message-ID: <9@example.jp>\r\n"
        "Content-Type: text/calendar; charset=utf-8; method=REQUEST\r\n"
        "\r\nBEGIN:VCALENDAR\r\nMETHOD:REQUEST\r\nBEGIN:VEVENT\r\nUID:9\r\n"
        "DTSTART:20260203T010000Z\r\nSUMMARY:定例\r\nORGANIZER:mailto:boss@example.jp\r\n"
        "ATTENDEE:mailto:other@example.jp\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n",
        kStatusReceived);
  }
  static QByteArray CalendarIn(const QByteArray& message) {
    const qsizetype begin = message.indexOf("\r\n\r\n", message.indexOf("method=REPLY")) + 4;
    return QByteArray::fromBase64(message.mid(begin, message.indexOf("--", begin) - begin));
  }
};

// The answer goes to the organizer and nobody else, after the user has seen it; thought better of,
// it is what the window shows.
TEST_F(InvitationWindowTest, AnInvitationIsAnsweredByAMessage) {
  MessageWindow& window = OpenInvitation();
  EXPECT_TRUE(Child<CalendarBar>(window, u"frCalendar").isVisible());
  Press(Child<QPushButton>(window, u"cmAccept"));
  EXPECT_TRUE(Child<QPushButton>(window, u"cmAccept").isChecked());
  auto& subject = Child<QLineEdit>(window, u"txSubject");
  auto& memo = Child<QPlainTextEdit>(window, u"txMemo");
  EXPECT_EQ(subject.text(), QStringLiteral("出席します: 定例"));
  // Also in the midst of one's own words.
  subject.setText(subject.text() + QStringLiteral(" (青木)"));
  memo.insertPlainText(QStringLiteral("青木は"));
  memo.appendPlainText(QStringLiteral("またの機会に。"));
  Press(Child<QPushButton>(window, u"cmDecline"));
  EXPECT_FALSE(Child<QPushButton>(window, u"cmAccept").isChecked());
  EXPECT_EQ(subject.text(), QStringLiteral("欠席します: 定例 (青木)"));
  EXPECT_EQ(memo.toPlainText(), QStringLiteral("青木は欠席します。\n\nまたの機会に。"));
  const auto saysThatWordsStay = [&window] {
    const auto labels = Child<CalendarBar>(window, u"frCalendar").findChildren<QLabel*>();
    return labels.at(0)->text().contains(u"変わっていません");
  };
  EXPECT_FALSE(saysThatWordsStay());
  // Edited words are left as they are, and that is said.
  memo.setPlainText(QStringLiteral("欠席するつもりです。"));
  Press(Child<QPushButton>(window, u"cmAccept"));
  EXPECT_TRUE(saysThatWordsStay());
  memo.setPlainText(QStringLiteral("やはり出席します。"));
  EXPECT_FALSE(saysThatWordsStay());
  Press(Child<QPushButton>(window, u"cmDecline"));
  EXPECT_FALSE(saysThatWordsStay());
  memo.undo();
  EXPECT_TRUE(saysThatWordsStay());
  Menu(window, u"menuFilesMessages").actions()[0]->trigger();
  EXPECT_TRUE(Gone());
  ASSERT_TRUE(WaitFor([this] { return smtp_.Messages().size() == 1; }));
  const QByteArray sent = smtp_.Messages().at(0).source;
  EXPECT_TRUE(sent.contains("To: boss@example.jp\r\n")) << sent.toStdString();
  EXPECT_FALSE(sent.contains("noreply@"));
  EXPECT_TRUE(sent.contains("In-Reply-To: <9@example.jp>"));
  EXPECT_TRUE(CalendarIn(sent).contains("PARTSTAT=DECLINED:mailto:y@example.org"));
}

TEST_F(InvitationWindowTest, WhoSendsTheAnswerIsTheOneWhoAnswers) {
  MessageWindow& window = OpenInvitation();
  Press(Child<QPushButton>(window, u"cmTentative"));
  auto& rows = Child<QTableWidget>(window, u"lvMailaddress");
  for (int row = 0; row < rows.rowCount(); ++row) {
    if (rows.item(row, 1)->text() != u"y@example.org") continue;
    rows.setCurrentCell(row, 1);
    rows.editItem(rows.item(row, 1));
    Type(Child<QLineEdit>(window, u"txMailaddress"), QStringLiteral("z@example.org"));
    break;
  }
  Menu(window, u"menuViews").actions().last()->trigger();
  auto* source = window.findChild<QDialog*>(QStringLiteral("source"));
  ASSERT_NE(source, nullptr);
  const QString written = source->findChild<QPlainTextEdit*>()->toPlainText();
  EXPECT_TRUE(CalendarIn(written.toUtf8().replace("\n", "\r\n"))
                  .contains("PARTSTAT=TENTATIVE:mailto:z@example.org"));
  // Behind an answer that was sent the next message may be an invitation.
  auto& bar = Child<CalendarBar>(window, u"frCalendar");
  bar.ShowAnswer(CalendarIn(written.toUtf8().replace("\n", "\r\n")), false);
  EXPECT_FALSE(Child<QPushButton>(window, u"cmAccept").isEnabled());
  bar.Show(QStringLiteral(
      "BEGIN:VCALENDAR\r\nMETHOD:REQUEST\r\nBEGIN:VEVENT\r\nUID:8\r\n"
      "DTSTART:20260203T010000Z\r\nSUMMARY:次\r\nORGANIZER:mailto:boss@example.jp\r\n"
      "ATTENDEE:mailto:y@example.org\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n"));
  EXPECT_TRUE(Child<QPushButton>(window, u"cmAccept").isEnabled());
}

}  // namespace
}  // namespace vorn
