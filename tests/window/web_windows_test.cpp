// Windows of web pages: links with a target, addresses that are typed or change by themselves, and
// what a page may not do.

#include <QWebEngineScript>
#include <QWebEngineSettings>

#include "mail/window/message_window.h"
#include "present/window/web_navigation.h"
#include "window/folder_page_fixture.h"

namespace vorn {
namespace {

using test::Child;

TEST_F(FolderPageTest, WebLinksWithATargetShareTheWindowOfThatName) {
  Begin(1, 100);
  WebSite other;
  WebSite site("<body style='margin:0'><a style='display:block;height:200px' href='" + other.Url() +
               "/news' target='news'>news</a></body>");
  const auto open = [&](const char* path) {
    const size_t before = Browsers().size();
    program_->Parent()->Requests().OpenWebPage(QString::fromLatin1(site.Url() + path));
    EXPECT_TRUE(WaitFor([&] { return Browsers().size() == before + 1; }));
    BrowserWindow* window = Browsers().back();
    auto& view = Child<QWebEngineView>(*window, u"wbUrl");
    EXPECT_TRUE(WaitFor([&view] { return view.url().isValid() && !view.page()->isLoading(); }));
    return &view;
  };
  const auto click = [](QWebEngineView* view) {
    AwaitPainted(*view);
    QTest::mouseClick(view->focusProxy(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 20));
  };
  QWebEngineView* first = open("/one");
  click(first);
  ASSERT_TRUE(WaitFor([&] { return Browsers().size() == 3 && other.asked.size() == 1; }));
  BrowserWindow* news = Browsers().back();
  EXPECT_TRUE(WaitFor([news] { return news->isVisible(); }));
  EXPECT_EQ(news->Web().WindowName(), QStringLiteral("news"));
  EXPECT_EQ(other.asked[0], "/news");
  // Another window's link with the same target goes there; the window made for it goes.
  QWebEngineView* second = open("/two");
  click(second);
  ASSERT_TRUE(WaitFor([&] { return other.asked.size() == 2; }));
  ASSERT_TRUE(WaitFor([&] { return Browsers().size() == 4; }));
  EXPECT_EQ(news->Web().WindowName(), QStringLiteral("news"));

  BrowserWindow* window = Browsers()[1];
  test::Press(Child<QWidget>(*window, u"url"));
  ASSERT_TRUE(WaitFor([] { return QApplication::activePopupWidget() != nullptr; }));
  auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(menu, nullptr);
  ASSERT_EQ(menu->actions().size(), 1);
  EXPECT_EQ(menu->actions()[0]->text(), QStringLiteral("news"));
  menu->close();

  // An address is typed, and the history goes back.
  auto& address = Child<QLineEdit>(*window, u"txLocation");
  auto* back = window->findChild<QAction*>(QStringLiteral("before"));
  EXPECT_FALSE(back->isEnabled());
  window->setFocus();
  test::Type(address, QString::fromLatin1(other.Url() + "/typed"));
  QTest::keyClick(&address, Qt::Key_Return);
  ASSERT_TRUE(WaitFor([&] { return other.asked.contains("/typed") && back->isEnabled(); }));
  back->trigger();
  ASSERT_TRUE(WaitFor([&] { return first->url().path() == u"/one"; }));
  EXPECT_TRUE(WaitFor([&] { return !back->isEnabled(); }));
  EXPECT_TRUE(window->findChild<QAction*>(QStringLiteral("next"))->isEnabled());
}

// Pages of today change their address and title without being loaded, and some open windows.
TEST_F(FolderPageTest, AWebPageIsFollowedAndOpensNoWindowByItself) {
  Begin(1, 100);
  WebSite site(
      "<title>first</title><script>window.open('/popup'); "
      "setTimeout(() => {location = 'replay:mail_1'}, 50); setTimeout(() => {history.pushState({}, "
      "'', '/inside'); document.title = 'second'; window.open('/later'); fetch('/end')}, 300)"
      "</script>");
  const size_t before = Browsers().size();
  program_->Parent()->Requests().OpenWebPage(QString::fromLatin1(site.Url() + "/start"));
  ASSERT_TRUE(WaitFor([&] { return Browsers().size() == before + 1; }));
  BrowserWindow* window = Browsers().back();
  EXPECT_TRUE(WaitFor([window] {
    return window->windowTitle() == u"second" &&
           Child<QLineEdit>(*window, u"txLocation").text().endsWith(u"/inside");
  }));
  EXPECT_TRUE(window->findChild<QAction*>(QStringLiteral("before"))->isEnabled());
  EXPECT_TRUE(WaitFor([&site] { return site.asked.contains("/end"); }));
  EXPECT_EQ(Browsers().size(), before + 1);
  EXPECT_FALSE(site.asked.contains("/popup") || site.asked.contains("/later"));
  // A page gives no commands; one that it gave would have opened its window before this one.
  program_->Parent()->Requests().WriteMessage(QStringLiteral("mailto:a@example.jp"));
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
  EXPECT_TRUE(TopLevel<MessageWindow>()->windowTitle().startsWith(QStringLiteral("新しい")));
}

// A setting of new profiles. What runs is told by what the pages ask for.
TEST_F(FolderPageTest, ScriptsRunOnSitesThatTheUserAllows) {
  Begin(1, 100);
  WebSite site("<script>fetch('/ran')</script>");
  WebSite other("<script>fetch('/ran')</script>");
  WebSite plain("<p onclick='x()'>plain</p>");
  const DiskPtr settings = Settings(program_->GetContext()).Bag();
  const auto open = [&](const WebSite& web) -> BrowserWindow& {
    const size_t before = Browsers().size();
    program_->Parent()->Requests().OpenWebPage(QString::fromLatin1(web.Url() + "/page"));
    EXPECT_TRUE(WaitFor([&] { return Browsers().size() == before + 1; }));
    BrowserWindow* window = Browsers().back();
    auto& view = Child<QWebEngineView>(*window, u"wbUrl");
    EXPECT_TRUE(WaitFor([&view] { return view.url().isValid() && !view.page()->isLoading(); }));
    return *window;
  };
  const auto bar = [](const BrowserWindow& window) -> QWidget& {
    return Child<QWidget>(window, u"frScripts");
  };
  settings->Let(QStringLiteral("ScriptsAsked"), true);
  BrowserWindow& window = open(site);
  EXPECT_TRUE(WaitFor([&] { return bar(window).isVisible(); }));
  EXPECT_FALSE(site.asked.contains("/ran"));
  test::Press(Child<QWidget>(window, u"cmAllowScripts"));
  EXPECT_TRUE(WaitFor([&] { return site.asked.contains("/ran"); }));
  EXPECT_FALSE(bar(window).isVisible());
  // The same window at another site, and back at the first.
  auto& address = Child<QLineEdit>(window, u"txLocation");
  const auto go = [&](const WebSite& web) {
    test::Type(address, QString::fromLatin1(web.Url() + "/again"));
    QTest::keyClick(&address, Qt::Key_Return);
    EXPECT_TRUE(WaitFor([&web] { return web.asked.contains("/again"); }));
  };
  go(other);
  EXPECT_TRUE(WaitFor([&] { return bar(window).isVisible(); }));
  EXPECT_FALSE(other.asked.contains("/ran"));
  site.asked.clear();
  go(site);
  EXPECT_TRUE(WaitFor([&] { return site.asked.contains("/ran"); }));
  EXPECT_FALSE(bar(window).isVisible());
  // A page whose scripts are stopped does not get them by asking an allowed site for a file.
  go(other);
  EXPECT_TRUE(WaitFor([&] { return bar(window).isVisible(); }));
  auto& page = *Child<QWebEngineView>(window, u"wbUrl").page();
  site.SendAsFile();
  site.asked.clear();
  page.runJavaScript(QStringLiteral("location.href = '%1/file'").arg(QLatin1String(site.Url())),
                     QWebEngineScript::ApplicationWorld);
  EXPECT_TRUE(WaitFor([&] { return site.asked.contains("/file") && !page.isLoading(); }));
  EXPECT_EQ(page.url(), QUrl(QString::fromLatin1(other.Url() + "/again")));
  EXPECT_FALSE(page.settings()->testAttribute(QWebEngineSettings::JavascriptEnabled));
  // Where no script is missing nothing is said; the page has answered by now.
  BrowserWindow& calm = open(plain);
  ScriptIn(Child<QWebEngineView>(calm, u"wbUrl"), QStringLiteral("1"));
  EXPECT_FALSE(bar(calm).isVisible());
  settings->Let(QStringLiteral("ScriptsAsked"), false);
  open(other);
  EXPECT_TRUE(WaitFor([&] { return other.asked.contains("/ran"); }));
}

// Allowing scripts sends no form a second time: it may be an order.
TEST_F(FolderPageTest, AllowingScriptsSendsNoFormAgain) {
  Begin(1, 100);
  Settings(program_->GetContext()).Bag()->Let(QStringLiteral("ScriptsAsked"), true);
  WebSite site(
      "<body style='margin:0'><script>fetch('/ran')</script><form method=post action='/order'>"
      "<input type=submit style='width:300px;height:200px'></form>");
  program_->Parent()->Requests().OpenWebPage(QString::fromLatin1(site.Url()));
  ASSERT_TRUE(WaitFor([&] { return Browsers().size() == 2; }));
  BrowserWindow& window = *Browsers().back();
  auto& view = Child<QWebEngineView>(window, u"wbUrl");
  auto& bar = Child<QWidget>(window, u"frScripts");
  EXPECT_TRUE(WaitFor([&bar] { return bar.isVisible(); }));
  AwaitPainted(view);
  ClickPage(view, QPoint(20, 100));
  ASSERT_TRUE(WaitFor([&] { return site.asked.contains("/order"); }));
  EXPECT_TRUE(WaitFor([&] { return view.url().path() == u"/order" && bar.isVisible(); }));
  test::Press(Child<QWidget>(window, u"cmAllowScripts"));
  ScriptIn(view, QStringLiteral("1"));
  EXPECT_TRUE(WaitFor([&] { return !view.page()->isLoading(); }));
  // The next page runs them.
  auto& address = Child<QLineEdit>(window, u"txLocation");
  test::Type(address, QString::fromLatin1(site.Url() + "/next"));
  QTest::keyClick(&address, Qt::Key_Return);
  EXPECT_TRUE(WaitFor([&] { return site.asked.contains("/ran"); }));
  EXPECT_EQ(site.asked.count("/order"), 1);
}

// Two clicks on a link that wants a window of its own are one window.
TEST_F(FolderPageTest, AWebPageOpensOneWindowAtATime) {
  Begin(1, 100);
  WebSite other;
  WebSite site("<body style='margin:0'><a style='display:block;height:200px' href='" + other.Url() +
               "/new' target='_blank'>new</a></body>");
  program_->Parent()->Requests().OpenWebPage(QString::fromLatin1(site.Url()));
  ASSERT_TRUE(WaitFor([&] { return Browsers().size() == 2; }));
  auto& view = Child<QWebEngineView>(*Browsers().back(), u"wbUrl");
  EXPECT_TRUE(WaitFor([&view] { return view.url().isValid() && !view.page()->isLoading(); }));
  AwaitPainted(view);
  for (int click = 0; click < 2; ++click) {
    QTest::mouseClick(view.focusProxy(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 20));
  }
  EXPECT_TRUE(WaitFor([&] { return other.asked.contains("/new"); }));
  ScriptIn(view, QStringLiteral("1"));
  EXPECT_EQ(Browsers().size(), 3);
}

// What is being typed into a message answers no box of a page.
TEST_F(FolderPageTest, APagesBoxesComeUpOnlyWhereTheUserIs) {
  Begin(1, 100);
  WebSite site;
  program_->Parent()->Requests().OpenWebPage(QString::fromLatin1(site.Url()));
  ASSERT_TRUE(WaitFor([&] { return Browsers().size() == 2; }));
  auto& view = Child<QWebEngineView>(*Browsers().back(), u"wbUrl");
  EXPECT_TRUE(WaitFor([&view] { return view.url().isValid() && !view.page()->isLoading(); }));
  const auto ask = [&view] {
    view.page()->runJavaScript(QStringLiteral("setTimeout(() => fetch('/' + confirm('win')))"));
  };
  program_->Parent()->Requests().WriteMessage(QStringLiteral("mailto:a@example.jp"));
  ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; }));
  MessageWindow* written = TopLevel<MessageWindow>();
  written->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(written));
  ask();
  EXPECT_TRUE(WaitFor([&] {
    return site.asked.contains("/false") || QApplication::activeModalWidget() != nullptr;
  }));
  ASSERT_EQ(QApplication::activeModalWidget(), nullptr);
  test::AnswerBox([written] { written->close(); }, QMessageBox::No);
  program_->Parent()->activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(program_->Parent()));
  view.setFocus();
  EXPECT_TRUE(test::AnswerBox(ask, QMessageBox::Ok).contains(u"win"));
  EXPECT_TRUE(WaitFor([&] { return site.asked.contains("/true"); }));
}

