#include "mail/window/body/mail_page.h"

#include <QWebEngineScript>
#include <QWebEngineScriptCollection>

namespace vorn {
namespace {

const QString kPaintedSign = QStringLiteral("vorn-painted ");
// The program's own, in a world apart: when the second frame begins, the first one is drawn.
constexpr char kPaintedCode[] =
    "requestAnimationFrame(() => requestAnimationFrame("
    "    () => console.info('vorn-painted ' + location.href)));";

}  // namespace

MailPage::MailPage(QWebEngineProfile* profile, QObject* parent) : QWebEnginePage(profile, parent) {
  QWebEngineScript script;
  script.setSourceCode(QString::fromLatin1(kPaintedCode));
  script.setWorldId(QWebEngineScript::ApplicationWorld);
  script.setInjectionPoint(QWebEngineScript::DocumentReady);
  scripts().insert(script);
}

bool MailPage::acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) {
  if (type == NavigationTypeLinkClicked) {
    Q_EMIT LinkClicked(url);
    return false;
  }
  return isMainFrame && url == allowed_ && type != NavigationTypeFormSubmitted;
}

QWebEnginePage* MailPage::createWindow(WebWindowType /*type*/) {
  return nullptr;
}

// The address, which is another one each time, is nothing that a mail could have said.
void MailPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel /*level*/,
                                        const QString& message, int /*line*/,
                                        const QString& /*source*/) {
  if (message == kPaintedSign + allowed_.toString()) Q_EMIT Painted();
}

}  // namespace vorn
