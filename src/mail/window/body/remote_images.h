#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>

#include <memory>

class QHostAddress;
class QWebEngineUrlRequestJob;

namespace vorn {

class HttpFetcher;
enum class FetchEnd;

/// How many images of a page are not shown, and why.
struct ImagesLeftOut {
  int tooLarge = 0;
  int tooMany = 0;
  int nearby = 0;  ///< at an address of this machine or its network
};

/// Fetches the remote images that a mail shows, in the engine's place: the server is told nothing
/// of the reader but that he fetches it, what else its answer names is not followed, and the engine
/// sees nothing but a picture of a common kind (BMP, GIF, JPEG, PNG, WebP) of a size that can be
/// shown.
class RemoteImageLoader : public QObject {
  Q_OBJECT

 public:
  explicit RemoteImageLoader(QObject* parent);
  ~RemoteImageLoader() override;

  /// Which addresses images may come from (see `FetchLimits`): those of the public network. A
  /// sender's image is no way to the reader's other devices.
  static bool (*MayReach)(const QHostAddress&);

  /// Ends what is on its way for the page before; the next page's images have limits of their own.
  void BeginPage();
  /// Answers the engine's request for an image of `kRemoteImage` with the image, or with a failure.
  void Load(QWebEngineUrlRequestJob* job);

 Q_SIGNALS:
  /// More images of the page are left out.
  void LeftOut(const ImagesLeftOut& images);

 private:
  void Answer(int number, const QByteArray& image, FetchEnd end);
  void LeaveOut(int ImagesLeftOut::*reason);

  QHash<int, QPointer<QWebEngineUrlRequestJob>> waiting_;
  int images_ = 0;
  ImagesLeftOut leftOut_;
  std::unique_ptr<HttpFetcher> fetcher_;  // of this page, once it wants an image
};

}  // namespace vorn
