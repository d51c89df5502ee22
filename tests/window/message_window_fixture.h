#pragma once

#include "mail/store/mail_store.h"
#include "mail/window/message_window.h"
#include "storage/databases.h"
#include "support/loopback_smtp_server.h"
#include "window/program_fixture.h"

namespace vorn {

using test::Child;
using test::Press;
using test::Type;
using test::TypeText;

/// The running program with an account that receives and sends, and messages in windows.
class MessageWindowTest : public ProgramTest {
 protected:
  void SetUp() override {
    ProgramTest::SetUp();
    ASSERT_TRUE(smtp_.Listen());
    PrepareSending(server_.Port(), smtp_.Port());
    StartProgram();
    LogInWith(QString());
    AwaitInbox();
  }
  vorn::Context& Context() const { return program_->GetContext(); }

  SerialId Store(const QByteArray& source, int status) const {
    Disk request(Context().Data.NewSerialID(QStringLiteral("mail_")));
    request.Let(QStringLiteral("process"), status);
    request.Let(QStringLiteral("Flag"), QStringLiteral("001"));
    return *MailStore(Context()).StoreMessage(request, source);
  }
  MessageWindow& Open(const SerialId& serialId) const {
    program_->Parent()->Requests().ShowMessage(MailRequest::Of(serialId));
    MessageWindow* window = nullptr;
    EXPECT_TRUE(WaitFor([&window] {
      window = TopLevel<MessageWindow>();
      return window != nullptr;
    }));
    window->activateWindow();
    return *window;
  }
  MessageWindow& OpenStored(const QByteArray& source, int status) const {
    return Open(Store(source, status));
  }
  MessageWindow& New() const {
    program_->Parent()
        ->menuBar()
        ->findChild<QMenu*>(QStringLiteral("menuFilesNew"))
        ->actions()[0]
        ->trigger();
    EXPECT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
    return *TopLevel<MessageWindow>();
  }
  // The message window beside that one, or null.
  static MessageWindow* OtherThan(MessageWindow& window) {
    QList<MessageWindow*> others = test::TopLevels<MessageWindow>();
    others.removeAll(&window);
    return others.value(0);
  }
  // Closes it with that answer to the question whether it is to be stored.
  static void CloseWith(MessageWindow& window, QMessageBox::StandardButton answer) {
    test::AnswerBox([&window] { window.close(); }, answer);
  }
  static bool Gone() {
    return WaitFor([] { return TopLevel<MessageWindow>() == nullptr; });
  }
  static QMenu& Menu(const MessageWindow& window, const char16_t* name) {
    return *window.findChild<QMenu*>(QString::fromUtf16(name));
  }
  // The entries' texts by their places; empty for a separator.
  static QStringList Texts(const QMenu& menu) {
    QStringList texts;
    for (const QAction* action : menu.actions()) texts.append(action->text().section(u'\t', 0, 0));
    return texts;
  }
  static QStringList Buttons(const MessageWindow& window) {
    QStringList names;
    auto* toolbar = window.findChild<QToolBar*>(QStringLiteral("tbMenu"));
    for (QAction* action : toolbar->actions()) {
      const QWidget* button = toolbar->widgetForAction(action);
      if (!action->isVisible()) continue;
      names.append(action->objectName().isEmpty() ? button->objectName() : action->objectName());
    }
    return names;
  }
  QVariant Column(const SerialId& serialId, const QString& column) const {
    EXPECT_TRUE(OpenDatabase(Context(), DatabaseKind::Mail));
    EXPECT_TRUE(Context().Data.OpenRecordset(
        QStringLiteral("SELECT * FROM mail WHERE SERIALID = '%1'").arg(serialId.Text()),
        CursorKind::ForwardOnly));
    const RecordsetPtr row = Context().Data.Recordset();
    const QVariant value = row->Eof() ? QVariant() : row->Fields(column);
    Context().Data.Close();
    return value;
  }
  int Count() const {
    EXPECT_TRUE(OpenDatabase(Context(), DatabaseKind::Mail));
    EXPECT_TRUE(Context().Data.OpenRecordset(QStringLiteral("SELECT COUNT(0) FROM mail"),
                                             CursorKind::ForwardOnly));
    const int count = Context().Data.Recordset()->Fields(u"COUNT(0)").toInt();
    Context().Data.Close();
    return count;
  }
  QString File(const char* name, const QByteArray& bytes) const {
    const QString path = folder_.filePath(QString::fromUtf8(name));
    test::WriteFile(path, bytes);
    return path;
  }

  test::LoopbackSmtpServer smtp_;
};

inline const QByteArray kPlain =
    "From: Sato <sato@example.jp>\r\nTo: y@example.org\r\nCc: c@example.org\r\nSubject: hello\r\n"
    "Message-ID: <1@example.jp>\r\n\r\nfirst line\r\nsecond line\r\n";
inline const QByteArray kDraft =
    "From: y@example.org\r\nTo: a@example.jp\r\nSubject: draft\r\n\r\ntext\r\n.\r\n";

}  // namespace vorn
