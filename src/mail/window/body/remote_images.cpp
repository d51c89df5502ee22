#include "mail/window/body/remote_images.h"

#include <QBuffer>
#include <QUrl>
#include <QWebEngineUrlRequestJob>

#include "mail/codec/html/picture_head.h"
#include "transfer/net/http_fetcher.h"
#include "transfer/net/public_address.h"

namespace vorn {
namespace {

constexpr int kMostImages = 1000;  // of a page

}  // namespace

bool (*RemoteImageLoader::MayReach)(const QHostAddress&) = IsPublicAddress;

RemoteImageLoader::RemoteImageLoader(QObject* parent) : QObject(parent) {}

RemoteImageLoader::~RemoteImageLoader() = default;

void RemoteImageLoader::BeginPage() {
  waiting_.clear();
  fetcher_.reset();
  images_ = 0;
  leftOut_ = {};
}

void RemoteImageLoader::Load(QWebEngineUrlRequestJob* job) {
  const QUrl url(QUrl::fromPercentEncoding(job->requestUrl().query(QUrl::FullyEncoded).toLatin1()));
  if (++images_ > kMostImages) LeaveOut(&ImagesLeftOut::tooMany);
  if (images_ > kMostImages || (url.scheme() != u"http" && url.scheme() != u"https")) {
    job->fail(QWebEngineUrlRequestJob::UrlInvalid);
    return;
  }
  if (fetcher_ == nullptr) {
    FetchLimits limits;
    limits.mayReach = MayReach;
    fetcher_ = std::make_unique<HttpFetcher>(limits);
    connect(fetcher_.get(), &HttpFetcher::Fetched, this, &RemoteImageLoader::Answer);
  }
  const int number = fetcher_->Fetch(url);
  waiting_.insert(number, job);
  connect(job, &QObject::destroyed, fetcher_.get(),
          [fetcher = fetcher_.get(), number] { fetcher->Cancel(number); });
}

void RemoteImageLoader::LeaveOut(int ImagesLeftOut::*reason) {
  ++(leftOut_.*reason);
  Q_EMIT LeftOut(leftOut_);
}

void RemoteImageLoader::Answer(int number, const QByteArray& image, FetchEnd end) {
  const QPointer<QWebEngineUrlRequestJob> job = waiting_.take(number);
  if (job == nullptr) return;
  const std::optional<PictureHead> head = ReadPictureHead(image);
  const bool isTooLarge = end == FetchEnd::TooLarge || (head && head->pixels > kMostPicturePixels);
  if (isTooLarge) LeaveOut(&ImagesLeftOut::tooLarge);
  if (end == FetchEnd::Forbidden) LeaveOut(&ImagesLeftOut::nearby);
  if (!head || isTooLarge) {
    job->fail(QWebEngineUrlRequestJob::RequestFailed);
    return;
  }
  auto* bytes = new QBuffer(job);
  bytes->setData(image);
  bytes->open(QIODevice::ReadOnly);
  job->reply(head->type, bytes);
}

}  // namespace vorn
