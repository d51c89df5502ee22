#pragma once

#include <gtest/gtest.h>

#include <QWebEngineScript>
#include <QWebEngineView>
#include <functional>
#include <memory>

#include "frame/window/login_window.h"
#include "frame/window/parent_window.h"
#include "frame/window/program.h"
#include "objects/save_object.h"
#include "objects/settings.h"
#include "present/folder_layout.h"
#include "present/window/browser_window.h"
#include "present/window/folder/shown_folder.h"
#include "support/engine_answer.h"
#include "support/loopback_pop3_server.h"
#include "support/window_driving.h"

namespace vorn {

using test::AnswerTo;
using test::InModal;
using test::LoopbackPop3Server;
using test::NextMessageBox;
using test::TestProfile;
using test::TopLevel;
using test::WaitFor;

/// The whole program on a data folder of the test's own: real windows, real clicks and keys, the
/// real browser engine and a POP3 server on loopback.
// The folder page as it is without settings: with all its links at any width, which open messages.
inline void TakePlainLook(Context& context) {
  EXPECT_TRUE(ShareLayout(context, QString(), OwnLayouts::Kept));
  const DiskPtr settings = Settings(context).Bag();
  settings->Let(QStringLiteral("ReadingPane"), 0);
  EXPECT_TRUE(SaveObject(context, DatabaseKind::Profile, *settings));
}

class ProgramTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(server_.Listen()); }
  void TearDown() override { EndProgram(); }

  // A data folder with a profile, an account and the first messages received by hand.
  void Prepare(const QString& password, int rowsPerPage = 100) {
    TestProfile profile(password);
    profile.AddAccount(server_.Port());
    const DiskPtr settings = Settings(profile.Get()).Bag();
    settings->Let(QStringLiteral("Messages"), rowsPerPage);
    settings->Let(QStringLiteral("MessagesNewest"), false);
    EXPECT_TRUE(SaveObject(profile.Get(), DatabaseKind::Profile, *settings));
    TakePlainLook(profile.Get());
    profile.Get().Data.CloseAll();
    CopyFolder(profile.Folder(), Folder());
  }
  // The same with an account that sends as well.
  void PrepareSending(int pop3Port, int smtpPort,
                      const QString& address = QStringLiteral("y@example.org")) {
    TestProfile profile;
    const DiskPtr account = profile.AddAccount(pop3Port);
    account->Let(QStringLiteral("Default"), true);
    account->Let(QStringLiteral("Mailaddress"), address);
    account->Let(QStringLiteral("OutMailServer"), QStringLiteral("127.0.0.1"));
    account->Let(QStringLiteral("OutMailServerPort"), QString::number(smtpPort));
    EXPECT_TRUE(SaveObject(profile.Get(), DatabaseKind::Profile, *account));
    TakePlainLook(profile.Get());
    profile.Get().Data.CloseAll();
    CopyFolder(profile.Folder(), Folder());
  }
  static void CopyFolder(const QString& from, const QString& to) {
    QDir().mkpath(to);
    for (const QFileInfo& entry :
         QDir(from).entryInfoList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot)) {
      const QString target = to + u'/' + entry.fileName();
      if (entry.isDir()) {
        CopyFolder(entry.filePath(), target);
      } else {
        QFile::copy(entry.filePath(), target);
      }
    }
  }
  void StartProgram() {
    program_ = std::make_unique<Program>(Folder());
    ASSERT_TRUE(program_->Start());
  }
  void LogInWith(const QString& password) {
    auto* login = TopLevel<LoginWindow>();
    ASSERT_NE(login, nullptr);
    QTest::keyClicks(login->findChild<QLineEdit*>(QStringLiteral("txPassword")), password);
    QTest::keyClick(login, Qt::Key_Return);
  }
  void AwaitInbox() {
    ASSERT_TRUE(WaitFor([this] { return Browser() != nullptr && !PageText().isEmpty(); }));
  }
  void EndProgram() {
    if (program_ == nullptr) return;
    // What a slow machine has not yet sent is asked about, and is not waited for.
    QTimer answer;
    QObject::connect(&answer, &QTimer::timeout, &answer, [] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box == nullptr) return;
      const bool maySend = box->button(QMessageBox::Cancel) != nullptr;
      QAbstractButton* button = box->button(maySend ? QMessageBox::No : QMessageBox::Yes);
      if (button != nullptr) button->click();
    });
    answer.start(kAnswerMs);
    if (ParentWindow* parent = program_->Parent()) parent->close();
    WaitFor([this] { return program_->Parent() == nullptr; });
    program_.reset();
    test::RunPosted();
  }

  QString Folder() const { return folder_.path() + QStringLiteral("/data/"); }
  BrowserWindow* Browser() const {
    ParentWindow* parent = program_->Parent();
    return parent == nullptr ? nullptr
                             : parent->findChild<QMdiArea*>()->findChild<BrowserWindow*>();
  }
  QWebEngineView* View() const {
    return Browser()->findChild<QWebEngineView*>(QStringLiteral("wbUrl"));
  }
  QString PageText() const {
    return AnswerTo<QString>([this](const auto& then) { View()->page()->toPlainText(then); });
  }
  // The shortcut of "send and receive"; a window system activates the main window by itself.
  void PressReceive() {
    program_->Parent()->activateWindow();
    WaitFor([this] { return program_->Parent()->isActiveWindow(); });
    QTest::keyClick(program_->Parent(), Qt::Key_M, Qt::ControlModifier);
  }
  void Receive() {
    PressReceive();
    const int before = program_->Parent()->Traffic().Events().Counts().stored;
    EXPECT_TRUE(WaitFor([this, before] {
      return program_->Parent()->Traffic().Events().Counts().stored > before &&
             !program_->Parent()->Traffic().Control().Busy();
    }));
  }
  void AddMessages(int count) {
    for (int i = 1; i <= count; ++i) {
      server_.AddMessage("u" + QByteArray::number(i),
                         "From: =?UTF-8?B?5L2Q6Jek?= <sato@example.jp>\r\nTo: y@example.org\r\n"
                         "Message-ID: <1@example.jp>\r\n"
                         "Subject: =?UTF-8?B?5Lya6K2w?= " +
                             QByteArray::number(i) +
                             "\r\nContent-Type: text/plain; charset=utf-8\r\n\r\n本文" +
                             QByteArray::number(i) + "\r\n");
    }
  }
  // Gives the page the focus once it knows its messages, so that keys act on them.
  void FocusPage(bool hasRows = true) {
    program_->Parent()->activateWindow();
    EXPECT_TRUE(WaitFor([this, hasRows] {
      return program_->Parent()->isActiveWindow() &&
             Browser()->findChild<QAction*>(QStringLiteral("cmd_open"))->isEnabled() &&
             (!hasRows || Script(QStringLiteral("window.vorn && vorn.count() > 0")).toBool());
    }));
    View()->setFocus();
    Chosen();
  }
  // The chosen messages. The window is asked, which keeps questions and keys in their order while
  // the page is made anew.
  SerialIds Chosen() const {
    return AnswerTo<SerialIds>(
        [this](const auto& then) { Browser()->Folder().ChosenMessages(then); });
  }
  // What a script answers that runs in a page's world of the program.
  static QVariant ScriptIn(QWebEngineView& view, const QString& script) {
    return AnswerTo<QVariant>([&](const auto& then) {
      view.page()->runJavaScript(script, QWebEngineScript::ApplicationWorld, then);
    });
  }
  QVariant Script(const QString& script) const { return ScriptIn(*View(), script); }
  // Waits until a page is loaded, laid out and painted. Before that it does not know what is
  // clicked.
  static void AwaitPainted(QWebEngineView& view) {
    const QString script =
        QStringLiteral(
            "(() => { const all = window.painted = window.painted || {};"
            "  if (!(%1 in all)) {"
            "    all[%1] = 0;"
            "    const begun = () => { if (++all[%1] < 4) requestAnimationFrame(begun); };"
            "    requestAnimationFrame(begun);"
            "  }"
            "  return all[%1] >= 4; })()")
            .arg(QRandomGenerator::global()->generate());
    EXPECT_TRUE(
        WaitFor([&] { return !view.page()->isLoading() && ScriptIn(view, script).toBool(); }));
  }
  // Clicks the first link that a selector finds.
  void ClickLink(const QString& selector) const { ClickLink(*View(), selector); }
  static void ClickLink(QWebEngineView& view, const QString& selector) {
    AwaitPainted(view);
    const QVariantList at =
        ScriptIn(view, QStringLiteral("(() => { const e = document.querySelector('%1');"
                                      "  e.scrollIntoView();"
                                      "  const r = e.getClientRects()[0];"
                                      "  return [r.x + r.width / 2, r.y + r.height / 2]; })()")
                           .arg(selector))
            .toList();
    ASSERT_EQ(at.size(), 2);
    AwaitPainted(view);
    ClickPage(view, QPoint(at[0].toInt(), at[1].toInt()));
  }
  // Clicks at a point of the page as a user does.
  void ClickPage(const QPoint& at) const { ClickPage(*View(), at); }
  static void ClickPage(const QWebEngineView& view, const QPoint& at) {
    QWidget* target = view.focusProxy();
    QTest::mouseMove(target, at);
    QTest::mouseClick(target, Qt::LeftButton, Qt::NoModifier, at);
  }
  // Qt's own double click comes too slowly for the engine.
  void DoubleClickPage(const QPoint& at) const {
    QWidget* target = View()->focusProxy();
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease,
                            QEvent::MouseButtonDblClick, QEvent::MouseButtonRelease}) {
      const bool isUp = type == QEvent::MouseButtonRelease;
      QMouseEvent event(type, at, target->mapToGlobal(at), Qt::LeftButton,
                        isUp ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
      QApplication::sendEvent(target, &event);
    }
  }

  static constexpr int kAnswerMs = 100;

  QTemporaryDir folder_;
  LoopbackPop3Server server_;
  std::unique_ptr<Program> program_;
};

}  // namespace vorn
