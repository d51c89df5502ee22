// A day at the office, from the first start to the second profile, in the real windows against
// servers that nobody here wrote.

#include "frame/window/panes/console_tree.h"
#include "mail/window/fields/attachment_input.h"
#include "mail/window/fields/attachment_list.h"
#include "mail/window/message_window.h"
#include "mail/window/reading/reading_pane.h"
#include "objects/object_types.h"
#include "objects/window/condition_editor.h"
#include "objects/window/objects_window.h"
#include "storage/databases.h"
#include "storage/message_state.h"
#include "support/real_servers.h"
#include "transfer/window/rule_window.h"
#include "window/program_fixture.h"

namespace vorn {
namespace {

using test::Child;
using test::Press;
using test::Type;

class DayTest : public ProgramTest {
 protected:
  static constexpr int kMorning = 305;

  // Entries of "new" in the file menu.
  enum { kNewAccount = 2, kNewFolder, kNewBook, kNewBookmark, kNewProfile };

  vorn::Context& Context() const { return program_->GetContext(); }
  void NewObject(int entry, const std::function<void(ObjectsWindow&)>& fill) const {
    QMenu* create =
        program_->Parent()->menuBar()->findChild<QMenu*>(QStringLiteral("menuFilesNew"));
    EXPECT_TRUE(InModal<ObjectsWindow>([&] { create->actions()[entry]->trigger(); },
                                       [&fill](ObjectsWindow& window) {
                                         fill(window);
                                         Press(Child<QPushButton>(window, u"cmOk"));
                                       }));
  }
  static QByteArray Mail(const QByteArray& subject, const QByteArray& fields = {}) {
    return "From: =?UTF-8?B?5L2Q6Jek?= <sato@example.jp>\r\nTo: me@example.org, "
           "aoki@example.jp\r\nMessage-ID: <" +
           subject + "@example.jp>\r\nSubject: " + subject + "\r\n" + fields +
           "Content-Type: text/plain; charset=utf-8\r\n\r\n本文です。\r\n";
  }
  int Stored(const QString& where) const {
    EXPECT_TRUE(OpenDatabase(Context(), DatabaseKind::Mail));
    EXPECT_TRUE(Context().Data.OpenRecordset(
        QStringLiteral("SELECT COUNT(0) AS V FROM mail WHERE ") + where, CursorKind::ForwardOnly));
    const int count = Context().Data.Recordset()->Fields(u"V").toInt();
    Context().Data.Close();
    return count;
  }
  SerialId Serial(const QString& subject, int status) const {
    EXPECT_TRUE(OpenDatabase(Context(), DatabaseKind::Mail));
    EXPECT_TRUE(Context().Data.OpenRecordset(
        QStringLiteral("SELECT * FROM mail WHERE FIELD_SUBJECT = '%1' AND STATUS = %2")
            .arg(subject)
            .arg(status),
        CursorKind::ForwardOnly));
    const RecordsetPtr rows = Context().Data.Recordset();
    const SerialId serial = rows->Eof() ? SerialId() : rows->Serial();
    Context().Data.Close();
    EXPECT_FALSE(serial.IsEmpty()) << subject.toStdString();
    return serial;
  }
  MessageWindow& Open(const QString& subject, int status = 4) const {
    program_->Parent()->Requests().ShowMessage(MailRequest::Of(Serial(subject, status)));
    EXPECT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
    return *TopLevel<MessageWindow>();
  }
  MessageWindow& New() const {
    program_->Parent()->activateWindow();
    EXPECT_TRUE(WaitFor([this] { return program_->Parent()->isActiveWindow(); }));
    QTest::keyClick(program_->Parent(), Qt::Key_N, Qt::ControlModifier);
    EXPECT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
    return *TopLevel<MessageWindow>();
  }
  static void Command(const MessageWindow& window, int index) {
    window.findChild<QMenu*>(QStringLiteral("menuFilesMessages"))->actions()[index]->trigger();
  }
  // Types a recipient and leaves the row as it is, with the list of offers open or not.
  static void Address(MessageWindow& window, const QString& text) {
    auto& list = Child<QTableWidget>(window, u"lvMailaddress");
    const int last = list.rowCount() - 1;
    list.setCurrentCell(last, 1);
    list.editItem(list.item(last, 1));
    test::TypeText(*list.indexWidget(list.model()->index(last, 1)), text);
  }
  // The envelope of what leaves, once it is there and stored as sent.
  QByteArray Sent(const std::function<void()>& cause) {
    const qsizetype before = sink_.Messages().size();
    cause();
    EXPECT_TRUE(WaitFor([&] { return sink_.Messages().size() == before + 1; }));
    EXPECT_TRUE(WaitFor([this] { return !program_->Parent()->Traffic().Control().Busy(); }));
    const QByteArray kept = sink_.Messages().last();
    return kept.first(kept.indexOf("\r\n"));
  }
  QByteArray SentBy(MessageWindow& window) {
    return Sent([&window] { Command(window, 0); });
  }
  void Deliver(const QByteArray& source) {
    dovecot_.Deliver("late" + QByteArray::number(++delivered_), source);
  }

