#pragma once

#include <QUrl>
#include <QWidget>
#include <functional>
#include <memory>

#include "mail/codec/html_sanitizer.h"

class QLabel;
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
  void Zoom(double factor);
  QWebEngineView* View() const { return view_; }

 Q_SIGNALS:
  void Loaded(bool ok);
  /// A message to a "mailto:" address is wanted.
  void MessageWanted(const QString& mailto);

 private:
  void Load(RemoteImages images);
  void Cover();
  void Uncover();
  void LoadRemoteImages();
  void AskToOpen(const QUrl& url);

  QString html_;
  std::unique_ptr<QWebEngineProfile> profile_;
  MailGuard* guard_;
  MailSource* source_;
  MailPage* page_;
  QWebEngineView* view_;
  QWidget* notice_;
  QWidget* cover_;
};

}  // namespace vorn
