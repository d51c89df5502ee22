#include "present/window/page_rows.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QWebEnginePage>
#include <QWebEngineScript>
#include <utility>

namespace vorn {

// What waits for an answer goes on without one when the page goes: a message that was dropped onto
// a folder must not be forgotten because its page was just made anew.
void PageRows::Run(const QString& script, const std::function<void(const QVariant&)>& then) {
  if (page_ == nullptr) {
    if (then) then({});
    return;
  }
  // A page that could not be loaded has no script either.
  page_->runJavaScript(QStringLiteral("window.vorn && ") + script,
                       QWebEngineScript::ApplicationWorld,
                       [self = QPointer<PageRows>(this), then](const QVariant& answer) {
                         if (self != nullptr && !self->closed_ && then) then(answer);
                       });
}

void PageRows::Attach(QWebEnginePage* page) {
  page_ = page;
  Run(QStringLiteral("vorn.count()"), [this](const QVariant& count) {
    if (count.isValid()) SetCount(count.toInt());
  });
  if (kept_.isEmpty()) return;
  // As an argument in quotes, which JSON is.
  const QByteArray quoted =
      QJsonDocument(QJsonArray{std::exchange(kept_, QString())}).toJson(QJsonDocument::Compact);
  Run(QStringLiteral("vorn.restore(%1[0])").arg(QString::fromUtf8(quoted)));
}

void PageRows::Detach() {
  page_.clear();
  SetCount(0);
}

void PageRows::SetCount(int count) {
  count_ = count;
  if (changed_) changed_();
}

void PageRows::Call(const QString& function, int number, bool flag) {
  Run(QStringLiteral("vorn.%1(%2, %3)")
          .arg(function)
          .arg(number)
          .arg(flag ? QStringLiteral("true") : QStringLiteral("false")));
}

void PageRows::Toggle() {
  Run(QStringLiteral("vorn.toggle()"));
}

void PageRows::ChooseAll() {
  Run(QStringLiteral("vorn.all()"));
}

void PageRows::Chosen(const std::function<void(const QStringList&)>& then) {
  Run(QStringLiteral("vorn.chosen()"),
      [then](const QVariant& answer) { then(answer.toStringList()); });
}

void PageRows::Links(const std::function<void(const QList<Link>&)>& then) {
  Run(QStringLiteral("vorn.links()"), [then](const QVariant& answer) {
    QList<Link> links;
    for (const QVariant& entry : answer.toList()) {
      const QStringList fields = entry.toStringList();
      if (fields.size() == 2) links.append({fields[0], fields[1]});
    }
    then(links);
  });
}

void PageRows::BeginAtEnd(bool atEnd) {
  kept_ = atEnd ? QStringLiteral(R"({"next":[],"chosen":[],"x":0,"y":1e9})") : QString();
}

void PageRows::Keep(const std::function<void()>& then) {
  if (page_ == nullptr || count_ == 0) {
    then();
    return;
  }
  Run(QStringLiteral("vorn.state()"), [this, then](const QVariant& state) {
    if (state.isValid()) kept_ = state.toString();
    then();
  });
}

}  // namespace vorn
