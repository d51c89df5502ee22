#include "transfer/net/http_fetcher.h"

#include <curl/curl.h>

#include <QHostAddress>
#include <QNetworkProxyFactory>
#include <QStringList>
#include <algorithm>
#include <atomic>
#include <map>
#include <utility>
#include <vector>

namespace vorn {
namespace {

constexpr qint64 kMostHeaderBytes = 64 << 10;
constexpr long kMostRedirects = 5;
constexpr int kWaitMs = 60000;

struct EasyEnd {
  void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
};

void StartLibrary() {
  static const CURLcode started = curl_global_init(CURL_GLOBAL_DEFAULT);
  Q_UNUSED(started)
}

// As the library writes it, or empty for a direct connection.
QByteArray ProxyFor(const QUrl& url) {
  for (const QNetworkProxy& proxy :
       QNetworkProxyFactory::systemProxyForQuery(QNetworkProxyQuery(url))) {
    const QString place = proxy.hostName() + u':' + QString::number(proxy.port());
    if (proxy.type() == QNetworkProxy::HttpProxy) return "http://" + place.toUtf8();
    if (proxy.type() == QNetworkProxy::Socks5Proxy) return "socks5h://" + place.toUtf8();
    if (proxy.type() == QNetworkProxy::NoProxy) return {};
  }
  return {};
}

struct UrlEnd {
  void operator()(CURLU* url) const { curl_url_cleanup(url); }
};

// The host that the library goes to for an address, which may be relative to `base`; empty when it
// goes nowhere. Another reader of addresses could take them for something else.
QString HostOf(const char* address, const char* base = nullptr) {
  const std::unique_ptr<CURLU, UrlEnd> url(curl_url());
  const auto take = [&url](const char* text) {
    return curl_url_set(url.get(), CURLUPART_URL, text, CURLU_URLENCODE) == CURLUE_OK;
  };
  if ((base != nullptr && !take(base)) || !take(address)) return {};
  char* host = nullptr;
  if (curl_url_get(url.get(), CURLUPART_HOST, &host, CURLU_URLDECODE) != CURLUE_OK) return {};
  QUrl whole;  // writes names of other scripts and their dots as they are looked up
  whole.setHost(QString::fromUtf8(host));
  curl_free(host);
  return whole.host(QUrl::FullyEncoded);
}

// Of this machine and its network by RFC 6761, 6762 (also its appendix G) and 8375.
bool IsNearName(const QString& host) {
  static const QStringList kNear{QStringLiteral(".localhost"), QStringLiteral(".local"),
                                 QStringLiteral(".home.arpa"), QStringLiteral(".internal"),
                                 QStringLiteral(".lan"),       QStringLiteral(".localdomain"),
                                 QStringLiteral(".intranet"),  QStringLiteral(".private"),
                                 QStringLiteral(".corp"),      QStringLiteral(".home")};
  return !host.contains(u'.') ||
         std::any_of(kNear.begin(), kNear.end(),
                     [&host](const QString& end) { return host.endsWith(end); });
}

}  // namespace

// The thread's side. Only what stands above `multi_` is reached from both.
class HttpFetcher::Work {
 public:
  Work(HttpFetcher& owner, FetchLimits limits)
      : limits_(limits),
        owner_(owner),
        multi_(curl_multi_init()),
        left_(limits.allBytes),
        headers_(curl_slist_append(nullptr, (QByteArray("Accept: ") + limits.accept).constData())) {
    curl_multi_setopt(multi_, CURLMOPT_MAX_TOTAL_CONNECTIONS, static_cast<long>(limits.atOnce));
    curl_multi_setopt(multi_, CURLMOPT_MAX_HOST_CONNECTIONS, static_cast<long>(limits.atOnce));
  }
  Q_DISABLE_COPY_MOVE(Work)
  ~Work() {
    for (const auto& [number, fetch] : fetches_)
      curl_multi_remove_handle(multi_, fetch->easy.get());
    fetches_.clear();
    curl_multi_cleanup(multi_);
    curl_slist_free_all(headers_);
  }