 public:
  void SetUpAccount();
  void ReadAndAnswer();
  void DraftAndSendAgain();
  void SendReceipt();
  void StopByRule();
  void SortIntoFolder();
  void WriteToTheBook();
  void UseSecondProfile();

 protected:
  test::SmtpSink sink_;
  test::Dovecot dovecot_;
  int delivered_ = 0;
};

void DayTest::SetUpAccount() {
  StartProgram();
  AwaitInbox();
  NewObject(kNewAccount, [this](ObjectsWindow& window) {
    Type(Child<QLineEdit>(window, u"txObject"), QStringLiteral("仕事"));
    Press(Child<QCheckBox>(window, u"ckDefault"));
    Type(Child<QLineEdit>(window, u"txMailaddress"), QStringLiteral("me@example.org"));
    Type(Child<QLineEdit>(window, u"txInMailServer"), QStringLiteral("127.0.0.1"));
    Child<QComboBox>(window, u"cbInMailServerSecurity").setCurrentIndex(0);
    Child<QComboBox>(window, u"cbOutMailServerSecurity").setCurrentIndex(0);
    Type(Child<QLineEdit>(window, u"txInMailServerPort"), QString::number(dovecot_.Port()));
    Type(Child<QLineEdit>(window, u"txInMailServerUser"), QStringLiteral("me"));
    Type(Child<QLineEdit>(window, u"txInMailServerPassword"), QStringLiteral("secret"));
    Child<QCheckBox>(window, u"ckInMailServerDelete").setChecked(true);
    Type(Child<QLineEdit>(window, u"txOutMailServer"), QStringLiteral("127.0.0.1"));
    Type(Child<QLineEdit>(window, u"txOutMailServerPort"), QString::number(sink_.Port()));
    Child<QCheckBox>(window, u"ckOutMailServerAuth").setChecked(false);  // it knows no logins
  });
  Receive();
  EXPECT_EQ(Stored(QStringLiteral("STATUS = 4")), kMorning);
  EXPECT_TRUE(WaitFor([this] { return dovecot_.Remaining() == 0; }));
}

void DayTest::ReadAndAnswer() {
  ASSERT_TRUE(WaitFor([this] { return PageText().contains(QStringLiteral("m305")); }));
  // A click reads at the side, and a key opens.
  ClickLink(QStringLiteral("a[href^=\"preview:\"]"));
  const auto* pane = Browser()->findChild<ReadingPane*>();
  ASSERT_TRUE(WaitFor([pane] { return pane != nullptr && !pane->ShownMessage().IsEmpty(); }));
  QTest::keyClick(View()->focusProxy(), Qt::Key_Return);
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
  MessageWindow& answer = *TopLevel<MessageWindow>();
  EXPECT_TRUE(Child<QPlainTextEdit>(answer, u"txMemo")
                  .toPlainText()
                  .contains(QStringLiteral("本文です。")));
  Command(answer, 3);
  test::TypeText(Child<QPlainTextEdit>(answer, u"txMemo"), QStringLiteral("承知しました。"));
  const QByteArray answered = SentBy(answer);
  EXPECT_TRUE(answered.contains("sato@example.jp") && answered.contains("aoki@example.jp"))
      << answered.toStdString();
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() == nullptr; }));
  // What was answered bears its mark, and only that.
  const QString marked = QStringLiteral("SUBSTR(FIELD_FLAG, %1, 1) = '1'").arg(int(kFlagAnswered));
  EXPECT_TRUE(WaitFor([&] { return Stored(marked) == 1; }));
  EXPECT_EQ(Stored(marked + QStringLiteral(" AND STATUS = 4")), 1);

  MessageWindow& forward = Open(QStringLiteral("m007"));
  Command(forward, 4);
  const QString file = folder_.filePath(QStringLiteral("見積.txt"));
  test::WriteFile(file, "estimate");
  Child<AttachmentList>(forward, u"lvClip").Input().AddFiles({file});
  Address(forward, QStringLiteral("boss@example.jp"));
  EXPECT_TRUE(SentBy(forward).contains("boss@example.jp"));
  EXPECT_TRUE(sink_.Messages().last().contains("ZXN0aW1hdGU"));
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() == nullptr; }));
}

