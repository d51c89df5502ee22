// Messages that are read at the side of their folder's page, and the marks that users give them.

#include <QWebEngineView>

#include "mail/store/mail_row.h"
#include "mail/store/message_filing.h"
#include "mail/store/message_rows.h"
#include "mail/store/send_refusals.h"
#include "mail/window/message_window.h"
#include "mail/window/reading/reading_pane.h"
#include "objects/object_loader.h"
#include "storage/databases.h"
#include "window/folder_page_fixture.h"

namespace vorn {
namespace {

using test::Child;

class ReadingPaneTest : public FolderPageTest {
 protected:
  static constexpr int kBelow = 1;

  void BeginReading(int messages, const QByteArray& more = {}) {
    Begin(messages, 100, false, true, more);
    auto& menu = Child<QMenu>(*program_->Parent(), u"menuPane");
    menu.actions().at(kBelow)->trigger();
    ASSERT_TRUE(WaitFor([this] { return Pane() != nullptr && Pane()->isVisible(); }));
    FocusPage();
  }
  ReadingPane* Pane() const { return Browser()->findChild<ReadingPane*>(); }
  bool AwaitShown(int number) const {
    return WaitFor([&] { return Pane()->ShownMessage() == Ids({number}).first(); });
  }
  // What a message's row says at a place of its flags.
  QString Mark(int number, FlagPosition place) const {
    Context& context = program_->GetContext();
    const OpenedDatabase mail(context, DatabaseKind::Mail);
    const RecordsetPtr row = MessageRows(context.Data).Of(Ids({number}).first());
    return MailRow(*row).Flags().At(place, QStringLiteral("0"));
  }
  // Whether a message is about to be marked as one that was in sight for long enough.
  static bool Counts(const ReadingPane& pane) {
    return pane.findChild<QTimer*>(QStringLiteral("tmInSight"))->isActive();
  }
  // In the rectangle that the rest of a script says of `document.querySelector(`.
  void ClickTwice(const QString& where) {
    QVariantList at;
    ASSERT_TRUE(WaitFor([&] {  // a page that is being made anew has none yet
      at = Script(QStringLiteral("(() => { const r = document.querySelector(%1;"
                                 "  return [r.x + 3, r.y + 3]; })()")
                      .arg(where))
               .toList();
      return at.size() == 2;
    }));
    DoubleClickPage(QPoint(at[0].toInt(), at[1].toInt()));
  }
  bool AwaitMark(int number, FlagPosition place, const char* value) const {
    return WaitFor([&] { return Mark(number, place) == QLatin1String(value); });
  }
};

TEST_F(ReadingPaneTest, TheCurrentMessageIsReadThereAndOpenedAfterAWhile) {
  BeginReading(4);
  EXPECT_EQ(Pane()->ShownMessage(), SerialId());
  Press(Qt::Key_Down);
  ASSERT_TRUE(AwaitShown(1));
  EXPECT_EQ(Child<QPlainTextEdit>(*Pane(), u"txMemo").toPlainText().trimmed(),
            QStringLiteral("body"));
  EXPECT_EQ(Child<QLabel>(*Pane(), u"lbPaneSubject").text(), QStringLiteral("No1."));
  EXPECT_EQ(Mark(1, kFlagNew), QStringLiteral("1"));
  // Passing over a message does not open it.
  Press(Qt::Key_Down);
  Press(Qt::Key_Down);
  ASSERT_TRUE(AwaitShown(3));
  EXPECT_TRUE(AwaitMark(3, kFlagNew, "0"));
  EXPECT_EQ(Mark(1, kFlagNew), QStringLiteral("1"));
  EXPECT_EQ(Mark(2, kFlagNew), QStringLiteral("1"));
  // The page that shows it now has kept its place, and the keys go on from there.
  EXPECT_TRUE(AwaitScript(QStringLiteral("vorn.chosen()[0] === 'mail_3'")));
  Press(Qt::Key_Down);
  EXPECT_TRUE(AwaitShown(4));
  EXPECT_TRUE(Counts(*Pane()));
  // One key takes it back, also before the while is over.
  Press(Qt::Key_U);
  EXPECT_TRUE(WaitFor([this] { return !Counts(*Pane()); }));
  EXPECT_EQ(Mark(4, kFlagNew), QStringLiteral("1"));
  // Another page shows another choice.
  Child<QAction>(*Browser(), u"seek").trigger();
  Browser()->ShowFolder(kShelf);
  EXPECT_EQ(Pane()->ShownMessage(), SerialId());
}

TEST_F(ReadingPaneTest, WhatIsBehindAnotherTabIsNotMarkedBeforeItIsSeenAgain) {
  BeginReading(3);
  BrowserWindow* inbox = Browser();
  auto* tabs = program_->Parent()->findChild<QMdiArea*>()->findChild<QTabBar*>();
  test::ClickRow(Child<QTreeWidget>(*program_->Parent(), u"tvConsole"), Node(kShelf),
                 Qt::LeftButton, Qt::ControlModifier);
  ASSERT_TRUE(WaitFor([this] { return Browsers().size() == 2; }));
  tabs->setCurrentIndex(0);
  auto* pane = inbox->findChild<ReadingPane*>();
  inbox->Folder().GoToMessage(Ids({1}).first());
  ASSERT_TRUE(WaitFor([&] { return pane->ShownMessage() == Ids({1}).first(); }));
  EXPECT_TRUE(Counts(*pane));
  tabs->setCurrentIndex(1);
  QSignalSpy loaded(inbox, &BrowserWindow::Loaded);
  inbox->Refresh();  // as when mail comes
  ASSERT_TRUE(WaitFor([&] { return loaded.count() > 0; }));
  SettleIn(*inbox);
  EXPECT_FALSE(Counts(*pane));
  EXPECT_EQ(Mark(1, kFlagNew), QStringLiteral("1"));
  tabs->setCurrentIndex(0);
  EXPECT_TRUE(AwaitMark(1, kFlagNew, "0"));
}

// What was read there has been deleted elsewhere meanwhile: the pane does not go on showing it
// beside another row that is current.
TEST_F(ReadingPaneTest, ThePaneShowsTheCurrentRowAlsoBehindAnotherTab) {
  BeginReading(4);
  BrowserWindow* inbox = Browser();
  Press(Qt::Key_Down);
  Press(Qt::Key_Down);
  ASSERT_TRUE(AwaitMark(2, kFlagNew, "0"));
  auto* pane = inbox->findChild<ReadingPane*>();
  auto* tabs = program_->Parent()->findChild<QMdiArea*>()->findChild<QTabBar*>();
  test::ClickRow(Child<QTreeWidget>(*program_->Parent(), u"tvConsole"), Node(kShelf),
                 Qt::LeftButton, Qt::ControlModifier);
  ASSERT_TRUE(WaitFor([this] { return Browsers().size() == 2; }));
  Drop(u"mail_2"_id, fixed_serial::kDust);
  auto* view = inbox->findChild<QWebEngineView*>(QStringLiteral("wbUrl"));
  ASSERT_TRUE(WaitFor([&] { return ScriptIn(*view, QStringLiteral("vorn.count()")) == 3; }));
  tabs->setCurrentIndex(0);
  const auto current = [view] {
    return SerialIdOf(ScriptIn(*view, QStringLiteral("vorn.current()")));
  };
  EXPECT_TRUE(WaitFor([&] { return current().IsEmpty() || current() == pane->ShownMessage(); }));
  view->setFocus();
  QTest::keyClick(view->focusProxy(), Qt::Key_Down);
  EXPECT_TRUE(WaitFor([&] {
    return !current().IsEmpty() && current() == pane->ShownMessage() &&
           current() != Ids({2}).first();
  }));
}

TEST_F(ReadingPaneTest, WhatIsWrittenOnIsReadAsItIsNow) {
  BeginReading(1);
  const auto write = [this](const QByteArray& subject) {
    Disk request(QStringLiteral("draft"));
    request.Let(QStringLiteral("process"), static_cast<int>(kStatusEdit));
    EXPECT_TRUE(MailStore(program_->GetContext())
                    .StoreMessage(request, "From: me@x\r\nSubject: " + subject + "\r\n\r\n\r\n"));
  };
  write("first");
  OpenFolder(fixed_serial::kEditWait);
  FocusPage();
  Press(Qt::Key_Home);
  const auto shows = [this](const char16_t* subject) {
    return WaitFor([&] {
      return Child<QLabel>(*Pane(), u"lbPaneSubject").text() == QString::fromUtf16(subject);
    });
  };
  ASSERT_TRUE(shows(u"first"));
  write("second");
  program_->Parent()->Pages().Messages().MessageStored();
  EXPECT_TRUE(shows(u"second"));
}

// As the button of the same sentence does in a window.
TEST_F(ReadingPaneTest, WhatWasRefusedIsOpenedToBeMended) {
  BeginReading(1);
  Context& context = program_->GetContext();
  Disk request(QStringLiteral("refused"));
  request.Let(QStringLiteral("process"), static_cast<int>(kStatusWaiting));
  ASSERT_TRUE(MailStore(context).StoreMessage(
      request, "From: me@example.jp\r\nTo: a@example.jp, b@example.jp\r\n\r\n\r\n"));
  ASSERT_TRUE(SendRefusals(context, MailDatabasePath(context))
                  .Note(u"refused"_id, {{}, {}, QStringLiteral("b@example.jp: 550 unknown")}));
  OpenFolder(fixed_serial::kEditWait);
  FocusPage();
  Press(Qt::Key_Home);
  auto& mend = Child<QPushButton>(*Pane(), u"cmOpenRefused");
  ASSERT_TRUE(WaitFor([&mend] { return mend.isVisible(); }));
  program_->Parent()->Requests().ShowMessage(MailRequest::Of(u"refused"_id));
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
  for (const bool isOpen : {true, false}) {
    SCOPED_TRACE(isOpen);
    mend.click();
    ASSERT_TRUE(WaitFor([] {
      const auto* window = TopLevel<MessageWindow>();
      return window != nullptr && !Child<QLineEdit>(*window, u"txSubject").isReadOnly();
    }));
    auto& list = Child<QTableWidget>(*TopLevel<MessageWindow>(), u"lvMailaddress");
    const auto* box = qobject_cast<QLineEdit*>(list.indexWidget(list.currentIndex()));
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->selectedText(), QStringLiteral("b@example.jp"));
    TopLevel<MessageWindow>()->close();
    ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() == nullptr; }));
  }
}

