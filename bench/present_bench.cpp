// Folder pages at scale: how long one takes to be made, how long a user waits for it after a click
// in the tree, and how long the program takes to start.
//
//   present-bench DATA-FOLDER [MESSAGES]   needs a display or QT_QPA_PLATFORM=offscreen
//   present-bench --texts DATA-FOLDER      a search that reads the text of every message
//   present-bench --start DATA-FOLDER      one start of the program, for the bench itself
//
// An empty DATA-FOLDER is filled first (default 1,000,000 messages over twenty years); a filled one
// is used as it is. Prints one JSON line per figure, medians of several rounds.

#include <QApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QPushButton>
#include <QTreeWidget>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <optional>
#include <vector>

#include "bench_support.h"
#include "frame/profile_login.h"
#include "frame/start_up.h"
#include "frame/window/parent_window.h"
#include "frame/window/program.h"
#include "mail/search/text_search.h"
#include "mail/search/unread_count.h"
#include "mail/store/mail_store.h"
#include "objects/object_types.h"
#include "objects/save_object.h"
#include "objects/settings.h"
#include "present/message_list_page.h"
#include "present/window/browser_window.h"
#include "present/window/folder/text_wait.h"
#include "storage/condition_run.h"
#include "storage/databases.h"
#include "window_support.h"

