#pragma once

#include <QDateTime>
#include <QLocale>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

namespace vorn {

/// The form of dates and times (as of `QDateTime::toString`) in the interface's language.
/// `japanese` is the form in Japanese and says of what the other ones consist: "yyyy/MM/dd" or
/// "M/d", "H:mm" or "H:mm:ss", with a blank between date and time. A year has four digits
/// everywhere.
inline QString ShownForm(const QString& japanese, const QLocale& locale = QLocale()) {
  if (locale.language() == QLocale::Japanese || locale.language() == QLocale::C) return japanese;
  static const QRegularExpression shortYear(QStringLiteral("(?<!y)yy(?!y)"));
  static const QRegularExpression year(QStringLiteral("^y+[^Md]+|[^Md]+y.*$"));
  QStringList parts = japanese.split(u' ');
  for (QString& part : parts) {
    const bool isClock = part.contains(u'm');
    QString form =
        isClock ? locale.timeFormat(QLocale::ShortFormat) : locale.dateFormat(QLocale::ShortFormat);
    if (isClock && part.contains(u's') && !form.contains(u's')) {
      form.replace(QStringLiteral("mm"), QStringLiteral("mm:ss"));
    }
    if (!isClock) form.replace(shortYear, QStringLiteral("yyyy"));
    if (!isClock && !part.contains(u'y')) form.remove(year);
    part = form;
  }
  return parts.join(u' ');
}

/// A date (QDate), time (QTime) or both (QDateTime) in that form.
template <typename Moment>
QString Shown(const Moment& moment, const QString& japanese) {
  return QLocale().toString(moment, ShownForm(japanese));
}

}  // namespace vorn