// What was current while there was no pane is what it shows when it is there again.
TEST_F(ReadingPaneTest, APaneThatComesBackShowsTheCurrentRow) {
  BeginReading(2);
  Press(Qt::Key_Home);
  ASSERT_TRUE(AwaitShown(1));
  ParentWindow* parent = program_->Parent();
  const int height = parent->height();
  const auto become = [&](int pixels, bool isThere) {
    parent->resize(parent->width(), pixels);
    return WaitFor([&] { return Pane()->isVisible() == isThere; });
  };
  ASSERT_TRUE(become(300, false));
  Press(Qt::Key_End);
  ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.chosen()[0] === 'mail_2'")));
  ASSERT_TRUE(become(height, true));
  EXPECT_TRUE(AwaitShown(2));
  auto& menu = Child<QMenu>(*parent, u"menuPane");
  menu.actions().at(kBelow + 1)->trigger();  // beside the list
  EXPECT_TRUE(WaitFor(
      [&] { return Child<QSplitter>(*Browser(), u"spPage").orientation() == Qt::Horizontal; }));
}

TEST_F(ReadingPaneTest, OneClickReadsAndASecondOneOpens) {
  BeginReading(2);
  ClickLink(QStringLiteral("a[href*=mail_2]"));
  ASSERT_TRUE(AwaitShown(2));
  SettleIn(*Browser());
  EXPECT_EQ(TopLevel<MessageWindow>(), nullptr);
  ClickTwice(QStringLiteral("'a[href*=mail_1]').getClientRects()[0]"));
  EXPECT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
  SettleIn(*Browser());
  EXPECT_EQ(test::TopLevels<MessageWindow>().size(), 1);
  // Where there is no pane, or no room for it, too, wherever in the row.
  TopLevel<MessageWindow>()->close();
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() == nullptr; }));
  Child<QMenu>(*program_->Parent(), u"menuPane").actions().at(0)->trigger();
  ASSERT_TRUE(WaitFor([this] { return !Pane()->isVisible(); }));
  ClickTwice(
      QStringLiteral("'a[href*=mail_2]').closest('tr').cells[4]"
                     ".getClientRects()[0]"));
  EXPECT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
}

