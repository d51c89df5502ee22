// The message window in the running program: its menus and buttons in every status, its closing
// rules, drafts, receipts and addresses.

#include "auxiliary/window/address_window.h"
#include "auxiliary/window/console_window.h"
#include "frame/window/notices/status_bar.h"
#include "mail/store/drafts.h"
#include "mail/window/fields/attachment_input.h"
#include "mail/window/fields/attachment_list.h"
#include "objects/object_types.h"
#include "window/message_window_fixture.h"

namespace vorn {
namespace {

TEST_F(MessageWindowTest, ButtonsAndMenusFollowTheStatus) {
  const std::pair<int, QStringList> statuses[] = {
      {1,
       {QStringLiteral("mailup"), QStringLiteral("file"), QStringLiteral("clip"),
        QStringLiteral("edit")}},
      {4, {QStringLiteral("replay"), QStringLiteral("file")}}};
  for (const auto& [status, buttons] : statuses) {
    MessageWindow& window = OpenStored(status == 4 ? kPlain : kDraft, status);
    EXPECT_EQ(Buttons(window), buttons) << status;
    EXPECT_EQ(Child<QPlainTextEdit>(window, u"txMemo").isReadOnly(), status != 1);
    window.close();
    ASSERT_TRUE(Gone());
  }
  MessageWindow& window = OpenStored(kPlain, 4);
  EXPECT_EQ(window.windowTitle(), QStringLiteral("hello プロパティ"));
  const QStringList files = Texts(Menu(window, u"menuFiles"));
  EXPECT_EQ(files.value(2), QStringLiteral("くずかご(&B)"));
  EXPECT_EQ(files.value(4), QStringLiteral("ファイルに保存(&F).."));
  EXPECT_EQ(files.value(6), QStringLiteral("印刷(&P).."));
  EXPECT_EQ(files.value(8), QStringLiteral("閉じる(&X)"));
  const QStringList messages = Texts(Menu(window, u"menuFilesMessages"));
  EXPECT_EQ(messages.value(5), QStringLiteral("再送信(&T)"));
  EXPECT_EQ(messages.value(7), QStringLiteral("削除(&D)"));
  EXPECT_EQ(messages.value(9), QStringLiteral("保存フォルダ(&F).."));
  EXPECT_EQ(Texts(Menu(window, u"menuEdits")).value(3), QStringLiteral("貼り付け(&P)"));
  EXPECT_EQ(Texts(Menu(window, u"menuEditCharsets")).value(4),
            QStringLiteral("適切な文字セット(&A)"));
  // The next message is begun from this one.
  QTest::keyClick(&window, Qt::Key_N, Qt::ControlModifier);
  EXPECT_TRUE(WaitFor([&window] { return OtherThan(window) != nullptr; }));
  OtherThan(window)->close();
  Menu(window, u"menuFiles").actions()[8]->trigger();
  EXPECT_TRUE(Gone());
}

TEST_F(MessageWindowTest, ANewMessageIsAskedAboutAndStoredOnlyOnYes) {
  const int before = Count();
  for (const auto& [key, stored, open] :
       {std::tuple{Qt::Key_Escape, 0, true}, {Qt::Key_N, 0, false}, {Qt::Key_Y, 1, false}}) {
    MessageWindow& window = New();
    Type(Child<QLineEdit>(window, u"txSubject"), QStringLiteral("書きかけ"));
    EXPECT_EQ(window.windowTitle(), QStringLiteral("書きかけ プロパティ"));
    const auto answer = key == Qt::Key_N   ? QMessageBox::No
                        : key == Qt::Key_Y ? QMessageBox::Yes
                                           : QMessageBox::Cancel;
    EXPECT_EQ(test::AnswerBox([&window] { window.close(); }, answer),
              QStringLiteral("このメッセージを保存します。よろしいですか？"));
    EXPECT_EQ(Count(), before + stored);
    EXPECT_EQ(TopLevel<MessageWindow>() != nullptr, open);
    if (open) {
      CloseWith(window, QMessageBox::No);
    }
    ASSERT_TRUE(Gone());
  }
}

TEST_F(MessageWindowTest, AnAnswerThatNobodyTouchedIsNotAskedAbout) {
  const int before = Count();
  for (const auto touch : {false, true}) {
    MessageWindow& window = OpenStored(kPlain, kStatusReceived);
    window.findChild<QAction*>(QStringLiteral("replay"))->trigger();
    ASSERT_FALSE(Child<QPlainTextEdit>(window, u"txMemo").isReadOnly());
    test::RunPosted();
    if (touch) {
      Type(Child<QLineEdit>(window, u"txSubject"), QStringLiteral("Re: 会議"));
      CloseWith(window, QMessageBox::No);
    } else {
      window.close();
    }
    ASSERT_TRUE(Gone());
  }
  EXPECT_EQ(Count(), before + 2);  // the originals
}

TEST_F(MessageWindowTest, WhatKeepsAMessageFromBeingSentIsTold) {
  MessageWindow& window = New();
  QAction* send = Menu(window, u"menuFilesMessages").actions()[0];
  EXPECT_EQ(NextMessageBox([send] { send->trigger(); }),
            QStringLiteral("宛て先(TO,CC,BCC)が不明です。送信するには宛て先を指定して下さい。"));
  auto& list = Child<QTableWidget>(window, u"lvMailaddress");
  const int last = list.rowCount() - 1;
  list.item(last, 1)->setText(QStringLiteral("a@example.jp; 山田 <b@example.jp>"));
  ASSERT_EQ(list.rowCount(), last + 3);  // two addresses and the row for the next one
  EXPECT_EQ(list.item(last + 1, 1)->text(), QStringLiteral("山田 <b@example.jp>"));
  for (const int row : {last, last + 1}) {  // blind copies alone are enough
    auto* kind = qobject_cast<QComboBox*>(list.cellWidget(row, 0));
    kind->setCurrentIndex(kind->findData(QStringLiteral("BC")));
  }
  EXPECT_EQ(test::AnswerBox([send] { send->trigger(); }, QMessageBox::No),
            QStringLiteral("件名が設定されていません。送信してよろしいですか？"));
  EXPECT_TRUE(window.isVisible());
  Type(Child<QLineEdit>(window, u"txSubject"), QStringLiteral("件名🍣"));
  const QString path = File("資料 ①.txt", "contents\r\n");
  Child<AttachmentList>(window, u"lvClip").Input().AddFiles({path});
  QFile::remove(path);
  EXPECT_TRUE(
      NextMessageBox([send] { send->trigger(); }).contains(QStringLiteral("読み込めません")));
  ASSERT_TRUE(window.isVisible());  // the text stays
  File("資料 ①.txt", "contents\r\n");
  for (int refusal = 0; refusal < 2; ++refusal) {  // a "no" accepts nothing
    EXPECT_TRUE(NextMessageBox([send] { send->trigger(); }, Qt::Key_Escape)
                    .contains(QStringLiteral("変わって")));
    ASSERT_TRUE(window.isVisible());
  }
  test::AnswerBox([send] { send->trigger(); }, QMessageBox::Yes);
  ASSERT_TRUE(WaitFor([this] { return smtp_.Messages().size() == 1; }));
  EXPECT_EQ(smtp_.Messages()[0].recipients, (QList<QByteArray>{"a@example.jp", "b@example.jp"}));
  EXPECT_TRUE(Gone());
}

TEST_F(MessageWindowTest, AWaitingMessageBecomesEditableWhenItsSendingIsCancelled) {
  const SerialId serial = Store(kDraft, 2);
  MessageWindow& window = Open(serial);
  QAction* send = Menu(window, u"menuFilesMessages").actions()[0];
  const auto answer = [send](QMessageBox::StandardButton button) {
    return InModal<QMessageBox>(
        [send] { send->trigger(); },
        [button](QMessageBox& box) {
          EXPECT_TRUE(box.text().startsWith(QStringLiteral("メッセージの送信をキャンセル")));
          EXPECT_TRUE(box.defaultButton() == box.button(QMessageBox::Cancel));
          box.button(button)->click();
        });
  };
  EXPECT_TRUE(answer(QMessageBox::Cancel));
  EXPECT_EQ(Column(serial, QStringLiteral("STATUS")).toInt(), 2);
  EXPECT_TRUE(answer(QMessageBox::Ok));
  EXPECT_EQ(Column(serial, QStringLiteral("STATUS")).toInt(), 1);
  auto& memo = Child<QPlainTextEdit>(window, u"txMemo");
  EXPECT_FALSE(memo.isReadOnly());
  memo.setFocus();
  TypeText(memo, QStringLiteral("追記"));
  window.close();
  ASSERT_TRUE(Gone());
  EXPECT_TRUE(MailStore(Context()).LoadMessageSource(Disk(serial))->contains("Content-"));
}

// The boxes that come of an act, each of them confirmed.
QStringList Confirmed(const std::function<void()>& act) {
  QStringList said;
  test::Answering<QMessageBox>(act, [&said](QMessageBox& box) {
    said.append(box.text());
    QAbstractButton* ok = box.button(QMessageBox::Ok);
    ok == nullptr ? box.reject() : ok->click();
  });
  return said;
}

TEST_F(MessageWindowTest, WhyASendingCannotBeCancelledIsTold) {
  const SerialId serial = Store(kDraft, kStatusWaiting);
  MessageWindow& window = Open(serial);
  {
    const OpenedDatabase mail(Context(), DatabaseKind::Mail);
    ASSERT_TRUE(Context().Data.Execute(
        QStringLiteral("INSERT INTO send_attempt (SERIALID, STATE, STARTED, SERVER, REPLY) "
                       "VALUES('%1',1,'','','')")
            .arg(serial.Text())));
  }
  QAction* send = Menu(window, u"menuFilesMessages").actions()[0];
  EXPECT_TRUE(Confirmed([send] { send->trigger(); }).value(1).startsWith(u"送信をキャンセルでき"));
}

// Erased in the list of what waits, by another window or another program.
TEST_F(MessageWindowTest, AWaitingMessageThatWasErasedOffersNothing) {
  for (const bool isTold : {true, false}) {
    SCOPED_TRACE(isTold);
    const SerialId serial = Store(kDraft, kStatusWaiting);
    MessageWindow& window = Open(serial);
    Disk request(serial);
    request.Let(QStringLiteral("erase"), true);
    EXPECT_TRUE(MailStore(Context()).DeleteMessage(request));
    if (isTold) {
      window.MessagesChanged();
    } else {
      QAction* send = Menu(window, u"menuFilesMessages").actions()[0];
      const QStringList said = Confirmed([send] { send->trigger(); });
      EXPECT_EQ(said.size(), 2);
      EXPECT_TRUE(said.value(1).contains(u"削除されています"));
    }
    EXPECT_EQ(Child<QTableWidget>(window, u"lvMailaddress").rowCount(), 0);
    EXPECT_FALSE(Menu(window, u"menuFilesMessages").actions()[0]->isEnabled());
    EXPECT_FALSE(Buttons(window).contains(QStringLiteral("mailup")));
    window.close();
    EXPECT_TRUE(Gone());
  }
}

// What was changed is stored too when the window goes on to another message.
TEST_F(MessageWindowTest, TheNextMessageLosesNothingOfTheOneBefore) {
  const SerialId first = Store(kPlain, 4);
  const SerialId second = Store(kPlain, 4);
  program_->Parent()->Pages().Messages().MessageStored();
  AwaitInbox();
  MessageWindow& window = Open(first);
  Menu(window, u"menuFiles").actions()[2]->trigger();  // into the dust
  QTest::keyClick(&window, Qt::Key_PageDown, Qt::ControlModifier);
  ASSERT_TRUE(WaitFor([&] { return window.Tag() == second; }));
  EXPECT_EQ(Column(first, QStringLiteral("STATUS")).toInt(), -4);
  EXPECT_EQ(Column(second, QStringLiteral("STATUS")).toInt(), 4);
  EXPECT_TRUE(WaitFor([this] { return Script(QStringLiteral("vorn.count()")).toInt() == 1; }));
}

// A kind alone is an edit.
TEST_F(MessageWindowTest, AChangedKindIsKept) {
  const SerialId serial = Store(kDraft, 1);
  MessageWindow& window = Open(serial);
  auto& list = Child<QTableWidget>(window, u"lvMailaddress");
  for (int row = 0; row < list.rowCount(); ++row) {
    auto* kind = qobject_cast<QComboBox*>(list.cellWidget(row, 0));
    if (kind->currentData().toString() == u"TO" && !list.item(row, 1)->text().isEmpty()) {
      kind->setCurrentIndex(kind->findData(QStringLiteral("CC")));
    }
  }
  window.close();
  EXPECT_TRUE(Gone());
  const QByteArray source = MailStore(Context()).LoadMessageSource(Disk(serial)).ValueOr({});
  EXPECT_TRUE(source.contains("Cc: a@example.jp")) << source.toStdString();
}

TEST_F(MessageWindowTest, DustFoldersAndDeletionAreStoredWhenTheWindowCloses) {
  auto folder = std::make_shared<Disk>(QStringLiteral("01_folder_own"));
  folder->Let(QStringLiteral("FormName"), object_type::kFolder);
  folder->Let(QStringLiteral("Object"), QStringLiteral("仕事@会社"));
  folder->Let(QStringLiteral("Draw"), QStringLiteral("static"));
  Context().Objects.Add(folder);
  const SerialId serial = Store(kPlain, 4);
  MessageWindow& window = Open(serial);
  EXPECT_TRUE(
      InModal<ConsoleWindow>([&] { Menu(window, u"menuFilesMessages").actions()[9]->trigger(); },
                             [](ConsoleWindow& dialog) {
                               EXPECT_EQ(dialog.windowTitle(), QStringLiteral("保存フォルダ"));
                               Child<QListWidget>(dialog, u"ListView1").item(0)->setSelected(true);
                               Press(Child<QPushButton>(dialog, u"cmOk"));
                             }));
  Menu(window, u"menuFiles").actions()[2]->trigger();
  EXPECT_EQ(Column(serial, QStringLiteral("STATUS")).toInt(), 4);
  window.close();
  ASSERT_TRUE(Gone());
  EXPECT_EQ(Column(serial, QStringLiteral("STATUS")).toInt(), -4);
  EXPECT_EQ(MailStore(Context()).LoadMessageSource(Disk(serial)), kPlain);
  // The step that is taken back is this one, and not an earlier one of the list.
  program_->Parent()->findChild<MainStatusBar*>()->TakeBack();
  EXPECT_EQ(Column(serial, QStringLiteral("STATUS")).toInt(), 4);

  MessageWindow& again = Open(serial);
  Menu(again, u"menuFiles").actions()[2]->trigger();
  EXPECT_EQ(test::AnswerBox([&] { Menu(again, u"menuFilesMessages").actions()[7]->trigger(); },
                            QMessageBox::Ok),
            QStringLiteral("メッセージを削除します。よろしいですか？"));
  ASSERT_TRUE(Gone());
  EXPECT_FALSE(Column(serial, QStringLiteral("STATUS")).isValid());
}

TEST_F(MessageWindowTest, ASentMessageInTheDustIsTakenOutToBeSentAgain) {
  const SerialId serial = Store(kDraft, -3);
  MessageWindow& window = Open(serial);
  QAction* send = window.findChild<QAction*>(QStringLiteral("mailup"));
  EXPECT_EQ(NextMessageBox([send] { send->trigger(); }, Qt::Key_Escape),
            QStringLiteral("このメールは、くずかごに入っています。取り出して送信しますか？"));
  EXPECT_TRUE(window.isVisible());
  test::AnswerBox([send] { send->trigger(); }, QMessageBox::Ok);
  ASSERT_TRUE(WaitFor([this] { return smtp_.Messages().size() == 1; }));
  ASSERT_TRUE(WaitFor([&] { return Column(serial, QStringLiteral("STATUS")).toInt() == 3; }));
  EXPECT_TRUE(smtp_.Messages()[0].source.contains("Subject: draft"));
  // From its own folder too it goes once more only when that is meant.
  ASSERT_TRUE(Gone());
  MessageWindow& sent = Open(serial);
  send = sent.findChild<QAction*>(QStringLiteral("mailup"));
  EXPECT_TRUE(NextMessageBox([send] { send->trigger(); }).contains(QStringLiteral("送信済み")));
  EXPECT_TRUE(sent.isVisible());
  sent.close();
  EXPECT_TRUE(Gone());
  EXPECT_EQ(smtp_.Messages().size(), 1);
}

TEST_F(MessageWindowTest, PriorityCharsetAndHeadersGoIntoTheMessage) {
  const SerialId serial = Store(kDraft, 1);
  MessageWindow& window = Open(serial);
  Menu(window, u"menuEditsPrioritys").actions()[0]->trigger();
  Menu(window, u"menuEditCharsets").actions()[2]->trigger();
  auto& headers = Child<QTableWidget>(window, u"lvHeader");
  headers.item(headers.rowCount() - 1, 0)->setText(QStringLiteral("Note: mine"));
  auto& memo = Child<QPlainTextEdit>(window, u"txMemo");
  memo.setFocus();
  TypeText(memo, QStringLiteral("日本"));
  window.close();
  ASSERT_TRUE(Gone());
  const QByteArray source = MailStore(Context()).LoadMessageSource(Disk(serial)).ValueOr({});
  EXPECT_TRUE(source.contains("X-Priority: 1\r\n")) << source.toStdString();
  EXPECT_TRUE(source.contains("X-Note: mine\r\n"));
  EXPECT_TRUE(source.contains("\x93\xFA\x96\x7B"));
  EXPECT_EQ(Column(serial, QStringLiteral("FIELD_FLAG")).toString().mid(1, 1), QStringLiteral("1"));
  // It alone is an edit as well.
  MessageWindow& again = Open(serial);
  Menu(again, u"menuEditsPrioritys").actions()[2]->trigger();
  again.close();
  ASSERT_TRUE(Gone());
  EXPECT_TRUE(
      MailStore(Context()).LoadMessageSource(Disk(serial)).ValueOr({}).contains("X-Priority: 5"));
}

TEST_F(MessageWindowTest, ADraftIsKeptAndOfferedAgain) {
  MessageWindow& window = New();
  auto& memo = Child<QPlainTextEdit>(window, u"txMemo");
  memo.setFocus();
  TypeText(memo, QStringLiteral("消えない🍣"));
  const QString vanishing = File("gone.txt", "contents\r\n");
  const QString kept = File("kept.txt", "contents\r\n");
  Child<AttachmentList>(window, u"lvClip").Input().AddFiles({vanishing, kept});
  QFile::remove(vanishing);
  QDir().mkdir(vanishing);  // the text and the other file count
  QMetaObject::invokeMethod(window.findChild<QTimer*>(QStringLiteral("tmDraft")), "timeout");
  const SerialId serial = window.Tag();
  EXPECT_EQ(Drafts::LeftBehind(Context()), SerialIds{serial});
  QFile::remove(kept);  // what the draft has of it stays there
  // The end of the session keeps a row as well that is being typed.
  auto& list = Child<QTableWidget>(window, u"lvMailaddress");
  const int row = list.rowCount() - 1;
  list.setCurrentCell(row, 1);
  list.editItem(list.item(row, 1));
  TypeText(*list.indexWidget(list.model()->index(row, 1)), QStringLiteral("b@example.jp"));
  program_->Parent()->KeepEverything();
  const DiskPtr draft = Context().Objects.Find(SerialId(QStringLiteral("draft_") + serial.Text()));
  CloseWith(window, QMessageBox::No);
  ASSERT_TRUE(Gone());
  EXPECT_TRUE(Drafts::LeftBehind(Context()).isEmpty());

  // As after a crash: the draft is there, the window is not.
  Context().Objects.Add(draft);
  QStringList told;
  test::Answering<QMessageBox>(
      [this] { QMetaObject::invokeMethod(program_->Parent(), "AskAtStart"); },
      [&told](QMessageBox& box) {
        told.append(box.text());
        QTest::keyClick(&box, Qt::Key_Return);
      });
  ASSERT_EQ(told.size(), 2);
  EXPECT_TRUE(told[0].contains(QStringLiteral("1通")));
  EXPECT_TRUE(told[1].contains(vanishing));
  EXPECT_FALSE(told[1].contains(QStringLiteral("kept.txt")));
  EXPECT_TRUE(Drafts::LeftBehind(Context()).isEmpty());
  EXPECT_EQ(Column(serial, QStringLiteral("STATUS")).toInt(), 1);
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
  MessageWindow& restored = *TopLevel<MessageWindow>();
  EXPECT_EQ(Child<QPlainTextEdit>(restored, u"txMemo").toPlainText().trimmed(),
            QStringLiteral("消えない🍣"));
  EXPECT_EQ(Child<QTableWidget>(restored, u"lvMailaddress").item(1, 1)->text(),
            QStringLiteral("b@example.jp"));
  EXPECT_EQ(Child<AttachmentList>(restored, u"lvClip").count(), 1);
}

// Wherever they are let go, files are attached; their paths went into the text.
TEST_F(MessageWindowTest, FilesAreDroppedAnywhereAndPicturesPasted) {
  MessageWindow& window = New();
  const auto names = [&window] {
    QStringList texts;
    const auto& clips = Child<QListWidget>(window, u"lvClip");
    for (int i = 0; i < clips.count(); ++i)
      texts.append(clips.item(i)->text().section(u'（', 0, 0));
    return texts;
  };
  auto& memo = Child<QPlainTextEdit>(window, u"txMemo");
  int number = 0;
  for (QWidget* target :
       {memo.viewport(), static_cast<QWidget*>(&Child<QLineEdit>(window, u"txSubject")),
        Child<QTableWidget>(window, u"lvMailaddress").viewport(),
        Child<QListWidget>(window, u"lvClip").viewport(), static_cast<QWidget*>(&window)}) {
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(File(QByteArray::number(++number).constData(), "x")),
                   QUrl(QStringLiteral("http://x/y"))});
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(target, &drop);
  }
  EXPECT_EQ(names(), QStringList({QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3"),
                                  QStringLiteral("4"), QStringLiteral("5")}));
  memo.setFocus();
  QImage picture(4, 4, QImage::Format_RGB32);
  picture.fill(Qt::red);
  QApplication::clipboard()->setImage(picture);
  QTest::keyClick(&memo, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(names().last(), QStringLiteral("画像.png"));
  auto* cells = new QMimeData;  // of a table, with their picture
  cells->setText(QStringLiteral("text"));
  cells->setImageData(picture);
  QApplication::clipboard()->setMimeData(cells);
  QTest::keyClick(&memo, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(memo.toPlainText(), QStringLiteral("text"));
  EXPECT_EQ(names().size(), 6);
  // A folder among the files is told, and is no text either.
  auto* mixed = new QMimeData;
  mixed->setUrls({QUrl::fromLocalFile(File("7", "x")), QUrl::fromLocalFile(QDir::tempPath())});
  QApplication::clipboard()->setMimeData(mixed);
  EXPECT_TRUE(NextMessageBox([&memo] {
                QTest::keyClick(&memo, Qt::Key_V, Qt::ControlModifier);
              }).endsWith(QStringLiteral("」はフォルダなので添付できません。")));
  EXPECT_EQ(names().last(), QStringLiteral("7"));
  EXPECT_EQ(memo.toPlainText(), QStringLiteral("text"));
}

TEST_F(MessageWindowTest, TheEditMenuWorksOnTheBoxThatHasTheFocus) {
  MessageWindow& window = OpenStored(kDraft, 1);
  auto& memo = Child<QPlainTextEdit>(window, u"txMemo");
  auto& subject = Child<QLineEdit>(window, u"txSubject");
  const auto edit = [&window](int index) {
    Menu(window, u"menuEdits").actions()[index]->trigger();
  };
  const QStringList texts = Texts(Menu(window, u"menuEdits"));
  const int undo = static_cast<int>(texts.indexOf(QStringLiteral("元に戻す(&U)")));
  subject.setFocus();
  subject.selectAll();
  edit(1);  // copy
  memo.setFocus();
  memo.moveCursor(QTextCursor::Start);
  edit(3);  // paste
  EXPECT_EQ(memo.toPlainText(), QStringLiteral("drafttext\n"));
  edit(undo);
  EXPECT_EQ(memo.toPlainText(), QStringLiteral("text\n"));
  edit(undo + 1);
  EXPECT_EQ(memo.toPlainText(), QStringLiteral("drafttext\n"));
  // By keys as well, and a letter with Alt that stands for nothing is none of the text.
  QTest::keyClick(&memo, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(memo.toPlainText(), QStringLiteral("text\n"));
  QTest::keyClick(&memo, Qt::Key_Y, Qt::ControlModifier);
  QTest::keyClick(&memo, 'q', Qt::AltModifier);
  QTest::keyClick(&subject, 'q', Qt::AltModifier);
  EXPECT_EQ(memo.toPlainText(), QStringLiteral("drafttext\n"));
  EXPECT_EQ(subject.text(), QStringLiteral("draft"));
  memo.setFocus();
  edit(undo + 2);  // everything
  edit(0);         // cut
  EXPECT_EQ(memo.toPlainText(), QString());
  subject.setFocus();
  subject.setCursorPosition(0);
  edit(2);  // delete
  EXPECT_EQ(subject.text(), QStringLiteral("raft"));
  // Files on the clipboard are attached.
  auto* files = new QMimeData;
  files->setUrls({QUrl::fromLocalFile(File("note.txt", "x"))});
  QApplication::clipboard()->setMimeData(files);
  edit(3);
  EXPECT_EQ(Child<AttachmentList>(window, u"lvClip").count(), 1);
}

TEST_F(MessageWindowTest, AnEventsTextAndTheSourceAreShown) {
  const SerialId serial = Store(kPlain, 4);
  program_->Parent()->Mail().AddEvent(kEventError, kEventMessage, serial, QString(),
                                      QStringLiteral("mailup"),
                                      QStringLiteral("送信で使用するアカウントが不明です。"));
  auto* tree = program_->Parent()->findChild<QTreeWidget*>(QStringLiteral("tvConsole"));
  QTreeWidgetItem* event =
      tree->findItems(QStringLiteral("システム"), Qt::MatchStartsWith | Qt::MatchRecursive)
          .value(0);
  ASSERT_NE(event, nullptr);
  test::ClickRow(*tree, event);
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
  MessageWindow& window = *TopLevel<MessageWindow>();
  const auto& tabs = Child<QTabWidget>(window, u"tsPage");
  ASSERT_EQ(tabs.count(), 3);
  EXPECT_EQ(tabs.tabText(2), QStringLiteral("イベント"));
  EXPECT_TRUE(Child<QPlainTextEdit>(window, u"txEventLog")
                  .toPlainText()
                  .contains(QStringLiteral("不明です")));
  const QList<QAction*> view = Menu(window, u"menuViews").actions();
  const int points = Child<QPlainTextEdit>(window, u"txMemo").font().pointSize();
  view[3]->trigger();
  EXPECT_GT(Child<QPlainTextEdit>(window, u"txMemo").font().pointSize(), points);
  view[5]->trigger();
  EXPECT_EQ(Child<QPlainTextEdit>(window, u"txMemo").font().pointSize(), points);
  view.last()->trigger();
  auto* source = window.findChild<QDialog*>(QStringLiteral("source"));
  ASSERT_NE(source, nullptr);
  EXPECT_TRUE(source->findChild<QPlainTextEdit*>()->toPlainText().startsWith(
      QStringLiteral("From: Sato <sato@example.jp>")));
  source->close();
}

TEST_F(MessageWindowTest, AMessageBeingWrittenKeepsTheProgramOpenWhenItCannotBeStored) {
  MessageWindow& window = OpenStored(kDraft, 1);
  const QString path = File("gone.txt", "x");
  Child<AttachmentList>(window, u"lvClip").Input().AddFiles({path});
  QFile::remove(path);
  EXPECT_TRUE(NextMessageBox([this] {
                program_->Parent()->close();
              }).contains(QStringLiteral("読み込めません")));
  EXPECT_TRUE(program_->Parent()->isVisible());
  EXPECT_TRUE(window.isVisible());
  EXPECT_FALSE(program_->Parent()->Pages().Messages().IsClosing()) << "it goes on";
  auto& list = Child<AttachmentList>(window, u"lvClip");
  list.setCurrentRow(0);
  QTest::keyClick(&list, Qt::Key_Delete);
  EXPECT_EQ(list.count(), 0);
  window.close();
  EXPECT_TRUE(Gone());
}

// What stands in the text is clicked like a link of a page, and seen whole before it opens.
TEST_F(MessageWindowTest, AddressesInTheTextAreLinks) {
  MessageWindow& window =
      OpenStored("From: a@b\r\nSubject: s\r\n\r\nhttps://real.example/x?y\r\n\r\n> quoted\r\n", 4);
  auto& text = Child<QPlainTextEdit>(window, u"txMemo");
  EXPECT_EQ(text.extraSelections().size(), 2);  // the link and the quotation
  const auto clickBehind = [&](int position, int pixels) {
    QTextCursor cursor(text.document());
    cursor.setPosition(position);
    const QPoint place = text.cursorRect(cursor).center() + QPoint(pixels, 0);
    return InModal<QMessageBox>(
        [&] { QTest::mouseClick(text.viewport(), Qt::LeftButton, {}, place); },
        [&](QMessageBox& box) {
          EXPECT_TRUE(box.text().contains(QStringLiteral("\n\nhttps://real.example/x?y\n\n")));
          EXPECT_TRUE(box.text().endsWith(QStringLiteral("real.example")));
          box.button(QMessageBox::No)->click();
        });
  };
  EXPECT_TRUE(clickBehind(3, 2));
  EXPECT_TRUE(clickBehind(22, 2));
  // Who marks a part of it to copy it follows nothing.
  const auto place = [&text](int position) {
    QTextCursor cursor(text.document());
    cursor.setPosition(position);
    return text.cursorRect(cursor).center();
  };
  EXPECT_EQ(Confirmed([&] {
              QTest::mousePress(text.viewport(), Qt::LeftButton, {}, place(3));
              QTest::mouseMove(text.viewport(), place(9));
              QTest::mouseRelease(text.viewport(), Qt::LeftButton, {}, place(9));
            }),
            QStringList());
  EXPECT_EQ(text.textCursor().selectedText(), QStringLiteral("ps://r"));
  QTest::mouseClick(text.viewport(), Qt::LeftButton, {},
                    text.cursorRect(QTextCursor(text.document()->lastBlock())).center());
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

}  // namespace
}  // namespace vorn
