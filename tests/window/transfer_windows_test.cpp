// Receive-stop rules, what happens when mail has arrived, the notification area and the recorded
// events, in the running program.

#include <QSoundEffect>
#include <algorithm>

#include "mail/store/mail_row.h"
#include "mail/store/message_rows.h"
#include "mail/window/message_window.h"
#include "objects/object_loader.h"
#include "objects/object_types.h"
#include "objects/save_object.h"
#include "objects/window/condition_editor.h"
#include "objects/window/objects_window.h"
#include "storage/databases.h"
#include "storage/message_state.h"
#include "support/fake_notifications.h"
#include "transfer/window/rule_window.h"
#include "transfer/window/task_tray.h"
#include "window/program_fixture.h"

namespace vorn {
namespace {

using test::Child;
using test::TypeText;

class TransferWindowsTest : public ProgramTest {
 protected:
  // The program with an open inbox and these settings.
  void Begin(std::initializer_list<std::pair<const char16_t*, QVariant>> settings) {
    Prepare(QString());
    StartProgram();
    LogInWith(QString());
    AwaitInbox();
    const DiskPtr logo = Settings(Context()).Bag();
    for (const auto& [key, value] : settings) logo->Let(QString::fromUtf16(key), value);
    program_->Parent()->ApplySettings();
  }
  vorn::Context& Context() const { return program_->GetContext(); }
  QMenu* Menu(const char16_t* name) const {
    return program_->Parent()->menuBar()->findChild<QMenu*>(QString::fromUtf16(name));
  }
  static QAction* Entry(const QMenu* menu, const QString& text) {
    for (QAction* action : menu->actions()) {
      if (action->text().startsWith(text)) return action;
    }
    return nullptr;
  }
  static QStringList Lines(const QTableWidget& list) {
    QStringList lines;
    for (int row = 0; row < list.rowCount(); ++row) lines.append(list.item(row, 0)->text());
    return lines;
  }
};

TEST_F(TransferWindowsTest, RulesAreEditedInPlaceAndStopMail) {
  AddMessages(3);
  Begin({});
  const auto open = [this] {
    Entry(Menu(u"menuTools"), QStringLiteral("メッセージ条件"))->trigger();
  };
  EXPECT_TRUE(InModal<RuleWindow>(open, [](RuleWindow& window) {
    window.activateWindow();
    auto& list = Child<QTableWidget>(window, u"lvReceiveStop");
    auto& box = Child<QLineEdit>(window, u"txInput");
    auto& menu = Child<QMenu>(window, u"menuReceiveStop");
    EXPECT_EQ(Lines(list), QStringList{QStringLiteral("($追加)")});
    EXPECT_EQ(window.focusWidget(), &list) << "Enter begins a rule";
    const auto add = [&](int entry, const QString& text, Qt::Key end) {
      list.setCurrentCell(list.rowCount() - 1, 0);
      test::ClickRow(list, list.currentItem(), Qt::RightButton);
      EXPECT_TRUE(menu.isVisible());
      menu.actions()[entry]->trigger();
      menu.close();
      TypeText(box, text);
      QTest::keyClick(&box, end);
      EXPECT_FALSE(box.isVisible());
      EXPECT_TRUE(window.isVisible());  // Enter and Escape are the editor's own
    };
    add(1, QStringLiteral(" 佐*"), Qt::Key_Return);
    add(0, QStringLiteral("Bulk*"), Qt::Key_Return);
    add(1, QString(), Qt::Key_Return);  // the beginning alone is no rule
    add(0, QStringLiteral("More*"), Qt::Key_Return);
    add(0, QStringLiteral("dropped"), Qt::Key_Escape);
    EXPECT_EQ(Lines(list),
              (QStringList{QStringLiteral("from: 佐*"), QStringLiteral("x-mailer: Bulk*"),
                           QStringLiteral("x-mailer: More*"), QStringLiteral("($追加)")}));
    // An existing rule is edited by Enter, its beginning comes back, and others are removed by
    // Delete.
    list.setFocus();
    list.setCurrentCell(0, 0);
    QTest::keyClick(&list, Qt::Key_Return);
    QTest::keyClick(&box, Qt::Key_Home);
    QTest::keyClick(&box, Qt::Key_Delete);
    EXPECT_EQ(box.text(), QStringLiteral("from: 佐*"));
    QTest::keyClick(&box, Qt::Key_End);
    TypeText(box, QStringLiteral("!"));
    QTest::keyClick(&box, Qt::Key_Backspace);
    QTest::keyClick(&box, Qt::Key_Return);
    list.setCurrentCell(1, 0);
    QTest::keyClick(&list, Qt::Key_Down, Qt::ShiftModifier);
    QTest::keyClick(&list, Qt::Key_Delete);
    list.setCurrentCell(1, 0);
    QTest::keyClick(&list, Qt::Key_Delete);  // the placeholder stays
    EXPECT_EQ(Lines(list), (QStringList{QStringLiteral("from: 佐*"), QStringLiteral("($追加)")}));
    test::Press(Child<QPushButton>(window, u"cmOk"));
  }));
  const DiskPtr rules = Context().Objects.Find(fixed_serial::kRules);
  ASSERT_NE(rules, nullptr);
  EXPECT_EQ(rules->Text(u"ReceiveStop"), QStringLiteral("from: 佐*"));
  EXPECT_FALSE(rules->Flag(u"ReceiveStopDelete", true));
  EXPECT_EQ(rules->Size(), 3);  // with "DayTime"
  PressReceive();
  EXPECT_TRUE(
      WaitFor([this] { return program_->Parent()->Traffic().Events().Counts().stopped == 3; }));

  EXPECT_TRUE(InModal<RuleWindow>(open, [](RuleWindow& window) {
    auto& list = Child<QTableWidget>(window, u"lvReceiveStop");
    EXPECT_EQ(Lines(list), (QStringList{QStringLiteral("from: 佐*"), QStringLiteral("($追加)")}));
    list.setCurrentCell(0, 0);
    QTest::keyClick(&list, Qt::Key_Delete);
    QTest::keyClick(&window, Qt::Key_Escape);
  }));
  EXPECT_EQ(rules->Text(u"ReceiveStop"), QStringLiteral("from: 佐*"));

  // Another program adds rules meanwhile; one that stops all mail is refused.
  Disk stored(fixed_serial::kRules);
  stored.Let(QStringLiteral("ReceiveStop"), QStringLiteral("from: 佐*\r\nfrom:*"));
  EXPECT_TRUE(SaveObject(Context(), DatabaseKind::Profile, stored));
  EXPECT_TRUE(InModal<RuleWindow>(open, [this](RuleWindow& window) {
    auto& list = Child<QTableWidget>(window, u"lvReceiveStop");
    EXPECT_EQ(Lines(list).value(1), QStringLiteral("from:*"));
    test::Press(Child<QPushButton>(window, u"cmOk"));
    const auto& error = Child<QLabel>(window, u"lbError");
    EXPECT_TRUE(error.isVisible() && error.text().contains(QStringLiteral("「from:*」")));
    list.setCurrentCell(1, 0);
    QTest::keyClick(&list, Qt::Key_Delete);
    EXPECT_FALSE(error.isVisible());
    // And one more, while the window is open.
    Disk more(fixed_serial::kRules);
    more.Let(QStringLiteral("ReceiveStop"), QStringLiteral("from: 佐*\r\nfrom:*\r\nfrom:late"));
    EXPECT_TRUE(SaveObject(Context(), DatabaseKind::Profile, more));
    test::Press(Child<QPushButton>(window, u"cmOk"));
  }));
  EXPECT_EQ(rules->Text(u"ReceiveStop"), QStringLiteral("from: 佐*\r\nfrom:late"));
}

TEST_F(TransferWindowsTest, NewMailIsAskedAboutAndHeard) {
  AddMessages(3);
  const QString sound = folder_.filePath(QStringLiteral("notice.wav"));
  test::WriteFile(sound, {});
  Begin({{u"MessageNotice", true},
         {u"MessageNoticeDialog", true},
         {u"MessageNoticeSound", true},
         {u"MessageNoticeSoundFile", QStringLiteral("/no/such/file.wav")}});
  const auto& player = *program_->Parent()->findChild<QSoundEffect*>(QStringLiteral("mmSound"));
  // The question waits: what is being typed elsewhere is not its answer.
  const auto question = [this] {
    Receive();
    EXPECT_TRUE(WaitFor([] { return TopLevel<QMessageBox>() != nullptr; }));
    return TopLevel<QMessageBox>();
  };
  QMessageBox* box = question();
  ASSERT_NE(box, nullptr);
  EXPECT_FALSE(box->isModal());
  EXPECT_TRUE(box->testAttribute(Qt::WA_ShowWithoutActivating));
  EXPECT_EQ(box->text(), QStringLiteral("新着メッセージを受信しました。今すぐ開きますか？"));
  EXPECT_EQ(box->defaultButton(), box->button(QMessageBox::Cancel));
  EXPECT_TRUE(player.source().isEmpty());
  box->reject();
  ASSERT_TRUE(WaitFor([] { return TopLevel<QMessageBox>() == nullptr; }));

  Settings(Context()).Bag()->Let(QStringLiteral("MessageNoticeSoundFile"), sound);
  server_.AddMessage("u9", "From: a@x.example\r\nSubject: nine\r\n\r\n\r\n");
  box = question();
  ASSERT_NE(box, nullptr);
  box->button(QMessageBox::Ok)->click();
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
  EXPECT_EQ(Child<QLineEdit>(*TopLevel<MessageWindow>(), u"txSubject").text(),
            QStringLiteral("nine"));
  EXPECT_EQ(player.source().toLocalFile(), sound);
  // Those that the user did not want to see have not been opened meanwhile.
  EXPECT_EQ(test::TopLevels<MessageWindow>().size(), 1);
  TopLevel<MessageWindow>()->close();
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() == nullptr; }));
  // Many at once are opened after another word.
  for (int i = 0; i < 6; ++i) {
    server_.AddMessage("many" + QByteArray::number(i), "Subject: many\r\n\r\n\r\n");
  }
  box = question();
  ASSERT_NE(box, nullptr);
  EXPECT_TRUE(test::AnswerBox([box] { box->button(QMessageBox::Ok)->click(); }, QMessageBox::Cancel)
                  .contains(u"6"));
  EXPECT_EQ(TopLevel<MessageWindow>(), nullptr);
}