// In a folder of what is unopened each message that is opened leaves the page. The next one takes
// its place there and must not be opened in its turn, unseen.
TEST_F(ReadingPaneTest, OpeningOneDoesNotOpenTheNext) {
  BeginReading(3);
  Context& context = program_->GetContext();
  const DiskPtr shelf = LoadObject(context, kShelf);
  shelf->Let(QStringLiteral("SqlUse"), true);
  shelf->Let(QStringLiteral("Sql"), QStringLiteral("SUBSTR(FIELD_FLAG, 3, 1) = '1'"));
  MadeAnewBy([&] { Browser()->ShowFolder(shelf->Serial()); });
  FocusPage();
  Press(Qt::Key_Home);
  ASSERT_TRUE(AwaitShown(1));
  ASSERT_TRUE(AwaitGone("No1."));
  SettleIn(*Browser());
  EXPECT_FALSE(Counts(*Pane()));
  EXPECT_EQ(Pane()->ShownMessage(), u"mail_1"_id);
  EXPECT_EQ(Mark(2, kFlagNew), QStringLiteral("1"));
  EXPECT_EQ(Chosen(), SerialIds()) << "a command would meet a message that is not in sight";
}

// What another program throws away, or deletes, is read no longer; but that is not the user's word
// for the row that comes into its place.
TEST_F(ReadingPaneTest, WhatLeavesThePageByItselfIsGoneAndNoOtherTakesItsPlace) {
  BeginReading(5);
  Context& context = program_->GetContext();
  const auto outside = [&](const auto& done) {
    EXPECT_TRUE(done);
    program_->Parent()->Pages().Messages().MessageStored();
  };
  const auto isNothing = [this] { return Pane()->ShownMessage().IsEmpty(); };
  Press(Qt::Key_Down);
  Press(Qt::Key_Down);
  ASSERT_TRUE(AwaitShown(2));
  ASSERT_TRUE(AwaitMark(2, kFlagNew, "0"));
  MadeAnewBy([&] { outside(SetDust(context, Ids({2}), true)); });
  ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 4")));
  MadeAnewBy([this] { Come("mail_new", "Later", QStringLiteral("2020-01-02 00:00:00")); });
  ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 5")));
  EXPECT_TRUE(isNothing()) << "it is not in the list any more";
  EXPECT_EQ(Chosen(), SerialIds());
  Press(Qt::Key_Delete);
  Press(Qt::Key_Down);
  ASSERT_TRUE(AwaitShown(3)) << "the next step goes on from there";
  EXPECT_EQ(Script(QStringLiteral("vorn.count()")).toInt(), 5) << "no row was meant";

  MadeAnewBy([&] { outside(DeleteMessages(context, Ids({3}))); });
  EXPECT_TRUE(WaitFor(isNothing)) << "there is nothing to read";
  Press(Qt::Key_Up);
  EXPECT_TRUE(AwaitShown(1));
}

