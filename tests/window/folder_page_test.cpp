// A folder's page in use: moving and choosing by keys, acting on messages, pages.

#include "auxiliary/window/console_window.h"
#include "mail/store/message_filing.h"
#include "mail/window/message_window.h"
#include "objects/manual_folder.h"
#include "present/window/folder/text_wait.h"
#include "present/window/layout_window.h"
#include "window/folder_page_fixture.h"

namespace vorn {
namespace {

using test::Child;

TEST_F(FolderPageTest, RowsAreMovedAmongAndChosenByKeys) {
  Begin(6, 100);
  EXPECT_EQ(Chosen(), SerialIds());
  Press(Qt::Key_Down);
  EXPECT_EQ(Chosen(), Ids({1}));
  Press(Qt::Key_J);
  Press(Qt::Key_Down);
  Press(Qt::Key_K);
  EXPECT_EQ(Chosen(), Ids({2}));
  Press(Qt::Key_Down, Qt::ShiftModifier);
  Press(Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(Chosen(), Ids({2, 3, 4}));
  Press(Qt::Key_Up, Qt::ShiftModifier);
  EXPECT_EQ(Chosen(), Ids({2, 3}));
  Press(Qt::Key_End);
  EXPECT_EQ(Chosen(), Ids({6}));
  // The row that was clicked before belongs to what is clicked with Ctrl.
  const auto click = [this](int row, const char* key) {
    Script(QStringLiteral("document.querySelector('a[href*=\"mail_%1\"]').dispatchEvent(new "
                          "MouseEvent('mousedown', {%2 bubbles: true}))")
               .arg(row)
               .arg(QLatin1String(key)));
  };
  click(4, "ctrlKey: true,");
  EXPECT_EQ(Chosen(), Ids({4})) << "a row that the keys came to was not clicked";
  click(5, "");
  click(2, "ctrlKey: true,");
  EXPECT_EQ(Chosen(), Ids({2, 5}));
  Press(Qt::Key_End);
  Press(Qt::Key_Space);
  EXPECT_EQ(Chosen(), Ids({6}));
  Press(Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(Chosen().size(), 6);
  EXPECT_TRUE(NextMessageBox([this] { Press(Qt::Key_Return); }, Qt::Key_Escape)
                  .contains(QStringLiteral("6通")));
  EXPECT_EQ(TopLevel<MessageWindow>(), nullptr);
  FocusPage();
  Press(Qt::Key_Home);
  EXPECT_EQ(Chosen(), Ids({1}));

  // The page is made anew, since the message is no longer unopened, and the place kept.
  MadeAnewBy([this] { Press(Qt::Key_Return); });
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
  EXPECT_EQ(TopLevel<MessageWindow>()->Tag(), Ids({1}).first());
  TopLevel<MessageWindow>()->close();
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() == nullptr; }));
  ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.chosen()[0] === 'mail_1'")));
  FocusPage();
  Press(Qt::Key_F);
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
  EXPECT_EQ(TopLevel<MessageWindow>()->GetMessageSubject(), QStringLiteral("Fw: No1."));
  TopLevel<MessageWindow>()->close();
}

// Ten folders that are looked into leave two tabs, and not ten; one that is wanted beside the
// others gets its own.
TEST_F(FolderPageTest, FoldersThatAreOnlyLookedAtShareATab) {
  Begin(2, 100);
  ParentWindow* parent = program_->Parent();
  // Three quarters of the screen, or all that a small one has for a window with its frame.
  const int screen = QGuiApplication::primaryScreen()->availableSize().width();
  EXPECT_EQ(parent->width(), qMin(screen - 10, qMax(screen * 3 / 4, 800)));
  const auto* area = parent->findChild<QMdiArea*>();
  EXPECT_EQ(area->viewMode(), QMdiArea::TabbedView);
  const auto active = [&] {
    const auto* frame = area->currentSubWindow();
    const auto* browser =
        frame == nullptr ? nullptr : qobject_cast<BrowserWindow*>(frame->widget());
    return browser == nullptr ? SerialId() : browser->Tag();
  };
  auto& tree = Child<QTreeWidget>(*parent, u"tvConsole");
  const auto shows = [&](const SerialId& folder, size_t tabs) {
    return WaitFor([&] { return active() == folder && Browsers().size() == tabs; });
  };
  test::ClickRow(tree, Node(fixed_serial::kOutbox));
  ASSERT_TRUE(shows(fixed_serial::kOutbox, 2));
  // What it was searched for is not what the next folder is searched for.
  auto* search = area->currentSubWindow()->findChild<QLineEdit*>(QStringLiteral("txSearch"));
  QTest::keyClicks(search, QStringLiteral("nothing"));
  QTest::keyClick(search, Qt::Key_Return);
  test::ClickRow(tree, Node(kShelf));
  ASSERT_TRUE(shows(kShelf, 2));
  EXPECT_EQ(search->text(), QString());
  EXPECT_EQ(area->currentSubWindow()->windowTitle(), QStringLiteral("棚"));
  test::ClickRow(tree, Node(fixed_serial::kInbox));
  ASSERT_TRUE(shows(fixed_serial::kInbox, 2));
  const auto browsers = Browsers();
  EXPECT_EQ(std::count_if(browsers.begin(), browsers.end(),
                          [](const auto* browser) { return browser->Tag() == kShelf; }),
            1)
      << "who goes to a tab leaves the others as they are";
  test::ClickRow(tree, Node(fixed_serial::kDust), Qt::LeftButton, Qt::ControlModifier);
  ASSERT_TRUE(shows(fixed_serial::kDust, 3));
  test::ClickRow(tree, Node(fixed_serial::kOutbox));
  ASSERT_TRUE(shows(fixed_serial::kOutbox, 3));
  test::ClickRow(tree, Node(kShelf), Qt::MiddleButton);
  ASSERT_TRUE(shows(kShelf, 4));
  EXPECT_EQ(tree.currentItem(), Node(kShelf));
}

TEST_F(FolderPageTest, ASearchBeginsAtTheNewestAndAKeyEndsIt) {
  Begin(25, 10, true);
  auto& box = Child<QLineEdit>(*Browser(), u"txSearch");
  const auto search = [&](const QString& text) {
    MadeAnewBy([&] {
      test::Type(box, text);
      QTest::keyClick(&box, Qt::Key_Return);
    });
    FocusPage(false);
  };
  search(QStringLiteral("No"));
  EXPECT_TRUE(PageText().contains(QStringLiteral("No25.")));
  const auto& found = Child<QLabel>(*Browser(), u"lbFound");
  EXPECT_TRUE(WaitFor([&found] { return found.text() == QStringLiteral("25通"); }));
  // From the box one key goes down to what was found, and another one gives it up.
  box.setFocus();
  QTest::keyClick(&box, Qt::Key_Down);
  EXPECT_TRUE(WaitFor([this] { return View()->isAncestorOf(QApplication::focusWidget()); }));
  EXPECT_EQ(Chosen().size(), 1);
  MadeAnewBy([&box] { QTest::keyClick(&box, Qt::Key_Escape); });
  EXPECT_EQ(box.text(), QString());
  // What was found by it, and what it began from, stays the current message, on whichever page.
  search(QStringLiteral("No3."));
  Press(Qt::Key_Down);
  ASSERT_EQ(Chosen(), Ids({3}));
  MadeAnewBy([&box] { box.clear(); });
  EXPECT_EQ(Chosen(), Ids({3}));
  EXPECT_TRUE(
      AwaitScript(QStringLiteral("document.querySelector('.vorn-current')"
                                 ".getBoundingClientRect().bottom <= innerHeight + 1")));
  search(QStringLiteral("nothing"));
  EXPECT_TRUE(AwaitGone("No3."));
  Press(Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(Script(QStringLiteral("getSelection().toString()")).toString(), QString());
  MadeAnewBy([this] { Press(Qt::Key_Escape); });
  EXPECT_TRUE(WaitFor([this] { return PageText().contains(QStringLiteral("No3.")); }));
  EXPECT_EQ(Chosen(), Ids({3}));
  EXPECT_EQ(box.text(), QString());
  // Without a hit the words lead on to all folders, but for the dust bin.
  for (const int status : {3, -4}) {
    Disk request(QStringLiteral("mail_of_%1").arg(status));
    request.Let(QStringLiteral("process"), status);
    ASSERT_TRUE(MailStore(program_->GetContext())
                    .StoreMessage(request,
                                  "Subject: Elsewhere " + QByteArray::number(status) + "\r\n\r\n"));
  }
  const auto says = [this](const QString& text) {
    return WaitFor([&] { return PageText().contains(text); });
  };
  search(QStringLiteral("<b>&"));
  EXPECT_TRUE(says(QStringLiteral("「<b>&」に一致するメッセージはありません。")));
  search(QStringLiteral("elsewhere"));
  ASSERT_TRUE(says(QStringLiteral("「elsewhere」に一致するメッセージはありません。")));
  ClickLink(QStringLiteral("a[href=\"vorn:searchEverywhere\"]"));
  ASSERT_TRUE(says(QStringLiteral("Elsewhere 3")));
  EXPECT_FALSE(PageText().contains(QStringLiteral("Elsewhere -4")));
  // What is filed from there leaves the folder in which it was.
  Context& context = program_->GetContext();
  const SerialIds hit{u"mail_of_3"_id};
  ASSERT_TRUE(MoveMessages(context, {.into = {{kShelf, hit}}}));
  ASSERT_TRUE(MakeManualFolder(context, QStringLiteral("Done")));
  FocusPage();
  Press(Qt::Key_Home);
  InModal<ConsoleWindow>([this] { Press(Qt::Key_M); },
                         [](ConsoleWindow& window) {
                           QTest::keyClicks(window.focusWidget(), QStringLiteral("Done"));
                           QTest::keyClick(window.focusWidget(), Qt::Key_Return);
                         });
  const auto stands = [&] { return test::Filed(context, hit, kShelf) == hit; };
  EXPECT_TRUE(WaitFor([&] { return !stands(); }));
  FocusPage();
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_TRUE(WaitFor(stands));
  MadeAnewBy([&box] { box.clear(); });
  search(QStringLiteral("elsewhere"));
  EXPECT_TRUE(says(QStringLiteral("に一致する"))) << "the next search is of the folder again";
}

TEST_F(FolderPageTest, TheFolderThatEnterTakesIsSeenAndIsTheOnlyOneMeant) {
  Begin(3, 10, true);
  Context& context = program_->GetContext();
  ASSERT_TRUE(MakeManualFolder(context, QStringLiteral("Plan A")));
  const SerialId second = *MakeManualFolder(context, QStringLiteral("Plan B"));
  const auto choose = [this](const std::function<void(ConsoleWindow&)>& act) {
    FocusPage();
    Press(Qt::Key_Home);
    EXPECT_TRUE(InModal<ConsoleWindow>([this] { Press(Qt::Key_M); }, act));
  };
  const auto chosen = [](const ConsoleWindow& window) {
    const auto nodes = Child<QTreeWidget>(window, u"TreeView1").selectedItems();
    return nodes.isEmpty() ? QString() : nodes.first()->text(0);
  };
  choose([&](ConsoleWindow& window) {
    EXPECT_FALSE(chosen(window).isEmpty());
    QTest::keyClicks(window.focusWidget(), QStringLiteral("plan"));
    EXPECT_EQ(chosen(window), QString());
    QTest::keyClick(window.focusWidget(), Qt::Key_Return);
    ASSERT_TRUE(window.isVisible()) << "it may be either";
    QTest::keyClicks(window.focusWidget(), QStringLiteral(" b"));
    EXPECT_EQ(chosen(window), QStringLiteral("Plan B"));
    QTest::keyClick(window.focusWidget(), Qt::Key_Return);
  });
  EXPECT_TRUE(WaitFor([&] { return test::Filed(context, Ids({1, 2, 3}), second).size() == 1; }));
  // The last one is also the one that something was dragged onto.
  const SerialId shelf = kShelf;
  Drop(u"mail_2"_id, shelf);
  ASSERT_TRUE(WaitFor([&] { return test::Filed(context, Ids({2}), shelf).size() == 1; }));
  choose([&](ConsoleWindow& window) {
    EXPECT_EQ(chosen(window), QStringLiteral("棚"));
    QTest::keyClick(&window, Qt::Key_Escape);
  });
}

// Asked for, a search reads what messages say, as it reads: in any code, across lines, without
// tags.
TEST_F(FolderPageTest, ASearchOfTextsFindsWhatMessagesSay) {
  Begin(3, 10, true);
  Context& context = program_->GetContext();
  StoreReceived(context, u"mail_wrapped"_id,
                "Subject: Wrapped\r\nContent-Type: text/plain; charset=utf-8\r\n\r\n"
                "ご依頼の見積\r\n書です。\r\n",
                {});
  StoreReceived(context, u"mail_marked"_id,
                "Subject: Marked\r\nContent-Type: text/html\r\nContent-Transfer-Encoding: base64"
                "\r\n\r\n" +
                    QByteArray("<p>An <b>en</b>TITY</p>").toBase64(),
                {});
  auto& box = Child<QLineEdit>(*Browser(), u"txSearch");
  auto& texts = Child<QToolButton>(*Browser(), u"cmTexts");
  const auto search = [&box](const QString& text) {
    box.setFocus();
    box.setText(text);
    QTest::keyClick(&box, Qt::Key_Return);
  };
  const auto says = [this](const QString& text) {
    return WaitFor([&] { return PageText().contains(text); });
  };
  search(QStringLiteral("見積書"));
  ASSERT_TRUE(says(QStringLiteral("「見積書」に一致するメッセージはありません。")));
  MadeAnewBy([&] {
    texts.click();
    Child<QPushButton>(*Browser(), u"cmStopTexts").click();
  });
  EXPECT_FALSE(texts.isChecked());
  test::RunFor(300);
  EXPECT_FALSE(PageText().contains(QStringLiteral("Wrapped"))) << "it was stopped";
  ClickLink(QStringLiteral("a[href=\"vorn:searchTexts\"]"));
  ASSERT_TRUE(says(QStringLiteral("Wrapped")));
  EXPECT_FALSE(PageText().contains(QStringLiteral("No1.")));
  EXPECT_TRUE(Child<QWidget>(*Browser(), u"barTexts").isHidden());
  FocusPage(false);
  Press(Qt::Key_Down);
  Press(Qt::Key_Delete);
  EXPECT_TRUE(AwaitGone("Wrapped"));
  // The next one reads texts, too.
  search(QStringLiteral("entity"));
  ASSERT_TRUE(says(QStringLiteral("Marked")));
  search(QStringLiteral("no2"));
  EXPECT_TRUE(says(QStringLiteral("No2.")));
  QTest::keyClick(&box, Qt::Key_Escape);
  EXPECT_TRUE(says(QStringLiteral("No1.")));
  EXPECT_FALSE(texts.isChecked());
}

// While texts are read the user goes on with what subjects have; what he has chosen stays so, and
// what he has found stays found.
TEST_F(FolderPageTest, ASearchOfTextsTakesNothingAwayWhenItEnds) {
  Begin(3, 10, true);
  // Which takes a while to read.
  StoreReceived(program_->GetContext(), u"mail_long"_id,
                "Subject: Long\r\nContent-Type: text/html\r\n\r\n" +
                    QByteArray("<p>some <b>words</b></p>\r\n").repeated(250000) + "<p>No more</p>",
                {});
  auto& box = Child<QLineEdit>(*Browser(), u"txSearch");
  auto& texts = Child<QToolButton>(*Browser(), u"cmTexts");
  const auto& bar = Child<QWidget>(*Browser(), u"barTexts");
  const auto& found = Child<QLabel>(*Browser(), u"lbFound");
  const auto search = [&](const QString& text) {
    MadeAnewBy([&] {
      box.setFocus();
      box.setText(text);  // typed anew it would be of subjects
      QTest::keyClick(&box, Qt::Key_Return);
    });
  };
  const auto awaitCount = [&found](const QString& count) {
    return WaitFor([&] { return found.text() == count; });
  };
  search(QStringLiteral("nothing"));
  MadeAnewBy([&texts] { texts.click(); });
  EXPECT_TRUE(PageText().contains(QStringLiteral("本文を検索しています")));
  EXPECT_FALSE(PageText().contains(QStringLiteral("本文も検索する")));
  ASSERT_FALSE(bar.isHidden());
  search(QStringLiteral("No"));
  FocusPage(false);
  Press(Qt::Key_Home);
  Press(Qt::Key_Down, Qt::ShiftModifier);
  const SerialIds chosen = Chosen();
  EXPECT_EQ(chosen.size(), 2);
  ASSERT_FALSE(bar.isHidden()) << "too early";
  ASSERT_TRUE(awaitCount(QStringLiteral("4通")));
  EXPECT_EQ(Chosen(), chosen);
  // One that is not done to its end.
  const qsizetype most = std::exchange(TextWait::Most, 1);
  search(QStringLiteral("no"));
  EXPECT_TRUE(awaitCount(QStringLiteral("4通以上"))) << "with those of the subjects";
  TextWait::Most = most;
  // It is not of the folder that is shown next.
  search(QStringLiteral("nothing"));
  ASSERT_FALSE(bar.isHidden());
  MadeAnewBy([this] { Browser()->ShowFolder(kShelf); });
  EXPECT_TRUE(bar.isHidden());
}

// Of many tabs those that were used last have a page. The others have none, and are as they were
// left when somebody comes back, but for what has come meanwhile.
TEST_F(FolderPageTest, ATabThatRestedIsAsItWasLeft) {
  Begin(60, 100);
  ParentWindow* parent = program_->Parent();
  parent->resize(1000, 500);
  BrowserWindow* inbox = Browser();
  Press(Qt::Key_End);
  Press(Qt::Key_Up, Qt::ShiftModifier);
  ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.chosen().length === 2 && scrollY > 100")));
  const double place = Script(QStringLiteral("scrollY")).toDouble();
  auto& tree = Child<QTreeWidget>(*parent, u"tvConsole");
  const auto look = [&](const SerialId& folder) {
    const size_t before = Browsers().size();
    test::ClickRow(tree, Node(folder), Qt::LeftButton, Qt::ControlModifier);
    ASSERT_TRUE(WaitFor([&] { return Browsers().size() == before + 1; }));
    BrowserWindow* browser = Browsers().back();
    ASSERT_TRUE(WaitFor([&] { return browser->Tag() == folder && browser->isVisible(); }));
  };
  look(kShelf);
  SettleIn(*inbox);
  const auto view = [&] { return inbox->findChild<QWebEngineView*>(QStringLiteral("wbUrl")); };
  EXPECT_NE(view(), nullptr);
  look(fixed_serial::kDust);
  const auto rests = [&] { return view() == nullptr; };
  ASSERT_TRUE(WaitFor(rests));
  Come("mail_new", "Came.");
  QSignalSpy inFront(Browsers().back(), &BrowserWindow::Loaded);
  parent->ApplySettings();
  ASSERT_TRUE(WaitFor([&] { return inFront.count() > 0; }));
  EXPECT_TRUE(rests());
  auto* area = parent->findChild<QMdiArea*>();
  QSignalSpy loaded(inbox, &BrowserWindow::Loaded);
  area->findChild<QTabBar*>()->setCurrentIndex(0);
  ASSERT_TRUE(WaitFor([&] { return loaded.count() > 0; }));
  const auto await = [&](const QString& condition) {
    return WaitFor([&] { return ScriptIn(*view(), condition).toBool(); });
  };
  ASSERT_TRUE(await(QStringLiteral("vorn.chosen().join() === 'mail_59,mail_60'")));
  EXPECT_TRUE(await(QStringLiteral("document.body.innerText.includes('Came.')")));
  EXPECT_NEAR(ScriptIn(*view(), QStringLiteral("scrollY")).toDouble(), place, 5);
  EXPECT_TRUE(view()->isAncestorOf(QApplication::focusWidget()));
  QTest::keyClick(view()->focusProxy(), Qt::Key_Up);
  EXPECT_TRUE(await(QStringLiteral("vorn.chosen().join() === 'mail_58'")));
  // Beside one another all are seen.
  const auto waitAll = [&] {
    const auto all = Browsers();
    return std::all_of(all.begin(), all.end(), [](const BrowserWindow* browser) {
      return browser->findChild<QWebEngineView*>(QStringLiteral("wbUrl")) != nullptr;
    });
  };
  EXPECT_FALSE(waitAll());
  Child<QMenu>(*parent, u"menuWindows").actions().at(1)->trigger();
  EXPECT_TRUE(WaitFor(waitAll));
}

// Tabs that are both awake; the area itself gives the keyboard to a control of the toolbar.
TEST_F(FolderPageTest, TheKeysAreThePagesInWhicheverTab) {
  Begin(4, 100);
  ParentWindow* parent = program_->Parent();
  BrowserWindow* inbox = Browser();
  ASSERT_TRUE(MoveMessages(program_->GetContext(), {.into = {{kShelf, Ids({1, 2})}}}));
  auto& tree = Child<QTreeWidget>(*parent, u"tvConsole");
  test::ClickRow(tree, Node(kShelf), Qt::LeftButton, Qt::ControlModifier);
  ASSERT_TRUE(WaitFor([&] { return Browsers().size() == 2; }));
  BrowserWindow* shelf = Browsers().front() == inbox ? Browsers().back() : Browsers().front();
  auto* tabs = parent->findChild<QMdiArea*>()->findChild<QTabBar*>();
  const auto hasKeys = [](const BrowserWindow* browser) {
    const auto* view = browser->findChild<QWebEngineView*>(QStringLiteral("wbUrl"));
    return WaitFor([view] {
      const QWidget* focus = QApplication::focusWidget();
      return focus != nullptr && (view == focus || view->isAncestorOf(focus));
    });
  };
  for (int i = 0; i < 6; ++i) {
    tabs->setCurrentIndex(i % 2);
    EXPECT_TRUE(hasKeys(i % 2 == 0 ? inbox : shelf)) << i;
  }
  // A tab is as it was left, also for who comes by the tree.
  tabs->setCurrentIndex(0);
  ASSERT_TRUE(hasKeys(inbox));
  for (const bool isTree : {true, false}) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F6);
    EXPECT_EQ(tree.hasFocus(), isTree);
  }
  ASSERT_TRUE(hasKeys(inbox));
  auto* list = inbox->findChild<QWebEngineView*>(QStringLiteral("wbUrl"));
  QTest::keyClick(list->focusProxy(), Qt::Key_End);
  const QString isLast = QStringLiteral("vorn.chosen().join() === 'mail_4'");
  ASSERT_TRUE(WaitFor([&] { return ScriptIn(*list, isLast).toBool(); }));
  for (const SerialId& folder : {kShelf, fixed_serial::kInbox}) {
    test::ClickRow(tree, Node(folder));
    ASSERT_TRUE(hasKeys(folder == fixed_serial::kInbox ? inbox : shelf));
    SettleIn(*inbox);
  }
  EXPECT_TRUE(ScriptIn(*list, isLast).toBool());
  // Who closes a tab is back where he came from.
  auto* area = parent->findChild<QMdiArea*>();
  test::ClickRow(tree, Node(fixed_serial::kDust), Qt::LeftButton, Qt::ControlModifier);
  ASSERT_TRUE(WaitFor([&] { return Browsers().size() == 3; }));
  for (const int from : {0, 1}) {
    tabs->setCurrentIndex(from);
    EXPECT_TRUE(hasKeys(from == 0 ? inbox : shelf));
    QTest::keyClick(parent, Qt::Key_F1);
    ASSERT_TRUE(WaitFor([area] { return area->subWindowList().size() == 4; }));
    EXPECT_EQ(tree.currentItem(), Node(from == 0 ? fixed_serial::kInbox : kShelf));
    area->activeSubWindow()->close();
    ASSERT_TRUE(WaitFor([area] { return area->subWindowList().size() == 3; }));
    EXPECT_EQ(tabs->currentIndex(), from);
  }
  EXPECT_TRUE(hasKeys(shelf));
  // A frame shows where they are.
  const auto framed = [](const QWidget& widget) {
    return test::Child<QWidget>(widget, u"frKeys").isVisible();
  };
  EXPECT_TRUE(framed(*shelf->findChild<QWebEngineView*>(QStringLiteral("wbUrl"))));
  tree.setFocus();
  EXPECT_TRUE(framed(tree));
  EXPECT_FALSE(framed(*shelf->findChild<QWebEngineView*>(QStringLiteral("wbUrl"))));
  // Who types into a box and comes back from elsewhere goes on typing.
  auto* search = shelf->findChild<QLineEdit*>(QStringLiteral("txSearch"));
  search->setFocus();
  QMdiSubWindow* frame = area->activeSubWindow();
  Q_EMIT area->subWindowActivated(nullptr);
  Q_EMIT area->subWindowActivated(frame);
  SettleIn(*shelf);
  EXPECT_EQ(QApplication::focusWidget(), search);
}

