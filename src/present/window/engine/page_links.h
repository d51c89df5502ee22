#pragma once

#include <QObject>

#include "mail/mail_request.h"
#include "present/window/engine/row_news.h"

class QUrl;

namespace vorn {

class LinkPage;

/// What is followed and chosen in the page of a browser window, whichever page that is: with the
/// view it goes and comes. The signals are those of `LinkPage`.
class PageLinks : public QObject {
  Q_OBJECT

 public:
  /// Tells what that page tells, until it goes.
  void Follow(const LinkPage& page);

 Q_SIGNALS:
  void CommandFollowed(const vorn::MailRequest& request);
  void StepFollowed(const QString& step);
  void RowTold(vorn::RowNews news, const QString& said);
  void MailtoFollowed(const QString& url);
  void FirstNavigation(const QUrl& url);
};

}  // namespace vorn