// The keys that lead out of what is read, in either form that it has.
TEST_F(ReadingPaneTest, EscapeLeadsBackToTheListAndEnterOpens) {
  BeginReading(2,
               "Content-Type: multipart/alternative; boundary=b\r\n\r\n--b\r\n\r\ntext\r\n--b\r\n"
               "Content-Type: text/html\r\n\r\n<p>page</p><a href=#a>here</a>\r\n--b--\r\n");
  Press(Qt::Key_Home);
  ASSERT_TRUE(AwaitShown(1));
  auto& tabs = Child<QTabWidget>(*Pane(), u"tsBody");
  auto& page = Child<QWebEngineView>(*Pane(), u"wbPaneHtml");
  for (const int tab : {0, 1}) {
    SCOPED_TRACE(tab);
    tabs.setCurrentIndex(tab);
    QWidget& read = tab == 0 ? Child<QWidget>(*Pane(), u"txMemo") : page;
    const auto target = [&read] {
      return read.focusProxy() != nullptr ? read.focusProxy() : &read;
    };
    read.setFocus();
    ASSERT_TRUE(WaitFor([&] { return target()->hasFocus(); }));
    QTest::keyClick(target(), Qt::Key_Escape);
    EXPECT_TRUE(WaitFor([this] { return View()->focusProxy()->hasFocus(); }));
    read.setFocus();
    QTest::keyClick(target(), Qt::Key_Return);
    ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
    TopLevel<MessageWindow>()->close();
    ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() == nullptr; }));
    program_->Parent()->activateWindow();
  }
}

