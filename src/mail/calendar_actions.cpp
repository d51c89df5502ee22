#include "mail/calendar_actions.h"

#include <QRegularExpression>

namespace vorn {
namespace {

// The value of a content line, behind the parameters, which may quote a colon.
QStringView ValueOf(QStringView line) {
  bool isQuoted = false;
  for (qsizetype i = 0; i < line.size(); ++i) {
    if (line[i] == u'"') isQuoted = !isQuoted;
    if (line[i] == u':' && !isQuoted) return line.sliced(i + 1).trimmed();
  }
  return {};
}

// An alarm fetches its sound when it rings; an appointment's own attachment waits for a click.
bool Acts(QStringView line, bool isInAlarm) {
  const auto starts = [](QStringView text, QStringView with) {
    return text.startsWith(with, Qt::CaseInsensitive);
  };
  if (starts(line, u"PALARM")) return true;  // of the form before (vCalendar)
  // An alarm by mail is sent by the program that keeps the calendar.
  if (starts(line, u"ACTION")) {
    return starts(ValueOf(line), u"PROCEDURE") || starts(ValueOf(line), u"EMAIL");
  }
  // Descriptions in HTML, with a picture.
  if (starts(line, u"X-ALT-DESC") || starts(line, u"STYLED-DESCRIPTION")) {
    const bool isAddress = line.contains(u"VALUE=URI", Qt::CaseInsensitive);
    return (isAddress || line.contains(u"src", Qt::CaseInsensitive)) && line.contains(u"://");
  }
  if (starts(line, u"IMAGE")) return ValueOf(line).contains(u"://");  // RFC 7986
  if (!starts(line, u"ATTACH")) return false;
  const QStringView value = ValueOf(line);
  return starts(value, u"file:") || starts(value, u"\\\\") || starts(value, u"//") ||
         (isInAlarm && value.contains(u"://"));
}

QString Unfolded(QString lines) {
  static const QRegularExpression fold(QStringLiteral("(\\r\\n|\\r|\\n)[ \\t]"));
  return lines.remove(fold);
}

}  // namespace

bool LoadsPictures(const QString& card) {
  static const QRegularExpression picture(
      QStringLiteral("^\\s*([\\w-]+\\.)?(PHOTO|LOGO|SOUND)[;:][^\\r\\n]*(://|\\\\\\\\)"),
      QRegularExpression::CaseInsensitiveOption | QRegularExpression::MultilineOption);
  QString lines = Unfolded(card);
  return picture.match(lines.replace(u'\r', u'\n')).hasMatch();
}

bool StartsPrograms(const QString& calendar) {
  static const QRegularExpression end(QStringLiteral("[\\r\\n]+"));
  const QString unfolded = Unfolded(calendar);
  bool isInAlarm = false;
  for (const QStringView whole : QStringView(unfolded).split(end)) {
    const QStringView line = whole.trimmed();
    if (line.compare(u"BEGIN:VALARM", Qt::CaseInsensitive) == 0) isInAlarm = true;
    if (line.compare(u"END:VALARM", Qt::CaseInsensitive) == 0) isInAlarm = false;
    if (Acts(line, isInAlarm)) return true;
  }
  return false;
}

}  // namespace vorn
