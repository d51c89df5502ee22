#include "transfer/pop3_mailbox.h"

#include <QHash>
#include <QUrl>
#include <algorithm>

namespace vorn {
namespace {

constexpr qsizetype kMaxMessages = 5000000;
// No larger message is ever taken, and the sum over all messages stays far from any limit.
constexpr qint64 kMaxSize = qint64(1) << 30;
constexpr qsizetype kMaxUidl = 1000;  // the standard says 70

struct NumberedLine {
  int number;
  QByteArray rest;
};

std::vector<NumberedLine> ReadLines(const QByteArray& body) {
  std::vector<NumberedLine> lines;
  for (const QByteArray& raw : body.split('\n')) {
    const QByteArray line = raw.trimmed();
    const qsizetype blank = line.indexOf(' ');
    if (blank <= 0) continue;
    bool isNumber = false;
    const int number = line.first(blank).toInt(&isNumber);
    if (isNumber && number > 0) lines.push_back({number, line.sliced(blank + 1).trimmed()});
  }
  return lines;
}

}  // namespace

std::vector<Pop3Message> ReadMailbox(const QByteArray& list, const QByteArray& uidl) {
  QHash<int, QByteArray> identifiers;
  QHash<QByteArray, int> uses;
  for (const NumberedLine& line : ReadLines(uidl)) {
    if (line.rest.isEmpty() || line.rest.size() > kMaxUidl) continue;
    if (identifiers.contains(line.number)) continue;
    ++uses[line.rest];
    identifiers.insert(line.number, line.rest);
  }
  std::vector<Pop3Message> messages;
  QHash<int, bool> seen;
  for (const NumberedLine& line : ReadLines(list)) {
    if (seen.contains(line.number)) continue;
    if (static_cast<qsizetype>(messages.size()) >= kMaxMessages) break;
    seen.insert(line.number, true);
    const qint64 size = line.rest.split(' ').value(0).toLongLong();
    const QByteArray identifier = identifiers.value(line.number);
    messages.push_back({line.number, std::clamp<qint64>(size, 0, kMaxSize),
                        uses.value(identifier) == 1 ? identifier : QByteArray()});
  }
  return messages;
}

QString ScopedMessageId(const QString& user, const QString& server, const QByteArray& uidl) {
  const auto encoded = [](const QString& part) {
    return QString::fromLatin1(QUrl::toPercentEncoding(part));
  };
  return encoded(user) + u'@' + encoded(server.toLower()) + u'/' + QString::fromLatin1(uidl);
}

}  // namespace vorn
