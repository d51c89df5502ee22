// How long a large HTML mail takes to be loaded: written anew and from memory, as the program shows
// it, beside the engine that gets it as it came, from a file, with everything but the page blocked.
//
//   html-bench            needs a display or QT_QPA_PLATFORM=offscreen
//
// Prints one JSON line per figure, medians of several rounds, taken in turn.

#include <QEventLoop>
#include <QFile>
#include <QTemporaryDir>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInterceptor>
#include <QWebEngineView>

#include "mail/codec/html/html_text.h"
#include "mail/window/body/html_view.h"
#include "window_support.h"

namespace {

using namespace vorn;
using namespace vorn::bench;

constexpr int kRounds = 9;
constexpr qsizetype kBytes = 2'000'000;

class Blocker : public QWebEngineUrlRequestInterceptor {
 public:
  void interceptRequest(QWebEngineUrlRequestInfo& info) override {
    using Info = QWebEngineUrlRequestInfo;
    if (info.resourceType() != Info::ResourceTypeMainFrame) info.block(true);
  }
};

QByteArray Mail(const QByteArray& picture) {
  QByteArray html = "<html><head><style>td {color: red}</style></head><body><table>";
  while (html.size() < kBytes) {
    html +=
        "<tr><td style=\"padding:4px;font-size:12px\" bgcolor=\"#ffffff\"><a "
        "href=\"https://example.jp/?a=1&amp;b=2\">" +
        picture + "</a><b>明日の会議</b>は10時からです。</td></tr>\r\n";
  }
  return html;
}

// How long it takes from `begin` until `source` says that the page is loaded, in milliseconds.
template <class Source, class Signal>
double Load(Source* source, Signal loaded, const std::function<void()>& begin) {
  QEventLoop loop;
  const auto connection = QObject::connect(source, loaded, &loop, [&loop] { loop.quit(); });
  QElapsedTimer clock;
  clock.start();
  begin();
  loop.exec();
  QObject::disconnect(connection);
  return Milliseconds(clock);
}

}  // namespace

int main(int argc, char** argv) {
  HtmlView::RegisterScheme();
  const QApplication application(argc, argv);
  const QTemporaryDir folder;
  HtmlView ours(QStringLiteral("wbHtml"));
  QWebEngineProfile profile;
  Blocker blocker;
  profile.setUrlRequestInterceptor(&blocker);
  QWebEngineView peer;
  auto* page = new QWebEnginePage(&profile, &peer);
  page->settings()->setAttribute(QWebEngineSettings::JavascriptEnabled, false);
  peer.setPage(page);
  for (QWidget* widget : {static_cast<QWidget*>(&ours), static_cast<QWidget*>(&peer)}) {
    widget->resize(800, 600);
    widget->show();
  }
  const auto show = [&ours](const QByteArray& html) {
    return Load(&ours, &HtmlView::Loaded, [&] { ours.Show(QString::fromUtf8(html)); });
  };
  const auto load = [&](const QByteArray& html) {
    QFile file(folder.filePath(QStringLiteral("mail.html")));
    Require(file.open(QIODevice::WriteOnly) && file.write("\xEF\xBB\xBF" + html) > 0,
            QStringLiteral("cannot write the page"));
    file.close();
    return Load(&peer, &QWebEngineView::loadFinished,
                [&] { peer.load(QUrl::fromLocalFile(file.fileName())); });
  };
  for (const bool pictures : {false, true}) {
    const QByteArray html = Mail(pictures ? "<img src=\"https://example.jp/x.png\">" : "資料");
    const QString kind = pictures ? QStringLiteral("with pictures of the network")
                                  : QStringLiteral("without pictures");
    std::vector<double> own;
    std::vector<double> others;
    std::vector<double> text;
    for (int round = 0; round < kRounds; ++round) {
      show("<p>");
      load("<p>");
      own.push_back(show(html));
      others.push_back(load(html));
      QElapsedTimer clock;
      clock.start();
      Require(!HtmlToText(QString::fromUtf8(html)).isEmpty(), QStringLiteral("no text"));
      text.push_back(Milliseconds(clock));
    }
    Report(QStringLiteral("HTML of 2 MB shown, ") + kind, own);
    Report(QStringLiteral("as it came, from a file, ") + kind, others);
    Report(QStringLiteral("its text, ") + kind, text);
  }
  std::_Exit(0);  // the engine's processes need no farewell
}
