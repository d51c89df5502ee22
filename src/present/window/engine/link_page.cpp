#include "present/window/engine/link_page.h"

#include <QApplication>
#include <QWebEngineSettings>
#include <QWebEngineView>
#include <utility>

#include "kit/window/plain_text.h"
#include "present/link_command.h"
#include "present/window/engine/search_step.h"
#include "storage/ui.h"

namespace vorn {
namespace {

constexpr int kWindowPauseMs = 1000;

// What the program's script says in the folder's page before a blank (`page_script.h`).
constexpr std::pair<QLatin1String, RowNews> kRowWords[] = {
    {QLatin1String("vorn-row"), RowNews::Current}, {QLatin1String("vorn-kept"), RowNews::Kept},
    {QLatin1String("vorn-left"), RowNews::Left},   {QLatin1String("vorn-twice"), RowNews::Twice},
    {QLatin1String("vorn-marks"), RowNews::Marks}, {QLatin1String("vorn-chosen"), RowNews::Chosen}};

QString BoxText(const QUrl& origin, const QString& text) {
  return Ui::tr("「%1」のページからのメッセージ:").arg(origin.host()) + QStringLiteral("\n\n") +
         text;
}

}  // namespace

bool LinkPage::acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) {
  if (const auto request = ReadLinkCommand(url.toString(QUrl::FullyEncoded))) {
    // Only what the user clicked, on a page of the program's; a page cannot follow its own links.
    if (!localPage_.isEmpty() && type == NavigationTypeLinkClicked && !IsRepeated(*request)) {
      Q_EMIT CommandFollowed(*request);
    }
    return false;
  }
  if (url.scheme() == u"vorn") {
    // On a folder's page only what does no harm: what messages say may stand on it.
    const bool may = isOwnText_ || (!localPage_.isEmpty() && search_step::Is(url.path()));
    if (may && type == NavigationTypeLinkClicked) Q_EMIT StepFollowed(url.path());
    return false;
  }
  if (!localPage_.isEmpty()) {
    return isMainFrame && url == localPage_ && type != NavigationTypeLinkClicked &&
           type != NavigationTypeFormSubmitted;
  }
  if (url.scheme() == u"mailto") {
    // A new window comes of a click as well; there is nothing that it could show.
    if (type == NavigationTypeLinkClicked || holding_)
      Q_EMIT MailtoFollowed(url.toString(QUrl::FullyEncoded));
    return false;
  }
  if (isMainFrame) {
    // Whether the page that is asked for comes, or is a file to be saved, is not known yet: until
    // then scripts run where both this page and that one may run them.
    const bool mayRun = mayRunScripts_ && mayRunScripts_(url);
    LetScripts(mayRun && (this->url().isEmpty() || mayRunScripts_(this->url())));
    arriving_ = url;
    isUnderWay_ = true;
    const bool isSame = type == NavigationTypeRedirect || type == NavigationTypeReload;
    if (!isSame) isFormAnswer_ = type == NavigationTypeFormSubmitted;
  }
  if (holding_ && isMainFrame && url.scheme() != u"about") {
    holding_ = false;
    // What a form sends would be lost, so it goes where it wants to.
    const bool goesOn = type == NavigationTypeFormSubmitted;
    Q_EMIT FirstNavigation(goesOn ? QUrl() : url);
    return goesOn;
  }
  return QWebEnginePage::acceptNavigationRequest(url, type, isMainFrame);
}

LinkPage::LinkPage(QWebEngineProfile* profile, QObject* parent) : QWebEnginePage(profile, parent) {
  connect(this, &QWebEnginePage::loadStarted, this, [this] { isUnderWay_ = false; });
}

void LinkPage::SettleScripts() {
  const bool mayRun = mayRunScripts_ && mayRunScripts_(url());
  if (mayRun == settings()->testAttribute(QWebEngineSettings::JavascriptEnabled)) return;
  // The end of the loading before: the scripts of the next page would run with this one's.
  const bool isStopped = mayRunScripts_ && !mayRunScripts_(arriving_);
  if (mayRun && isStopped && (isUnderWay_ || isLoading())) return;
  LetScripts(mayRun);
  if (mayRun && url() == arriving_) LoadWithScripts();  // it came without them
}

// What answers a form would come of the form being sent once more: an order made twice.
void LinkPage::LoadWithScripts() {
  LetScripts(true);
  if (!isFormAnswer_) triggerAction(Reload);
}

void LinkPage::LetScripts(bool run) {
  settings()->setAttribute(QWebEngineSettings::JavascriptEnabled, run);
}

// Clicks in a row on one link are one command. The engine tells of each a while after it was made.
bool LinkPage::IsRepeated(const MailRequest& request) {
  const bool isSoon =
      sinceFollowed_.isValid() && sinceFollowed_.elapsed() < QApplication::doubleClickInterval();
  const bool isRepeated = isSoon && request == followed_;
  followed_ = request;
  sinceFollowed_.start();
  return isRepeated;
}

// A page that makes a click into many windows gets one of them.
QWebEnginePage* LinkPage::createWindow(WebWindowType) {
  if (!localPage_.isEmpty() || !makeWindow_) return nullptr;
  if (sinceWindow_.isValid() && sinceWindow_.elapsed() < kWindowPauseMs) return nullptr;
  sinceWindow_.start();
  return makeWindow_();
}

// A folder's page runs the program's script alone, which speaks in this way.
void LinkPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString& message, int,
                                        const QString&) {
  if (localPage_.isEmpty()) return;
  const qsizetype blank = message.indexOf(u' ');
  const QStringView said = QStringView(message).left(blank);
  for (const auto& [word, news] : kRowWords) {
    if (blank > 0 && said == word) Q_EMIT RowTold(news, message.mid(blank + 1));
  }
}

// Whether the keys that the user presses now are this page's.
bool LinkPage::HasUser() const {
  const QWebEngineView* view = QWebEngineView::forPage(this);
  QWidget* focus = QApplication::focusWidget();
  return view != nullptr && focus != nullptr && (focus == view || view->isAncestorOf(focus));
}

void LinkPage::javaScriptAlert(const QUrl& origin, const QString& text) {
  if (!HasUser()) return;
  ShowBox(QWebEngineView::forPage(this), QMessageBox::Information, BoxText(origin, text));
}

bool LinkPage::javaScriptConfirm(const QUrl& origin, const QString& text) {
  return HasUser() &&
         ShowBox(QWebEngineView::forPage(this), QMessageBox::Question, BoxText(origin, text),
                 QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel) == QMessageBox::Ok;
}

bool LinkPage::javaScriptPrompt(const QUrl& origin, const QString& text, const QString& standard,
                                QString* answer) {
  return HasUser() && QWebEnginePage::javaScriptPrompt(origin, text, standard, answer);
}

}  // namespace vorn