TEST_F(TransferWindowsTest, TheDesktopTellsOfNewMailAndItsButtonsAct) {
  test::FakeNotifications desktop;
  const QString sound = folder_.filePath(QStringLiteral("notice.wav"));
  test::WriteFile(sound, {});
  Begin({{u"MessageNoticeSound", true},
         {u"MessageNoticeSoundAlone", false},
         {u"MessageNoticeSoundFile", sound}});
  const auto& player = *program_->Parent()->findChild<QSoundEffect*>(QStringLiteral("mmSound"));
  const auto told = [&](const QByteArray& name, const QByteArray& header) {
    server_.AddMessage(name, header + "\r\n\r\n\r\n");
    const qsizetype before = desktop.Told.size();
    Receive();
    EXPECT_TRUE(WaitFor([&] { return desktop.Told.size() > before; }));
    test::RunFor(100);  // its answer
    return desktop.Told.isEmpty() ? test::FakeNotifications::Shown() : desktop.Told.last();
  };
  const auto count = [this](const std::function<bool(const MailRow&)>& counts) {
    const OpenedDatabase mail(Context(), DatabaseKind::Mail);
    int number = 0;
    for (const RecordsetPtr rows = MessageRows(Context().Data).All(); !rows->Eof();
         rows->MoveNext()) {
      if (counts(MailRow(*rows))) ++number;
    }
    return number;
  };
  const auto isOpened = [](const MailRow& row) { return row.Flags().At(kFlagNew) == u"0"; };
  const auto isDust = [](const MailRow& row) { return row.State().isDust; };
  const auto first = told("one", "From: A & B <a@x.example>\r\nSubject: <i>one</i>");
  EXPECT_EQ(first.summary, QStringLiteral("A & B"));
  EXPECT_EQ(first.body, QStringLiteral("&lt;i&gt;one&lt;/i&gt;"));
  EXPECT_EQ(TopLevel<QMessageBox>(), nullptr);
  EXPECT_TRUE(player.source().isEmpty());

  Settings(Context()).Bag()->Let(QStringLiteral("MessageNoticeSoundAlone"), true);
  const auto second = told("two", "From: \"boss@y.example\" <c@x.example>\r\nSubject: two");
  EXPECT_EQ(second.replaces, first.id);
  EXPECT_TRUE(second.summary.contains(u'2'));
  EXPECT_EQ(second.body, QStringLiteral("A &amp; B\nc@x.example (boss@y.example)"));
  EXPECT_EQ(player.source().toLocalFile(), sound);
  desktop.Choose(second.id, QStringLiteral("read"));
  EXPECT_TRUE(WaitFor([&] { return count(isOpened) == 2; }));

  // What was dealt with is not told of again.
  const auto third = told("three", "From: d@x.example\r\nSubject: three");
  EXPECT_EQ(third.body, QStringLiteral("three"));
  desktop.Choose(third.id, QStringLiteral("dust"));
  EXPECT_TRUE(WaitFor([&] { return count(isDust) == 1; }));

  const auto fourth = told("four", "From: e@x.example\r\nSubject: four");
  desktop.Choose(fourth.id, QStringLiteral("default"));
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
  EXPECT_EQ(Child<QLineEdit>(*TopLevel<MessageWindow>(), u"txSubject").text(),
            QStringLiteral("four"));
  TopLevel<MessageWindow>()->close();

  // Nor what was read or thrown away in another way.
  told("five", "From: f@x.example\r\nSubject: five");
  {
    const OpenedDatabase mail(Context(), DatabaseKind::Mail);
    ASSERT_TRUE(Context().Data.Execute(
        QStringLiteral("UPDATE mail SET FIELD_FLAG = '000' WHERE FIELD_SUBJECT = 'five'")));
  }
  const auto sixth = told("six", "From: g@x.example\r\nSubject: six");
  EXPECT_EQ(sixth.body, QStringLiteral("six"));

  Settings(Context()).Bag()->Let(QStringLiteral("MessageNoticeDesktop"), false);
  server_.AddMessage("seven", "Subject: seven\r\n\r\n\r\n");
  Receive();
  Settings(Context()).Bag()->Let(QStringLiteral("MessageNoticeDesktop"), true);
  told("eight", "Subject: eight");
  EXPECT_EQ(desktop.Told.size(), 7);
}

