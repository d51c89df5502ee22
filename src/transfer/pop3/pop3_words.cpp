#include "transfer/pop3/pop3_words.h"

#include <algorithm>

namespace vorn {

QByteArray TimestampOf(const QByteArray& greeting) {
  const qsizetype start = greeting.indexOf('<');
  const qsizetype end = greeting.indexOf('>', start);
  if (start < 0 || end < 0) return {};
  const QByteArray stamp = greeting.sliced(start, end - start + 1);
  const bool isPlain =
      std::all_of(stamp.begin(), stamp.end(), [](char c) { return c > 0x20 && c < 0x7F; });
  return isPlain && stamp.count('@') == 1 ? stamp : QByteArray();
}

QByteArrayList CapabilityArguments(const QByteArray& body, QByteArrayView name) {
  for (const QByteArray& line : body.split('\n')) {
    QByteArrayList words = line.simplified().toUpper().split(' ');
    if (words.takeFirst() == name) return words;
  }
  return {};
}

bool IsCapability(const QByteArray& body, QByteArrayView name) {
  for (const QByteArray& line : body.split('\n')) {
    if (line.trimmed().compare(name, Qt::CaseInsensitive) == 0) return true;
  }
  return false;
}

}  // namespace vorn
