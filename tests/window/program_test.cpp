// The whole program as a user meets it: from the login to received, answered and sent mail.

#include <QApplication>
#include <QComboBox>
#include <QDesktopServices>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QTreeWidget>
#include <QWebEngineView>
#include <algorithm>

#include "frame/window/console_tree.h"
#include "mail/codec/flag_string.h"
#include "mail/mail_store.h"
#include "mail/message_rows.h"
#include "mail/window/message_window.h"
#include "objects/object_types.h"
#include "objects/save_object.h"
#include "objects/settings.h"
#include "objects/window/objects_window.h"
#include "present/unread_count.h"
#include "storage/databases.h"
#include "support/loopback_smtp_server.h"
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

  QMenu* tools = parent->menuBar()->findChild<QMenu*>(QStringLiteral("menuTools"));
  EXPECT_EQ(tools->actions().value(0)->text(), QStringLiteral("メッセージ送受信(&M)"));
  // What comes first may be more than one page; the newest is shown.
  Settings(program_->GetContext())->Let(QStringLiteral("Messages"), 10);
  for (int i = 1; i <= 25; ++i) {
    Disk request(QStringLiteral("mail_%1").arg(i));
    request.Let(QStringLiteral("process"), static_cast<int>(kStatusReceived));
    ASSERT_TRUE(MailStore(program_->GetContext())
                    .StoreMessage(request, "Subject: No" + QByteArray::number(i) + ".\r\n\r\n"));
  }
  parent->MessageStored();
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

TEST_F(ProgramTest, AWrongPasswordIsToldAndTheRightOneOpens) {
  Prepare(QStringLiteral("abc"));
  StartProgram();
  EXPECT_EQ(
      NextMessageBox([this] { LogInWith(QStringLiteral("xyz")); }),
      QStringLiteral("ログインできませんでした。入力したプロファイル情報を確認してください。"));
  LogInWith(QStringLiteral("abc"));  // the wrong one is selected and typed over
  AwaitInbox();
}

TEST_F(ProgramTest, ReceivedMailAppearsAndItsLinksOpenMessages) {
  AddMessages(3);
  Prepare(QString());
  StartProgram();
  LogInWith(QString());
  AwaitInbox();
  Receive();
  ASSERT_TRUE(WaitFor([this] { return PageText().contains(QStringLiteral("会議 3")); }));
  EXPECT_TRUE(PageText().contains(QStringLiteral("佐藤")));
  EXPECT_TRUE(PageText().contains(QStringLiteral("返信")));

  ClickLink(QStringLiteral("a[href^=\"preview:\"]"));
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
  auto* message = TopLevel<MessageWindow>();
  ASSERT_NE(message, nullptr);
  EXPECT_EQ(message->objectName(), QStringLiteral("Mail"));
  const QString subject = message->findChild<QLineEdit*>(QStringLiteral("txSubject"))->text();
  ASSERT_TRUE(subject.startsWith(QStringLiteral("会議 ")));
  EXPECT_EQ(message->findChild<QPlainTextEdit*>(QStringLiteral("txMemo"))->toPlainText(),
            QStringLiteral("本文") + subject.right(1) + u'\n');
  auto* addresses = message->findChild<QTableWidget*>(QStringLiteral("lvMailaddress"));
  EXPECT_EQ(addresses->item(0, 0)->text(), QStringLiteral("差出人"));
  EXPECT_EQ(addresses->item(0, 1)->text(), QStringLiteral("佐藤 <sato@example.jp>"));
  QTest::keyClick(message, Qt::Key_Escape);
  EXPECT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() == nullptr; }));
}

