// What the windows show of messages whose sending went wrong or goes on while they are open.

#include "auxiliary/window/console_window.h"
#include "events/event_record.h"
#include "mail/store/answer_notes.h"
#include "mail/store/drafts.h"
#include "mail/store/outbox.h"
#include "mail/window/fields/address_list.h"
#include "objects/account.h"
#include "objects/object_types.h"
#include "objects/select_objects.h"
#include "objects/window/objects_window.h"
#include "window/message_window_fixture.h"

namespace vorn {
namespace {

using test::Fault;

class SendingWindowTest : public MessageWindowTest {
 protected:
  static QPushButton& Button(const MessageWindow& window, const char16_t* name) {
    return *window.findChild<QPushButton*>(QString::fromUtf16(name));
  }
  static bool ShowsDoubt(const MessageWindow& window) {
    return Button(window, u"cmKeepAsSent").isVisible();
  }
  void CloseAndWait(MessageWindow& window) {
    window.close();
    EXPECT_TRUE(Gone());
  }
  Outbox TheOutbox() const { return {Context(), MailDatabasePath(Context())}; }
  bool Status(const SerialId& serial, int status) const {
    return WaitFor([&] { return Column(serial, QStringLiteral("STATUS")).toInt() == status; });
  }
  void RunPlan() {
    EXPECT_TRUE(WaitFor([this] { return program_->Parent()->Traffic().Plan().IsEmpty(); }));
  }
};

TEST_F(SendingWindowTest, TheUserDecidesOnAMessageThatMayHaveArrived) {
  smtp_.Faults = {{Fault::Kind::Cut, ".", 1, 0, {}}, {Fault::Kind::Cut, ".", 2, 0, {}}};
  SerialIds serials{Store(kDraft, 2), Store(kDraft, 2)};
  program_->Parent()->Mail().SendAndReceive();
  ASSERT_TRUE(WaitFor([this] { return TheOutbox().Doubtful()->size() == 2; }));
  RunPlan();
  EXPECT_EQ(smtp_.Messages().size(), 2);
  smtp_.Faults.clear();

  MessageWindow& again = Open(serials[0]);
  ASSERT_TRUE(ShowsDoubt(again));
  const QString text = again.findChild<QLabel*>(QStringLiteral("lbDoubt"))->text();
  EXPECT_TRUE(text.contains(QStringLiteral("127.0.0.1"))) << text.toStdString();
  Press(Button(again, u"cmSendAgain"));
  EXPECT_TRUE(Status(serials[0], 3));
  EXPECT_EQ(smtp_.Messages().size(), 3);
  EXPECT_TRUE(WaitFor([&again] {
    return !again.findChild<QAction*>(QStringLiteral("mailupdelete"))->isVisible();
  })) << "the window does not go on to say that it waits";
  CloseAndWait(again);

  MessageWindow& keep = Open(serials[1]);
  Press(Button(keep, u"cmKeepAsSent"));
  EXPECT_TRUE(Status(serials[1], 3));
  EXPECT_FALSE(ShowsDoubt(keep));
  CloseAndWait(keep);
  RunPlan();
  EXPECT_EQ(smtp_.Messages().size(), 3);
}

TEST_F(SendingWindowTest, ADeathInTheMiddleOfSendingIsToldAtTheNextStart) {
  const SerialId serial = Store(kDraft, 2);
  const auto read = TheOutbox().Read(serial);
  ASSERT_TRUE(read && read->reading == Outbox::Reading::Ready);
  ASSERT_EQ(
      TheOutbox().BeginHandover(serial, read->message.version, QStringLiteral("mail.example")),
      Outbox::Claim::Taken);
  EndProgram();
  QString question;
  EXPECT_TRUE(InModal<QMessageBox>(
      [this] {
        StartProgram();
        LogInWith(QString());
      },
      [&question](QMessageBox& box) {
        question = box.text();
        QTest::keyClick(&box, Qt::Key_Return);
      }));
  EXPECT_TRUE(question.contains(QStringLiteral("1通"))) << question.toStdString();
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
  EXPECT_TRUE(ShowsDoubt(*TopLevel<MessageWindow>()));
  CloseAndWait(*TopLevel<MessageWindow>());
  program_->Parent()->Mail().SendAndReceive();
  RunPlan();
  EXPECT_EQ(smtp_.Messages().size(), 0);
}

// Also where the answer is stored first, by the user or after a crash, and sent on another day.
TEST_F(SendingWindowTest, WhatIsAnsweredIsMarkedWhenTheAnswerGoesOut) {
  for (const auto& [mode, mark] :
       {std::pair{OpenMode::Reply, kFlagAnswered}, {OpenMode::Forward, kFlagForwarded}}) {
    SCOPED_TRACE(mark);
    const SerialId original = Store(kPlain, kStatusReceived);
    const auto isMarked = [&, mark = mark] {
      return FlagString(Column(original, QStringLiteral("FIELD_FLAG")).toString()).Has(mark);
    };
    MessageWindow& answer = Open(original);
    answer.TurnInto(mode);
    const SerialId serial = answer.Tag();
    Child<AddressList>(answer, u"lvMailaddress")
        .Add({QStringLiteral("TO"), QStringLiteral("b@example.jp"), {}});
    answer.SetEdited(true);
    InModal<QMessageBox>([&answer] { answer.close(); },
                         [](QMessageBox& box) { box.button(QMessageBox::Yes)->click(); });
    ASSERT_TRUE(Gone());
    EXPECT_FALSE(isMarked()) << "nothing has gone out";
    QMetaObject::invokeMethod(program_->Parent(), "AskAtStart");
    MessageWindow& again = Open(serial);
    again.findChild<QAction*>(QStringLiteral("mailup"))->trigger();
    ASSERT_TRUE(Gone());
    EXPECT_TRUE(isMarked());
    EXPECT_EQ(AnswerNotes::Find(Context(), serial), std::nullopt);
  }
}

TEST_F(SendingWindowTest, LinesAreCountedAndWrappedWhereTheSettingSaysSo) {
  const QString longLine = QStringLiteral("abcd ").repeated(29) + QStringLiteral("あ");
  for (const bool wraps : {false, true}) {
    Settings(Context()).Bag()->Let(QStringLiteral("WrapLines"), wraps);
    MessageWindow& window = OpenStored(kDraft, 1);
    auto& text = Child<QPlainTextEdit>(window, u"txMemo");
    text.setPlainText(longLine + QStringLiteral("\nab"));
    const auto& line = Child<QLabel>(window, u"lbLine");
    EXPECT_TRUE(line.isVisible());
    EXPECT_EQ(line.text(), QStringLiteral("この行は146文字、147桁"));
    text.moveCursor(QTextCursor::End);
    EXPECT_EQ(line.text(), QStringLiteral("この行は2文字、2桁"));
    // What is put aside has its paragraphs as they were written.
    const SerialId serial = window.Tag();
    QTest::keyClicks(&text, QStringLiteral("c"));
    window.close();
    ASSERT_TRUE(Gone());
    MessageWindow& again = Open(serial);
    EXPECT_TRUE(Child<QPlainTextEdit>(again, u"txMemo").toPlainText().startsWith(longLine));
    const qsizetype before = smtp_.Messages().size();
    again.findChild<QAction*>(QStringLiteral("mailup"))->trigger();
    EXPECT_TRUE(Gone());
    ASSERT_TRUE(WaitFor([&] { return smtp_.Messages().size() > before; }));
    RunPlan();
    const QByteArrayList sent = smtp_.Messages().last().source.split('\n');
    EXPECT_EQ(sent.contains(QByteArray("abcd ").repeated(14).trimmed() + "\r"), wraps);
  }
  MessageWindow& read = OpenStored(kPlain, 4);
  EXPECT_FALSE(Child<QLabel>(read, u"lbLine").isVisible());
  CloseAndWait(read);
}

TEST_F(SendingWindowTest, WithoutAnAccountTheMessageStaysInItsWindow) {
  const QByteArray alias =
      "From: alias@example.jp\r\nTo: a@example.jp\r\nSubject: s\r\n\r\ntext\r\n.\r\n";
  const SerialId serial = Store(alias, 1);
  MessageWindow& window = Open(serial);
  const auto send = [&window] { window.findChild<QAction*>(QStringLiteral("mailup"))->trigger(); };
  EXPECT_TRUE(InModal<ConsoleWindow>(
      send, [](ConsoleWindow& choice) { QTest::keyClick(&choice, Qt::Key_Escape); }));
  EXPECT_TRUE(window.isVisible());
  EXPECT_TRUE(Status(serial, 1));
  EXPECT_TRUE(InModal<ConsoleWindow>(send, [](ConsoleWindow& choice) {
    auto& tree = Child<QTreeWidget>(choice, u"TreeView1");
    tree.setCurrentItem(tree.topLevelItem(0)->childCount() > 0 ? tree.topLevelItem(0)->child(0)
                                                               : tree.topLevelItem(0));
    QTest::keyClick(&choice, Qt::Key_Return);
  }));
  EXPECT_TRUE(Gone());
  EXPECT_TRUE(Status(serial, 3));  // without another question
  ASSERT_EQ(smtp_.Messages().size(), 1);
  EXPECT_TRUE(smtp_.Messages()[0].source.contains("From: alias@example.jp\r\n"));
  EXPECT_TRUE(smtp_.Messages()[0].source.contains("Sender: "));
}

TEST_F(SendingWindowTest, TheSignatureIsTheSendersAlsoWhenItsAddressIsTypedAnew) {
  SelectObjects(Context().Objects, *Context().Session, object_type::kAccount)
      ->First()
      ->Let(QStringLiteral("Signature"), QStringLiteral("山田"));
  MessageWindow& window = New();
  auto& memo = Child<QPlainTextEdit>(window, u"txMemo");
  EXPECT_TRUE(memo.toPlainText().contains(QStringLiteral("-- \n山田")));
  auto& rows = Child<QTableWidget>(window, u"lvMailaddress");
  rows.setCurrentCell(0, 1);
  rows.editItem(rows.item(0, 1));
  auto& box = Child<QLineEdit>(window, u"txMailaddress");
  Type(box, QStringLiteral("y@exam"));
  EXPECT_TRUE(memo.toPlainText().contains(QStringLiteral("山田")));
  Type(box, QStringLiteral("y@example.org"));
  QTest::keyClick(&box, Qt::Key_Tab);
  EXPECT_EQ(memo.toPlainText().count(QStringLiteral("山田")), 1);
}

TEST_F(SendingWindowTest, WhoHasNoAccountIsToldWhenHeBeginsToWrite) {
  const DiskPtr account =
      SelectObjects(Context().Objects, *Context().Session, object_type::kAccount)->First();
  const auto use = [&account](bool isUsed) {
    account->Let(QStringLiteral("Enabled"), isUsed);
    account->Let(QStringLiteral("Default"), isUsed);
  };
  use(false);
  MessageWindow& window = OpenStored("To: a@example.jp\r\nSubject: s\r\n\r\ntext\r\n.\r\n", 1);
  const auto& notice = *window.findChild<QFrame*>(QStringLiteral("frNoAccount"));
  EXPECT_TRUE(notice.isVisible());
  // Also on a small screen with large letters the text has room.
  window.resize(640, 330);
  test::RunPosted();
  const auto& memo = Child<QPlainTextEdit>(window, u"txMemo");
  EXPECT_EQ(window.height(), 330);
  EXPECT_GE(memo.viewport()->height(), 5 * memo.fontMetrics().lineSpacing());
  // Who sends all the same is led to it, and back.
  const QString told = NextMessageBox(
      [&window] { window.findChild<QAction*>(QStringLiteral("mailup"))->trigger(); });
  EXPECT_TRUE(told.startsWith(u"送信者(FROM)が不明です。")) << told.toStdString();
  QPushButton& make = Button(window, u"cmMakeAccount");
  EXPECT_EQ(window.focusWidget(), &make);
  window.activateWindow();
  ASSERT_TRUE(WaitFor([&window] { return window.isActiveWindow(); }));
  EXPECT_TRUE(InModal<ObjectsWindow>([&make] { make.click(); },
                                     [&window](ObjectsWindow& made) {
                                       EXPECT_EQ(made.parentWidget(), &window);
                                       QTest::keyClick(&made, Qt::Key_Escape);
                                     }));
  program_->Parent()->activateWindow();
  use(true);
  program_->Parent()->RefreshNode(account->Serial());
  EXPECT_TRUE(WaitFor([&notice] { return !notice.isVisible(); }));
  const auto& list = Child<QTableWidget>(window, u"lvMailaddress");
  QStringList addresses;
  for (int row = 0; row < list.rowCount(); ++row) {
    if (list.item(row, 1) != nullptr) addresses.append(list.item(row, 1)->text());
  }
  EXPECT_EQ(addresses.filter(Account(account).Address()).size(), 1) << "who sends it";
  EXPECT_TRUE(WaitFor([&window] { return window.isActiveWindow(); })) << "who asked for it";
  delete &window;  // with what would be asked of it
}

// Mail arrives, or another window stores something, while the question for the account is open.
TEST_F(SendingWindowTest, WhatChangesDuringAQuestionDoesNotUndoTheMessage) {
  const SerialId serial =
      Store("From: alias@example.jp\r\nTo: a@example.jp\r\nSubject: s\r\n\r\nformer\r\n.\r\n", 1);
  MessageWindow& window = Open(serial);
  Type(Child<QPlainTextEdit>(window, u"txMemo"), QStringLiteral("what was written now"));
  EXPECT_TRUE(InModal<ConsoleWindow>(
      [&window] { window.findChild<QAction*>(QStringLiteral("mailup"))->trigger(); },
      [this, &window, &serial](ConsoleWindow& choice) {
        window.KeepDraftNow();  // as when the session ends now
        EXPECT_EQ(Drafts::LeftBehind(Context()), SerialIds{serial});
        program_->Parent()->Pages().Messages().MessageStored();
        test::RunFor(300);  // the program looks for such changes several times a second
        QTest::keyClick(&choice, Qt::Key_Return);
      }));
  EXPECT_TRUE(Gone());
  EXPECT_TRUE(Status(serial, 3));
  ASSERT_EQ(smtp_.Messages().size(), 1);
  EXPECT_TRUE(smtp_.Messages()[0].source.contains("what was written now"));
}

// The button that sends stands where the one that answers stood.
TEST_F(SendingWindowTest, ADoubleClickOnReplyingSendsNothing) {
  MessageWindow& window = OpenStored(kPlain, kStatusReceived);
  auto& toolbar = *window.findChild<QToolBar*>(QStringLiteral("tbMenu"));
  const QAction* reply = window.findChild<QAction*>(QStringLiteral("replay"));
  const QPoint at = toolbar.actionGeometry(const_cast<QAction*>(reply)).center();
  QCursor::setPos(toolbar.mapToGlobal(at));
  QTest::mouseClick(toolbar.childAt(at), Qt::LeftButton);
  ASSERT_TRUE(WaitFor([&] { return toolbar.childAt(at) != nullptr && window.isVisible(); }));
  EXPECT_EQ(Child<QPlainTextEdit>(window, u"txMemo").isReadOnly(), false);
  QTest::mouseDClick(toolbar.childAt(at), Qt::LeftButton);
  QTest::mouseClick(toolbar.childAt(at), Qt::LeftButton);
  // Nor does a click that comes later because nothing seemed to happen.
  test::RunFor(2 * QApplication::doubleClickInterval());
  QTest::mouseClick(toolbar.childAt(at), Qt::LeftButton);
  test::RunPosted();
  EXPECT_TRUE(window.isVisible());
  EXPECT_TRUE(smtp_.Messages().isEmpty());
  // Who has written something means it.
  QInputMethodEvent typed;
  typed.setCommitString(QStringLiteral("返事"));
  QCoreApplication::sendEvent(&Child<QPlainTextEdit>(window, u"txMemo"), &typed);
  QTest::mouseClick(toolbar.childAt(at), Qt::LeftButton);
  EXPECT_TRUE(Gone());
  EXPECT_TRUE(WaitFor([this] { return smtp_.Messages().size() == 1; }));
}

// What is typed into a message while the question comes up is no password.
TEST_F(SendingWindowTest, APasswordQuestionTakesNoKeysFromAMessage) {
  MessageWindow& window = New();
  window.activateWindow();
  ASSERT_TRUE(WaitFor([&window] { return window.isActiveWindow(); }));
  QString answer = QStringLiteral("unasked");
  EXPECT_TRUE(InModal<ConsoleWindow>(
      [&] {
        answer = program_->Parent()->Mail().AskPassword({QStringLiteral("a"), true, true});
      },
      [](ConsoleWindow& question) {
        QWidget* focus = question.focusWidget() == nullptr ? &question : question.focusWidget();
        QTest::keyClicks(focus, QStringLiteral("private words"));
        QTest::keyClick(focus, Qt::Key_Return);
        if (question.isVisible()) question.close();
      }));
  EXPECT_EQ(answer, QString());
  window.close();  // nothing has been written, so that nothing is asked
  EXPECT_TRUE(Gone());
}

TEST_F(SendingWindowTest, ARefusedRecipientIsMarkedInTheMessage) {
  smtp_.Replies = {{"RCPT", "550 no such user\r\n"}};
  Store(kDraft, 2);
  program_->Parent()->Mail().SendAndReceive();
  auto* tree = program_->Parent()->findChild<QTreeWidget*>(QStringLiteral("tvConsole"));
  const auto event = [tree] {
    return tree->findItems(QStringLiteral("draft"), Qt::MatchStartsWith | Qt::MatchRecursive)
        .value(0);
  };
  ASSERT_TRUE(WaitFor([&] { return event() != nullptr; }));
  RunPlan();
  tree->setFocus();
  tree->setCurrentItem(event());
  QTest::keyClick(tree, Qt::Key_Return);
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
  const MessageWindow& window = *TopLevel<MessageWindow>();
  const auto* list = window.findChild<QTableWidget*>(QStringLiteral("lvMailaddress"));
  QStringList marked;
  for (int row = 0; row < list->rowCount(); ++row) {
    if (!list->item(row, 1)->icon().isNull()) marked.append(list->item(row, 1)->text());
  }
  EXPECT_EQ(marked, QStringList{QStringLiteral("a@example.jp")});
  const auto* reason = window.findChild<QFrame*>(QStringLiteral("frRefused"))->findChild<QLabel*>();
  EXPECT_TRUE(reason->text().contains(QStringLiteral("550 no such user")));
  EXPECT_TRUE(reason->isVisible());
  const QTreeWidgetItem* waiting =
      tree->findItems(QStringLiteral("待ち"), Qt::MatchExactly | Qt::MatchRecursive).value(0);
  EXPECT_TRUE(WaitFor([waiting] { return waiting->text(1) == QStringLiteral("!1"); }))
      << waiting->text(1).toStdString();
  // What is to be mended is edited, with the reason in sight, and sent again.
  EXPECT_EQ(window.findChild<QAction*>(QStringLiteral("mailupdelete"))->text(),
            QStringLiteral("編集して再送"));
  Button(window, u"cmMend").click();
  EXPECT_FALSE(Child<QPlainTextEdit>(window, u"txMemo").isReadOnly());
  EXPECT_TRUE(reason->isVisible());
  EXPECT_FALSE(Button(window, u"cmMend").isVisible()) << "it is edited already";
  EXPECT_TRUE(list->isAncestorOf(window.focusWidget()));
  const auto* open = qobject_cast<QLineEdit*>(list->indexWidget(list->currentIndex()));
  ASSERT_NE(open, nullptr);
  EXPECT_EQ(open->selectedText(), QStringLiteral("a@example.jp")) << "who was refused";
  smtp_.Replies.clear();
  window.findChild<QAction*>(QStringLiteral("mailup"))->trigger();
  EXPECT_TRUE(Gone());
  const auto text = [&] {
    const SerialId key = SerialIdOf(event()->data(0, Qt::UserRole));
    const DiskPtr record = program_->Parent()->Mail().Events().Find(key);
    return record == nullptr ? QString() : EventRecord(*record).Text();
  };
  EXPECT_TRUE(WaitFor([&] { return text().startsWith(u"その後、送信しました。"); }))
      << text().toStdString();
}

// The message would be in doubt at the next start.
TEST_F(SendingWindowTest, QuittingInTheMiddleOfSendingAsks) {
  smtp_.Faults = {{Fault::Kind::Stall, ".", 1, 0, {}}};
  Store(kDraft, 2);
  ParentWindow& parent = *program_->Parent();
  parent.Mail().SendAndReceive();
  ASSERT_TRUE(WaitFor([this] { return smtp_.Messages().size() == 1; }));
  for (const int key : {Qt::Key_Escape, Qt::Key_Return}) {
    const QString question = NextMessageBox([&parent] { parent.close(); }, key);
    EXPECT_TRUE(question.contains(QStringLiteral("送信し終えていない"))) << question.toStdString();
    EXPECT_TRUE(parent.isVisible());
    EXPECT_TRUE(parent.Traffic().Control().Busy());
  }
  for (QAction* entry : parent.findChild<QMenu*>(QStringLiteral("menuTools"))->actions()) {
    if (entry->text().startsWith(QStringLiteral("送受信の中止"))) entry->trigger();
  };
  RunPlan();
  EXPECT_NE(program_->Parent(), nullptr) << "cancelled by the user, who sees what came of it";
}

// Ctrl+Return and Ctrl+Q in one go, before anything has begun.
TEST_F(SendingWindowTest, WhatWasSentBeforeQuittingIsSentFirst) {
  const auto send = [this] {
    smtp_.Replies.clear();
    QTest::keyClick(&OpenStored(kDraft, 1), Qt::Key_Return, Qt::ControlModifier);
  };
  const auto quit = [this](int key) {
    return NextMessageBox([this] { program_->Parent()->close(); }, key);
  };
  send();
  EXPECT_FALSE(quit(Qt::Key_Escape).isEmpty());
  RunPlan();
  ASSERT_NE(program_->Parent(), nullptr);
  EXPECT_EQ(smtp_.Messages().size(), 1);

  send();
  smtp_.Replies = {{"RCPT", "550 no such user\r\n"}};
  EXPECT_FALSE(quit(Qt::Key_Return).isEmpty());
  RunPlan();
  ASSERT_NE(program_->Parent(), nullptr) << "the user would not learn of the refusal";

  send();
  EXPECT_FALSE(quit(Qt::Key_Return).isEmpty());
  ASSERT_TRUE(WaitFor([this] { return program_->Parent() == nullptr; }));
  EXPECT_EQ(smtp_.Messages().size(), 2);
}

}  // namespace
}  // namespace vorn
