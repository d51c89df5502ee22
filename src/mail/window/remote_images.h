#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>

#include <memory>

class QWebEngineUrlRequestJob;

namespace vorn {

class HttpFetcher;

/// Fetches the remote images that a mail shows, in the engine's place: the server is told nothing
/// of the reader but that he fetches it, what else its answer names is not followed, and the engine
/// sees nothing but a picture of a common kind (BMP, GIF, JPEG, PNG, WebP) of a size that can be
/// shown.
class RemoteImageLoader : public QObject {
  Q_OBJECT

 public:
  explicit RemoteImageLoader(QObject* parent);
  ~RemoteImageLoader() override;

  /// Ends what is on its way for the page before; the next page's images have limits of their own.
  void BeginPage();
  /// Answers the engine's request for an image of `kRemoteImage` with the image, or with a failure.
  void Load(QWebEngineUrlRequestJob* job);

 private:
  void Answer(int number, const QByteArray& image);

  QHash<int, QPointer<QWebEngineUrlRequestJob>> waiting_;
  int images_ = 0;
  std::unique_ptr<HttpFetcher> fetcher_;  // of this page, once it wants an image
};

}  // namespace vorn