TEST_F(TransferWindowsTest, ARuleIsMadeFromAMessageAndStoredByOkAlone) {
  server_.AddMessage(
      "u1",
      "From: =?UTF-8?B?5L2Q6Jek?= <a#b@x.example>\r\nTo: All@list.example\r\nSubject: s\r\n"
      "List-Post: <mailto:all@list.example>\r\n\r\n\r\n");
  Begin({});
  Receive();
  FocusPage();
  QTest::keyClick(View()->focusProxy(), Qt::Key_Down);
  ASSERT_TRUE(WaitFor([this] { return !Chosen().isEmpty(); }));
  const auto run = [this](const char* command) {
    return [this, command] {
      Browser()->findChild<QAction*>(QLatin1String("cmd_") + QLatin1String(command))->trigger();
    };
  };
  const auto rules = [this] {
    const DiskPtr bag = LoadObject(Context(), fixed_serial::kRules);
    return bag == nullptr ? QString() : bag->Text(u"ReceiveStop");
  };
  for (const char16_t* end : {u"cmCancel", u"cmOk"}) {
    EXPECT_TRUE(InModal<RuleWindow>(run("stop"), [end](RuleWindow& window) {
      auto& list = Child<QTableWidget>(window, u"lvReceiveStop");
      EXPECT_EQ(Lines(list),
                (QStringList{QStringLiteral("from:a[#]b@x.example"), QStringLiteral("($追加)")}));
      EXPECT_EQ(list.currentRow(), 0);
      EXPECT_EQ(window.focusWidget(), &Child<QPushButton>(window, u"cmOk")) << "Enter takes it";
      test::Press(Child<QPushButton>(window, end));
    }));
    EXPECT_EQ(rules().isEmpty(), QStringView(end) == u"cmCancel");
  }
  const qsizetype objects = Context().Objects.Count();
  EXPECT_TRUE(InModal<ObjectsWindow>(run("gather"), [](ObjectsWindow& window) {
    EXPECT_EQ(Child<QLineEdit>(window, u"txObject").text(), QStringLiteral("all@list.example"));
    auto& list = Child<ConditionEditor>(window, u"lvCondition");
    EXPECT_TRUE(list.Line(0).endsWith(QStringLiteral("all@list.example")));
    const auto& matches = Child<QLabel>(window, u"lbMatches");
    EXPECT_TRUE(WaitFor([&] { return matches.text().contains(QStringLiteral("1通")); }));
    test::Press(Child<QPushButton>(window, u"cmCancel"));
  }));
  EXPECT_EQ(Context().Objects.Count(), objects);

  // The message's own window offers the same.
  run("open")();
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
  QAction* entry =
      Entry(TopLevel<MessageWindow>()->findChild<QMenu*>(QStringLiteral("menuFilesMessages")),
            QStringLiteral("このようなメールを受信しない"));
  EXPECT_TRUE(InModal<RuleWindow>(
      [entry] { entry->trigger(); },
      [](RuleWindow& window) {
        EXPECT_EQ(Child<QTableWidget>(window, u"lvReceiveStop").rowCount(), 2) << "it is there";
        test::Press(Child<QPushButton>(window, u"cmCancel"));
      }));
  TopLevel<MessageWindow>()->close();
}

