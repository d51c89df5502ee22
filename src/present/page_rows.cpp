#include "present/page_rows.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QUrl>

namespace vorn {
namespace {

// What the page answers, as what it is.
PageQueue::Answer Answering(const std::function<void(const SerialId&)>& then) {
  return [then](const QVariant& answer) { then(SerialIdOf(answer)); };
}

PageQueue::Answer Answering(const std::function<void(const SerialIds&)>& then) {
  return [then](const QVariant& answer) { then(SerialIdsOf(answer.toStringList())); };
}

}  // namespace

void PageRows::SetCount(int count) {
  count_ = count;
  if (changed_) changed_();
}

void PageRows::Call(const QString& function, int number, bool flag) {
  Call(QStringLiteral("%1(%2, %3)")
           .arg(function)
           .arg(number)
           .arg(flag ? QStringLiteral("true") : QStringLiteral("false")));
}

void PageRows::Tell(const QString& function, const SerialIds& messages) {
  if (messages.isEmpty()) return;
  const QByteArray ids =
      QJsonDocument(QJsonArray::fromStringList(TextsOf(messages))).toJson(QJsonDocument::Compact);
  queue_.RunFirst(OnPage(QStringLiteral("%1(%2)").arg(function, QString::fromUtf8(ids))));
}

void PageRows::GoToMessage(const SerialId& serialId, const std::function<void()>& notHere) {
  queue_.GoOn(OnPage(QStringLiteral("goToMessage(decodeURIComponent('%1'))")
                         .arg(QString::fromLatin1(QUrl::toPercentEncoding(serialId.Text())))),
              [notHere](const QVariant& here) {
                if (!here.toBool()) notHere();
              });
}

void PageRows::Unchoose(const std::function<void(bool)>& then) {
  queue_.Run(OnPage(QStringLiteral("unchoose()")),
             [then](const QVariant& answer) { then(answer.toBool()); });
}

void PageRows::Chosen(const std::function<void(const SerialIds&)>& then) {
  queue_.Run(OnPage(QStringLiteral("chosen()")), Answering(then));
}

void PageRows::ToOpen(const std::function<void(const QString&, const SerialIds&)>& then) {
  queue_.Run(OnPage(QStringLiteral("toOpen()")), [then](const QVariant& answer) {
    const QStringList told = answer.toStringList();
    then(told.value(0), SerialIdsOf(told.mid(1)));
  });
}

void PageRows::Take(const std::function<void(const SerialIds&)>& then) {
  queue_.Run(OnPage(QStringLiteral("take()")), [then](const QVariant& answer) {
    if (answer.typeId() != QMetaType::Bool) then(SerialIdsOf(answer.toStringList()));
  });
}

void PageRows::Current(const std::function<void(const SerialId&)>& then) {
  queue_.Run(OnPage(QStringLiteral("current()")), Answering(then));
}

void PageRows::CurrentAlone(const std::function<void(const SerialId&)>& then) {
  queue_.RunAlone(OnPage(QStringLiteral("current()")), Answering(then));
}

void PageRows::MenuPlace(const std::function<void(const QPointF&)>& then) {
  queue_.Run(OnPage(QStringLiteral("menuPlace()")), [then](const QVariant& answer) {
    const QVariantList place = answer.toList();
    then({place.value(0).toReal(), place.value(1).toReal()});
  });
}

void PageRows::Links(const std::function<void(const QList<Link>&)>& then) {
  queue_.Run(OnPage(QStringLiteral("links()")), [then](const QVariant& answer) {
    QList<Link> links;
    for (const QVariant& entry : answer.toList()) {
      const QStringList fields = entry.toStringList();
      if (fields.size() == 2) links.append({fields[0], fields[1]});
    }
    then(links);
  });
}

}  // namespace vorn
