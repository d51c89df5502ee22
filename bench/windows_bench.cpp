// What a user waits for in the windows: from the click on a page's link to the painted message
// window, and how long the windows stand still while a message is opened.
//
//   windows-bench            needs a display or QT_QPA_PLATFORM=offscreen
//
// Prints one JSON line per figure, medians of several rounds.

#include <QApplication>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

#include "bench_support.h"
#include "frame/profile_login.h"
#include "frame/start_up.h"
#include "frame/window/parent_window.h"
#include "mail/store/mail_store.h"
#include "mail/window/body/html_view.h"
#include "mail/window/message_window.h"
#include "present/window/browser_window.h"

namespace {

using namespace vorn;
using namespace vorn::bench;

constexpr int kRounds = 15;

MessageWindow* Shown() {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    auto* window = qobject_cast<MessageWindow*>(widget);
    if (window != nullptr && window->isVisible()) return window;
  }
  return nullptr;
}

// Tells when a window has been painted for the first time.
class PaintWatch : public QObject {
 public:
  bool painted = false;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint && qobject_cast<MessageWindow*>(watched) != nullptr) {
      painted = true;
    }
    return false;
  }
};

SerialId Store(Context& context, const QByteArray& source) {
  Disk request(context.Data.NewSerialID(QStringLiteral("mail_")));
  request.Let(QStringLiteral("process"), 4);
  request.Let(QStringLiteral("Flag"), QStringLiteral("001"));
  return *MailStore(context).StoreMessage(request, source);
}

QByteArray WithAttachment(qsizetype bytes) {
  QByteArray source =
      "From: a@example.jp\r\nTo: b@example.jp\r\nSubject: figures\r\nContent-Type: "
      "multipart/mixed; "
      "boundary=b\r\n\r\n--b\r\n\r\ntext\r\n--b\r\nContent-Type: application/pdf; name=a.pdf\r\n"
      "Content-Transfer-Encoding: base64\r\n\r\n";
  const QByteArray line = QByteArray(54, 'x').toBase64() + "\r\n";
  while (source.size() < bytes) source += line;
  return source + "--b--\r\n";
}

void Report(const char* figure, std::vector<double>& opened, std::vector<double>& blocks) {
  std::sort(opened.begin(), opened.end());
  std::sort(blocks.begin(), blocks.end());
  const QJsonObject object{{QStringLiteral("figure"), QString::fromUtf8(figure)},
                           {QStringLiteral("painted_ms"), opened[opened.size() / 2]},
                           {QStringLiteral("painted_max_ms"), opened.back()},
                           {QStringLiteral("longest_block_ms"), blocks[blocks.size() / 2]}};
  std::printf("%s\n", QJsonDocument(object).toJson(QJsonDocument::Compact).constData());
  std::fflush(stdout);
}

// What the browser window asks for when a link is clicked, until the window stands painted.
void Measure(const char* figure, ParentWindow& parent, const SerialId& serialId,
             PaintWatch& paint) {
  std::vector<double> opened;
  std::vector<double> blocks;
  for (int round = 0; round < kRounds; ++round) {
    QTimer turns;
    turns.setTimerType(Qt::PreciseTimer);
    QElapsedTimer sinceTurn;
    qint64 longest = 0;
    QObject::connect(&turns, &QTimer::timeout, &turns, [&] {
      longest = std::max(longest, sinceTurn.nsecsElapsed());
      sinceTurn.start();
    });
    paint.painted = false;
    QElapsedTimer clock;
    sinceTurn.start();
    turns.start(1);
    clock.start();
    parent.Requests().ShowMessage(MailRequest::Of(serialId));
    Require(WaitFor([&paint] { return paint.painted; }), QStringLiteral("no window"));
    opened.push_back(static_cast<double>(clock.nsecsElapsed()) / 1e6);
    blocks.push_back(static_cast<double>(longest) / 1e6);
    turns.stop();
    Shown()->close();
    Require(WaitFor([] { return Shown() == nullptr; }), QStringLiteral("the window stays"));
  }
  Report(figure, opened, blocks);
}

}  // namespace

int main(int argc, char** argv) {
  HtmlView::RegisterScheme();
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  const QTemporaryDir folder;
  Context context;
  Require(StartUp(context, folder.path() + u'/'));
  Require(CreateFirstProfile(context));
  Require(LogIn(context, {}, {}));
  const SerialId usual = Store(context, WithAttachment(20000));
  const SerialId large = Store(context, WithAttachment(20 * 1024 * 1024));
  PaintWatch paint;
  application.installEventFilter(&paint);
  auto* parent = new ParentWindow(context);
  parent->LoadDefaultProperty();
  parent->show();
  bool loaded = false;
  Require(WaitFor([&] {
            auto* browser = parent->findChild<BrowserWindow*>();
            if (browser != nullptr && !loaded) {
              QObject::connect(browser, &BrowserWindow::Loaded, parent,
                               [&loaded] { loaded = true; });
            }
            return loaded;
          }),
          QStringLiteral("no page"));
  Measure("usual message", *parent, usual, paint);
  Measure("20 MB message", *parent, large, paint);
  delete parent;
  context.Data.CloseAll();
  return 0;
}