void DayTest::DraftAndSendAgain() {
  MessageWindow& draft = New();
  Type(Child<QLineEdit>(draft, u"txSubject"), QStringLiteral("下書き"));
  Address(draft, QStringLiteral("draft@example.jp"));
  test::AnswerBox([&draft] { draft.close(); }, QMessageBox::Yes);
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() == nullptr; }));
  MessageWindow& again = Open(QStringLiteral("下書き"), 1);
  EXPECT_TRUE(SentBy(again).contains(" draft@example.jp "));
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() == nullptr; }));
  MessageWindow& sent = Open(QStringLiteral("下書き"), 3);
  Command(sent, 5);
  EXPECT_TRUE(SentBy(sent).contains(" draft@example.jp "));
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() == nullptr; }));
}

void DayTest::SendReceipt() {
  Settings(Context()).Bag()->Let(QStringLiteral("ReceiveNotice"), true);
  Deliver(Mail("receipt", "Disposition-Notification-To: sato@example.jp\r\n"));
  Receive();
  const SerialId serial = Serial(QStringLiteral("receipt"), 4);
  EXPECT_TRUE(Sent([&] {
                test::AnswerBox(
                    [&] { program_->Parent()->Requests().ShowMessage(MailRequest::Of(serial)); },
                    QMessageBox::Yes);
              }).contains("sato@example.jp"));
  TopLevel<MessageWindow>()->close();
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() == nullptr; }));
}

void DayTest::StopByRule() {
  QMenu* tools = program_->Parent()->menuBar()->findChild<QMenu*>(QStringLiteral("menuTools"));
  EXPECT_TRUE(InModal<RuleWindow>([tools] { tools->actions()[2]->trigger(); },
                                  [](RuleWindow& window) {
                                    auto& list = Child<QTableWidget>(window, u"lvReceiveStop");
                                    auto& menu = Child<QMenu>(window, u"menuReceiveStop");
                                    list.setCurrentCell(list.rowCount() - 1, 0);
                                    test::ClickRow(list, list.currentItem(), Qt::RightButton);
                                    menu.close();
                                    menu.actions()[1]->trigger();  // from:
                                    test::TypeText(Child<QLineEdit>(window, u"txInput"),
                                                   QStringLiteral("*@spam.example*"));
                                    Press(Child<QPushButton>(window, u"cmOk"));  // without Enter
                                  }));
  Deliver("From: x@spam.example\r\nTo: me@example.org\r\nSubject: unwanted\r\n\r\nbuy\r\n");
  Deliver(Mail("wanted"));
  Receive();
  EXPECT_EQ(Stored(QStringLiteral("FIELD_SUBJECT = 'unwanted'")), 0);
  EXPECT_EQ(Stored(QStringLiteral("FIELD_SUBJECT = 'wanted'")), 1);
}

void DayTest::SortIntoFolder() {
  NewObject(kNewFolder, [](ObjectsWindow& window) {
    Type(Child<QLineEdit>(window, u"txObject"), QStringLiteral("三百番台"));
    Child<QTabWidget>(window, u"tsPage").setCurrentIndex(1);
    Press(Child<QPushButton>(window, u"cmAddCondition"));
    auto& list = Child<ConditionEditor>(window, u"lvCondition");
    test::TypeText(*list.cellWidget(0, 3), QStringLiteral("m30"));
    // The wheel scrolls; what it passes over stays as it is.
    QWidget* kind = list.cellWidget(0, 1);
    QWheelEvent wheel(QPointF(5, 5), kind->mapToGlobal(QPointF(5, 5)), {}, QPoint(0, -240),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(kind, &wheel);
    EXPECT_NE(qobject_cast<QLineEdit*>(list.cellWidget(0, 3)), nullptr);
    // Six of the morning, and the answer to one of them.
    auto& matches = Child<QLabel>(window, u"lbMatches");
    EXPECT_TRUE(WaitFor([&] { return matches.text().contains(QStringLiteral("7通")); }))
        << matches.text().toStdString();
  });
  auto* tree = program_->Parent()->findChild<ConsoleTree*>();
  const auto node = [tree] {
    return tree->findItems(QStringLiteral("三百番台"), Qt::MatchStartsWith | Qt::MatchRecursive)
        .value(0);
  };
  ASSERT_TRUE(WaitFor([&] { return node() != nullptr; }));
  test::ClickRow(*tree, node());
  const auto pages = [this] { return program_->Parent()->findChildren<BrowserWindow*>(); };
  ASSERT_TRUE(WaitFor([&] { return pages().size() == 2; }));
  auto* page = pages().last()->findChild<QWebEngineView*>()->page();
  EXPECT_TRUE(WaitFor([&] {
    const QString text = AnswerTo<QString>([page](const auto& then) { page->toPlainText(then); });
    return text.contains(QStringLiteral("m305")) && !text.contains(QStringLiteral("m001"));
  }));
}

void DayTest::WriteToTheBook() {
  NewObject(kNewBook, [](ObjectsWindow& window) {
    Type(Child<QLineEdit>(window, u"txObject"), QStringLiteral("取引先"));
    Child<QTabWidget>(window, u"tsPage").setCurrentIndex(1);
    auto& list = Child<QTableWidget>(window, u"lvAddressbook");
    for (const auto& [column, text] :
         {std::pair{0, QStringLiteral("suzuki@example.jp")}, {1, QStringLiteral("鈴木")}}) {
      list.setCurrentCell(0, column);
      list.editItem(list.item(0, column));
      test::TypeText(*list.indexWidget(list.currentIndex()), text);
    }
    // OK is pressed with the last cell still open.
  });
  MessageWindow& window = New();
  Address(window, QStringLiteral("鈴"));
  auto& list = Child<QTableWidget>(window, u"lvMailaddress");
  auto* box = qobject_cast<QLineEdit*>(list.indexWidget(list.currentIndex()));
  QWidget* offers = box->completer()->popup();
  ASSERT_TRUE(WaitFor([offers] { return offers->isVisible(); }));
  QTest::keyClick(offers, Qt::Key_Down);
  QTest::keyClick(offers, Qt::Key_Return);
  Type(Child<QLineEdit>(window, u"txSubject"), QStringLiteral("御見積"));
  EXPECT_TRUE(SentBy(window).contains(" suzuki@example.jp "));
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() == nullptr; }));
}

