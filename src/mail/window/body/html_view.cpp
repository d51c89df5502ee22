#include "mail/window/body/html_view.h"

#include <QBuffer>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <QUuid>
#include <QVBoxLayout>
#include <QWebEngineFindTextResult>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInterceptor>
#include <QWebEngineUrlRequestJob>
#include <QWebEngineUrlSchemeHandler>
#include <QWebEngineView>

#include "kit/window/memory_scheme.h"
#include "kit/window/open_outside.h"
#include "kit/window/plain_text.h"
#include "mail/window/body/mail_page.h"
#include "mail/window/body/remote_images.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr const char* kScheme = "vorn-mail";
constexpr int kFrameMs = 16;        // from what the page draws to what is seen
constexpr int kFirstPaintMs = 300;  // from the end of the loading
constexpr char kLinkWithKeys[] =
    "(() => { const link = document.activeElement;"
    "  return link instanceof HTMLAnchorElement && link.matches(':focus-visible') ? link.href : '';"
    "})()";

QString OfferWords() {
  return Ui::tr("送信者に知られないように、リモート画像は表示していません。");
}

bool IsRemoteImage(const QUrl& url) {
  return url.toString(QUrl::FullyEncoded).startsWith(QLatin1String(kRemoteImage));
}

}  // namespace

// Lets the page itself and images inside it through, and what stands for a remote image when those
// are wanted. Nothing goes to the network.
class MailGuard : public QWebEngineUrlRequestInterceptor {
 public:
  using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;

  void Allow(const QUrl& page) { page_ = page; }
  void AllowRemoteImages(bool allowed) { remoteImages_ = allowed; }

  void interceptRequest(QWebEngineUrlRequestInfo& info) override {
    using Info = QWebEngineUrlRequestInfo;
    const QUrl url = info.requestUrl();
    const bool isImage = info.resourceType() == Info::ResourceTypeImage;
    if (info.resourceType() == Info::ResourceTypeMainFrame && url == page_) return;
    if (isImage && url.scheme() == u"data") return;
    if (isImage && remoteImages_ && IsRemoteImage(url)) return;
    info.block(true);
  }

 private:
  QUrl page_;
  bool remoteImages_ = false;
};

// Gives the engine the page from memory: nothing of a mail is written to the disk for it, and a
// page given as text may not be larger than two megabytes.
class MailSource : public QWebEngineUrlSchemeHandler {
 public:
  explicit MailSource(QObject* parent) : QWebEngineUrlSchemeHandler(parent), images_(this) {}

  const RemoteImageLoader& Images() const { return images_; }

  void Give(const QUrl& url, const QByteArray& html) {
    url_ = url;
    html_ = html;
    images_.BeginPage();
  }

  void requestStarted(QWebEngineUrlRequestJob* job) override {
    if (IsRemoteImage(job->requestUrl())) {
      images_.Load(job);
      return;
    }
    if (job->requestUrl() != url_) {
      job->fail(QWebEngineUrlRequestJob::UrlNotFound);
      return;
    }
    auto* bytes = new QBuffer(job);
    bytes->setData(html_);
    bytes->open(QIODevice::ReadOnly);
    job->reply("text/html; charset=utf-8", bytes);
  }

 private:
  QUrl url_;
  QByteArray html_;
  RemoteImageLoader images_;
};

void HtmlView::RegisterScheme() {
  RegisterMemoryScheme(kScheme);  // mails have no scripts that could reach one another
}

HtmlView::HtmlView(const QString& viewName)
    : profile_(std::make_unique<QWebEngineProfile>()),
      guard_(new MailGuard(this)),
      source_(new MailSource(this)),
      view_(new QWebEngineView(this)),
      notice_(new QWidget),
      cover_(new QWidget(this)) {
  profile_->setUrlRequestInterceptor(guard_);
  profile_->installUrlSchemeHandler(kScheme, source_);
  profile_->setHttpCacheType(QWebEngineProfile::NoCache);
  page_ = new MailPage(profile_.get(), view_);
  view_->setPage(page_);
  view_->setObjectName(viewName);
  view_->setContextMenuPolicy(Qt::NoContextMenu);
  QWebEngineSettings* settings = page_->settings();
  using Attribute = QWebEngineSettings::WebAttribute;
  for (const Attribute attribute :
       {Attribute::JavascriptEnabled, Attribute::JavascriptCanOpenWindows,
        Attribute::PluginsEnabled, Attribute::LocalStorageEnabled, Attribute::AutoLoadIconsForPage,
        Attribute::LocalContentCanAccessFileUrls, Attribute::LocalContentCanAccessRemoteUrls,
        Attribute::WebGLEnabled, Attribute::FullScreenSupportEnabled,
        Attribute::FocusOnNavigationEnabled}) {
    settings->setAttribute(attribute, false);
  }
  // The engine makes its surface when it is first asked for anything; in a window that is shown
  // already the system's window would be made anew for it, and move.
  page_->runJavaScript(QStringLiteral("0"));

  button_ = new QPushButton(Ui::tr("リモート画像を表示(&R)"));
  button_->setObjectName(QStringLiteral("cmRemoteImages"));
  words_ = PlainLabel();
  words_->setObjectName(QStringLiteral("lbImages"));
  words_->setWordWrap(true);
  auto* bar = new QHBoxLayout(notice_);
  bar->setContentsMargins(6, 2, 6, 2);
  bar->addWidget(words_, 1);
  bar->addWidget(button_);
  notice_->hide();
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(notice_);
  layout->addWidget(view_, 1);

  connect(button_, &QPushButton::clicked, this, &HtmlView::LoadRemoteImages);
  connect(&source_->Images(), &RemoteImageLoader::LeftOut, this, &HtmlView::TellOfImages);
  connect(page_, &MailPage::LinkClicked, this, &HtmlView::AskToOpen, Qt::QueuedConnection);
  connect(view_, &QWebEngineView::loadFinished, this, &HtmlView::Loaded);
  // Where nothing tells what is drawn, the end of the loading has to do.
  connect(view_, &QWebEngineView::loadFinished, this,
          [this] { UncoverAfter(kFirstPaintMs, false); });
  connect(page_, &MailPage::Painted, this, [this] { UncoverAfter(kFrameMs, true); });
  view_->installEventFilter(this);
  cover_->setAutoFillBackground(true);
  cover_->setBackgroundRole(QPalette::Base);
  cover_->hide();
}

