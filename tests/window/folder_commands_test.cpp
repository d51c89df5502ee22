// What is done with the messages of a folder's page: by its keys, its menu and the buttons.

#include <QPrintDialog>
#include <algorithm>

#include "auxiliary/window/console_window.h"
#include "mail/address_book.h"
#include "mail/codec/mime/flag_string.h"
#include "mail/store/mail_row.h"
#include "mail/store/message_filing.h"
#include "mail/store/message_rows.h"
#include "mail/window/message_window.h"
#include "mail/window/reading/reading_pane.h"
#include "objects/any_object.h"
#include "objects/object_loader.h"
#include "objects/save_object.h"
#include "objects/window/objects_window.h"
#include "storage/databases.h"
#include "window/folder_page_fixture.h"

namespace vorn {
namespace {

using test::Child;

// Accepts the text that the next window, which follows a tree at once, proposes.
void AcceptText(const QString& text) {
  auto* watch = new QTimer(qApp);
  QObject::connect(watch, &QTimer::timeout, watch, [watch, text] {
    auto* asks = qobject_cast<ConsoleWindow*>(QApplication::activeModalWidget());
    if (asks == nullptr || Child<QTreeWidget>(*asks, u"TreeView1").isVisible()) return;
    watch->stop();
    watch->deleteLater();
    EXPECT_EQ(Child<QLineEdit>(*asks, u"Text1").text(), text);
    asks->cmOk_Click();
  });
  watch->start(20);
}

class FolderCommandsTest : public FolderPageTest {
 protected:
  // Whether a message counts as not yet opened.
  QString Mark(int number) const {
    const OpenedDatabase mail(program_->GetContext(), DatabaseKind::Mail);
    const RecordsetPtr row = MessageRows(program_->GetContext().Data).Of(Ids({number}).first());
    return MailRow(*row).Flags().At(kFlagNew, QStringLiteral("0"));
  }
};

TEST_F(FolderCommandsTest, TheMainMenuSaysAndDoesWhatAPageCanDoNow) {
  Begin(3, 100);
  auto& menu = Child<QMenu>(*program_->Parent(), u"menuPageMessages");
  const auto entry = [&](const QString& text) {
    Q_EMIT menu.aboutToShow();
    for (QAction* action : menu.actions()) {
      if (action->text().startsWith(text)) return action;
    }
    return menu.actions().first();
  };
  Press(Qt::Key_Home);
  EXPECT_FALSE(entry(QStringLiteral("くずかごから出す"))->isEnabled());
  entry(QStringLiteral("くずかごに入れる"))->trigger();
  ASSERT_TRUE(AwaitGone("No1."));
  Browser()->Unload();
  ASSERT_TRUE(WaitFor([&] { return Browsers().empty(); }));
  EXPECT_FALSE(entry(QStringLiteral("印刷"))->isEnabled());
}

TEST_F(FolderCommandsTest, ADoubleClickIsOneCommand) {
  Begin(3, 100);
  auto& toolbar = Child<QToolBar>(*program_->Parent(), u"tbMain");
  QAction* dust = program_->Parent()->findChild<QAction*>(QStringLiteral("tb_dust"));
  Press(Qt::Key_Home);
  EXPECT_EQ(Chosen().size(), 1);
  QWidget* button = toolbar.widgetForAction(dust);
  QCursor::setPos(button->mapToGlobal(button->rect().center()));
  MadeAnewBy([button] {
    QTest::mouseClick(button, Qt::LeftButton);
    QTest::mouseDClick(button, Qt::LeftButton);
  });
  SettleIn(*Browser());
  EXPECT_EQ(Script(QStringLiteral("vorn.count()")).toInt(), 2);
  // A link of a row as well.
  ClickLink(QStringLiteral("a[href^=\"replay:\" i]"));
  QWidget* page = View()->focusProxy();
  const auto again = [page] {
    QTest::mouseClick(page, Qt::LeftButton, Qt::NoModifier, page->mapFromGlobal(QCursor::pos()));
  };
  again();  // before the engine has told of the first
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
  again();
  SettleIn(*Browser());
  EXPECT_EQ(test::TopLevels<MessageWindow>().size(), 1);
}

TEST_F(FolderCommandsTest, EnterFollowsTheLinkOnWhichTheKeyboardStands) {
  Begin(2, 100);
  Press(Qt::Key_Home);
  const QString isReply =
      QStringLiteral("document.activeElement.matches('a[href^=\"replay:\" i]')");
  for (int i = 0; i < 9 && !Script(isReply).toBool(); ++i) {
    Script(QStringLiteral("window.before = document.activeElement; 0"));
    Press(Qt::Key_Tab);
    ASSERT_TRUE(AwaitScript(QStringLiteral("document.activeElement !== window.before")));
  }
  Press(Qt::Key_Return);
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
  EXPECT_TRUE(TopLevel<MessageWindow>()->windowTitle().contains(u"Re:"))
      << TopLevel<MessageWindow>()->windowTitle().toStdString();
  // A step leaves the link.
  FocusPage();
  Press(Qt::Key_End);
  EXPECT_TRUE(AwaitScript(u'!' + isReply));
}

// What was passed over is not what goes next.
TEST_F(FolderCommandsTest, BehindTheLastRowOfAPageTheNextOneFollows) {
  Begin(7, 3);
  FocusPage();
  Press(Qt::Key_End);
  for (const int next : {4, 5}) {
    Press(Qt::Key_Delete);
    EXPECT_TRUE(AwaitScript(QStringLiteral("vorn.current() === 'mail_%1'").arg(next)));
  }
  EXPECT_TRUE(PageText().contains(QStringLiteral("No2.")));
  EXPECT_FALSE(PageText().contains(QStringLiteral("No4.")));
  // Where nothing follows, the one before.
  MadeAnewBy([this] { Browser()->findChild<QAction*>(QStringLiteral("newest"))->trigger(); });
  FocusPage();
  Press(Qt::Key_End);
  Press(Qt::Key_Delete);
  EXPECT_TRUE(AwaitScript(QStringLiteral("vorn.current() === 'mail_6'")));
  // Pressed again before it is there, it takes nothing that was passed over.
  MadeAnewBy([this] { Press(Qt::Key_Home, Qt::AltModifier); });
  FocusPage();
  Press(Qt::Key_End);
  ASSERT_EQ(Chosen(), Ids({5}));
  Press(Qt::Key_Delete);
  Press(Qt::Key_Delete);
  EXPECT_TRUE(AwaitGone("No5."));
  Chosen();
  EXPECT_TRUE(PageText().contains(QStringLiteral("No2.")));
}

// Another program, or an undo, empties the page at whose end somebody looks at nothing in
// particular.
TEST_F(FolderCommandsTest, NoRowBecomesCurrentByTheLossOfItsPage) {
  Begin(4, 3);
  MadeAnewBy([this] { Browser()->findChild<QAction*>(QStringLiteral("newest"))->trigger(); });
  ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 1 && vorn.current() === ''")));
  MadeAnewBy([this] {
    EXPECT_TRUE(SetDust(program_->GetContext(), Ids({4}), true));
    program_->Parent()->Pages().Messages().MessageStored();
  });
  EXPECT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 3")));
  EXPECT_TRUE(AwaitScript(QStringLiteral("vorn.current() === ''")));
  // Nor in the place of one that others took; the keys go on at what came there.
  FocusPage();
  Press(Qt::Key_Home);
  ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.current() === 'mail_1'")));
  MadeAnewBy([this] {
    EXPECT_TRUE(SetDust(program_->GetContext(), Ids({1}), true));
    program_->Parent()->Pages().Messages().MessageStored();
  });
  ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.current() === ''")));
  Press(Qt::Key_Down);
  EXPECT_TRUE(AwaitScript(QStringLiteral("vorn.current() === 'mail_2'")));
  // What was thrown away is searched by itself.
  OpenFolder(fixed_serial::kDust);
  test::Type(Child<QLineEdit>(*Browser(), u"txSearch"), QStringLiteral("No1"));
  test::Press(Child<QToolButton>(*Browser(), u"cmEverywhere"));
  EXPECT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 1")));
  EXPECT_TRUE(PageText().contains(QStringLiteral("No1.")));
}

// The page answers later than the status bar does.
TEST_F(FolderCommandsTest, WhatIsTakenBackIsWhatWasDoneBefore) {
  Begin(4, 100);
  Press(Qt::Key_Home);
  Press(Qt::Key_Delete);
  Press(Qt::Key_Z, Qt::ControlModifier);
  Press(Qt::Key_Delete);
  EXPECT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 3")));
  EXPECT_TRUE(AwaitGone("No1."));
  EXPECT_TRUE(PageText().contains(QStringLiteral("No2.")));
  // Also while the bar says something else.
  program_->Parent()->Pages().Tell(QStringLiteral("something else"));
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 4")));
  EXPECT_TRUE(AwaitScript(QStringLiteral("vorn.chosen()[0] === 'mail_1'"))) << "what came back";
  auto& bar = Child<QStatusBar>(*program_->Parent(), u"sbStatus");
  const auto& done = Child<QLabel>(bar, u"lbDone");
  EXPECT_TRUE(done.isVisible());
  // The offer goes with a search; the key does not.
  Press(Qt::Key_Home);
  Press(Qt::Key_Delete);
  EXPECT_TRUE(AwaitGone("No1."));
  ASSERT_TRUE(done.isVisible());
  auto& search = Child<QLineEdit>(*Browser(), u"txSearch");
  test::Type(search, QStringLiteral("No2."));
  QTest::keyClick(&search, Qt::Key_Return);
  EXPECT_TRUE(WaitFor([&done] { return !done.isVisible(); }));
  FocusPage();
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_TRUE(WaitFor([&done] { return done.isVisible(); }));
  EXPECT_TRUE(AwaitScript(QStringLiteral("vorn.count() > 0")));
  // What is said while the window is away does not stand over the offer when it is back.
  program_->Parent()->hide();
  program_->Parent()->Pages().Tell(QStringLiteral("something else"));
  program_->Parent()->show();
  EXPECT_EQ(bar.currentMessage(), QStringLiteral("something else"));
  EXPECT_FALSE(done.isVisible());
  bar.clearMessage();
  EXPECT_TRUE(done.isVisible());
}

TEST_F(FolderCommandsTest, WhatIsDeletedForGoodIsNotOfferedBack) {
  Begin(2, 100);
  Press(Qt::Key_Home);
  Press(Qt::Key_Delete);
  EXPECT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 1")));
  const auto& undo = Child<QToolButton>(*program_->Parent(), u"cmUndo");
  EXPECT_TRUE(undo.isVisible());
  test::AnswerBox(
      [this] {
        const QMenu& file = Child<QMenu>(*program_->Parent(), u"menuFiles");
        for (QAction* action : file.actions()) {
          if (action->text().startsWith(QStringLiteral("くずかごを空に"))) action->trigger();
        }
      },
      QMessageBox::Ok);
  EXPECT_FALSE(undo.isVisible());
  Press(Qt::Key_Z, Qt::ControlModifier);
  Chosen();
  EXPECT_FALSE(Child<QLabel>(*program_->Parent(), u"lbDone").isVisible());
}

// The last thing, and not one that was deleted before it.
TEST_F(FolderCommandsTest, AMarkIsTakenBackBeforeADeletion) {
  Begin(2, 100);
  const auto star = [this] {
    const auto flags = FlagsOf(program_->GetContext(), Ids({2}));
    return flags->value(Ids({2}).first()).At(kFlagStar, QStringLiteral("0"));
  };
  Press(Qt::Key_Home);
  Press(Qt::Key_Delete);
  EXPECT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 1")));
  Press(Qt::Key_S);
  EXPECT_TRUE(WaitFor([&star] { return star() == u"1"; }));
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_TRUE(WaitFor([&star] { return star() == u"0"; }));
  EXPECT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 1")));
  Press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 2")));
}

TEST_F(FolderCommandsTest, MessagesAreThrownAwayTakenBackAndFiled) {
  Begin(5, 100);
  const auto dusted = [this](const SerialIds& expected) {
    OpenFolder(fixed_serial::kDust);
    return AwaitScript(QStringLiteral("vorn.all(), vorn.chosen().join() === '%1'")
                           .arg(TextsOf(expected).join(u',')));
  };
  Press(Qt::Key_Down);
  Press(Qt::Key_Down, Qt::ShiftModifier);
  Press(Qt::Key_Delete);
  ASSERT_TRUE(AwaitGone("No2."));
  EXPECT_TRUE(PageText().contains(QStringLiteral("No3.")));
  ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.chosen()[0] === 'mail_3'")))
      << "the next is current";
  EXPECT_TRUE(dusted(Ids({1, 2})));

  // What is filed from the dust bin is no longer in it, until that is taken back.
  const auto isFiled = [this] {
    return !test::Filed(program_->GetContext(), Ids({1}), kShelf).isEmpty();
  };
  FocusPage();
  Press(Qt::Key_Home);
  InModal<ConsoleWindow>([this] { Press(Qt::Key_M); },
                         [](ConsoleWindow& window) { window.cmOk_Click(); });
  ASSERT_TRUE(AwaitGone("No1."));
  EXPECT_TRUE(isFiled());
  FocusPage();
  MadeAnewBy([this] { Press(Qt::Key_Z, Qt::ControlModifier); });
  EXPECT_TRUE(dusted(Ids({1, 2})));
  EXPECT_FALSE(isFiled());

  // In the dust bin one is taken back, the other goes for good.
  FocusPage();
  Press(Qt::Key_Home);
  Press(Qt::Key_Delete, Qt::ControlModifier);
  ASSERT_TRUE(AwaitGone("No1."));
  ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 1")));
  FocusPage();
  Press(Qt::Key_Home);
  EXPECT_EQ(Chosen(), Ids({2}));
  test::AnswerBox([this] { Press(Qt::Key_Delete); }, QMessageBox::Ok);
  ASSERT_TRUE(AwaitGone("No2."));

  // Filing takes the message out of the inbox, and out of another folder filled by hand.
  OpenFolder(fixed_serial::kInbox);
  ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 4")));
  FocusPage();
  Press(Qt::Key_Down);
  MadeAnewBy([this] {
    // The only folder is chosen already.
    InModal<ConsoleWindow>([this] { Press(Qt::Key_M); },
                           [](ConsoleWindow& window) { window.cmOk_Click(); });
  });
  for (int i = 0; i < 2; ++i) {
    MadeAnewBy([this] { Drop(u"mail_4"_id, kShelf); });
  }
  OpenFolder(kShelf);
  ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 2"))) << "each once";
  EXPECT_EQ(Script(QStringLiteral("vorn.all(), vorn.chosen()")).toStringList(),
            TextsOf(Ids({1, 4})));
  // The whole choice is dragged by one of its messages, which the pointer says.
  EXPECT_EQ(
      Script(QStringLiteral("document.querySelector('[draggable]').dispatchEvent(new "
                            "MouseEvent('mousedown', {bubbles: true})), vorn.chosen().length"))
          .toInt(),
      2);
  EXPECT_EQ(Script(QStringLiteral(
                "document.querySelector('[draggable]').dispatchEvent(new DragEvent('dragstart', "
                "{bubbles: true, dataTransfer: new DataTransfer})), "
                "document.documentElement.lastChild.innerText")),
            QStringLiteral("2通"));
  Drop(u"mail_4"_id, fixed_serial::kDust);
  EXPECT_TRUE(dusted(Ids({1, 4})));
  MadeAnewBy([this] { Drop(u"mail_1"_id, fixed_serial::kInbox); });
  EXPECT_TRUE(dusted({})) << "with the others that are chosen";
  // Into a folder that is made for them, which is not the one that was chosen before.
  OpenFolder(fixed_serial::kInbox);
  ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 4")));
  FocusPage();
  Press(Qt::Key_Down);
  InModal<ConsoleWindow>([this] { Press(Qt::Key_M); },
                         [](ConsoleWindow& window) {
                           AcceptText(QStringLiteral("Done"));
                           QTest::keyClicks(window.focusWidget(), QStringLiteral(" Done "));
                           QTest::keyClick(window.focusWidget(), Qt::Key_Return);
                         });
  const auto* tree = program_->Parent()->findChild<QTreeWidget*>(QStringLiteral("tvConsole"));
  ASSERT_TRUE(WaitFor(
      [tree] { return !tree->findItems(QStringLiteral("Done"), Qt::MatchRecursive).isEmpty(); }));
  const DiskPtr made =
      FindObjectByName(program_->GetContext(), object_type::kFolder, QStringLiteral("Done"));
  ASSERT_NE(made, nullptr);
  OpenFolder(made->Serial());
  EXPECT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 1")));
}

TEST_F(FolderCommandsTest, TheInboxTakesWhatItCanShow) {
  Begin(3, 100);
  Context& context = program_->GetContext();
  const SerialId shelf = kShelf;
  ASSERT_TRUE(OpenDatabase(context, DatabaseKind::Mail));
  ASSERT_TRUE(
      context.Data.Execute(QStringLiteral("UPDATE mail SET STATUS = 3 WHERE SERIALID = 'mail_2'")));
  context.Data.Close();
  ASSERT_TRUE(MoveMessages(context, {.into = {{shelf, Ids({1, 2})}}}));
  OpenFolder(shelf);
  ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 2")));
  const auto filed = [&] {
    SerialIds members = test::Filed(context, Ids({1, 2}), shelf);
    std::sort(members.begin(), members.end());
    return members;
  };
  MadeAnewBy([this] { Drop(u"mail_1"_id, fixed_serial::kInbox); });
  EXPECT_TRUE(AwaitScript(QStringLiteral("vorn.count() === 1")));
  // What was sent stays where it is found.
  EXPECT_TRUE(InModal<QMessageBox>([this] { Drop(u"mail_2"_id, fixed_serial::kInbox); },
                                   [](QMessageBox& box) { box.accept(); }));
  EXPECT_EQ(filed(), Ids({2}));
  FocusPage();
  MadeAnewBy([this] { Press(Qt::Key_Z, Qt::ControlModifier); });
  EXPECT_EQ(filed(), Ids({1, 2}));
  // By its name in any language as well, though it is none of the folders that are offered.
  InModal<ConsoleWindow>([this] { Press(Qt::Key_M); },
                         [](ConsoleWindow& window) {
                           test::Type(Child<QLineEdit>(window, u"Text1"), QStringLiteral("inbox"));
                           QTest::keyClick(window.focusWidget(), Qt::Key_Return);
                         });
  EXPECT_TRUE(WaitFor([&] { return filed() == Ids({2}); }));
}

// Its keys act on the message that was read last.
TEST_F(FolderCommandsTest, TheListGoesAlongWithWhoReadsOnInAWindow) {
  Begin(3, 100);
  Press(Qt::Key_Home);
  Press(Qt::Key_Return);
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
  MessageWindow& window = *TopLevel<MessageWindow>();
  window.findChild<QAction*>(QStringLiteral("next"))->trigger();
  ASSERT_TRUE(WaitFor([&] { return window.GetMessageSubject() == u"No2."; }));
  window.close();
  EXPECT_TRUE(AwaitScript(QStringLiteral("vorn.current() === 'mail_2'")));
}

// By what moves among messages that wait to be read, also over several pages.
TEST_F(FolderCommandsTest, TheNextUnopenedMessageIsOneKeyAway) {
  Begin(7, 3);
  Context& context = program_->GetContext();
  ASSERT_TRUE(SetMark(context, Ids({1, 3, 4, 5, 7}), kFlagNew, false));
  // The button needs no current message to go on from.
  program_->Parent()->findChild<QAction*>(QStringLiteral("tb_nextunopened"))->trigger();
  EXPECT_TRUE(AwaitScript(QStringLiteral("vorn.current() === 'mail_2'")));
  MadeAnewBy([this] { Press(Qt::Key_N); });
  EXPECT_TRUE(AwaitScript(QStringLiteral("vorn.current() === 'mail_6'"))) << "on the last page";
  EXPECT_EQ(Child<QLineEdit>(*Browser(), u"txPage").text(), QStringLiteral("2"));
  // Pressed again before the page of the first one is there, it is passed.
  MadeAnewBy([this] { Press(Qt::Key_N); });
  EXPECT_TRUE(AwaitScript(QStringLiteral("vorn.current() === 'mail_2'"))) << "from the begin";
  ASSERT_TRUE(SetMark(context, Ids({2, 6}), kFlagNew, false));
  Press(Qt::Key_N);
  const auto* status = program_->Parent()->findChild<QStatusBar*>();
  EXPECT_TRUE(WaitFor([status] { return status->currentMessage().contains(u"未開封"); }));
  EXPECT_TRUE(AwaitScript(QStringLiteral("vorn.current() === 'mail_2'")));
}

// The row that is read and those that are chosen stay; the link and the menu are elsewhere.
TEST_F(FolderCommandsTest, AClickOnTheMarksTurnsThemAndMovesNothing) {
  Begin(4, 100);
  ASSERT_TRUE(ShareLayout(program_->GetContext(), QStringLiteral("table"), OwnLayouts::Removed));
  MadeAnewBy([this] { Browser()->Refresh(); });
  FocusPage();
  Press(Qt::Key_Home);
  Press(Qt::Key_Down, Qt::ShiftModifier);
  ASSERT_EQ(Chosen(), Ids({1, 2}));
  const auto placeOf = [this](int row) {
    const QVariantList at =
        Script(QStringLiteral("(() => { const box = document.querySelectorAll('td.marks')[%1]"
                              ".getBoundingClientRect();"
                              " return [box.right - 4, box.top + box.height / 2]; })()")
                   .arg(row))
            .toList();
    return QPoint(at.value(0).toInt(), at.value(1).toInt());
  };
  for (const auto& [row, mark] : {std::pair{2, "0"}, {1, "0"}, {2, "1"}}) {
    ClickPage(placeOf(row));
    EXPECT_TRUE(WaitFor([this, row = row, mark = mark] {
      return Mark(row + 1) == QLatin1String(mark);
    })) << row;
  }
  EXPECT_EQ(Chosen(), Ids({1, 2}));
  EXPECT_EQ(Script(QStringLiteral("vorn.current()")).toString(), QStringLiteral("mail_2"));
  // Who is quick turns them there and back.
  DoubleClickPage(placeOf(0));
  ClickPage(placeOf(3));
  EXPECT_TRUE(WaitFor([this] { return Mark(4) == QLatin1String("0"); }));
  EXPECT_EQ(Mark(1), QLatin1String("1"));
  ClickPage(placeOf(3));
  EXPECT_TRUE(WaitFor([this] { return Mark(4) == QLatin1String("1"); }));
  // What the pane would have opened after a while is left as it was clicked.
  Child<QMenu>(*program_->Parent(), u"menuPane").actions().at(1)->trigger();
  const auto pane = [this] { return Browser()->findChild<ReadingPane*>(); };
  ASSERT_TRUE(WaitFor([&] { return pane() != nullptr && pane()->isVisible(); }));
  FocusPage();
  Press(Qt::Key_End);
  ASSERT_TRUE(WaitFor([&] { return pane()->ShownMessage() == Ids({4}).first(); }));
  for (const char* mark : {"0", "1"}) {
    ClickPage(placeOf(3));
    EXPECT_TRUE(WaitFor([&] { return Mark(4) == QLatin1String(mark); }));
  }
  SettleIn(*Browser());
  EXPECT_FALSE(pane()->findChild<QTimer*>(QStringLiteral("tmInSight"))->isActive());
  EXPECT_EQ(Mark(4), QStringLiteral("1"));
}

// As the menu of a click there, which stands below the row.
TEST_F(FolderCommandsTest, TheMenuKeyOpensTheMenuAtTheCurrentRow) {
  Begin(4, 100);
  Press(Qt::Key_Down);
  Press(Qt::Key_Down);
  Press(Qt::Key_Menu);
  auto& menu = Child<QMenu>(*Browser(), u"menuMessages");
  ASSERT_TRUE(WaitFor([&menu] { return menu.isVisible(); }));
  const double bottom =
      Script(
          QStringLiteral("document.querySelector('.vorn-current').getBoundingClientRect().bottom"))
          .toDouble();
  EXPECT_GT(bottom, 10);
  EXPECT_NEAR(View()->mapFromGlobal(menu.pos()).y(), bottom * View()->zoomFactor(), 4);
  menu.close();
}

TEST_F(FolderCommandsTest, CorrespondentsComeIntoAnAddressBook) {
  Begin(3, 100);
  Context& context = program_->GetContext();
  const auto* status = program_->Parent()->findChild<QStatusBar*>();
  const auto told = [status](QStringView words) {
    return WaitFor([&] { return status->currentMessage().contains(words); });
  };
  Press(Qt::Key_Down);
  Press(Qt::Key_B);
  EXPECT_TRUE(told(u"a@example.jpを「アドレスブック」に登録"));
  ASSERT_EQ(AddressBooks(context).size(), 1);
  const DiskPtr book = AddressBooks(context).first();
  EXPECT_EQ(book->Text(u"Addressbook"), QStringLiteral("TO: a@example.jp"));
  Press(Qt::Key_Down);
  Press(Qt::Key_B);
  EXPECT_TRUE(told(u"もう登録されています"));
  // While its window is open nothing is added behind its back.
  DialogRequest request;
  request.serialId = book->Serial();
  request.status = object_type::kBook;
  request.show = kShowModeless;
  RequestQueue queue(context);
  ASSERT_TRUE(queue.PostDialogRequest(request));
  program_->Parent()->Mail().PostRequest(queue.Front());
  ASSERT_TRUE(WaitFor([] { return TopLevel<ObjectsWindow>() != nullptr; }));
  EXPECT_TRUE(
      test::AnswerBox([&] { program_->Parent()->Pages().Messages().AddToBook({u"mail_1"_id}); },
                      QMessageBox::Ok)
          .contains(u"編集中"));
  // What was sent gives its recipients; the user is asked where there are several books.
  TopLevel<ObjectsWindow>()->close();
  const DiskPtr second = *MakeAddressBook(context);
  second->Let(QStringLiteral("Object"), QStringLiteral("社外"));
  const QList<AddressEntry> people = Correspondents(
      context, QStringLiteral("FROM: b@example.jp\r\nTO: C@example.jp 長\r\nTO: c@example.jp"));
  ASSERT_EQ(people.size(), 1) << "who is no user of the profile is the sender";
  EXPECT_EQ(StoreInBook(context, second, people), 1);
  EXPECT_TRUE(InModal<QInputDialog>(
      [&] { program_->Parent()->Pages().Messages().AddToBook({u"mail_1"_id}); },
      [](QInputDialog& dialog) {
        dialog.setTextValue(QStringLiteral("社外"));
        dialog.accept();
      }));
  EXPECT_EQ(second->Text(u"Addressbook"), QStringLiteral("TO: b@example.jp\r\nTO: a@example.jp"));
  // Unless one is the default.
  AnyObject::SetDefault(*second, true);
  second->Let(QStringLiteral("Addressbook"), QString());
  program_->Parent()->Pages().Messages().AddToBook({u"mail_1"_id});
  EXPECT_EQ(second->Text(u"Addressbook"), QStringLiteral("TO: a@example.jp"));
}

TEST_F(FolderCommandsTest, TheDefaultFolderMarkedLastIsOpenAtTheStart) {
  Begin(1, 100);
  for (const SerialId& folder : {fixed_serial::kOutbox, kShelf, fixed_serial::kDust}) {
    Disk& object = *program_->GetContext().Objects.Find(folder);
    AnyObject::SetDefault(object, folder != fixed_serial::kDust);
    ASSERT_TRUE(SaveObject(program_->GetContext(), DatabaseKind::Profile, object));
    QTest::qWait(1100);  // the time is kept in seconds
  }
  EndProgram();
  StartProgram();
  LogInWith(QString());
  EXPECT_TRUE(WaitFor([this] { return Browser() != nullptr && Browser()->Tag() == kShelf; }));
}

TEST_F(FolderCommandsTest, TheCurrentMessageIsPrintedFromThePage) {
  Begin(2, 100);
  Press(Qt::Key_Down);
  Press(Qt::Key_Down);
  const QString path = folder_.filePath(QStringLiteral("page.pdf"));
  // The key prints wherever the keyboard is.
  auto& search = Child<QLineEdit>(*Browser(), u"txSearch");
  search.setFocus();
  EXPECT_TRUE(
      InModal<QPrintDialog>([&search] { QTest::keyClick(&search, Qt::Key_P, Qt::ControlModifier); },
                            [&](QPrintDialog& dialog) {
                              Child<QLineEdit>(dialog, u"filename").setText(path);
                              QMetaObject::invokeMethod(&dialog, "accept");
                            }));
  ASSERT_TRUE(WaitFor([&] { return QFileInfo(path).size() > 0; }));
  EXPECT_EQ(Mark(2), QStringLiteral("1")) << "it has not been opened";
}

}  // namespace
}  // namespace vorn