TEST_F(ProgramTest, AReplyIsWrittenAndSent) {
  test::LoopbackSmtpServer smtp;
  ASSERT_TRUE(smtp.Listen());
  AddMessages(1);
  PrepareSending(server_.Port(), smtp.Port(), QStringLiteral("you@example.org"));
  StartProgram();
  LogInWith(QString());
  AwaitInbox();
  Receive();
  ASSERT_TRUE(WaitFor([this] { return PageText().contains(QStringLiteral("会議 1")); }));
  ClickLink(QStringLiteral("a[href^=\"preview:\"]"));
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
  auto* message = TopLevel<MessageWindow>();
  ASSERT_NE(message, nullptr);
  message->findChild<QAction*>(QStringLiteral("replay"))->trigger();
  auto& memo = test::Child<QPlainTextEdit>(*message, u"txMemo");
  EXPECT_EQ(test::Child<QLineEdit>(*message, u"txSubject").text(), QStringLiteral("Re: 会議 1"));
  EXPECT_FALSE(memo.isReadOnly());
  memo.setFocus();
  test::TypeText(memo, QStringLiteral("了解🍣です。"));
  message->findChild<QAction*>(QStringLiteral("mailup"))->trigger();
  ASSERT_TRUE(WaitFor([&smtp] { return smtp.Messages().size() == 1; }));
  EXPECT_EQ(smtp.Messages()[0].recipients, QList<QByteArray>{"sato@example.jp"});
  EXPECT_TRUE(smtp.Messages()[0].source.contains("\r\nIn-Reply-To: <1@example.jp>\r\n"));
  EXPECT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() == nullptr; }));
  EXPECT_TRUE(
      WaitFor([this] { return program_->Parent()->Traffic().Events().Counts().sent == 1; }));
  // What was answered bears its mark, and only that.
  Context& context = program_->GetContext();
  const OpenedDatabase mail(context, DatabaseKind::Mail);
  for (const RecordsetPtr rows = MessageRows(context.Data).All(); !rows->Eof(); rows->MoveNext()) {
    const bool isAnswered =
        GetFlagChar(rows->Fields(u"FIELD_FLAG").toString(), kFlagAnswered, {}) == u"1";
    EXPECT_EQ(isAnswered, rows->Fields(u"STATUS").toInt() == kStatusReceived);
  }
}

TEST_F(ProgramTest, ANewMessageAsksBeforeItIsLost) {
  StartProgram();
  AwaitInbox();
  QTest::keyClick(program_->Parent(), Qt::Key_N, Qt::ControlModifier);
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
  auto* message = TopLevel<MessageWindow>();
  EXPECT_EQ(NextMessageBox(
                [message] { message->findChild<QAction*>(QStringLiteral("mailup"))->trigger(); }),
            QStringLiteral("宛て先(TO,CC,BCC)が不明です。送信するには宛て先を指定して下さい。"));
  test::TypeText(test::Child<QPlainTextEdit>(*message, u"txMemo"), QStringLiteral("下書き"));
  const auto close = [message] { message->close(); };
  EXPECT_EQ(NextMessageBox(close, Qt::Key_Escape),
            QStringLiteral("このメッセージを保存します。よろしいですか？"));
  EXPECT_TRUE(message->isVisible());
  // Also when all of the program was to end, by mistake.
  NextMessageBox([this] { program_->Parent()->close(); }, Qt::Key_Escape);
  EXPECT_TRUE(message->isVisible() && program_->Parent()->isVisible());
  InModal<QMessageBox>(close, [](QMessageBox& box) { box.button(QMessageBox::Yes)->click(); });
  EXPECT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() == nullptr; }));
}

TEST_F(ProgramTest, TheDustBinIsEmptiedWhenTheUserAgrees) {
  StartProgram();
  AwaitInbox();
  Context& context = program_->GetContext();
  const auto store = [&context](const QString& serialId, int status) {
    Disk request(serialId);
    request.Let(QStringLiteral("process"), status);
    request.Let(QStringLiteral("folder"), fixed_serial::kInbox);
    return *MailStore(context).StoreMessage(request, "Subject: s\r\n\r\n");
  };
  store(QStringLiteral("kept"), 4);
  store(QStringLiteral("dust"), -4);
  const auto count = [&context](const QString& table) {
    EXPECT_TRUE(OpenDatabase(context, DatabaseKind::Mail));
    context.Data.OpenRecordset(QStringLiteral("SELECT COUNT(0) FROM ") + table,
                               CursorKind::ForwardOnly);
    const int rows = context.Data.Recordset()->Fields(u"COUNT(0)").toInt();
    context.Data.Close();
    return rows;
  };
  QAction* empty = nullptr;
  for (QAction* action :
       program_->Parent()->menuBar()->findChild<QMenu*>(QStringLiteral("menuFiles"))->actions()) {
    if (action->text().startsWith(QStringLiteral("くずかごを空に"))) empty = action;
  }
  ASSERT_NE(empty, nullptr);
  NextMessageBox([empty] { empty->trigger(); }, Qt::Key_Escape);
  EXPECT_EQ(count(QStringLiteral("mail")), 2);
  InModal<QMessageBox>([empty] { empty->trigger(); },
                       [](QMessageBox& box) { box.button(QMessageBox::Ok)->click(); });
  EXPECT_EQ(count(QStringLiteral("mail")), 1);
  EXPECT_EQ(count(QStringLiteral("folder")), 1);
  EXPECT_FALSE(MailStore(context).LoadMessageSource(Disk(QStringLiteral("kept")))->isEmpty());
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
  Settings(context)->Let(QStringLiteral("WebOutside"), false);
  place->trigger();
  EXPECT_EQ(browser.places.size(), 1);
  ASSERT_TRUE(WaitFor([&web] { return web.hasPendingConnections(); }));
  QByteArray asked;
  QTcpSocket* socket = web.nextPendingConnection();
  ASSERT_TRUE(WaitFor([&] { return (asked += socket->readAll()).contains("\r\n"); }));
  EXPECT_TRUE(asked.startsWith("GET /place ")) << asked.toStdString();
}

