// Folders in tabs with the reading pane, as a new profile has them: from a click in the tree to the
// painted page, from a key on the page to the painted message, and the memory of ten tabs.
//
//   tabs-bench DATA-FOLDER            needs a display or QT_QPA_PLATFORM=offscreen
//   tabs-bench --memory DATA-FOLDER   one start of the program, for the bench itself
//
// DATA-FOLDER is one that present-bench has filled; some HTML messages are added to it.
// Prints one JSON line per figure, medians of several rounds.

#include <QApplication>
#include <QDir>
#include <QMdiArea>
#include <QProcess>
#include <QTest>
#include <QWebEngineView>
#include <map>

#include "frame/profile_login.h"
#include "frame/start_up.h"
#include "frame/window/parent_window.h"
#include "frame/window/program.h"
#include "mail/store/mail_store.h"
#include "mail/window/reading/reading_pane.h"
#include "objects/object_types.h"
#include "present/window/browser_window.h"
#include "window_support.h"

namespace {

using namespace vorn;
using namespace vorn::bench;

constexpr int kRounds = 15;
constexpr int kMemoryRounds = 3;
constexpr int kTabs = 10;
// What is painted later than this after all has been loaded was not awaited by anybody.
constexpr int kRestMs = 150;
constexpr int kQuietMs = 3000;

SerialId AddedFolder(int number) {
  return SerialId(QStringLiteral("bench_folder_%1").arg(number));
}

// For this run alone.
void AddFolders(Context& context) {
  for (int i = 4; i < kTabs; ++i) {
    const auto folder = std::make_shared<Disk>(AddedFolder(i));
    folder->Let(QStringLiteral("FormName"), QString(object_type::kFolder));
    folder->Let(QStringLiteral("Object"), QStringLiteral("検索 %1").arg(i));
    folder->Let(QStringLiteral("SqlUse"), true);
    folder->Let(QStringLiteral("Sql"),
                QStringLiteral("mail.FIELD_SUBJECT LIKE '*%1777*'").arg(i % 9 + 1));
    context.Objects.Add(folder);
  }
}

// The newest ones of the inbox.
void AddHtmlMessages(Context& context) {
  MailStore store(context);
  for (int i = 0; i <= kRounds; ++i) {
    Disk request(context.Data.NewSerialID(QStringLiteral("mail_")));
    request.Let(QStringLiteral("process"), static_cast<int>(kStatusReceived));
    request.Let(QStringLiteral("Flag"), QStringLiteral("000"));
    const QByteArray source =
        "From: n@example.jp\r\nTo: y@example.org\r\nSubject: HTML " + QByteArray::number(i) +
        "\r\nContent-Type: text/html; charset=utf-8\r\n\r\n<h1>News</h1>" +
        QByteArray("<p>A paragraph of <b>text</b> with a <a href='https://example.jp/'>link</a>.")
            .repeated(20) +
        "\r\n";
    Require(store.StoreMessage(request, source));
  }
}

void Rest(int milliseconds) {
  QElapsedTimer rest;
  rest.start();
  Require(WaitFor([&] { return rest.elapsed() > milliseconds; }), QString());
}

// Follows the pages of all browser windows that come.
class Pages : public QObject {
 public:
  explicit Pages(ParentWindow& parent) : parent_(parent) {}
  // Waits for a page that is loaded after `act`.
  void LoadedAfter(const std::function<void()>& act, const std::function<void()>& loaded = {}) {
    const int before = loads_;
    then_ = loaded;
    act();
    Require(WaitFor([&] {
              Follow();
              return loads_ > before;
            }),
            QStringLiteral("no page"));
    then_ = {};
  }

 private:
  void Follow() {
    for (auto* browser : parent_.findChildren<BrowserWindow*>()) {
      if (followed_.contains(browser)) continue;
      followed_.insert(browser);
      connect(browser, &QObject::destroyed, this, [this, browser] { followed_.remove(browser); });
      connect(browser, &BrowserWindow::Loaded, this, [this] {
        ++loads_;
        if (then_) then_();
      });
    }
  }

