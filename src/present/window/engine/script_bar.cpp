#include "present/window/engine/script_bar.h"

#include <QUrl>
#include <QWebEngineScript>

#include "objects/settings.h"
#include "present/window/engine/link_page.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kBarLookMs = 500;

}  // namespace

QString AllowedSites::SiteOf(const QUrl& page) {
  return page.scheme() + QStringLiteral("://") + page.authority();
}

ScriptBar::ScriptBar(Context& context, AllowedSites& sites)
    : ScriptBar(context, sites, new QPushButton(Ui::tr("このサイトに許可する(&J)"))) {}

ScriptBar::ScriptBar(Context& context, AllowedSites& sites, QPushButton* allow)
    : NoticeBar(QStringLiteral("frScripts"), allow), context_(context), sites_(sites) {
  allow->setObjectName(QStringLiteral("cmAllowScripts"));
  connect(allow, &QPushButton::clicked, this, &ScriptBar::Allow);
  lookAgain_.setSingleShot(true);
  lookAgain_.setInterval(kBarLookMs);
  connect(&lookAgain_, &QTimer::timeout, this, &ScriptBar::LookAgain);
}

bool ScriptBar::MayRun(const QUrl& url) const {
  return !Settings(context_).AsksForScripts() || sites_.Allows(url);
}

void ScriptBar::Attach(LinkPage& page) {
  if (page_ != nullptr) page_->disconnect(this);
  page_ = &page;
  hide();
  page.AllowScripts([self = QPointer<ScriptBar>(this)](const QUrl& url) {
    return self != nullptr && self->MayRun(url);
  });
  connect(&page, &QWebEnginePage::loadStarted, this, [this] {
    hide();
    lookAgain_.start();
  });
  connect(&page, &QWebEnginePage::loadFinished, this, &ScriptBar::ShowIfStopped);
}

// Of two loadings in a row the engine may tell one end alone.
void ScriptBar::LookAgain() {
  if (page_ == nullptr) return;
  if (page_->isLoading()) {
    lookAgain_.start();
  } else {
    ShowIfStopped();
  }
}

// A page without scripts lacks nothing.
void ScriptBar::ShowIfStopped() {
  page_->SettleScripts();
  if (MayRun(page_->url())) return;
  page_->runJavaScript(
      QStringLiteral("document.scripts.length"), QWebEngineScript::ApplicationWorld,
      [self = QPointer<ScriptBar>(this), url = page_->url()](const QVariant& scripts) {
        if (self == nullptr || self->page_ == nullptr || self->page_->url() != url) return;
        if (scripts.toInt() == 0 || self->MayRun(url)) return;
        self->Say(Ui::tr("「%1」のスクリプトは止めてあります。").arg(url.host()));
      });
}

void ScriptBar::Allow() {
  if (page_ == nullptr) return;
  sites_.Allow(page_->url());
  hide();
  page_->LoadWithScripts();
}

}  // namespace vorn
