#pragma once

#include <QPointer>
#include <QSet>
#include <QString>
#include <QTimer>

#include "kit/window/notice_bar.h"
#include "storage/context.h"

namespace vorn {

class LinkPage;

/// The sites whose scripts the user has allowed, until the program ends.
class AllowedSites {
 public:
  void Allow(const QUrl& page) { sites_.insert(SiteOf(page)); }
  bool Allows(const QUrl& page) const { return sites_.contains(SiteOf(page)); }

 private:
  // Not a host's name alone: what another port or a connection in clear brings is another site.
  static QString SiteOf(const QUrl& page);

  QSet<QString> sites_;
};

/// The line above a web page whose scripts do not run, with the button that lets them. With the
/// setting "ScriptsAsked" no site's scripts run before; without it all do, and the line never
/// comes.
class ScriptBar : public NoticeBar {
  Q_OBJECT

 public:
  ScriptBar(Context& context, AllowedSites& sites);
  /// Watches over a web page's scripts from now on, instead of the page before.
  void Attach(LinkPage& page);

 private:
  ScriptBar(Context& context, AllowedSites& sites, QPushButton* allow);
  bool MayRun(const QUrl& url) const;
  void ShowIfStopped();
  void LookAgain();
  void Allow();

  Context& context_;
  AllowedSites& sites_;
  QPointer<LinkPage> page_;
  QTimer lookAgain_;
};

}  // namespace vorn