TEST_F(ReadingPaneTest, WhatAMessageAsksAndBearsIsSaidThereToo) {
  BeginReading(
      1,
      "Disposition-Notification-To: a@example.jp\r\n"
      "Content-Type: multipart/signed; protocol=\"application/pgp-signature\"; boundary=b\r\n"
      "\r\n--b\r\nContent-Type: text/calendar; method=REQUEST\r\n\r\n"
      "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nMETHOD:REQUEST\r\nBEGIN:VEVENT\r\nUID:1\r\n"
      "SUMMARY:x\r\nDTSTART:20261201T010000Z\r\nORGANIZER:mailto:a@example.jp\r\n"
      "ATTENDEE:mailto:b@example.jp\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n--b\r\n"
      "Content-Type: application/pgp-signature\r\n\r\nx\r\n--b--\r\n");
  Press(Qt::Key_Down);
  ASSERT_TRUE(AwaitShown(1));
  EXPECT_TRUE(Child<QWidget>(*Pane(), u"frPaneSigned").isVisible());
  // Who asks for a receipt is answered in a window.
  EXPECT_TRUE(Child<QWidget>(*Pane(), u"frReceipt").isVisible());
  EXPECT_FALSE(Counts(*Pane()));
  EXPECT_EQ(Mark(1, kFlagNew), QStringLiteral("1"));
  Child<QPushButton>(*Pane(), u"cmOpenAppointment").click();
  EXPECT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
}

QByteArray Part(const QByteArray& type, const QByteArray& name, const QByteArray& content) {
  return "\r\n--b\r\nContent-Type: " + type +
         "\r\nContent-Transfer-Encoding: base64\r\nContent-Disposition: attachment; filename=\"" +
         name + "\"\r\n\r\n" + content.toBase64();
}

QByteArray Picture() {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  QImage picture(30, 20, QImage::Format_RGB32);
  picture.fill(Qt::red);
  picture.save(&buffer, "PNG");
  return bytes;
}

// In a small window, with all that a newsletter brings along.
TEST_F(ReadingPaneTest, MostOfThePaneIsTheMessagesOwn) {
  QByteArray message =
      "Content-Type: multipart/mixed; boundary=b\r\n\r\n--b\r\nContent-Type: text/html\r\n\r\n"
      "<p>News<img src=\"http://example.com/a.png\">" +
      QByteArray("<p>text</p>").repeated(40);
  for (int i = 0; i < 12; ++i) {
    message += Part("application/pdf", "A file with a long name " + QByteArray::number(i), "x");
  }
  BeginReading(1, message + "\r\n--b--\r\n");
  program_->Parent()->resize(960, 640);
  Press(Qt::Key_Down);
  ASSERT_TRUE(AwaitShown(1));
  const auto height = [this](const char16_t* name) {
    const auto* view = Pane()->findChild<QWidget*>(QString::fromUtf16(name));
    return view != nullptr && view->isVisible() ? view->height() : 0;
  };
  auto& tabs = Child<QTabWidget>(*Pane(), u"tsBody");
  tabs.setCurrentIndex(1);
  EXPECT_TRUE(WaitFor([&] { return height(u"wbPaneHtml") >= 200; })) << height(u"wbPaneHtml");
  EXPECT_GT(height(u"cmRemoteImages"), 0);
  // Of the files there is one line, and the rest for the asking.
  const auto& clips = Child<QListWidget>(*Pane(), u"lvClip");
  EXPECT_EQ(clips.count(), 12) << "the HTML part is none";
  EXPECT_EQ(clips.height(), clips.sizeHintForRow(0));
  Child<QToolButton>(*Pane(), u"cmAllClips").click();
  EXPECT_TRUE(WaitFor([&] { return clips.height() > 3 * clips.sizeHintForRow(0); }));
  // What offers the images goes with the tab that shows them.
  tabs.setCurrentIndex(0);
  EXPECT_EQ(height(u"cmRemoteImages"), 0);
}

