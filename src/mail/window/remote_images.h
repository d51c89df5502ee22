#pragma once

#include <QNetworkAccessManager>

class QNetworkReply;
class QWebEngineUrlRequestJob;

namespace vorn {

/// Fetches the remote images that a mail shows, in the engine's place: the server is told nothing
/// of the reader but that he fetches it (no cookie, no language, no engine's name), what else its
/// answer names is not followed, and the engine sees nothing but a picture of a common kind
/// (BMP, GIF, JPEG, PNG, WebP) of at most 32 megabytes.
class RemoteImageLoader : public QObject {
  Q_OBJECT

 public:
  explicit RemoteImageLoader(QObject* parent);

  /// Answers the engine's request for an image of `kRemoteImage` with the image, or with a failure.
  void Load(QWebEngineUrlRequestJob* job);

 private:
  void Answer(QNetworkReply* reply, QWebEngineUrlRequestJob* job);

  QNetworkAccessManager network_;
};

}  // namespace vorn