HtmlView::~HtmlView() {
  delete view_;  // its page goes before the profile
}

QPushButton* HtmlView::TakeButton() {
  isButtonTaken_ = true;
  PutAside();
  button_->setToolTip(ShownToolTip(OfferWords()));
  button_->setAccessibleDescription(OfferWords());
  return button_;
}

void HtmlView::PutAside() {
  if (isButtonTaken_) button_->hide();
}

void HtmlView::Show(const QString& html) {
  html_ = html;
  Cover();
  Load(RemoteImages::LeftOut);
}

// The engine leaves the page before in sight until the next one comes: another sender's words
// would stand under this one's name.
void HtmlView::Cover() {
  cover_->raise();
  cover_->show();
}

// Bars come and go above the view.
bool HtmlView::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize || event->type() == QEvent::Move) {
    cover_->setGeometry(view_->geometry());
  }
  return QWidget::eventFilter(watched, event);
}

// Unless another page is wanted by then.
void HtmlView::UncoverAfter(int milliseconds, bool isDrawn) {
  QTimer::singleShot(milliseconds, this, [this, isDrawn, page = page_->Allowed()] {
    if (page == page_->Allowed() && (isDrawn || !page_->isLoading())) cover_->hide();
  });
}

// The button goes, and would hand the keyboard to whatever comes next in the window.
void HtmlView::LoadRemoteImages() {
  if (button_->hasFocus()) view_->setFocus();
  Load(RemoteImages::Kept);
}

// Each loading has an address of its own: one that comes late finds nothing at the one before.
void HtmlView::Load(RemoteImages images) {
  const SafeHtml safe = SanitizeHtml(html_, images);
  guard_->AllowRemoteImages(images == RemoteImages::Kept);
  offers_ = safe.hasRemoteImages && images == RemoteImages::LeftOut;
  largeInside_ = safe.largeImages;
  otherImages_ = safe.otherImages;
  TellOfImages({});
  const QUrl url(QLatin1String(kScheme) + QStringLiteral("://mail/") +
                 QUuid::createUuid().toString(QUuid::Id128));
  source_->Give(url, safe.html);
  guard_->Allow(url);
  page_->Allow(url);
  view_->load(url);
}

// What is not shown, and why.
void HtmlView::TellOfImages(const ImagesLeftOut& leftOut) {
  QStringList words;
  if (offers_ && !isButtonTaken_) words.append(OfferWords());
  const auto tell = [&words](int images, const QString& text) {
    if (images > 0) words.append(text);
  };
  const int large = largeInside_ + leftOut.tooLarge;
  tell(large, Ui::tr("大きすぎる画像%n個は表示していません。", nullptr, large));
  tell(leftOut.tooMany,
       Ui::tr("画像が多すぎるため、%n個は表示していません。", nullptr, leftOut.tooMany));
  tell(leftOut.nearby, Ui::tr("このコンピューターやその近くのネットワークにある画像%n個は、安全の"
                              "ため読み込んでいません。",
                              nullptr, leftOut.nearby));
  tell(otherImages_, Ui::tr("背景など、ほかの形で書かれたリモート画像%n個は表示しません。", nullptr,
                            otherImages_));
  words_->setText(words.join(u'\n'));
  button_->setVisible(offers_);
  notice_->setVisible(!words.isEmpty());
}

void HtmlView::Find(const QString& text, bool backward, const std::function<void(bool)>& then) {
  page_->findText(
      text, backward ? QWebEnginePage::FindBackward : QWebEnginePage::FindFlags(),
      [then](const QWebEngineFindTextResult& result) { then(result.numberOfMatches() > 0); });
}

// Questions are asked outside the engine's answer.
void HtmlView::FollowLink(const std::function<void()>& none) {
  page_->runJavaScript(QString::fromLatin1(kLinkWithKeys), QWebEngineScript::ApplicationWorld,
                       [self = QPointer<HtmlView>(this), none](const QVariant& answer) {
                         if (self == nullptr) return;
                         const QUrl link(answer.toString());
                         QTimer::singleShot(0, self, [self, none, link] {
                           link.isEmpty() ? none() : self->AskToOpen(link);
                         });
                       });
}

void HtmlView::Zoom(double factor) {
  view_->setZoomFactor(factor);
}

void HtmlView::AskToOpen(const QUrl& url) {
  if (url.scheme() == u"mailto") {  // nothing leaves before the user sends it
    Q_EMIT MessageWanted(url.toString(QUrl::FullyEncoded));
    return;
  }
  AskToOpenOutside(this, url);
}

}  // namespace vorn
