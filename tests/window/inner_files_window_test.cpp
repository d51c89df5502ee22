// Archives and appointments in message windows.

#include <QFileDialog>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>

#include "auxiliary/window/console_window.h"
#include "mail/window/attachment_list.h"
#include "mail/window/calendar_bar.h"
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
  QTimer answer;
  QObject::connect(&answer, &QTimer::timeout, &answer, [&] {
    if (auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget())) {
      dialog->setDirectory(out);
      QMetaObject::invokeMethod(dialog, "accept");
    } else if (auto* choice = qobject_cast<ConsoleWindow*>(QApplication::activeModalWidget())) {
      auto& text = Child<QLineEdit>(*choice, u"Text1");
      if (text.isVisible()) {
        EXPECT_EQ(text.echoMode(), QLineEdit::Password);
        text.setText(passwords.isEmpty() ? QString() : passwords.takeFirst());
      }
      // The choice of a folder comes up within this click.
      QMetaObject::invokeMethod(&Child<QPushButton>(*choice, u"cmOk"), "click",
                                Qt::QueuedConnection);
    }
  });
  answer.start(50);
  list.UnpackCurrent();
  answer.stop();
  EXPECT_TRUE(passwords.isEmpty());
  EXPECT_EQ(test::ReadFile(out + QStringLiteral("/見積.txt")), "\x8b\xe0\x8az");
  EXPECT_EQ(test::ReadFile(out + QStringLiteral("/b.txt")), "two");
  EXPECT_EQ(QDir(out).entryList(QDir::Files).size(), 2);
  EXPECT_FALSE(QFile::exists(folder_.filePath(QStringLiteral("b.txt"))));
  window.close();
  EXPECT_TRUE(Gone());
}

// The answer goes to the organizer and nobody else, after the user has seen it.
TEST_F(MessageWindowTest, AnInvitationIsAnsweredByAMessage) {
  const QByteArray source =
      "From: Robot <noreply@example.net>\r\nTo: list@example.jp\r\nSubject: meeting\r\n"
      "Message-ID: <9@example.jp>\r\nContent-Type: text/calendar; charset=utf-8; method=REQUEST\r\n"
      "\r\nBEGIN:VCALENDAR\r\nMETHOD:REQUEST\r\nBEGIN:VEVENT\r\nUID:9\r\n"
      "DTSTART:20260203T010000Z\r\nSUMMARY:定例\r\nORGANIZER:mailto:boss@example.jp\r\n"
      "ATTENDEE:mailto:other@example.jp\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n";
  MessageWindow& window = OpenStored(source, 4);
  auto& bar = Child<CalendarBar>(window, u"frCalendar");
  EXPECT_TRUE(bar.isVisible());
  Press(Child<QPushButton>(window, u"cmAccept"));
  EXPECT_FALSE(bar.isVisible());
  EXPECT_EQ(Child<QLineEdit>(window, u"txSubject").text(), QStringLiteral("出席します: 定例"));
  window.findChild<QMenu*>(QStringLiteral("menuFilesMessages"))->actions()[0]->trigger();
  EXPECT_TRUE(Gone());
  EXPECT_TRUE(WaitFor([this] { return smtp_.Messages().size() == 1; }));
  const QByteArray sent = smtp_.Messages().at(0).source;
  EXPECT_TRUE(sent.contains("To: boss@example.jp\r\n")) << sent.toStdString();
  EXPECT_FALSE(sent.contains("noreply@"));
  EXPECT_TRUE(sent.contains("In-Reply-To: <9@example.jp>"));
  EXPECT_TRUE(sent.contains("method=REPLY"));
}

}  // namespace
}  // namespace vorn
