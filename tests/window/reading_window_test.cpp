// Messages being read in windows: receipts, the next message, and one that is erased meanwhile.

#include "kit/window/cascade.h"
#include "mail/codec/charset/text_encoding.h"
#include "mail/store/drafts.h"
#include "mail/store/message_filing.h"
#include "mail/window/fields/attachment_list.h"
#include "objects/settings.h"
#include "storage/bags/profile_bag.h"
#include "storage/databases.h"
#include "storage/engine/connection.h"
#include "window/message_window_fixture.h"

namespace vorn {
namespace {

// What a reader needs is in front of him.
TEST_F(MessageWindowTest, ReadersSeeTheDateAndWindowsStandWhereTheyStood) {
  const SerialId serial = Store("Date: Tue, 24 Nov 2020 09:05:07 -0330\r\n" + kPlain, 4);
  MessageWindow& window = Open(serial);
  const QString date = Child<QLabel>(window, u"lbDate").text();
  EXPECT_TRUE(date.contains(QStringLiteral("9:05 (-0330)"))) << date.toStdString();
  EXPECT_TRUE(date.contains(QStringLiteral("1日以上違います")));
  auto& reading = Child<QToolBar>(window, u"tbReading");
  EXPECT_TRUE(reading.isVisible());
  // However high the window is, its head stands together.
  const auto& addresses = Child<QTableWidget>(window, u"lvMailaddress");
  const QWidget& page = *addresses.parentWidget();
  for (const int height : {500, 900}) {
    window.resize(700, height);
    EXPECT_TRUE(WaitFor(
        [&] {
          const QRect list = addresses.geometry();
          const int above = Child<QLineEdit>(window, u"txSubject").geometry().bottom();
          const int below = Child<QLabel>(window, u"lbDate").geometry().top();
          return page.height() > height / 2 && list.top() - above < 20 &&
                 below - list.bottom() < 20;
        },
        5000))
        << height;
  }
  // It is where it was, and as large.
  window.resize(600, 500);
  window.move(20, 30);
  const auto throwAway = [](MessageWindow& from) {
    for (QAction* action : Child<QToolBar>(from, u"tbReading").actions()) {
      if (action->objectName() == u"dust") action->trigger();
    }
  };
  throwAway(window);
  EXPECT_TRUE(WaitFor([&] { return Column(serial, QStringLiteral("STATUS")).toInt() == -4; }));
  ASSERT_TRUE(Gone());
  MessageWindow& again = Open(serial);
  EXPECT_EQ(again.size(), QSize(600, 500));
  EXPECT_EQ(again.pos(), QPoint(20, 30));
  // What is thrown away once more is not taken back by it.
  test::AnswerBox([&] { throwAway(again); }, QMessageBox::Ok);
  ASSERT_TRUE(Gone());
  EXPECT_FALSE(Column(serial, QStringLiteral("STATUS")).isValid());
}

TEST_F(MessageWindowTest, PicturesInTheTextStandInOneEntryWhileTheyAreSeen) {
  const MessageWindow& window = OpenStored(
      "Subject: s\r\nContent-Type: multipart/related; boundary=b\r\n\r\n--b\r\n"
      "Content-Type: text/html\r\n\r\n<img src=cid:p>\r\n--b\r\nContent-Type: image/gif; "
      "name=a.gif\r\nContent-ID: <p>\r\nContent-Transfer-Encoding: base64\r\n\r\n"
      "R0lGODlhAgACAAAAACwAAAAAAgACAAACAUQAOw==\r\n--b\r\nContent-Type: text/csv; "
      "name=b.csv\r\n\r\n1\r\n--b--\r\n",
      4);
  auto& list = Child<AttachmentList>(window, u"lvClip");
  auto& tabs = Child<QTabWidget>(window, u"tsBody");
  const auto texts = [&list] {
    QStringList names;
    for (int i = 0; i < list.count(); ++i) names.append(list.item(i)->text().section(u'（', 0, 0));
    return names.join(u',');
  };
  tabs.setCurrentIndex(1);
  EXPECT_TRUE(texts().endsWith(QStringLiteral("b.csv,本文中の画像 1個"))) << qPrintable(texts());
  list.setCurrentRow(list.count() - 1);
  list.OpenCurrent();
  EXPECT_TRUE(texts().endsWith(QStringLiteral("b.csv,a.gif"))) << qPrintable(texts());
  tabs.setCurrentIndex(0);
  tabs.setCurrentIndex(1);
  EXPECT_TRUE(texts().endsWith(QStringLiteral("画像 1個")));
  tabs.setCurrentIndex(0);
  EXPECT_TRUE(texts().endsWith(QStringLiteral("a.gif")));
}

// Also where nothing or something wrong says in which code it is.
// What stands in the place of its text is the program's, and can be sent to nobody.
TEST_F(MessageWindowTest, AMessageThatIsGoneIsNotWrittenAnew) {
  MessageWindow& window = Open(u"mail_gone"_id);
  EXPECT_TRUE(Child<QPlainTextEdit>(window, u"txMemo").isReadOnly());
  EXPECT_FALSE(Buttons(window).contains(QStringLiteral("mailup")));
  EXPECT_FALSE(Buttons(window).contains(QStringLiteral("replay")));
  window.close();
  EXPECT_TRUE(Gone());
  EXPECT_EQ(Count(), 0);
}

TEST_F(MessageWindowTest, AReplyQuotesWhatTheWindowShows) {
  const QString text = QStringLiteral("会議の資料をお送りします。よろしくお願いします。");
  using Code = MimeCodec::OutputCharset;
  for (const Code code : {Code::Utf8, Code::ShiftJis, Code::Euc, Code::Jis}) {
    for (const char* type :
         {"text/html", "text/html; charset=iso-8859-1", "text/html; charset=x-unknown",
          "text/plain", "text/plain; charset=windows-1252", "text/plain; charset=us-ascii"}) {
      SCOPED_TRACE(std::string(type) + " " + std::to_string(static_cast<int>(code)));
      MessageWindow& window = OpenStored(
          "From: a@example.jp\r\nSubject: s\r\nContent-Type: " + QByteArray(type) + "\r\n\r\n" +
              MimeCodec::EncodeText(text, code).value_or(QByteArray()) + "\r\n",
          kStatusReceived);
      const auto& memo = Child<QPlainTextEdit>(window, u"txMemo");
      Child<QTabWidget>(window, u"tsBody").setCurrentIndex(0);
      EXPECT_EQ(memo.toPlainText().trimmed().toStdString(), text.toStdString());
      window.findChild<QAction*>(QStringLiteral("replay"))->trigger();
      EXPECT_TRUE(memo.toPlainText().contains(text)) << memo.toPlainText().toStdString();
      window.close();
      ASSERT_TRUE(Gone());
    }
  }
}

// For this view only: neither what is stored nor the next opening knows of it.
TEST_F(MessageWindowTest, AMessageIsReadInACodeThatIsPickedFromAll) {
  const SerialId serial = Store(
      "From: a@example.jp\r\nSubject: s\r\nContent-Type: text/plain; charset=us-ascii\r\n\r\n"
      "\xF0\xD2\xC9\xD7\xC5\xD4\r\n",
      kStatusReceived);
  const QString flags = Column(serial, QStringLiteral("FIELD_FLAG")).toString();
  MessageWindow& window = Open(serial);
  const auto& memo = Child<QPlainTextEdit>(window, u"txMemo");
  const QString before = memo.toPlainText();
  const auto readAs = [&window](const std::function<void(QDialog&)>& act) {
    return InModal<QDialog>(
        [&window] { window.findChild<QAction*>(QStringLiteral("readas"))->trigger(); }, act);
  };
  EXPECT_TRUE(readAs([](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); }));
  EXPECT_EQ(memo.toPlainText(), before);
  EXPECT_TRUE(readAs([](QDialog& dialog) {
    EXPECT_TRUE(Child<QLabel>(dialog, u"lbWrong").text().contains(QStringLiteral("us-ascii")));
    auto& search = Child<QLineEdit>(dialog, u"txCode");
    Type(search, QStringLiteral("koi8-r"));
    QTest::keyClick(&search, Qt::Key_Return);
  }));
  EXPECT_TRUE(memo.toPlainText().startsWith(QStringLiteral("Привет")));
  auto& back = Child<QPushButton>(window, u"cmAsDeclared");
  EXPECT_TRUE(back.isVisible());
  window.findChild<QAction*>(QStringLiteral("replay"))->trigger();
  EXPECT_TRUE(memo.toPlainText().contains(QStringLiteral("Привет")));
  EXPECT_FALSE(back.isVisible());
  window.close();
  ASSERT_TRUE(Gone());
  EXPECT_EQ(Column(serial, QStringLiteral("FIELD_FLAG")).toString().left(1), flags.left(1));