TEST_F(ReadingPaneTest, HtmlAndTextAreShownAsTheUserChoseLast) {
  BeginReading(3,
               "Content-Type: multipart/alternative; boundary=b\r\n\r\n--b\r\n\r\ntext\r\n--b\r\n"
               "Content-Type: text/html\r\n\r\n<p>html\r\n--b--\r\n");
  for (const auto& [number, shown, chosen] : {std::tuple{1, 0, 1}, {2, 1, 0}, {3, 0, 0}}) {
    Press(Qt::Key_Down);
    ASSERT_TRUE(AwaitShown(number));
    auto& tabs = Child<QTabWidget>(*Pane(), u"tsBody");
    EXPECT_EQ(tabs.currentIndex(), shown) << number;
    tabs.setCurrentIndex(chosen);
  }
}

TEST_F(ReadingPaneTest, HtmlAloneIsShownAsTheSettingSaysAndAfterAnotherOfItsKind) {
  BeginReading(1, "Content-Type: text/html\r\n\r\n<p>first</p>\r\n");
  Come("mail_2", "No2.\r\nContent-Type: text/html\r\n\r\n<p>second</p>",
       QStringLiteral("2050-01-01 00:00:00"));
  ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 2")));
  const auto& tabs = Child<QTabWidget>(*Pane(), u"tsBody");
  for (const bool isHtmlFirst : {true, false}) {
    Settings(program_->GetContext()).Bag()->Let(QStringLiteral("HtmlFirst"), isHtmlFirst);
    for (const int number : {1, 2}) {
      Press(number == 1 ? Qt::Key_Home : Qt::Key_Down);
      ASSERT_TRUE(AwaitShown(number));
      EXPECT_EQ(tabs.currentIndex(), isHtmlFirst ? 1 : 0) << number;
      if (!isHtmlFirst) continue;
      auto& page = Child<QWebEngineView>(*Pane(), u"wbPaneHtml");
      EXPECT_TRUE(WaitFor([&] {
        return ScriptIn(page, QStringLiteral("document.body && document.body.innerText"))
            .toString()
            .contains(number == 1 ? QStringLiteral("first") : QStringLiteral("second"));
      })) << number;
    }
  }
}

TEST_F(ReadingPaneTest, AttachedPicturesAreSeenBesideTheText) {
  const QByteArray text = "Content-Type: multipart/mixed; boundary=b\r\n\r\n--b\r\n\r\ntext\r\n";
  BeginReading(1, text + Part("image/png", "a.png", Picture()) +
                      Part("image/png", "forged.png", "no picture") +
                      Part("image/svg+xml", "c.svg", "<svg/>") + "\r\n--b--\r\n");
  Press(Qt::Key_Down);
  ASSERT_TRUE(AwaitShown(1));
  auto& tabs = Child<QTabWidget>(*Pane(), u"tsBody");
  EXPECT_EQ(tabs.currentIndex(), 0);
  ASSERT_TRUE(tabs.isTabVisible(1));
  tabs.setCurrentIndex(1);
  auto* view = Pane()->findChild<QWebEngineView*>(QStringLiteral("wbPaneHtml"));
  ASSERT_NE(view, nullptr);
  EXPECT_TRUE(WaitFor([view] {
    return ScriptIn(*view, QStringLiteral("[...document.images].map(i => i.naturalWidth).join()"))
               .toString() == u"30";
  }));
  const QString said = ScriptIn(*view, QStringLiteral("document.body.innerText")).toString();
  EXPECT_TRUE(said.contains(u"a.png") && said.contains(u"forged.png"));
  EXPECT_FALSE(said.contains(u"c.svg"));
}

