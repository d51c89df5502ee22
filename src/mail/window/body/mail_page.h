#pragma once

#include <QUrl>
#include <QWebEnginePage>

namespace vorn {

/// The engine's page of one mail: stays where it is, hands links on and opens no windows.
class MailPage : public QWebEnginePage {
  Q_OBJECT

 public:
  MailPage(QWebEngineProfile* profile, QObject* parent);

  /// The one address that may be gone to.
  void Allow(const QUrl& page) { allowed_ = page; }
  QUrl Allowed() const { return allowed_; }

 Q_SIGNALS:
  void LinkClicked(const QUrl& url);
  /// The page that is allowed is drawn.
  void Painted();

 protected:
  bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
  QWebEnginePage* createWindow(WebWindowType type) override;
  void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message,
                                int line, const QString& source) override;

 private:
  QUrl allowed_;
};

}  // namespace vorn