  ParentWindow& parent_;
  QSet<QObject*> followed_;
  std::function<void()> then_;
  int loads_ = 0;
};

void MeasureClicks(ParentWindow& parent, Pages& pages) {
  auto* tree = parent.findChild<QTreeWidget*>(QStringLiteral("tvConsole"));
  for (auto* browser : parent.findChildren<BrowserWindow*>()) browser->Unload();
  Require(WaitFor([&] { return parent.findChild<BrowserWindow*>() == nullptr; }),
          QStringLiteral("the window stays"));
  std::map<SerialId, std::vector<double>> times;
  for (int round = 0; round <= kRounds; ++round) {
    for (const SerialId& folder : {fixed_serial::kDust, fixed_serial::kInbox}) {
      PaintWatch paint(QStringLiteral("wbUrl"));
      double loaded = 0;
      paint.Start();
      pages.LoadedAfter([&] { Click(*tree, Node(*tree, folder)); }, [&] { loaded = paint.Now(); });
      Rest(kRestMs);
      // The first round makes the tab.
      if (round > 0) times[folder].push_back(std::max(loaded, paint.Last()));
    }
  }
  Report(QStringLiteral("click to the painted inbox in the tab that is there"),
         times[fixed_serial::kInbox]);
  Report(QStringLiteral("click to the painted dust bin in the tab that is there"),
         times[fixed_serial::kDust]);
}

// From a key on the page to the message in the pane, and from the row that is painted as the
// current one; an HTML message is painted by the engine.
void MeasurePane(const QString& figure, ParentWindow& parent, const QString& painter) {
  auto* pane = parent.findChild<ReadingPane*>();
  auto* view = parent.findChild<QWebEngineView*>(QStringLiteral("wbUrl"));
  Require(pane != nullptr && pane->isVisible(), QStringLiteral("no pane"));
  std::vector<double> fromKey;
  std::vector<double> fromSelection;
  for (int round = 0; round < kRounds; ++round) {
    const SerialId before = pane->ShownMessage();
    PaintWatch selection(QStringLiteral("wbUrl"));
    PaintWatch paint(painter);
    selection.Start();
    paint.Start();
    QTest::keyClick(view->focusProxy(), Qt::Key_Up);
    Require(WaitFor([&] { return pane->ShownMessage() != before; }), QStringLiteral("no message"));
    Require(WaitFor([&] { return paint.Last() > 0; }), QStringLiteral("nothing is painted"));
    Rest(kRestMs);
    Require(selection.First() > 0, QStringLiteral("no row is painted as the current one"));
    fromKey.push_back(paint.Last());
    fromSelection.push_back(paint.Last() - selection.First());
  }
  Report(QStringLiteral("key to the painted ") + figure, fromKey);
  Report(QStringLiteral("selection to the painted ") + figure, fromSelection);
}

// The proportional memory of this process and all that it has begun, in kilobytes.
qint64 MemoryOfAll() {
  std::map<qint64, qint64> parents;
  for (const QString& name : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
    QFile file(QStringLiteral("/proc/") + name + QStringLiteral("/stat"));
    if (name.toLongLong() == 0 || !file.open(QIODevice::ReadOnly)) continue;
    const QByteArray stat = file.readAll();
    parents[name.toLongLong()] =
        stat.mid(stat.lastIndexOf(')') + 2).split(' ').value(1).toLongLong();
  }
  qint64 sum = 0;
  for (auto [process, parent] : parents) {
    qint64 ancestor = process;
    while (ancestor > 1 && ancestor != QCoreApplication::applicationPid()) {
      ancestor = parents[ancestor];
    }
    QFile file(QStringLiteral("/proc/%1/smaps_rollup").arg(process));
    if (ancestor <= 1 || !file.open(QIODevice::ReadOnly)) continue;
    for (const QByteArray& line : file.readAll().split('\n')) {
      if (line.startsWith("Pss:")) sum += line.simplified().split(' ').value(1).toLongLong();
    }
  }
  return sum;
}

// Each tab in turn is the one that was used longest ago.
void MeasureReturns(ParentWindow& parent, Pages& pages) {
  auto* area = parent.findChild<QMdiArea*>();
  std::vector<double> times;
  for (int round = 0; round < kRounds; ++round) {
    PaintWatch paint(QStringLiteral("wbUrl"));
    double loaded = 0;
    paint.Start();
    pages.LoadedAfter([&] { area->activateNextSubWindow(); }, [&] { loaded = paint.Now(); });
    Rest(kRestMs);
    times.push_back(std::max(loaded, paint.Last()));
  }
  Report(QStringLiteral("back to a tab that rests, painted"), times);
}

int MeasureMemory(ParentWindow& parent, Pages& pages) {
  auto* tree = parent.findChild<QTreeWidget*>(QStringLiteral("tvConsole"));
  Rest(kQuietMs);
  const qint64 one = MemoryOfAll();
  SerialIds others = {fixed_serial::kOutbox, fixed_serial::kEditWait, fixed_serial::kDust};
  for (int i = 4; i < kTabs; ++i) others.append(AddedFolder(i));
  for (const SerialId& folder : others) {
    pages.LoadedAfter([&] {
      QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::ControlModifier,
                        tree->visualItemRect(Node(*tree, folder)).center());
    });
  }
  Require(parent.findChildren<BrowserWindow*>().size() == kTabs, QStringLiteral("not ten tabs"));
  Rest(kQuietMs);
  const qint64 ten = MemoryOfAll();
  MeasureReturns(parent, pages);
  std::printf(
      "{\"figure\": \"memory\", \"one_tab_mb\": %lld, \"ten_tabs_mb\": %lld, "
      "\"ratio\": %.2f}\n",
      static_cast<long long>(one / 1024), static_cast<long long>(ten / 1024),
      static_cast<double>(ten) / static_cast<double>(one));
  return 0;
}

