#include "present/window/browser_profiles.h"

#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInterceptor>

#include "present/window/page_script.h"

namespace vorn {
namespace {

// Lets a folder page, or a page of the program's own that comes as data, load itself and nothing
// else. No page can lead to another one: its links do not act.
class OnlyLocalFiles : public QWebEngineUrlRequestInterceptor {
 public:
  using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;
  void interceptRequest(QWebEngineUrlRequestInfo& info) override {
    const bool isPage =
        info.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeMainFrame &&
        (info.requestUrl().isLocalFile() || info.requestUrl().scheme() == QStringLiteral("data"));
    if (!isPage) info.block(true);
  }
};

}  // namespace

BrowserProfiles::BrowserProfiles(const QString& webFolder)
    : local_(std::make_unique<QWebEngineProfile>()),
      web_(std::make_unique<QWebEngineProfile>(QStringLiteral("web"))) {
  local_->setUrlRequestInterceptor(new OnlyLocalFiles(local_.get()));
  local_->setHttpCacheType(QWebEngineProfile::NoCache);
  QWebEngineSettings* settings = local_->settings();
  using Attribute = QWebEngineSettings::WebAttribute;
  for (const Attribute attribute :
       {Attribute::JavascriptEnabled, Attribute::JavascriptCanOpenWindows,
        Attribute::LocalContentCanAccessRemoteUrls, Attribute::LocalContentCanAccessFileUrls,
        Attribute::PluginsEnabled, Attribute::LocalStorageEnabled, Attribute::AutoLoadIconsForPage,
        Attribute::WebGLEnabled, Attribute::FullScreenSupportEnabled}) {
    settings->setAttribute(attribute, false);
  }
  for (QWebEngineProfile* profile : {local_.get(), web_.get()}) {
    QWebEngineScript script;
    script.setSourceCode(QString::fromUtf8(kPageScript));
    script.setWorldId(QWebEngineScript::ApplicationWorld);
    script.setInjectionPoint(QWebEngineScript::DocumentReady);
    profile->scripts()->insert(script);
  }
  settings->setDefaultTextEncoding(QStringLiteral("Shift_JIS"));
  web_->setPersistentStoragePath(webFolder);
  web_->setCachePath(webFolder + QStringLiteral("/cache"));
}

BrowserProfiles::~BrowserProfiles() = default;

}  // namespace vorn
