#include "present/window/engine/browser_profiles.h"

#include <QAccessible>
#include <QDir>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QPalette>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInterceptor>

#include "present/page_script.h"
#include "present/window/engine/page_source.h"
#include "present/window/engine/script_bar.h"

namespace vorn {
namespace {

constexpr int kDefaultLetter = 16;  // pixels of the engine
constexpr int kLayoutPoints = 10;   // of the ready-made layouts
const QString kFontScript = QStringLiteral("font");
// An element's name hides what the document offers under that name, so it is asked the long way.
constexpr char kFontCode[] =
    "{ const style = Document.prototype.createElement.call(document, 'style');"
    "  style.textContent = %1[0];"
    "  Document.prototype.querySelector.call(document, 'html').appendChild(style); }";

// Lets a folder page, or a page of the program's own that comes as data, load itself and nothing
// else. No page can lead to another one: its links do not act.
class OnlyLocalFiles : public QWebEngineUrlRequestInterceptor {
 public:
  using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;
  void interceptRequest(QWebEngineUrlRequestInfo& info) override {
    const bool isPage =
        info.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeMainFrame &&
        (info.requestUrl().isLocalFile() || info.requestUrl().scheme() == QStringLiteral("data") ||
         info.requestUrl().scheme() == QLatin1String(PageSource::kScheme));
    if (!isPage) info.block(true);
  }
};

// The engine reads its options when the first profile is made.
void AddEngineOption(const QByteArray& option) {
  const char* variable = "QTWEBENGINE_CHROMIUM_FLAGS";
  const QByteArray options = qgetenv(variable);
  if (!options.contains(option)) qputenv(variable, options + ' ' + option);
}

// Pages that offer a dark scheme show it; others stay as they are.
void FollowColorScheme() {
  constexpr int kMiddleGray = 128;
  const bool isDark = QGuiApplication::palette().color(QPalette::Base).lightness() < kMiddleGray;
  if (isDark) AddEngineOption("--force-dark-mode");
}

// By itself the engine keeps what pages hold from screen readers.
void FollowScreenReader() {
  if (QAccessible::isActive()) AddEngineOption("--force-renderer-accessibility");
}

std::unique_ptr<QWebEngineProfile> FirstProfile() {
  FollowColorScheme();
  FollowScreenReader();
  return std::make_unique<QWebEngineProfile>();
}

}  // namespace

BrowserProfiles::BrowserProfiles(const QString& formerFolder)
    : pages_(std::make_unique<PageSource>()),
      local_(FirstProfile()),
      web_(std::make_unique<QWebEngineProfile>()),
      sites_(std::make_unique<AllowedSites>()) {
  local_->setUrlRequestInterceptor(new OnlyLocalFiles(local_.get()));
  local_->installUrlSchemeHandler(PageSource::kScheme, pages_.get());
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
  // A web page opens windows when the user clicks, and not by itself.
  web_->settings()->setAttribute(Attribute::JavascriptCanOpenWindows, false);
  for (QWebEngineProfile* profile : {local_.get(), web_.get()}) {
    QWebEngineScript script;
    script.setSourceCode(PageScript());
    script.setWorldId(QWebEngineScript::ApplicationWorld);
    script.setInjectionPoint(QWebEngineScript::DocumentReady);
    profile->scripts()->insert(script);
  }
  settings->setDefaultTextEncoding(QStringLiteral("Shift_JIS"));
  QDir(formerFolder).removeRecursively();
}

BrowserProfiles::~BrowserProfiles() = default;

void BrowserProfiles::UseFont(const QString& family, int points) {
  QWebEngineScriptCollection* scripts = local_->scripts();
  for (const QWebEngineScript& former : scripts->find(kFontScript)) scripts->remove(former);
  // The widths at which the ready-made layouts leave columns out grow along.
  const int letter = points > 0 ? kDefaultLetter * points / kLayoutPoints : kDefaultLetter;
  local_->settings()->setFontSize(QWebEngineSettings::DefaultFontSize, letter);
  QString name = family;
  name.remove(u'"').remove(u'\\');
  QString style;
  if (!name.isEmpty())
    style += QStringLiteral("font-family:\"%1\",sans-serif !important;").arg(name);
  if (points > 0) style += QStringLiteral("font-size:%1pt !important;").arg(points);
  fontStyle_ = style;
  if (style.isEmpty()) return;
  const QJsonArray sheet = {QStringLiteral("body{%1}").arg(style)};
  QWebEngineScript script;
  script.setName(kFontScript);
  script.setSourceCode(
      QString::fromUtf8(kFontCode).arg(QString::fromUtf8(QJsonDocument(sheet).toJson())));
  script.setWorldId(QWebEngineScript::ApplicationWorld);
  script.setInjectionPoint(QWebEngineScript::DocumentReady);
  scripts->insert(script);
}

}  // namespace vorn