TEST_F(ProgramTest, TheSearchBoxNarrowsTheFolderAndItsPages) {
  AddMessages(9);
  server_.AddMessage("s1", "From: aoki@example.jp\r\nSubject: it's *special*\r\n\r\n\r\n");
  Prepare(QString(), 3);
  StartProgram();
  LogInWith(QString());
  AwaitInbox();
  Receive();
  ASSERT_TRUE(WaitFor([this] { return PageText().contains(QStringLiteral("会議 1")); }));
  auto& box = test::Child<QLineEdit>(*Browser(), u"txSearch");
  const auto search = [&](const QString& text, int key = Qt::Key_Return) {
    QSignalSpy loaded(Browser(), &BrowserWindow::Loaded);
    test::Type(box, text);
    if (text.isEmpty()) return WaitFor([&loaded] { return loaded.count() > 0; });
    QTest::keyClick(&box, Qt::Key(key));
    return WaitFor([&loaded] { return loaded.count() > 0; });
  };
  ASSERT_TRUE(search(QStringLiteral("AOKI")));  // an address, without regard to case
  EXPECT_TRUE(PageText().contains(QStringLiteral("special")));
  EXPECT_FALSE(PageText().contains(QStringLiteral("会議")));
  ASSERT_TRUE(search(QStringLiteral("it's")));
  EXPECT_TRUE(PageText().contains(QStringLiteral("special")));
  ASSERT_TRUE(search(QStringLiteral("*s")));  // as it is typed
  EXPECT_TRUE(PageText().contains(QStringLiteral("special")));
  ASSERT_TRUE(search(QStringLiteral("from:")));
  EXPECT_FALSE(PageText().contains(QStringLiteral("special")));
  // The page is that of what the box says, however it is made anew.
  ASSERT_TRUE(search(QStringLiteral("会議"), Qt::Key_F5));
  EXPECT_FALSE(PageText().contains(QStringLiteral("special")));
  EXPECT_TRUE(Browser()->findChild<QAction*>(QStringLiteral("next"))->isEnabled());
  ASSERT_TRUE(search(QStringLiteral("no such thing")));
  EXPECT_FALSE(PageText().contains(QStringLiteral("会議")));
  ASSERT_TRUE(search(QString()));
  EXPECT_TRUE(PageText().contains(QStringLiteral("会議 1")));
}

TEST_F(ProgramTest, TheButtonsTurnThePages) {
  AddMessages(5);
  Prepare(QString(), 2);
  StartProgram();
  LogInWith(QString());
  AwaitInbox();
  Receive();
  ASSERT_TRUE(WaitFor([this] { return PageText().contains(QStringLiteral("会議 2")); }));
  auto* toolbar = Browser()->findChild<QToolBar*>(QStringLiteral("tbLocation"));
  const auto button = [toolbar](const char16_t* key) {
    return toolbar->findChild<QAction*>(QString::fromUtf16(key));
  };
  EXPECT_FALSE(button(u"before")->isEnabled());
  ASSERT_TRUE(button(u"next")->isEnabled());
  EXPECT_EQ(button(u"next")->text(), QStringLiteral("次へ"));
  QTest::mouseClick(toolbar->widgetForAction(button(u"next")), Qt::LeftButton);
  QTest::mouseClick(toolbar->widgetForAction(button(u"next")), Qt::LeftButton);
  ASSERT_TRUE(WaitFor([this] { return PageText().contains(QStringLiteral("会議 5")); }));
  EXPECT_FALSE(PageText().contains(QStringLiteral("会議 4")));
  EXPECT_TRUE(button(u"before")->isEnabled());
  EXPECT_FALSE(button(u"next")->isEnabled());
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
  program_->Parent()->AddEvent(1, 0, QStringLiteral("gone"), QStringLiteral("<b>account</b>"),
                               QStringLiteral("account"), QStringLiteral("-ERR <b>no</b>"));
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
  EXPECT_EQ(question, QStringLiteral("「予定」を削除します。よろしいですか？"));
  EXPECT_NE(node(u"予定"), nullptr);
  InModal<QMessageBox>([tree] { QTest::keyClick(tree, Qt::Key_Delete); },
                       [](QMessageBox& box) { box.button(QMessageBox::Ok)->click(); });
  EXPECT_TRUE(WaitFor([&] { return node(u"予定") == nullptr; }));

  tree->setCurrentItem(node(u"受信"));
  EXPECT_EQ(NextMessageBox([tree] { QTest::keyClick(tree, Qt::Key_Delete); }),
            QStringLiteral("標準のオブジェクトは削除できません。"));
  EXPECT_NE(node(u"受信"), nullptr);
}

