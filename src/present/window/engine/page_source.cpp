#include "present/window/engine/page_source.h"

#include <QBuffer>
#include <QUuid>
#include <QWebEngineUrlRequestJob>

#include "kit/window/memory_scheme.h"

namespace vorn {

void PageSource::RegisterScheme() {
  RegisterMemoryScheme(kScheme);
}

QString PageSource::Keep(const QByteArray& page) {
  const QString address = QLatin1String(kScheme) + QStringLiteral("://folder/") +
                          QUuid::createUuid().toString(QUuid::Id128);
  pages_.insert(address, page);
  return address;
}

// The page says itself in which code it is, or is in the one that its profile takes for granted.
void PageSource::requestStarted(QWebEngineUrlRequestJob* job) {
  const auto page = pages_.constFind(job->requestUrl().toString());
  if (page == pages_.constEnd()) {
    job->fail(QWebEngineUrlRequestJob::UrlNotFound);
    return;
  }
  auto* bytes = new QBuffer(job);
  bytes->setData(*page);
  bytes->open(QIODevice::ReadOnly);
  job->reply("text/html", bytes);
}

}  // namespace vorn
