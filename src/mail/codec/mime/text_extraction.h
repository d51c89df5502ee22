#pragma once

#include <QByteArrayView>
#include <QSet>
#include <QString>
#include <QStringList>

#include "mail/codec/charset/charset.h"

namespace vorn {

/// How `GetMessageText` is to read a message.
struct TextRequest {
  ReadingCode charset;
  qsizetype maximum = 0;  ///< bytes of code page 932, 0 meaning no limit
  QString linePrefix;     ///< put after every line break
  QStringList textTypes;  ///< the content types that are text, compared exactly
  int depth = 5;          ///< how deep messages inside messages are read for their text
  /// Whether what reports of programs and appointments say stands behind the text, as in received
  /// messages.
  bool withReports = false;
  /// Whether HTML that is no other form of a text stands among the texts, in its place.
  bool withHtml = false;
  /// Every form of the text, and what the messages inside say, with their subjects: whatever a
  /// reader can come to see. For searches.
  bool isWhole = false;
  bool isInner = false;  ///< a message within another one
};

struct MessageText {
  QString text;
  bool produced = false;  ///< whether there was any
};

/// The readable text of a message: its text parts without a file name, decoded, one after the
/// other. Flowed text is joined to paragraphs. A message whose text is blank gives the text of its
/// HTML part, of another kind of text, of the messages inside it, or what stands before its parts.
/// Every line break becomes CR LF and the prefix. A
/// text that the maximum cuts ends with
/// "...".
MessageText GetMessageText(QByteArrayView source, const QString& contentIndex,
                           const TextRequest& request);

/// Whether the text of a message is that of its HTML part, since no text part has words; without
/// making it.
bool IsTextOfHtml(QByteArrayView source, const QString& contentIndex, const TextRequest& request);

/// The calendars (RFC 5545) that came with the message, decoded, one behind the other; empty when
/// it has none.
QString GetMessageCalendar(QByteArrayView source, const QString& contentIndex,
                           const ReadingCode& charset);

/// The message's HTML as it was written, decoded, with a line between several parts of it; a null
/// string when it has none.
QString GetMessageHtml(QByteArrayView source, const QString& contentIndex,
                       const ReadingCode& charset);

/// Where its parts begin in the source.
QSet<qsizetype> HtmlParts(QByteArrayView source, const QString& contentIndex);

}  // namespace vorn
