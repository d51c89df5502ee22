#pragma once

#include <vector>

#include "mail/store/mail_store.h"
#include "objects/object_types.h"
#include "window/program_fixture.h"

namespace vorn {

inline const SerialId kShelf(QStringLiteral("_folder_shelf"));

/// Answers every request with one page and remembers what was asked for.
class WebSite {
 public:
  explicit WebSite(const QByteArray& page = "<p>web</p>") : page_(page) {
    server_.listen(QHostAddress::LocalHost);
    QObject::connect(&server_, &QTcpServer::newConnection, &server_, [this] {
      QTcpSocket* socket = server_.nextPendingConnection();
      QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
        asked.append(socket->readAll().split(' ').value(1));
        socket->write("HTTP/1.0 200 OK\r\nContent-Type: " + type_ + "\r\n\r\n" + page_);
        socket->disconnectFromHost();
      });
    });
  }
  QByteArray Url() const { return "http://127.0.0.1:" + QByteArray::number(server_.serverPort()); }
  /// From now on the page is something to be saved.
  void SendAsFile() { type_ = "application/octet-stream"; }
  QList<QByteArray> asked;

 private:
  QByteArray page_;
  QByteArray type_ = "text/html";
  QTcpServer server_;
};

/// The running program with messages in a folder's page.
class FolderPageTest : public ProgramTest {
 protected:
  // A profile with messages in its inbox and a folder that is filled by hand.
  void Begin(int messages, int rowsPerPage, bool newest = false, bool escape = true,
             const QByteArray& more = {}) {
    {
      TestProfile profile;
      const DiskPtr settings = Settings(profile.Get()).Bag();
      settings->Let(QStringLiteral("Messages"), rowsPerPage);
      settings->Let(QStringLiteral("MessagesNewest"), newest);
      settings->Let(QStringLiteral("PageEscape"), escape);
      EXPECT_TRUE(SaveObject(profile.Get(), DatabaseKind::Profile, *settings));
      Disk shelf(kShelf);
      shelf.Let(QStringLiteral("FormName"), object_type::kFolder);
      shelf.Let(QStringLiteral("Object"), QStringLiteral("棚"));
      shelf.Let(QStringLiteral("Draw"), QStringLiteral("static"));
      shelf.Let(QStringLiteral("Parent"), profile.Get().Session->SerialID());
      EXPECT_TRUE(SaveObject(profile.Get(), DatabaseKind::Profile, shelf));
      for (int i = 1; i <= messages; ++i) {
        StoreReceived(profile.Get(), SerialId(QStringLiteral("mail_%1").arg(i)),
                      "From: a@example.jp\r\nSubject: No" + QByteArray::number(i) + ".\r\n" + more +
                          "\r\nbody\r\n",
                      QStringLiteral("2020-01-01 00:%1:00").arg(i, 2, 10, QChar(u'0')));
      }
      TakePlainLook(profile.Get());
      profile.Get().Data.CloseAll();
      CopyFolder(profile.Folder(), Folder());
    }
    StartProgram();
    LogInWith(QString());
    AwaitInbox();
    ASSERT_TRUE(AwaitScript(QStringLiteral("vorn.count() > 0")));
    FocusPage();
    Settings(program_->GetContext()).Bag()->Let(QStringLiteral("WebOutside"), false);
    Settings(program_->GetContext()).Bag()->Let(QStringLiteral("ScriptsAsked"), false);
  }
  static void StoreReceived(Context& context, const SerialId& serialId, const QByteArray& source,
                            const QString& time) {
    Disk request(serialId);
    request.Let(QStringLiteral("process"), static_cast<int>(kStatusReceived));
    request.Let(QStringLiteral("Flag"), QStringLiteral("001"));
    if (!time.isEmpty()) request.Let(QStringLiteral("Timestamp"), time);
    EXPECT_TRUE(MailStore(context).StoreMessage(request, source));
  }
  // A message comes while the program runs; its text is one line.
  void Come(const QByteArray& serialId, const QByteArray& subject, const QString& time = {}) const {
    StoreReceived(program_->GetContext(), SerialId(QString::fromLatin1(serialId)),
                  "From: a@example.jp\r\nSubject: " + subject + "\r\n\r\nbody\r\n", time);
    program_->Parent()->Pages().Messages().MessageStored();
  }
  // Does something upon which the page is made anew, and waits for that.
  void MadeAnewBy(const std::function<void()>& change) const {
    QSignalSpy loaded(Browser(), &BrowserWindow::Loaded);
    change();
    EXPECT_TRUE(WaitFor([&loaded] { return loaded.count() > 0; }));
  }
  // What the page was told has been done, and what it says of it has been heard, twice, since one
  // may lead to the other.
  static void SettleIn(const BrowserWindow& browser) {
    for (int i = 0; i < 2; ++i) {
      auto* view = browser.findChild<QWebEngineView*>(QStringLiteral("wbUrl"));
      if (view != nullptr) ScriptIn(*view, QStringLiteral("0"));
      test::RunPosted();
    }
  }
  bool AwaitScript(const QString& condition) const {
    return WaitFor([&] { return Script(condition).toBool(); });
  }
  void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(View()->focusProxy(), key, modifiers);
  }
  static SerialIds Ids(std::initializer_list<int> numbers) {
    SerialIds ids;
    for (const int number : numbers) {
      ids.append(SerialId(QStringLiteral("mail_%1").arg(number)));
    }
    return ids;
  }
  bool AwaitGone(const char* subject) const {
    // Of a page that is coming some rows may be there.
    return AwaitScript(QStringLiteral("document.readyState === 'complete' && "
                                      "document.body.innerText && "
                                      "!document.body.innerText.includes('%1')")
                           .arg(QString::fromUtf8(subject)));
  }
  QTreeWidgetItem* Node(const SerialId& serialId) const {
    QTreeWidgetItemIterator item(&test::Child<QTreeWidget>(*program_->Parent(), u"tvConsole"));
    for (; *item != nullptr; ++item) {
      if (SerialIdOf((*item)->data(0, Qt::UserRole)) == serialId) return *item;
    }
    return nullptr;
  }
  void OpenFolder(const SerialId& serialId) {
    auto& tree = test::Child<QTreeWidget>(*program_->Parent(), u"tvConsole");
    Browser()->Unload();
    ASSERT_TRUE(WaitFor([this] { return Browser() == nullptr; }));
    test::ClickRow(tree, Node(serialId));
    ASSERT_TRUE(WaitFor([this] { return Browser() != nullptr && !PageText().isEmpty(); }));
  }
  void Drop(const SerialId& message, const SerialId& folder) {
    auto& tree = test::Child<QTreeWidget>(*program_->Parent(), u"tvConsole");
    QMimeData dragged;
    dragged.setUrls({QUrl(QStringLiteral("preview:") + message.Text())});
    const QPoint at = test::PlaceOf(tree, Node(folder));
    const auto actions = Qt::CopyAction | Qt::MoveAction;
    QDragEnterEvent enter(at, actions, &dragged, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(tree.viewport(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    const auto* light = tree.findChild<QRubberBand*>();
    EXPECT_TRUE(light->isVisible() && light->geometry() == tree.visualItemRect(Node(folder)));
    QDropEvent drop(at, actions, &dragged, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(tree.viewport(), &drop);
    EXPECT_FALSE(light->isVisible());
    Chosen();  // the page's answers come in the order of the questions
  }
  std::vector<BrowserWindow*> Browsers() const {
    const auto all = program_->Parent()->findChildren<BrowserWindow*>();
    return {all.begin(), all.end()};
  }
};

}  // namespace vorn