void DayTest::UseSecondProfile() {
  NewObject(kNewProfile, [](ObjectsWindow& window) {
    Type(Child<QLineEdit>(window, u"txObject"), QStringLiteral("私用"));
  });
  QString last;
  const auto logIn = [this, &last](const QString& name, const QString& password) {
    StartProgram();
    auto& profiles = Child<QComboBox>(*TopLevel<LoginWindow>(), u"cbProfile");
    last = profiles.currentText();
    profiles.setCurrentIndex(profiles.findText(name));
    LogInWith(password);
  };
  EndProgram();
  // The first time the password is asked for once more, as it makes the files.
  const auto repeat = [](const QString& again) {
    return [again](QInputDialog& box) {
      test::TypeText(*box.findChild<QLineEdit*>(), again);
      box.accept();
    };
  };
  EXPECT_TRUE(InModal<QInputDialog>([&] { logIn(QStringLiteral("私用"), QStringLiteral("pw")); },
                                    repeat(QStringLiteral("pw"))));
  AwaitInbox();
  EXPECT_EQ(Stored(QStringLiteral("1 = 1")), 0);
  EndProgram();
  EXPECT_TRUE(NextMessageBox([&] {
                logIn(QStringLiteral("私用"), QStringLiteral("wrong"));
              }).contains(QStringLiteral("ログインできませんでした")));
  LogInWith(QStringLiteral("pw"));
  AwaitInbox();
  EndProgram();
  logIn(QStringLiteral("Administrator"), QString());
  EXPECT_EQ(last, QStringLiteral("私用"));
  AwaitInbox();
  EXPECT_EQ(Stored(QStringLiteral("STATUS = 4")), kMorning + 2);
  EXPECT_EQ(Stored(QStringLiteral("STATUS IN (1, 2)")), 0);
}

TEST_F(DayTest, FromTheFirstStartToTheSecondProfile) {
  ASSERT_TRUE(sink_.Start());
  for (int i = 1; i <= kMorning; ++i) {
    const QByteArray number = QByteArray::number(i).rightJustified(3, '0');
    dovecot_.AddMessage("m" + number, Mail("m" + number));
  }
  ASSERT_TRUE(dovecot_.Start());
  using Hour = void (DayTest::*)();
  for (const Hour hour :
       {&DayTest::SetUpAccount, &DayTest::ReadAndAnswer, &DayTest::DraftAndSendAgain,
        &DayTest::SendReceipt, &DayTest::StopByRule, &DayTest::SortIntoFolder,
        &DayTest::WriteToTheBook, &DayTest::UseSecondProfile}) {
    (this->*hour)();
    if (HasFailure()) return;
  }
  // What was sent, and nothing twice: the answer, the forward, the draft and again, the receipt and
  // the one to the book's address.
  EXPECT_EQ(sink_.Messages().size(), 6);
}

}  // namespace
}  // namespace vorn