void StartForMemory(const QString& folder) {
  for (int round = 0; round < kMemoryRounds; ++round) {
    QProcess start;
    start.setProcessChannelMode(QProcess::ForwardedChannels);
    start.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--memory"), folder});
    Require(start.waitForFinished(120000) && start.exitCode() == 0, QStringLiteral("no start"));
  }
}

}  // namespace

int main(int argc, char** argv) {
  Program::PrepareEngine();
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  const QStringList arguments = QApplication::arguments();
  const bool isMemory = arguments.value(1) == u"--memory";
  const QString folder = arguments.value(isMemory ? 2 : 1);
  Require(!folder.isEmpty(), QStringLiteral("usage: tabs-bench DATA-FOLDER"));
  {
    Context context;
    Require(StartUp(context, folder + u'/'));
    Require(!context.Objects.IsEmpty(), QStringLiteral("present-bench has to fill it first"));
    Require(LogIn(context, {}, {}));
    isMemory ? AddFolders(context) : AddHtmlMessages(context);
    {
      ParentWindow parent(context);
      parent.LoadDefaultProperty();
      parent.resize(1200, 800);
      Pages pages(parent);
      pages.LoadedAfter([&] { parent.show(); });
      if (isMemory) return MeasureMemory(parent, pages);
      MeasureClicks(parent, pages);
      QTest::keyClick(parent.findChild<QWebEngineView*>(QStringLiteral("wbUrl"))->focusProxy(),
                      Qt::Key_End);
      Rest(kQuietMs / 2);
      MeasurePane(QStringLiteral("HTML message"), parent, QStringLiteral("wbPaneHtml"));
      MeasurePane(QStringLiteral("text message"), parent, QStringLiteral("frReadingPane"));
    }
    context.Data.CloseAll();
  }
  StartForMemory(folder);
  return 0;
}
