#include "present/window/page/page_reading.h"

#include <QFile>
#include <QVariant>

#include "present/page_change.h"
#include "present/page_request.h"
#include "present/window/engine/engine_view.h"
#include "present/window/engine/link_page.h"
#include "present/window/engine/page_source.h"

namespace vorn {
namespace {

constexpr int kCheckRowsMs = 1000;
constexpr int kAskAgainMs = 2000;
constexpr int kMostAttempts = 3;

}  // namespace

PageReading::PageReading(EngineView& engine, PageSource& source, PageRequest& request,
                         PageChange& change)
    : engine_(engine), source_(source), request_(request), change_(change) {
  checkRows_.setSingleShot(true);
  connect(&checkRows_, &QTimer::timeout, this, &PageReading::CheckRows);
}

void PageReading::Keep(const QByteArray& page) {
  request_.SetUrl(page.isEmpty() ? QString() : source_.Keep(page));
}

QUrl PageReading::Url() const {
  const QString place = request_.Url();
  return place.startsWith(QLatin1String(PageSource::kScheme)) ? QUrl(place)
                                                              : QUrl::fromLocalFile(place);
}

bool PageReading::IsKept() const {
  const QUrl url = Url();
  return url.isLocalFile() ? QFile::exists(url.toLocalFile()) : source_.Has(url.toString());
}

QByteArray PageReading::Page() const {
  return source_.Page(request_.Url());
}

void PageReading::Drop() {
  if (!request_.IsLocal() || !request_.HasUrl()) return;
  const QUrl url = Url();
  url.isLocalFile() ? static_cast<void>(QFile::remove(url.toLocalFile()))
                    : source_.Forget(url.toString());
}

void PageReading::Begin() {
  checkRows_.start(kCheckRowsMs);
}

// Of two loadings in a row the engine may tell one end alone, and an answer that the page was asked
// for in between is lost with the former page: without its rows the keys would stay dead.
void PageReading::CheckRows() {
  if (!request_.IsLocal() || engine_.Page() == nullptr || change_.IsTold()) return;
  if (engine_.Page()->isLoading()) {
    Begin();
  } else {
    change_.EndLoading();
  }
}

// Tells which page the document is, and whether it is the one that should be shown.
void PageReading::AskForDocument(const std::function<void(bool isShown)>& then) {
  engine_.Ask(QStringLiteral("location.href"),
              [this, then](const QVariant& address) { then(QUrl(address.toString()) == Url()); });
}

// The end of a loading may be that of the page before this one, whose end must not take away this
// one.
void PageReading::End() {
  AskForDocument([this](bool isShown) {
    if (isShown) {
      attempts_ = 0;
      Drop();
      Q_EMIT WasRead();
    } else {
      QTimer::singleShot(kAskAgainMs, this, &PageReading::LookAgain);
    }
  });
}

bool PageReading::IsWaiting() const {
  return request_.IsLocal() && engine_.Page() != nullptr && !engine_.Page()->isLoading() &&
         IsKept();
}

// Usually the page is only under way; one that the engine gave up would never be seen.
void PageReading::LookAgain() {
  if (!IsWaiting()) return;
  AskForDocument([this](bool isShown) {
    if (!isShown && IsWaiting() && attempts_++ < kMostAttempts) Q_EMIT AnewWanted();
  });
}

}  // namespace vorn
