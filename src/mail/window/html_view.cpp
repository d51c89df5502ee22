#include "mail/window/html_view.h"

#include <QDesktopServices>
#include <QFile>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QUuid>
#include <QVBoxLayout>
#include <QWebEngineFindTextResult>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInterceptor>
#include <QWebEngineView>

#include "frame/start_up.h"
#include "kit/window/plain_text.h"
#include "storage/private_files.h"
#include "storage/ui.h"

namespace vorn {

// Lets the page itself and images inside it through, and remote images when they are wanted.
class MailGuard : public QWebEngineUrlRequestInterceptor {
 public:
  using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;

  void Allow(const QUrl& page) { page_ = page; }
  void AllowRemoteImages(bool allowed) { remoteImages_ = allowed; }

  void interceptRequest(QWebEngineUrlRequestInfo& info) override {
    using Info = QWebEngineUrlRequestInfo;
    const QUrl url = info.requestUrl();
    const bool isImage = info.resourceType() == Info::ResourceTypeImage;
    const bool isRemote = url.scheme() == u"http" || url.scheme() == u"https";
    if (info.resourceType() == Info::ResourceTypeMainFrame && url == page_) return;
    if (isImage && url.scheme() == u"data") return;
    if (isImage && isRemote && remoteImages_) return;
    info.block(true);
  }

 private:
  QUrl page_;
  bool remoteImages_ = false;
};

// Stays on its page; links are handed on.
class MailPage : public QWebEnginePage {
  Q_OBJECT

 public:
  using QWebEnginePage::QWebEnginePage;
  void Allow(const QUrl& page) { allowed_ = page; }

 Q_SIGNALS:
  void LinkClicked(const QUrl& url);

 protected:
  bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override {
    if (type == NavigationTypeLinkClicked) {
      Q_EMIT LinkClicked(url);
      return false;
    }
    return isMainFrame && url == allowed_ && type != NavigationTypeFormSubmitted;
  }
  QWebEnginePage* createWindow(WebWindowType) override { return nullptr; }

 private:
  QUrl allowed_;
};

HtmlView::HtmlView(const QString& workFolder, QWidget* parent)
    : QWidget(parent),
      workFolder_(workFolder),
      profile_(std::make_unique<QWebEngineProfile>()),
      guard_(new MailGuard(this)),
      view_(new QWebEngineView(this)),
      notice_(new QWidget) {
  profile_->setUrlRequestInterceptor(guard_);
  profile_->setHttpCacheType(QWebEngineProfile::NoCache);
  profile_->setHttpUserAgent(QStringLiteral("Mozilla/5.0"));  // no word of the engine or the system
  page_ = new MailPage(profile_.get(), view_);
  view_->setPage(page_);
  view_->setObjectName(QStringLiteral("wbHtml"));
  view_->setContextMenuPolicy(Qt::NoContextMenu);
  QWebEngineSettings* settings = page_->settings();
  using Attribute = QWebEngineSettings::WebAttribute;
  for (const Attribute attribute :
       {Attribute::JavascriptEnabled, Attribute::JavascriptCanOpenWindows,
        Attribute::PluginsEnabled, Attribute::LocalStorageEnabled, Attribute::AutoLoadIconsForPage,
        Attribute::LocalContentCanAccessFileUrls, Attribute::WebGLEnabled,
        Attribute::FullScreenSupportEnabled}) {
    settings->setAttribute(attribute, false);
  }
  // The engine makes its surface when it is first asked for anything; in a window that is shown
  // already the system's window would be made anew for it, and move.
  page_->runJavaScript(QStringLiteral("0"));
  // What of the network may be loaded is decided by the guard.
  settings->setAttribute(Attribute::LocalContentCanAccessRemoteUrls, true);

  auto* button = new QPushButton(Ui::tr("リモート画像を表示(&R)"));
  button->setObjectName(QStringLiteral("cmRemoteImages"));
  auto* text = PlainLabel(Ui::tr("送信者に知られないように、リモート画像は表示していません。"));
  auto* bar = new QHBoxLayout(notice_);
  bar->setContentsMargins(6, 2, 6, 2);
  bar->addWidget(text, 1);
  bar->addWidget(button);
  notice_->hide();
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(notice_);
  layout->addWidget(view_, 1);

  connect(button, &QPushButton::clicked, this, &HtmlView::LoadRemoteImages);
  connect(page_, &MailPage::LinkClicked, this, &HtmlView::AskToOpen, Qt::QueuedConnection);
  connect(view_, &QWebEngineView::loadFinished, this, [this](bool ok) {
    RemoveReadFile();
    Q_EMIT Loaded(ok);
  });
}

HtmlView::~HtmlView() {
  RemoveFile();
  delete view_;  // its page goes before the profile
}

void HtmlView::Show(const QString& html) {
  html_ = html;
  Load(RemoteImages::LeftOut);
}

void HtmlView::LoadRemoteImages() {
  Load(RemoteImages::Kept);
}

// From a file, since a page given as text may not be larger than two megabytes.
void HtmlView::Load(RemoteImages images) {
  const SafeHtml safe = SanitizeHtml(html_, images);
  guard_->AllowRemoteImages(images == RemoteImages::Kept);
  notice_->setVisible(safe.hasRemoteImages && images == RemoteImages::LeftOut);
  RemoveFile();
  MakePrivateFolder(workFolder_);
  file_ = workFolder_ + QStringLiteral("html_") + QUuid::createUuid().toString(QUuid::Id128) +
          QStringLiteral(".html");
  QFile file(file_);
  if (OpenPrivate(file, QIODevice::WriteOnly)) file.write(safe.html);
  file.close();
  const QUrl url = QUrl::fromLocalFile(file_);
  guard_->Allow(url);
  page_->Allow(url);
  view_->load(url);
}

// The end of a loading may be that of the page before; the document itself says which it is.
void HtmlView::RemoveReadFile() {
  page_->runJavaScript(QStringLiteral("location.href"), QWebEngineScript::ApplicationWorld,
                       [self = QPointer<HtmlView>(this)](const QVariant& address) {
                         if (self == nullptr) return;
                         const QString read = QUrl(address.toString()).toLocalFile();
                         if (read == self->file_) self->RemoveFile();
                       });
}

void HtmlView::RemoveFile() {
  if (!file_.isEmpty()) QFile::remove(file_);
  file_.clear();
}

void HtmlView::Find(const QString& text, bool backward, const std::function<void(bool)>& then) {
  page_->findText(
      text, backward ? QWebEnginePage::FindBackward : QWebEnginePage::FindFlags(),
      [then](const QWebEngineFindTextResult& result) { then(result.numberOfMatches() > 0); });
}

void HtmlView::Zoom(double factor) {
  view_->setZoomFactor(factor);
}

void HtmlView::AskToOpen(const QUrl& url) {
  const QString scheme = url.scheme();
  if (scheme == u"mailto") {  // nothing leaves before the user sends it
    Q_EMIT MessageWanted(url.toString(QUrl::FullyEncoded));
    return;
  }
  if (scheme != u"http" && scheme != u"https") return;
  const auto answer = ShowBox(
      this, QMessageBox::Question,
      Ui::tr("次のアドレスを開きます。よろしいですか？\n\n") + url.toString(QUrl::FullyEncoded),
      QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
  if (answer == QMessageBox::Yes) QDesktopServices::openUrl(url);
}

}  // namespace vorn

#include "html_view.moc"
