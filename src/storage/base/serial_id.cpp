#include "storage/base/serial_id.h"

#include <QRandomGenerator>
#include <algorithm>
#include <chrono>

namespace vorn {
namespace {

const QString kLineEnd = QStringLiteral("\r\n");
constexpr int kTimeCharacters = 11;
constexpr int kRandomCharacters = 9;
// 2020-01-01 UTC in microseconds; 55 bits from there last beyond the year 3000.
constexpr quint64 kEpoch = 1577836800ULL * 1000000ULL;

void AppendBase32(QString& text, quint64 value, int characters) {
  static constexpr char kAlphabet[] = "234567abcdefghijklmnopqrstuvwxyz";  // ascending in ASCII
  for (int shift = 5 * (characters - 1); shift >= 0; shift -= 5) {
    text += QLatin1Char(kAlphabet[value >> shift & 31]);
  }
}

}  // namespace

SerialIds SerialIdsOf(const QStringList& texts) {
  SerialIds ids;
  for (const QString& text : texts) ids.append(SerialId(text));
  return ids;
}

QStringList TextsOf(const SerialIds& ids) {
  QStringList texts;
  for (const SerialId& id : ids) texts.append(id.Text());
  return texts;
}

SerialIds SerialIdsOfLines(const QString& lines) {
  return SerialIdsOf(lines.split(kLineEnd, Qt::SkipEmptyParts));
}

QString LinesOf(const SerialIds& ids) {
  return TextsOf(ids).join(kLineEnd);
}

SerialId SerialIdGenerator::Next(const QString& prefix) {
  using std::chrono::microseconds;
  using std::chrono::system_clock;
  const auto now = std::chrono::duration_cast<microseconds>(system_clock::now().time_since_epoch());
  const quint64 tick = static_cast<quint64>(now.count()) - kEpoch;
  lastTick_ = std::max(tick, lastTick_ + 1);  // also when the clock goes back

  QString serial = prefix;
  serial.reserve(prefix.size() + kTimeCharacters + kRandomCharacters);
  AppendBase32(serial, lastTick_, kTimeCharacters);
  AppendBase32(serial, QRandomGenerator::system()->generate64(), kRandomCharacters);
  return SerialId(serial);
}

}  // namespace vorn