// Also in an inbox that was empty, and while mail comes in pieces.
TEST_F(FolderPageTest, TheNewestPageIsFollowedUntilAMessageIsRead) {
  Begin(1, 10, true);
  Press(Qt::Key_Home);
  Press(Qt::Key_Delete);
  ASSERT_TRUE(AwaitGone("No1."));
  int stored = 1;
  const auto come = [&](int count) {
    MadeAnewBy([&] {
      for (int i = 0; i < count; ++i) {
        const QByteArray number = QByteArray::number(++stored);
        Come("mail_" + number, "No" + number + ".",
             QStringLiteral("2021-01-01 00:%1:00").arg(stored, 2, 10, QChar(u'0')));
      }
    });
  };
  const auto shows = [this](int number) {
    return WaitFor([&] { return PageText().contains(QStringLiteral("No%1.").arg(number)); });
  };
  come(6);
  come(17);
  EXPECT_TRUE(shows(24)) << PageText().toStdString();
  come(9);
  EXPECT_TRUE(shows(33));
  FocusPage();
  Press(Qt::Key_End);
  come(11);
  EXPECT_TRUE(shows(33)) << "the page that is read goes away";
}

TEST_F(FolderPageTest, APageKeepsItsPlaceWhenItIsMadeAnew) {
  Begin(60, 100);
  for (int i = 0; i < 3; ++i) Press(Qt::Key_Down);
  // Where it comes to lie depends on the fonts, and on the size of the screen's dots.
  const double place = Script(QStringLiteral("scrollTo(0, 333), scrollY")).toDouble();
  ASSERT_GT(place, 100);
  MadeAnewBy([this] { program_->Parent()->Pages().Messages().MessageStored(); });
  ASSERT_TRUE(AwaitScript(QStringLiteral("Math.abs(scrollY - %1) <= 1").arg(place)));
  EXPECT_EQ(Chosen(), Ids({3}));
  // What comes above moves nothing that is in sight.
  const QString topmost = QStringLiteral(
      "[...document.querySelectorAll('a[href^=\"preview:\"]')].find(link => "
      "link.getBoundingClientRect().top >= 0).href");
  const QString before = Script(topmost).toString();
  MadeAnewBy([this] {
    for (int i = 0; i < 10; ++i) {
      Come("mail_early_" + QByteArray::number(i), "early", QStringLiteral("2019-01-01 00:00:00"));
    }
  });
  EXPECT_TRUE(WaitFor([&] { return Script(topmost).toString() == before; }));
  ASSERT_TRUE(AwaitScript(QStringLiteral("scrollY > %1 + 50").arg(place)));
  const double now = Script(QStringLiteral("scrollY")).toDouble();
  // Who comes back by the tree and presses a key does nothing to what he chose before.
  auto* tree = program_->Parent()->findChild<QTreeWidget*>(QStringLiteral("tvConsole"));
  test::ClickRow(
      *tree,
      tree->findItems(QStringLiteral("受信"), Qt::MatchContains | Qt::MatchRecursive).value(0));
  ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.chosen().length === 0")));
  EXPECT_TRUE(AwaitScript(QStringLiteral("Math.abs(scrollY - %1) <= 1").arg(now)));
  // What he sees and did not leave stays.
  Press(Qt::Key_Home);
  ASSERT_EQ(Chosen().size(), 1);
  test::ClickRow(
      *tree,
      tree->findItems(QStringLiteral("受信"), Qt::MatchContains | Qt::MatchRecursive).value(0));
  EXPECT_EQ(Chosen().size(), 1);
}

