// The whole program as a user meets it: from the login to the objects of its tree.

#include <algorithm>

#include "frame/window/panes/console_tree.h"
#include "frame/window/panes/node_commands.h"
#include "mail/search/unread_count.h"
#include "mail/store/mail_store.h"
#include "mail/window/message_window.h"
#include "objects/account.h"
#include "objects/object_types.h"
#include "objects/settings.h"
#include "objects/window/objects_window.h"
#include "storage/message_state.h"
#include "window/program_fixture.h"

namespace vorn {
namespace {

TEST_F(ProgramTest, AFirstRunMakesTheProfileAndShowsTheInbox) {
  StartProgram();
  AwaitInbox();
  ParentWindow* parent = program_->Parent();
  EXPECT_TRUE(parent->windowTitle().startsWith(QStringLiteral("Administrator")));
  auto* tree = parent->findChild<QTreeWidget*>(QStringLiteral("tvConsole"));
  EXPECT_EQ(tree->findItems(QStringLiteral("くずかご"), Qt::MatchRecursive).size(), 1);
  EXPECT_TRUE(PageText().contains(QStringLiteral("アカウントを追加してください")));
  EXPECT_EQ(QDir(Folder() + QStringLiteral("temp")).entryList({QStringLiteral("*.html")}).size(),
            0);

  // Its steps do what they say, and the page goes along with what has been done.
  EXPECT_TRUE(InModal<ObjectsWindow>(
      [this] { ClickLink(QStringLiteral("a[href=\"vorn:stepAccount\"]")); },
      [](ObjectsWindow& window) { QTest::keyClick(&window, Qt::Key_Escape); }));
  AccountValues values;
  values.name = QStringLiteral("会社");
  values.incoming.host = QStringLiteral("127.0.0.1");
  values.incoming.port = server_.Port();
  const auto account = CreateAccount(program_->GetContext(), values);
  ASSERT_TRUE(account);
  parent->RefreshNode((*account)->Serial());
  EXPECT_TRUE(WaitFor([this] { return PageText().contains(QStringLiteral("受信してください")); }));
  EXPECT_EQ(Settings(program_->GetContext()).CheckMinutes(), 10);

  QMenu* tools = parent->menuBar()->findChild<QMenu*>(QStringLiteral("menuTools"));
  EXPECT_EQ(tools->actions().value(0)->text(), QStringLiteral("メッセージ送受信(&M)"));
  // What comes first may be more than one page; the newest is shown.
  Settings(program_->GetContext()).Bag()->Let(QStringLiteral("Messages"), 10);
  for (int i = 1; i <= 25; ++i) {
    Disk request(QStringLiteral("mail_%1").arg(i));
    request.Let(QStringLiteral("process"), static_cast<int>(kStatusReceived));
    ASSERT_TRUE(MailStore(program_->GetContext())
                    .StoreMessage(request, "Subject: No" + QByteArray::number(i) + ".\r\n\r\n"));
  }
  parent->Pages().Messages().MessageStored();
  EXPECT_TRUE(WaitFor([this] { return PageText().contains(QStringLiteral("No25.")); }));
}

TEST_F(ProgramTest, ASecondInstanceIsRefused) {
  StartProgram();
  const QString text = NextMessageBox([this] {
    Program second(Folder());
    EXPECT_FALSE(second.Start());
  });
  EXPECT_EQ(text, QStringLiteral(".VORNは既に起動しています。"));
}

// Stands for the browser that the system would start.
class SystemBrowser : public QObject {
  Q_OBJECT

 public:
  SystemBrowser() { QDesktopServices::setUrlHandler(QStringLiteral("http"), this, "Open"); }
  ~SystemBrowser() override { QDesktopServices::unsetUrlHandler(QStringLiteral("http")); }

  QList<QUrl> places;

