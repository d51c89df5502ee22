#include "transfer/pop3/pop3_mailbox.h"

#include <QHash>
#include <QSet>
#include <QUrl>
#include <algorithm>

namespace vorn {
namespace {

constexpr qsizetype kMaxMessages = 1000000;
// No larger message is ever taken, and the sum over all messages stays far from any limit.
constexpr qint64 kMaxSize = qint64(1) << 30;
constexpr qsizetype kMaxUidl = 1000;  // the standard says 70

bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

// Calls `take` with each line's message number and what follows it. Lines are looked at in place: a
// list may have millions of them.
template <typename Take>
void ForEachLine(QByteArrayView body, Take take) {
  while (!body.isEmpty()) {
    const qsizetype end = body.indexOf('\n');
    const QByteArrayView line = body.first(end < 0 ? body.size() : end).trimmed();
    body = body.sliced(end < 0 ? body.size() : end + 1);
    const auto blank = std::find_if(line.begin(), line.end(), IsBlank);
    const qsizetype numberEnd = blank - line.begin();
    bool isNumber = false;
    const int number = line.first(numberEnd).toInt(&isNumber);
    if (isNumber && number > 0 && !take(number, line.sliced(numberEnd).trimmed())) return;
  }
}

}  // namespace

std::vector<Pop3Message> ReadMailbox(const QByteArray& list, const QByteArray& uidl) {
  QHash<int, QByteArray> identifiers;
  QHash<QByteArray, int> uses;
  ForEachLine(uidl, [&](int number, QByteArrayView rest) {
    if (rest.isEmpty() || rest.size() > kMaxUidl || identifiers.contains(number)) return true;
    const QByteArray identifier = rest.toByteArray();
    ++uses[identifier];
    identifiers.insert(number, identifier);
    return identifiers.size() < kMaxMessages;
  });
  std::vector<Pop3Message> messages;
  QSet<int> seen;
  ForEachLine(list, [&](int number, QByteArrayView rest) {
    if (seen.contains(number)) return true;
    seen.insert(number);
    const qsizetype blank = rest.indexOf(' ');
    const qint64 size = rest.first(blank < 0 ? rest.size() : blank).toLongLong();
    const QByteArray identifier = identifiers.value(number);
    messages.push_back({number, std::clamp<qint64>(size, 0, kMaxSize),
                        uses.value(identifier) == 1 ? identifier : QByteArray()});
    return static_cast<qsizetype>(messages.size()) < kMaxMessages;
  });
  return messages;
}

QString ScopedMessageId(const QString& user, const QString& server, const QByteArray& uidl) {
  const auto encoded = [](const QString& part) {
    return QString::fromLatin1(QUrl::toPercentEncoding(part));
  };
  return encoded(user) + u'@' + encoded(server.toLower()) + u'/' + QString::fromLatin1(uidl);
}

}  // namespace vorn