TEST_F(ReadingPaneTest, MarksAreGivenAndTakenAndWhatWasDoneIsTakenBack) {
  BeginReading(3);
  auto& undo = Child<QToolButton>(*program_->Parent(), u"cmUndo");
  Press(Qt::Key_Home);
  Press(Qt::Key_Down, Qt::ShiftModifier);
  Press(Qt::Key_S);
  EXPECT_TRUE(AwaitMark(1, kFlagStar, "1"));
  EXPECT_EQ(Mark(2, kFlagStar), QStringLiteral("1"));
  EXPECT_EQ(Mark(3, kFlagStar), QStringLiteral("0"));
  Press(Qt::Key_U, Qt::ShiftModifier);
  EXPECT_TRUE(AwaitMark(2, kFlagNew, "0"));
  Press(Qt::Key_S);
  EXPECT_TRUE(AwaitMark(2, kFlagStar, "0"));
  EXPECT_EQ(Mark(2, kFlagNew), QStringLiteral("0"));
  // Into the dust and out again.
  MadeAnewBy([this] { Press(Qt::Key_Delete); });
  EXPECT_TRUE(AwaitGone("No2."));
  ASSERT_TRUE(undo.isVisible());
  MadeAnewBy([&undo] { test::Press(undo); });
  EXPECT_TRUE(WaitFor([this] { return PageText().contains(QStringLiteral("No2.")); }));
  EXPECT_TRUE(undo.isVisible()) << "the marks before it are steps, too";
  // Into a folder and out again.
  Drop(u"mail_3"_id, kShelf);
  ASSERT_TRUE(WaitFor([&undo] { return undo.isVisible(); }));
  const auto isFiled = [this] {
    Context& context = program_->GetContext();
    const OpenedDatabase mail(context, DatabaseKind::Mail);
    return MessageRows(context.Data).FoldersOf(u"mail_3"_id).ValueOr({});
  };
  EXPECT_EQ(isFiled(), SerialIds{kShelf});
  // And one thrown away besides; both are taken back, the last one first.
  MadeAnewBy([this] { Drop(u"mail_2"_id, fixed_serial::kDust); });
  EXPECT_TRUE(AwaitGone("No2."));
  MadeAnewBy([&undo] { test::Press(undo); });
  EXPECT_TRUE(WaitFor([this] { return PageText().contains(QStringLiteral("No2.")); }));
  EXPECT_TRUE(Child<QLabel>(*program_->Parent(), u"lbDone")
                  .accessibleName()
                  .contains(QStringLiteral("くずかごに入れました")));
  EXPECT_EQ(isFiled(), SerialIds{kShelf});
  test::Press(undo);
  EXPECT_TRUE(WaitFor([&] { return isFiled().isEmpty(); }));
  // What was starred before is so again.
  test::Press(undo);
  EXPECT_TRUE(AwaitMark(2, kFlagStar, "1"));
}

// The message that is read is the one that keys act on, wherever the keyboard is.
TEST_F(ReadingPaneTest, KeysActOnItThereToo) {
  BeginReading(3);
  Press(Qt::Key_Down);
  ASSERT_TRUE(AwaitShown(1));
  auto& text = Child<QPlainTextEdit>(*Pane(), u"txMemo");
  text.setFocus();
  ASSERT_TRUE(WaitFor([&text] { return text.hasFocus(); }));
  QTest::keyClick(&text, Qt::Key_S);
  EXPECT_TRUE(AwaitMark(1, kFlagStar, "1"));
  MadeAnewBy([&text] { QTest::keyClick(&text, Qt::Key_Delete); });
  EXPECT_TRUE(AwaitGone("No1."));
  EXPECT_TRUE(AwaitShown(2));
  // Text stays text.
  text.setFocus();
  QTest::keyClick(&text, Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(text.textCursor().selectedText().trimmed(), QStringLiteral("body"));
  EXPECT_EQ(Browser()->Folder().CountChosen(), 0);
}

}  // namespace
}  // namespace vorn
