#pragma once

#include <QString>
#include <QStringList>
#include <functional>

namespace vorn::MimeCodec {

/// The items of a list from `start` on, at separators that stand outside double quotes, angle
/// brackets and comments. An item keeps its quotes and loses the blanks around it.
QStringList SplitList(const QString& text, QChar separator, qsizetype start = 0);
/// The same, one item after the other.
void ForEachItem(QStringView text, QChar separator, qsizetype start,
                 const std::function<void(QStringView)>& take);

/// The words of one address: at blanks outside quotes, and with a part in angle brackets always a
/// word of its own.
QStringList SplitWords(const QString& item);

/// The text on one line, without what could begin another: tabs, line breaks and runs of blanks
/// become one blank. Full-width blanks within it are characters of a name and stay.
QString OneLine(const QString& text);

}  // namespace vorn::MimeCodec
