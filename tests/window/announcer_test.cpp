// What the program announces to a script that drives it.

#include <QPlainTextEdit>
#include <QPushButton>
#include <QWindow>

#include "frame/window/announcer.h"
#include "mail/window/message_window.h"
#include "window/program_fixture.h"

namespace vorn {
namespace {

class AnnouncerTest : public ProgramTest {
 protected:
  bool Await(const QString& line) {
    return WaitFor([&] { return lines_.mid(mark_).contains(line); });
  }
  // What comes after now.
  void Mark() { mark_ = lines_.size(); }
  // Sent as the window system does: to the window that has the keyboard.
  static void SendKey(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    WaitFor([] { return QGuiApplication::focusWindow() != nullptr; });
    QTest::keyClick(QGuiApplication::focusWindow(), key, modifiers);
  }

  QStringList lines_;
  qsizetype mark_ = 0;
  Announcer announcer_{[this](const QString& line) { lines_.append(line); }};
};

TEST_F(AnnouncerTest, WindowsPagesAndSessionsAreAnnouncedWithoutWhatMessagesSay) {
  AddMessages(3);
  Prepare(QStringLiteral("hidden"));
  StartProgram();
  EXPECT_TRUE(Await(QStringLiteral("shown login")));
  EXPECT_TRUE(Await(QStringLiteral("active login")));
  LogInWith(QStringLiteral("hidden"));
  EXPECT_TRUE(Await(QStringLiteral("closed login")));
  EXPECT_TRUE(Await(QStringLiteral("shown parent")));
  EXPECT_TRUE(Await(QStringLiteral("page 01_folder_1_INBOX0000000 0")));
  Receive();
  EXPECT_TRUE(Await(QStringLiteral("session ended received 3 sent 0 errors 0")));
  EXPECT_TRUE(Await(QStringLiteral("page 01_folder_1_INBOX0000000 3")));
  EXPECT_EQ(ScriptIn(*View(), QStringLiteral("vorn.count()")).toInt(), 3) << "it is there by then";
  server_.Password = "changed";
  PressReceive();
  EXPECT_TRUE(Await(QStringLiteral("session ended received 3 sent 0 errors 1")));
  EndProgram();
  EXPECT_TRUE(Await(QStringLiteral("closed parent")));
  const QString all = lines_.join(u'\n');
  for (const char* secret : {"hidden", "secret", "会議", "佐藤", "example"}) {
    EXPECT_FALSE(all.contains(QString::fromUtf8(secret))) << secret;
  }
}

// The answer to a probe counts what came before it, a shortcut and what a dialog took included, and
// comes when that has been done.
TEST_F(AnnouncerTest, AProbeIsAnsweredAfterTheKeysBeforeIt) {
  StartProgram();
  AwaitInbox();
  Mark();
  SendKey(Qt::Key_Pause, Qt::ShiftModifier);
  ASSERT_TRUE(Await(QStringLiteral("settled 1 0")));
  SendKey(Qt::Key_Control, Qt::ControlModifier);
  SendKey(Qt::Key_N, Qt::ControlModifier);
  SendKey(Qt::Key_Pause);
  ASSERT_TRUE(Await(QStringLiteral("settled 0 1")));
  ASSERT_TRUE(Await(QStringLiteral("active Mail")));
  test::Child<QPlainTextEdit>(*TopLevel<MessageWindow>(), u"txMemo").setFocus();
  for (const Qt::Key key : {Qt::Key_A, Qt::Key_B}) SendKey(key);
  SendKey(Qt::Key_Pause, Qt::ShiftModifier);
  SendKey(Qt::Key_C);
  SendKey(Qt::Key_Pause);
  ASSERT_TRUE(Await(QStringLiteral("settled 0 4")));
  EXPECT_TRUE(lines_.contains(QStringLiteral("settled 1 3")));
  InModal<QMessageBox>([] { SendKey(Qt::Key_Escape); },
                       [this](QMessageBox& box) {
                         EXPECT_TRUE(Await(QStringLiteral("shown QMessageBox")));
                         SendKey(Qt::Key_Pause);
                         EXPECT_TRUE(Await(QStringLiteral("settled 0 5")));
                         EXPECT_TRUE(box.isVisible()) << "no window sees a probe";
                         box.button(QMessageBox::No)->click();
                       });
  EXPECT_TRUE(Await(QStringLiteral("closed Mail")));
}

}  // namespace
}  // namespace vorn