TEST_F(TransferWindowsTest, TheNotificationAreaFollowsTheSettingAndEndsTheProgram) {
  Begin({{u"Tasktray", true}});
  const auto tray = [this] {
    return program_->Parent()->findChild<TaskTray*>(QStringLiteral("tasktray"));
  };
  ASSERT_NE(tray(), nullptr);
  EXPECT_TRUE(tray()->TrayIcon().isVisible());
  Settings(Context()).Bag()->Let(QStringLiteral("Tasktray"), false);
  program_->Parent()->ApplySettings();
  EXPECT_EQ(tray(), nullptr);
  Settings(Context()).Bag()->Let(QStringLiteral("Tasktray"), true);
  program_->Parent()->ApplySettings();
  program_->Parent()->showMinimized();
  auto& icon = const_cast<QSystemTrayIcon&>(tray()->TrayIcon());
  Q_EMIT icon.activated(QSystemTrayIcon::Trigger);
  EXPECT_FALSE(program_->Parent()->isMinimized()) << "a click brings it back";
  const QMenu* menu = tray()->TrayIcon().contextMenu();
  ASSERT_EQ(menu->actions().size(), 3);
  EXPECT_TRUE(NextMessageBox([menu] {
                menu->actions()[0]->trigger();
              }).startsWith(QStringLiteral(".VORN version")));
  menu->actions()[2]->trigger();
  EXPECT_TRUE(WaitFor([this] { return program_->Parent() == nullptr; }));
}

}  // namespace
}  // namespace vorn