  MessageWindow& again = Open(serial);
  const auto& text = Child<QPlainTextEdit>(again, u"txMemo");
  EXPECT_EQ(text.toPlainText(), before);
  EXPECT_TRUE(
      InModal<QDialog>([&again] { again.findChild<QAction*>(QStringLiteral("readas"))->trigger(); },
                       [](QDialog& dialog) {
                         Type(Child<QLineEdit>(dialog, u"txCode"), QStringLiteral("no such code"));
                         QTest::keyClick(&dialog, Qt::Key_Return);  // nothing is chosen
                         EXPECT_TRUE(dialog.isVisible());
                         Type(Child<QLineEdit>(dialog, u"txCode"), QStringLiteral("KOI8-R"));
                         QTest::keyClick(&dialog, Qt::Key_Return);
                       }));
  EXPECT_TRUE(text.toPlainText().startsWith(QStringLiteral("Привет")));
  Press(Child<QPushButton>(again, u"cmAsDeclared"));
  EXPECT_EQ(text.toPlainText(), before);
}

// What the menu says of it is kept.
TEST_F(MessageWindowTest, AGarbledMessageStaysReadable) {
  const SerialId serial = Store(
      "From: a@example.jp\r\nSubject: s\r\nContent-Type: text/plain\r\n\r\n"
      "\xCA\xDD\xB6\xB8\r\n",
      kStatusReceived);
  const auto text = [](const MessageWindow& window) {
    return Child<QPlainTextEdit>(window, u"txMemo").toPlainText().trimmed();
  };
  const QString right = QStringLiteral("ﾊﾝｶｸ");
  for (const bool picks : {true, false}) {
    MessageWindow& window = Open(serial);
    if (picks) {
      EXPECT_NE(text(window), right);
      Menu(window, u"menuEditCharsets").actions()[2]->trigger();
    }
    EXPECT_EQ(text(window).toStdString(), right.toStdString());
    window.close();
    ASSERT_TRUE(Gone());
  }
}

TEST_F(MessageWindowTest, ASignedMessageSaysSo) {
  MessageWindow& window = OpenStored(
      "From: a@example.jp\r\nContent-Type: multipart/signed; boundary=b\r\n\r\n--b\r\n\r\ntext\r\n"
      "--b\r\nContent-Type: application/pgp-signature\r\n\r\nAAAA\r\n--b--\r\n",
      kStatusReceived);
  auto& bar = Child<QFrame>(window, u"frSigned");
  EXPECT_TRUE(bar.isVisible());
  window.findChild<QAction*>(QStringLiteral("replay"))->trigger();
  EXPECT_FALSE(bar.isVisible()) << "the answer is not signed";
}

// Who is typing an answer means no box that comes up meanwhile.
TEST_F(MessageWindowTest, TypingAnswersNoQuestionForAReceipt) {
  Settings(Context()).Bag()->Let(QStringLiteral("ReceiveNotice"), true);
  const SerialId serial =
      Store("Disposition-Notification-To: boss@example.jp\r\n" + kPlain, kStatusReceived);
  program_->Parent()->Requests().ShowMessage(MailRequest::Of(serial, OpenMode::Reply));
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
  auto& memo = Child<QPlainTextEdit>(*TopLevel<MessageWindow>(), u"txMemo");
  memo.setFocus();
  memo.clear();
  // As long as keys come, which is longer than one pause, the box waits; unless the machine itself
  // makes one.
  const QString typed = QStringLiteral("yes no yoroshiku onegai itashimasu");
  qsizetype keys = 0;
  QElapsedTimer sinceKey;
  const bool asked = InModal<QMessageBox>(
      [&] {
        for (const QChar c : typed) {
          QTest::keyClick(&memo, c.toLatin1());
          ++keys;
          sinceKey.start();
          test::RunFor(50);
        }
      },
      [&](QMessageBox& box) {
        EXPECT_TRUE(keys == typed.size() || sinceKey.elapsed() > 900) << keys;
        for (const auto key : {Qt::Key_Y, Qt::Key_N, Qt::Key_Space}) {
          QTest::keyClick(&box, key);
          QTest::keyClick(box.button(QMessageBox::No), key);
        }
        EXPECT_TRUE(box.isVisible());
        EXPECT_EQ(box.defaultButton(), box.button(QMessageBox::No)) << "Enter tells nobody";
        QTest::keyClick(&box, Qt::Key_Escape);
      });
  EXPECT_TRUE(asked);
  EXPECT_EQ(memo.toPlainText(), typed);
  EXPECT_TRUE(smtp_.Messages().isEmpty());
  test::AnswerBox([] { TopLevel<MessageWindow>()->close(); }, QMessageBox::No);
  EXPECT_TRUE(Gone());
}

TEST_F(MessageWindowTest, AReceiptIsSentAlsoWhenAReplyIsOpenedAtOnceAndShownWhenItCannotBe) {
  Settings(Context()).Bag()->Let(QStringLiteral("ReceiveNotice"), true);
  const auto reply = [this](const QByteArray& asks) {
    const SerialId serial =
        Store("Disposition-Notification-To: " + asks + "\r\n" + kPlain, kStatusReceived);
    const auto open = [&] {
      program_->Parent()->Requests().ShowMessage(MailRequest::Of(serial, OpenMode::Reply));
    };
    EXPECT_TRUE(test::AnswerBox(open, QMessageBox::Yes).contains(QStringLiteral("開封通知")));
  };
  reply("boss@example.jp");
  ASSERT_TRUE(WaitFor([this] { return smtp_.Messages().size() == 1; }));
  EXPECT_EQ(smtp_.Messages()[0].recipients, QList<QByteArray>{"boss@example.jp"});
  EXPECT_TRUE(smtp_.Messages()[0].source.contains("Original-Message-ID: <1@example.jp>\r\n"));
  EXPECT_EQ(smtp_.Messages()[0].from, QByteArray()) << "nobody reports on a receipt";
  const auto closeAll = [] {
    while (MessageWindow* window = TopLevel<MessageWindow>()) {
      test::Answering<QMessageBox>([window] { window->close(); },
                                   [](QMessageBox& box) { box.button(QMessageBox::No)->click(); });
      EXPECT_TRUE(WaitFor([gone = QPointer(window)] { return gone.isNull() || gone->isHidden(); }));
    }
  };
  closeAll();
  reply("nobody");
  EXPECT_TRUE(WaitFor([] { return test::TopLevels<MessageWindow>().size() == 2; }));
  closeAll();
  EXPECT_EQ(smtp_.Messages().size(), 1);
}

TEST_F(MessageWindowTest, TheNextMessageIsShownAndTextIsFound) {
  const SerialId first = Store(kPlain, 4);
  QByteArray other = kPlain;
  const SerialId second = Store(other.replace("hello", "other"), 4);
  MessageWindow& window = Open(first);
  const QMenu& view = Menu(window, u"menuViews");
  view.actions()[1]->trigger();
  EXPECT_EQ(window.Tag(), second);
  EXPECT_EQ(Child<QLineEdit>(window, u"txSubject").text(), QStringLiteral("other"));
  view.actions()[1]->trigger();
  EXPECT_EQ(window.Tag(), second);  // the last one
  view.actions()[0]->trigger();
  EXPECT_EQ(window.Tag(), first);
  // Before it stands the newer one where those are on top.
  Settings(Context()).Bag()->Let(QStringLiteral("NewestFirst"), true);
  view.actions()[0]->trigger();
  EXPECT_EQ(window.Tag(), second);
  view.actions()[1]->trigger();
  EXPECT_EQ(window.Tag(), first);
  QTest::keyClick(&window, Qt::Key_F, Qt::ControlModifier);
  auto& find = Child<QLineEdit>(window, u"txFind");
  ASSERT_TRUE(find.isVisible());
  TypeText(find, QStringLiteral("line"));
  auto& memo = Child<QPlainTextEdit>(window, u"txMemo");
  QList<int> places;
  for (int i = 0; i < 3; ++i) {
    QTest::keyClick(&find, Qt::Key_Return);
    places.append(memo.textCursor().blockNumber());
  }
  EXPECT_EQ(places, (QList<int>{0, 1, 0}));
  QTest::keyClick(&find, Qt::Key_Escape);
  EXPECT_FALSE(find.isVisible());
  EXPECT_TRUE(window.isVisible());
}

TEST_F(MessageWindowTest, AReceiptIsAskedForAlsoWhenTheNextMessageWantsOne) {
  Settings(Context()).Bag()->Let(QStringLiteral("ReceiveNotice"), true);
  const SerialId first = Store(kPlain, kStatusReceived);
  Store("Disposition-Notification-To: boss@example.jp\r\n" + kPlain, kStatusReceived);
  MessageWindow& window = Open(first);
  const auto next = [&window] { QTest::keyClick(&window, Qt::Key_PageDown, Qt::ControlModifier); };
  EXPECT_TRUE(test::AnswerBox(next, QMessageBox::Yes).contains(QStringLiteral("開封通知")));
  ASSERT_TRUE(WaitFor([this] { return smtp_.Messages().size() == 1; }));
  EXPECT_EQ(smtp_.Messages()[0].recipients, QList<QByteArray>{"boss@example.jp"});
}

// A message that came as a file of another one is opened, called by its subject, and answered.
TEST_F(MessageWindowTest, AMessageWithinAMessageHasAWindowOfItsOwn) {
  Settings(Context()).Bag()->Let(QStringLiteral("StandardHeaders"), true);
  MessageWindow& window = OpenStored(
      "From: a@example.jp\r\nSubject: outer\r\nContent-Type: multipart/mixed; boundary=b\r\n\r\n"
      "--b\r\n\r\nsee below\r\n--b\r\nContent-Type: message/rfc822\r\n\r\n" +
          kPlain + "\r\n--b--\r\n",
      kStatusReceived);
  auto& list = Child<QListWidget>(window, u"lvClip");
  ASSERT_EQ(list.count(), 1);
  EXPECT_TRUE(list.item(0)->text().startsWith(u"hello.eml")) << list.item(0)->text().toStdString();
  list.setCurrentRow(0);
  Q_EMIT list.itemActivated(list.item(0));
  ASSERT_TRUE(WaitFor([&window] { return OtherThan(window) != nullptr; }));
  MessageWindow* inner = OtherThan(window);
  EXPECT_EQ(Child<QLineEdit>(*inner, u"txSubject").text(), QStringLiteral("hello"));
  EXPECT_TRUE(Child<QPlainTextEdit>(*inner, u"txMemo").toPlainText().contains(u"second line"));
  inner->close();
}

// Another window, or another program, may have erased what is still on the screen.
TEST_F(MessageWindowTest, AMessageThatWasErasedSaysSoAndIsAnsweredAsItIsShown) {
  const SerialId serial = Store(kPlain, kStatusReceived);
  MessageWindow& window = Open(serial);
  const auto& said = Child<QFrame>(window, u"frErased");
  Menu(window, u"menuFiles").actions()[2]->trigger();  // an edit that nothing is left of
  EXPECT_TRUE(MailStore(Context()).DeleteMessage(Disk(serial)));
  EXPECT_FALSE(said.isVisible());
  // Before it is known a command finds it out, and after that none can be given.
  QAction* star = window.findChild<QAction*>(QStringLiteral("star"));
  star->trigger();
  EXPECT_TRUE(said.isVisible());
  EXPECT_FALSE(star->isChecked());
  QList<QAction*> useless = {Menu(window, u"menuFiles").actions()[2],
                             Menu(window, u"menuFilesMessages").actions()[7],
                             Menu(window, u"menuFilesMessages").actions()[9]};
  for (const char16_t* name : {u"star", u"dust", u"before", u"next"}) {
    useless.append(window.findChild<QAction*>(QString::fromUtf16(name)));
  }
  for (const QAction* action : std::as_const(useless)) {
    EXPECT_FALSE(action->isEnabled()) << qPrintable(action->text());
  }
  // It is read in another code, and answered.
  window.SetActiveCharset(CharsetChoice::Utf8);
  EXPECT_TRUE(Child<QPlainTextEdit>(window, u"txMemo").toPlainText().contains(u"second line"));
  window.findChild<QAction*>(QStringLiteral("replay"))->trigger();
  EXPECT_FALSE(said.isVisible());
  EXPECT_TRUE(WaitFor([&window] {
    return Child<QPlainTextEdit>(window, u"txMemo").toPlainText().contains(u"second line");
  }));
  EXPECT_EQ(Child<QTableWidget>(window, u"lvMailaddress").item(0, 1)->text(),
            QStringLiteral("Sato <sato@example.jp>"));
}

// Of what is written nothing is lost, and nothing comes back unasked.
// As while the disk is full.
TEST_F(MessageWindowTest, ADraftThatCannotBeKeptIsToldOf) {
  MessageWindow& window = New();
  const auto& bar = Child<QWidget>(window, u"frUnkept");
  const auto run = [this](const char* statement) {
    const auto connection =
        Connection::Open(PlatformPath(Context(), ProfileBag(*Context().Session).File()),
                         ProfileBag(*Context().Session).Password(), Connection::Mode::Existing);
    return connection && (*connection)->Run(statement);
  };
  ASSERT_TRUE(
      run("CREATE TRIGGER full BEFORE INSERT ON object BEGIN SELECT RAISE(ABORT, 'disk'); END"));
  auto& memo = Child<QPlainTextEdit>(window, u"txMemo");
  TypeText(memo, QStringLiteral("x"));
  const auto keep = [&window] {
    QMetaObject::invokeMethod(window.findChild<QTimer*>(QStringLiteral("tmDraft")), "timeout");
  };
  keep();
  EXPECT_TRUE(bar.isVisible());
  ASSERT_TRUE(run("DROP TRIGGER full"));
  keep();
  EXPECT_FALSE(bar.isVisible());
  EXPECT_EQ(Drafts::LeftBehind(Context()), SerialIds{window.Tag()});
  InModal<QMessageBox>([&window] { window.close(); },
                       [](QMessageBox& box) { box.button(QMessageBox::No)->click(); });
}

TEST_F(MessageWindowTest, ADraftThatWasDeletedIsNotOfferedAgain) {
  MessageWindow& window = OpenStored(kDraft, kStatusEdit);
  TypeText(Child<QPlainTextEdit>(window, u"txMemo"), QStringLiteral("x"));
  QMetaObject::invokeMethod(window.findChild<QTimer*>(QStringLiteral("tmDraft")), "timeout");
  ASSERT_EQ(Drafts::LeftBehind(Context()), SerialIds{window.Tag()});
  InModal<QMessageBox>([&] { Menu(window, u"menuFilesMessages").actions()[7]->trigger(); },
                       [](QMessageBox& box) { box.button(QMessageBox::Ok)->click(); });
  ASSERT_TRUE(Gone());
  EXPECT_TRUE(Drafts::LeftBehind(Context()).isEmpty());
}

TEST_F(MessageWindowTest, ADraftThatWasErasedIsStoredAnewOnlyOnYes) {
  for (const auto& [answer, status] :
       {std::pair{QMessageBox::Cancel, 0}, {QMessageBox::No, 0}, {QMessageBox::Yes, 1}}) {
    SCOPED_TRACE(answer);
    const SerialId serial = Store(kDraft, -kStatusEdit);
    MessageWindow& window = Open(serial);
    Type(Child<QLineEdit>(window, u"txSubject"), QStringLiteral("改訂"));
    EXPECT_TRUE(EmptyDust(Context()));
    window.MessagesChanged();
    EXPECT_TRUE(Child<QFrame>(window, u"frErased").isVisible());
    EXPECT_TRUE(test::AnswerBox([&window] { window.close(); }, answer).contains(u"削除されました"));
    EXPECT_EQ(Column(serial, QStringLiteral("STATUS")).toInt(), status);
    if (answer != QMessageBox::Cancel) {
      EXPECT_TRUE(Gone());
      continue;
    }
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(window.GetMessageSubject(), QStringLiteral("改訂"));
    CloseWith(window, QMessageBox::No);
    ASSERT_TRUE(Gone());
  }
}

}  // namespace
}  // namespace vorn