TEST_F(ProgramTest, FoldersOpenFromTheTreeAndAreReused) {
  StartProgram();
  AwaitInbox();
  ParentWindow* parent = program_->Parent();
  auto* tree = parent->findChild<QTreeWidget*>(QStringLiteral("tvConsole"));
  const auto* area = parent->findChild<QMdiArea*>();
  const auto open = [&](const char16_t* name, const QString& folder) {
    test::ClickRow(*tree, tree->findItems(QString::fromUtf16(name), Qt::MatchRecursive).value(0));
    return WaitFor([&] {
      const QMdiSubWindow* active = area->activeSubWindow();
      const auto* browser =
          active == nullptr ? nullptr : qobject_cast<BrowserWindow*>(active->widget());
      return browser != nullptr && browser->Tag() == folder;
    });
  };
  ASSERT_TRUE(open(u"送信", fixed_serial::kOutbox));
  EXPECT_EQ(parent->findChildren<BrowserWindow*>().size(), 2);
  ASSERT_TRUE(open(u"受信", fixed_serial::kInbox));
  EXPECT_EQ(parent->findChildren<BrowserWindow*>().size(), 2);
  // The tree says what the commands act on.
  parent->findChild<QMdiArea*>()->activateNextSubWindow();
  EXPECT_TRUE(WaitFor([tree] { return tree->currentItem()->text(0) == u"送信"; }));
  // Its keys close the page that it shows.
  parent->activateWindow();
  tree->setFocus();
  ASSERT_TRUE(WaitFor([tree] { return tree->hasFocus(); }));
  QTest::keyClick(tree, Qt::Key_W, Qt::ControlModifier);
  EXPECT_TRUE(WaitFor([parent] { return parent->findChildren<BrowserWindow*>().size() == 1; }));
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
    EXPECT_TRUE(InModal<ObjectsWindow>([&] { tree->NewObject(object_type::kFolder); },
                                       [&](ObjectsWindow& window) {
                                         test::TypeText(*window.focusWidget(),
                                                        QString::fromUtf16(name));
                                         QTest::keyClick(&window, Qt::Key_Return);
                                       }));
    return WaitFor([&] { return node(name) != nullptr && node(name)->parent() == node(below); });
  };
  EXPECT_TRUE(make(u"送信", u"甲"));
  EXPECT_TRUE(make(u"甲", u"乙"));
  for (const QString& serial : {QStringLiteral("m1"), QStringLiteral("m2")}) {
    Disk request(serial);
    request.Let(QStringLiteral("process"), static_cast<int>(kStatusReceived));
    request.Let(QStringLiteral("Flag"), QStringLiteral("001"));
    request.Let(QStringLiteral("folder"), fixed_serial::kInbox);
    EXPECT_TRUE(MailStore(program_->GetContext()).StoreMessage(request, "Subject: s\r\n\r\n"));
  }
  // At once, and what the count at the start finds, whenever that is.
  tree->SetUnread(fixed_serial::kInbox, 2);
  ASSERT_EQ(CountUnread(program_->GetContext(), fixed_serial::kInbox), 2);
  tree->AddEventNode(QStringLiteral("event_1"), QStringLiteral("出来事"), QStringLiteral("mail"));
  const QString serialId = node(u"甲")->data(0, Qt::UserRole).toString();
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
  // Whichever of them is loaded first.
  tree->RemoveEvents();
  for (const char16_t* name : {u"乙", u"送信"}) {
    const DiskPtr object =
        program_->GetContext().Objects.Find(node(name)->data(0, Qt::UserRole).toString());
    program_->GetContext().Objects.Remove(object->SerialID());
    if (name[0] == u'乙') object->Let(QStringLiteral("Parent"), fixed_serial::kOutbox);
    program_->GetContext().Objects.Add(object);
  }
  tree->Fill();
  EXPECT_EQ(node(u"乙")->parent(), node(u"送信"));
}

}  // namespace
}  // namespace vorn

#include "program_test.moc"
