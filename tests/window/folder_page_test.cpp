// A folder's page in use: moving and choosing by keys, acting on messages, pages.

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPrintDialog>
#include <QPushButton>
#include <QScreen>
#include <QTabBar>
#include <QTableWidget>
#include <QToolBar>
#include <QWebEngineScript>

#include "auxiliary/window/console_window.h"
#include "mail/message_filing.h"
#include "mail/window/message_window.h"
#include "objects/object_loader.h"
#include "objects/standard_objects.h"
#include "present/window/layout_window.h"
#include "storage/databases.h"
#include "window/folder_page_fixture.h"

namespace vorn {
namespace {

using test::Child;

TEST_F(FolderPageTest, RowsAreMovedAmongAndChosenByKeys) {
  Begin(6, 100);
  EXPECT_EQ(Chosen(), QStringList());
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

TEST_F(FolderPageTest, ALongSubjectPushesNothingOutOfTheWindow) {
  Begin(2, 100);
  program_->Parent()->resize(1200, 700);
  const auto width = [this] { return Script(QStringLiteral("document.body.scrollWidth")).toInt(); };
  AwaitPainted(*View());
  const int before = width();
  MadeAnewBy([this] {
    Disk request(QStringLiteral("mail_long"));
    request.Let(QStringLiteral("process"), static_cast<int>(kStatusReceived));
    request.Let(QStringLiteral("Flag"), QStringLiteral("001"));
    EXPECT_TRUE(MailStore(program_->GetContext())
                    .StoreMessage(request, "From: a@example.jp\r\nSubject: " +
                                               QByteArray(3000, 'x') + "\r\n\r\nbody\r\n"));
    program_->Parent()->MessageStored();
  });
  AwaitPainted(*View());
  EXPECT_TRUE(PageText().contains(u"xxx"));
  EXPECT_LE(width(), qMax(before, View()->width()));
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
    return browser == nullptr ? QString() : browser->Tag();
  };
  auto& tree = Child<QTreeWidget>(*parent, u"tvConsole");
  const auto shows = [&](const QString& folder, size_t tabs) {
    return WaitFor([&] { return active() == folder && Browsers().size() == tabs; });
  };
  test::ClickRow(tree, Node(fixed_serial::kOutbox));
  ASSERT_TRUE(shows(fixed_serial::kOutbox, 2));
  // What it was searched for is not what the next folder is searched for.
  auto* search = area->currentSubWindow()->findChild<QLineEdit*>(QStringLiteral("txSearch"));
  QTest::keyClicks(search, QStringLiteral("nothing"));
  QTest::keyClick(search, Qt::Key_Return);
  test::ClickRow(tree, Node(QString::fromUtf16(kShelf)));
  ASSERT_TRUE(shows(QString::fromUtf16(kShelf), 2));
  EXPECT_EQ(search->text(), QString());
  EXPECT_EQ(area->currentSubWindow()->windowTitle(), QStringLiteral("棚"));
  test::ClickRow(tree, Node(fixed_serial::kInbox));
  ASSERT_TRUE(shows(fixed_serial::kInbox, 2));
  test::ClickRow(tree, Node(fixed_serial::kDust), Qt::LeftButton, Qt::ControlModifier);
  ASSERT_TRUE(shows(fixed_serial::kDust, 3));
  test::ClickRow(tree, Node(fixed_serial::kOutbox));
  ASSERT_TRUE(shows(fixed_serial::kOutbox, 3));
  test::ClickRow(tree, Node(QString::fromUtf16(kShelf)), Qt::MiddleButton);
  ASSERT_TRUE(shows(QString::fromUtf16(kShelf), 4));
  EXPECT_EQ(tree.currentItem(), Node(QString::fromUtf16(kShelf)));
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
  search(QStringLiteral("nothing"));
  EXPECT_TRUE(AwaitGone("No25."));
  Press(Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(Script(QStringLiteral("getSelection().toString()")).toString(), QString());
  MadeAnewBy([this] { Press(Qt::Key_Escape); });
  EXPECT_TRUE(WaitFor([this] { return PageText().contains(QStringLiteral("No25.")); }));
  EXPECT_EQ(box.text(), QString());
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
  const auto look = [&](const QString& folder) {
    const size_t before = Browsers().size();
    test::ClickRow(tree, Node(folder), Qt::LeftButton, Qt::ControlModifier);
    ASSERT_TRUE(WaitFor([&] { return Browsers().size() == before + 1; }));
    BrowserWindow* browser = Browsers().back();
    ASSERT_TRUE(WaitFor([&] { return browser->Tag() == folder && browser->isVisible(); }));
  };
  look(QString::fromUtf16(kShelf));
  test::RunFor(500);
  const auto view = [&] { return inbox->findChild<QWebEngineView*>(QStringLiteral("wbUrl")); };
  EXPECT_NE(view(), nullptr);
  look(fixed_serial::kDust);
  const auto rests = [&] { return view() == nullptr; };
  ASSERT_TRUE(WaitFor(rests));
  Disk request(QStringLiteral("mail_new"));
  request.Let(QStringLiteral("process"), static_cast<int>(kStatusReceived));
  request.Let(QStringLiteral("Flag"), QStringLiteral("001"));
  EXPECT_TRUE(MailStore(program_->GetContext())
                  .StoreMessage(request, "From: a@example.jp\r\nSubject: Came.\r\n\r\nbody\r\n"));
  parent->MessageStored();
  parent->ApplySettings();
  test::RunFor(500);
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
  ASSERT_TRUE(FileMessages(program_->GetContext(), Ids({1, 2}), QString::fromUtf16(kShelf)));
  auto& tree = Child<QTreeWidget>(*parent, u"tvConsole");
  test::ClickRow(tree, Node(QString::fromUtf16(kShelf)), Qt::LeftButton, Qt::ControlModifier);
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
  // Who closes a tab is back where he came from.
  auto* area = parent->findChild<QMdiArea*>();
  test::ClickRow(tree, Node(fixed_serial::kDust), Qt::LeftButton, Qt::ControlModifier);
  ASSERT_TRUE(WaitFor([&] { return Browsers().size() == 3; }));
  for (const int from : {0, 1}) {
    tabs->setCurrentIndex(from);
    EXPECT_TRUE(hasKeys(from == 0 ? inbox : shelf));
    QTest::keyClick(parent, Qt::Key_F1);
    ASSERT_TRUE(WaitFor([area] { return area->subWindowList().size() == 4; }));
    area->activeSubWindow()->close();
    ASSERT_TRUE(WaitFor([area] { return area->subWindowList().size() == 3; }));
    EXPECT_EQ(tabs->currentIndex(), from);
  }
  EXPECT_TRUE(hasKeys(shelf));
  // Who types into a box and comes back from elsewhere goes on typing.
  auto* search = shelf->findChild<QLineEdit*>(QStringLiteral("txSearch"));
  search->setFocus();
  QMdiSubWindow* frame = area->activeSubWindow();
  Q_EMIT area->subWindowActivated(nullptr);
  Q_EMIT area->subWindowActivated(frame);
  test::RunFor(100);
  EXPECT_EQ(QApplication::focusWidget(), search);
}

// A page may be too busy to tell its place for a while, and be made anew several times meanwhile.
TEST_F(FolderPageTest, APlaceIsWaitedForEachTime) {
  Begin(5, 100);
  Press(Qt::Key_Home);
  Press(Qt::Key_Down);
  ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.current() === 'mail_2'")));
  QElapsedTimer clock;
  clock.start();
  MadeAnewBy([this] { Browser()->Refresh(); });
  ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.current() === 'mail_2'")));
  test::RunFor(static_cast<int>(qMax(qint64{0}, 1900 - clock.elapsed())));
  View()->page()->runJavaScript(
      QStringLiteral("for (const end = Date.now() + 700; Date.now() < end;);"),
      QWebEngineScript::ApplicationWorld, [](const QVariant&) {});
  MadeAnewBy([this] { Browser()->Refresh(); });
  EXPECT_TRUE(AwaitScript(QStringLiteral("vorn.current() === 'mail_2'")));
}

TEST_F(FolderPageTest, ARangeBeginsAtItsFirstRowAndGoesOnInAPageThatIsMadeAnew) {
  Begin(6, 100);
  Press(Qt::Key_Up, Qt::ShiftModifier);
  EXPECT_EQ(Chosen(), Ids({6}));
  Press(Qt::Key_Up, Qt::ShiftModifier);
  MadeAnewBy([this] { Browser()->Refresh(); });
  Press(Qt::Key_Up, Qt::ShiftModifier);
  EXPECT_EQ(Chosen(), Ids({4, 5, 6}));
  // An answer goes to the message that is read, which is the one reached last.
  Press(Qt::Key_Home);
  Press(Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(Chosen(), Ids({1, 2}));
  Press(Qt::Key_R);
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
  EXPECT_EQ(TopLevel<MessageWindow>()->GetMessageSubject(), QStringLiteral("Re: No2."));
  TopLevel<MessageWindow>()->close();
}

// Also in an inbox that was empty, and while mail comes in pieces.
TEST_F(FolderPageTest, TheNewestPageIsFollowedUntilAMessageIsRead) {
  Begin(1, 10, true);
  Press(Qt::Key_Home);
  Press(Qt::Key_Delete);
  ASSERT_TRUE(AwaitGone("No1."));
  int stored = 1;
  const auto come = [&](int count) {
    for (int i = 0; i < count; ++i) {
      Disk request(QStringLiteral("mail_%1").arg(++stored));
      request.Let(QStringLiteral("process"), static_cast<int>(kStatusReceived));
      request.Let(QStringLiteral("Timestamp"),
                  QStringLiteral("2021-01-01 00:%1:00").arg(stored, 2, 10, QChar(u'0')));
      EXPECT_TRUE(
          MailStore(program_->GetContext())
              .StoreMessage(request, "Subject: No" + QByteArray::number(stored) + ".\r\n\r\n"));
    }
    MadeAnewBy([this] { program_->Parent()->MessageStored(); });
  };
  const auto shows = [this](int number) {
    return WaitFor([&] { return PageText().contains(QStringLiteral("No%1.").arg(number)); }, 5000);
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

// Behind another tab a page has no height, but the end and the row that the user left are there.
TEST_F(FolderPageTest, APageBehindAnotherTabIsWhereItWasLeft) {
  Begin(60, 100, true);
  BrowserWindow* inbox = Browser();
  const auto isThere = [&](const char* condition) {
    auto* engine = inbox->findChild<QWebEngineView*>(QStringLiteral("wbUrl"));
    return WaitFor([&] { return ScriptIn(*engine, QString::fromLatin1(condition)).toBool(); });
  };
  const char* const lastIsSeen =
      "[...document.links].pop().getBoundingClientRect().bottom <= innerHeight";
  ASSERT_TRUE(isThere(lastIsSeen));
  auto* area = program_->Parent()->findChild<QMdiArea*>();
  auto& tree = Child<QTreeWidget>(*program_->Parent(), u"tvConsole");
  test::ClickRow(tree, Node(QString::fromUtf16(kShelf)), Qt::LeftButton, Qt::ControlModifier);
  ASSERT_TRUE(isThere("innerHeight === 0"));
  Disk request(QStringLiteral("mail_new"));
  request.Let(QStringLiteral("process"), static_cast<int>(kStatusReceived));
  EXPECT_TRUE(MailStore(program_->GetContext()).StoreMessage(request, "Subject: Came.\r\n\r\n"));
  program_->Parent()->MessageStored();
  ASSERT_TRUE(isThere("document.body.innerText.includes('Came.')"));
  area->findChild<QTabBar*>()->setCurrentIndex(0);
  EXPECT_TRUE(isThere(lastIsSeen));
  auto* view = inbox->findChild<QWebEngineView*>(QStringLiteral("wbUrl"));
  view->setFocus();
  for (int i = 0; i < 30; ++i) QTest::keyClick(view->focusProxy(), Qt::Key_Up);
  const char* const currentIsSeen =
      "(() => { const place = document.querySelector('.vorn-current')?.getBoundingClientRect();"
      " return !!place && place.top >= 0 && place.bottom <= innerHeight; })()";
  ASSERT_TRUE(isThere(currentIsSeen));
  area->findChild<QTabBar*>()->setCurrentIndex(1);
  ASSERT_TRUE(isThere("innerHeight === 0"));
  inbox->RunCommand(QStringLiteral("dust"));
  ASSERT_TRUE(isThere("!document.body.innerText.includes('No32.')"));
  area->findChild<QTabBar*>()->setCurrentIndex(0);
  EXPECT_TRUE(isThere(currentIsSeen));
}

TEST_F(FolderPageTest, APageKeepsItsPlaceWhenItIsMadeAnew) {
  Begin(60, 100);
  for (int i = 0; i < 3; ++i) Press(Qt::Key_Down);
  // Where it comes to lie depends on the fonts, and on the size of the screen's dots.
  const double place = Script(QStringLiteral("scrollTo(0, 333), scrollY")).toDouble();
  ASSERT_GT(place, 100);
  QSignalSpy loaded(Browser(), &BrowserWindow::Loaded);
  program_->Parent()->MessageStored();
  ASSERT_TRUE(WaitFor([&loaded] { return loaded.count() > 0; }));
  ASSERT_TRUE(AwaitScript(QStringLiteral("Math.abs(scrollY - %1) <= 1").arg(place)));
  EXPECT_EQ(Chosen(), Ids({3}));
  // What comes above moves nothing that is in sight.
  const QString topmost = QStringLiteral(
      "[...document.querySelectorAll('a[href^=\"preview:\"]')].find(link => "
      "link.getBoundingClientRect().top >= 0).href");
  const QString before = Script(topmost).toString();
  MadeAnewBy([this] {
    for (int i = 0; i < 10; ++i) {
      Disk request(QStringLiteral("mail_early_%1").arg(i));
      request.Let(QStringLiteral("process"), static_cast<int>(kStatusReceived));
      request.Let(QStringLiteral("Timestamp"), QStringLiteral("2019-01-01 00:00:00"));
      EXPECT_TRUE(
          MailStore(program_->GetContext()).StoreMessage(request, "Subject: early\r\n\r\n"));
    }
    program_->Parent()->MessageStored();
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

// It is there when the new page is first seen, and not a moment later.
TEST_F(FolderPageTest, APageMadeAnewDoesNotJump) {
  Begin(60, 100);
  Script(QStringLiteral("scrollTo(0, 500)"));
  ASSERT_TRUE(WaitFor([this] { return View()->page()->scrollPosition().y() == 500; }));
  AwaitPainted(*View());
  const QImage before = View()->grab().toImage();
  int others = 0;
  QTimer look;
  QObject::connect(&look, &QTimer::timeout, View(),
                   [&] { others += View()->grab().toImage() == before ? 0 : 1; });
  look.start(1);
  for (int i = 0; i < 3; ++i) {
    MadeAnewBy([this] { Browser()->Refresh(); });
    AwaitPainted(*View());
    test::RunFor(200);
  }
  look.stop();
  EXPECT_EQ(others, 0) << "moments at which something else was in sight";
  EXPECT_EQ(Script(QStringLiteral("scrollY")).toInt(), 500);
  // Where the keyboard is left to the window, it is the page's.
  program_->Parent()->setFocus();
  EXPECT_TRUE(WaitFor([this] { return View()->isAncestorOf(QApplication::focusWidget()); }));
}

TEST_F(FolderPageTest, APageThatOpensAtItsEndStaysThereAndAnotherAtItsPlace) {
  Begin(60, 100, true);
  const QString atEnd =
      QStringLiteral("innerHeight + scrollY >= document.documentElement.scrollHeight - 2");
  const auto grow = [this](int number) {
    Disk request(QStringLiteral("mail_%1").arg(number));
    request.Let(QStringLiteral("process"), static_cast<int>(kStatusReceived));
    request.Let(QStringLiteral("Timestamp"),
                QStringLiteral("2021-01-01 00:%1:00").arg(number - 60));
    EXPECT_TRUE(
        MailStore(program_->GetContext())
            .StoreMessage(request, "Subject: No" + QByteArray::number(number) + ".\r\n\r\n"));
    MadeAnewBy([this] { program_->Parent()->MessageStored(); });
    EXPECT_TRUE(AwaitScript(QStringLiteral("vorn.count() === %1").arg(number)));
  };
  ASSERT_TRUE(AwaitScript(atEnd));
  grow(61);
  EXPECT_TRUE(WaitFor([&] { return Script(atEnd).toBool(); }, 5000));
  // A row that is read stays in sight, and Tab comes to its links alone.
  const QString tabStops = QStringLiteral(
      "[...document.querySelectorAll('a[href]')].filter(a => a.tabIndex >= 0).length");
  EXPECT_EQ(Script(tabStops).toInt(), 0);
  const QString inSight = QStringLiteral(
      "(() => { const r = document.querySelector('.vorn-current').getBoundingClientRect();"
      "  return r.top >= 0 && r.bottom <= innerHeight; })()");
  Script(QStringLiteral("vorn.step(1, false)"));
  ASSERT_TRUE(Script(QStringLiteral("(() => { while (document.querySelector('.vorn-current')"
                                    "  .getBoundingClientRect().top > 40) vorn.step(-1, false);"
                                    "  scrollTo(0, 1e9); })(), %1 && %2")
                         .arg(inSight, atEnd))
                  .toBool());
  EXPECT_GE(Script(tabStops).toInt(), 1);
  EXPECT_LE(Script(tabStops).toInt(), 4);
  grow(62);
  EXPECT_TRUE(WaitFor([&] { return Script(inSight).toBool(); }, 5000));
  Settings(program_->GetContext())->Let(QStringLiteral("MessagesNewest"), false);
  OpenFolder(fixed_serial::kInbox);
  ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 62 && scrollY === 0")));
  const double place = Script(QStringLiteral("scrollTo(0, 1e9), scrollY")).toDouble();
  ASSERT_GT(place, 100);
  grow(63);
  EXPECT_TRUE(WaitFor(
      [&] { return Script(QStringLiteral("Math.abs(scrollY - %1) <= 1").arg(place)).toBool(); },
      5000));
  EXPECT_FALSE(Script(atEnd).toBool());
}

TEST_F(FolderPageTest, KeysPressedWhileThePageIsMadeAnewActOnIt) {
  Begin(4, 100);
  Press(Qt::Key_Down);
  MadeAnewBy([this] {
    Browser()->Refresh();
    Press(Qt::Key_Down);  // the page that is there will not be asked again
    Press(Qt::Key_Down);
    program_->Parent()->findChild<QAction*>(QStringLiteral("tb_dust"))->trigger();
  });
  EXPECT_TRUE(AwaitGone("No3."));
  EXPECT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 3")));
  // What was meant for a page is not done on another one.
  Press(Qt::Key_Home);
  Browser()->Refresh();
  Press(Qt::Key_Delete);
  Browser()->ShowFolder(fixed_serial::kInbox);
  AwaitPainted(*View());
  test::RunFor(300);
  EXPECT_EQ(Script(QStringLiteral("vorn.count()")).toInt(), 3);
  Browser()->LoadDefaultProperty(nullptr, true);
  Press(Qt::Key_Home);
  EXPECT_EQ(Chosen(), Ids({1})) << "what is pressed before a page is there acts on it";
}

TEST_F(FolderPageTest, APageMadeAnewWhileItIsLoadingIsShown) {
  Begin(60, 100);
  for (int i = 0; i < 25; ++i) {
    Browser()->LoadDefaultProperty(nullptr, true);
    const QDir pages(Folder() + QStringLiteral("temp"));
    EXPECT_EQ(pages.entryList(QDir::Files), QStringList()) << "what stands in it is in clear";
    test::RunFor(i % 5 * 7);
  }
  EXPECT_TRUE(WaitFor([this] { return PageText().contains(QStringLiteral("No60.")); }));
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
  test::Type(box, QStringLiteral("3"));
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
  Settings(program_->GetContext())->Let(QStringLiteral("Messages"), 30);
  MadeAnewBy([this] { program_->Parent()->ApplySettings(); });
  EXPECT_TRUE(WaitFor([&pages] { return pages.text().contains(u'2'); }));
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
