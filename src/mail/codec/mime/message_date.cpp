#include "mail/codec/mime/message_date.h"

#include <QHash>

#include "mail/codec/mime/mime_codec.h"

namespace vorn {
namespace {

// The time zones of RFC 822, in minutes; others are given as numbers.
int ZoneMinutes(const QByteArray& zone) {
  static const QHash<QByteArray, int> names = {
      {"UT", 0},     {"GMT", 0},    {"Z", 0},      {"JST", 540},  {"EST", -300}, {"EDT", -240},
      {"CST", -360}, {"CDT", -300}, {"MST", -420}, {"MDT", -360}, {"PST", -480}, {"PDT", -420}};
  bool isNumber = false;
  const int number = zone.toInt(&isNumber);
  if (!isNumber) return names.value(zone.toUpper(), 0);
  const int minutes = qAbs(number) / 100 * 60 + qAbs(number) % 100;
  return number < 0 ? -minutes : minutes;
}

QByteArray WithoutComments(const QByteArray& text) {
  QByteArray plain;
  int depth = 0;
  for (const char c : text) {
    if (c == '(') ++depth;
    if (depth == 0) plain += c;
    if (c == ')' && depth > 0) --depth;
  }
  return plain.simplified();
}

int MonthOf(const QByteArray& name) {
  static constexpr QByteArrayView kMonths = "janfebmaraprmayjunjulaugsepoctnovdec";
  const qsizetype at = kMonths.indexOf(name.left(3).toLower());
  return name.size() < 3 || at < 0 || at % 3 != 0 ? 0 : static_cast<int>(at / 3) + 1;
}

int FullYear(int year, qsizetype digits) {
  if (digits > 2) return digits == 3 ? year + 1900 : year;
  return year < 50 ? year + 2000 : year + 1900;
}

}  // namespace

QDateTime ParseMailDate(const QByteArray& text) {
  QByteArrayList words = WithoutComments(text).split(' ');
  if (words.first().endsWith(',')) words.removeFirst();
  // "Tue,24 Nov" has no blank after the day's name.
  const qsizetype comma = words.value(0).indexOf(',');
  if (comma >= 0) words[0] = words[0].sliced(comma + 1);
  if (words.size() < 4) return {};
  const QDate date(FullYear(words[2].toInt(), words[2].size()), MonthOf(words[1]),
                   words[0].toInt());
  const QByteArrayList clock = words[3].split(':');
  const QTime time(clock.value(0).toInt(), clock.value(1).toInt(),
                   qMin(clock.value(2, "0").toInt(), 59));
  if (clock.size() < 2 || !date.isValid() || !time.isValid()) return {};
  return QDateTime(date, time, Qt::OffsetFromUTC, 60 * ZoneMinutes(words.value(4, "+0000")));
}

QDateTime SentDate(QByteArrayView source) {
  const QByteArrayView date = "Date:";
  return ParseMailDate(MimeCodec::HeaderValue(MimeCodec::HeaderField(source, date), date.size()));
}

QDateTime ReceivedDate(QByteArrayView source) {
  const QByteArrayView received = "Received:";
  const QByteArray field = MimeCodec::HeaderField(source, received);
  const qsizetype semicolon = field.lastIndexOf(';');
  return semicolon < 0 ? QDateTime() : ParseMailDate(field.sliced(semicolon + 1));
}

QDateTime MessageDate(QByteArrayView source) {
  const QDateTime received = ReceivedDate(source);
  return received.isValid() ? received : SentDate(source);
}

}  // namespace vorn
