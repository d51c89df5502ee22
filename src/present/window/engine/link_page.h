#pragma once

#include <QElapsedTimer>
#include <QWebEnginePage>
#include <functional>

#include "mail/mail_request.h"
#include "present/window/engine/row_news.h"

namespace vorn {

/// A page of the browser engine that takes the link commands out of the navigation.
class LinkPage : public QWebEnginePage {
  Q_OBJECT

 public:
  explicit LinkPage(QWebEngineProfile* profile, QObject* parent = nullptr);

  /// On a local page only link commands act, and the one page that the window itself loads.
  void SetLocalPage(const QUrl& page) { localPage_ = page; }
  /// Its text is the program's own: links of the scheme "vorn" lead to what the program does.
  void SetOwnText(bool isOwnText) { isOwnText_ = isOwnText; }
  bool HasLocalPage() const { return !localPage_.isEmpty(); }
  /// Makes the page of a new window that this one asks for; web pages only.
  void OnNewWindow(std::function<QWebEnginePage*()> make) { makeWindow_ = std::move(make); }
  /// Tells of a web page whether its scripts run. Without this none do.
  void AllowScripts(std::function<bool(const QUrl&)> mayRunScripts) {
    mayRunScripts_ = std::move(mayRunScripts);
  }
  /// Once a loading has ended, the scripts of the page that is there now run or not.
  void SettleScripts();
  /// Lets this page's scripts run, which takes loading it anew; those of a page that answers a form
  /// run from the next page on.
  void LoadWithScripts();
  /// This is the page of a new window: its first navigation is not made but told.
  void HoldFirstNavigation() { holding_ = true; }

 Q_SIGNALS:
  void CommandFollowed(const vorn::MailRequest& request);
  void FirstNavigation(const QUrl& url);
  /// A link of a text of the program's own was followed.
  void StepFollowed(const QString& step);
  /// What a folder's page tells, mostly of a message.
  void RowTold(vorn::RowNews news, const QString& said);
  /// A link to an address was clicked on a web page.
  void MailtoFollowed(const QString& url);

 protected:
  bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
  QWebEnginePage* createWindow(WebWindowType type) override;
  void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message,
                                int line, const QString& source) override;
  // A page's own boxes come up only while the user is at the page: over another window they would
  // take the keys that are meant for that one.
  void javaScriptAlert(const QUrl& origin, const QString& text) override;
  bool javaScriptConfirm(const QUrl& origin, const QString& text) override;
  bool javaScriptPrompt(const QUrl& origin, const QString& text, const QString& standard,
                        QString* answer) override;

 private:
  bool HasUser() const;
  void LetScripts(bool run);
  bool IsRepeated(const MailRequest& request);

  QUrl localPage_;
  bool isOwnText_ = false;
  std::function<QWebEnginePage*()> makeWindow_;
  std::function<bool(const QUrl&)> mayRunScripts_;
  QUrl arriving_;
  bool isUnderWay_ = false;  // it was asked for, and its loading has not begun
  bool isFormAnswer_ = false;
  QElapsedTimer sinceWindow_;
  bool holding_ = false;
  MailRequest followed_;
  QElapsedTimer sinceFollowed_;
};

}  // namespace vorn
