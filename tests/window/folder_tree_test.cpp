// The tree beside the pages: what is selected in it, and its counts.

#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTranslator>

#include "frame/window/panes/console_tree.h"
#include "mail/window/message_window.h"
#include "objects/any_object.h"
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
  test::RunFor(500);
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
    tree.RefreshNode(object->Serial());
    const QString shown = tree.NodeText(object->Serial());
    const QString tip = AnyObject(*object).ShownTip();
    qApp->removeTranslator(&english);
    EXPECT_NE(shown, japanese);
    EXPECT_TRUE(AnyObject(*object).Names().contains(shown));
    AnyObject::SetName(*object, shown);
    EXPECT_EQ(AnyObject(*object).ShownName(), japanese);
    EXPECT_EQ(tip == AnyObject(*object).ToolTip(), tip.isEmpty());
    AnyObject::SetToolTip(*object, tip);
    EXPECT_EQ(AnyObject(*object).ShownTip().contains(u"フォルダです。"), !tip.isEmpty());
    AnyObject::SetName(*object, japanese + u'2');
    EXPECT_EQ(AnyObject(*object).ShownName(), japanese + u'2');
  }
}

}  // namespace
}  // namespace vorn
