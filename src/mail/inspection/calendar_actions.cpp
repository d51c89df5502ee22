#include "mail/inspection/calendar_actions.h"

#include <QRegularExpression>
#include <algorithm>

#include "mail/inspection/html_loads.h"

namespace vorn {
namespace {

// A content line (RFC 5545 section 3.1); parameters may quote a colon.
struct ContentLine {
  QString name;  // in capitals
  QString parameters;
  QString value;

  explicit ContentLine(QStringView line) {
    bool isQuoted = false;
    qsizetype colon = 0;
    for (; colon < line.size() && (isQuoted || line[colon] != u':'); ++colon) {
      if (line[colon] == u'"') isQuoted = !isQuoted;
    }
    const QStringView head = line.first(colon);
    const qsizetype semicolon = head.indexOf(u';');
    name = (semicolon < 0 ? head : head.first(semicolon)).trimmed().toString().toUpper();
    if (semicolon >= 0) parameters = head.sliced(semicolon).toString().toUpper().remove(u'"');
    if (colon < line.size()) value = line.sliced(colon + 1).trimmed().toString();
  }

  bool Begins(QStringView with) const { return value.startsWith(with, Qt::CaseInsensitive); }
};

// The text that a value says (RFC 5545 section 3.3.11).
QString TextOf(QString value) {
  static const QRegularExpression escaped(QStringLiteral("\\\\([,;])"));
  return value.replace(escaped, QStringLiteral("\\1"))
      .replace(QStringLiteral("\\n"), QStringLiteral("\n"), Qt::CaseInsensitive);
}

// An alarm fetches its sound when it rings; an appointment's own attachment waits for a click.
bool Acts(const ContentLine& line, bool isInAlarm) {
  // Of the form before (vCalendar): a program, a mail.
  if (line.name == u"PALARM" || line.name == u"MALARM") return true;
  if (line.name == u"AALARM") {
    const QStringList parts = line.value.split(u';');
    return std::any_of(parts.begin(), parts.end(), IsAddressOutside);
  }
  // An alarm by mail is sent by the program that keeps the calendar.
  if (line.name == u"ACTION") return line.Begins(u"PROCEDURE") || line.Begins(u"EMAIL");
  // Descriptions in HTML.
  if (line.name == u"X-ALT-DESC" || line.name == u"STYLED-DESCRIPTION") {
    const bool isAddress = line.parameters.contains(u"VALUE=URI");
    return isAddress ? IsAddressOutside(line.value) : LoadsByItself(TextOf(line.value));
  }
  if (line.name == u"IMAGE") return IsAddressOutside(line.value);  // RFC 7986
  if (line.name != u"ATTACH" || line.parameters.contains(u"VALUE=BINARY")) return false;
  QString place = line.value;
  place.replace(u'\\', u'/');
  return place.startsWith(u"//") || line.Begins(u"file:") || line.Begins(u"smb:") ||
         (isInAlarm && IsAddressOutside(line.value));
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
    const ContentLine line(whole.trimmed());
    const bool isAlarm = line.Begins(u"VALARM");
    if (line.name == u"BEGIN" && isAlarm) isInAlarm = true;
    if (line.name == u"END" && isAlarm) isInAlarm = false;
    if (Acts(line, isInAlarm)) return true;
  }
  return false;
}

}  // namespace vorn
