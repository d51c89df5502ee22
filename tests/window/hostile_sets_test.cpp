// What senders, servers and users may come up with, one after the other in the running program:
// names of attachments, answers of a server.

#include "auxiliary/window/console_window.h"
#include "mail/window/fields/attachment_list.h"
#include "objects/window/objects_window.h"
#include "support/shown_texts.h"
#include "window/folder_page_fixture.h"
#include "window/message_window_fixture.h"

namespace vorn {
namespace {

using test::ExpectShowable;
using test::Fault;

class HostileNamesTest : public MessageWindowTest {
 protected:
  static QStringList Names() {
    const QJsonDocument list =
        QJsonDocument::fromJson(test::ReadFile(QStringLiteral(VORN_HOSTILE_NAMES)));
    QStringList names;
    for (const QJsonValue& value : list.array()) {
      QString name = value.toString();
      names.append(name.replace(QStringLiteral("{host}"), QStringLiteral("spy.test"))
                       .replace(QStringLiteral("{url}"), QStringLiteral("http://spy.test/x")));
    }
    return names;
  }
  // Programs under those names, whatever the names say.
  static QByteArray Mail(const QStringList& names) {
    QByteArray mail =
        "From: a@example.jp\r\nSubject: s\r\nMIME-Version: 1.0\r\n"
        "Content-Type: multipart/mixed; boundary=b\r\n\r\n--b\r\n\r\ntext\r\n";
    for (const QString& name : names) {
      mail +=
          "--b\r\nContent-Type: application/octet-stream\r\nContent-Disposition: attachment;\r\n"
          " filename=\"=?UTF-8?B?" +
          name.toUtf8().toBase64() + "?=\"\r\n\r\nMZ\x90\r\n";
    }
    return mail + "--b--\r\n";
  }
};

// The question before each of them is the program's own, whole and in its own words.
TEST_F(HostileNamesTest, EachIsAskedAboutInTheProgramsOwnWordsAndSavedInItsFolder) {
  const QStringList names = Names();
  ASSERT_GE(names.size(), 40);
  MessageWindow& window = OpenStored(Mail(names), 4);
  auto& list = Child<AttachmentList>(window, u"lvClip");
  ASSERT_EQ(list.count(), names.size());
  for (int row = 0; row < list.count(); ++row) {
    const std::string name = names[row].left(80).toStdString();
    ExpectShowable(list.item(row)->text(), name);
    list.setCurrentRow(row);
    EXPECT_TRUE(InModal<QMessageBox>(
        [&list] { list.OpenCurrent(); },
        [&name](QMessageBox& box) {
          QString text = box.text();
          text.remove(QChar(0x200E));  // the program's own, before a name from right to left
          EXPECT_EQ(box.textFormat(), Qt::PlainText);
          ExpectShowable(text, name);
          EXPECT_TRUE(text.startsWith(u'「') && text.endsWith(QStringLiteral("\n\n開きますか？")))
              << name;
          EXPECT_TRUE(text.contains(QStringLiteral("開くとパソコンに害を及ぼすおそれがあります。")))
              << name;
          EXPECT_TRUE(text.contains(QStringLiteral("\n実際の中身: "))) << name;
          EXPECT_EQ(text.count(u'\n'), 5) << text.toStdString();
          EXPECT_LT(text.size(), 600) << name;
          EXPECT_EQ(box.defaultButton(), box.button(QMessageBox::No));
          QTest::keyClick(&box, Qt::Key_Return);
        }))
        << name;
  }
  const QString out = folder_.filePath(QStringLiteral("out"));
  QDir().mkpath(out);
  test::Answering<QFileDialog, ConsoleWindow>(
      [&window] { Menu(window, u"menuEditsAttachments").actions()[0]->trigger(); },
      [&out](QFileDialog& dialog) { test::AcceptIn(dialog, out); },
      [](ConsoleWindow& choice) {
        for (const QString& text : test::ShownTexts()) ExpectShowable(text, "choice");
        Child<QListWidget>(choice, u"ListView1").selectAll();
        Press(Child<QPushButton>(choice, u"cmOk"));
      });
  const QStringList saved =
      QDir(out).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
  EXPECT_EQ(saved.size(), names.size());
  for (const QString& name : saved) {
    ExpectShowable(name, "saved");
    EXPECT_LE(QFile::encodeName(name).size(), 255);
    EXPECT_TRUE(QFileInfo(out + u'/' + name).isFile()) << name.toStdString();
  }
  EXPECT_EQ(QDir(folder_.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden),
            (QStringList{QStringLiteral("data"), QStringLiteral("out")}));
}

// What a server says instead of its answer to a command.
struct ServerAnswer {
  const char* command;
  QByteArray text;
};

QList<ServerAnswer> Answers() {
  const QByteArray html =
      "<h1>safe</h1><a href=http://spy.test/>spy.test</a><img src=http://spy.test/x>";
  const QByteArray many(1 << 20, 'x');
  return {
      {"GREETING", "-ERR " + html + "\r\n"},
      {"GREETING", "+OK \x1b]0;spy.test\x07\x1b[2J\xE2\x80\xAE\r\n"},
      {"GREETING", "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\n\r\n" + html},
      {"GREETING", "220 smtp.spy.test ESMTP\r\n"},
      {"GREETING", "* OK IMAP4rev1 spy.test\r\n"},
      {"GREETING", QByteArray("\0\0\0\0\r\n", 6)},
      {"GREETING", "-ERR " + many + "\r\n"},
      {"GREETING", many},
      {"GREETING", "+OK one\r\n+OK two\r\n+OK three\r\n-ERR four\r\n"},
      {"CAPA", "+OK\r\n" + QByteArray("X " + html + "\r\n").repeated(10000) + ".\r\n"},
      {"CAPA", "+OK\r\nSASL " + html + " PLAIN\r\nSTLS\r\nPIPELINING\r\n.\r\n"},
      {"CAPA", "+OK\r\nUSER\r\n.\r\n+OK logged in\r\n"},
      {"USER", "-ERR " + html + "\xE2\x80\xAE\xE2\x81\xA6 spy.test\r\n"},
      {"USER", "-ERR a\rb\r\n"},
      {"PASS", "-ERR your password is secret, is it?\r\n"},
      {"PASS",
       "-ERR c2VjcmV0 736563726574 %73%65%63%72%65%74 SECRET s e c r e t =73=65=63=72=65=74\r\n"},
      {"PASS", "-ERR AHVzZXIAc2VjcmV0 dXNlcg==\r\n"},
      {"PASS", "-ERR sec\x1b[0mret " + html + "\r\n"},
      {"PASS", "-ERR [SYS/PERM] " + QByteArray(5000, 'y') + "secret\r\n"},
      {"PASS", "+OK\r\n+OK\r\n+OK 1 1\r\n"},
      {"UIDL", "-ERR " + html + "\r\n"},
      {"UIDL", "+OK\r\n1 " + html + "\r\n.\r\n"},
      {"UIDL", "+OK\r\n1 " + QByteArray(100000, 'u') + "\r\n.\r\n"},
      {"UIDL", "+OK\r\n-1 x\r\n0 y\r\n99999999999999999999 z\r\n.\r\n"},
      {"UIDL", "+OK\r\n1 same\r\n1 same\r\n2 same\r\n.\r\n"},
      {"UIDL", QByteArray("+OK\r\n1 \0\0\0\r\n.\r\n", 15)},
      {"LIST", "+OK\r\n1 99999999999999999999\r\n.\r\n"},
      {"LIST", "+OK\r\n1 18446744073709551615\r\n.\r\n"},
      {"LIST", "+OK\r\n1 -5\r\n.\r\n"},
      {"LIST", "+OK\r\n" + html + "\r\n.\r\n"},
      {"LIST", "-ERR secret\r\n"},
      {"RETR", "-ERR " + html + "\r\n"},
      {"RETR", "+OK 99999999999 octets\r\n.\r\n"},
      {"RETR", "\r\n"},
      {"RETR", "no such command: secret\r\n"},
      {"DELE", "-ERR " + html + "\r\n"},
      {"QUIT", "-ERR " + html + "\x1b[2J\r\n"},
      {"QUIT", "+OK\r\n-ERR\r\n" + many + "\r\n"},
  };
}

class HostileServerAnswersTest : public ProgramTest {
 protected:
  // Receives, however that ends.
  void Check() {
    MailTraffic& traffic = program_->Parent()->Traffic();
    const int errors = traffic.Events().Counts().errors;
    server_.ForgetReceived();
    PressReceive();
    EXPECT_TRUE(WaitFor([&] {
      const bool began = !server_.Received().isEmpty() || traffic.Events().Counts().errors > errors;
      return began && !traffic.Control().Busy() && traffic.Plan().IsEmpty();
    }));
  }
  QStringList Subjects() const {
    DataSession& data = program_->GetContext().Data;
    EXPECT_TRUE(OpenDatabase(program_->GetContext(), DatabaseKind::Mail));
    EXPECT_TRUE(data.OpenRecordset(QStringLiteral("SELECT FIELD_SUBJECT FROM mail"),
                                   CursorKind::ForwardOnly));
    QStringList subjects;
    for (; !data.Recordset()->Eof(); data.Recordset()->MoveNext()) {
      subjects.append(data.Recordset()->Fields(u"FIELD_SUBJECT").toString());
    }
    data.Close();
    return subjects;
  }
  // Opens every event that was recorded, as a user who wants to know what went wrong.
  void ReadEvents() {
    auto& tree = Child<QTreeWidget>(*program_->Parent(), u"tvConsole");
    QTreeWidgetItemIterator item(&tree);
    while (*item != nullptr &&
           SerialIdOf((*item)->data(0, Qt::UserRole)) != fixed_serial::kEventLog)
      ++item;
    ASSERT_NE(*item, nullptr);
    QTreeWidgetItem* log = *item;
    EXPECT_GE(log->childCount(), 20);
    for (int i = 0; i < log->childCount(); ++i) {
      EXPECT_TRUE(InModal<ObjectsWindow>([&] { test::ClickRow(tree, log->child(i)); },
                                         [this, i](ObjectsWindow& window) {
                                           ExpectOwnWords("event " + std::to_string(i));
                                           Press(Child<QPushButton>(window, u"cmCancel"));
                                         }));
    }
  }
  void ExpectOwnWords(const std::string& answer) const {
    const QString password = QStringLiteral("secret");
    for (const QString& text : test::ShownTexts()) {
      ExpectShowable(text, answer);
      EXPECT_FALSE(text.contains(password, Qt::CaseInsensitive))
          << answer << ": " << text.toStdString();
      for (const char* form :
           {"c2VjcmV0", "736563726574", "%73%65%63", "=73=65=63", "s e c r e t"}) {
        EXPECT_FALSE(text.contains(QLatin1String(form), Qt::CaseInsensitive))
            << answer << ": " << text.toStdString();
      }
    }
  }
};

TEST_F(HostileServerAnswersTest, NoneSpeaksForTheProgramShowsThePasswordOrKeepsTheNextMailAway) {
  const QList<ServerAnswer> answers = Answers();
  ASSERT_GE(answers.size(), 30);
  Prepare(QString());
  StartProgram();
  LogInWith(QString());
  AwaitInbox();
  // Each answer has an event of its own, to be opened.
  Settings(program_->GetContext()).Bag()->Let(QStringLiteral("EventsFolded"), false);
  int number = 0;
  for (const ServerAnswer& answer : answers) {
    const std::string name = answer.command + (": " + answer.text.left(60)).toStdString();
    SCOPED_TRACE(name);
    ++number;
    server_.AddMessage(
        "u" + QByteArray::number(number),
        "From: a@example.jp\r\nSubject: No" + QByteArray::number(number) + ".\r\n\r\n\r\n");
    server_.Faults = {{Fault::Kind::Reply, answer.command, 1, 0, answer.text}};
    Check();
    ExpectOwnWords(name);
  }
  server_.Faults.clear();
  server_.AddMessage("last", "From: a@example.jp\r\nSubject: last\r\n\r\n\r\n");
  Receive();
  // Each once, whatever the server said of it meanwhile.
  QStringList subjects = Subjects();
  subjects.removeOne(QString());  // what a server gave without its text
  EXPECT_EQ(subjects.removeDuplicates(), 0) << subjects.join(u'|').toStdString();
  EXPECT_TRUE(subjects.contains(QStringLiteral("last")));
  EXPECT_EQ(subjects.size(), answers.size() + 1) << subjects.join(u'|').toStdString();
  ReadEvents();
}

}  // namespace
}  // namespace vorn