  void Ask(int number, const QUrl& url) {
    Tell([&] { wanted_.emplace_back(number, url); });
  }
  void Forget(int number) {
    Tell([&] { cancelled_.push_back(number); });
  }
  void End() {
    Tell([&] { ended_ = true; });
  }

  void Run() {
    while (TakeOrders()) {
      int running = 0;
      curl_multi_perform(multi_, &running);
      TellFinished();
      curl_multi_poll(multi_, nullptr, 0, kWaitMs, nullptr);
    }
  }

 private:
  struct Fetch {
    Work* work = nullptr;
    std::unique_ptr<CURL, EasyEnd> easy;
    bool byProxy = false;
    QByteArray body;
    qint64 headerBytes = 0;
    FetchEnd end = FetchEnd::Failed;  // unless it ends well
  };

  template <typename Order>
  void Tell(Order order) {
    {
      const QMutexLocker lock(&mutex_);
      order();
    }
    curl_multi_wakeup(multi_);
  }

  bool TakeOrders() {
    std::vector<std::pair<int, QUrl>> wanted;
    std::vector<int> cancelled;
    {
      const QMutexLocker lock(&mutex_);
      if (ended_) return false;
      wanted.swap(wanted_);
      cancelled.swap(cancelled_);
    }
    for (const auto& [number, url] : wanted) Begin(number, url);
    for (const int number : cancelled) Drop(number);
    return true;
  }

  void Begin(int number, const QUrl& url) {
    const QByteArray proxy = ProxyFor(url);
    const QString host = HostOf(url.toEncoded(QUrl::RemoveUserInfo).constData());
    if (!MayName(host)) {
      Q_EMIT owner_.Fetched(number, {}, host.isEmpty() ? FetchEnd::Failed : FetchEnd::Forbidden);
      return;
    }
    auto fetch = std::make_unique<Fetch>();
    fetch->work = this;
    fetch->byProxy = !proxy.isEmpty();
    fetch->easy.reset(curl_easy_init());
    SetOptions(fetch->easy.get(), url);
    curl_easy_setopt(fetch->easy.get(), CURLOPT_PROXY, proxy.constData());
    SetCallbacks(*fetch);
    curl_easy_setopt(fetch->easy.get(), CURLOPT_PRIVATE, reinterpret_cast<char*>(qintptr{number}));
    curl_multi_add_handle(multi_, fetch->easy.get());
    fetches_.emplace(number, std::move(fetch));
  }