namespace {

using namespace vorn;
using namespace vorn::bench;

constexpr int kRounds = 11;
constexpr int kRowsPerPage = 100;
constexpr qint64 kSecondsOfTwentyYears = 20LL * 365 * 24 * 3600;

void Measure(const QString& figure, const std::function<void()>& work) {
  std::vector<double> times;
  for (int i = 0; i < kRounds; ++i) {
    QElapsedTimer clock;
    clock.start();
    work();
    times.push_back(Milliseconds(clock));
  }
  Report(figure, times);
}

// One message in a hundred is unread; every thousandth is filed into a folder of its own.
void Fill(Context& context, int messages) {
  MailStore store(context);
  const QDateTime first = QDateTime::currentDateTime().addSecs(-kSecondsOfTwentyYears);
  const QByteArray body(400, 'x');
  context.Data.Group().Gather(MailDatabasePath(context));
  for (int i = 0; i < messages; ++i) {
    Disk request(context.Data.NewSerialID(QStringLiteral("mail_")));
    request.Let(QStringLiteral("process"), static_cast<int>(kStatusReceived));
    request.Let(QStringLiteral("Flag"),
                i % 100 == 0 ? QStringLiteral("001") : QStringLiteral("000"));
    request.Let(QStringLiteral("Timestamp"), first.addSecs(kSecondsOfTwentyYears * i / messages)
                                                 .toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")));
    const QByteArray source = "From: =?UTF-8?B?5L2Q6Jek?= <sato" + QByteArray::number(i % 200) +
                              "@example.jp>\r\nTo: y@example.org\r\nSubject: "
                              "=?UTF-8?B?5Lya6K2w44Gu44GU5qGI5YaF?= " +
                              QByteArray::number(i) + "\r\n\r\n" + body + "\r\n";
    Require(store.StoreMessage(request, source));
    if (i % 256 == 255) Require(context.Data.Group().Flush());
  }
  Require(context.Data.Group().End());
}

int CountMessages(Context& context) {
  Require(OpenDatabase(context, DatabaseKind::Mail));
  Require(
      context.Data.OpenRecordset(QStringLiteral("SELECT COUNT(*) AS N FROM mail WHERE STATUS = 4"),
                                 CursorKind::ForwardOnly),
      context.Data.LastError().text);
  const int count = context.Data.Recordset()->Fields(u"N").toInt();
  context.Data.Close();
  return count;
}

void MakePage(MessageListPages& pages, int number) {
  const auto page = pages.CreateMessageListPage(fixed_serial::kInbox, number);
  Require(page);
  QFile::remove(page->content);
}

void MeasurePages(Context& context, int messages) {
  const int last = (messages + kRowsPerPage - 1) / kRowsPerPage;
  MessageListPages pages(context);
  Measure(QStringLiteral("first page"), [&] { MakePage(pages, 1); });
  Measure(QStringLiteral("middle page"), [&] { MakePage(pages, last / 2); });
  Measure(QStringLiteral("last page"), [&] { MakePage(pages, last); });
  Measure(QStringLiteral("counting the pages anew"), [&] {
    Require(MessageListPages(context).CountPages(fixed_serial::kInbox) == last,
            QStringLiteral("wrong count"));
  });
  Measure(QStringLiteral("counting the unopened"), [&] {
    Require(CountUnread(context, fixed_serial::kInbox).ValueOr(0) > 0,
            QStringLiteral("none unopened"));
  });
  const auto found = std::make_shared<Disk>(QStringLiteral("_found"));
  found->Let(QStringLiteral("SqlUse"), true);
  found->Let(QStringLiteral("Sql"), QStringLiteral("mail.FIELD_SUBJECT LIKE '*777*'"));
  context.Objects.Add(found);
  Measure(QStringLiteral("counting the unopened of a condition"), [&] {
    Require(static_cast<bool>(CountUnread(context, found->Serial())),
            context.Data.LastError().text);
  });
  std::vector<double> slices;
  double sum = 0;
  for (bool isMore = true; isMore; sum += slices.back()) {
    QElapsedTimer clock;
    clock.start();
    isMore = pages.Explore(fixed_serial::kInbox);
    slices.push_back(Milliseconds(clock));
  }
  Report(QStringLiteral("exploring, each slice"), slices);
  Report(QStringLiteral("exploring, all"), {sum});
  Measure(QStringLiteral("middle page, explored"), [&] { MakePage(pages, last / 2); });
  Measure(QStringLiteral("last page, explored"), [&] { MakePage(pages, last); });
}

// All texts of the inbox for a word that none has, and the first page of as many hits as are shown.
void MeasureTexts(Context& context) {
  MessageListPages pages(context);
  const TextSearch search(context, QStringLiteral("何もない"));
  const auto seeks = [&search](Connection& connection, const QString& value) {
    return search.Finds(connection, SerialId(value));
  };
  const auto all = [](Connection&, const QString&) { return true; };
  const auto ask = [&](const ConditionSieve& sieve) {
    std::optional<ConditionRun::Answer> answer;
    const ConditionRunPtr run(new ConditionRun(
        context, pages.ScopeQuestion(fixed_serial::kInbox, {}), 120000,
        [&answer](const auto& given) { answer = given; }, sieve));
    while (!answer) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    Require(answer->values);
    return *answer->values;
  };
  QElapsedTimer clock;
  clock.start();
  FolderSearch found(QStringLiteral("x"));
  found.hits.emplace();
  for (const QVariant& hit : ask({all, TextWait::Most})) found.hits->append(SerialIdOf(hit));
  Report(QStringLiteral("finding out which messages there are"), {Milliseconds(clock)});
  clock.start();
  Require(ask({seeks, TextWait::Most}).isEmpty(), QStringLiteral("found"));
  Report(QStringLiteral("searching the texts"), {Milliseconds(clock)});
  Measure(QStringLiteral("first page of the hits"),
          [&] { Require(pages.FolderPage(fixed_serial::kInbox, 1, found)); });
  Measure(QStringLiteral("counting the hits anew"), [&] {
    Require(MessageListPages(context).CountFound(fixed_serial::kInbox, found) == TextWait::Most,
            QStringLiteral("wrong count"));
  });
}

// From the click on a folder in the tree until its page stands painted in a new window.
void MeasureClick(const QString& figure, ParentWindow& parent, const SerialId& folder) {
  auto* tree = parent.findChild<QTreeWidget*>(QStringLiteral("tvConsole"));
  std::vector<double> times;
  for (int round = 0; round < kRounds; ++round) {
    for (auto* browser : parent.findChildren<BrowserWindow*>()) browser->Unload();
    Require(WaitFor([&] { return parent.findChild<BrowserWindow*>() == nullptr; }),
            QStringLiteral("the window stays"));
    PaintWatch paint(QStringLiteral("wbUrl"));
    paint.Start();
    Click(*tree, Node(*tree, folder));
    BrowserWindow* seen = nullptr;
    double loaded = 0;
    Require(WaitFor([&] {
              auto* browser = parent.findChild<BrowserWindow*>();
              if (browser != nullptr && seen == nullptr) {
                seen = browser;
                QObject::connect(browser, &BrowserWindow::Loaded, &paint,
                                 [&] { loaded = paint.Now(); });
              }
              return loaded > 0;
            }),
            QStringLiteral("no page"));
    // The picture follows the end of loading by a frame or two.
    QElapsedTimer rest;
    rest.start();
    Require(WaitFor([&] { return rest.elapsed() > 150; }), QString());
    times.push_back(std::max(loaded, paint.Last()));
  }
  Report(figure, times);
}

// One start of the program in this process, until its inbox is on the screen. With the splash, its
// ticks pass idly; without it, the same steps follow each other.
int StartOnce(const QString& folder, bool withSplash) {
  QElapsedTimer clock;
  clock.start();
  std::unique_ptr<Program> program;
  Context context;
  ParentWindow* parent = nullptr;
  if (withSplash) {
    program = std::make_unique<Program>(folder);
    Require(program->Start(), QStringLiteral("no start"));
    for (QWidget* login : QApplication::topLevelWidgets()) {
      auto* ok = login->findChild<QPushButton*>(QStringLiteral("cmOk"));
      if (ok != nullptr) ok->click();
    }
    Require(WaitFor([&] { return (parent = program->Parent()) != nullptr; }),
            QStringLiteral("no main window"));
  } else {
    Require(StartUp(context, folder));
    Require(LogIn(context, {}, {}));
    parent = new ParentWindow(context);
    parent->LoadDefaultProperty();
    parent->show();
  }
  const double window = Milliseconds(clock);
  double loaded = 0;
  BrowserWindow* seen = nullptr;
  Require(WaitFor([&] {
            auto* browser = parent->findChild<BrowserWindow*>();
            if (browser != nullptr && seen == nullptr) {
              seen = browser;
              QObject::connect(browser, &BrowserWindow::Loaded, browser,
                               [&] { loaded = Milliseconds(clock); });
            }
            return loaded > 0;
          }),
          QStringLiteral("no page"));
  std::printf("%f %f %lld\n", window, loaded,
              static_cast<long long>(MemoryKilobytes("VmRSS:") / 1024));
  if (!withSplash) {
    delete parent;
    context.Data.CloseAll();
  }
  return 0;
}

void MeasureStart(const QString& name, const QString& option, const QString& folder) {
  std::vector<double> windows;
  std::vector<double> pages;
  qint64 megabytes = 0;
  for (int round = 0; round < kRounds; ++round) {
    QProcess start;
    start.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    start.start(QCoreApplication::applicationFilePath(), {option, folder});
    Require(start.waitForFinished(60000) && start.exitCode() == 0, QStringLiteral("no start"));
    const QList<QByteArray> figures = start.readAllStandardOutput().trimmed().split(' ');
    windows.push_back(figures[0].toDouble());
    pages.push_back(figures[1].toDouble());
    megabytes = figures[2].toLongLong();
  }
  Report(name + QStringLiteral(", main window"), windows);
  Report(name + QStringLiteral(", inbox on the screen"), pages);
  std::printf("{\"figure\": \"%s, memory\", \"megabytes\": %lld}\n", qPrintable(name),
              static_cast<long long>(megabytes));
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  const QStringList arguments = QApplication::arguments();
  Require(arguments.size() >= 2, QStringLiteral("usage: present-bench DATA-FOLDER [MESSAGES]"));
  if (arguments[1].startsWith(u"--start")) {
    return StartOnce(arguments.value(2) + u'/', arguments[1] == u"--start-with-splash");
  }
  const bool isOfTexts = arguments[1] == u"--texts";
  const QString folder = arguments[isOfTexts ? 2 : 1] + u'/';
  Context context;
  Require(StartUp(context, folder));
  const bool isNew = context.Objects.IsEmpty();
  if (isNew) Require(CreateFirstProfile(context));
  Require(LogIn(context, {}, {}));
  if (isOfTexts) {
    MeasureTexts(context);
    context.Data.CloseAll();
    return 0;
  }
  // As a new profile has it, whatever version made the folder.
  const DiskPtr settings = Settings(context).Bag();
  settings->Let(QStringLiteral("MessagesNewest"), true);
  Require(SaveObject(context, DatabaseKind::Profile, *settings));
  if (isNew) Fill(context, arguments.value(2, QStringLiteral("1000000")).toInt());
  MeasurePages(context, CountMessages(context));
  {
    ParentWindow parent(context);
    parent.LoadDefaultProperty();
    parent.resize(1200, 800);
    parent.show();
    MeasureClick(QStringLiteral("click to the painted inbox"), parent, fixed_serial::kInbox);
    MeasureClick(QStringLiteral("click to the painted dust bin"), parent, fixed_serial::kDust);
  }
  context.Data.CloseAll();
  MeasureStart(QStringLiteral("start"), QStringLiteral("--start"), arguments[1]);
  MeasureStart(QStringLiteral("start with splash"), QStringLiteral("--start-with-splash"),
               arguments[1]);
  return 0;
}
