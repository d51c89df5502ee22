#pragma once

#include <QUrl>
#include <QWidget>
#include <functional>
#include <memory>

#include "mail/codec/html/html_sanitizer.h"
#include "mail/window/body/remote_images.h"

class QLabel;
class QPushButton;
class QWebEngineProfile;
class QWebEngineView;

namespace vorn {

class MailGuard;
class MailPage;
class MailSource;

/// Shows a message's HTML in a locked browser view: no scripts, no network, no forms, no frames. A
/// link asks before it opens and shows where it really leads. Remote images are loaded when the
/// user asks for them, for this message only, and fetched outside the engine.
class HtmlView : public QWidget {
  Q_OBJECT

 public:
  /// To be called once, before the application object is made: the engine learns there and then
  /// that pages come from memory.
  static void RegisterScheme();

  explicit HtmlView(const QString& viewName);
  ~HtmlView() override;

  /// Shows a page; remote images are off again.
  void Show(const QString& html);
  /// `then` is told whether the text was found.
  void Find(const QString& text, bool backward, const std::function<void(bool)>& then);
  /// Follows the link on which the keyboard stands; calls `none` where there is no such link.
  void FollowLink(const std::function<void()>& none);
  void Zoom(double factor);
  QWebEngineView* View() const { return view_; }
  /// Gives away the button that shows remote images, to stand where it takes no line of the page.
  /// It is still seen while there is something to show; `PutAside` hides it with the page.
  QPushButton* TakeButton();
  void PutAside();

 Q_SIGNALS:
  void Loaded(bool ok);
  /// A message to a "mailto:" address is wanted.
  void MessageWanted(const QString& mailto);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Load(RemoteImages images);
  void TellOfImages(const ImagesLeftOut& leftOut);
  void Cover();
  void UncoverAfter(int milliseconds, bool isDrawn);
  void LoadRemoteImages();
  void AskToOpen(const QUrl& url);

  QString html_;
  std::unique_ptr<QWebEngineProfile> profile_;
  MailGuard* guard_;
  MailSource* source_;
  MailPage* page_;
  QWebEngineView* view_;
  QWidget* notice_;
  QLabel* words_;        // of the notice
  QPushButton* button_;  // shows remote images
  bool isButtonTaken_ = false;
  int largeInside_ = 0;  // images inside the page that are not shown
  int otherImages_ = 0;  // of the network, in forms that are never shown
  bool offers_ = false;  // to show remote images
  QWidget* cover_;
};

}  // namespace vorn