  void SetOptions(CURL* easy, const QUrl& url) {
    const bool isSafe = url.scheme() == u"https";
    curl_easy_setopt(easy, CURLOPT_URL, url.toEncoded(QUrl::RemoveUserInfo).constData());
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(easy, CURLOPT_REDIR_PROTOCOLS_STR, isSafe ? "https" : "http,https");
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(easy, CURLOPT_DISALLOW_USERNAME_IN_URL, 1L);
    curl_easy_setopt(easy, CURLOPT_MAXREDIRS, kMostRedirects);
    curl_easy_setopt(easy, CURLOPT_FAILONERROR, 1L);
    curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, CURL_HTTP_VERSION_1_1);
    curl_easy_setopt(easy, CURLOPT_USERAGENT, "Mozilla/5.0");
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, headers_);
    curl_easy_setopt(easy, CURLOPT_TIMEOUT_MS, static_cast<long>(limits_.eachMs));
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L);  // a look-up of a name is not waited for
  }

  static void SetCallbacks(Fetch& fetch) {
    CURL* easy = fetch.easy.get();
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &Work::TakeBody);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, &fetch);
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &Work::TakeHeader);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, &fetch);
    if (fetch.byProxy || fetch.work->limits_.mayReach == nullptr) return;
    curl_easy_setopt(easy, CURLOPT_OPENSOCKETFUNCTION, &Work::OpenSocket);
    curl_easy_setopt(easy, CURLOPT_OPENSOCKETDATA, &fetch);
  }

  // By the address that a name turned out to have.
  static curl_socket_t OpenSocket(void* data, curlsocktype, curl_sockaddr* address) {
    auto& fetch = *static_cast<Fetch*>(data);
    if (!fetch.work->limits_.mayReach(QHostAddress(&address->addr))) {
      fetch.end = FetchEnd::Forbidden;
      return CURL_SOCKET_BAD;
    }
    int type = address->socktype;
#ifdef SOCK_CLOEXEC
    type |= SOCK_CLOEXEC;
#endif
    return socket(address->family, type, address->protocol);
  }

  // A proxy looks up names itself, and a look-up in the near network tells those who are there.
  bool MayName(QString host) const {
    if (limits_.mayReach == nullptr) return true;
    while (host.endsWith(u'.')) host.chop(1);  // of a name that is whole
    const QHostAddress address(host);
    if (!address.isNull()) return limits_.mayReach(address);
    return !IsNearName(host) || limits_.mayReach(QHostAddress(QHostAddress::LocalHost));
  }

  bool MayFollow(Fetch& fetch, QByteArrayView line) const {
    constexpr QByteArrayView kField = "location:";
    if (line.first(qMin(line.size(), kField.size())).compare(kField, Qt::CaseInsensitive) != 0) {
      return true;
    }
    char* current = nullptr;
    curl_easy_getinfo(fetch.easy.get(), CURLINFO_EFFECTIVE_URL, &current);
    const QByteArray next = line.sliced(kField.size()).trimmed().toByteArray();
    if (MayName(HostOf(next.constData(), current))) return true;
    fetch.end = FetchEnd::Forbidden;
    return false;
  }

  // Anything but the count of bytes ends the fetch.
  static size_t TakeBody(char* bytes, size_t, size_t count, void* data) {
    auto& fetch = *static_cast<Fetch*>(data);
    Work& work = *fetch.work;
    const auto size = static_cast<qint64>(count);
    if (fetch.body.size() + size > work.limits_.eachBytes || size > work.left_) {
      fetch.end = FetchEnd::TooLarge;
      return 0;
    }
    work.left_ -= size;
    fetch.body.append(bytes, size);
    return count;
  }

  static size_t TakeHeader(char* bytes, size_t, size_t count, void* data) {
    auto& fetch = *static_cast<Fetch*>(data);
    const QByteArrayView line(bytes, static_cast<qsizetype>(count));
    if (!fetch.work->MayFollow(fetch, line)) return 0;
    fetch.headerBytes += static_cast<qint64>(count);
    return fetch.headerBytes > kMostHeaderBytes ? 0 : count;
  }

  void TellFinished() {
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(multi_, &left)) {
      if (message->msg != CURLMSG_DONE) continue;
      char* number = nullptr;
      curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &number);
      const auto found = fetches_.find(static_cast<int>(reinterpret_cast<qintptr>(number)));
      const bool isWhole = message->data.result == CURLE_OK;
      Q_EMIT owner_.Fetched(found->first, isWhole ? found->second->body : QByteArray(),
                            isWhole ? FetchEnd::Whole : found->second->end);
      Drop(found->first);
    }
  }

  void Drop(int number) {
    const auto found = fetches_.find(number);
    if (found == fetches_.end()) return;
    curl_multi_remove_handle(multi_, found->second->easy.get());
    fetches_.erase(found);
  }

  const FetchLimits limits_;
  HttpFetcher& owner_;
  QMutex mutex_;
  std::vector<std::pair<int, QUrl>> wanted_;
  std::vector<int> cancelled_;
  bool ended_ = false;
  CURLM* multi_;
  qint64 left_;
  std::map<int, std::unique_ptr<Fetch>> fetches_;
  curl_slist* headers_;
};

HttpFetcher::HttpFetcher(FetchLimits limits, QObject* parent) : QObject(parent) {
  StartLibrary();
  work_ = std::make_unique<Work>(*this, limits);
  thread_.reset(QThread::create([work = work_.get()] { work->Run(); }));
  thread_->start();
}

HttpFetcher::~HttpFetcher() {
  work_->End();
  thread_->wait();
}

int HttpFetcher::Fetch(const QUrl& url) {
  static std::atomic<int> last = 0;
  const int number = ++last;
  work_->Ask(number, url);
  return number;
}

void HttpFetcher::Cancel(int number) {
  work_->Forget(number);
}

}  // namespace vorn
