#pragma once

#include <QMutex>
#include <QObject>
#include <QThread>
#include <QUrl>

#include <memory>

class QHostAddress;

namespace vorn {

/// What the fetching for one page may cost.
struct FetchLimits {
  int atOnce = 4;                  ///< connections
  qint64 eachBytes = 32 << 20;     ///< of an answer's body
  qint64 allBytes = 128 << 20;     ///< of all answers together
  int eachMs = 30000;              ///< from the request, its waiting for others included
  const char* accept = "image/*";  ///< what the field "Accept" says (RFC 9110, 12.5.1)
  /// Which addresses may be connected to, also by a redirection and whatever name has them; null
  /// for all. A proxy may be anywhere; what it is asked for is judged by its name.
  bool (*mayReach)(const QHostAddress&) = nullptr;
};

/// How a fetch ended.
enum class FetchEnd {
  Whole,
  TooLarge,   ///< for `FetchLimits`
  Forbidden,  ///< by `FetchLimits::mayReach`
  Failed
};

/// Fetches files over HTTP and HTTPS (RFC 9110) that a stranger names, in a thread of its own. The
/// server is told nothing of the user but that he fetches: no cookie, no language, no credential,
/// no program's name. Only five redirections are followed; whatever a server answers, slowly or
/// without end, costs no more than the limits. Proxies are those of the system. Its end waits for
/// no server.
class HttpFetcher : public QObject {
  Q_OBJECT

 public:
  explicit HttpFetcher(FetchLimits limits, QObject* parent = nullptr);
  ~HttpFetcher() override;

  /// Begins to fetch `url`, of the scheme http or https; gives its number for `Fetched`, which no
  /// other fetch of the process has: what another fetcher has told may still be on its way.
  int Fetch(const QUrl& url);
  /// A fetch that nobody waits for any longer.
  void Cancel(int number);

 Q_SIGNALS:
  /// The body of a successful answer; empty for everything else. Not told of what was cancelled.
  void Fetched(int number, const QByteArray& body, FetchEnd end);

 private:
  class Work;

  std::unique_ptr<Work> work_;
  std::unique_ptr<QThread> thread_;
};

}  // namespace vorn