TEST_F(FolderPageTest, PagesAreReachedByNumberAndTheNewestIsShownFirst) {
  Begin(59, 10, true);
  EXPECT_TRUE(PageText().contains(QStringLiteral("No59.")));
  auto& box = Child<QLineEdit>(*Browser(), u"txPage");
  auto& pages = Child<QLabel>(*Browser(), u"lbPages");
  ASSERT_TRUE(WaitFor([&pages] { return pages.text().contains(u'6'); }));
  EXPECT_EQ(box.text(), QStringLiteral("6"));
  const auto action = [this](const char16_t* key) {
    return Browser()->findChild<QAction*>(QString::fromUtf16(key));
  };
  EXPECT_FALSE(action(u"newest")->isEnabled());
  // Who turns back goes on with the row before.
  View()->setFixedHeight(120);
  action(u"before")->trigger();
  ASSERT_TRUE(WaitFor([this] { return PageText().contains(QStringLiteral("No50.")); }));
  EXPECT_TRUE(WaitFor(
      [this] {
        return Script(QStringLiteral("scrollY > 0 && innerHeight + scrollY >= "
                                     "document.documentElement.scrollHeight - 2"))
            .toBool();
      },
      30000))
      << Script(QStringLiteral("[scrollY, innerHeight, document.documentElement.scrollHeight]+''"))
             .toString()
             .toStdString();
  test::Type(box, QStringLiteral("3"));
  MadeAnewBy([this] { Come("mail_new", "meanwhile"); });
  EXPECT_EQ(box.text(), QStringLiteral("3")) << "who types a number is not disturbed";
  QTest::keyClick(&box, Qt::Key_Return);
  ASSERT_TRUE(WaitFor([this] { return PageText().contains(QStringLiteral("No21.")); }));
  action(u"oldest")->trigger();
  ASSERT_TRUE(WaitFor([this] { return PageText().contains(QStringLiteral("No1.")); }));
  EXPECT_FALSE(action(u"before")->isEnabled());
  test::Type(box, QStringLiteral("999"));
  QTest::keyClick(&box, Qt::Key_Return);
  ASSERT_TRUE(WaitFor([this] { return PageText().contains(QStringLiteral("No59.")); }));
  EXPECT_EQ(box.text(), QStringLiteral("6"));
  auto& search = Child<QLineEdit>(*Browser(), u"txSearch");
  test::Type(search, QStringLiteral("No21."));
  QTest::keyClick(&search, Qt::Key_Return);
  ASSERT_TRUE(WaitFor([this] { return PageText().contains(QStringLiteral("No21.")); }));
  search.clear();
  QTest::keyClick(&search, Qt::Key_Return);
  EXPECT_TRUE(WaitFor([this] { return PageText().contains(QStringLiteral("No59.")); }));
  // A page that is open follows the settings.
  Settings(program_->GetContext()).Bag()->Let(QStringLiteral("Messages"), 30);
  MadeAnewBy([this] { program_->Parent()->ApplySettings(); });
  EXPECT_TRUE(WaitFor([&pages] { return pages.text().contains(u'2'); }));
  const auto letters = [this](int points) {
    Settings(program_->GetContext()).Bag()->Let(QStringLiteral("ListFontSize"), points);
    MadeAnewBy([this] { program_->Parent()->ApplySettings(); });
    return Script(QStringLiteral("getComputedStyle(document.body).fontSize")).toString();
  };
  const QString usual = letters(0);
  EXPECT_NE(letters(30), usual);
  EXPECT_EQ(letters(0), usual);
}

TEST_F(FolderPageTest, AfterThePageThatIsEmptiedComesTheOneBeforeIt) {
  Begin(11, 10, true);
  ASSERT_TRUE(PageText().contains(QStringLiteral("No11.")));
  FocusPage();
  Press(Qt::Key_Home);
  Press(Qt::Key_Delete);
  ASSERT_TRUE(WaitFor([this] { return PageText().contains(QStringLiteral("No10.")); }));
  EXPECT_EQ(Child<QLineEdit>(*Browser(), u"txPage").text(), QStringLiteral("1"));
}

}  // namespace
}  // namespace vorn
