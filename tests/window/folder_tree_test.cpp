// The tree beside the pages: what is selected in it, and its counts.

#include <QWebEngineView>

#include "frame/window/panes/console_tree.h"
#include "mail/window/message_window.h"
#include "objects/any_object.h"
#include "objects/shown_object.h"
#include "window/folder_page_fixture.h"

namespace vorn {
namespace {

using test::Child;

class FolderTreeTest : public FolderPageTest {};

// What is selected in the tree is what is shown, also by a mouse that slides while it is pressed;
// and what the user has selected to work on stays selected when a page is made anew.
TEST_F(FolderTreeTest, TheTreeSelectsWhatIsShownOrWorkedOn) {
  Begin(3, 100);
  auto* tree = program_->Parent()->findChild<QTreeWidget*>(QStringLiteral("tvConsole"));
  QTreeWidgetItem* shelf = Node(kShelf);
  const QPoint from = tree->visualItemRect(shelf).center();
  const QPoint to = tree->visualItemRect(Node(fixed_serial::kOutbox)).center();
  ASSERT_NE(from, to);
  QWidget* area = tree->viewport();
  const auto mouse = [area](QEvent::Type type, QPoint at, Qt::MouseButtons held) {
    QMouseEvent event(type, at, area->mapToGlobal(at),
                      type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, held,
                      Qt::NoModifier);
    QApplication::sendEvent(area, &event);
  };
  mouse(QEvent::MouseButtonPress, from, Qt::LeftButton);
  for (int step = 1; step <= 4; ++step) {
    mouse(QEvent::MouseMove, from + (to - from) * step / 4, Qt::LeftButton);
    QTest::qWait(1);
  }
  mouse(QEvent::MouseButtonRelease, to, Qt::NoButton);
  BrowserWindow* opened = nullptr;
  ASSERT_TRUE(WaitFor([&] {
    QMdiSubWindow* active = program_->Parent()->findChild<QMdiArea*>()->activeSubWindow();
    opened = active == nullptr ? nullptr : active->findChild<BrowserWindow*>();
    return opened != nullptr && opened != Browser();
  }));
  EXPECT_EQ(opened->Tag(), kShelf);
  EXPECT_EQ(tree->currentItem(), shelf);

  tree->setFocus();
  for (int time = 1; time <= 3; ++time) {  // the first loading is that of the opening
    QSignalSpy loaded(opened, &BrowserWindow::Loaded);
    tree->setCurrentItem(tree->topLevelItem(0));
    opened->UpdateBrowser();
    ASSERT_TRUE(WaitFor([&loaded] { return !loaded.isEmpty(); }));
  }
  EXPECT_EQ(tree->currentItem(), tree->topLevelItem(0));
}

// A window that is made small shows whole what it shows.
TEST_F(FolderTreeTest, WhereThereIsNoRoomForBothThePageComesBeforeTheTree) {
  Begin(3, 2);
  ParentWindow& window = *program_->Parent();
  auto& tree = Child<QTreeWidget>(window, u"tvConsole");
  auto& bar = Child<QToolBar>(window, u"tbMain");
  const auto* turn = window.findChild<QAction*>(QStringLiteral("tb_tree"));
  const auto button = [&](const char16_t* name) {
    return qobject_cast<QToolButton*>(
        bar.widgetForAction(window.findChild<QAction*>(QString::fromUtf16(name))));
  };
  const auto isWhole = [&] {
    const auto* area = window.findChild<QMdiArea*>();
    return Browser()->isVisible() && Browser()->width() <= area->viewport()->width() &&
           Browser()->width() >= Browser()->minimumSizeHint().width();
  };
  window.resize(1600, 600);
  ASSERT_TRUE(
      WaitFor([&] { return button(u"tb_print")->toolButtonStyle() != Qt::ToolButtonIconOnly; }));
  const int width = tree.width();
  for (const int narrow : {760, 640}) {
    window.resize(narrow, 600);
    EXPECT_TRUE(WaitFor(isWhole)) << narrow;
    EXPECT_TRUE(tree.isVisible() && !turn->isVisible()) << narrow;
    const auto& behind = Child<QWidget>(bar, u"qt_toolbar_ext_button");
    EXPECT_TRUE(WaitFor([&behind] { return !behind.isVisible(); })) << narrow;
    EXPECT_EQ(button(u"tb_print")->toolButtonStyle(), Qt::ToolButtonIconOnly);
  }
  window.resize(400, 600);
  EXPECT_TRUE(WaitFor([&] { return tree.isHidden() && isWhole(); }));
  test::Press(*button(u"tb_tree"));
  EXPECT_TRUE(tree.hasFocus() && !Browser()->isVisible());
  test::ClickRow(tree, Node(kShelf));
  EXPECT_TRUE(WaitFor([&] { return tree.isHidden() && isWhole(); }));
  QTest::keyClick(&window, Qt::Key_F6);
  EXPECT_TRUE(WaitFor([&] { return tree.hasFocus(); }));
  QTest::keyClick(&tree, Qt::Key_F6);
  EXPECT_TRUE(WaitFor([&] { return tree.isHidden() && View()->focusProxy()->hasFocus(); }));
  // So is the line above the page, also while a folder of several pages is searched.
  window.resize(320, 600);
  EXPECT_TRUE(WaitFor([&] { return window.width() == 320 && isWhole(); }));
  test::Type(Child<QLineEdit>(*Browser(), u"txSearch"), QStringLiteral("No"));
  const auto& box = Child<QWidget>(*Browser(), u"txSearch");
  const auto& choice = Child<QWidget>(*Browser(), u"cmEverywhere");
  EXPECT_TRUE(WaitFor([&] {
    return isWhole() && choice.isVisible() &&
           choice.mapTo(Browser(), QPoint()).y() >= box.geometry().bottom();
  }));
  window.resize(1600, 600);
  EXPECT_TRUE(WaitFor([&] { return tree.width() == width && isWhole() && !turn->isVisible(); }));
}

TEST_F(FolderTreeTest, UnopenedMessagesAreCountedInTheTree) {
  Begin(3, 100);
  QTreeWidgetItem* inbox = Node(fixed_serial::kInbox);
  ASSERT_TRUE(WaitFor([inbox] { return inbox->text(1) == u"3"; }));
  EXPECT_EQ(Node(kShelf)->text(1), QString());
  Press(Qt::Key_Down);
  Press(Qt::Key_Return);
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
  TopLevel<MessageWindow>()->close();
  ASSERT_TRUE(WaitFor([inbox] { return inbox->text(1) == u"2"; }));
  // What was thrown away does not wait to be read.
  MadeAnewBy([this] { Drop(u"mail_2"_id, fixed_serial::kDust); });
  ASSERT_TRUE(WaitFor([inbox] { return inbox->text(1) == u"1"; }));
  MadeAnewBy([this] { Drop(u"mail_3"_id, fixed_serial::kDust); });
  ASSERT_TRUE(WaitFor([inbox] { return inbox->text(1) == QString(); }));
  EXPECT_EQ(Node(fixed_serial::kDust)->text(1), QString());
}

// Also of a profile that was made in the other language; but for names that the user gave.
TEST_F(FolderTreeTest, StandardNamesAreInTheLanguageOfTheInterface) {
  Begin(1, 100);
  auto& tree = Child<ConsoleTree>(*program_->Parent(), u"tvConsole");
  QList<Disk*> made;
  for (const DiskPtr& object : program_->GetContext().Objects) {
    const AnyObject any(*object);
    if ((any.IsSystem() && !any.Is(object_type::kProfile)) || any.Is(object_type::kBookmark))
      made.append(object.get());
  }
  ASSERT_EQ(made.size(), 6);
  QTranslator english;
  ASSERT_TRUE(english.load(QStringLiteral(":/texts/vorn_en.qm")));
  for (Disk* object : made) {
    const QString japanese = AnyObject(*object).Name();
    qApp->installTranslator(&english);
    tree.Nodes().Refresh(object->Serial());
    const QString shown = tree.Nodes().Text(object->Serial());
    const QString tip = ShownObject(*object).Tip();
    qApp->removeTranslator(&english);
    EXPECT_NE(shown, japanese);
    EXPECT_TRUE(ShownObject(*object).Names().contains(shown));
    AnyObject::SetName(*object, shown);
    EXPECT_EQ(ShownObject(*object).Name(), japanese);
    EXPECT_EQ(tip == AnyObject(*object).ToolTip(), tip.isEmpty());
    AnyObject::SetToolTip(*object, tip);
    EXPECT_EQ(ShownObject(*object).Tip().contains(u"フォルダです。"), !tip.isEmpty());
    AnyObject::SetName(*object, japanese + u'2');
    EXPECT_EQ(ShownObject(*object).Name(), japanese + u'2');
  }
}

}  // namespace
}  // namespace vorn