// A link to an address is a message to be written, also where it asks for a window of its own.
TEST_F(FolderPageTest, AnAddressOnAWebPageBecomesAMessage) {
  Begin(1, 100);
  WebSite site(
      "<body style='margin:0'><a style='display:block;height:100px' "
      "href='mailto:one@example.jp?subject=s'>same</a><a style='display:block;height:100px' "
      "href='mailto:two@example.jp' target='_blank'>new</a></body>");
  program_->Parent()->Requests().OpenWebPage(QString::fromLatin1(site.Url()));
  ASSERT_TRUE(WaitFor([&] { return Browsers().size() == 2; }));
  auto& view = Child<QWebEngineView>(*Browsers().back(), u"wbUrl");
  EXPECT_TRUE(WaitFor([&view] { return view.url().isValid() && !view.page()->isLoading(); }));
  for (const auto& [y, address] : {std::pair{50, "one@example.jp"}, {150, "two@example.jp"}}) {
    AwaitPainted(view);
    ClickPage(view, QPoint(20, y));
    ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() != nullptr; })) << address;
    MessageWindow* written = TopLevel<MessageWindow>();
    EXPECT_EQ(Child<QTableWidget>(*written, u"lvMailaddress").item(0, 1)->text(),
              QLatin1String(address));
    test::AnswerBox([written] { written->close(); }, QMessageBox::No);
    ASSERT_TRUE(WaitFor([] { return TopLevel<MessageWindow>() == nullptr; }));
    EXPECT_TRUE(WaitFor([this] { return Browsers().size() == 2; })) << "no empty window stays";
  }
}

}  // namespace
}  // namespace vorn
