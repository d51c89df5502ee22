#pragma once

#include <QString>

namespace vorn {

/// A text that may come from outside as it may be shown: control characters, the marks that turn
/// the direction of others (Unicode bidirectional algorithm, UAX 9) and characters that nobody sees
/// are visible signs, line breaks and tabulators stay, and what is longer than `most` characters
/// ends in "…". Joiners and variation selectors stay where they shape letters or emoji.
QString ShownText(const QString& text, qsizetype most = 4000);

/// The same, whole, for a line of a list: line breaks and tabulators are blanks.
QString ShownInLine(const QString& text);

/// The name of a file as it may stand within a sentence or a list: in one line, with single blanks,
/// and of a long one the begin and the end, where its kind stands, `most` characters in all.
QString ShownFileName(const QString& name, qsizetype most = 100);

/// Whether a text has a character of ASCII that is none: a line break, a tabulator, DEL and such.
bool HasControlCharacter(const QString& text);

/// Whether a text has anything that is drawn: a letter, a digit or a sign.
bool HasVisible(const QString& text);

/// A text without the marks that turn the direction of others: for names that go on into messages,
/// where they would turn the address behind them.
QString WithoutDirectionMarks(const QString& text);

/// "name <address>", or one of both, as `ShownInLine` gave it, with the marks that keep name and
/// address each in its own direction (isolates, UAX 9): letters from right to left in a name would
/// else change the places of what stands around an "@". Only to be drawn.
QString IsolatedAddress(const QString& address);

/// A text without the characters that nobody sees, marks of direction aside: for subjects, which
/// newsletters fill with them.
QString WithoutHidden(const QString& text);

}  // namespace vorn
