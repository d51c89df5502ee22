#include "mail/window/remote_images.h"

#include <QBuffer>
#include <QNetworkCookieJar>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QPointer>
#include <QUrl>
#include <QWebEngineUrlRequestJob>

namespace vorn {
namespace {

constexpr qint64 kMostBytes = 32 << 20;
constexpr int kMostRedirects = 5;
constexpr int kTimeoutMs = 30000;

class SystemProxies : public QNetworkProxyFactory {
  QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& query) override {
    return systemProxyForQuery(query);
  }
};

// By what it begins with, whatever its server calls it; empty for anything else.
QByteArray ImageType(const QByteArray& bytes) {
  if (bytes.startsWith("\x89PNG\r\n\x1A\n")) return "image/png";
  if (bytes.startsWith("GIF8")) return "image/gif";
  if (bytes.startsWith("\xFF\xD8\xFF")) return "image/jpeg";
  if (bytes.startsWith("RIFF") && bytes.mid(8, 4) == "WEBP") return "image/webp";
  if (bytes.startsWith("BM")) return "image/bmp";
  return {};
}

QNetworkRequest RequestFor(const QUrl& url) {
  QNetworkRequest request(url);
  request.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("Mozilla/5.0"));
  request.setRawHeader("Accept", "image/*");
  request.setRawHeader("Accept-Language", "*");
  request.setRawHeader("Accept-Encoding", "identity");
  for (const QNetworkRequest::Attribute attribute :
       {QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::CookieSaveControlAttribute,
        QNetworkRequest::AuthenticationReuseAttribute}) {
    request.setAttribute(attribute, QNetworkRequest::Manual);
  }
  request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
  request.setMaximumRedirectsAllowed(kMostRedirects);
  request.setTransferTimeout(kTimeoutMs);
  return request;
}

}  // namespace

RemoteImageLoader::RemoteImageLoader(QObject* parent) : QObject(parent) {
  network_.setProxyFactory(new SystemProxies);
}

void RemoteImageLoader::Load(QWebEngineUrlRequestJob* job) {
  const QUrl url(QUrl::fromPercentEncoding(job->requestUrl().query(QUrl::FullyEncoded).toLatin1()));
  if (url.scheme() != u"http" && url.scheme() != u"https") {
    job->fail(QWebEngineUrlRequestJob::UrlInvalid);
    return;
  }
  QNetworkReply* reply = network_.get(RequestFor(url));
  reply->setParent(job);  // a page that goes wants no more of it
  connect(reply, &QNetworkReply::downloadProgress, reply, [reply](qint64 received, qint64 total) {
    if (qMax(received, total) > kMostBytes) reply->abort();
  });
  connect(reply, &QNetworkReply::finished, job, [this, reply, job] { Answer(reply, job); });
}

void RemoteImageLoader::Answer(QNetworkReply* reply, QWebEngineUrlRequestJob* job) {
  auto* bytes = new QBuffer(job);
  if (reply->error() == QNetworkReply::NoError) bytes->setData(reply->readAll());
  const QByteArray type = ImageType(bytes->data());
  if (type.isEmpty()) {
    job->fail(QWebEngineUrlRequestJob::RequestFailed);
    return;
  }
  bytes->open(QIODevice::ReadOnly);
  job->reply(type, bytes);
}

}  // namespace vorn
