#pragma once

#include <QObject>
#include <functional>
#include <utility>

#include "mail/mail_request.h"
#include "present/window/engine/row_news.h"

class QUrl;
class QWebEnginePage;

namespace vorn {

class LinkPage;

/// What is followed, chosen and wanted in the page of a browser window, whichever page that is:
/// with the view it goes and comes. The signals are those of `LinkPage`, and one of its profile.
class PageLinks : public QObject {
  Q_OBJECT

 public:
  /// Tells what that page tells, until it goes.
  void Follow(LinkPage& page);
  /// Makes the page of a new window that a web page which is followed from now on asks for.
  void OnNewWindow(std::function<QWebEnginePage*()> make) { makeWindow_ = std::move(make); }

 Q_SIGNALS:
  void CommandFollowed(const vorn::MailRequest& request);
  void StepFollowed(const QString& step);
  void RowTold(vorn::RowNews news, const QString& said);
  void MailtoFollowed(const QString& url);
  void FirstNavigation(const QUrl& url);
  /// What a web page wants to have saved is not.
  void DownloadRefused();

 private:
  std::function<QWebEnginePage*()> makeWindow_;
};

}  // namespace vorn