 public Q_SLOTS:
  void Open(const QUrl& place) { places.append(place); }
};

TEST_F(ProgramTest, ABookmarkOpensItsPlace) {
  QTcpServer web;
  ASSERT_TRUE(web.listen(QHostAddress::LocalHost));
  StartProgram();
  AwaitInbox();
  Context& context = program_->GetContext();
  for (const DiskPtr& object : context.Objects) {
    if (object->Text(u"FormName") != object_type::kBookmark) continue;
    object->Let(QStringLiteral("Url"),
                QStringLiteral("http://127.0.0.1:%1/place 私の & 場所").arg(web.serverPort()));
  }
  auto* menu = program_->Parent()->menuBar()->findChild<QMenu*>(QStringLiteral("menuBookmarks"));
  Q_EMIT menu->aboutToShow();
  QAction* place = menu->actions().last();
  EXPECT_EQ(place->text(), QStringLiteral("私の && 場所"));
  // In the system's own browser, unless the user wants the program's.
  SystemBrowser browser;
  place->trigger();
  EXPECT_EQ(browser.places.size(), 1);
  EXPECT_FALSE(web.hasPendingConnections());
  Settings(context).Bag()->Let(QStringLiteral("WebOutside"), false);
  place->trigger();
  EXPECT_EQ(browser.places.size(), 1);
  ASSERT_TRUE(WaitFor([&web] { return web.hasPendingConnections(); }));
  QByteArray asked;
  QTcpSocket* socket = web.nextPendingConnection();
  ASSERT_TRUE(WaitFor([&] { return (asked += socket->readAll()).contains("\r\n"); }));
  EXPECT_TRUE(asked.startsWith("GET /place ")) << asked.toStdString();
}

TEST_F(ProgramTest, AFailedSessionIsShownAndRecorded) {
  Prepare(QString());
  server_.Password = "changed";
  StartProgram();
  LogInWith(QString());
  AwaitInbox();
  QTest::keyClick(program_->Parent(), Qt::Key_M, Qt::ControlModifier);
  auto* tree = program_->Parent()->findChild<QTreeWidget*>(QStringLiteral("tvConsole"));
  QTreeWidgetItem* log = tree->findItems(QStringLiteral("イベント"), Qt::MatchRecursive).value(0);
  ASSERT_NE(log, nullptr);
  ASSERT_TRUE(WaitFor([log] { return log->childCount() == 1; }));
  QString text;
  EXPECT_TRUE(InModal<ObjectsWindow>(
      [&] { test::ClickRow(*tree, log->child(0)); },
      [&text](ObjectsWindow& window) {
        text = window.findChild<QPlainTextEdit*>(QStringLiteral("txEventLog"))->toPlainText();
        QTest::keyClick(&window, Qt::Key_Escape);
      }));
  EXPECT_TRUE(text.contains(QStringLiteral("パスワードを確認してください"))) << text.toStdString();
  EXPECT_FALSE(text.contains(QStringLiteral("secret")));
  // With its account gone an event still says what it says.
  program_->Parent()->Mail().AddEvent(kEventError, kEventObject, u"gone"_id,
                                      QStringLiteral("<b>account</b>"), QStringLiteral("account"),
                                      QStringLiteral("-ERR <b>no</b>"));
  text = NextMessageBox([&] { test::ClickRow(*tree, log->child(1)); });
  EXPECT_TRUE(text.contains(QStringLiteral("削除されています"))) << text.toStdString();
  EXPECT_TRUE(text.contains(QStringLiteral("-ERR <b>no</b>")));
}

TEST_F(ProgramTest, ObjectsAreMadeRenamedAndDeletedByKeys) {
  StartProgram();
  AwaitInbox();
  ParentWindow* parent = program_->Parent();
  auto* tree = parent->findChild<QTreeWidget*>(QStringLiteral("tvConsole"));
  const auto node = [tree](const char16_t* name) {
    return tree->findItems(QString::fromUtf16(name), Qt::MatchExactly | Qt::MatchRecursive)
        .value(0);
  };
  EXPECT_TRUE(InModal<ObjectsWindow>(
      [parent] {
        auto* create = parent->menuBar()->findChild<QMenu*>(QStringLiteral("menuFilesNew"));
        create->actions()[3]->trigger();
      },
      [](ObjectsWindow& window) {
        test::TypeText(*window.focusWidget(), QStringLiteral("計画"));
        QTest::keyClick(&window, Qt::Key_Return);
      }));
  ASSERT_TRUE(WaitFor([&] { return node(u"計画") != nullptr; }));

  tree->setFocus();
  tree->setCurrentItem(node(u"計画"));
  QTest::keyClick(tree, Qt::Key_F2);
  QWidget* editor = tree->viewport()->findChild<QLineEdit*>();
  ASSERT_NE(editor, nullptr);
  test::TypeText(*editor, QStringLiteral("予定"));
  QTest::keyClick(editor, Qt::Key_Return);
  const auto isRenamed = [this] {
    const auto& objects = program_->GetContext().Objects;
    return std::any_of(objects.begin(), objects.end(),
                       [](const DiskPtr& object) { return object->Text(u"Object") == u"予定"; });
  };
  ASSERT_TRUE(WaitFor(isRenamed));
  ASSERT_NE(node(u"予定"), nullptr);

  // A name that is taken is refused; after Escape the old one stands there again.
  // The box of the first name may still be there.
  QTest::keyClick(tree, Qt::Key_F2);
  const auto boxes = tree->viewport()->findChildren<QLineEdit*>();
  const auto shown = std::find_if(boxes.begin(), boxes.end(),
                                  [](const QLineEdit* box) { return box->isVisible(); });
  ASSERT_NE(shown, boxes.end());
  editor = *shown;
  test::TypeText(*editor, QStringLiteral("送信"));
  EXPECT_TRUE(InModal<ObjectsWindow>([&] { QTest::keyClick(editor, Qt::Key_Return); },
                                     [](ObjectsWindow& window) {
                                       EXPECT_TRUE(
                                           window.findChild<QLabel*>(QStringLiteral("lbError"))
                                               ->text()
                                               .contains(QStringLiteral("同じ")));
                                       QTest::keyClick(&window, Qt::Key_Escape);
                                     }));
  EXPECT_TRUE(WaitFor([&] { return node(u"予定") != nullptr; }));

  tree->setCurrentItem(node(u"予定"));
  const QString question =
      NextMessageBox([tree] { QTest::keyClick(tree, Qt::Key_Delete); }, Qt::Key_Escape);
  EXPECT_EQ(question, QStringLiteral("フォルダ「予定」を削除します。よろしいですか？"));
  EXPECT_NE(node(u"予定"), nullptr);
  test::AnswerBox([tree] { QTest::keyClick(tree, Qt::Key_Delete); }, QMessageBox::Ok);
  EXPECT_TRUE(WaitFor([&] { return node(u"予定") == nullptr; }));

  tree->setCurrentItem(node(u"受信"));
  EXPECT_EQ(NextMessageBox([tree] { QTest::keyClick(tree, Qt::Key_Delete); }),
            QStringLiteral("標準のフォルダは削除できません。"));
  EXPECT_NE(node(u"受信"), nullptr);
}

TEST_F(ProgramTest, AnObjectHangsWhereItWasMadeAndOthersStayWhenItGoes) {
  StartProgram();
  AwaitInbox();
  auto* tree = program_->Parent()->findChild<ConsoleTree*>();
  const auto node = [tree](const char16_t* name) {
    return tree->findItems(QString::fromUtf16(name), Qt::MatchExactly | Qt::MatchRecursive)
        .value(0);
  };
  const auto make = [&](const char16_t* below, const char16_t* name) {
    tree->setCurrentItem(node(below));
    EXPECT_TRUE(InModal<ObjectsWindow>([&] { tree->Commands().NewObject(object_type::kFolder); },
                                       [&](ObjectsWindow& window) {
                                         test::TypeText(*window.focusWidget(),
                                                        QString::fromUtf16(name));
                                         QTest::keyClick(&window, Qt::Key_Return);
                                       }));
    EXPECT_TRUE(WaitFor([&] { return node(name) != nullptr; }));
    return node(name)->parent();
  };
  EXPECT_EQ(make(u"送信", u"甲"), node(u"送信"));
  EXPECT_EQ(make(u"甲", u"乙"), node(u"甲"));
  EXPECT_EQ(make(u"くずかご", u"丙"), node(u"くずかご")->parent());
  for (const QString& serial : {QStringLiteral("m1"), QStringLiteral("m2")}) {
    Disk request(serial);
    request.Let(QStringLiteral("process"), static_cast<int>(kStatusReceived));
    request.Let(QStringLiteral("Flag"), QStringLiteral("001"));
    request.Let(QStringLiteral("folder"), fixed_serial::kInbox.Text());
    EXPECT_TRUE(MailStore(program_->GetContext()).StoreMessage(request, "Subject: s\r\n\r\n"));
  }
  // At once, and what the count at the start finds, whenever that is.
  tree->Nodes().SetUnread(fixed_serial::kInbox, 2);
  ASSERT_EQ(CountUnread(program_->GetContext(), fixed_serial::kInbox).ValueOr(-1), 2);
  tree->Nodes().ShowEvent(u"event_1"_id, QStringLiteral("出来事"), QStringLiteral("mail"));
  const SerialId serialId = SerialIdOf(node(u"甲")->data(0, Qt::UserRole));
  const auto hasPage = [&] {
    const auto pages = program_->Parent()->findChildren<BrowserWindow*>();
    return std::any_of(pages.begin(), pages.end(), [&](const BrowserWindow* page) {
      return page->IsLocal() && page->Tag() == serialId;
    });
  };
  tree->setCurrentItem(node(u"甲"));
  QTest::keyClick(tree, Qt::Key_Return);
  ASSERT_TRUE(WaitFor(hasPage));
  program_->GetContext().Objects.Remove(serialId);
  program_->Parent()->RefreshNode(serialId);
  EXPECT_TRUE(WaitFor([&] { return !hasPage(); })) << "its page would act on another folder";
  EXPECT_EQ(node(u"甲"), nullptr);
  ASSERT_NE(node(u"乙"), nullptr);
  EXPECT_NE(node(u"出来事"), nullptr);
  EXPECT_EQ(node(u"受信")->text(1), QStringLiteral("2"));
  EXPECT_FALSE(node(u"受信")->isFirstColumnSpanned());
  EXPECT_TRUE(node(u"乙")->isFirstColumnSpanned()) << "no number takes room from its name";
  // Whichever of them is loaded first.
  tree->Nodes().RemoveEvents();
  for (const char16_t* name : {u"乙", u"送信"}) {
    const DiskPtr object =
        program_->GetContext().Objects.Find(SerialIdOf(node(name)->data(0, Qt::UserRole)));
    program_->GetContext().Objects.Remove(object->Serial());
    if (name[0] == u'乙') object->Let(QStringLiteral("Parent"), fixed_serial::kOutbox.Text());
    program_->GetContext().Objects.Add(object);
  }
  tree->Nodes().Fill();
  EXPECT_EQ(node(u"乙")->parent(), node(u"送信"));
}

}  // namespace
}  // namespace vorn

#include "program_test.moc"
